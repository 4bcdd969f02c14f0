#include <gtest/gtest.h>

#include <thread>

#include "orvix/host.h"
#include "orvix/runtime.h"
#include "tests/support/late_call.h"

namespace Orvix::testing {
namespace {

using component::ComPtr;
using component::Variant;

ComPtr<IDispatch> Global() {
  ComPtr<IDispatch> global;
  EXPECT_EQ(OxGlobalObject(global.Receive()), S_OK);
  return global;
}

ComPtr<IDispatch> NativeScreen() {
  LateResult screen = CallByName(Global().get(), u"Screen");
  EXPECT_EQ(screen.code, S_OK);
  EXPECT_EQ(screen.value.get().vt, VT_DISPATCH);
  return ComPtr<IDispatch>::Share(screen.value.get().pdispVal);
}

LONG LongFrom(IDispatch* object, const char16_t* name) {
  const LateResult result = CallByName(object, name);
  EXPECT_EQ(result.code, S_OK);
  EXPECT_EQ(result.value.get().vt, VT_I4);
  return result.value.get().lVal;
}

class GlobalObjectTest : public ::testing::Test {
 protected:
  ~GlobalObjectTest() override { OxSetHost(nullptr); }
};

TEST_F(GlobalObjectTest, NativeScreenHas1024By768PixelsOf15Units) {
  const ComPtr<IDispatch> screen = NativeScreen();
  EXPECT_EQ(LongFrom(screen.get(), u"Width"), 15360);
  EXPECT_EQ(LongFrom(screen.get(), u"HEIGHT"), 11520);
  EXPECT_EQ(PutByName(screen.get(), u"Width", Variant(LONG{1}).get()).code, DISP_E_MEMBERNOTFOUND);
}

TEST_F(GlobalObjectTest, ThePointerCodeIsKeptForTheWholeApplication) {
  const ComPtr<IDispatch> screen = NativeScreen();
  EXPECT_EQ(LongFrom(screen.get(), u"MousePointer"), 0);
  EXPECT_EQ(PutByName(screen.get(), u"mousepointer", Variant::Short(11).get()).code, S_OK);
  EXPECT_EQ(LongFrom(screen.get(), u"MousePointer"), 11);
  std::thread([] { EXPECT_EQ(LongFrom(NativeScreen().get(), u"MousePointer"), 11); }).join();
  const Variant wrong{TextView(u"arrow")};
  const LateResult failed = PutByName(screen.get(), u"MousePointer", wrong.get());
  EXPECT_EQ(failed.code, DISP_E_EXCEPTION);
  EXPECT_EQ(failed.scode, MakeResult(0x800A000D));
  EXPECT_EQ(failed.description, u"Type mismatch");
  EXPECT_EQ(PutByName(screen.get(), u"MousePointer", Variant(LONG{0}).get()).code, S_OK);
  EXPECT_EQ(LongFrom(screen.get(), u"MousePointer"), 0);
}

// Hands out collections, which serve as any object does, and counts.
struct CountingHost {
  int asked = 0;
  bool refuses = false;
  ComPtr<IDispatch> last;

  void Install() {
    OxHost table{};
    table.size = sizeof table;
    table.context = this;
    table.GlobalObject = [](void* context) -> IDispatch* {
      auto* const self = static_cast<CountingHost*>(context);
      ++self->asked;
      if (self->refuses) return nullptr;
      IDispatch* object = nullptr;
      EXPECT_EQ(OxCreateCollection(&object), S_OK);
      self->last = ComPtr<IDispatch>::Share(object);
      return object;
    };
    ASSERT_EQ(OxSetHost(&table), S_OK);
  }
};

TEST_F(GlobalObjectTest, TheHostIsAskedOnceAThread) {
  CountingHost host;
  host.Install();
  const IDispatch* const mine = Global().get();
  EXPECT_EQ(Global().get(), mine);
  EXPECT_EQ(host.asked, 1);
  std::thread([&] {
    EXPECT_NE(Global().get(), mine);
    Global();
  }).join();
  EXPECT_EQ(host.asked, 2);
}

TEST_F(GlobalObjectTest, ANewHostIsAskedAnewAndTheOldObjectIsReleased) {
  CountingHost host;
  host.Install();
  Global();
  const ComPtr<IDispatch> first = host.last;
  host.Install();
  host.last = nullptr;
  first->AddRef();
  EXPECT_EQ(first->Release(), 1u);  // ours alone
  EXPECT_NE(Global().get(), first.get());
  EXPECT_EQ(host.asked, 2);
  OxSetHost(nullptr);
  EXPECT_EQ(LongFrom(NativeScreen().get(), u"Width"), 15360);
}

TEST_F(GlobalObjectTest, AHostWithoutAnObjectIsError91AndIsAskedAgain) {
  CountingHost host;
  host.refuses = true;
  host.Install();
  IDispatch* global = nullptr;
  EXPECT_EQ(OxGlobalObject(&global), MakeResult(0x800A005B));
  EXPECT_EQ(global, nullptr);
  host.refuses = false;
  EXPECT_TRUE(Global());
  EXPECT_EQ(host.asked, 2);
  EXPECT_EQ(OxGlobalObject(nullptr), E_POINTER);
}

TEST_F(GlobalObjectTest, DoEventsIsTheHostsOrNothing) {
  EXPECT_EQ(OxDoEvents(), S_OK);
  int calls = 0;
  OxHost table{};
  table.size = sizeof table;
  table.context = &calls;
  table.DoEvents = [](void* context) { ++*static_cast<int*>(context); };
  ASSERT_EQ(OxSetHost(&table), S_OK);
  EXPECT_EQ(OxDoEvents(), S_OK);
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace Orvix::testing
