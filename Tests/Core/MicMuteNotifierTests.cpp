#include "Core/MicMuteNotifier.hpp"
#include "Support/NotifierFixture.hpp"

#include <memory>
#include <utility>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using Read = std::pair<char, std::uint32_t>;

/// An input that remembers which properties were read: 'd' the default device, 'm' mute, 'v' volume.
class ReadingOrder : public AudioInput {
  public:
    std::optional<Device> defaultInputDevice() override {
        reads.emplace_back('d', 0);
        return 5;
    }
    std::optional<std::uint32_t> mute(Device device, std::uint32_t element) override {
        EXPECT_EQ(device, 5U);
        reads.emplace_back('m', element);
        return element == muteElement ? std::optional<std::uint32_t>{1} : std::nullopt;
    }
    std::optional<float> volume(Device device, std::uint32_t element) override {
        EXPECT_EQ(device, 5U);
        reads.emplace_back('v', element);
        return std::nullopt;
    }

    std::vector<Read> reads;
    std::uint32_t muteElement = 9;
};

class MicMuteNotifierTest : public test::NotifierFixture {
  protected:
    void start(AudioInput& audio) {
        notifier = std::make_unique<MicMuteNotifier>(
            MicMuteNotifier::Ports{
                .audio = audio, .timers = desktop.timers(), .defaults = desktop.userDefaults()},
            poster);
        notifier->start();
    }
    void start() { start(desktop.audioInput()); }
    void microphone(std::optional<std::uint32_t> mute, std::optional<float> volume = std::nullopt) {
        desktop.microphone.present = true;
        desktop.microphone.mute = {mute};
        desktop.microphone.volume = {volume};
    }

    std::unique_ptr<MicMuteNotifier> notifier;
};

TEST_F(MicMuteNotifierTest, ChangesAreAnnouncedByTheNextPoll) {
    microphone(0);
    start();
    microphone(1);
    runFor(0.99);
    EXPECT_THAT(bodies(), IsEmpty());
    runFor(0.02);
    EXPECT_THAT(desktop.all<trace::Notification>(),
                ElementsAre(trace::Notification{"Trelvan v1.0", "Microphone muted"}));
    microphone(0);
    runFor(5);
    EXPECT_THAT(bodies(), ElementsAre("Microphone muted", "Microphone unmuted"));
}

TEST_F(MicMuteNotifierTest, SpanishTextsForTheSpanishInterface) {
    desktop.defaults["general_language"] = std::string("Español");
    microphone(0);
    start();
    microphone(1);
    runFor(1);
    microphone(0);
    runFor(1);
    EXPECT_THAT(bodies(), ElementsAre("Microfono en mute", "Microfono con audio"));
}

TEST_F(MicMuteNotifierTest, StateAtTheStartIsNotAnnounced) {
    microphone(1);
    start();
    runFor(60);
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(MicMuteNotifierTest, WithoutAnInputDeviceNothingIsEverPosted) {
    start();
    runFor(3600);
    EXPECT_THAT(desktop.entries, IsEmpty());
}

TEST_F(MicMuteNotifierTest, FirstKnownStateIsTakenSilently) {
    start();
    runFor(5);
    microphone(1);
    runFor(5);
    EXPECT_THAT(bodies(), IsEmpty());
    microphone(0);
    runFor(1);
    EXPECT_THAT(bodies(), ElementsAre("Microphone unmuted"));
}

TEST_F(MicMuteNotifierTest, DeviceThatGoesAndComesBackIsComparedWithWhatItWas) {
    microphone(0);
    start();
    desktop.microphone.present = false;
    runFor(5);
    EXPECT_THAT(bodies(), IsEmpty());
    microphone(1);
    runFor(1);
    EXPECT_THAT(bodies(), ElementsAre("Microphone muted"));
}

TEST_F(MicMuteNotifierTest, VolumeStandsInWhereThereIsNoMuteControl) {
    microphone(std::nullopt, 0.5F);
    start();
    microphone(std::nullopt, 0.0F);
    runFor(1);
    EXPECT_THAT(bodies(), ElementsAre("Microphone muted"));
    microphone(std::nullopt, 0.0001F);
    runFor(1);
    EXPECT_EQ(bodies().size(), 1U);
    microphone(std::nullopt, 0.0002F);
    runFor(1);
    EXPECT_THAT(bodies(), ElementsAre("Microphone muted", "Microphone unmuted"));
}

TEST_F(MicMuteNotifierTest, LoudestElementDecides) {
    desktop.microphone.present = true;
    desktop.microphone.volume = {0.0F, std::nullopt, 0.3F};
    start();
    desktop.microphone.volume = {0.0F, std::nullopt, 0.0F};
    runFor(1);
    EXPECT_THAT(bodies(), ElementsAre("Microphone muted"));
    desktop.microphone.volume = {std::nullopt, 0.2F, 0.0F};
    runFor(1);
    EXPECT_THAT(bodies(), ElementsAre("Microphone muted", "Microphone unmuted"));
}

TEST_F(MicMuteNotifierTest, MuteControlCountsMoreThanTheVolume) {
    microphone(0, 0.0F);
    start();
    microphone(1, 0.0F);
    runFor(1);
    EXPECT_THAT(bodies(), ElementsAre("Microphone muted"));
}

TEST_F(MicMuteNotifierTest, FirstElementWithAMuteControlDecides) {
    desktop.microphone.present = true;
    desktop.microphone.mute = {std::nullopt, 0, 1};
    start();
    desktop.microphone.mute = {std::nullopt, 0, 0};
    runFor(1);
    EXPECT_THAT(bodies(), IsEmpty());
    desktop.microphone.mute = {std::nullopt, 7, 0};
    runFor(1);
    EXPECT_THAT(bodies(), ElementsAre("Microphone muted"));
}

TEST_F(MicMuteNotifierTest, PropertiesAreReadInTheirOrder) {
    ReadingOrder audio;
    start(audio);
    EXPECT_THAT(audio.reads, ElementsAre(Pair('d', 0), Pair('m', 0), Pair('m', 0), Pair('m', 1), Pair('m', 2),
                                         Pair('v', 0), Pair('v', 0), Pair('v', 1), Pair('v', 2)));
}

TEST_F(MicMuteNotifierTest, FirstReadThatSucceedsEndsTheSearch) {
    ReadingOrder audio;
    audio.muteElement = 1;
    start(audio);
    EXPECT_THAT(audio.reads, ElementsAre(Pair('d', 0), Pair('m', 0), Pair('m', 0), Pair('m', 1)));
}

TEST_F(MicMuteNotifierTest, NeitherControlIsUnknownAndSilent) {
    microphone(std::nullopt);
    start();
    runFor(5);
    microphone(1);
    runFor(5);
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(MicMuteNotifierTest, ChangeWhileNotWantedIsAnnouncedAfterwards) {
    microphone(0);
    start();
    desktop.defaults["notify_mic_mute_unmute"] = false;
    microphone(1);
    runFor(5);
    EXPECT_THAT(bodies(), IsEmpty());
    desktop.defaults["notify_mic_mute_unmute"] = true;
    runFor(1);
    EXPECT_THAT(bodies(), ElementsAre("Microphone muted"));
}

TEST_F(MicMuteNotifierTest, WhileNotWantedTheDeviceIsNotRead) {
    microphone(0);
    desktop.defaults["notify_mic_mute_unmute"] = false;
    start();
    const int atTheStart = desktop.microphone.reads;
    EXPECT_GT(atTheStart, 0);
    runFor(60);
    EXPECT_EQ(desktop.microphone.reads, atTheStart);
    desktop.defaults["notify_mic_mute_unmute"] = std::string("false");
    runFor(1);
    EXPECT_GT(desktop.microphone.reads, atTheStart);
}

TEST_F(MicMuteNotifierTest, SecondStartDoesNothing) {
    microphone(0);
    start();
    EXPECT_EQ(desktop.notificationState.requestedOptions, 6U);
    microphone(1);
    notifier->start();
    runFor(1);
    // A second start that took the new state for known would have lost this.
    EXPECT_THAT(bodies(), ElementsAre("Microphone muted"));
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 1);
}

TEST_F(MicMuteNotifierTest, EndTakesTheTimerAway) {
    microphone(0);
    start();
    notifier.reset();
    microphone(1);
    runFor(5);
    EXPECT_THAT(bodies(), IsEmpty());
}

}  // namespace
}  // namespace trelvan
