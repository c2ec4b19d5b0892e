#pragma once

#include "Platform/AccessibilityTrust.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/Appearance.hpp"
#include "Platform/AudioInput.hpp"
#include "Platform/BundleInfo.hpp"
#include "Platform/EventPoster.hpp"
#include "Platform/EventTap.hpp"
#include "Platform/HotKeyTable.hpp"
#include "Platform/IdleInhibitor.hpp"
#include "Platform/InputState.hpp"
#include "Platform/KeyMonitors.hpp"
#include "Platform/LoginItem.hpp"
#include "Platform/MenuInput.hpp"
#include "Platform/Notifications.hpp"
#include "Platform/PlatformFailure.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/Screens.hpp"
#include "Platform/ScriptRunner.hpp"
#include "Platform/SessionState.hpp"
#include "Platform/SingleInstance.hpp"
#include "Platform/StatusArea.hpp"
#include "Platform/SystemViews.hpp"
#include "Platform/UserDefaults.hpp"
#include "Platform/Workspace.hpp"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace trelvan {

/// One platform, whole: every port, made once and living as long as this object. The application is the only
/// one that sees them together; a service takes just those it uses.
class Platform {
  public:
    virtual ~Platform() = default;

    virtual Clock& clock() = 0;
    virtual MainQueue& mainQueue() = 0;
    virtual Timers& timers() = 0;
    virtual BackgroundQueue& backgroundQueue() = 0;
    virtual EventTap& eventTap() = 0;
    virtual EventPoster& eventPoster() = 0;
    virtual InputState& inputState() = 0;
    virtual Screens& screens() = 0;
    virtual const SessionState& sessionState() = 0;
    virtual UserDefaults& userDefaults() = 0;
    virtual Workspace& workspace() = 0;
    virtual AccessibilityTrust& accessibilityTrust() = 0;
    virtual ScriptRunner& scriptRunner() = 0;
    virtual HotKeyTable& hotKeyTable() = 0;
    virtual SystemViews& systemViews() = 0;
    virtual Notifications& notifications() = 0;
    virtual KeyMonitors& keyMonitors() = 0;
    virtual MenuInput& menuInput() = 0;
    virtual AudioInput& audioInput() = 0;
    virtual LoginItem& loginItem() = 0;
    virtual const BundleInfo& bundleInfo() = 0;
    virtual IdleInhibitor& idleInhibitor() = 0;
    virtual const Appearance& appearance() = 0;
    virtual StatusArea& statusArea() = 0;
    virtual SingleInstance& singleInstance() = 0;
    virtual const ActionShortcuts& actionShortcuts() = 0;

    /// Runs the main loop on the calling (main) thread until it is told to end. The process's exit status.
    virtual int run() = 0;
};

/// What the command line asks of the platform.
struct PlatformOptions {
    /// Folder of the settings file; empty for the platform's own place.
    std::string configDirectory;
};

/// The platform this program was built for, with the shared logger joined to its outputs for as long as it
/// lives. `argc` and `argv` outlive it (toolkits keep them).
[[nodiscard]] std::variant<std::unique_ptr<Platform>, PlatformFailure> makePlatform(
    int& argc, char** argv, const PlatformOptions& options);

/// Asks the program that serves this display already to show its window, and waits for its answer. False
/// where it cannot be reached. For a start that was told so by `PlatformFailure::alreadyRuns`.
[[nodiscard]] bool askRunningProgramToShow();

/// Makes the process ready to be told to end and to run into limits, whatever it inherited: the first call of
/// `main`, before the first thread.
void prepareProcess();

/// Where this process is a helper that the platform made by starting the program again: its whole life, and
/// its exit status. None in the program itself. Before anything else.
[[nodiscard]] std::optional<int> runHelperProcess(int argc, char** argv);

/// What the user must know of the session that the program was started in; none where all of it is served.
struct SessionNotice {
    std::string_view english;
    std::string_view spanish;
};
[[nodiscard]] std::optional<SessionNotice> sessionNotice();

/// What devices can report here.
struct InputLimits {
    /// The modifiers that a keyboard's keys can set.
    EventFlags modifiers = 0;
    std::int64_t highestButton = 0;
};
[[nodiscard]] InputLimits inputLimits();

/// The combinations that this platform's applications know, also without a display.
[[nodiscard]] const ActionShortcuts& platformShortcuts();

/// The shortcuts that the desktop's own settings give its functions, by their symbolic identifiers; without a
/// display too. Reads files or asks a program, and waits for it.
[[nodiscard]] std::map<int, NamedHotKey> desktopHotKeys();

}  // namespace trelvan
