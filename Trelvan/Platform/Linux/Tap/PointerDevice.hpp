#pragma once

#include "Platform/Linux/Tap/FractionCarry.hpp"
#include "Platform/Linux/Tap/PointerControl.hpp"

#include <bitset>

namespace trelvan {

/// What is held and left over on one mouse or trackball, whatever it is to the system.
struct PointerDevice {
    /// By Quartz number.
    using Buttons = std::bitset<highestPointerButton + 1>;

    FractionCarry restX, restY, restVertical, restHorizontal;
    /// Buttons that went down through the tap, and those of them that were passed on.
    Buttons held, passed;
    /// Buttons that went down while their function was stopped; their release is nobody's business either.
    Buttons muted;
};

}  // namespace trelvan
