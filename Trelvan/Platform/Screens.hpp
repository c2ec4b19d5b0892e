#pragma once

#include "Utilities/Geometry.hpp"

#include <optional>
#include <span>
#include <string_view>

namespace trelvan {

/// One of the program's own windows.
struct OwnWindow {
    /// As the toolkit reports it: what events' locations are compared with, whichever way it counts.
    TopLeftRect frame;
    bool visible = true;
    /// 0 clear to 1 opaque.
    double alpha = 1;
};

/// What is on the screens. Main thread. The tap asks for each event, so every answer is held ready by the
/// platform and none of the calls waits for a server.
class Screens {
  public:
    virtual ~Screens() = default;

    /// Frames in points; the main screen first, whose lower left corner is the origin. Empty when there is
    /// none.
    [[nodiscard]] virtual std::span<const BottomLeftRect> frames() const = 0;
    [[nodiscard]] virtual std::span<const OwnWindow> ownWindows() const = 0;
    /// On a real screen the place lies inside its frame, which does not own its upper and right edges.
    [[nodiscard]] virtual BottomLeftPoint pointerLocation() const = 0;
    /// Bundle identifier of the frontmost application; empty when there is none.
    [[nodiscard]] virtual std::string_view frontmostApplication() const = 0;

    /// A place on the screens as events give it; not turned round when there is no screen.
    [[nodiscard]] TopLeftPoint eventLocation(BottomLeftPoint place) const {
        const auto screens = frames();
        return screens.empty() ? TopLeftPoint{place.x, place.y}
                               : countedFromTop(place, screens.front().height);
    }
};

}  // namespace trelvan
