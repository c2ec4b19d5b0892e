#include "UI/Models/PressLights.hpp"

#include "Core/Model/ButtonNumbers.hpp"

#include <utility>

namespace trelvan {

namespace {

/// One number for all mappings of a scroll direction.
std::int64_t lightOf(std::int64_t buttonNumber) {
    if (!isScrollButton(buttonNumber)) return buttonNumber;
    return isEvenButton(buttonNumber) ? scrollUpButtonNumber : scrollDownButtonNumber;
}

}  // namespace

PressLights::PressLights(EventMonitor& monitor, Timers& timers, const Clock& clock)
    : monitor_(monitor), timers_(timers), clock_(clock) {
    presses_ = monitor_.presses.observe([this](const ObservedPress& press) { see(press); });
    running_ = monitor_.isRunning.observe([this](bool isRunning) {
        if (!isRunning) clear();
    });
}

PressLights::~PressLights() = default;

bool PressLights::isLit(std::int64_t buttonNumber) const {
    return lit_.contains(lightOf(buttonNumber));
}

void PressLights::see(const ObservedPress& press) {
    const auto light = lightOf(press.buttonNumber);
    if (press.kind == ObservedPress::Kind::up) {
        lit_.erase(light);
    } else if (light >= firstExtraButtonNumber) {
        lit_[light] = std::nullopt;
    } else {
        lit_[light] = clock_.uptime() + moment;
        if (!timer_) armTimer();
    }
    changed = press;
}

void PressLights::armTimer() {
    timer_ = timers_.every(moment / 3, [this] { goOut(); });
}

void PressLights::goOut() {
    const auto now = clock_.uptime();
    const auto gone =
        std::erase_if(lit_, [now](const auto& each) { return each.second && *each.second <= now; });
    bool isAnyLeft = false;
    for (const auto& [number, until] : lit_) isAnyLeft = isAnyLeft || until.has_value();
    if (gone > 0) changed = std::nullopt;
    // Nothing of this is touched after the timer that runs it is gone.
    if (!isAnyLeft) timer_.reset();
}

void PressLights::clear() {
    if (lit_.empty()) return;
    lit_.clear();
    timer_.reset();
    changed = std::nullopt;
}

}  // namespace trelvan
