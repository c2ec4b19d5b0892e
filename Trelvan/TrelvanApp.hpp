#pragma once

#include "AppNotificationDelegate.hpp"
#include "Core/CapsLockNotifier.hpp"
#include "Core/EventMonitor.hpp"
#include "Core/KeepAwakeManager.hpp"
#include "Core/LaunchAtLoginManager.hpp"
#include "Core/MicMuteNotifier.hpp"
#include "Core/MissingViewNotifier.hpp"
#include "Core/MonitorSwitch.hpp"
#include "Core/NotificationPoster.hpp"
#include "Core/PermissionsManager.hpp"
#include "Core/ProfileManager.hpp"
#include "Core/SmartButtonController.hpp"
#include "Platform/Platform.hpp"
#include "Utilities/Logger.hpp"

#include <memory>

namespace trelvan {

/// The root object: owns the long-lived services, joins the tap to the actions, and sees to it that the tap
/// comes up as soon as the permission for it is there. Main thread.
class TrelvanApp {
  public:
    /// How often the permission is looked at, and a tap that is missing is tried again.
    static constexpr Seconds permissionInterval{2.0};
    /// How long after the services are there the notifiers start, if the interface did not start them.
    static constexpr Seconds notifierDelay{0.7};

    /// Creates the services, in the order of their declaration. Platform and logger outlive the application,
    /// and so does `tap`, which stands in for the platform's where there is one.
    TrelvanApp(Platform& platform, SmartButtonPanels& panels, Logger& logger,
               UuidSource uuids = &Uuid::random, EventTap* tap = nullptr);
    TrelvanApp(const TrelvanApp&) = delete;
    TrelvanApp& operator=(const TrelvanApp&) = delete;
    /// Stops the tap: a monitor whose tap exists would outlive its owner.
    ~TrelvanApp();

    /// The interface appeared for the first time: wires the services and starts the permission trigger.
    /// Further calls do nothing.
    void appear();

    ProfileManager profileManager;
    const std::shared_ptr<EventMonitor> eventMonitor;
    PermissionsManager permissions;
    LaunchAtLoginManager loginManager;
    KeepAwakeManager keepAwakeManager;
    const std::shared_ptr<SmartButtonController> smartButtonController;

    NotificationPoster notificationPoster;
    CapsLockNotifier capsLockNotifier;
    MicMuteNotifier micMuteNotifier;
    MissingViewNotifier missingViewNotifier;
    /// What the permission trigger respects: a monitor that the user stopped stays stopped.
    MonitorSwitch monitorSwitch;

  private:
    void startNotifiers();
    void setupMonitor();
    void watchPermission();
    void startIfPermitted();

    Platform& platform_;
    Logger& logger_;
    bool appeared_ = false;
    AppNotificationDelegate notificationDelegate_;
    Subscription permissionObserver_;
    std::unique_ptr<Timers::Timer> permissionTimer_;
    /// What was put into the main queue asks this before it touches the application.
    std::shared_ptr<TrelvanApp*> alive_;
};

}  // namespace trelvan
