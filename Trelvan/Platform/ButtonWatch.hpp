#pragma once

#include "Platform/PlatformFailure.hpp"
#include "Platform/Quartz.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace trelvan {

/// What a device just did.
struct SeenInput {
    enum class Kind { button, wheelUp, wheelDown, wheelLeft, wheelRight };
    Kind kind = Kind::button;
    /// Of a button.
    std::int64_t buttonNumber = 0;
    std::string device;
    /// False for touchpads, tablets and touch screens, which are left alone.
    bool isServed = false;
    /// The modifiers held.
    EventFlags flags = 0;
};

/// Tells of each press of a button and each line of scrolling, of every pointer device, until the program is
/// told to end. Nothing is kept from anybody, and what programs send counts for nothing. Why it cannot be
/// done, or none after its end.
[[nodiscard]] std::optional<PlatformFailure> watchButtons(
    const std::function<void(const SeenInput&)>& onInput);

}  // namespace trelvan
