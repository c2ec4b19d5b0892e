#include "Core/KeepAwakeManager.hpp"

#include "Core/Settings/SettingsCatalogue.hpp"

#include <algorithm>
#include <cmath>

namespace trelvan {

namespace {

constexpr double secondsInMinute = 60.0;
/// How far a nudge keeps from the edges of the screen, in points.
constexpr double edgeMargin = 2.0;

/// Seconds as a countdown shows them: never below zero, and never beyond what a whole number holds.
std::int64_t countdown(double wholeSeconds) {
    constexpr double longest = 9e15;
    return std::isnan(wholeSeconds) ? 0 : static_cast<std::int64_t>(std::clamp(wholeSeconds, 0.0, longest));
}

/// Scrolling and other buttons do not count as the user being there.
double sessionIdleSeconds(const InputState& input) {
    return std::min(
        {input.secondsSinceLast(EventType::mouseMoved), input.secondsSinceLast(EventType::leftMouseDown),
         input.secondsSinceLast(EventType::rightMouseDown), input.secondsSinceLast(EventType::keyDown)});
}

double awayFromEdge(double coordinate, double edge) {
    return std::min(std::max(coordinate, edgeMargin), edge - edgeMargin);
}

}  // namespace

KeepAwakeManager::KeepAwakeManager(const Ports& ports)
    : isEnabled(setting::row("isEnabled"), ports.defaults,
                [this] { isEnabled ? startMonitoring() : stopMonitoring(); }),
      idleThresholdMinutes(setting::row("idleThresholdMinutes"), ports.defaults),
      moveEveryMinutes(setting::row("moveEveryMinutes"), ports.defaults),
      autoStopPreset(setting::row("autoStopPreset"), ports.defaults,
                     [this] {
                         if (isEnabled) scheduleAutoStop();
                     }),
      ports_(ports) {
    for (auto* const setting : settings()) setting->load();
    if (isEnabled) startMonitoring();
    outsideChange_ = ports_.defaults.onOutsideChange([this](const auto& keys) { followOutsideChange(keys); });
}

std::array<AnySetting*, 4> KeepAwakeManager::settings() {
    return {&isEnabled, &idleThresholdMinutes, &moveEveryMinutes, &autoStopPreset};
}

std::array<const AnySetting*, 4> KeepAwakeManager::settings() const {
    return {&isEnabled, &idleThresholdMinutes, &moveEveryMinutes, &autoStopPreset};
}

void KeepAwakeManager::followOutsideChange(const UserDefaults::Keys& keys) {
    const bool wasEnabled = isEnabled;
    const AutoStopPreset preset = autoStopPreset;
    for (auto* const setting : settings()) setting->follow(keys);
    if (isEnabled && (!wasEnabled || autoStopPreset != preset)) startMonitoring();
    if (!isEnabled && wasEnabled) stopMonitoring();
}

// Watching

void KeepAwakeManager::startMonitoring() {
    if (pollTimer_) return scheduleAutoStop();
    lastErrorMessage = std::nullopt;
    lastSyntheticMoveDate_.reset();
    lastTickDate_ = ports_.clock.now();
    scheduleAutoStop();
    pollTimer_ = ports_.timers.every(pollInterval, [this] { tick(); });
    tick();
}

void KeepAwakeManager::stopMonitoring() {
    pollTimer_.reset();
    autoStopTimer_.reset();
    inhibitIdle(false);
    isCurrentlyAway = false;
    nextMoveInSeconds = std::nullopt;
    lastErrorMessage = std::nullopt;
    remainingAutoStopSeconds = std::nullopt;
    enabledAt_.reset();
}

void KeepAwakeManager::scheduleAutoStop() {
    autoStopTimer_.reset();
    followTimeOfDay();
    enabledAt_ = now();
    const auto length = duration(autoStopPreset);
    if (!length) {
        remainingAutoStopSeconds = std::nullopt;
        return;
    }
    remainingAutoStopSeconds = countdown(length->count());
    autoStopTimer_ = ports_.timers.once(*length, [this] { isEnabled = false; });
}

void KeepAwakeManager::tick() {
    if (!isEnabled) return;
    followTimeOfDay();
    const double idle = sessionIdleSeconds(ports_.input);
    const double threshold = idleThresholdMinutes * secondsInMinute;
    const double interval = moveEveryMinutes * secondsInMinute;

    const bool away = threshold <= idle;
    isCurrentlyAway = away;
    inhibitIdle(away);

    const auto length = duration(autoStopPreset);
    const auto left =
        length && enabledAt_ ? std::optional(length->count() - secondsSince(*enabledAt_)) : std::nullopt;
    remainingAutoStopSeconds = left ? std::optional(countdown(std::trunc(*left))) : std::nullopt;
    // The timer stands still while the computer sleeps.
    if (left && *left <= 0) {
        isEnabled = false;
        return;
    }

    if (!away) {
        nextMoveInSeconds = countdown(std::ceil(threshold - idle));
        return;
    }
    const double elapsed =
        lastSyntheticMoveDate_ ? secondsSince(*lastSyntheticMoveDate_) : std::max(0.0, idle - threshold);
    nextMoveInSeconds = countdown(std::ceil(interval - elapsed));
    if (interval <= elapsed) performJiggle();
}

void KeepAwakeManager::followTimeOfDay() {
    const auto date = ports_.clock.now();
    if (const auto back = lastTickDate_ - date; back.count() > 0) {
        for (auto* moment : {&enabledAt_, &lastSyntheticMoveDate_}) {
            if (*moment) (*moment)->date -= back;
        }
    }
    lastTickDate_ = date;
}

double KeepAwakeManager::secondsSince(const Moment& moment) const {
    const Moment present = now();
    return std::max(Seconds(present.date - moment.date), present.uptime - moment.uptime).count();
}

void KeepAwakeManager::inhibitIdle(bool away) {
    if (!away) {
        inhibition_.reset();
    } else if (!inhibition_) {
        inhibition_ = ports_.inhibitor.hold();
    }
}

// The nudge

void KeepAwakeManager::performJiggle() {
    const auto screens = ports_.screens.frames();
    if (screens.empty()) {
        lastErrorMessage = "No active screen available.";
        return;
    }
    const BottomLeftRect screen = screens.front();
    const BottomLeftPoint place = ports_.screens.pointerLocation();
    const BottomLeftPoint aside{awayFromEdge(place.x + jiggleDirection_, screen.maxX()),
                                awayFromEdge(place.y, screen.maxY())};
    movePointer(ports_.screens.eventLocation(aside));
    const TopLeftPoint back = ports_.screens.eventLocation(place);
    ports_.mainQueue.after(nudgeLength, lifetime_.whileAlive([this, back] { movePointer(back); }));
    jiggleDirection_ = -jiggleDirection_;
    lastSyntheticMoveDate_ = now();
    lastMoveDate = lastSyntheticMoveDate_->date;
}

void KeepAwakeManager::movePointer(TopLeftPoint to) {
    const auto event = ports_.poster.makeMouse(EventType::mouseMoved, 0, to);
    if (!event) {
        lastErrorMessage = "Unable to create mouse event.";
        return;
    }
    ports_.poster.post(*event, TapLocation::hid);
}

}  // namespace trelvan
