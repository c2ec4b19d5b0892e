#pragma once

#include "Platform/Linux/Session/LockServices.hpp"
#include "Platform/Linux/Session/LockerWindow.hpp"
#include "Platform/SessionState.hpp"

#include <memory>

namespace trelvan {

/// The session is in use unless a service says otherwise or a locker is seen on the screen. Main thread.
class LinuxSessionState final : public SessionState {
  public:
    /// Without a connection only the services are asked.
    LinuxSessionState(const QDBusConnection& session, const QDBusConnection& system,
                      std::unique_ptr<XConnection> connection, Timers& timers);

  private:
    void gather();

    std::unique_ptr<LockServices> services_;
    std::unique_ptr<LockerWindow> window_;
};

}  // namespace trelvan
