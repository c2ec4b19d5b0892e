#include "Core/MicMuteNotifier.hpp"

#include "Core/Settings/Setting.hpp"
#include "Core/Settings/SettingsCatalogue.hpp"

#include <algorithm>
#include <array>

namespace trelvan {

namespace {

constexpr std::string_view notificationKind = "microphone";

/// The whole device, asked twice, then its channels.
constexpr std::array<std::uint32_t, 4> elements{0, 0, 1, 2};
/// A device without a mute control counts as muted up to this volume.
constexpr float silentVolume = 0.0001F;

}  // namespace

void MicMuteNotifier::start() {
    if (pollingTimer_) return;
    poster_.requestAuthorization();
    lastMutedState_ = currentMicMuteState();
    pollingTimer_ = ports_.timers.every(pollInterval, [this] { pollMicMuteState(); });
}

std::optional<bool> MicMuteNotifier::currentMicMuteState() const {
    const auto device = ports_.audio.defaultInputDevice();
    if (!device) return std::nullopt;
    for (const auto element : elements) {
        if (const auto mute = ports_.audio.mute(*device, element)) return *mute != 0;
    }
    std::optional<float> loudest;
    for (const auto element : elements) {
        if (const auto volume = ports_.audio.volume(*device, element))
            loudest = std::max(loudest.value_or(*volume), *volume);
    }
    if (!loudest) return std::nullopt;
    return *loudest <= silentVolume;
}

void MicMuteNotifier::pollMicMuteState() {
    // While it is not wanted the state is left as it was: a change in that time is announced afterwards.
    if (!storedValue<bool>(setting::row("notifyMicMuteUnmute"), ports_.defaults)) return;
    const auto isMuted = currentMicMuteState();
    if (!isMuted || lastMutedState_ == isMuted) return;
    const bool wasKnown = lastMutedState_.has_value();
    lastMutedState_ = isMuted;
    if (!wasKnown) return;
    if (*isMuted) {
        poster_.announce(notificationKind, "Microphone muted", "Microfono en mute");
    } else {
        poster_.announce(notificationKind, "Microphone unmuted", "Microfono con audio");
    }
}

}  // namespace trelvan
