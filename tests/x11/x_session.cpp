#include "tests/x11/x_session.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>

namespace Orvix::testing {
namespace {

constexpr int kPatience_ms = 10000;

}  // namespace

ChildProgram::ChildProgram(const std::vector<std::string>& words, int kept) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  id_ = fork();
  if (id_ < 0) throw std::runtime_error("cannot start " + words[0]);
  if (id_ == 0) {
    // Nothing outlives a test that ends in the middle.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (kept >= 0) dup2(kept, 3);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
}

void ChildProgram::Kill() {
  if (id_ < 0) return;
  kill(id_, SIGKILL);
  waitpid(id_, nullptr, 0);
  id_ = -1;
}

bool Installed(const std::string& program) {
  const char* const path = std::getenv("PATH");
  std::string folders = path == nullptr ? "" : path;
  folders += ':';
  for (std::size_t start = 0, end; (end = folders.find(':', start)) != std::string::npos; start = end + 1) {
    if (access((folders.substr(start, end - start) + "/" + program).c_str(), X_OK) == 0) return true;
  }
  return false;
}

XServer::XServer() {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  // Descriptor 3 of the server is the writing end; it tells its display's number
  // when it is ready.
  server_ = std::make_unique<ChildProgram>(std::vector<std::string>{"Xvfb", "-displayfd", "3", "-screen", "0",
                                                                    "1280x720x24", "-nolisten", "tcp", "-noreset"},
                                           ends[1]);
  close(ends[1]);
  std::string number;
  char digit = 0;
  while (read(ends[0], &digit, 1) == 1 && digit != '\n') number += digit;
  close(ends[0]);
  if (number.empty()) throw std::runtime_error("the X server did not start");
  setenv("DISPLAY", (":" + number).c_str(), 1);
}

std::ostream& operator<<(std::ostream& stream, const Frame& frame) {
  return stream << frame.width << "x" << frame.height << "+" << frame.x << "+" << frame.y;
}

Client::Client() : connection_(xcb_connect(nullptr, nullptr)) {
  if (xcb_connection_has_error(connection_) != 0 ||
      xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(connection_, &ewmh_), nullptr) == 0) {
    throw std::runtime_error("no connection to the X server");
  }
  root_ = ewmh_.screens[0]->root;
  const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &events);
  const Answer<xcb_xfixes_query_version_reply_t> version(
      xcb_xfixes_query_version_reply(connection_, xcb_xfixes_query_version(connection_, 4, 0), nullptr));
  if (version == nullptr) throw std::runtime_error("no XFixes");
}

Client::~Client() {
  xcb_ewmh_connection_wipe(&ewmh_);
  xcb_disconnect(connection_);
}

xcb_window_t Client::MakeWindow(xcb_window_t parent, bool bypasses_manager) {
  const xcb_window_t window = xcb_generate_id(connection_);
  Make(window, parent == XCB_NONE ? root_ : parent, bypasses_manager);
  return window;
}

void Client::Make(xcb_window_t window, xcb_window_t parent, bool bypasses_manager) {
  const uint32_t values[] = {bypasses_manager ? 1U : 0U,
                             XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE};
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, parent, 10, 10, 100, 80, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                    values);
  Finish();
}

void Client::Show(xcb_window_t window) {
  xcb_map_window(connection_, window);
  Finish();
}

void Client::Destroy(xcb_window_t window) {
  xcb_destroy_window(connection_, window);
  Finish();
}

bool Client::Await(const std::function<bool()>& condition) {
  while (!condition()) {
    Answer<xcb_generic_event_t> event(xcb_poll_for_event(connection_));
    if (event == nullptr) {
      xcb_flush(connection_);
      pollfd waiting{xcb_get_file_descriptor(connection_), POLLIN, 0};
      if (poll(&waiting, 1, kPatience_ms) <= 0) return false;
      if (xcb_connection_has_error(connection_) != 0) return false;
    }
  }
  return true;
}

void Client::Finish() {
  Answer<xcb_get_input_focus_reply_t>(
      xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

bool Client::IsShown(xcb_window_t window) {
  const Answer<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(connection_, xcb_get_window_attributes(connection_, window), nullptr));
  return attributes != nullptr && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

Frame Client::FrameOf(xcb_window_t window) {
  const Answer<xcb_get_geometry_reply_t> size(
      xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
  const Answer<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
      connection_, xcb_translate_coordinates(connection_, window, root_, 0, 0), nullptr));
  if (size == nullptr || place == nullptr) return {};
  // Left, right, top, bottom.
  const std::vector<uint32_t> extents = Words(window, ewmh_._NET_FRAME_EXTENTS);
  const int left = extents.size() == 4 ? static_cast<int>(extents[0]) : 0;
  const int top = extents.size() == 4 ? static_cast<int>(extents[2]) : 0;
  return {place->dst_x - left, place->dst_y - top, size->width, size->height};
}

bool Client::IsAbove(xcb_window_t window) {
  const std::vector<uint32_t> states = Words(window, ewmh_._NET_WM_STATE);
  return std::find(states.begin(), states.end(), ewmh_._NET_WM_STATE_ABOVE) != states.end();
}

bool Client::ShunsFocus(xcb_window_t window) {
  return Words(window, ewmh_._NET_WM_USER_TIME) == std::vector<uint32_t>{0};
}

xcb_window_t Client::Active() {
  const std::vector<uint32_t> active = Words(root_, ewmh_._NET_ACTIVE_WINDOW);
  return active.empty() ? xcb_window_t{XCB_NONE} : active[0];
}

void Client::Activate(xcb_window_t window) {
  xcb_ewmh_request_change_active_window(&ewmh_, 0, window, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER, XCB_CURRENT_TIME,
                                        XCB_NONE);
  Finish();
}

bool Client::HasManager() { return !Words(root_, ewmh_._NET_SUPPORTING_WM_CHECK).empty(); }

bool Client::IsManaged(xcb_window_t window) {
  const Answer<xcb_intern_atom_reply_t> state(
      xcb_intern_atom_reply(connection_, xcb_intern_atom(connection_, 0, 8, "WM_STATE"), nullptr));
  if (state == nullptr) return false;
  const std::vector<uint32_t> words = Words(window, state->atom);
  return !words.empty() && words[0] != 0;
}

std::vector<xcb_window_t> Client::Order() { return Words(root_, ewmh_._NET_CLIENT_LIST_STACKING); }

bool Client::IsInFrontOf(xcb_window_t front, xcb_window_t behind) {
  const std::vector<xcb_window_t> order = Order();
  const auto lower = std::find(order.begin(), order.end(), behind);
  return lower != order.end() && std::find(lower, order.end(), front) != order.end();
}

std::vector<xcb_window_t> Client::Children(xcb_window_t window) {
  const Answer<xcb_query_tree_reply_t> tree(
      xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
  if (tree == nullptr) return {};
  const xcb_window_t* const children = xcb_query_tree_children(tree.get());
  return {children, children + tree->children_len};
}

std::vector<uint32_t> Client::PointerOver(xcb_window_t window, int x, int y) {
  const Answer<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
      connection_,
      xcb_translate_coordinates(connection_, window, root_, static_cast<int16_t>(x), static_cast<int16_t>(y)),
      nullptr));
  if (place == nullptr) throw std::runtime_error("no such window");
  xcb_warp_pointer(connection_, XCB_NONE, root_, 0, 0, 0, 0, place->dst_x, place->dst_y);
  for (int round = 0; round < 100000; ++round) {
    const Answer<xcb_query_pointer_reply_t> pointer(
        xcb_query_pointer_reply(connection_, xcb_query_pointer(connection_, root_), nullptr));
    if (pointer == nullptr) throw std::runtime_error("the X server is gone");
    if (pointer->root_x != place->dst_x || pointer->root_y != place->dst_y) continue;
    const Answer<xcb_xfixes_get_cursor_image_reply_t> image(
        xcb_xfixes_get_cursor_image_reply(connection_, xcb_xfixes_get_cursor_image(connection_), nullptr));
    if (image == nullptr) throw std::runtime_error("no pointer");
    const uint32_t* const pixels = xcb_xfixes_get_cursor_image_cursor_image(image.get());
    return {pixels, pixels + image->width * image->height};
  }
  throw std::runtime_error("the pointer did not move");
}

std::vector<uint32_t> Client::Words(xcb_window_t window, xcb_atom_t property) {
  const Answer<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      connection_, xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1024), nullptr));
  if (reply == nullptr || reply->format != 32) return {};
  const auto* const words = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
  return {words, words + reply->value_len};
}

WindowManager::WindowManager(Client& client) {
  const std::string home = home_.Path().string();
  // No settings of the user's, and the locale that the messages were written in.
  manager_ = std::make_unique<ChildProgram>(std::vector<std::string>{"env", "HOME=" + home, "XDG_CONFIG_HOME=" + home,
                                                                     "XDG_CACHE_HOME=" + home, "XDG_DATA_HOME=" + home,
                                                                     "LC_ALL=C", "openbox", "--sm-disable"});
  // A window that is there while it starts does not get the focus by itself. One
  // that has it when asked for says that the start is over.
  const xcb_window_t first = client.MakeWindow();
  client.Show(first);
  const bool started = client.Await([&] { return client.HasManager() && client.IsShown(first); });
  client.Activate(first);
  if (!started || !client.Await([&] { return client.Active() == first; })) {
    throw std::runtime_error("the window manager did not start");
  }
  client.Destroy(first);
}

}  // namespace Orvix::testing
