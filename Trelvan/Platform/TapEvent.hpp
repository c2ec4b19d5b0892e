#pragma once

#include "Platform/Quartz.hpp"
#include "Utilities/Geometry.hpp"

#include <cstdint>

namespace trelvan {

/// One pointer event at the tap, as a plain value so that reading a field costs nothing.
///
/// The platform fills what the type carries (the rest stays 0), calls back, and carries the changed members
/// over to its own event before it delivers it.
struct TapEvent {
    /// No delta is larger, in either direction: nothing that is computed from deltas and settings leaves 64
    /// bits.
    static constexpr std::int64_t largestDelta = 2'147'483'647;

    EventType type = EventType::mouseMoved;
    /// Modifier flags that the event itself carries.
    EventFlags flags = 0;
    /// Where the pointer is.
    TopLeftPoint location{};
    /// Field 3: 0 left, 1 right, 2 middle, 3 and up the extra buttons.
    std::int64_t buttonNumber = 0;
    /// Fields 4 and 5: movement in points, right and down positive.
    std::int64_t deltaX = 0;
    std::int64_t deltaY = 0;
    /// Fields 11 and 12: wheel lines, up and left positive.
    std::int64_t scrollDeltaAxis1 = 0;
    std::int64_t scrollDeltaAxis2 = 0;
    /// Fields 96 and 97: wheel points, up and left positive.
    std::int64_t scrollPointDeltaAxis1 = 0;
    std::int64_t scrollPointDeltaAxis2 = 0;
    /// Field 42: what the poster of a synthetic event wrote into it; 0 for hardware.
    std::int64_t sourceUserData = 0;
    /// The platform's own event behind this value, valid during the callback; only the platform looks at it.
    void* native = nullptr;
};

}  // namespace trelvan
