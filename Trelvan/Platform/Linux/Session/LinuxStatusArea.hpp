#pragma once

#include "Platform/Linux/X11/XConnection.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/StatusArea.hpp"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <memory>

namespace trelvan {

/// Finds the watcher of StatusNotifierItems on the session bus, or the selection owner of an X tray. The
/// toolkit decides once which of the two it uses, and would wait for a bus service that hangs: so nothing is
/// made before one of them has answered here. Main thread.
class LinuxStatusArea final : public QObject, public StatusArea {
    Q_OBJECT

  public:
    static constexpr Seconds interval{2.0};

    LinuxStatusArea(XConnection& connection, const QDBusConnection& session, Timers& timers);

  private slots:
    void askWatcher();

  private:
    void lookForTray();

    XConnection& connection_;
    QDBusConnection session_;
    QDBusServiceWatcher watcher_;
    /// Until something is found; an X tray tells its coming to windows of the root only.
    std::unique_ptr<Timers::Timer> timer_;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace trelvan
