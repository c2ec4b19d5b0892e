#pragma once

#include "Desktop/Platform/ServerTest.hpp"
#include "Platform/Linux/Poster/X11EventPoster.hpp"
#include "Platform/Linux/Poster/X11InputState.hpp"
#include "Platform/Linux/Tap/X11EventTap.hpp"
#include "Platform/Linux/X11/ModifierState.hpp"
#include "Platform/Linux/X11/XEventPump.hpp"
#include "Platform/Shared/QtRunLoop.hpp"

#include <memory>
#include <variant>

namespace trelvan::desktop {

/// A server test with the platform's way of input: tap, poster and input state, joined as in the program.
class InputServerTest : public ServerTest {
  protected:
    static std::unique_ptr<XConnection> connect() {
        return std::get<std::unique_ptr<XConnection>>(XConnection::open());
    }

    std::unique_ptr<XConnection> connection = connect();
    QtTimers timers;
    XEventPump pump{*connection};
    ActivityLog activity;
    ModifierState modifiers{pump};
    PressedState page;
    EventOrigin origin;
    X11EventTap tap{pump, modifiers, activity, timers, page, origin};
    MenuKeyGrabs menuKeys{page};
    X11EventPoster poster{connect(), tap.pipeline(), menuKeys, page, origin};
    X11InputState input{pump, modifiers, activity, timers, poster};
};

}  // namespace trelvan::desktop
