#include "Support/TestDesktop.hpp"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace trelvan {
namespace {

using test::TestDesktop;
using testing::ElementsAre;
using testing::IsEmpty;

class SimulatedServicesTest : public testing::Test {
  protected:
    /// Answers as told and counts.
    struct Delegate : NotificationDelegate {
        void willPresent(const NotificationRequest& /*request*/,
                         const std::function<void(std::uint32_t)>& answer) override {
            ++asked;
            answer(options);
        }
        int asked = 0;
        std::uint32_t options = 0;
    };

    void allow() { desktop.notificationState.authorization = Notifications::Authorization::authorized; }
    void add(const char* body) {
        desktop.notifications().add({"1", "", "t", body, InterruptionLevel::active});
    }
    std::size_t shown() const { return desktop.all<trace::Notification>().size(); }
    KeyMonitors::LocalHandler noting(const std::string& name,
                                     KeyMonitors::LocalAnswer answer = KeyMonitors::LocalAnswer::passOn) {
        return [this, name, answer](const KeyMonitorEvent&) {
            seen.push_back(name);
            return answer;
        };
    }
    KeyMonitors::GlobalHandler notingGlobally(const std::string& name) {
        return [this, name](const KeyMonitorEvent&) { seen.push_back(name); };
    }

    TestDesktop desktop;
    std::vector<std::string> seen;
    const std::uint64_t keys = maskBit(EventType::keyDown);
};

// Notifications

TEST_F(SimulatedServicesTest, NotificationsNeedTheUsersPermission) {
    add("lost");
    desktop.notificationState.userAllows = false;
    desktop.notifications().requestAuthorization(6);
    add("refused");
    EXPECT_EQ(shown(), 0U);
    // The user is asked once.
    desktop.notificationState.userAllows = true;
    desktop.notifications().requestAuthorization(6);
    EXPECT_EQ(desktop.notificationState.authorization, Notifications::Authorization::denied);
    allow();
    add("shown");
    EXPECT_THAT(desktop.all<trace::Notification>(), ElementsAre(trace::Notification{"t", "shown"}));
}

TEST_F(SimulatedServicesTest, PermissionIsToldAfterTheCall) {
    allow();
    std::optional<Notifications::Authorization> told;
    desktop.notifications().getAuthorization([&](auto state) { told = state; });
    EXPECT_FALSE(told);
    desktop.time.runDue();
    EXPECT_EQ(told, Notifications::Authorization::authorized);
}

TEST_F(SimulatedServicesTest, DelegateDecidesWhileTheProgramIsFrontmostOnly) {
    allow();
    Delegate delegate;
    desktop.notifications().setDelegate(&delegate);
    add("behind");
    EXPECT_EQ(delegate.asked, 0);
    EXPECT_EQ(shown(), 1U);
    desktop.frontmost = "com.yourname.Trelvan";
    add("sound at most");
    EXPECT_EQ(delegate.asked, 1);
    EXPECT_EQ(shown(), 1U);
    delegate.options = presentationOption::banner;
    add("banner");
    EXPECT_EQ(shown(), 2U);
    desktop.notifications().setDelegate(nullptr);
    add("nobody says so");
    EXPECT_EQ(shown(), 2U);
}

// Key monitors

TEST_F(SimulatedServicesTest, KeysGoToGlobalMonitorsUnlessTheProgramIsFrontmost) {
    const auto local = desktop.keyMonitors().addLocal(keys, noting("local"));
    const auto global = desktop.keyMonitors().addGlobal(keys, notingGlobally("global"));
    desktop.sendKey({.type = EventType::keyDown, .characters = "a"});
    desktop.frontmost = "com.yourname.Trelvan";
    desktop.sendKey({.type = EventType::keyDown, .characters = "a"});
    EXPECT_THAT(seen, ElementsAre("global", "local"));
}

TEST_F(SimulatedServicesTest, GlobalMonitorsNeedTrust) {
    desktop.accessibility = false;
    const auto global = desktop.keyMonitors().addGlobal(keys, notingGlobally("global"));
    desktop.sendKey({.type = EventType::keyDown, .characters = "a"});
    EXPECT_THAT(seen, IsEmpty());
}

TEST_F(SimulatedServicesTest, MonitorSeesTheTypesOfItsMask) {
    const auto global = desktop.keyMonitors().addGlobal(4096, notingGlobally("flags"));
    desktop.sendKey({.type = EventType::keyDown, .characters = "a"});
    EXPECT_THAT(seen, IsEmpty());
    desktop.sendKey({.type = EventType::flagsChanged, .characters = {}});
    EXPECT_THAT(seen, ElementsAre("flags"));
}

TEST_F(SimulatedServicesTest, ConsumedKeyGoesNoFurther) {
    desktop.frontmost = "com.yourname.Trelvan";
    const auto first = desktop.keyMonitors().addLocal(keys, noting("first"));
    const auto second =
        desktop.keyMonitors().addLocal(keys, noting("second", KeyMonitors::LocalAnswer::consume));
    const auto third = desktop.keyMonitors().addLocal(keys, noting("third"));
    EXPECT_EQ(desktop.sendKey({.type = EventType::keyDown, .characters = "a"}),
              KeyMonitors::LocalAnswer::consume);
    EXPECT_THAT(seen, ElementsAre("first", "second"));
}

TEST_F(SimulatedServicesTest, MonitorThatLetsGoOfItselfAndTheNextIsSafe) {
    std::unique_ptr<KeyMonitors::Monitor> first;
    std::unique_ptr<KeyMonitors::Monitor> second;
    first = desktop.keyMonitors().addGlobal(keys, [&](const KeyMonitorEvent&) {
        seen.emplace_back("first");
        second.reset();
        first.reset();
    });
    second = desktop.keyMonitors().addGlobal(keys, notingGlobally("second"));
    desktop.sendKey({.type = EventType::keyDown, .characters = "a"});
    desktop.sendKey({.type = EventType::keyDown, .characters = "a"});
    EXPECT_THAT(seen, ElementsAre("first"));
}

TEST_F(SimulatedServicesTest, RefusedMonitorIsNull) {
    desktop.failures.keyMonitors = true;
    EXPECT_EQ(desktop.keyMonitors().addLocal(keys, noting("local")), nullptr);
    EXPECT_EQ(desktop.keyMonitors().addGlobal(keys, notingGlobally("global")), nullptr);
}

TEST_F(SimulatedServicesTest, KeyPressesCountAsActivity) {
    desktop.time.runFor(Seconds{10});
    desktop.sendKey({.type = EventType::keyDown, .characters = "a"});
    desktop.time.runFor(Seconds{1});
    EXPECT_DOUBLE_EQ(desktop.inputState().secondsSinceLast(EventType::keyDown), 1.0);
}

TEST_F(SimulatedServicesTest, PostedEventsAreNoActivity) {
    desktop.time.runFor(Seconds{10});
    const auto move = desktop.eventPoster().makeMouse(EventType::mouseMoved, 0, {1, 1});
    ASSERT_TRUE(move);
    desktop.eventPoster().post(*move, TapLocation::hid);
    desktop.time.runFor(Seconds{1});
    EXPECT_DOUBLE_EQ(desktop.inputState().secondsSinceLast(EventType::mouseMoved), 11.0);
}

TEST_F(SimulatedServicesTest, CapsLockIsInTheFlagsOfEverySourceBesideTheModifiersHeld) {
    desktop.modifierFlags = flag::shift;
    desktop.switchCapsLock(true);
    for (const auto source : {EventSourceState::hidSystem, EventSourceState::combinedSession})
        EXPECT_EQ(desktop.inputState().flags(source), flag::shift | flag::alphaShift);
    desktop.modifierFlags = 0;
    EXPECT_EQ(desktop.inputState().flags(EventSourceState::hidSystem), flag::alphaShift);
    desktop.switchCapsLock(false);
    EXPECT_EQ(desktop.inputState().flags(EventSourceState::hidSystem), 0U);
}

TEST_F(SimulatedServicesTest, CapsLockTellsTheMonitorsUnlessItIsNotMonitored) {
    std::vector<KeyMonitorEvent> events;
    const auto global =
        desktop.keyMonitors().addGlobal(4096, [&](const KeyMonitorEvent& event) { events.push_back(event); });
    desktop.switchCapsLock(true);
    desktop.switchCapsLock(false, false);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].keyCode, 57);
    EXPECT_EQ(events[0].flags, flag::alphaShift);
}

// The rest

TEST_F(SimulatedServicesTest, MicrophoneThatIsNotPresentHasNothingToRead) {
    auto& audio = desktop.audioInput();
    desktop.microphone.mute = {1, std::nullopt, 0};
    EXPECT_FALSE(audio.defaultInputDevice());
    EXPECT_FALSE(audio.mute(1, 0));
    desktop.microphone.present = true;
    const auto device = audio.defaultInputDevice();
    ASSERT_TRUE(device);
    EXPECT_EQ(audio.mute(*device, 0), 1U);
    EXPECT_EQ(audio.mute(*device, 1), std::nullopt);
    EXPECT_EQ(audio.mute(*device, 3), std::nullopt);
    EXPECT_EQ(audio.mute(*device + 1, 0), std::nullopt);
    EXPECT_EQ(audio.volume(*device, 0), std::nullopt);
}

TEST_F(SimulatedServicesTest, LoginItemChangesAsTheSystemWould) {
    using Status = LoginItem::Status;
    auto& item = desktop.loginItem();
    EXPECT_EQ(item.registerItem(), std::nullopt);
    EXPECT_EQ(item.status(), Status::enabled);
    EXPECT_EQ(item.unregisterItem(), std::nullopt);
    EXPECT_EQ(item.status(), Status::notRegistered);
    desktop.loginStatus = Status::requiresApproval;
    EXPECT_EQ(item.registerItem(), std::nullopt);
    EXPECT_EQ(item.status(), Status::requiresApproval);
    desktop.loginStatus = Status::notFound;
    EXPECT_NE(item.registerItem(), std::nullopt);
    EXPECT_EQ(item.status(), Status::notFound);
}

TEST_F(SimulatedServicesTest, LoginItemTellsItsWatchersWhileTheyWatch) {
    int told = 0;
    auto watch = desktop.loginItem().watch([&] { ++told; });
    desktop.changeLoginItem(LoginItem::Status::enabled);
    EXPECT_EQ(told, 1);
    watch.reset();
    desktop.changeLoginItem(LoginItem::Status::notRegistered);
    EXPECT_EQ(told, 1);
}

TEST_F(SimulatedServicesTest, InhibitionsAreCounted) {
    auto first = desktop.idleInhibitor().hold();
    const auto second = desktop.idleInhibitor().hold();
    EXPECT_EQ(desktop.idleHolds, 2);
    first.reset();
    EXPECT_EQ(desktop.idleHolds, 1);
}

TEST_F(SimulatedServicesTest, BundleTextsAreThoseOfTheWorld) {
    EXPECT_EQ(desktop.bundleInfo().text("CFBundleShortVersionString"), "1.0");
    EXPECT_EQ(desktop.bundleInfo().text("CFBundleVersion"), std::nullopt);
}

}  // namespace
}  // namespace trelvan
