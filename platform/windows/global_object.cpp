// The application's global object: the host's, else one whose Screen has the
// display's Width and Height (in units of 1/15 pixel) and its MousePointer.
#include "platform/windows/global_object.h"

#include <utility>

#include "frame/runtime/runtime_error.h"
#include "platform/automation/late_object.h"
#include "platform/host/host_table.h"
#include "platform/windows/display.h"

namespace Orvix {
namespace {

constexpr LONG kUnitsPerPixel = 15;

void StoreLong(VARIANT* result, LONG number) {
  result->lVal = number;
  result->vt = VT_I4;
}

class Screen final : public LateObject {
 protected:
  enum Member : DISPID { kWidth = 1, kHeight, kMousePointer };

  [[nodiscard]] std::span<const LateMember> Members() const noexcept override {
    static constexpr LateMember kMembers[] = {
        {kWidth, u"Width", DISPATCH_PROPERTYGET},
        {kHeight, u"Height", DISPATCH_PROPERTYGET},
        {kMousePointer, u"MousePointer", DISPATCH_PROPERTYGET | DISPATCH_PROPERTYPUT},
    };
    return kMembers;
  }
  [[nodiscard]] TextView ClassName() const noexcept override { return u"Orvix.Screen"; }

  void Call(DISPID member, const LateArguments& arguments, VARIANT* result) override {
    const std::shared_ptr<Display> display = CurrentDisplay();
    if (arguments.put_value != nullptr) return display->SetPointer(LongOfArgument(*arguments.put_value));
    switch (member) {
      case kWidth:
        return StoreLong(result, display->Width() * kUnitsPerPixel);
      case kHeight:
        return StoreLong(result, display->Height() * kUnitsPerPixel);
      default:
        return StoreLong(result, display->Pointer());
    }
  }
};

class NativeGlobal final : public LateObject {
 protected:
  [[nodiscard]] std::span<const LateMember> Members() const noexcept override {
    static constexpr LateMember kMembers[] = {{1, u"Screen", DISPATCH_PROPERTYGET}};
    return kMembers;
  }
  [[nodiscard]] TextView ClassName() const noexcept override { return u"Orvix.Global"; }

  void Call(DISPID, const LateArguments&, VARIANT* result) override {
    screen_->AddRef();
    result->pdispVal = screen_.get();
    result->vt = VT_DISPATCH;
  }

 private:
  LateOwner<Screen> screen_ = MakeLateObject<Screen>();
};

// One thread's reference and the host generation that it was fetched under. It
// has no destructor: those of an application's statics run after the thread's
// own, and may still ask.
struct ThreadGlobal {
  IDispatch* object = nullptr;
  uint64_t generation = 0;

  void Keep(IDispatch* kept, uint64_t kept_generation) {
    Forget();
    object = kept;
    generation = kept_generation;
  }
  void Forget() {
    generation = 0;
    // Taken out first: the last release may run code that comes back here.
    if (IDispatch* const old = std::exchange(object, nullptr); old != nullptr) old->Release();
  }
};
constinit thread_local ThreadGlobal thread_global;

struct ReleaseAtThreadEnd {
  bool armed = false;
  ~ReleaseAtThreadEnd() { thread_global.Forget(); }
};
thread_local ReleaseAtThreadEnd release_at_thread_end;

}  // namespace

void ForgetGlobalObject() noexcept { thread_global.Forget(); }

}  // namespace Orvix

HRESULT ORVIX_CALL OxGlobalObject(IDispatch** global) {
  if (global == nullptr) return E_POINTER;
  *global = nullptr;
  return Orvix::AtRuntimeEdge([&] {
    Orvix::ThreadGlobal& kept = Orvix::thread_global;
    IDispatch* object = kept.generation == Orvix::HostGeneration() ? kept.object : nullptr;
    if (object == nullptr) {
      // Table and generation of one moment: an object of a host that leaves
      // meanwhile is kept under that host's generation, and so never again used.
      const Orvix::HostState host = Orvix::CurrentHostState();
      object = host.table.GlobalObject != nullptr ? host.table.GlobalObject(host.table.context)
                                                  : Orvix::MakeLateObject<Orvix::NativeGlobal>().release();
      if (object == nullptr) throw Orvix::RuntimeError{91};
      Orvix::release_at_thread_end.armed = true;
      kept.Keep(object, host.generation);
    }
    object->AddRef();
    *global = object;
  });
}

HRESULT ORVIX_CALL OxDoEvents() {
  const OxHost host = Orvix::CurrentHost();
  if (host.DoEvents != nullptr) {
    host.DoEvents(host.context);
    return S_OK;
  }
  return Orvix::AtRuntimeEdge([] { Orvix::CurrentDisplay()->HandleEvents(); });
}
