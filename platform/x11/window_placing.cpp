#include "platform/x11/window_placing.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <optional>

namespace Orvix::x11 {
namespace {

constexpr UINT kKeepSize = 0x1;
constexpr UINT kKeepPosition = 0x2;
constexpr UINT kKeepOrder = 0x4;
constexpr UINT kDoNotActivate = 0x10;
constexpr UINT kShow = 0x40;
constexpr UINT kHide = 0x80;

constexpr LONG kTopmost = -1;
constexpr LONG kNotTopmost = -2;
constexpr LONG kTop = 0;
constexpr LONG kBottom = 1;

struct WindowFacts {
  xcb_window_t root = XCB_NONE;
  int screen = -1;
  bool shown = false;
  // A window manager looks after it: it is shown, or iconified.
  bool managed = false;
  // A window manager will look after it once it is shown.
  bool top_level = false;
};

std::optional<WindowFacts> FactsOf(Connection& connection, xcb_window_t window) {
  xcb_connection_t* const x = connection.get();
  const auto attributes_asked = xcb_get_window_attributes(x, window);
  const auto tree_asked = xcb_query_tree(x, window);
  const Reply<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(x, attributes_asked, nullptr));
  const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(x, tree_asked, nullptr));
  if (attributes == nullptr || tree == nullptr || tree->root == window) return std::nullopt;
  WindowFacts facts;
  facts.root = tree->root;
  facts.screen = connection.ScreenOf(tree->root);
  if (facts.screen < 0) return std::nullopt;
  facts.shown = attributes->map_state != XCB_MAP_STATE_UNMAPPED;
  if (attributes->override_redirect != 0) return facts;
  const std::vector<uint32_t> state = connection.Words(window, connection.wm_state());
  facts.managed = !state.empty() && state[0] != XCB_ICCCM_WM_STATE_WITHDRAWN;
  facts.top_level = facts.managed || tree->parent == tree->root;
  return facts;
}

// One call's work on one window.
class Placing {
 public:
  Placing(Connection& connection, xcb_window_t window, const WindowFacts& facts, const WindowPlace& place)
      : connection_(connection), window_(window), facts_(facts), place_(place) {}

  void Do() {
    const bool hides = Has(kHide);
    const bool shows = Has(kShow) && !hides;
    if (facts_.top_level && !facts_.managed) AskForPlaceAtFirstShowing();
    MoveAndSize();
    if (!Has(kKeepOrder)) Order();
    const bool activates = !Has(kDoNotActivate) && !hides && (shows || facts_.shown) && !GoesToBottom();
    if (shows) Show(activates);
    if (hides) Hide();
    if (facts_.top_level && activates) {
      xcb_ewmh_request_change_active_window(connection_.ewmh(), facts_.screen, window_,
                                            XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL, XCB_CURRENT_TIME, XCB_NONE);
    }
  }

 private:
  [[nodiscard]] bool Has(UINT flag) const { return (place_.flags & flag) != 0; }
  [[nodiscard]] bool GoesToBottom() const { return !Has(kKeepOrder) && place_.after == kBottom; }
  // The protocol's positions have 16 bits; a size of nothing is an error there.
  [[nodiscard]] static LONG Position(LONG value) { return std::clamp(value, LONG{-32768}, LONG{32767}); }
  [[nodiscard]] static LONG Size(LONG value) { return std::clamp(value, LONG{1}, LONG{32767}); }

  // A window manager puts a new window where it likes, unless the window's hints
  // say that its place is wanted.
  void AskForPlaceAtFirstShowing() {
    if (Has(kKeepPosition) && Has(kKeepSize)) return;
    xcb_connection_t* const x = connection_.get();
    xcb_size_hints_t hints{};
    if (xcb_icccm_get_wm_normal_hints_reply(x, xcb_icccm_get_wm_normal_hints(x, window_), &hints, nullptr) == 0) {
      hints = {};
    }
    if (!Has(kKeepPosition)) xcb_icccm_size_hints_set_position(&hints, 1, Position(place_.x), Position(place_.y));
    if (!Has(kKeepSize)) xcb_icccm_size_hints_set_size(&hints, 1, Size(place_.width), Size(place_.height));
    xcb_icccm_set_wm_normal_hints(x, window_, &hints);
  }

  void MoveAndSize() {
    xcb_configure_window_value_list_t values{};
    uint16_t mask = 0;
    if (!Has(kKeepPosition)) {
      values.x = Position(place_.x);
      values.y = Position(place_.y);
      mask |= XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y;
    }
    if (!Has(kKeepSize)) {
      values.width = static_cast<uint32_t>(Size(place_.width));
      values.height = static_cast<uint32_t>(Size(place_.height));
      mask |= XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
    }
    if (mask != 0) xcb_configure_window_aux(connection_.get(), window_, mask, &values);
  }

  void Order() {
    switch (place_.after) {
      case kTopmost:
        KeepAbove(true);
        return Stack(XCB_STACK_MODE_ABOVE);
      case kNotTopmost:
        // One that was not topmost keeps its place in the order.
        if (KeepAbove(false)) Stack(XCB_STACK_MODE_ABOVE);
        return;
      case kTop:
        return Stack(XCB_STACK_MODE_ABOVE);
      case kBottom:
        KeepAbove(false);
        return Stack(XCB_STACK_MODE_BELOW);
      default:
        return StackBehind(WindowOf(static_cast<std::uintptr_t>(place_.after)));
    }
  }

  // Whether the window was kept above before.
  bool KeepAbove(bool above) {
    if (!facts_.top_level) return false;
    xcb_ewmh_connection_t* const ewmh = connection_.ewmh();
    const xcb_atom_t above_atom = ewmh->_NET_WM_STATE_ABOVE;
    std::vector<uint32_t> states = connection_.Words(window_, ewmh->_NET_WM_STATE);
    const auto found = std::find(states.begin(), states.end(), above_atom);
    const bool was_above = found != states.end();
    // The property is the application's before the window is managed, the window
    // manager's from then on.
    if (!facts_.managed && above != was_above) {
      if (above) {
        states.push_back(above_atom);
      } else {
        states.erase(found);
      }
      xcb_ewmh_set_wm_state(ewmh, window_, static_cast<uint32_t>(states.size()), states.data());
    }
    // Also to a window that is not managed yet: the application may have asked to
    // show it a moment ago. A message about an unknown window is ignored.
    xcb_ewmh_request_change_wm_state(ewmh, facts_.screen, window_,
                                     above ? XCB_EWMH_WM_STATE_ADD : XCB_EWMH_WM_STATE_REMOVE, above_atom,
                                     XCB_ATOM_NONE, XCB_EWMH_CLIENT_SOURCE_TYPE_NORMAL);
    return was_above;
  }

  void Stack(uint32_t mode) { xcb_configure_window(connection_.get(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &mode); }

  void StackBehind(xcb_window_t front) {
    if (front == XCB_NONE || front == window_) return;
    if (!facts_.managed) {
      const uint32_t values[] = {front, XCB_STACK_MODE_BELOW};
      xcb_configure_window(connection_.get(), window_, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                           values);
      return;
    }
    // Each window is in a frame of its own, so the server takes them for no
    // siblings; the window manager knows better.
    xcb_configure_request_event_t event{};
    event.response_type = XCB_CONFIGURE_REQUEST;
    event.stack_mode = XCB_STACK_MODE_BELOW;
    event.parent = facts_.root;
    event.window = window_;
    event.sibling = front;
    event.value_mask = XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE;
    SendToRoot(event);
  }

  void Show(bool activates) {
    if (facts_.top_level && !facts_.managed) AskForFocusAtFirstShowing(activates);
    xcb_map_window(connection_.get(), window_);
  }

  // A user time of 0 asks the window manager to leave the focus where it is.
  // Some toolkits keep it on another window.
  void AskForFocusAtFirstShowing(bool activates) {
    xcb_ewmh_connection_t* const ewmh = connection_.ewmh();
    const std::vector<uint32_t> other = connection_.Words(window_, ewmh->_NET_WM_USER_TIME_WINDOW);
    const xcb_window_t holder = other.empty() ? window_ : other[0];
    if (!activates) {
      xcb_ewmh_set_wm_user_time(ewmh, holder, 0);
      return;
    }
    const std::vector<uint32_t> time = connection_.Words(holder, ewmh->_NET_WM_USER_TIME);
    if (!time.empty() && time[0] == 0) {
      xcb_delete_property(connection_.get(), holder, ewmh->_NET_WM_USER_TIME);
    }
  }

  void Hide() {
    xcb_unmap_window(connection_.get(), window_);
    if (!facts_.top_level) return;
    // Withdraws an iconified window too, which is not shown any more.
    xcb_unmap_notify_event_t event{};
    event.response_type = XCB_UNMAP_NOTIFY;
    event.event = facts_.root;
    event.window = window_;
    SendToRoot(event);
  }

  template <class Event>
  void SendToRoot(const Event& event) {
    // Events have 32 bytes on the way, whatever their own size.
    static_assert(sizeof(Event) <= 32);
    char bytes[32] = {};
    std::copy_n(reinterpret_cast<const char*>(&event), sizeof event, bytes);
    xcb_send_event(connection_.get(), 0, facts_.root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT, bytes);
  }

  Connection& connection_;
  xcb_window_t window_;
  const WindowFacts& facts_;
  const WindowPlace& place_;
};

}  // namespace

xcb_window_t WindowOf(std::uintptr_t handle) {
  // Ids have 29 bits; a handle that had 32 comes sign-extended.
  return handle < (std::uintptr_t{1} << 29) ? static_cast<xcb_window_t>(handle) : XCB_NONE;
}

bool PlaceWindow(Connection& connection, xcb_window_t window, const WindowPlace& place) {
  if (window == XCB_NONE) return false;
  const std::optional<WindowFacts> facts = FactsOf(connection, window);
  if (!facts.has_value()) return false;
  Placing(connection, window, *facts, place).Do();
  connection.Finish();
  return !connection.Lost();
}

}  // namespace Orvix::x11
