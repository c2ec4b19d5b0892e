#include "Platform/Linux/Tap/PointerPipeline.hpp"

#include <algorithm>

namespace trelvan {

namespace {

constexpr std::int64_t pointsPerLine = 10;
/// A device that reports more lines than this at once is broken.
constexpr std::int64_t maxLines = 100;

constexpr std::int64_t leftButton = 0;
constexpr std::int64_t rightButton = 1;

constexpr std::size_t placeOf(std::int64_t number) {
    return static_cast<std::size_t>(number);
}

/// Of lines along both axes, the vertical ones count.
constexpr WheelDirection directionOf(std::int64_t up, std::int64_t left) {
    if (up != 0) return up > 0 ? WheelDirection::up : WheelDirection::down;
    return left > 0 ? WheelDirection::left : WheelDirection::right;
}

}  // namespace

void PointerPipeline::connect(std::uint64_t mask, EventTap::Callback callback, void* userInfo) {
    mask_ = mask;
    callback_ = callback;
    userInfo_ = userInfo;
}

TapAnswer PointerPipeline::ask(TapEvent& event) {
    isAsking_ = true;
    const TapAnswer answer = callback_(userInfo_, event);
    isAsking_ = false;
    return cutOff_.load(std::memory_order_relaxed) != 0 ? TapAnswer::swallow : answer;
}

void PointerPipeline::report(EventType type) {
    if (callback_ == nullptr) return;
    TapEvent event;
    event.type = type;
    (void)callback_(userInfo_, event);
}

TapEvent PointerPipeline::make(EventType type, const EventStamp& stamp) const {
    TapEvent event;
    event.type = type;
    event.flags = stamp.flags;
    event.location = origin_.location(location_);
    return event;
}

EventType PointerPipeline::motionType() const {
    if (held_[placeOf(leftButton)] > 0) return EventType::leftMouseDragged;
    if (held_[placeOf(rightButton)] > 0) return EventType::rightMouseDragged;
    return heldExtra_ > 0 ? EventType::otherMouseDragged : EventType::mouseMoved;
}

std::int64_t PointerPipeline::draggedButton(EventType type) const {
    if (type == EventType::mouseMoved) return 0;
    // The lowest one that is held: the left one makes a left drag, the right one a right drag.
    return std::ranges::find_if(held_, [](auto devices) { return devices > 0; }) - held_.begin();
}

void PointerPipeline::motion(PointerDevice& device, const EventStamp& stamp, double deltaX, double deltaY) {
    const std::int64_t wholeX = device.restX.take(deltaX);
    const std::int64_t wholeY = device.restY.take(deltaY);
    if (wholeX == 0 && wholeY == 0) return;
    const EventType type = motionType();
    if (!isTapped(type)) {
        move(wholeX, wholeY);
        return;
    }
    TapEvent event = make(type, stamp);
    event.deltaX = wholeX;
    event.deltaY = wholeY;
    event.location = origin_.location(moved(wholeX, wholeY));
    event.buttonNumber = draggedButton(type);
    if (ask(event) == TapAnswer::deliver) move(event.deltaX, event.deltaY);
}

Pixel PointerPipeline::moved(std::int64_t deltaX, std::int64_t deltaY) const {
    const auto along = [](int from, std::int64_t delta, int last) {
        // No movement is longer than the screen, and so the sum stays in range.
        const auto step = std::clamp<std::int64_t>(delta, -1 - last, 1 + last);
        return static_cast<int>(std::clamp<std::int64_t>(from + step, 0, last));
    };
    return {.x = along(location_.x, deltaX, lastPixel_.x), .y = along(location_.y, deltaY, lastPixel_.y)};
}

void PointerPipeline::move(std::int64_t deltaX, std::int64_t deltaY) {
    location_ = moved(deltaX, deltaY);
    output_.move(deltaX, deltaY);
}

bool PointerPipeline::sendCopy(const TapEvent& changed) {
    if (!isAsking_) return false;
    if (cutOff_.load(std::memory_order_relaxed) != 0) return true;
    switch (changed.type) {
        case EventType::mouseMoved:
        case EventType::leftMouseDragged:
        case EventType::rightMouseDragged:
        case EventType::otherMouseDragged:
            break;
        default:
            return false;
    }
    move(changed.deltaX, changed.deltaY);
    return true;
}

void PointerPipeline::scroll(PointerDevice& device, const EventStamp& stamp, double vertical,
                             double horizontal) {
    const std::int64_t up = std::clamp(device.restVertical.take(vertical), -maxLines, maxLines);
    const std::int64_t left = std::clamp(device.restHorizontal.take(horizontal), -maxLines, maxLines);
    if (up == 0 && left == 0) return;
    TapEvent event = make(EventType::scrollWheel, stamp);
    event.scrollDeltaAxis1 = up;
    event.scrollDeltaAxis2 = left;
    event.scrollPointDeltaAxis1 = up * pointsPerLine;
    event.scrollPointDeltaAxis2 = left * pointsPerLine;
    const PointerControl turned = directionOf(up, left);
    if (breaker_.isStopped(turned, stamp.time)) return;
    if (isTapped(event.type) && ask(event) == TapAnswer::swallow) {
        noteFired(turned, stamp);
        return;
    }
    if (event.scrollDeltaAxis1 != 0 || event.scrollDeltaAxis2 != 0)
        output_.scroll(event.scrollDeltaAxis1, event.scrollDeltaAxis2);
}

void PointerPipeline::button(PointerDevice& device, const EventStamp& stamp, std::int64_t number, bool down) {
    if (number < 0 || number > highestPointerButton) return;
    const std::size_t place = placeOf(number);
    if (device.held.test(place) == down) return;
    count(number, down);
    device.held.set(place, down);
    if (held_[place] > (down ? 1 : 0)) {
        // Another device holds it too. It is one button to the callback, as it is to the applications: asked
        // for each device, it would take the second release for one whose press was never consumed.
        pass(device, number, down && passed_[place] > 0);
        return;
    }
    if (isMuted(device, stamp, number, down)) return;
    const bool wasPassed = device.passed.test(place);
    TapEvent event = make(buttonType(number, down), stamp);
    event.buttonNumber = number;
    const bool swallowed = isTapped(event.type) && ask(event) == TapAnswer::swallow;
    // The callback may have taken the tap away, which released all; nothing may be pressed after that.
    if (device.held.test(place) != down) return;
    if (down && swallowed) noteFired(number, stamp);
    if (down ? !swallowed : wasPassed) pass(device, number, down);
}

bool PointerPipeline::isMuted(PointerDevice& device, const EventStamp& stamp, std::int64_t number,
                              bool down) {
    const std::size_t place = placeOf(number);
    if (down) device.muted.set(place, breaker_.isStopped(number, stamp.time));
    return device.muted.test(place);
}

void PointerPipeline::noteFired(const PointerControl& control, const EventStamp& stamp) {
    if (breaker_.trips(control, stamp.time) && onRunaway) onRunaway(control);
}

void PointerPipeline::count(std::int64_t number, bool down) {
    auto& devices = held_[placeOf(number)];
    devices = static_cast<std::uint8_t>(down ? devices + 1 : devices - 1);
    if (number != leftButton && number != rightButton) heldExtra_ += down ? 1 : -1;
}

void PointerPipeline::pass(PointerDevice& device, std::int64_t number, bool down) {
    const std::size_t place = placeOf(number);
    if (device.passed.test(place) == down) return;
    device.passed.set(place, down);
    auto& devices = passed_[place];
    devices = static_cast<std::uint8_t>(down ? devices + 1 : devices - 1);
    if (devices == (down ? 1 : 0)) output_.button(number, down);
}

void PointerPipeline::letGo(PointerDevice& device) {
    device.muted.reset();
    for (std::int64_t number = 0; number <= highestPointerButton; ++number) {
        pass(device, number, false);
        if (!device.held.test(placeOf(number))) continue;
        device.held.reset(placeOf(number));
        count(number, false);
    }
}

}  // namespace trelvan
