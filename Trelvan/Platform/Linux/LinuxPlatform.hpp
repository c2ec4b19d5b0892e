#pragma once

#include "Platform/Platform.hpp"

#include <memory>

class QApplication;

namespace trelvan {

class Guard;
class XConnection;

/// The platform on an X server with Qt's event loop as the main loop. Main thread.
class LinuxPlatform : public Platform {
  public:
    LinuxPlatform(std::unique_ptr<Guard> guard, std::unique_ptr<QApplication> application,
                  std::unique_ptr<XConnection> main, std::unique_ptr<XConnection> posting,
                  const PlatformOptions& options);
    ~LinuxPlatform() override;

    Clock& clock() override;
    MainQueue& mainQueue() override;
    Timers& timers() override;
    BackgroundQueue& backgroundQueue() override;
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
    MenuInput& menuInput() override;
    AudioInput& audioInput() override;
    LoginItem& loginItem() override;
    const BundleInfo& bundleInfo() override;
    IdleInhibitor& idleInhibitor() override;
    const Appearance& appearance() override;
    StatusArea& statusArea() override;
    SingleInstance& singleInstance() override;
    const ActionShortcuts& actionShortcuts() override { return platformShortcuts(); }

    int run() override;

  private:
    struct Parts;

    std::unique_ptr<Parts> parts_;
};

}  // namespace trelvan
