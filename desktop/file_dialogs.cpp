// The open and save dialogs of the external dialog component, of which every
// call makes an instance of its own.
#include "frame/class_orvix.h"
#include "frame/late_binding.h"

namespace Orvix::component {

namespace {

constexpr CLSID kDialogClass = {0xA4622060, 0xED13, 0x11CE, {0x9C, 0x0D, 0x00, 0xAA, 0x00, 0x62, 0xBE, 0x57}};

constexpr TextView kFilterSeparator = u"|";
constexpr char16_t kPathSeparator = u'\\';

Text TextOf(const Variant& value) {
  BstrHandle text;
  CheckConversion(OxTextOf(&value.get(), text.Receive()));
  return Text(text.View());
}

class Dialog {
 public:
  Dialog() {
    CheckRuntime(
        CoCreateInstance(kDialogClass, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, component_.ReceiveVoid()));
  }

  void AddFilter(TextView filter) {
    const Variant text(filter);
    CallMember(ObjectOf(GetMember(component_.get(), u"Filters")).get(), u"Add", {&text.get(), 1});
  }

  void Put(TextView member, TextView value) { PutMember(component_.get(), member, Variant(value).get()); }
  void Put(TextView member, LONG value) { PutMember(component_.get(), member, Variant(value).get()); }
  void PutTruth(TextView member, VARIANT_BOOL value) {
    PutMember(component_.get(), member, Variant::Boolean(value).get());
  }

  // False when the user cancelled.
  [[nodiscard]] bool Show() {
    const Variant answer = CallMember(component_.get(), u"Show");
    Variant confirmed;
    CheckConversion(VariantChangeType(confirmed.Address(), &answer.get(), 0, VT_BOOL));
    return confirmed.get().boolVal != VARIANT_FALSE;
  }

  [[nodiscard]] Text Directory() const { return TextOf(GetMember(component_.get(), u"Directory")); }

  // The paths of several chosen files, a tab between them.
  [[nodiscard]] Text ChosenFiles() const {
    const ComPtr<IDispatch> files = ObjectOf(GetMember(component_.get(), u"Files"));
    const Variant count = GetMember(files.get(), u"Count");
    LONG number_of_files = 0;
    CheckConversion(OxLongOf(&count.get(), &number_of_files));
    Text chosen;
    for (LONG i = 0; i < number_of_files; ++i) {
      Text item = Directory();
      if (!item.ends_with(kPathSeparator)) item += kPathSeparator;
      const Variant index(i);
      item += TextOf(GetMember(files.get(), u"Item", {&index.get(), 1}));
      if (!chosen.empty()) chosen += u'\t';
      chosen += item;
    }
    return chosen;
  }

  // The path of the one chosen file. A root directory doubles its separator
  // here, unlike among several files; callers rely on it.
  [[nodiscard]] Text ChosenFile() const {
    Text path = Directory();
    if (!path.empty()) path += kPathSeparator;
    return path + TextOf(GetMember(component_.get(), u"FileName"));
  }

 private:
  ComPtr<IDispatch> component_;
};

// What the caller's variables hold now: the component is foreign, and may lead
// back into the application while they are still needed.
struct Wording {
  Text directory;
  Text file_name;
  Text title;
};

}  // namespace

Text classOrvix::OpenFile(LONG owner, VARIANT_BOOL& cancel, TrueByDefault center, TextOr<u""> initial_directory,
                          TextOr<u""> default_file_name, TrueByDefault hide_read_only, FalseByDefault multi_select,
                          FalseByDefault read_only, TextOr<u"Open file"> title, TextOr<u""> filters) {
  const Wording wording{Text(initial_directory), Text(default_file_name), Text(title)};
  const Text filter_list(filters);
  Dialog dialog;
  for (LONG i = 1, count = LengthList(filter_list, kFilterSeparator); !filter_list.empty() && i <= count; ++i) {
    dialog.AddFilter(GetElement(filter_list, i, kFilterSeparator).View());
  }
  dialog.PutTruth(u"Center", center.raw);
  dialog.Put(u"Directory", wording.directory);
  dialog.Put(u"FileName", wording.file_name);
  dialog.PutTruth(u"HideReadOnly", hide_read_only.raw);
  dialog.PutTruth(u"MultiSelect", multi_select.raw);
  dialog.PutTruth(u"ReadOnly", read_only.raw);
  dialog.Put(u"Title", wording.title);
  dialog.Put(u"OwnerWindow", owner);
  if (!dialog.Show()) {
    cancel = VARIANT_TRUE;
    return {};
  }
  Text chosen = multi_select ? dialog.ChosenFiles() : dialog.ChosenFile();
  cancel = VARIANT_FALSE;
  return chosen;
}

Text classOrvix::SaveFile(LONG owner, VARIANT_BOOL& cancel, TrueByDefault center, TextOr<u""> initial_directory,
                          TextOr<u""> default_file_name, TextOr<u"Save file"> title, TextOr<u""> filters,
                          TrueByDefault overwrite_prompt) {
  const Wording wording{Text(initial_directory), Text(default_file_name), Text(title)};
  const Text filter_list(filters);
  Dialog dialog;
  for (LONG i = 1, count = LengthList(filter_list, kFilterSeparator); !filter_list.empty() && i <= count; ++i) {
    dialog.AddFilter(GetElement(filter_list, i, kFilterSeparator).View());
  }
  dialog.PutTruth(u"SaveDialog", VARIANT_TRUE);
  dialog.PutTruth(u"Center", center.raw);
  dialog.Put(u"Directory", wording.directory);
  dialog.Put(u"FileName", wording.file_name);
  dialog.Put(u"Title", wording.title);
  dialog.PutTruth(u"OverwritePrompt", overwrite_prompt.raw);
  dialog.PutTruth(u"HideReadOnly", VARIANT_TRUE);
  dialog.Put(u"OwnerWindow", owner);
  if (!dialog.Show()) {
    cancel = VARIANT_TRUE;
    return {};
  }
  Text chosen = dialog.ChosenFile();
  cancel = VARIANT_FALSE;
  return chosen;
}

}  // namespace Orvix::component
