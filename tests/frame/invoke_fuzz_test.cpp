// Every member of every class called by name with arguments of all kinds, with a
// fixed seed: whatever comes in, the answer is a result code with its text, and
// nothing is lost or touched that should not be. The sanitizers look on.
#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "orvix/host.h"
#include "tests/support/component.h"
#include "tests/support/native_directory.h"

namespace Orvix::testing {
namespace {

constexpr int kCalls = 30'000;

// The caller's side of one argument: a value, or a reference to what stands here.
class Argument {
 public:
  Argument(std::mt19937& random, const std::vector<ComPtr<IDispatch>>& objects) : random_(random) {
    FillPlain(objects);
    switch (Pick(4)) {
      case 0:
        value_ = held_;
        value_.vt = static_cast<VARTYPE>(held_.vt | VT_BYREF);
        value_.byref = &held_.lVal;
        // An empty or missing value cannot be referred to by its type.
        if (held_.vt != VT_EMPTY && held_.vt != VT_NULL) return;
        [[fallthrough]];
      case 1:
        value_.vt = VT_BYREF | VT_VARIANT;
        value_.pvarVal = &held_;
        return;
      default:
        value_ = held_;
    }
  }
  Argument(const Argument&) = delete;
  Argument& operator=(const Argument&) = delete;
  ~Argument() { VariantClear(&held_); }
  [[nodiscard]] VARIANT value() const { return value_; }

 private:
  int Pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }

  LONG Number() {
    constexpr LONG kNumbers[] = {0, 1, 2, 3, 5, 16, 255, 256, 300, -1, -2, 70000, 2147483647, -2147483647 - 1};
    return kNumbers[Pick(std::size(kNumbers))];
  }
  Text Words() {
    const Text texts[] = {u"",     u"a",    u",",         u"a,b,c",           Text(3, u'\0'),
                          u"12",   u"&HFF", u"1/2",       u"\u20AC\u0416",    u"x\\y",
                          u"C:",   u"..",   u"Q:\\a.txt", Text(1, u'\xD800'), u"|*?",
                          u"a.b.", u"//s",  u"Text",      Text(600, u'x')};
    return texts[Pick(std::size(texts))];
  }

  void FillPlain(const std::vector<ComPtr<IDispatch>>& objects) {
    switch (Pick(13)) {
      case 0:
        break;  // Empty
      case 1:
        held_.vt = VT_NULL;
        break;
      case 2:
        held_.vt = VT_ERROR;
        held_.scode = Pick(2) == 0 ? DISP_E_PARAMNOTFOUND : E_FAIL;
        break;
      case 3:
        held_.vt = VT_I2;
        held_.iVal = static_cast<SHORT>(Number());
        break;
      case 4:
        held_.vt = VT_R8;
        held_.dblVal = Number() * 1.5e5;
        break;
      case 5:
        held_.vt = VT_BOOL;
        held_.boolVal = static_cast<VARIANT_BOOL>(Pick(3) - 1);
        break;
      case 6:
        held_.vt = VT_DATE;
        held_.date = Number();
        break;
      case 7: {
        held_.vt = VT_DISPATCH;
        ComPtr<IDispatch> object = objects[static_cast<std::size_t>(Pick(static_cast<int>(objects.size())))];
        held_.pdispVal = Pick(4) == 0 ? nullptr : object.Detach();
        break;
      }
      case 8: {
        constexpr VARTYPE kTypes[] = {VT_VARIANT, VT_BSTR, VT_UI1, VT_R4};
        const VARTYPE type = kTypes[Pick(std::size(kTypes))];
        SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(Pick(3)), Pick(3) - 1}, {1, 0}};
        held_.vt = static_cast<VARTYPE>(VT_ARRAY | type);
        held_.parray = Pick(4) == 0 ? nullptr : SafeArrayCreate(type, Pick(5) == 0 ? 2 : 1, bounds);
        break;
      }
      case 9:
      case 10:
        held_.vt = VT_I4;
        held_.lVal = Number();
        break;
      default:
        held_.vt = VT_BSTR;
        held_.bstrVal = Pick(8) == 0 ? nullptr : BstrHandle(Words()).Detach();
    }
  }

  std::mt19937& random_;
  VARIANT held_{};
  VARIANT value_{};
};

// Sorting an empty list does not return, and callers rely on it.
bool IsCalled(TextView name) { return name.find(u"Sort") == TextView::npos && name.find(u"Soft") == TextView::npos; }

struct Function {
  std::size_t object;
  DISPID id;
  WORD kind;
  int parameters;
};

class FuzzTest : public ::testing::Test {
 protected:
  FuzzTest() : before_(std::filesystem::current_path()) {
    std::filesystem::current_path(directory_.Native(""));
    // Nothing outside the directory is opened, moved, shown or waited for.
    OxHost host{};
    host.size = sizeof host;
    host.MessageBox = [](void*, const OLECHAR*, LONG, const OLECHAR*) -> LONG { return 1; };
    host.SHFileOperationA = [](void*, void*) -> LONG { return 0; };
    host.ShellExecuteA = [](void*, LONG, const char*, const char*, const char*, const char*, LONG) -> LONG {
      return 2;
    };
    host.WinHelpA = [](void*, LONG, const char*, LONG, LONG) -> LONG { return 0; };
    host.HtmlHelpA = [](void*, LONG, const char*, LONG, LONG) -> LONG { return 0; };
    host.GetOpenFileNameA = [](void*, void*) -> LONG { return 1; };
    host.sndPlaySoundA = [](void*, const char*, LONG) -> LONG { return 0; };
    host.Sleep = [](void*, std::uint32_t) {};
    std::uint32_t (*const ticks)(void*) = [](void*) -> std::uint32_t {
      static std::uint32_t now = 0;
      return now += 0x10000000;  // waiting is soon over
    };
    host.GetTickCount = ticks;
    OxSetHost(&host);
  }
  ~FuzzTest() override {
    OxSetHost(nullptr);
    std::filesystem::current_path(before_);
  }

  // A stack may hold itself, or another that holds it.
  void DropObjects() {
    for (const ComPtr<IDispatch>& object : objects_) InvokeNamed(object.get(), u"Reset", DISPATCH_METHOD, {});
    objects_.clear();
  }
  void MakeObjects() {
    DropObjects();
    for (const CLSID* clsid : {&CLSID_classOrvix, &CLSID_classFilename, &CLSID_classDirectory, &CLSID_classString,
                               &CLSID_classStack, &CLSID_classStackObject, &CLSID_CSHFileOp}) {
      objects_.push_back(Make<IDispatch>(*clsid, IID_IDispatch));
    }
  }

  std::vector<Function> Functions() const {
    std::vector<Function> functions;
    for (std::size_t i = 0; i < objects_.size(); ++i) {
      ComPtr<ITypeInfo> info;
      EXPECT_EQ(objects_[i]->GetTypeInfo(0, 0, info.Receive()), S_OK);
      FUNCDESC* function = nullptr;
      for (UINT at = 0; info->GetFuncDesc(at, &function) == S_OK; ++at) {
        BstrHandle name;
        info->GetDocumentation(function->memid, name.Receive(), nullptr, nullptr, nullptr);
        if (IsCalled(name.View())) {
          functions.push_back({i, function->memid, static_cast<WORD>(function->invkind), function->cParams});
        }
        info->ReleaseFuncDesc(function);
      }
    }
    return functions;
  }

  std::vector<ComPtr<IDispatch>> objects_;
  NativeDirectory directory_;

 private:
  std::filesystem::path before_;
};

TEST_F(FuzzTest, AnyArgumentsGetAnAnswer) {
  std::mt19937 random(20021130);
  const auto pick = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
  MakeObjects();
  const std::vector<Function> functions = Functions();
  ASSERT_GT(functions.size(), 150U);
  int raised = 0;
  int done = 0;
  for (int call = 0; call < kCalls; ++call) {
    if (call % 500 == 0) MakeObjects();
    const Function& function = functions[static_cast<std::size_t>(pick(static_cast<int>(functions.size())))];
    // Mostly as many arguments as there are parameters.
    const int count = pick(5) == 0 ? pick(function.parameters + 2) : function.parameters;
    std::vector<std::unique_ptr<Argument>> arguments;
    std::vector<VARIANT> values;
    for (int i = 0; i < count; ++i) {
      arguments.push_back(std::make_unique<Argument>(random, objects_));
      values.push_back(arguments.back()->value());
    }
    const bool puts = (function.kind & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPID named[] = {puts ? DISPID_PROPERTYPUT : DISPID{pick(3)}};
    const bool names_one = count > 0 && (puts || pick(10) == 0);
    DISPPARAMS params{values.data(), names_one ? named : nullptr, static_cast<UINT>(count), names_one ? 1U : 0U};
    const WORD kind = pick(50) == 0 ? static_cast<WORD>(pick(16)) : function.kind;
    const DISPID id = pick(100) == 0 ? pick(200) - 50 : function.id;
    Variant result;
    EXCEPINFO exception{};
    UINT wrong = 0;
    const ComPtr<IDispatch> object = objects_[function.object];
    const HRESULT code =
        object->Invoke(id, IID_NULL, 0, kind, &params, pick(4) == 0 ? nullptr : result.Address(), &exception, &wrong);
    if (code == DISP_E_EXCEPTION) {
      ++raised;
      EXPECT_NE(exception.scode, S_OK);
      EXPECT_NE(SysStringLen(exception.bstrDescription), 0U) << function.id;
      EXPECT_NE(SysStringLen(exception.bstrSource), 0U) << function.id;
    } else {
      done += code == S_OK ? 1 : 0;
      // Codes of the dispatch facility, or success.
      EXPECT_TRUE(code == S_OK || (static_cast<ULONG>(code) & 0xFFFFFF00U) == 0x80020000U || code == E_INVALIDARG)
          << std::hex << code << " from " << std::dec << function.id;
    }
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
  }
  // Both ways are gone often enough to mean something.
  EXPECT_GT(done, kCalls / 10);
  EXPECT_GT(raised, kCalls / 100);
  DropObjects();
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

}  // namespace
}  // namespace Orvix::testing
