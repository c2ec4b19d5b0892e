#include "Platform/Linux/X11/FocusWait.hpp"

#include "Platform/Linux/X11/X11.hpp"

#include <utility>

namespace trelvan {

namespace {

constexpr const char* activeWindow = "_NET_ACTIVE_WINDOW";

}  // namespace

FocusWait::FocusWait(XEventPump& pump, Timers& timers)
    : pump_(pump),
      timers_(timers),
      properties_(pump.connection()),
      activeWindowAtom_(pump.connection().atom(activeWindow)) {
    pump_.add(*this);
}

FocusWait::~FocusWait() {
    pump_.remove(*this);
}

void FocusWait::begin(ApplicationIdentity application, Seconds timeout, std::function<void()> inFront,
                      std::function<void()> tooLate) {
    application_ = std::move(application);
    inFront_ = std::move(inFront);
    timeout_ = timers_.once(timeout, [this, tooLate = std::move(tooLate)] {
        inFront_ = nullptr;
        tooLate();
    });
}

void FocusWait::cancel() {
    inFront_ = nullptr;
    timeout_.reset();
}

void FocusWait::look() {
    if (!inFront_) return;
    const auto window = properties_.number(activeWindow);
    if (!window || *window == x11::none || !isWindowOf(application_, properties_.traits(*window))) return;
    const auto inFront = std::exchange(inFront_, nullptr);
    timeout_.reset();
    inFront();
}

void FocusWait::handle(_XEvent& event) {
    if (event.type == PropertyNotify && event.xproperty.atom == activeWindowAtom_) look();
}

}  // namespace trelvan
