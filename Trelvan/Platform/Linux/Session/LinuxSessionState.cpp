#include "Platform/Linux/Session/LinuxSessionState.hpp"

#include <utility>

namespace trelvan {

LinuxSessionState::LinuxSessionState(const QDBusConnection& session, const QDBusConnection& system,
                                     std::unique_ptr<XConnection> connection, Timers& timers) {
    services_ = std::make_unique<LockServices>(session, system, timers, [this] { gather(); });
    if (connection)
        window_ = std::make_unique<LockerWindow>(std::move(connection), timers, [this] { gather(); });
    gather();
}

void LinuxSessionState::gather() {
    // Each part may have something to say while it is being made.
    const bool isCovered = window_ && window_->isLocked();
    if (services_) update(services_->isLocked() || isCovered, services_->isActive());
}

}  // namespace trelvan
