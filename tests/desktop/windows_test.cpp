// Windows and controls: which members are read and written, in which order and
// with which values; what failing steps leave undone.
#include <gtest/gtest.h>

#include "tests/support/recording_host.h"
#include "tests/support/scripted_object.h"

namespace Orvix::testing {
namespace {

using Lines = std::vector<std::string>;

VARIANT_BOOL kTrue = VARIANT_TRUE;
VARIANT_BOOL kFalse = VARIANT_FALSE;

// An application whose global object, window service and event queue are watched.
class WindowsTest : public ::testing::Test {
 protected:
  WindowsTest() {
    screen_.Gives(u"Width", LONG{15360});
    screen_.Gives(u"Height", LONG{11520});
    screen_.Takes(u"MousePointer");
    global_.Gives(u"Screen", &screen_);
    OxHost host{};
    host.size = sizeof host;
    host.context = this;
    host.GlobalObject = [](void* self) -> IDispatch* {
      auto* const test = static_cast<WindowsTest*>(self);
      ++test->globals_asked_;
      test->global_.AddRef();
      return &test->global_;
    };
    host.SetWindowPos = [](void* self, LONG window, LONG after, LONG x, LONG y, LONG cx, LONG cy, LONG flags) -> LONG {
      static_cast<WindowsTest*>(self)->placed_ = {window, after, x, y, cx, cy, flags};
      return 0;  // a failure that nobody looks at
    };
    host.GetInputState = [](void* self) -> LONG { return static_cast<WindowsTest*>(self)->input_waits_; };
    host.DoEvents = [](void* self) { ++static_cast<WindowsTest*>(self)->events_handled_; };
    OxSetHost(&host);
  }
  ~WindowsTest() override { OxSetHost(nullptr); }

  HRESULT Select(ScriptedObject& combo, TextView text) {
    BstrHandle wanted(text);
    BSTR variable = wanted.get();
    IDispatch* object = &combo;
    return orvix_->SetComboElement(&object, &variable);
  }

  ScriptedObject screen_;
  ScriptedObject global_;
  LONG globals_asked_ = 0;
  std::vector<LONG> placed_;
  LONG input_waits_ = 0;
  LONG events_handled_ = 0;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
};

TEST_F(WindowsTest, AlwaysInFrontIsOneCallOfTheWindowService) {
  LONG handle = 77, x = -5, y = 6, cx = 0, cy = 0;
  EXPECT_EQ(orvix_->AlwaysInFront(&handle, &x, &y, &cx, &cy), S_OK);
  EXPECT_EQ(placed_, (std::vector<LONG>{77, -1, -5, 6, 0, 0, 0x50}));
}

TEST_F(WindowsTest, CenterWindowUsesTheInnerMeasure) {
  ScriptedObject form;
  form.Gives(u"ScaleWidth", [this](const auto&) {
    EXPECT_EQ(screen_.log, (Lines{"get Width"}));  // the screen comes first
    return Variant(LONG{4001});
  });
  form.Gives(u"ScaleHeight", [](const auto&) { return Variant(20000.5); });
  form.Takes(u"Left");
  form.Takes(u"Top");
  IDispatch* window = &form;
  EXPECT_EQ(orvix_->CenterWindow(&window), S_OK);
  EXPECT_EQ(form.log, (Lines{"get ScaleWidth", "put Left = R8 5679.5", "get ScaleHeight", "put Top = R8 -4240.25"}));
  EXPECT_EQ(screen_.log, (Lines{"get Width", "get Height"}));
  EXPECT_EQ(form.references, 1);
}

TEST_F(WindowsTest, CenterWindowPassesErrorsOn) {
  IDispatch* none = nullptr;
  EXPECT_EQ(orvix_->CenterWindow(&none), MakeResult(0x800A005B));
  EXPECT_EQ(orvix_->CenterWindow(nullptr), E_POINTER);

  ScriptedObject bare;
  IDispatch* window = &bare;
  EXPECT_EQ(orvix_->CenterWindow(&window), MakeResult(0x800A01B6));
  ScriptedObject half;  // moved across before the failure
  half.Gives(u"ScaleWidth", u"360");
  half.Takes(u"Left");
  half.Fails(u"ScaleHeight", 1234);
  window = &half;
  EXPECT_EQ(orvix_->CenterWindow(&window), MakeResult(0x800A04D2));
  EXPECT_EQ(TakeFailure(), (Failure{u"Scripted", u"refused"}));
  EXPECT_EQ(half.log, (Lines{"get ScaleWidth", "put Left = R8 7500.0", "get ScaleHeight"}));
}

TEST_F(WindowsTest, TheHourglassDoesNotNest) {
  EXPECT_EQ(orvix_->HourglassOn(), S_OK);
  EXPECT_EQ(orvix_->HourglassOn(), S_OK);
  EXPECT_EQ(orvix_->HourglassOff(), S_OK);
  EXPECT_EQ(screen_.log, (Lines{"put MousePointer = I4 11", "put MousePointer = I4 11", "put MousePointer = I4 0"}));
  EXPECT_EQ(globals_asked_, 1);  // one reference a thread
  screen_.Fails(u"MousePointer", 70);
  EXPECT_EQ(orvix_->HourglassOn(), MakeResult(0x800A0046));
  EXPECT_EQ(orvix_->HourglassOff(), MakeResult(0x800A0046));
}

TEST_F(WindowsTest, SetComboElementSelectsTheFirstEqualEntry) {
  const char16_t* entries[] = {u"red", u"Green", u"green", u"green"};
  ScriptedObject combo;
  combo.Gives(u"ListCount", LONG{4});
  combo.Gives(u"List", [&](const auto& arguments) { return Variant(TextView(entries[arguments[0].lVal])); });
  combo.Takes(u"ListIndex");
  EXPECT_EQ(Select(combo, u"green"), S_OK);
  EXPECT_EQ(combo.log,
            (Lines{"get ListCount", "get List I4 0", "get List I4 1", "get List I4 2", "put ListIndex = I4 2"}));
  combo.log.clear();
  EXPECT_EQ(Select(combo, u"GREEN"), S_OK);
  EXPECT_EQ(combo.log.size(), 5U);  // all four read, nothing written
  EXPECT_EQ(combo.log.back(), "get List I4 3");
}

TEST_F(WindowsTest, SetComboElementCountsAndComparesValuesAsTheyCome) {
  ScriptedObject combo;
  combo.Gives(u"List", LONG{12});
  combo.Takes(u"ListIndex");
  combo.Gives(u"ListCount", LONG{0});
  EXPECT_EQ(Select(combo, u"12"), S_OK);
  EXPECT_EQ(combo.log, (Lines{"get ListCount"}));
  combo.Gives(u"ListCount", u"1");
  EXPECT_EQ(Select(combo, u"12"), S_OK);
  EXPECT_EQ(combo.log.back(), "put ListIndex = I4 0");

  combo.Gives(u"ListCount", LONG{2});  // Null is equal to nothing
  combo.Gives(u"List", [](const auto& arguments) {
    Variant entry(TextView(u"12"));
    if (arguments[0].lVal == 0) entry.Receive()->vt = VT_NULL;
    return entry;
  });
  EXPECT_EQ(Select(combo, u"12"), S_OK);
  EXPECT_EQ(combo.log.back(), "put ListIndex = I4 1");

  combo.Gives(u"List", u"12");
  combo.Gives(u"ListCount", [](const auto&) { return Variant(1.5); });  // 0.5 rounds to the even 0
  EXPECT_EQ(Select(combo, u"13"), S_OK);
  EXPECT_EQ(combo.log.back(), "get List I4 0");
  combo.Gives(u"ListCount", [](const auto&) { return Variant(2.5); });
  EXPECT_EQ(Select(combo, u"13"), S_OK);
  EXPECT_EQ(combo.log.back(), "get List I4 2");

  combo.Gives(u"ListCount", u"many");
  EXPECT_EQ(Select(combo, u"12"), MakeResult(0x800A000D));
  combo.Gives(u"ListCount", LONG{3});
  combo.Fails(u"List", 381);
  EXPECT_EQ(Select(combo, u"12"), MakeResult(0x800A017D));
}

// The list's own code may change the variable that holds the text looked for.
TEST_F(WindowsTest, SetComboElementReadsTheCallersTextEachTime) {
  BSTR variable = BstrHandle(u"first").Detach();
  ScriptedObject combo;
  combo.Gives(u"ListCount", LONG{3});
  combo.Gives(u"List", [&](const auto&) {
    SysFreeString(variable);
    variable = BstrHandle(u"second").Detach();
    return Variant(TextView(u"second"));
  });
  combo.Takes(u"ListIndex");
  IDispatch* object = &combo;
  EXPECT_EQ(orvix_->SetComboElement(&object, &variable), S_OK);
  EXPECT_EQ(combo.log.back(), "put ListIndex = I4 0");
  SysFreeString(variable);
}

TEST_F(WindowsTest, LockingAndUnlocking) {
  struct Case {
    bool locks;
    VARIANT_BOOL* has_locked_property;
    Lines log;
  };
  VARIANT_BOOL one = 1;
  const Case cases[] = {
      {true, nullptr, {"put Locked = BOOL -1", "put BackColor = I4 -2147483633"}},
      {true, &kTrue, {"put Locked = BOOL -1", "put BackColor = I4 -2147483633"}},
      {true, &one, {"put Locked = BOOL -1", "put BackColor = I4 -2147483633"}},
      {true, &kFalse, {"put Enabled = BOOL 0", "put BackColor = I4 -2147483633"}},
      {false, nullptr, {"put Locked = BOOL 0", "put BackColor = I4 -2147483643"}},
      {false, &kFalse, {"put Enabled = BOOL -1", "put BackColor = I4 -2147483643"}},
  };
  for (const Case& one_case : cases) {
    ScriptedObject control;
    for (const TextView name : {u"Locked", u"Enabled", u"BackColor"}) control.Takes(name);
    IDispatch* object = &control;
    EXPECT_EQ(one_case.locks ? orvix_->LockControl(&object, one_case.has_locked_property)
                             : orvix_->UnLockControl(&object, one_case.has_locked_property),
              S_OK);
    EXPECT_EQ(control.log, one_case.log);
  }
}

TEST_F(WindowsTest, AFailingStepIsLeftOut) {
  ScriptedObject label;  // without Locked
  label.Takes(u"BackColor");
  IDispatch* object = &label;
  EXPECT_EQ(orvix_->LockControl(&object, nullptr), S_OK);
  EXPECT_EQ(label.log, (Lines{"put BackColor = I4 -2147483633"}));
  EXPECT_EQ(TakeFailure().source, u"(none)");

  ScriptedObject plain;  // its colour is fixed
  plain.Takes(u"Enabled");
  plain.Fails(u"BackColor", 380);
  object = &plain;
  EXPECT_EQ(orvix_->UnLockControl(&object, &kFalse), S_OK);
  EXPECT_EQ(plain.log.front(), "put Enabled = BOOL -1");
  EXPECT_EQ(TakeFailure().source, u"(none)");

  object = nullptr;
  EXPECT_EQ(orvix_->LockControl(&object, nullptr), S_OK);
}

TEST_F(WindowsTest, TextBoxSetFocusSelectsTheWholeText) {
  ScriptedObject box;
  box.Gives(u"SetFocus", [](const auto&) { return Variant(); });
  box.Takes(u"SelStart");
  box.Takes(u"SelLength");
  box.Gives(u"Text", u"twelve chars");
  IDispatch* object = &box;
  Variant result(LONG{5});
  EXPECT_EQ(orvix_->TextBoxSetFocus(&object, result.Address()), S_OK);
  EXPECT_EQ(result.get().vt, VT_EMPTY);
  EXPECT_EQ(box.log, (Lines{"call SetFocus", "put SelStart = I4 0", "get Text", "put SelLength = I4 12"}));

  box.log.clear();
  box.Fails(u"SelStart", 5);
  EXPECT_EQ(orvix_->TextBoxSetFocus(&object, result.Address()), S_OK);
  EXPECT_EQ(box.log.back(), "put SelLength = I4 12");
  box.log.clear();
  box.Fails(u"SetFocus", 5);
  box.Fails(u"Text", 5);
  EXPECT_EQ(orvix_->TextBoxSetFocus(&object, result.Address()), S_OK);
  EXPECT_EQ(box.log, (Lines{"call SetFocus", "put SelStart = I4 0", "get Text"}));
}

TEST_F(WindowsTest, MyDoEventsLooksAtInputOnlyForExactlyTrue) {
  struct Case {
    LONG input_waits;
    VARIANT_BOOL argument;
    LONG handled;
  };
  for (const Case& one_case : {Case{0, -1, 0}, {1, -1, 1}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}}) {
    input_waits_ = one_case.input_waits;
    events_handled_ = 0;
    VARIANT_BOOL argument = one_case.argument;
    EXPECT_EQ(orvix_->MyDoEvents(&argument), S_OK);
    EXPECT_EQ(events_handled_, one_case.handled) << one_case.input_waits << " " << argument;
  }
  input_waits_ = 0;
  events_handled_ = 0;
  EXPECT_EQ(orvix_->MyDoEvents(nullptr), S_OK);
  EXPECT_EQ(events_handled_, 0);
}

}  // namespace
}  // namespace Orvix::testing
