#include "Platform/Linux/X11/ModifierState.hpp"

#include "Platform/Linux/X11/X11.hpp"

namespace trelvan {

ModifierState::ModifierState(XEventPump& pump) : pump_(pump) {
    Display* display = pump.connection().display();
    constexpr unsigned long wanted = XkbModifierStateMask | XkbModifierBaseMask | XkbModifierLockMask;
    XkbSelectEventDetails(display, XkbUseCoreKbd, XkbStateNotify, wanted, wanted);
    XkbSelectEvents(display, XkbUseCoreKbd, XkbMapNotifyMask | XkbNewKeyboardNotifyMask,
                    XkbMapNotifyMask | XkbNewKeyboardNotifyMask);
    read();
    pump_.add(*this);
}

ModifierState::~ModifierState() {
    pump_.remove(*this);
}

void ModifierState::read() {
    Display* display = pump_.connection().display();
    map_ = ModifierMap::read(display);
    XkbStateRec state{};
    XkbGetState(display, XkbUseCoreKbd, &state);
    modifiers_ = state.mods;
    flags_ = map_.flags(modifiers_);
}

void ModifierState::handle(_XEvent& event) {
    if (event.type == MappingNotify) {
        XRefreshKeyboardMapping(&event.xmapping);
        if (event.xmapping.request == MappingModifier) read();
        return;
    }
    if (event.type != pump_.connection().keyboardEventBase()) return;
    auto& notice = reinterpret_cast<XkbEvent&>(event);
    switch (notice.any.xkb_type) {
        case XkbStateNotify:
            modifiers_ = notice.state.mods;
            flags_ = map_.flags(modifiers_);
            break;
        case XkbMapNotify:
            XkbRefreshKeyboardMapping(&notice.map);
            read();
            break;
        case XkbNewKeyboardNotify:
            read();
            break;
        default:
            break;
    }
}

}  // namespace trelvan
