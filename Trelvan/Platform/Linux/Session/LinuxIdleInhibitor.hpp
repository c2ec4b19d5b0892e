#pragma once

#include "Platform/IdleInhibitor.hpp"
#include "Platform/Linux/X11/XConnection.hpp"

#include <QDBusConnection>

namespace trelvan {

/// Holds the inhibitors of the desktop (org.freedesktop.ScreenSaver, org.freedesktop.PowerManagement) and of
/// the login manager, whichever are there; again with a service that comes or comes back during a hold. The X
/// server's own screen saver, all that a bare window manager has, is suspended too. Each of them ends an
/// inhibition by itself when its holder leaves. Main thread.
class LinuxIdleInhibitor final : public IdleInhibitor {
  public:
    /// The connection to the server outlives every hold.
    LinuxIdleInhibitor(QDBusConnection session, QDBusConnection system, const XConnection& server);

    [[nodiscard]] std::unique_ptr<Hold> hold() override;

  private:
    QDBusConnection session_;
    QDBusConnection system_;
    const XConnection& server_;
};

}  // namespace trelvan
