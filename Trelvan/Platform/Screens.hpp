#pragma once

#include "Utilities/Geometry.hpp"

#include <optional>
#include <span>
#include <string_view>

namespace trelvan {

/// One of the program's own windows.
struct OwnWindow {
    /// As the toolkit reports it.
    Rect frame;
    bool visible = true;
    /// 0 clear to 1 opaque.
    double alpha = 1;
};

/// What is on the screens. Main thread. The tap asks for each event, so every answer is held ready by the
/// platform and none of the calls waits for a server.
class Screens {
  public:
    virtual ~Screens() = default;

    /// Frames in points, origin at the bottom left; the main screen first, empty when there is none.
    [[nodiscard]] virtual std::span<const Rect> frames() const = 0;
    [[nodiscard]] virtual std::span<const OwnWindow> ownWindows() const = 0;
    /// Origin at the bottom left of the main screen. On a real screen the place lies inside its frame, which
    /// does not own its upper and right edges.
    [[nodiscard]] virtual Point pointerLocation() const = 0;
    /// Bundle identifier of the frontmost application; empty when there is none.
    [[nodiscard]] virtual std::string_view frontmostApplication() const = 0;
};

}  // namespace trelvan
