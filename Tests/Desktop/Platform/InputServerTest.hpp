#pragma once

#include "Desktop/Platform/ServerTest.hpp"
#include "Platform/Linux/LinuxEventPoster.hpp"
#include "Platform/Linux/LinuxEventTap.hpp"
#include "Platform/Linux/LinuxInputState.hpp"
#include "Platform/Linux/ModifierState.hpp"
#include "Platform/Linux/QtRunLoop.hpp"
#include "Platform/Linux/XEventPump.hpp"

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
    HeldPage page;
    EventOrigin origin;
    LinuxEventTap tap{pump, modifiers, activity, timers, page, origin};
    LinuxEventPoster poster{connect(), tap, page, origin};
    LinuxInputState input{pump, modifiers, activity, timers, poster};
};

}  // namespace trelvan::desktop
