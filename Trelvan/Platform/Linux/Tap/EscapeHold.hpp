#pragma once

#include "Platform/Linux/X11/XEventPump.hpp"
#include "Platform/RunLoop.hpp"

#include <functional>
#include <memory>

namespace trelvan {

/// The user's way out whatever the profile does: the Escape key held alone for five seconds, which no
/// application asks for. Looks at the raw key events that `X11InputState` asks for. Main thread.
class EscapeHold final : public XEventHandler {
  public:
    static constexpr Seconds length{5.0};

    EscapeHold(XEventPump& pump, Timers& timers, std::function<void()> onHeld);
    EscapeHold(const EscapeHold&) = delete;
    EscapeHold& operator=(const EscapeHold&) = delete;
    ~EscapeHold() override;

    void handle(_XEvent& event) override;

  private:
    XEventPump& pump_;
    Timers& timers_;
    std::function<void()> onHeld_;
    std::unique_ptr<Timers::Timer> timer_;
};

}  // namespace trelvan
