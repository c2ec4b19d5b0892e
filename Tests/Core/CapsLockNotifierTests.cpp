#include "Core/CapsLockNotifier.hpp"
#include "Support/NotifierFixture.hpp"

#include <memory>

namespace trelvan {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CapsLockNotifierTest : public test::NotifierFixture {
  protected:
    void start() {
        notifier =
            std::make_unique<CapsLockNotifier>(CapsLockNotifier::Ports{.input = desktop.inputState(),
                                                                       .monitors = desktop.keyMonitors(),
                                                                       .timers = desktop.timers(),
                                                                       .defaults = desktop.userDefaults()},
                                               poster);
        notifier->start();
    }

    std::unique_ptr<CapsLockNotifier> notifier;
};

TEST_F(CapsLockNotifierTest, FirstChangeAfterTheStartIsAnnounced) {
    start();
    desktop.switchCapsLock(true);
    EXPECT_THAT(desktop.all<trace::Notification>(),
                ElementsAre(trace::Notification{"Trelvan v1.0", "Caps On"}));
    desktop.switchCapsLock(false);
    EXPECT_THAT(bodies(), ElementsAre("Caps On", "Caps Off"));
}

TEST_F(CapsLockNotifierTest, StateAtTheStartIsNotAnnounced) {
    desktop.capsLock = true;
    start();
    runFor(10);
    EXPECT_THAT(bodies(), IsEmpty());
    desktop.switchCapsLock(false);
    EXPECT_THAT(bodies(), ElementsAre("Caps Off"));
}

TEST_F(CapsLockNotifierTest, ToggleSeenByMonitorAndPollIsAnnouncedOnce) {
    start();
    desktop.switchCapsLock(true);
    runFor(10);
    EXPECT_THAT(bodies(), ElementsAre("Caps On"));
}

TEST_F(CapsLockNotifierTest, ToggleThatNoMonitorSeesIsFoundByThePoll) {
    start();
    runFor(0.1);
    desktop.switchCapsLock(true, false);
    runFor(0.29);
    EXPECT_THAT(bodies(), IsEmpty());
    runFor(0.02);
    EXPECT_THAT(bodies(), ElementsAre("Caps On"));
    runFor(10);
    EXPECT_THAT(bodies(), ElementsAre("Caps On"));
}

TEST_F(CapsLockNotifierTest, LocalMonitorSeesItWhileTheProgramIsFrontmost) {
    desktop.frontmost = "com.yourname.Trelvan";
    start();
    desktop.switchCapsLock(true);
    // The centre asks no delegate here and shows nothing; that it was posted is what counts.
    ASSERT_TRUE(desktop.notificationState.lastRequest);
    EXPECT_EQ(desktop.notificationState.lastRequest->body, "Caps On");
}

TEST_F(CapsLockNotifierTest, LocalMonitorPassesTheEventOn) {
    desktop.frontmost = "com.yourname.Trelvan";
    start();
    EXPECT_EQ(desktop.sendKey({.type = EventType::flagsChanged, .flags = flag::alphaShift, .characters = {}}),
              KeyMonitors::LocalAnswer::passOn);
}

TEST_F(CapsLockNotifierTest, OtherModifiersAndKeysAnnounceNothing) {
    start();
    desktop.modifierFlags = flag::shift;
    desktop.sendKey({.type = EventType::flagsChanged, .flags = flag::shift, .characters = {}});
    desktop.sendKey({.type = EventType::keyDown, .flags = flag::alphaShift, .characters = "a"});
    runFor(1);
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(CapsLockNotifierTest, WithoutTheSettingOnTogglesAreTrackedButNotAnnounced) {
    desktop.defaults["notify_caps_lock"] = false;
    start();
    desktop.switchCapsLock(true);
    runFor(1);
    desktop.defaults["notify_caps_lock"] = true;
    runFor(10);
    EXPECT_THAT(bodies(), IsEmpty());
    desktop.switchCapsLock(false);
    EXPECT_THAT(bodies(), ElementsAre("Caps Off"));
}

TEST_F(CapsLockNotifierTest, SettingThatIsNoTruthValueLeavesItOn) {
    start();
    desktop.defaults["notify_caps_lock"] = std::string("false");
    desktop.switchCapsLock(true);
    desktop.defaults["notify_caps_lock"] = std::int64_t{0};
    desktop.switchCapsLock(false);
    EXPECT_THAT(bodies(), ElementsAre("Caps On", "Caps Off"));
}

TEST_F(CapsLockNotifierTest, SpanishTextsForTheSpanishInterface) {
    desktop.defaults["general_language"] = std::string("Español");
    start();
    desktop.switchCapsLock(true);
    desktop.switchCapsLock(false);
    EXPECT_THAT(bodies(), ElementsAre("Caps activado", "Caps desactivado"));
}

TEST_F(CapsLockNotifierTest, SecondStartDoesNothing) {
    start();
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 1);
    EXPECT_EQ(desktop.notificationState.requestedOptions, 6U);
    desktop.switchCapsLock(true, false);
    notifier->start();
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 1);
    runFor(1);
    // A second start that took the new state for known would have lost this.
    EXPECT_THAT(bodies(), ElementsAre("Caps On"));
}

TEST_F(CapsLockNotifierTest, WithoutMonitorsThePollAloneWatchesAndTheSecondStartStillDoesNothing) {
    desktop.failures.keyMonitors = true;
    start();
    desktop.switchCapsLock(true);
    notifier->start();
    EXPECT_THAT(bodies(), IsEmpty());
    runFor(1);
    EXPECT_THAT(bodies(), ElementsAre("Caps On"));
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 1);
}

TEST_F(CapsLockNotifierTest, GlobalMonitorWithoutTrustLeavesItToThePoll) {
    desktop.accessibility = false;
    start();
    desktop.switchCapsLock(true);
    EXPECT_THAT(bodies(), IsEmpty());
    runFor(0.4);
    EXPECT_THAT(bodies(), ElementsAre("Caps On"));
}

TEST_F(CapsLockNotifierTest, EndTakesMonitorsAndTimerAway) {
    start();
    notifier.reset();
    desktop.switchCapsLock(true);
    runFor(5);
    EXPECT_THAT(bodies(), IsEmpty());
}

}  // namespace
}  // namespace trelvan
