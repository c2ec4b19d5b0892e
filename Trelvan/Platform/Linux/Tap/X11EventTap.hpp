#pragma once

#include "Platform/EventTap.hpp"
#include "Platform/Linux/Guard/GrabWindow.hpp"
#include "Platform/Linux/Tap/PointerPipeline.hpp"
#include "Platform/Linux/Tap/X11PointerDevices.hpp"
#include "Platform/Linux/X11/ActivityLog.hpp"
#include "Platform/Linux/X11/ModifierState.hpp"
#include "Platform/Linux/X11/PointerLocation.hpp"
#include "Platform/Linux/X11/XEventPump.hpp"
#include "Platform/Linux/XTest/XTestPointerOutput.hpp"
#include "Platform/RunLoop.hpp"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace trelvan {

/// The event tap on X: holds every mouse and trackball by a device grab, which takes them off the pointer,
/// and moves the pointer itself with what the callback lets through. X buttons become Quartz numbers and
/// wheel lines here. Main thread.
///
/// The grabs end with the connection, so a crash gives the devices back; they end with their window too,
/// which the guard takes away when this process hangs. The callback then hears of the tap-disabled-by-timeout
/// type.
class X11EventTap final : public EventTap, public PointerSource, public XEventHandler {
  public:
    /// The page and the origin must outlive the tap.
    X11EventTap(XEventPump& pump, const ModifierState& modifiers, ActivityLog& activity, Timers& timers,
                PressedState& page, const EventOrigin& origin);
    ~X11EventTap() override;

    [[nodiscard]] bool create(std::uint64_t mask, Callback callback, void* userInfo) override;
    void enable(bool on) override;
    /// Applications take a button for held until they see its release.
    [[nodiscard]] bool releasesFollowPresses() const override { return true; }
    void remove() override;

    /// Where copies of the event that the callback is looking at go out.
    [[nodiscard]] PointerPipeline& pipeline() { return pipeline_; }

    /// Where the pointer is: inside the callback the place of its event, otherwise the server is asked.
    [[nodiscard]] Pixel pointer() const override;

    /// Leaves the devices to the pointer until told otherwise, whatever the switch says: the user's way out.
    void yield(bool on);
    [[nodiscard]] bool isYielding() const { return yielding_; }

    /// Whether the server denied this program the grabs, as a security policy may. Another client's hold on a
    /// device is no denial.
    [[nodiscard]] bool isDenied() const { return denied_; }

    /// Told when a function was stopped for firing too often.
    std::function<void()> onRunaway;

    void handle(_XEvent& event) override;

  private:
    using Devices = std::vector<std::unique_ptr<X11PointerDevice>>;

    [[nodiscard]] Devices::iterator position(int deviceId);
    /// None for a device that is not held.
    [[nodiscard]] X11PointerDevice* find(int deviceId);
    /// Takes what can be taken and forgets what is gone; asks again later for what another client holds.
    void scan();
    /// Releases what a device that is gone still held.
    void forget(int deviceId);
    [[nodiscard]] bool take(X11PointerDevice& device);
    [[nodiscard]] bool grab(X11PointerDevice& device);
    void ungrab(X11PointerDevice& device);
    /// Lets go of a device that was put back onto the pointer behind the grab, which no longer keeps its
    /// events from the applications.
    void giveBack(int deviceId);
    void ungrabAll();
    void reportHeld(const X11PointerDevice& device);
    void refreshAxes(int deviceId);
    /// After the devices were taken away: forgets what was under way and tells the callback.
    void recover();
    void inputEvent(int type, const void* data);
    void hierarchyChanged(const void* data);

    void rawMotion(const void* data);
    void buttonEvent(const void* data, bool down);
    [[nodiscard]] EventStamp stamp(unsigned long time) const;
    void runaway(const PointerControl& control) const;
    /// Whether presses come faster than they can be passed on, so that new ones are left out. Their releases
    /// then go nowhere by themselves.
    [[nodiscard]] bool isOverrun();
    void readBounds();
    void setSize(int width, int height);
    void syncLocation();
    /// Not for each of very many.
    void syncLocationForPress();

    XEventPump& pump_;
    const ModifierState& modifiers_;
    ActivityLog& activity_;
    Timers& timers_;
    PressedState& page_;
    GrabWindow window_;
    XTestPointerOutput output_;
    PointerPipeline pipeline_;
    Devices devices_;
    /// Devices that went away during a callback, which may still be looking at them.
    Devices leaving_;
    std::vector<std::string> reported_;
    std::unique_ptr<Timers::Timer> retry_;
    ActivityLog::Time lastSync_{};
    bool created_ = false;
    bool enabled_ = false;
    bool overrun_ = false;
    /// The most events that have waited since none did.
    int pileUp_ = 0;
    bool reportedOverrun_ = false;
    bool yielding_ = false;
    bool denied_ = false;
    int depth_ = 0;
};

}  // namespace trelvan
