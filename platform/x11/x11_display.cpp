// The display of an X server, and the one function that the run-time finds in
// this module.
#include <mutex>
#include <new>
#include <utility>

#include "platform/windows/display.h"
#include "platform/x11/connection.h"
#include "platform/x11/pointer.h"
#include "platform/x11/window_placing.h"

namespace Orvix::x11 {
namespace {

class X11Display final : public Display {
  template <class Body>
  auto Guarded(Body&& body) {
    const std::lock_guard lock(mutex_);
    const NoPipeSignal quiet;
    connection_->Drain();
    return body();
  }

 public:
  explicit X11Display(std::unique_ptr<Connection> connection)
      : connection_(std::move(connection)),
        width_(connection_->screen()->width_in_pixels),
        height_(connection_->screen()->height_in_pixels) {}

  LONG Width() override {
    return Guarded([this] { return AskSize(), width_; });
  }
  LONG Height() override {
    return Guarded([this] { return AskSize(), height_; });
  }
  LONG Pointer() override {
    return Guarded([this] { return pointer_.Code(); });
  }
  void SetPointer(LONG code) override {
    Guarded([&] { pointer_.Set(*connection_, code); });
  }
  bool NameWindow(std::uintptr_t window, bool named) override {
    return Guarded([&] { return pointer_.Name(*connection_, WindowOf(window), named); });
  }
  bool PlaceWindow(std::uintptr_t window, const WindowPlace& place) override {
    return Guarded([&] { return x11::PlaceWindow(*connection_, WindowOf(window), place); });
  }
  // The application's events are on its own connection, out of reach here; its
  // host table answers for them.
  bool HasPendingInput() override { return false; }
  void HandleEvents() override {
    Guarded([this] { connection_->Finish(); });
  }

 private:
  // The screen may have been resized since the connection was made. The last
  // size known stays when the server is gone.
  void AskSize() {
    xcb_connection_t* const x = connection_->get();
    const Reply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(x, xcb_get_geometry(x, connection_->screen()->root), nullptr));
    if (size == nullptr) return;
    width_ = size->width;
    height_ = size->height;
  }

  std::mutex mutex_;
  std::unique_ptr<Connection> connection_;
  x11::Pointer pointer_;
  LONG width_;
  LONG height_;
};

}  // namespace
}  // namespace Orvix::x11

ORVIX_API Orvix::Display* OrvixMakeDisplay(std::uint32_t version) noexcept {
  if (version != Orvix::kDisplayVersion) return nullptr;
  try {
    const Orvix::x11::NoPipeSignal quiet;
    std::unique_ptr<Orvix::x11::Connection> connection = Orvix::x11::Connection::Open();
    if (connection == nullptr) return nullptr;
    return std::make_unique<Orvix::x11::X11Display>(std::move(connection)).release();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
