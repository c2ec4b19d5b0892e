#include "Platform/Linux/LinuxPlatform.hpp"

#include "Platform/Linux/Applications/LinuxLoginItem.hpp"
#include "Platform/Linux/Applications/LinuxWorkspace.hpp"
#include "Platform/Linux/Guard/CoveringWindows.hpp"
#include "Platform/Linux/Guard/Guard.hpp"
#include "Platform/Linux/Guard/GuardKeeper.hpp"
#include "Platform/Linux/Poster/X11EventPoster.hpp"
#include "Platform/Linux/Poster/X11InputState.hpp"
#include "Platform/Linux/Poster/X11KeyMonitors.hpp"
#include "Platform/Linux/Session/BusInstance.hpp"
#include "Platform/Linux/Session/JournalSink.hpp"
#include "Platform/Linux/Session/LinuxAppearance.hpp"
#include "Platform/Linux/Session/LinuxBundleInfo.hpp"
#include "Platform/Linux/Session/LinuxIdleInhibitor.hpp"
#include "Platform/Linux/Session/LinuxNotifications.hpp"
#include "Platform/Linux/Session/LinuxSessionState.hpp"
#include "Platform/Linux/Session/LinuxStatusArea.hpp"
#include "Platform/Linux/Session/PulseAudioInput.hpp"
#include "Platform/Linux/Session/SettingsWatch.hpp"
#include "Platform/Linux/Session/X11Screens.hpp"
#include "Platform/Linux/Shell/DesktopMoveScript.hpp"
#include "Platform/Linux/Shell/LinuxHotKeys.hpp"
#include "Platform/Linux/Shell/LinuxSystemViews.hpp"
#include "Platform/Linux/Tap/EscapeHold.hpp"
#include "Platform/Linux/Tap/X11AccessibilityTrust.hpp"
#include "Platform/Linux/Tap/X11EventTap.hpp"
#include "Platform/Linux/Tap/X11MenuInput.hpp"
#include "Platform/Linux/X11/ConnectionLossHook.hpp"
#include "Platform/Linux/X11/DisplayOwner.hpp"
#include "Platform/Linux/X11/ModifierState.hpp"
#include "Platform/Linux/X11/XButtons.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"
#include "Platform/Linux/X11/XEventPump.hpp"
#include "Platform/Linux/XTest/PendingReleases.hpp"
#include "Platform/Shared/OutputSink.hpp"
#include "Platform/Shared/QtRunLoop.hpp"
#include "Platform/Shared/SettingsFile.hpp"
#include "Platform/Shared/SteadyClock.hpp"
#include "Platform/Shared/TerminationSignals.hpp"
#include "Platform/Shared/WorkerQueue.hpp"
#include "Utilities/Logger.hpp"

#include <malloc.h>
#include <unistd.h>

#include <QApplication>
#include <QWindow>
#include <cstdlib>
#include <filesystem>

namespace trelvan {

namespace {

/// What the program must be started with again to be the same.
std::vector<std::string> startArguments(const PlatformOptions& options) {
    if (options.configDirectory.empty()) return {};
    std::error_code ignored;
    return {"--config", std::filesystem::absolute(options.configDirectory, ignored).string()};
}

/// Joins the log to its outputs, of which one sink serves both, before the first part that may have something
/// to say, and until after the last.
struct LogJoin {
    explicit LogJoin(LogSink& output) { AppLogger.connect(&output, nullptr); }
    LogJoin(const LogJoin&) = delete;
    LogJoin& operator=(const LogJoin&) = delete;
    ~LogJoin() { AppLogger.disconnect(); }
};

/// One more connection; none where the server takes no more clients, without which the program can do.
std::unique_ptr<XConnection> furtherConnection() {
    auto opened = XConnection::open();
    auto* connection = std::get_if<std::unique_ptr<XConnection>>(&opened);
    return connection != nullptr ? std::move(*connection) : nullptr;
}

std::string displayName() {
    const char* display = std::getenv("DISPLAY");
    return display != nullptr ? display : "";
}

PlatformFailure alreadyRuns(const DisplayOwner::Other& other) {
    const std::string number = other.process != 0 ? " " + std::to_string(other.process) : "";
    return {.english = "Trelvan already runs on this display (process" + number + "); end it first",
            .spanish = "Trelvan ya funciona en esta pantalla (proceso" + number + "); termínalo primero",
            .alreadyRuns = true};
}

/// A block as large as a picture of the screen goes back to the system when it is freed. By itself the C
/// library keeps such blocks from the second one on.
void giveLargeMemoryBack() {
#ifdef M_MMAP_THRESHOLD
    constexpr int large = 1 << 20;
    mallopt(M_MMAP_THRESHOLD, large);
#endif
}

}  // namespace

/// Every part, in the order in which they need each other, and destroyed in the opposite one. So the
/// background queue finishes its key sequences, then the poster and the tap release what they hold, then the
/// connections close.
struct LinuxPlatform::Parts {
    Parts(std::unique_ptr<Guard> started, std::unique_ptr<QApplication> qtApplication,
          std::unique_ptr<XConnection> main, std::unique_ptr<XConnection> posting,
          const PlatformOptions& options)
        : guard(std::move(started)),
          application(std::move(qtApplication)),
          connection(std::move(main)),
          defaults(options.configDirectory.empty() ? SettingsFile::defaultFolder() : options.configDirectory,
                   [this](std::function<void()> job) { mainQueue.async(std::move(job)); }),
          poster(std::move(posting), tap, menuKeys, guard->page(), origin),
          loginItem(LinuxLoginItem::present(startArguments(options))) {
        setConnectionLossHook([this] {
            defaults.flush();
            guard->forgetPage();
        });
        tap.onRunaway = [this] { background.after(Seconds{0}, [this] { poster.releaseAll(); }); };
    }
    ~Parts() { setConnectionLossHook(nullptr); }

    void escape() {
        tap.yield(!tap.isYielding());
        AppLogger.warning(tap.isYielding()
                              ? "Escape mantenido cinco segundos: los dispositivos quedan libres "
                                "hasta que se repita"
                              : "Escape mantenido cinco segundos: se retoman los dispositivos");
    }

    std::unique_ptr<Guard> guard;
    OutputSink output{STDOUT_FILENO, std::make_unique<JournalSink>()};
    LogJoin join{output};
    std::unique_ptr<QApplication> application;
    std::unique_ptr<XConnection> connection;
    SteadyClock clock;
    QtMainQueue mainQueue;
    QtTimers timers;
    XEventPump pump{*connection};
    SettingsFile defaults;
    SettingsWatch settingsWatch{defaults};
    ActivityLog activity;
    ModifierState modifiers{pump};
    EventOrigin origin;
    X11EventTap tap{pump, modifiers, activity, timers, guard->page(), origin};
    MenuKeyGrabs menuKeys{guard->page()};
    X11EventPoster poster;
    X11InputState inputState{pump, modifiers, activity, timers, poster};
    EscapeHold escapeHold{pump, timers, [this] { escape(); }};
    X11Screens screens{pump, tap, origin};
    LinuxSessionState sessionState{QDBusConnection::sessionBus(), QDBusConnection::systemBus(),
                                   furtherConnection(), timers};
    LinuxWorkspace workspace{mainQueue, pump, timers};
    X11AccessibilityTrust trust{*connection, tap};
    DesktopKind desktop = currentDesktop();
    LinuxHotKeys hotKeys{desktop, timers, [this](unsigned long keysym) { return poster.keyFor(keysym); }};
    LinuxSystemViews views{*connection, mainQueue, desktop, hotKeys};
    DesktopMoveScript script{views};
    LinuxNotifications notifications{QDBusConnection::sessionBus(),
                                     [] { return QGuiApplication::focusWindow() != nullptr; }};
    X11KeyMonitors keyMonitors{pump, modifiers};
    X11MenuInput menuInput{pump, menuKeys};
    CoveringWindows covering{*guard};
    PulseAudioInput audio;
    LinuxLoginItem loginItem;
    LinuxBundleInfo bundle;
    LinuxAppearance look{*connection, QDBusConnection::sessionBus()};
    LinuxStatusArea statusArea{*connection, QDBusConnection::sessionBus(), timers};
    BusInstance instance{QDBusConnection::sessionBus(), instanceName(displayName())};
    LinuxIdleInhibitor inhibitor{QDBusConnection::sessionBus(), QDBusConnection::systemBus(), *connection};
    GuardKeeper guardKeeper{*guard, timers};
    TerminationSignals termination{[] { QCoreApplication::quit(); }};
    WorkerQueue background;
};

LinuxPlatform::LinuxPlatform(std::unique_ptr<Guard> guard, std::unique_ptr<QApplication> application,
                             std::unique_ptr<XConnection> main, std::unique_ptr<XConnection> posting,
                             const PlatformOptions& options)
    : parts_(std::make_unique<Parts>(std::move(guard), std::move(application), std::move(main),
                                     std::move(posting), options)) {}

LinuxPlatform::~LinuxPlatform() = default;

Clock& LinuxPlatform::clock() {
    return parts_->clock;
}
MainQueue& LinuxPlatform::mainQueue() {
    return parts_->mainQueue;
}
Timers& LinuxPlatform::timers() {
    return parts_->timers;
}
BackgroundQueue& LinuxPlatform::backgroundQueue() {
    return parts_->background;
}
EventTap& LinuxPlatform::eventTap() {
    return parts_->tap;
}
EventPoster& LinuxPlatform::eventPoster() {
    return parts_->poster;
}
InputState& LinuxPlatform::inputState() {
    return parts_->inputState;
}
Screens& LinuxPlatform::screens() {
    return parts_->screens;
}
const SessionState& LinuxPlatform::sessionState() {
    return parts_->sessionState;
}
UserDefaults& LinuxPlatform::userDefaults() {
    return parts_->defaults;
}
Workspace& LinuxPlatform::workspace() {
    return parts_->workspace;
}
AccessibilityTrust& LinuxPlatform::accessibilityTrust() {
    return parts_->trust;
}
ScriptRunner& LinuxPlatform::scriptRunner() {
    return parts_->script;
}
HotKeyTable& LinuxPlatform::hotKeyTable() {
    return parts_->hotKeys;
}
SystemViews& LinuxPlatform::systemViews() {
    return parts_->views;
}

Notifications& LinuxPlatform::notifications() {
    return parts_->notifications;
}
KeyMonitors& LinuxPlatform::keyMonitors() {
    return parts_->keyMonitors;
}
MenuInput& LinuxPlatform::menuInput() {
    return parts_->menuInput;
}
AudioInput& LinuxPlatform::audioInput() {
    return parts_->audio;
}
LoginItem& LinuxPlatform::loginItem() {
    return parts_->loginItem;
}
const BundleInfo& LinuxPlatform::bundleInfo() {
    return parts_->bundle;
}
IdleInhibitor& LinuxPlatform::idleInhibitor() {
    return parts_->inhibitor;
}

const Appearance& LinuxPlatform::appearance() {
    return parts_->look;
}

StatusArea& LinuxPlatform::statusArea() {
    return parts_->statusArea;
}
SingleInstance& LinuxPlatform::singleInstance() {
    return parts_->instance;
}

int LinuxPlatform::run() {
    return QApplication::exec();
}

std::variant<std::unique_ptr<Platform>, PlatformFailure> makePlatform(int& argc, char** argv,
                                                                      const PlatformOptions& options) {
    // A copy of this process must not have a connection of it: the server would not see the end of this one.
    auto guard = std::make_unique<Guard>();
    giveLargeMemoryBack();
    XErrorScope::install();
    // Where Qt's connection breaks first, Qt ends the process with exit().
    std::atexit([] {
        const char* display = std::getenv("DISPLAY");
        if (runConnectionLossHook() && display != nullptr) reportConnectionLost(display);
    });
    // Qt ends the process where it finds no display, so the server is asked first.
    auto main = XConnection::open();
    if (const auto* failure = std::get_if<PlatformFailure>(&main)) return *failure;
    auto posting = XConnection::open();
    if (const auto* failure = std::get_if<PlatformFailure>(&posting)) return *failure;
    if (const auto other = DisplayOwner::take(*std::get<std::unique_ptr<XConnection>>(main)))
        return alreadyRuns(*other);
    const PendingReleases leftOver = guard->leftOver();
    const auto& connection = std::get<std::unique_ptr<XConnection>>(main);
    if (leftOver.any()) release(connection->display(), leftOver);
    setenv("QT_QPA_PLATFORM", "xcb", 0);
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    // Qt has put its own handlers in their place.
    XErrorScope::install();
    auto platform = std::make_unique<LinuxPlatform>(
        std::move(guard), std::move(application), std::get<std::unique_ptr<XConnection>>(std::move(main)),
        std::get<std::unique_ptr<XConnection>>(std::move(posting)), options);
    if (leftOver.any()) AppLogger.info("Se soltó lo que una ejecución anterior dejó pulsado");
    return platform;
}

bool askRunningProgramToShow() {
    // On a connection of its own, since there is no application object yet and will be none.
    constexpr const char* connection = "trelvan-further-start";
    const bool isShown = askInstanceToShow(
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, connection), instanceName(displayName()));
    QDBusConnection::disconnectFromBus(connection);
    return isShown;
}

std::optional<int> runHelperProcess(int argc, char** argv) {
    return Guard::runIfAsked(argc, argv);
}

std::optional<SessionNotice> sessionNotice() {
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    if (wayland == nullptr || *wayland == '\0') return std::nullopt;
    return SessionNotice{
        "This is a Wayland session: only presses over windows of X programs (through Xwayland) can be "
        "served. "
        "A session on X11 is served whole.",
        "Esta es una sesión de Wayland: solo se pueden atender las pulsaciones sobre ventanas de programas X "
        "(mediante Xwayland). Una sesión en X11 se atiende entera."};
}

InputLimits inputLimits() {
    // Keyboards keep the Fn key to themselves.
    return {.modifiers = flag::shift | flag::control | flag::option | flag::command,
            .highestButton = *quartzButton(highestXButton)};
}

const ActionShortcuts& platformShortcuts() {
    return linuxShortcuts;
}

}  // namespace trelvan
