// The dialogs: what the dialog component is told, in which order, and how its
// answers become paths; the platform's own dialog with its packed record.
#include <gtest/gtest.h>

#include <cstring>

#include "orvix/host.h"
#include "tests/support/scripted_object.h"

namespace Orvix::testing {
namespace {

using Lines = std::vector<std::string>;

constexpr CLSID kDialogClass = {0xA4622060, 0xED13, 0x11CE, {0x9C, 0x0D, 0x00, 0xAA, 0x00, 0x62, 0xBE, 0x57}};

// Hands out the same dialog object again and again, and counts.
class DialogFactory final : public IClassFactory {
 public:
  explicit DialogFactory(ScriptedObject& dialog) : dialog_(dialog) {}
  HRESULT QueryInterface(REFIID iid, void** object) override {
    if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  ULONG AddRef() override { return 2; }
  ULONG Release() override { return 1; }
  HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    EXPECT_EQ(outer, nullptr);
    EXPECT_EQ(iid, IID_IDispatch);
    ++made;
    return fails ? E_FAIL : dialog_.QueryInterface(iid, object);
  }
  HRESULT LockServer(BOOL) override { return S_OK; }

  int made = 0;
  bool fails = false;

 private:
  ScriptedObject& dialog_;
};

class FileDialogsTest : public ::testing::Test {
 protected:
  FileDialogsTest() {
    EXPECT_EQ(CoRegisterClassObject(kDialogClass, &factory_, CLSCTX_INPROC_SERVER, 1, &registered_), S_OK);
    for (const TextView name : {u"Center", u"HideReadOnly", u"MultiSelect", u"ReadOnly", u"Title", u"OwnerWindow",
                                u"SaveDialog", u"OverwritePrompt"}) {
      dialog_.Takes(name);
    }
    dialog_.Takes(u"Directory");
    dialog_.Gives(u"Directory", u"C:\\data");
    dialog_.Takes(u"FileName");
    dialog_.Gives(u"FileName", u"a.txt");
    dialog_.Gives(u"Show", [](const auto&) { return Variant::Boolean(VARIANT_TRUE); });
    dialog_.Gives(u"Filters", &filters_);
    dialog_.Gives(u"Files", &files_);
    filters_.Gives(u"Add", [](const auto&) { return Variant(); });
  }
  ~FileDialogsTest() override {
    CoRevokeClassObject(registered_);
    EXPECT_EQ(dialog_.references, 1);
  }

  Text Open(bool several) {
    LONG owner = 42;
    VARIANT_BOOL multi_select = several ? VARIANT_TRUE : VARIANT_FALSE;
    return Returned([&](BSTR* result) {
      return orvix_->OpenFile(&owner, &cancel_, nullptr, nullptr, nullptr, nullptr, &multi_select, nullptr, nullptr,
                              nullptr, result);
    });
  }
  Text Save() {
    LONG owner = 42;
    return Returned([&](BSTR* result) {
      return orvix_->SaveFile(&owner, &cancel_, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, result);
    });
  }

  ScriptedObject filters_;
  ScriptedObject files_;
  ScriptedObject dialog_;
  DialogFactory factory_{dialog_};
  DWORD registered_ = 0;
  VARIANT_BOOL cancel_ = 7;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
};

TEST_F(FileDialogsTest, OpenFileSetsTheDialogUpInOrder) {
  EXPECT_EQ(Open(false), u"C:\\data\\a.txt");
  EXPECT_EQ(cancel_, VARIANT_FALSE);
  EXPECT_EQ(dialog_.log, (Lines{"put Center = BOOL -1", "put Directory = BSTR ", "put FileName = BSTR ",
                                "put HideReadOnly = BOOL -1", "put MultiSelect = BOOL 0", "put ReadOnly = BOOL 0",
                                "put Title = BSTR Open file", "put OwnerWindow = I4 42", "call Show", "get Directory",
                                "get FileName"}));
  EXPECT_TRUE(filters_.log.empty());
  EXPECT_EQ(Open(false), u"C:\\data\\a.txt");
  EXPECT_EQ(factory_.made, 2);  // one for every call
}

TEST_F(FileDialogsTest, SaveFileSetsTheDialogUpInOrder) {
  EXPECT_EQ(Save(), u"C:\\data\\a.txt");
  EXPECT_EQ(cancel_, VARIANT_FALSE);
  EXPECT_EQ(dialog_.log,
            (Lines{"put SaveDialog = BOOL -1", "put Center = BOOL -1", "put Directory = BSTR ", "put FileName = BSTR ",
                   "put Title = BSTR Save file", "put OverwritePrompt = BOOL -1", "put HideReadOnly = BOOL -1",
                   "put OwnerWindow = I4 42", "call Show", "get Directory", "get FileName"}));
}

TEST_F(FileDialogsTest, ArgumentsArriveAsTheyAreGiven) {
  LONG owner = -1;
  VARIANT_BOOL one = 1;
  VARIANT_BOOL no = VARIANT_FALSE;
  BstrHandle directory(u"D:\\");
  BstrHandle name(u"x.doc");
  BstrHandle title;
  BstrHandle filters(u"Text|*.txt||All|*.*|");
  BSTR texts[] = {directory.get(), name.get(), nullptr, filters.get()};
  EXPECT_EQ(Returned([&](BSTR* result) {
              return orvix_->OpenFile(&owner, &cancel_, &one, &texts[0], &texts[1], &no, &no, &one, &texts[2],
                                      &texts[3], result);
            }),
            u"C:\\data\\a.txt");
  // The filters come first, empty ones too.
  EXPECT_EQ(filters_.log, (Lines{"call Add BSTR Text", "call Add BSTR *.txt", "call Add BSTR ", "call Add BSTR All",
                                 "call Add BSTR *.*", "call Add BSTR "}));
  EXPECT_EQ(dialog_.log.front(), "get Filters");
  const Lines set_up(dialog_.log.begin() + 6, dialog_.log.begin() + 14);
  EXPECT_EQ(set_up, (Lines{"put Center = BOOL 1", "put Directory = BSTR D:\\", "put FileName = BSTR x.doc",
                           "put HideReadOnly = BOOL 0", "put MultiSelect = BOOL 0", "put ReadOnly = BOOL 1",
                           "put Title = BSTR ", "put OwnerWindow = I4 -1"}));
}

TEST_F(FileDialogsTest, SaveFilesArgumentsArriveAsTheyAreGiven) {
  LONG owner = 3;
  VARIANT_BOOL no = VARIANT_FALSE;
  BstrHandle directory(u"D:\\");
  BstrHandle name(u"x.doc");
  BstrHandle title(u"Keep");
  BstrHandle filters(u"Text|*.txt");
  BSTR texts[] = {directory.get(), name.get(), title.get(), filters.get()};
  EXPECT_EQ(Returned([&](BSTR* result) {
              return orvix_->SaveFile(&owner, &cancel_, &no, &texts[0], &texts[1], &texts[2], &texts[3], &no, result);
            }),
            u"C:\\data\\a.txt");
  EXPECT_EQ(filters_.log, (Lines{"call Add BSTR Text", "call Add BSTR *.txt"}));
  const Lines set_up(dialog_.log.begin() + 2, dialog_.log.begin() + 10);
  EXPECT_EQ(set_up, (Lines{"put SaveDialog = BOOL -1", "put Center = BOOL 0", "put Directory = BSTR D:\\",
                           "put FileName = BSTR x.doc", "put Title = BSTR Keep", "put OverwritePrompt = BOOL 0",
                           "put HideReadOnly = BOOL -1", "put OwnerWindow = I4 3"}));
}

TEST_F(FileDialogsTest, OneChosenFileAndItsDirectory) {
  struct Case {
    const char16_t* directory;
    const char16_t* path;
  };
  for (const Case& one : {Case{u"", u"a.txt"}, {u"C:\\", u"C:\\\\a.txt"}, {u"C:\\d", u"C:\\d\\a.txt"}}) {
    dialog_.Gives(u"Directory", TextView(one.directory));
    EXPECT_EQ(Open(false), one.path);
    EXPECT_EQ(Save(), one.path);
  }
}

TEST_F(FileDialogsTest, SeveralChosenFiles) {
  const char16_t* names[] = {u"a.txt", u"b c.txt", u"d"};
  files_.Gives(u"Count", LONG{3});
  files_.Gives(u"Item", [&](const auto& arguments) { return Variant(TextView(names[arguments[0].lVal])); });
  EXPECT_EQ(Open(true), u"C:\\data\\a.txt\tC:\\data\\b c.txt\tC:\\data\\d");
  dialog_.Gives(u"Directory", u"C:\\");
  EXPECT_EQ(Open(true), u"C:\\a.txt\tC:\\b c.txt\tC:\\d");
  files_.Gives(u"Count", LONG{1});
  dialog_.Gives(u"Directory", u"");
  EXPECT_EQ(Open(true), u"\\a.txt");
  files_.Gives(u"Count", LONG{0});
  EXPECT_EQ(Open(true), u"");
  EXPECT_EQ(cancel_, VARIANT_FALSE);
}

TEST_F(FileDialogsTest, ACancelledDialogIsNoError) {
  dialog_.Gives(u"Show", [](const auto&) { return Variant::Boolean(VARIANT_FALSE); });
  EXPECT_EQ(Open(true), u"");
  EXPECT_EQ(cancel_, VARIANT_TRUE);
  EXPECT_EQ(dialog_.log.back(), "call Show");
  cancel_ = 7;
  EXPECT_EQ(Save(), u"");
  EXPECT_EQ(cancel_, VARIANT_TRUE);
}

TEST_F(FileDialogsTest, ErrorsOfTheComponentReachTheCaller) {
  LONG owner = 0;
  BstrHandle text;
  const auto open = [&] {
    return orvix_->OpenFile(&owner, &cancel_, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                            text.Receive());
  };
  dialog_.Fails(u"Show", 1001);
  EXPECT_EQ(open(), MakeResult(0x800A03E9));
  EXPECT_EQ(TakeFailure(), (Failure{u"Scripted", u"refused"}));
  EXPECT_EQ(cancel_, 7);
  dialog_.Fails(u"Show", 0);
  dialog_.Fails(u"FileName", 0);
  dialog_.Fails(u"Directory", 0);
  dialog_.Gives(u"Show", LONG{5});  // any number but 0 confirms
  EXPECT_EQ(open(), S_OK);
  EXPECT_EQ(cancel_, VARIANT_FALSE);
  cancel_ = 7;
  dialog_.Gives(u"FileName", [](const auto&) -> Variant {
    Variant null;
    null.Receive()->vt = VT_NULL;
    return null;
  });
  EXPECT_EQ(open(), MakeResult(0x800A005E));
  EXPECT_EQ(cancel_, 7);  // nothing was chosen after all
  factory_.fails = true;
  EXPECT_EQ(open(), E_FAIL);
}

// ---- The platform's dialog --------------------------------------------------------------

template <class T>
T At(const std::string& bytes, std::size_t offset) {
  T value{};
  std::memcpy(&value, bytes.data() + offset, sizeof value);
  return value;
}
char* PointedTo(const std::string& record, std::size_t offset) {
  return reinterpret_cast<char*>(static_cast<std::uintptr_t>(At<LONG>(record, offset)));
}

class OpenFile1Test : public ::testing::Test {
 protected:
  OpenFile1Test() {
    OxHost host{};
    host.size = sizeof host;
    host.context = this;
    host.GetOpenFileNameA = [](void* self, void* request) {
      return static_cast<OpenFile1Test*>(self)->Serve(static_cast<const char*>(request));
    };
    OxSetHost(&host);
  }
  ~OpenFile1Test() override { OxSetHost(nullptr); }

  LONG Serve(const char* request) {
    record_.assign(request, 76);
    filter_.assign(PointedTo(record_, 12), 11);
    filter_seen_ = Text(ViewOf(filter_variable_));
    file_ = PointedTo(record_, 28);
    title_.assign(PointedTo(record_, 36), 513);
    rest_ = std::string(PointedTo(record_, 44)) + "|" + PointedTo(record_, 48) + "|" + PointedTo(record_, 60);
    if (!chosen_.empty()) std::memcpy(PointedTo(record_, 28), chosen_.c_str(), chosen_.size() + 1);
    return chosen_.empty() ? 0 : 1;
  }

  ComPtr<_classFilename> Open(TextView default_name) {
    LONG owner = 9;
    LONG index = 2;
    BstrHandle name(default_name);
    BstrHandle extension(u"txt");
    BstrHandle directory(u"C:\\caf\u00E9");
    BstrHandle title(u"Pick \u0416");
    BSTR texts[] = {name.get(), extension.get(), directory.get(), title.get()};
    SysFreeString(filter_variable_);
    filter_variable_ = BstrHandle(u"A|*.a|B|*").Detach();
    ComPtr<_classFilename> filename;
    EXPECT_EQ(orvix_->OpenFile1(&owner, &filter_variable_, &index, &texts[0], &texts[1], &texts[2], &texts[3],
                                filename.Receive()),
              S_OK);
    EXPECT_EQ(ViewOf(texts[3]), u"Pick \u0416");
    EXPECT_EQ(ViewOf(filter_variable_), TextView(u"A\0*.a\0B\0*\0\0", 11));
    SysFreeString(std::exchange(filter_variable_, nullptr));
    return filename;
  }

  std::string record_, filter_, file_, title_, rest_;
  std::string chosen_;
  Text filter_seen_;  // the caller's variable while the dialog is shown
  BSTR filter_variable_ = nullptr;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
};

TEST_F(OpenFile1Test, TheRecordIsFilledAsThePlatformReadsIt) {
  EXPECT_FALSE(Open(u"a.txt"));
  struct Field {
    std::size_t offset;
    LONG value;
  };
  for (const Field& field : {Field{0, 76},
                             {4, 9},
                             {8, 0},
                             {16, 0},
                             {20, 0},
                             {24, 2},
                             {32, 1029},
                             {40, 512},
                             {52, 0x382000},
                             {56, 0},
                             {64, 0},
                             {68, 0},
                             {72, 0}}) {
    EXPECT_EQ(At<LONG>(record_, field.offset), field.value) << field.offset;
  }
  EXPECT_EQ(filter_, std::string("A\0*.a\0B\0*\0\0", 11));
  EXPECT_EQ(filter_seen_, TextView(u"A\0*.a\0B\0*\0\0", 11));
  EXPECT_EQ(file_, "a.txt" + std::string(1024, ' '));
  EXPECT_EQ(title_, std::string(512, ' ') + '\0');
  EXPECT_EQ(rest_, "C:\\caf\xE9|Pick ?|txt");
}

TEST_F(OpenFile1Test, TheBufferComesBackAtItsFullLength) {
  chosen_ = "C:\\\x80";
  const ComPtr<_classFilename> filename = Open(u"default.txt");
  ASSERT_TRUE(filename);
  const Text name = Returned([&](BSTR* result) { return filename->get_CompleteFilename(result); });
  EXPECT_EQ(name, Text(TextView(u"C:\\\u20AC\0lt.txt", 11)) + Text(1024, u' '));
  EXPECT_EQ(Returned([&](BSTR* result) { return filename->get_Extension(result); }), u"txt" + Text(1024, u' '));
}

TEST_F(OpenFile1Test, WithoutADefaultNameThereIsNoRoom) {
  EXPECT_FALSE(Open(u""));
  EXPECT_EQ(At<LONG>(record_, 32), 0);
  EXPECT_EQ(file_, std::string(1024, ' '));
}

}  // namespace
}  // namespace Orvix::testing
