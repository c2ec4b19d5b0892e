#pragma once

#include <cstdint>
#include <optional>

namespace trelvan {

/// Small property reads on the input side of the sound system. Main thread; held ready by the platform, so
/// that no read but the first waits for a sound server. No value: the property, the device or the server is
/// not there.
class AudioInput {
  public:
    using Device = std::uint32_t;

    virtual ~AudioInput() = default;

    [[nodiscard]] virtual std::optional<Device> defaultInputDevice() = 0;
    /// The mute flag of an element: 0 is the whole device, 1 and 2 are channels. Not zero means muted.
    [[nodiscard]] virtual std::optional<std::uint32_t> mute(Device device, std::uint32_t element) = 0;
    /// The volume of an element, 0 to 1.
    [[nodiscard]] virtual std::optional<float> volume(Device device, std::uint32_t element) = 0;
};

}  // namespace trelvan
