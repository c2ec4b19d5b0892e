#pragma once

#include "Platform/IdleInhibitor.hpp"

#include <QDBusConnection>

namespace trelvan {

/// Holds the inhibitors of the desktop (org.freedesktop.ScreenSaver, org.freedesktop.PowerManagement) and of
/// the login manager, whichever are there; again with a service that comes or comes back during a hold. Each
/// of them ends an inhibition by itself when its holder leaves the bus. Main thread.
class LinuxIdleInhibitor final : public IdleInhibitor {
  public:
    LinuxIdleInhibitor(QDBusConnection session, QDBusConnection system);

    [[nodiscard]] std::unique_ptr<Hold> hold() override;

  private:
    QDBusConnection session_;
    QDBusConnection system_;
};

}  // namespace trelvan
