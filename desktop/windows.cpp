// Windows, the pointer and the caller's controls. Controls are objects of the
// caller's environment, reached by the names of their members.
#include "desktop/ansi_arguments.h"
#include "frame/class_orvix.h"
#include "frame/error_styles.h"
#include "frame/late_binding.h"

namespace Orvix::component {

namespace {

constexpr LONG kTopmost = -1;
constexpr UINT kShowWindow = 0x40;
constexpr UINT kNoActivate = 0x10;

constexpr LONG kDefaultPointer = 0;
constexpr LONG kHourglass = 11;

// System colours: an index with the high bit set.
constexpr LONG kButtonFace = static_cast<LONG>(0x8000000F);
constexpr LONG kWindowBackground = static_cast<LONG>(0x80000005);

// The screen of the application's global object, which the runtime keeps for
// each thread.
ComPtr<IDispatch> Screen() {
  ComPtr<IDispatch> global;
  CheckRuntime(OxGlobalObject(global.Receive()));
  return ObjectOf(GetMember(global.get(), u"Screen"));
}

double NumberOf(const Variant& value) {
  Variant number;
  CheckConversion(VariantChangeType(number.Address(), &value.get(), 0, VT_R8));
  return number.get().dblVal;
}

LONG LongOf(const VARIANT& value) {
  LONG number = 0;
  CheckConversion(OxLongOf(&value, &number));
  return number;
}

void SetPointer(LONG code) { PutMember(Screen().get(), u"MousePointer", Variant(code).get()); }

// The form's own inner measure counts, not its outer one: callers rely on it.
void Center(IDispatch* screen, IDispatch* window, TextView extent, TextView inner_extent, TextView place) {
  const double whole = NumberOf(GetMember(screen, extent));
  const double inner = NumberOf(GetMember(window, inner_extent));
  PutMember(window, place, Variant((whole - inner) / 2).get());
}

// A failing step is left out: a control without the one member still gets the
// other.
void ShowLocked(IDispatch* control, bool has_locked_property, bool locked) {
  SkipIfFails([&] {
    const TextView property = has_locked_property ? u"Locked" : u"Enabled";
    const bool value = has_locked_property ? locked : !locked;
    PutMember(control, property, Variant::Boolean(value ? VARIANT_TRUE : VARIANT_FALSE).get());
  });
  SkipIfFails([&] { PutMember(control, u"BackColor", Variant(locked ? kButtonFace : kWindowBackground).get()); });
}

}  // namespace

void classOrvix::AlwaysInFront(LONG handle, LONG x, LONG y, LONG width, LONG height) {
  SetWindowPos(WindowOf(handle), WindowOf(kTopmost), x, y, width, height, kShowWindow | kNoActivate);
}

void classOrvix::CenterWindow(IDispatch* window) {
  const ComPtr<IDispatch> screen = Screen();
  Center(screen.get(), window, u"Width", u"ScaleWidth", u"Left");
  Center(screen.get(), window, u"Height", u"ScaleHeight", u"Top");
}

void classOrvix::HourglassOn() { SetPointer(kHourglass); }
void classOrvix::HourglassOff() { SetPointer(kDefaultPointer); }

void classOrvix::SetComboElement(IDispatch* combo, TextVariable text) {
  const double count = NumberOf(GetMember(combo, u"ListCount"));
  const LONG last = LongOf(Variant(count - 1).get());
  IndexedMember list(combo, u"List");
  Variant entry;
  for (std::int64_t i = 0; i <= last; ++i) {
    list.Read(static_cast<LONG>(i), entry);
    if (Followed(entry.get()).vt == VT_NULL) continue;  // equal to nothing
    const ArgumentText shown(entry.get());              // may change the caller's text
    if (!Equal(shown.View(), ViewOf(text.get()))) continue;
    PutMember(combo, u"ListIndex", Variant(static_cast<LONG>(i)).get());
    return;
  }
}

void classOrvix::LockControl(IDispatch* control, TrueByDefault has_locked_property) {
  ShowLocked(control, static_cast<bool>(has_locked_property), true);
}

void classOrvix::UnLockControl(IDispatch* control, TrueByDefault has_locked_property) {
  ShowLocked(control, static_cast<bool>(has_locked_property), false);
}

Variant classOrvix::TextBoxSetFocus(IDispatch* text_box) {
  SkipIfFails([&] { CallMember(text_box, u"SetFocus"); });
  SkipIfFails([&] { PutMember(text_box, u"SelStart", Variant(LONG{0}).get()); });
  SkipIfFails([&] {
    const Variant text = GetMember(text_box, u"Text");
    PutMember(text_box, u"SelLength", Variant(ArgumentText(text.get()).Size()).get());
  });
  return {};
}

void classOrvix::MyDoEvents(TrueByDefault ignore_input_state) {
  if (ignore_input_state.raw == VARIANT_TRUE && GetInputState() == 0) return;
  CheckRuntime(OxDoEvents());
}

}  // namespace Orvix::component
