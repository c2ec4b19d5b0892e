#include "Core/EventMonitor.hpp"

#include "Core/Model/ButtonNumbers.hpp"
#include "Utilities/Fatal.hpp"

#include <algorithm>
#include <limits>
#include <utility>

namespace trelvan {

namespace {

/// Height of the strip at a screen's far edge, in points, where presses belong to the system.
constexpr double systemStripHeight = 56.0;

constexpr std::string_view resetSpeedLine =
    "La velocidad del puntero guardada no se acepta: vuelve a 1.0, también en los ajustes";

constexpr bool isMotion(EventType type) {
    return type == EventType::mouseMoved || type == EventType::leftMouseDragged ||
           type == EventType::rightMouseDragged || type == EventType::otherMouseDragged;
}

constexpr std::string_view buttonEventName(EventType type) {
    switch (type) {
        case EventType::leftMouseDown:
            return "leftMouseDown";
        case EventType::rightMouseDown:
            return "rightMouseDown";
        case EventType::otherMouseDown:
            return "otherMouseDown";
        case EventType::otherMouseUp:
            return "otherMouseUp";
        default:
            return {};
    }
}

std::int32_t inThirtyTwoBits(std::int64_t delta) {
    if (delta < std::numeric_limits<std::int32_t>::min() || delta > std::numeric_limits<std::int32_t>::max())
        fatal("a scroll delta left the 32-bit range");
    return static_cast<std::int32_t>(delta);
}

}  // namespace

EventMonitor::EventMonitor(const Ports& ports, PermissionsProvider permissions, Logger& logger)
    : scrollSpeedVertical(setting::row("scrollSpeedVertical"), ports.defaults),
      horizontalScrollEnabled(setting::row("horizontalScrollEnabled"), ports.defaults),
      scrollSpeedHorizontal(setting::row("scrollSpeedHorizontal"), ports.defaults),
      swapScrollDirection(setting::row("swapScrollDirection"), ports.defaults),
      mouseSpeed(setting::row("mouseSpeed"), ports.defaults),
      advancedMouseSpeedEnabled(setting::row("advancedMouseSpeedEnabled"), ports.defaults),
      mouseAcceleration(setting::row("mouseAcceleration"), ports.defaults),
      presses(ports.mainQueue),
      ports_(ports),
      permissions_(std::move(permissions)),
      logger_(logger) {
    publishTask_ = ports_.mainQueue.makeCoalescedTask([this] { deliverPublished(); });
    const auto say = [this](bool usable) {
        logger_.info(usable ? "La sesión vuelve a estar en uso: los botones actúan de nuevo"
                            : "Sesión bloqueada o en segundo plano: los botones no actúan");
    };
    sessionObserver_ = ports_.session.observe(say);
    if (!ports_.session.isUsable()) say(false);
    for (auto* const setting : shapingSettings()) tellIfReset(setting->load());
    outsideChange_ = ports_.defaults.onOutsideChange([this](const auto& keys) {
        for (auto* const setting : shapingSettings()) tellIfReset(setting->follow(keys));
    });
}

EventMonitor::~EventMonitor() {
    if (eventTap_) ports_.tap.remove();
}

// Life cycle

void EventMonitor::start() {
    if (isRunning || eventTap_) return;
    if (PermissionsManager& permissions = permissions_(); !permissions.accessibilityGranted) {
        logger_.warning("No hay permiso de Accesibilidad — no se puede crear EventTap");
        permissions.requestIfNeeded();
        return;
    }
    selfPtr_ = shared_from_this();
    if (!ports_.tap.create(eventMask, &EventMonitor::eventTapCallback, this)) {
        logger_.error("CGEvent.tapCreate falló — verifica permisos de Accesibilidad");
        return;
    }
    eventTap_ = true;
    ports_.tap.enable(true);
    ports_.mainQueue.async(lifetime_.whileAlive([this] { isRunning = true; }));
    logger_.info("EventMonitor iniciado ✅");
}

void EventMonitor::stop() {
    if (eventTap_) {
        ports_.tap.enable(false);
        ports_.tap.remove();
    }
    eventTap_ = false;
    pressedOtherButtons_.clear();
    handledOtherButtonsOnDown_.clear();
    passedUnusable_.clear();
    presses.forgetHeld();
    pointer_ = {};
    ports_.mainQueue.async(lifetime_.whileAlive([this] { isRunning = false; }));
    logger_.info("EventMonitor detenido");
    // Last: this may be the reference that kept the monitor alive.
    const auto released = std::move(selfPtr_);
}

// The tap

TapAnswer EventMonitor::eventTapCallback(void* userInfo, TapEvent& event) {
    auto* self = static_cast<EventMonitor*>(userInfo);
    if (event.type == EventType::tapDisabledByTimeout || event.type == EventType::tapDisabledByUserInput) {
        if (self != nullptr && self->eventTap_) {
            self->ports_.tap.enable(true);
            self->logger_.warning("EventTap reactivado tras deshabilitación del sistema");
        }
        return TapAnswer::deliver;
    }
    return self != nullptr ? self->handle(event) : TapAnswer::deliver;
}

TapAnswer EventMonitor::handle(TapEvent& event) {
    if (isMotion(event.type)) return handleMotion(event);
    switch (event.type) {
        case EventType::scrollWheel:
            return handleScroll(event);
        case EventType::leftMouseDown:
        case EventType::rightMouseDown:
        case EventType::otherMouseDown:
        case EventType::otherMouseUp:
            return handleButton(event);
        default:
            return TapAnswer::deliver;
    }
}

bool EventMonitor::isOverOwnWindow(TopLeftPoint location) const {
    return std::ranges::any_of(ports_.screens.ownWindows(), [location](const OwnWindow& window) {
        return window.visible && window.alpha > 0.01 && window.frame.contains(location);
    });
}

bool EventMonitor::offer(std::int64_t buttonNumber, EventFlags flags) {
    return ports_.session.isUsable() && onButtonEvent && onButtonEvent(buttonNumber, flags);
}

// Buttons. They reach the handler over own windows too, so that the settings can show them.

bool EventMonitor::isTaken(const TapEvent& event) {
    if (event.type == EventType::otherMouseUp) return presses.takeRelease(event.buttonNumber);
    return event.type == EventType::otherMouseDown && ports_.session.isUsable() &&
           presses.take(event.buttonNumber);
}

TapAnswer EventMonitor::handleButton(TapEvent& event) {
    publish({.type = buttonEventName(event.type),
             .buttonNumber = event.buttonNumber,
             .timestamp = ports_.clock.now()});
    if (isTaken(event)) return TapAnswer::swallow;
    presses.note(
        {.kind = event.type == EventType::otherMouseUp ? ObservedPress::Kind::up : ObservedPress::Kind::down,
         .buttonNumber = event.buttonNumber,
         .flags = event.flags});
    if (event.type == EventType::otherMouseDown) noteSession(event.buttonNumber);
    const bool isFollowing = ports_.tap.releasesFollowPresses();
    if (isFollowing && event.type == EventType::otherMouseUp) return handleOtherUp(event);
    if (shouldBypassMapping(event)) {
        // A press whose release never came, of a device that was pulled out, says nothing about this one's.
        if (isFollowing) handledOtherButtonsOnDown_.remove(event.buttonNumber);
        return TapAnswer::deliver;
    }
    switch (event.type) {
        case EventType::otherMouseDown:
            return handleOtherDown(event);
        case EventType::otherMouseUp:
            return handleOtherUp(event);
        default:
            return offer(event.buttonNumber, event.flags) ? TapAnswer::swallow : TapAnswer::deliver;
    }
}

void EventMonitor::noteSession(std::int64_t buttonNumber) {
    if (ports_.session.isUsable()) {
        passedUnusable_.remove(buttonNumber);
    } else {
        passedUnusable_.insert(buttonNumber);
    }
}

TapAnswer EventMonitor::handleOtherDown(const TapEvent& event) {
    pressedOtherButtons_.insert(event.buttonNumber);
    if (!offer(event.buttonNumber, event.flags)) {
        handledOtherButtonsOnDown_.remove(event.buttonNumber);
        return TapAnswer::deliver;
    }
    handledOtherButtonsOnDown_.insert(event.buttonNumber);
    logger_.debug(InlineText("Evento botón ", event.buttonNumber, " consumido en down (swallowed)"));
    return TapAnswer::swallow;
}

TapAnswer EventMonitor::handleOtherUp(const TapEvent& event) {
    pressedOtherButtons_.remove(event.buttonNumber);
    if (handledOtherButtonsOnDown_.remove(event.buttonNumber)) {
        logger_.debug(
            InlineText("Evento botón ", event.buttonNumber, " ya manejado en down; no se repite en up"));
        return TapAnswer::swallow;
    }
    if (passedUnusable_.remove(event.buttonNumber)) return TapAnswer::deliver;
    // A press that was declined is offered once more on release. Where a release follows its press, it comes
    // here from everywhere, and from what is bypassed it is not offered.
    const bool isFollowing = ports_.tap.releasesFollowPresses();
    if (isFollowing && shouldBypassMapping(event)) return TapAnswer::deliver;
    if (!offer(event.buttonNumber, event.flags)) return TapAnswer::deliver;
    logger_.debug(InlineText(
        "Evento botón ", event.buttonNumber,
        isFollowing ? " consumido en up; pasa como su pulsación (passed)" : " consumido (swallowed)"));
    return isFollowing ? TapAnswer::deliver : TapAnswer::swallow;
}

bool EventMonitor::shouldBypassMapping(const TapEvent& event) const {
    if (event.type != EventType::otherMouseDown && event.type != EventType::otherMouseUp) return false;
    if (ports_.screens.frontmostApplication() == systemMenuOwner) return true;
    // The location counts from the top and the frames from the bottom; they are compared as they are.
    const BottomLeftPoint unturned{event.location.x, event.location.y};
    return std::ranges::any_of(ports_.screens.frames(), [unturned](const BottomLeftRect& frame) {
        return frame.contains(unturned) && unturned.y >= frame.maxY() - systemStripHeight;
    });
}

// Scroll

TapAnswer EventMonitor::handleScroll(TapEvent& event) {
    const std::int64_t vertical = event.scrollDeltaAxis1;
    const std::int64_t horizontal = event.scrollDeltaAxis2;
    const std::int64_t delta = vertical != 0 ? vertical : horizontal;
    const std::int64_t button = delta >= 1 ? scrollUpButtonNumber : scrollDownButtonNumber;
    if (delta != 0) {
        if (ports_.session.isUsable() && presses.take(button)) return TapAnswer::swallow;
        presses.note({.kind = ObservedPress::Kind::turn, .buttonNumber = button, .flags = event.flags});
    }
    if (isOverOwnWindow(event.location)) return TapAnswer::deliver;
    if (delta != 0 && offer(button, event.flags)) {
        logger_.debug(InlineText("Evento scroll virtual ", button, " consumido (swallowed)"));
        return TapAnswer::swallow;
    }
    const MouseEventInfo record{.type = "scrollWheel",
                                .buttonNumber = -1,
                                .scrollDeltaX = inThirtyTwoBits(horizontal),
                                .scrollDeltaY = inThirtyTwoBits(vertical),
                                .timestamp = ports_.clock.now()};
    shapeScroll(event);
    publish(record);
    return TapAnswer::deliver;
}

void EventMonitor::shapeScroll(TapEvent& event) const {
    std::int64_t horizontal = event.scrollDeltaAxis2;
    std::int64_t vertical = event.scrollDeltaAxis1;
    if (swapScrollDirection) {
        horizontal = -horizontal;
        vertical = -vertical;
    }
    const bool scales = horizontalScrollEnabled || scrollSpeedVertical != 1.0;
    if (!scales && !swapScrollDirection) return;
    if (scales) {
        horizontal = scaledDelta(horizontal, horizontalScrollEnabled ? scrollSpeedHorizontal : 1.0);
        vertical = scaledDelta(vertical, scrollSpeedVertical);
    }
    event.scrollDeltaAxis2 = event.scrollPointDeltaAxis2 = horizontal;
    event.scrollDeltaAxis1 = event.scrollPointDeltaAxis1 = vertical;
}

// Motion

TapAnswer EventMonitor::handleMotion(TapEvent& event) {
    // First what most events are. Over an own window a movement passes as well, so the windows need not be
    // asked.
    if (mouseSpeed == 1.0 || event.sourceUserData == scaledMotionMarker) return TapAnswer::deliver;
    if (isOverOwnWindow(event.location)) return TapAnswer::deliver;
    const auto [scaledX, scaledY] = pointer_.scale(event.deltaX, event.deltaY, mouseSpeed, mouseAcceleration);
    if (scaledX == event.deltaX && scaledY == event.deltaY) return TapAnswer::deliver;
    if (!advancedMouseSpeedEnabled) {
        event.deltaX = scaledX;
        event.deltaY = scaledY;
        return TapAnswer::deliver;
    }
    TapEvent copy = event;
    copy.sourceUserData = scaledMotionMarker;
    copy.location.x += static_cast<double>(scaledX - event.deltaX);
    copy.location.y += static_cast<double>(scaledY - event.deltaY);
    copy.deltaX = scaledX;
    copy.deltaY = scaledY;
    return ports_.poster.postCopy(copy, TapLocation::hid) ? TapAnswer::swallow : TapAnswer::deliver;
}

// Publishing: one turn of the main loop after the event, so that views never hold up the tap.

void EventMonitor::publish(const MouseEventInfo& record) {
    if (debugMode) {
        if (record.type == "scrollWheel") {
            logger_.debug(
                InlineText("[", record.type, "] dx=", record.scrollDeltaX, " dy=", record.scrollDeltaY));
        } else {
            logger_.debug(InlineText("[", record.type, "] button=", record.buttonNumber));
        }
    }
    pending_[(pendingStart_ + pendingCount_) % pending_.size()] = record;
    if (pendingCount_ < pending_.size()) {
        ++pendingCount_;
    } else {
        pendingStart_ = (pendingStart_ + 1) % pending_.size();
    }
    publishTask_->request();
}

void EventMonitor::deliverPublished() {
    while (pendingCount_ > 0) {
        const MouseEventInfo record = pending_[pendingStart_];
        pendingStart_ = (pendingStart_ + 1) % pending_.size();
        --pendingCount_;
        lastEvent = record;
        if (!debugMode) continue;
        debugLog.update([&record](std::vector<MouseEventInfo>& log) {
            log.insert(log.begin(), record);
            if (log.size() > debugLogCapacity) log.pop_back();
        });
    }
}

// Settings

std::array<AnySetting*, 7> EventMonitor::shapingSettings() {
    return {&scrollSpeedVertical, &horizontalScrollEnabled,   &scrollSpeedHorizontal, &swapScrollDirection,
            &mouseSpeed,          &advancedMouseSpeedEnabled, &mouseAcceleration};
}

std::array<const AnySetting*, 7> EventMonitor::shapingSettings() const {
    return {&scrollSpeedVertical, &horizontalScrollEnabled,   &scrollSpeedHorizontal, &swapScrollDirection,
            &mouseSpeed,          &advancedMouseSpeedEnabled, &mouseAcceleration};
}

void EventMonitor::tellIfReset(Loaded loaded) {
    if (loaded == Loaded::reset) logger_.warning(resetSpeedLine);
}

void EventMonitor::persistSpeedSettings() {
    for (auto* const setting : shapingSettings()) setting->save();
}

// The set of buttons

void EventMonitor::ButtonSet::insert(std::int64_t number) {
    if (number >= 0 && number < 64) {
        small_.set(static_cast<std::size_t>(number));
    } else {
        others_.insert(number);
    }
}

bool EventMonitor::ButtonSet::remove(std::int64_t number) {
    if (number < 0 || number >= 64) return others_.erase(number) > 0;
    const auto index = static_cast<std::size_t>(number);
    const bool wasIn = small_.test(index);
    small_.reset(index);
    return wasIn;
}

void EventMonitor::ButtonSet::clear() {
    small_.reset();
    others_.clear();
}

}  // namespace trelvan
