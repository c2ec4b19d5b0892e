#pragma once

#include "Utilities/Geometry.hpp"

#include <atomic>
#include <cmath>
#include <span>
#include <vector>

namespace trelvan {

/// A pixel of the X screen, counted from its upper left corner. Aligned so that one instruction reads it.
struct alignas(2 * sizeof(int)) Pixel {
    int x = 0;
    int y = 0;
    friend bool operator==(const Pixel&, const Pixel&) = default;
};

/// What a monitor or a window covers of the X screen.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const PixelRect&, const PixelRect&) = default;
};

/// Where events have their origin on the X screen: at the upper left corner of the main monitor, which may
/// lie anywhere on it. The only place that knows of the difference. Set on the main thread, read on any.
class EventOrigin {
  public:
    void set(Pixel corner) { corner_.store(corner, std::memory_order_relaxed); }

    [[nodiscard]] TopLeftPoint location(Pixel pixel) const {
        const Pixel corner = corner_.load(std::memory_order_relaxed);
        return {.x = static_cast<double>(pixel.x - corner.x), .y = static_cast<double>(pixel.y - corner.y)};
    }
    [[nodiscard]] TopLeftRect frame(const PixelRect& rect) const {
        const auto [x, y] = location({rect.x, rect.y});
        return {.x = x,
                .y = y,
                .width = static_cast<double>(rect.width),
                .height = static_cast<double>(rect.height)};
    }
    /// The nearest one.
    [[nodiscard]] Pixel pixel(TopLeftPoint location) const {
        const Pixel corner = corner_.load(std::memory_order_relaxed);
        return {.x = corner.x + static_cast<int>(std::lround(location.x)),
                .y = corner.y + static_cast<int>(std::lround(location.y))};
    }

  private:
    std::atomic<Pixel> corner_{};
    static_assert(std::atomic<Pixel>::is_always_lock_free);
};

/// The screens' frames, which count from the bottom of the main monitor. That comes first; none: no screens.
[[nodiscard]] inline std::vector<BottomLeftRect> screenFrames(std::span<const PixelRect> monitors) {
    std::vector<BottomLeftRect> frames;
    EventOrigin origin;
    if (!monitors.empty()) origin.set({monitors.front().x, monitors.front().y});
    for (const auto& monitor : monitors) {
        const TopLeftRect turned = origin.frame(monitor);
        const auto corner = countedFromBottom({turned.x, turned.maxY()}, monitors.front().height);
        frames.push_back({.x = corner.x, .y = corner.y, .width = turned.width, .height = turned.height});
    }
    return frames;
}

/// The place of a pixel among the screens' frames, `mainHeight` being that of the first. A frame owns its
/// lower edge but not its upper one: the place lies a little below the pixel's upper edge, so that the
/// uppermost row of a screen is on that screen.
[[nodiscard]] constexpr BottomLeftPoint placeOfPixel(TopLeftPoint pixel, double mainHeight) {
    constexpr double inside = 1.0 / 1024;
    return countedFromBottom({pixel.x, pixel.y + inside}, mainHeight);
}

}  // namespace trelvan
