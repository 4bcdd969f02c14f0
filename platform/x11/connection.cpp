#include "platform/x11/connection.h"

#include <pthread.h>

#include <ctime>
#include <string_view>

namespace Orvix::x11 {
namespace {

constexpr uint32_t kMostWords = 1024;

bool PipeSignalPending() {
  sigset_t pending;
  sigemptyset(&pending);
  sigpending(&pending);
  return sigismember(&pending, SIGPIPE) == 1;
}

}  // namespace

NoPipeSignal::NoPipeSignal() : was_pending_(PipeSignalPending()) {
  sigemptyset(&pipe_);
  sigaddset(&pipe_, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
}

NoPipeSignal::~NoPipeSignal() {
  // One that waited before is the program's own and stays.
  if (!was_pending_ && PipeSignalPending()) {
    const timespec at_once{};
    sigtimedwait(&pipe_, nullptr, &at_once);
  }
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

std::unique_ptr<Connection> Connection::Open() {
  int screen_number = 0;
  // Owned before anything can fail; a connection in error is disconnected too.
  std::unique_ptr<Connection> opened(new Connection(nullptr));
  opened->connection_ = xcb_connect(nullptr, &screen_number);
  if (opened->Lost() || !opened->Prepare(screen_number)) return nullptr;
  return opened;
}

Connection::~Connection() {
  if (has_ewmh_) xcb_ewmh_connection_wipe(&ewmh_);
  xcb_disconnect(connection_);
}

bool Connection::Prepare(int screen_number) {
  constexpr std::string_view kName = "WM_STATE";
  const auto asked = xcb_intern_atom(connection_, 0, kName.size(), kName.data());
  xcb_intern_atom_cookie_t* const ewmh_asked = xcb_ewmh_init_atoms(connection_, &ewmh_);
  has_ewmh_ = ewmh_asked != nullptr && xcb_ewmh_init_atoms_replies(&ewmh_, ewmh_asked, nullptr) != 0;
  const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection_, asked, nullptr));
  if (!has_ewmh_ || atom == nullptr || screen_number >= ewmh_.nb_screens) return false;
  wm_state_ = atom->atom;
  screen_ = ewmh_.screens[screen_number];
  return true;
}

int Connection::ScreenOf(xcb_window_t root) const {
  for (int i = 0; i < ewmh_.nb_screens; ++i) {
    if (ewmh_.screens[i]->root == root) return i;
  }
  return -1;
}

std::vector<uint32_t> Connection::Words(xcb_window_t window, xcb_atom_t property) {
  const auto asked = xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kMostWords);
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, asked, nullptr));
  if (reply == nullptr || reply->format != 32) return {};
  const auto* const words = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
  return {words, words + reply->value_len};
}

void Connection::Drain() {
  while (Reply<xcb_generic_event_t>(xcb_poll_for_event(connection_)) != nullptr) {
  }
}

void Connection::Finish() {
  // Any question does: the answer comes after everything before it.
  Reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  Drain();
}

}  // namespace Orvix::x11
