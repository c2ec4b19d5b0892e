#include "Desktop/Harness/SoundServer.hpp"
#include "Desktop/Harness/Wait.hpp"
#include "Desktop/Platform/ServerTest.hpp"
#include "Platform/Linux/Session/PulseAudioInput.hpp"

#include <memory>

namespace trelvan::desktop {
namespace {

using PulseAudioInputTest = ServerTest;

/// The mute flag of the whole device; none where there is no device.
std::optional<std::uint32_t> muteOf(AudioInput& audio) {
    const auto device = audio.defaultInputDevice();
    return device ? audio.mute(*device, 0) : std::nullopt;
}

TEST_F(PulseAudioInputTest, FirstReadKnowsTheState) {
    SoundServer server(desktop());
    server.setMute(true);
    PulseAudioInput audio;
    EXPECT_EQ(muteOf(audio), 1U);
}

TEST_F(PulseAudioInputTest, MuteIsThatOfTheDeviceAndNotOfChannels) {
    SoundServer server(desktop());
    PulseAudioInput audio;
    const auto device = audio.defaultInputDevice();
    ASSERT_TRUE(device);
    EXPECT_EQ(audio.mute(*device, 0), 0U);
    EXPECT_EQ(audio.mute(*device, 1), std::nullopt);
    EXPECT_EQ(audio.mute(*device + 1, 0), std::nullopt);
    server.setMute(true);
    EXPECT_TRUE(waitUntil([&] { return audio.mute(*device, 0) == 1U; }));
}

TEST_F(PulseAudioInputTest, VolumesAreThoseOfTheChannels) {
    SoundServer server(desktop());
    PulseAudioInput audio;
    const auto device = audio.defaultInputDevice();
    ASSERT_TRUE(device);
    server.setVolume(0);
    EXPECT_TRUE(waitUntil([&] { return audio.volume(*device, 0) == 0.0F; }));
    EXPECT_EQ(audio.volume(*device, 1), 0.0F);
    server.setVolume(50);
    EXPECT_TRUE(waitUntil([&] { return audio.volume(*device, 0) > 0.4F; }));
    EXPECT_NEAR(audio.volume(*device, 2).value_or(-1), 0.5F, 0.01F);
    EXPECT_EQ(audio.volume(*device, 3), std::nullopt);
}

TEST_F(PulseAudioInputTest, MonitorOfAnOutputIsNoMicrophone) {
    SoundServer server(desktop());
    PulseAudioInput audio;
    ASSERT_TRUE(audio.defaultInputDevice());
    server.unplug();
    EXPECT_TRUE(waitUntil([&] { return !audio.defaultInputDevice(); }));
    server.plug();
    EXPECT_TRUE(waitUntil([&] { return audio.defaultInputDevice().has_value(); }));
}

TEST_F(PulseAudioInputTest, ServerThatComesLaterOrAgainIsFound) {
    PulseAudioInput audio;
    EXPECT_EQ(audio.defaultInputDevice(), std::nullopt);
    for (int round = 0; round < 2; ++round) {
        auto server = std::make_unique<SoundServer>(desktop());
        EXPECT_TRUE(waitUntil([&] { return audio.defaultInputDevice().has_value(); }));
        server.reset();
        EXPECT_TRUE(waitUntil([&] { return !audio.defaultInputDevice(); }));
    }
}

}  // namespace
}  // namespace trelvan::desktop
