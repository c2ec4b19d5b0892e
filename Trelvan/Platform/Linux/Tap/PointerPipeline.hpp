#pragma once

#include "Platform/EventTap.hpp"
#include "Platform/Linux/Tap/PointerDevices.hpp"
#include "Platform/Linux/Tap/RateBreaker.hpp"
#include "Platform/Linux/X11/EventOrigin.hpp"
#include "Platform/Linux/XTest/PointerOutput.hpp"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>

namespace trelvan {

/// The pipeline of one pointer event from a held device through the tap's callback to the output.
///
/// Keeps the promise that a press which was passed has its release passed. Knows nothing of X; allocates
/// nothing. Main thread.
class PointerPipeline {
  public:
    /// While `cutOff` is not 0 nothing that the callback answers goes on: the devices were taken away while
    /// it was thinking.
    PointerPipeline(PointerOutput& output, const std::atomic<std::uint32_t>& cutOff,
                    const EventOrigin& origin)
        : output_(output), cutOff_(cutOff), origin_(origin) {}

    /// The callback and its mask; without a callback every event is passed on.
    void connect(std::uint64_t mask, EventTap::Callback callback, void* userInfo);

    /// Told the X button whose function was stopped for firing too often.
    std::function<void(int)> onRunaway;

    /// The server's time of the next event, in milliseconds.
    std::uint32_t time = 0;
    /// Modifier flags that the next events carry, and where the pointer is.
    EventFlags flags = 0;
    Pixel location;
    /// The last pixel of the X screen; tracking does not leave it.
    Pixel bounds;

    /// Movement in points, accelerated, right and down positive.
    void motion(PointerDevice& device, double deltaX, double deltaY);
    /// Wheel movement in lines with the Quartz sign, up and left positive. Points are ten a line, since X has
    /// no finer measure of its own.
    void scroll(PointerDevice& device, double vertical, double horizontal);
    /// An X button that is not of the wheel.
    void button(PointerDevice& device, int xButton, bool down);

    /// Whether the callback is looking at an event.
    [[nodiscard]] bool isAsking() const { return current_ != nullptr; }

    /// Tells the callback of a tap-disabled pseudo-type.
    void report(EventType type);

    /// Sends the movement of the event that the callback is looking at, changed; false outside a callback.
    [[nodiscard]] bool sendCopy(const TapEvent& changed);

    /// Releases what the device still holds through the tap; before it is let go or once it is gone.
    void letGo(PointerDevice& device);

  private:
    [[nodiscard]] bool isTapped(EventType type) const {
        return callback_ != nullptr && (mask_ & maskBit(type)) != 0;
    }
    [[nodiscard]] TapAnswer ask(TapEvent& event);
    [[nodiscard]] TapEvent make(EventType type) const;
    [[nodiscard]] EventType motionType() const;
    /// Where the movement ends.
    [[nodiscard]] Pixel moved(std::int64_t deltaX, std::int64_t deltaY) const;
    void move(std::int64_t deltaX, std::int64_t deltaY);
    void click(int axis, std::int64_t lines);
    void pass(PointerDevice& device, int xButton, bool down);
    void count(int xButton, bool down);
    /// Whether the callback is not to be asked about this edge.
    [[nodiscard]] bool isMuted(PointerDevice& device, int xButton, bool down);
    void noteFired(int xButton);

    PointerOutput& output_;
    const std::atomic<std::uint32_t>& cutOff_;
    const EventOrigin& origin_;
    RateBreaker breaker_;
    std::uint64_t mask_ = 0;
    EventTap::Callback callback_ = nullptr;
    void* userInfo_ = nullptr;
    const TapEvent* current_ = nullptr;
    /// How many devices hold a button, and how many of them had it passed.
    std::array<std::uint8_t, highestXButton + 1> held_{};
    std::array<std::uint8_t, highestXButton + 1> passed_{};
    int heldExtra_ = 0;
};

}  // namespace trelvan
