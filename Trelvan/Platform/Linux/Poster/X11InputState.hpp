#pragma once

#include "Platform/InputState.hpp"
#include "Platform/Linux/Poster/X11EventPoster.hpp"
#include "Platform/Linux/X11/ActivityLog.hpp"
#include "Platform/Linux/X11/ModifierState.hpp"
#include "Platform/Linux/X11/XEventPump.hpp"
#include "Platform/RunLoop.hpp"

#include <memory>
#include <optional>

namespace trelvan {

/// What the devices hold and when they were last used, from XKB's notices and the server's raw events. Main
/// thread.
///
/// The tap tells of the devices it holds; everything else comes raw. Raw movement is looked at twice a second
/// only, because each movement that the tap passes comes back as one: idle times of movement are exact to
/// that.
class X11InputState : public InputState, public XEventHandler {
  public:
    /// The poster says what is its own, and is told when any keyboard lets a key go.
    X11InputState(XEventPump& pump, const ModifierState& modifiers, ActivityLog& activity, Timers& timers,
                  X11EventPoster& poster);
    ~X11InputState() override;

    [[nodiscard]] EventFlags flags(EventSourceState /*source*/) const override { return modifiers_.flags(); }
    [[nodiscard]] double secondsSinceLast(EventType type) const override;

    void handle(_XEvent& event) override;

  private:
    void select(bool withMotion);
    void noteFormerActivity();
    void sawMotion();
    /// Whether an event of this source is one that the program has posted itself.
    [[nodiscard]] bool isOwn(int sourceDevice) const;

    XEventPump& pump_;
    const ModifierState& modifiers_;
    ActivityLog& activity_;
    Timers& timers_;
    X11EventPoster& poster_;
    /// Through these the program's own events come back.
    std::optional<int> xtestPointer_;
    std::optional<int> xtestKeyboard_;
    std::unique_ptr<Timers::Timer> rearm_;
    bool looksAtMotion_ = false;
};

}  // namespace trelvan
