#pragma once

#include "Core/PermissionsManager.hpp"
#include "Core/PressWatch.hpp"
#include "Core/SettingsCatalogue.hpp"
#include "Core/Shaping.hpp"
#include "Platform/EventPoster.hpp"
#include "Platform/EventTap.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/Screens.hpp"
#include "Platform/SessionState.hpp"
#include "Platform/UserDefaults.hpp"
#include "Utilities/Logger.hpp"
#include "Utilities/Published.hpp"

#include <array>
#include <bitset>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace trelvan {

/// One observed mouse event, for the debug history.
struct MouseEventInfo {
    /// "leftMouseDown", "rightMouseDown", "otherMouseDown", "otherMouseUp" or "scrollWheel".
    std::string_view type;
    /// -1 for scroll events.
    std::int64_t buttonNumber = 0;
    /// Raw line deltas before any shaping; 0 for buttons.
    std::int32_t scrollDeltaX = 0;
    std::int32_t scrollDeltaY = 0;
    std::chrono::system_clock::time_point timestamp{};
    friend bool operator==(const MouseEventInfo&, const MouseEventInfo&) = default;
};

/// The only source of mouse input: owns the event tap and decides for each event whether it passes, passes
/// reshaped, or is swallowed.
///
/// Main thread, the tap's callback included. Made with `std::make_shared`: while a tap exists it keeps the
/// monitor alive, until `stop()`. From event in to answer out nothing is allocated unless `debugMode` is on.
class EventMonitor : public std::enable_shared_from_this<EventMonitor> {
  public:
    /// Answers whether it consumed the press (button number, the event's modifier flags); it is not told
    /// press from release and must return at once. Not called while the session is locked or not the active
    /// one: nothing fires then, and pointer and scrolling are shaped as ever.
    using ButtonHandler = std::function<bool(std::int64_t, EventFlags)>;

    struct Ports {
        EventTap& tap;
        EventPoster& poster;
        Screens& screens;
        UserDefaults& defaults;
        MainQueue& mainQueue;
        Clock& clock;
        const SessionState& session;
    };

    /// The process that shows the system's own menu-bar menus; while it is in front buttons pass.
    static constexpr std::string_view systemMenuOwner = "com.apple.systemuiserver";

    static constexpr std::string_view scrollSpeedVerticalKey = setting::scrollSpeedVertical.key;
    static constexpr std::string_view horizontalScrollEnabledKey = setting::horizontalScrollEnabled.key;
    static constexpr std::string_view scrollSpeedHorizontalKey = setting::scrollSpeedHorizontal.key;
    static constexpr std::string_view swapScrollDirectionKey = setting::swapScrollDirection.key;
    static constexpr std::string_view mouseSpeedKey = setting::mouseSpeed.key;
    static constexpr std::string_view advancedMouseSpeedEnabledKey = setting::advancedMouseSpeedEnabled.key;
    static constexpr std::string_view mouseAccelerationKey = setting::mouseAcceleration.key;

    /// Written into the user-data field of every pointer event the monitor posts, so that the tap knows them
    /// again: the ASCII bytes T R K M.
    static constexpr std::int64_t scaledMotionMarker = 0x54524B4D;
    static constexpr double defaultMouseSpeed = setting::mouseSpeed.initial;
    static constexpr double minMouseSpeed = setting::mouseSpeed.minimum;
    static constexpr double maxMouseSpeed = setting::mouseSpeed.maximum;
    /// A faster speed lasts until the next launch only, so that nobody is locked in with a wild pointer.
    static constexpr double maxLoadedMouseSpeed = 1.4;
    static constexpr std::size_t debugLogCapacity = 50;

    /// Event types 1, 3, 5, 6, 7, 22, 25, 26 and 27.
    static constexpr std::uint64_t eventMask = 0x0E4000EA;

    /// Where the permissions are found when the tap is to start; they are made after the monitor.
    using PermissionsProvider = std::function<PermissionsManager&()>;

    /// Loads the shaping settings.
    EventMonitor(const Ports& ports, PermissionsProvider permissions, Logger& logger);
    EventMonitor(const EventMonitor&) = delete;
    EventMonitor& operator=(const EventMonitor&) = delete;
    ~EventMonitor();

    Published<bool> isRunning{false};
    Published<std::optional<MouseEventInfo>> lastEvent;
    /// Newest first, at most `debugLogCapacity`, filled only while `debugMode` is on.
    Published<std::vector<MouseEventInfo>> debugLog;

    /// Factor on vertical scroll deltas, 0.2 to 3.0 when loaded.
    Published<double> scrollSpeedVertical{setting::scrollSpeedVertical.initial};
    /// Whether horizontal deltas are scaled; they are never blocked.
    Published<bool> horizontalScrollEnabled{setting::horizontalScrollEnabled.isOn};
    /// Factor on horizontal scroll deltas, 0.2 to 3.0 when loaded.
    Published<double> scrollSpeedHorizontal{setting::scrollSpeedHorizontal.initial};
    /// Reverses both scroll axes.
    Published<bool> swapScrollDirection{setting::swapScrollDirection.isOn};
    /// Pointer gain; exactly 1.0 leaves the pointer alone.
    Published<double> mouseSpeed{defaultMouseSpeed};
    /// Whether scaled motion is posted as a repositioned copy rather than written into the event.
    Published<bool> advancedMouseSpeedEnabled{setting::advancedMouseSpeedEnabled.isOn};
    /// 0.0 to 1.0; shapes the gain above speed 1.0.
    Published<double> mouseAcceleration{setting::mouseAcceleration.initial};

    /// The shaping settings by the names of their properties.
    struct NumberProperty {
        std::string_view name;
        const SettingRow& row;
        Published<double> EventMonitor::*value;
    };
    struct SwitchProperty {
        std::string_view name;
        const SettingRow& row;
        Published<bool> EventMonitor::*value;
    };
    static const std::array<NumberProperty, 4> numberProperties;
    static const std::array<SwitchProperty, 3> switchProperties;

    /// Sets the property to a number from outside (a backup, a script), moved into the setting's range; what
    /// is not a number changes nothing.
    void setNumber(const NumberProperty& property, double number);

    ButtonHandler onButtonEvent;
    /// Whether events are recorded for the debug history.
    Published<bool> debugMode{false};
    /// Presses and turns for the interface, and the way to take the next one.
    PressWatch presses;

    /// Installs the tap; does nothing while there is one. Without permission it asks for it and stays
    /// stopped.
    void start();
    /// Removes the tap and forgets held buttons and residuals.
    void stop();
    /// Writes the seven shaping settings; changing a property does not write it.
    void persistSpeedSettings();

  private:
    static TapAnswer eventTapCallback(void* userInfo, TapEvent& event);

    void loadSpeedSettings();
    void loadNumber(const NumberProperty& property);
    void loadSwitch(const SwitchProperty& property);
    void followOutsideChange(const UserDefaults::Keys& keys);
    void loadMouseSpeed();

    TapAnswer handle(TapEvent& event);
    TapAnswer handleButton(TapEvent& event);
    /// A press that is taken, or the release of one: nobody else is told of it.
    bool isTaken(const TapEvent& event);
    /// Remembers of a press whether it was made where buttons do nothing: its release does nothing either.
    void noteSession(std::int64_t buttonNumber);
    TapAnswer handleOtherDown(const TapEvent& event);
    TapAnswer handleOtherUp(const TapEvent& event);
    /// On a platform where the release goes the way of its press.
    TapAnswer handleFollowingUp(const TapEvent& event);
    TapAnswer handleScroll(TapEvent& event);
    TapAnswer handleMotion(TapEvent& event);
    void shapeScroll(TapEvent& event) const;

    [[nodiscard]] bool isOverOwnWindow(TopLeftPoint location) const;
    [[nodiscard]] bool shouldBypassMapping(const TapEvent& event) const;
    bool offer(std::int64_t buttonNumber, EventFlags flags);

    void publish(const MouseEventInfo& record);
    void deliverPublished();

    /// A set of button numbers that allocates nothing for those that devices have.
    class ButtonSet {
      public:
        void insert(std::int64_t number);
        /// Whether it was in.
        bool remove(std::int64_t number);
        void clear();

      private:
        std::bitset<64> small_;
        std::unordered_set<std::int64_t> others_;
    };

    Ports ports_;
    PermissionsProvider permissions_;
    Logger& logger_;
    Subscription outsideChange_;
    /// Whether the tap exists; the port holds the tap itself and its place in the main run loop.
    bool eventTap_ = false;
    /// The reference that the tap holds on the monitor.
    std::shared_ptr<EventMonitor> selfPtr_;
    ButtonSet pressedOtherButtons_;
    ButtonSet handledOtherButtonsOnDown_;
    /// Pressed while the session could not be used: their releases fire nothing either, however late.
    ButtonSet passedUnusable_;
    PointerShaper pointer_;

    /// Records on their way to the main queue. When events outrun it the oldest is given up: the history
    /// would not have kept it either.
    std::array<MouseEventInfo, 64> pending_;
    std::size_t pendingStart_ = 0;
    std::size_t pendingCount_ = 0;
    std::unique_ptr<MainQueue::CoalescedTask> publishTask_;
    Subscription sessionObserver_;
};

}  // namespace trelvan
