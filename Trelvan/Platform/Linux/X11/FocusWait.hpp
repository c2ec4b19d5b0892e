#pragma once

#include "Platform/Linux/X11/RootProperties.hpp"
#include "Platform/Linux/X11/WindowIdentity.hpp"
#include "Platform/Linux/X11/XEventPump.hpp"
#include "Platform/RunLoop.hpp"

#include <functional>
#include <memory>
#include <string>

namespace trelvan {

/// Waits until a window of an application is the active one, for one application at a time. It looks when the
/// window manager says that another window is active, never in between. Main thread.
class FocusWait : public XEventHandler {
  public:
    FocusWait(XEventPump& pump, Timers& timers);
    ~FocusWait() override;

    /// Calls `inFront` when a window of the application is active, `tooLate` when none was in time; only ever
    /// one of them. What is still waited for from an earlier call is given up. An application that is active
    /// already counts as soon as `look` is called.
    void begin(ApplicationIdentity application, Seconds timeout, std::function<void()> inFront,
               std::function<void()> tooLate);
    /// The process that was started for the application.
    void noteProcess(long process) { application_.process = process; }
    /// Looks at the window that is active now.
    void look();
    /// Gives up what is waited for.
    void cancel();

    void handle(_XEvent& event) override;

  private:
    XEventPump& pump_;
    Timers& timers_;
    RootProperties properties_;
    unsigned long activeWindowAtom_;
    ApplicationIdentity application_;
    std::function<void()> inFront_;
    std::unique_ptr<Timers::Timer> timeout_;
};

}  // namespace trelvan
