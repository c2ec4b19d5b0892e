#pragma once

#include "Desktop/Platform/ServerTest.hpp"
#include "Platform/Linux/X11/XEventPump.hpp"
#include "Platform/Linux/X11InputBackend.hpp"
#include "Platform/Shared/QtRunLoop.hpp"

#include <memory>
#include <variant>

namespace trelvan::desktop {

/// A server test with the platform's way of input, joined as in the program.
class InputServerTest : public ServerTest {
  protected:
    static std::unique_ptr<XConnection> connect() {
        return std::get<std::unique_ptr<XConnection>>(XConnection::open());
    }

    std::unique_ptr<XConnection> connection = connect();
    QtTimers timers;
    XEventPump pump{*connection};
    PressedState page;
    EventOrigin origin;
    X11InputBackend backend{pump, connect(), page, origin, timers, [](const auto& job) { job(); }};
    EventTap& tap = backend.eventTap();
    EventPoster& poster = backend.eventPoster();
    InputState& input = backend.inputState();
};

}  // namespace trelvan::desktop
