#pragma once

#include "Platform/Platform.hpp"
#include "Platform/Simulated/SimulatedInput.hpp"
#include "Platform/Simulated/Trace.hpp"
#include "Platform/Simulated/VirtualTime.hpp"
#include "Utilities/Logger.hpp"

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace trelvan {

/// The switches that make calls of the simulated platform fail.
struct SimulatedFailures {
    bool tapCreate = false;
    bool eventCopy = false;
    bool eventCreate = false;
    bool scriptCreate = false;
    bool scriptRun = false;
    bool save = false;
    bool loginItem = false;
    /// No key monitor can be installed.
    bool keyMonitors = false;
};

/// One power source as the system describes it.
struct SimulatedPowerSource {
    double current = 0;
    double max = 0;
    /// "Battery Power", "AC Power" …
    std::string state;
    friend bool operator==(const SimulatedPowerSource&, const SimulatedPowerSource&) = default;
};

/// Something on the simulated disk.
struct SimulatedItem {
    enum class Kind { application, folder, file } kind = Kind::file;
    /// Bundle identifier of an application; may be empty.
    std::string bundle;
};

/// The default audio input device; an element without a value has no such control.
struct SimulatedMicrophone {
    bool present = false;
    /// The whole device, then its two channels.
    std::array<std::optional<std::uint32_t>, 3> mute{};
    std::array<std::optional<float>, 3> volume{};
    /// How often anything of it was read.
    int reads = 0;
};

/// The notification centre and its user.
struct SimulatedNotificationState {
    Notifications::Authorization authorization = Notifications::Authorization::notDetermined;
    /// What the user says when asked for permission.
    bool userAllows = true;
    int authorizationRequests = 0;
    std::uint32_t requestedOptions = 0;
    /// What was added last, shown or not.
    std::optional<NotificationRequest> lastRequest;
    /// What the delegate answered last; asked only while the program is frontmost.
    std::optional<std::uint32_t> lastOptions;
};

/// A complete, deterministic desktop in memory: the world that tests and dry runs set up, and every port onto
/// it. What leaves the program is told to `onTrace` the moment it happens. One thread.
class SimulatedDesktop : public Platform {
  public:
    explicit SimulatedDesktop(const ActionShortcuts& shortcuts = macShortcuts);
    ~SimulatedDesktop() override;

    // The world

    VirtualTime time;
    SimulatedFailures failures;
    std::vector<BottomLeftRect> screenFrames{{0, 0, 1440, 900}};
    std::vector<OwnWindow> windows;
    /// The window of an open menu, ahead of them all.
    std::optional<OwnWindow> overlay;
    TopLeftPoint pointer{720, 450};
    std::string frontmost = "com.example.app";
    EventFlags modifierFlags = 0;
    bool capsLock = false;
    /// Whether pointer events that the program posts end the idle time, as on macOS; under X they do not.
    bool postedCountsAsActivity = false;
    /// See `EventTap`; under X they do.
    bool releasesFollowPresses = false;
    SimulatedMicrophone microphone;
    SimulatedNotificationState notificationState;
    LoginItem::Status loginStatus = LoginItem::Status::notRegistered;
    /// Information texts by key, as in a fresh installation.
    std::map<std::string, std::string, std::less<>> bundle{{"CFBundleIdentifier", "com.yourname.Trelvan"},
                                                           {"CFBundleDisplayName", "Trelvan"},
                                                           {"CFBundleName", "Trelvan"},
                                                           {"CFBundleShortVersionString", "1.0"}};
    /// How many idle inhibitions are in force.
    int idleHolds = 0;
    bool accessibility = true;
    /// Whether a further start can reach the program that runs.
    bool hasBus = true;
    /// How windows should look; `changeAppearance` tells those who follow it.
    bool prefersDark = false;
    std::optional<Rgb> accentColor;
    std::map<int, HotKeyEntry> hotKeyEntries;
    /// None: the information is missing.
    std::optional<std::vector<SimulatedPowerSource>> powerSources{std::in_place};
    /// Whether the function keys are function keys without Fn.
    bool fnState = false;
    /// None: not to be read.
    std::optional<bool> doNotDisturb;
    /// The keys of a layout by what they type; empty on a platform that goes by places.
    std::map<char32_t, KeyChord> layout;
    /// How the desktop answers when asked for a view; none: it cannot be asked.
    std::function<bool(SystemView, const SystemViews::ByKeys&)> onView;
    /// Whom the program wants told of views that this desktop does not have.
    SystemViews::MissingObserver onMissingView;
    /// The views that a desktop which can be asked has: those of a bare window manager.
    std::set<SystemView> offeredViews{SystemView::showDesktop, SystemView::desktopLeft,
                                      SystemView::desktopRight};
    /// To be read after `settleDefaults`, where values may have been set lazily.
    std::map<std::string, DefaultsValue, std::less<>> defaults;
    std::map<std::string, UserDefaults::Maker> unmadeDefaults;
    std::map<std::string, SimulatedItem, std::less<>> disk;
    /// What was put aside, by the name it got.
    std::map<std::string, std::string> asides;

    /// Told of everything that leaves the program; none: nothing is put together.
    std::function<void(const TraceEntry&)> onTrace;
    /// Tells the trace, where there is one, that something leaves the program now.
    template <typename What>
    void tell(What what) const {
        if (onTrace) onTrace({time.uptime(), std::move(what)});
    }
    /// Writes into the trace.
    Logger logger;

    /// Makes the values that were set lazily: before `defaults` is read, and before `failures.save` is
    /// switched.
    void settleDefaults();

    /// One event of the hardware (or of another program) at the tap; what became of it, which is `deliver`
    /// for types that are not tapped.
    TapAnswer send(TapEvent event);
    /// One key event, for the monitors; whether a monitor of the program's own windows kept it.
    KeyMonitors::LocalAnswer sendKey(const KeyMonitorEvent& event);
    /// The application with this bundle identifier comes to the front.
    void bringToFront(std::string bundleIdentifier);
    /// The user presses Caps Lock; with `monitored` false no monitor is told.
    void switchCapsLock(bool on, bool monitored = true);
    /// The login item is changed by somebody else, on a platform that is told so.
    void changeLoginItem(LoginItem::Status status);
    /// The desktop's panel comes up, with a place for the program's item.
    void showStatusArea();
    /// The user starts the program a second time; whether the running one was reached.
    bool startAgain();
    /// The screen is locked or unlocked, the session gets or loses the screen.
    void changeSession(bool locked, bool active);
    /// Whether the program itself is the frontmost application.
    [[nodiscard]] bool isFrontmost() const;
    /// The user changes how windows look.
    void changeAppearance(bool dark, std::optional<Rgb> accent = {});
    /// The system takes the tap out of service and says why.
    void disableTap(EventType why);
    [[nodiscard]] bool tapExists() const;
    [[nodiscard]] bool tapEnabled() const;
    /// How many taps were ever created.
    [[nodiscard]] int tapsCreated() const;

    // Platform
    Clock& clock() override { return time; }
    MainQueue& mainQueue() override { return time; }
    Timers& timers() override { return time; }
    BackgroundQueue& backgroundQueue() override { return time.background(); }
    EventTap& eventTap() override;
    EventPoster& eventPoster() override;
    InputState& inputState() override;
    Screens& screens() override;
    const SessionState& sessionState() override;
    UserDefaults& userDefaults() override;
    Workspace& workspace() override;
    AccessibilityTrust& accessibilityTrust() override;
    ScriptRunner& scriptRunner() override;
    HotKeyTable& hotKeyTable() override;
    SystemViews& systemViews() override;
    Notifications& notifications() override;
    KeyMonitors& keyMonitors() override;
    SimulatedMenuInput& menuInput() override;
    AudioInput& audioInput() override;
    LoginItem& loginItem() override;
    const BundleInfo& bundleInfo() override;
    IdleInhibitor& idleInhibitor() override;
    const Appearance& appearance() override;
    StatusArea& statusArea() override;
    SingleInstance& singleInstance() override;
    const ActionShortcuts& actionShortcuts() override { return shortcuts_; }
    /// Also for what has been handed `actionShortcuts` before.
    void setActionShortcuts(const ActionShortcuts& shortcuts) { shortcuts_ = shortcuts; }
    /// Nothing happens by itself here: returns at once.
    int run() override { return 0; }

  private:
    struct Parts;

    ActionShortcuts shortcuts_;
    std::unique_ptr<Parts> parts_;
};

}  // namespace trelvan
