// The file-dialog component, the run-time's own. A dialog component that an
// application registers under the same class identifier takes its place.
#include <algorithm>

#include "frame/runtime/runtime_error.h"
#include "platform/automation/class_table.h"
#include "platform/dialogs/file_chooser.h"
#include "platform/dialogs/start_place.h"
#include "platform/dialogs/text_lists.h"
#include "platform/names/path_map.h"

namespace Orvix {
namespace {

constexpr CLSID kFileDialogClass = "A4622060-ED13-11CE-9C0D-00AA0062BE57"_guid;
constexpr IID kFileDialogInterface = "D1879860-EC80-11CE-9C0D-00AA0062BE57"_guid;

constexpr LONG kBadFileName = 52;

// What was chosen, in callers' names: files within one directory.
struct Selection {
  Text directory;  // with a separator at the end only when it is a root
  std::vector<Text> files;
};

// Without the separators that part it from the last component.
std::string ParentOf(std::string_view name) {
  std::string parent(name.substr(0, name.rfind('/')));
  parent.resize(parent.find_last_not_of('/') + 1);
  return parent.empty() ? "/" : parent;
}

// Whether `name` lies in `directory`, however deep.
bool LiesIn(std::string_view directory, std::string_view name) {
  if (directory == "/") return true;
  return name.starts_with(directory) && name.substr(directory.size()).starts_with('/');
}

// The files lie in one directory as a rule; when they do not, in the nearest one
// above all of them, and their names say the rest of the way ("sub\a.txt").
// Error 52 for a name with a backslash, 76 when no drive reaches the directory.
Selection SelectionOf(const std::vector<std::string>& names) {
  std::string directory = ParentOf(names.front());
  for (const std::string& name : names) {
    while (!LiesIn(directory, name)) directory = ParentOf(directory);
  }
  Selection selection{PlatformName(directory), {}};
  const std::size_t skipped = directory.size();
  for (const std::string& name : names) {
    if (name.find('\\') != std::string::npos) throw RuntimeError{kBadFileName};
    const std::size_t first = name.find_first_not_of('/', skipped);
    Text file = FromUtf8(std::string_view(name).substr(first));
    std::ranges::replace(file, u'/', u'\\');
    selection.files.push_back(std::move(file));
  }
  return selection;
}

class FileDialog final : public DialogObject {
 public:
  FileDialog()
      : DialogObject(kFileDialogInterface),
        files_(MakeLateObject<ChosenNames>(std::vector<Text>{})),
        filters_(MakeLateObject<FilterTexts>()) {}

 protected:
  enum Member : DISPID {
    kDirectory = 1,
    kFileName,
    kFiles,
    kFilters,
    kHideReadOnly,
    kOwnerWindow,
    kCenter,
    kMultiSelect,
    kOverwritePrompt,
    kReadOnly,
    kSaveDialog,
    kTitle,
    kShow,
  };

  [[nodiscard]] std::span<const LateMember> Members() const noexcept override {
    constexpr WORD kRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
    constexpr WORD kReadAndWrite = kRead | DISPATCH_PROPERTYPUT;
    static constexpr LateMember kMembers[] = {
        {kDirectory, u"Directory", kReadAndWrite},
        {kFileName, u"FileName", kReadAndWrite},
        {kFiles, u"Files", kRead},
        {kFilters, u"Filters", kRead},
        {kHideReadOnly, u"HideReadOnly", kReadAndWrite},
        {kOwnerWindow, u"OwnerWindow", kReadAndWrite},
        {kCenter, u"Center", kReadAndWrite},
        {kMultiSelect, u"MultiSelect", kReadAndWrite},
        {kOverwritePrompt, u"OverwritePrompt", kReadAndWrite},
        {kReadOnly, u"ReadOnly", kReadAndWrite},
        {kSaveDialog, u"SaveDialog", kReadAndWrite},
        {kTitle, u"Title", kReadAndWrite},
        {kShow, u"Show", DISPATCH_METHOD},
    };
    return kMembers;
  }
  [[nodiscard]] TextView ClassName() const noexcept override { return u"Orvix.FileDialog"; }

  void Call(DISPID member, const LateArguments& arguments, VARIANT* result) override {
    const VARIANT* const value = arguments.put_value;
    switch (member) {
      case kDirectory:
        return Exchange(directory_, value, result);
      case kFileName:
        return Exchange(file_name_, value, result);
      case kFiles:
        return GiveObject(files_.get(), result);
      case kFilters:
        return GiveObject(filters_.get(), result);
      case kHideReadOnly:
        return Exchange(hide_read_only_, value, result);
      case kOwnerWindow:
        return Exchange(owner_window_, value, result);
      case kCenter:
        return Exchange(center_, value, result);
      case kMultiSelect:
        return Exchange(multi_select_, value, result);
      case kOverwritePrompt:
        return Exchange(overwrite_prompt_, value, result);
      case kReadOnly:
        return Exchange(read_only_, value, result);
      case kSaveDialog:
        return Exchange(save_dialog_, value, result);
      case kTitle:
        return Exchange(title_, value, result);
      default:
        return GiveTruth(Show(), result);
    }
  }

 private:
  // Writes the field when there is a new value, else reads it.
  static void Exchange(Text& field, const VARIANT* value, VARIANT* result) {
    if (value == nullptr) return GiveText(field, result);
    field = TextArgument(*value);
  }
  static void Exchange(LONG& field, const VARIANT* value, VARIANT* result) {
    if (value == nullptr) return GiveLong(field, result);
    field = LongArgument(*value);
  }
  static void Exchange(bool& field, const VARIANT* value, VARIANT* result) {
    if (value == nullptr) return GiveTruth(field, result);
    field = TruthArgument(*value);
  }
  static void GiveObject(IDispatch* object, VARIANT* result) {
    object->AddRef();
    result->pdispVal = object;
    result->vt = VT_DISPATCH;
  }

  // True when the user confirmed; otherwise nothing changes, and neither does it
  // on an error.
  bool Show() {
    ChooserRequest request;
    request.save = save_dialog_;
    request.multiple = multi_select_;
    request.ask_overwrite = overwrite_prompt_;
    request.start = StartPlace(directory_, file_name_);
    request.title = title_;
    request.filters = FiltersOf(filters_->Texts());
    request.owner = owner_window_;
    const std::vector<std::string> names = ChooseFiles(request);
    if (names.empty()) return false;
    Selection selection = SelectionOf(names);
    Text first = selection.files.front();
    files_ = MakeLateObject<ChosenNames>(std::move(selection.files));
    directory_ = std::move(selection.directory);
    file_name_ = std::move(first);
    return true;
  }

  Text directory_;
  Text file_name_;  // of several chosen files the first
  LateOwner<ChosenNames> files_;
  LateOwner<FilterTexts> filters_;
  bool hide_read_only_ = false;
  LONG owner_window_ = 0;
  bool center_ = false;
  bool multi_select_ = false;
  bool overwrite_prompt_ = true;
  bool read_only_ = false;
  bool save_dialog_ = false;
  Text title_;
};

HRESULT MakeFileDialog(REFIID riid, void** object) {
  try {
    return MakeLateObject<FileDialog>()->QueryInterface(riid, object);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

// The table is made when the first class comes, so the order in which files are
// initialised does not matter.
[[maybe_unused]] const bool registered = [] {
  RegisterNativeClass(kFileDialogClass, &MakeFileDialog);
  return true;
}();

}  // namespace
}  // namespace Orvix
