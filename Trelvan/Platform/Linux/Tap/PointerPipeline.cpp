#include "Platform/Linux/Tap/PointerPipeline.hpp"

#include <algorithm>
#include <cstdlib>

namespace trelvan {

namespace {

constexpr std::int64_t pointsPerLine = 10;
/// A device that reports more lines than this at once is broken, and each line is two requests.
constexpr std::int64_t maxLines = 100;

constexpr int leftButton = 1;
constexpr int rightButton = 3;

}  // namespace

void PointerPipeline::connect(std::uint64_t mask, EventTap::Callback callback, void* userInfo) {
    mask_ = mask;
    callback_ = callback;
    userInfo_ = userInfo;
}

TapAnswer PointerPipeline::ask(TapEvent& event) {
    current_ = &event;
    const TapAnswer answer = callback_(userInfo_, event);
    current_ = nullptr;
    return cutOff_.load(std::memory_order_relaxed) != 0 ? TapAnswer::swallow : answer;
}

void PointerPipeline::report(EventType type) {
    if (callback_ == nullptr) return;
    TapEvent event;
    event.type = type;
    (void)callback_(userInfo_, event);
}

TapEvent PointerPipeline::make(EventType type) const {
    TapEvent event;
    event.type = type;
    event.flags = flags;
    event.location = origin_.location(location);
    return event;
}

EventType PointerPipeline::motionType() const {
    if (held_[leftButton] > 0) return EventType::leftMouseDragged;
    if (held_[rightButton] > 0) return EventType::rightMouseDragged;
    return heldExtra_ > 0 ? EventType::otherMouseDragged : EventType::mouseMoved;
}

void PointerPipeline::motion(PointerDevice& device, double deltaX, double deltaY) {
    const std::int64_t wholeX = device.restX.take(deltaX);
    const std::int64_t wholeY = device.restY.take(deltaY);
    if (wholeX == 0 && wholeY == 0) return;
    const EventType type = motionType();
    if (!isTapped(type)) {
        move(wholeX, wholeY);
        return;
    }
    TapEvent event = make(type);
    event.deltaX = wholeX;
    event.deltaY = wholeY;
    event.location = origin_.location(moved(wholeX, wholeY));
    if (type != EventType::mouseMoved) {
        const auto other = std::ranges::find_if(held_, [](auto devices) { return devices > 0; });
        event.buttonNumber = quartzButton(static_cast<int>(other - held_.begin())).value_or(0);
    }
    if (ask(event) == TapAnswer::deliver) move(event.deltaX, event.deltaY);
}

Pixel PointerPipeline::moved(std::int64_t deltaX, std::int64_t deltaY) const {
    const auto along = [](int from, std::int64_t delta, int last) {
        // No movement is longer than the screen, and so the sum stays in range.
        const auto step = std::clamp<std::int64_t>(delta, -1 - last, 1 + last);
        return static_cast<int>(std::clamp<std::int64_t>(from + step, 0, last));
    };
    return {.x = along(location.x, deltaX, bounds.x), .y = along(location.y, deltaY, bounds.y)};
}

void PointerPipeline::move(std::int64_t deltaX, std::int64_t deltaY) {
    location = moved(deltaX, deltaY);
    output_.move(deltaX, deltaY);
}

bool PointerPipeline::sendCopy(const TapEvent& changed) {
    if (current_ == nullptr) return false;
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

void PointerPipeline::scroll(PointerDevice& device, double vertical, double horizontal) {
    const std::int64_t up = std::clamp(device.restVertical.take(vertical), -maxLines, maxLines);
    const std::int64_t left = std::clamp(device.restHorizontal.take(horizontal), -maxLines, maxLines);
    if (up == 0 && left == 0) return;
    TapEvent event = make(EventType::scrollWheel);
    event.scrollDeltaAxis1 = up;
    event.scrollDeltaAxis2 = left;
    event.scrollPointDeltaAxis1 = up * pointsPerLine;
    event.scrollPointDeltaAxis2 = left * pointsPerLine;
    const int turned = up != 0 ? wheelButton(1, up > 0) : wheelButton(2, left > 0);
    if (breaker_.isStopped(turned, time)) return;
    if (isTapped(event.type) && ask(event) == TapAnswer::swallow) {
        noteFired(turned);
        return;
    }
    // The order of the server itself, whose horizontal axis has the lower number.
    click(2, event.scrollDeltaAxis2);
    click(1, event.scrollDeltaAxis1);
}

void PointerPipeline::click(int axis, std::int64_t lines) {
    const int xButton = wheelButton(axis, lines > 0);
    for (std::int64_t left = std::min(std::abs(lines), 10 * maxLines); left > 0; --left) {
        output_.button(xButton, true);
        output_.button(xButton, false);
    }
}

void PointerPipeline::button(PointerDevice& device, int xButton, bool down) {
    const auto number = quartzButton(xButton);
    const auto place = static_cast<std::size_t>(xButton);
    if (!number || device.held.test(place) == down) return;
    count(xButton, down);
    device.held.set(place, down);
    if (held_[place] > (down ? 1 : 0)) {
        // Another device holds it too. It is one button to the callback, as it is to the applications: asked
        // for each device, it would take the second release for one whose press was never consumed.
        pass(device, xButton, down && passed_[place] > 0);
        return;
    }
    if (isMuted(device, xButton, down)) return;
    const bool wasPassed = device.passed.test(place);
    TapEvent event = make(buttonType(*number, down));
    event.buttonNumber = *number;
    const bool swallowed = isTapped(event.type) && ask(event) == TapAnswer::swallow;
    // The callback may have taken the tap away, which released all; nothing may be pressed after that.
    if (device.held.test(place) != down) return;
    if (down && swallowed) noteFired(xButton);
    if (down ? !swallowed : wasPassed) pass(device, xButton, down);
}

bool PointerPipeline::isMuted(PointerDevice& device, int xButton, bool down) {
    const auto place = static_cast<std::size_t>(xButton);
    if (down) device.muted.set(place, breaker_.isStopped(xButton, time));
    return device.muted.test(place);
}

void PointerPipeline::noteFired(int xButton) {
    if (breaker_.trips(xButton, time) && onRunaway) onRunaway(xButton);
}

void PointerPipeline::count(int xButton, bool down) {
    auto& devices = held_[static_cast<std::size_t>(xButton)];
    devices = static_cast<std::uint8_t>(down ? devices + 1 : devices - 1);
    if (xButton != leftButton && xButton != rightButton) heldExtra_ += down ? 1 : -1;
}

void PointerPipeline::pass(PointerDevice& device, int xButton, bool down) {
    const auto place = static_cast<std::size_t>(xButton);
    if (device.passed.test(place) == down) return;
    device.passed.set(place, down);
    auto& devices = passed_[place];
    devices = static_cast<std::uint8_t>(down ? devices + 1 : devices - 1);
    if (devices == (down ? 1 : 0)) output_.button(xButton, down);
}

void PointerPipeline::letGo(PointerDevice& device) {
    device.muted.reset();
    for (int xButton = 1; xButton <= highestXButton; ++xButton) {
        const auto place = static_cast<std::size_t>(xButton);
        pass(device, xButton, false);
        if (!device.held.test(place)) continue;
        device.held.reset(place);
        count(xButton, false);
    }
}

}  // namespace trelvan
