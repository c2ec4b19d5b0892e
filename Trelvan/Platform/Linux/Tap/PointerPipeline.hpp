#pragma once

#include "Platform/EventTap.hpp"
#include "Platform/Linux/Tap/PointerDevice.hpp"
#include "Platform/Linux/Tap/RateBreaker.hpp"
#include "Platform/Linux/X11/EventOrigin.hpp"
#include "Platform/Linux/XTest/PointerOutput.hpp"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>

namespace trelvan {

/// What each event of a device brings along, whatever else it says.
struct EventStamp {
    /// The device's time in milliseconds; may wrap around.
    std::uint32_t time = 0;
    /// Modifier flags held at that moment.
    EventFlags flags = 0;
};

/// The pipeline of one pointer event from a held device through the tap's callback to the output.
///
/// Keeps the promise that a press which was passed has its release passed. Speaks Quartz button numbers and
/// wheel lines; whoever reads the devices translates into them, and the output out of them. Allocates
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

    /// Told whose function was stopped for firing too often.
    std::function<void(const PointerControl&)> onRunaway;

    /// Where the pointer really is. Between two such notices the pipeline counts along with what it sends.
    void pointerIsAt(Pixel location) { location_ = location; }
    /// The last pixel that the pointer can be at; counting along does not leave the screen.
    void setLastPixel(Pixel last) { lastPixel_ = last; }
    /// Inside the callback, the place of its event.
    [[nodiscard]] Pixel location() const { return location_; }

    /// Movement in points, accelerated, right and down positive.
    void motion(PointerDevice& device, const EventStamp& stamp, double deltaX, double deltaY);
    /// Wheel movement in lines with the Quartz sign, up and left positive. Points are ten a line, for devices
    /// have no finer measure of their own.
    void scroll(PointerDevice& device, const EventStamp& stamp, double vertical, double horizontal);
    /// A button by its Quartz number; one out of range is ignored.
    void button(PointerDevice& device, const EventStamp& stamp, std::int64_t number, bool down);

    /// Whether the callback is looking at an event.
    [[nodiscard]] bool isAsking() const { return isAsking_; }

    /// Tells the callback of a tap-disabled pseudo-type.
    void report(EventType type);

    /// Sends the movement of a changed copy of the event that the callback is looking at; false outside a
    /// callback, and for what is no movement.
    ///
    /// The way of a scaled movement, all of it within one `motion()`: the callback (`EventMonitor`) makes the
    /// copy and hands it to `EventPoster::postCopy`; the poster, which has no way of its own for it, passes
    /// it back here, where it goes out; then the callback answers `swallow`, so that the original does not.
    /// The copy does not come back through the tap, which holds devices only.
    [[nodiscard]] bool sendCopy(const TapEvent& changed);

    /// Releases what the device still holds through the tap; before it is let go or once it is gone.
    void letGo(PointerDevice& device);

  private:
    using Counts = std::array<std::uint8_t, highestPointerButton + 1>;

    [[nodiscard]] bool isTapped(EventType type) const {
        return callback_ != nullptr && (mask_ & maskBit(type)) != 0;
    }
    [[nodiscard]] TapAnswer ask(TapEvent& event);
    [[nodiscard]] TapEvent make(EventType type, const EventStamp& stamp) const;
    [[nodiscard]] EventType motionType() const;
    /// The button that makes a movement a drag of this type.
    [[nodiscard]] std::int64_t draggedButton(EventType type) const;
    /// Where the movement ends.
    [[nodiscard]] Pixel moved(std::int64_t deltaX, std::int64_t deltaY) const;
    void move(std::int64_t deltaX, std::int64_t deltaY);
    void pass(PointerDevice& device, std::int64_t number, bool down);
    void count(std::int64_t number, bool down);
    /// Whether the callback is not to be asked about this edge.
    [[nodiscard]] bool isMuted(PointerDevice& device, const EventStamp& stamp, std::int64_t number,
                               bool down);
    void noteFired(const PointerControl& control, const EventStamp& stamp);

    PointerOutput& output_;
    const std::atomic<std::uint32_t>& cutOff_;
    const EventOrigin& origin_;
    RateBreaker breaker_;
    std::uint64_t mask_ = 0;
    EventTap::Callback callback_ = nullptr;
    void* userInfo_ = nullptr;
    bool isAsking_ = false;
    Pixel location_;
    Pixel lastPixel_;
    /// By Quartz number: how many devices hold the button, and how many of them had it passed.
    Counts held_{};
    Counts passed_{};
    /// How many buttons other than the left and the right one are held, counted for each device.
    int heldExtra_ = 0;
};

}  // namespace trelvan
