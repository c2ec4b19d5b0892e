#include "Platform/Linux/X11/ActiveApplication.hpp"

#include "Platform/Linux/X11/X11.hpp"

namespace trelvan {

namespace {

constexpr const char* activeWindow = "_NET_ACTIVE_WINDOW";

}  // namespace

ActiveApplication::ActiveApplication(XEventPump& pump)
    : pump_(pump), properties_(pump.connection()), activeWindowAtom_(pump.connection().atom(activeWindow)) {
    read();
    pump_.add(*this);
}

ActiveApplication::~ActiveApplication() {
    pump_.remove(*this);
}

void ActiveApplication::read() {
    const auto window = properties_.number(activeWindow);
    name_ = window && *window != x11::none ? properties_.applicationClass(*window) : std::string();
}

void ActiveApplication::handle(_XEvent& event) {
    if (event.type != PropertyNotify || event.xproperty.atom != activeWindowAtom_) return;
    read();
}

}  // namespace trelvan
