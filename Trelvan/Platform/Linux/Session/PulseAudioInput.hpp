#pragma once

#include "Platform/AudioInput.hpp"

#include <memory>

namespace trelvan {

/// The default source of a PulseAudio server, or of PipeWire in its place. The server tells of changes on a
/// thread of its own, and reads are of what it told last; only the first read waits for its first word, a
/// fifth of a second at most. Looks for a server that is not there now and again.
///
/// The source's mute is that of element 0. Element 0 also has the loudest channel's volume; elements 1 and 2
/// have those of the first two channels. The monitor of an output, which servers fall back on where there is
/// no input at all, is no input device.
class PulseAudioInput final : public AudioInput {
  public:
    PulseAudioInput();
    PulseAudioInput(const PulseAudioInput&) = delete;
    PulseAudioInput& operator=(const PulseAudioInput&) = delete;
    ~PulseAudioInput() override;

    [[nodiscard]] std::optional<Device> defaultInputDevice() override;
    [[nodiscard]] std::optional<std::uint32_t> mute(Device device, std::uint32_t element) override;
    [[nodiscard]] std::optional<float> volume(Device device, std::uint32_t element) override;

  private:
    class Connection;

    std::unique_ptr<Connection> connection_;
};

}  // namespace trelvan
