#pragma once

#include "Platform/InputState.hpp"
#include "Platform/Linux/ActivityLog.hpp"
#include "Platform/Linux/ModifierState.hpp"
#include "Platform/Linux/XEventPump.hpp"
#include "Platform/RunLoop.hpp"

#include <functional>

namespace trelvan {

/// What the devices hold and when they were last used, from XKB's notices and the server's raw events. Main
/// thread.
///
/// The tap tells of the devices it holds; everything else comes raw. Raw movement is looked at twice a second
/// only, because each movement that the tap passes comes back as one: idle times of movement are exact to
/// that.
class LinuxInputState : public InputState, public XEventHandler {
  public:
    /// `onKeyReleased` is called when any keyboard lets a key go.
    LinuxInputState(XEventPump& pump, const ModifierState& modifiers, ActivityLog& activity, Timers& timers,
                    std::function<void()> onKeyReleased);
    ~LinuxInputState() override;

    [[nodiscard]] EventFlags flags(EventSourceState /*source*/) const override { return modifiers_.flags(); }
    [[nodiscard]] double secondsSinceLast(EventType type) const override;

    void handle(_XEvent& event) override;

  private:
    void select(bool withMotion);
    void sawMotion();

    XEventPump& pump_;
    const ModifierState& modifiers_;
    ActivityLog& activity_;
    Timers& timers_;
    std::function<void()> onKeyReleased_;
    std::unique_ptr<Timers::Timer> rearm_;
    bool looksAtMotion_ = false;
};

}  // namespace trelvan
