#include "Core/MonitorSwitch.hpp"

namespace trelvan {

std::optional<MonitorSwitch::Date> MonitorSwitch::pausedUntil() const {
    return pause_ ? std::optional(pause_->end) : std::nullopt;
}

void MonitorSwitch::start() {
    pause_.reset();
    isOff = false;
    monitor_.start();
}

void MonitorSwitch::stop() {
    pause_.reset();
    isOff = true;
    monitor_.stop();
}

void MonitorSwitch::pauseFor(Seconds length) {
    pause_ = Pause{.end = clock_.now() + std::chrono::duration_cast<Date::duration>(length),
                   .endUptime = clock_.uptime() + length};
    isOff = true;
    monitor_.stop();
}

void MonitorSwitch::refresh() {
    if (pause_ && (clock_.now() >= pause_->end || clock_.uptime() >= pause_->endUptime)) start();
}

}  // namespace trelvan
