#include "Support/FakePanels.hpp"
#include "Support/TestDesktop.hpp"
#include "TrelvanApp.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace trelvan {
namespace {

using test::TestDesktop;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class TrelvanAppTest : public testing::Test {
  protected:
    TapAnswer press(std::int64_t number) {
        return desktop.send(
            {.type = EventType::otherMouseDown, .location = {10, 10}, .buttonNumber = number});
    }
    /// A profile that maps button 3.
    TrackballProfile profileWith(ButtonAction action) {
        TrackballProfile profile = app->profileManager.createProfile("P");
        ButtonMapping mapping;
        mapping.id = Uuid::random();
        mapping.buttonNumber = 3;
        mapping.action() = action;
        profile.mappings.push_back(mapping);
        app->profileManager.setActive(profile);
        app->profileManager.setActiveProfile(profile);
        return profile;
    }
    void launch() {
        app = std::make_unique<TrelvanApp>(desktop, panels, desktop.logger);
        app->appear();
        desktop.time.runDue();
    }

    TestDesktop desktop;
    test::FakePanels panels;
    std::unique_ptr<TrelvanApp> app;
};

TEST_F(TrelvanAppTest, ServicesAreCreatedInOrderAndNoTapBeforeAppearing) {
    app = std::make_unique<TrelvanApp>(desktop, panels, desktop.logger);
    EXPECT_THAT(desktop.messages(LogLevel::info),
                ElementsAre("Perfiles cargados: 1. Activo: 'Default'", "Accesibilidad: concedida ✅"));
    EXPECT_FALSE(desktop.tapExists());
    EXPECT_FALSE(static_cast<bool>(app->eventMonitor->onButtonEvent));
}

TEST_F(TrelvanAppTest, AppearingStartsTheTapWhenPermitted) {
    launch();
    EXPECT_TRUE(app->eventMonitor->isRunning);
    EXPECT_TRUE(static_cast<bool>(app->eventMonitor->onButtonEvent));
}

TEST_F(TrelvanAppTest, WithoutPermissionThereIsNoTapUntilItIsGranted) {
    desktop.accessibility = false;
    launch();
    EXPECT_FALSE(desktop.tapExists());
    desktop.time.runFor(Seconds{60});
    EXPECT_FALSE(desktop.tapExists());
    EXPECT_THAT(desktop.messages(LogLevel::error), IsEmpty());
    desktop.accessibility = true;
    desktop.time.runFor(Seconds{2});
    EXPECT_TRUE(app->eventMonitor->isRunning);
    EXPECT_EQ(desktop.tapsCreated(), 1);
}

TEST_F(TrelvanAppTest, PermissionFoundByAnotherRefreshStartsTheTapAtOnce) {
    desktop.accessibility = false;
    launch();
    desktop.accessibility = true;
    app->permissions.refresh();
    desktop.time.runDue();
    EXPECT_TRUE(app->eventMonitor->isRunning);
}

TEST_F(TrelvanAppTest, FailedTapIsTriedAgainEveryTwoSeconds) {
    desktop.failures.tapCreate = true;
    launch();
    desktop.time.runFor(Seconds{4});
    EXPECT_EQ(desktop.messages(LogLevel::error).size(), 3U);
    desktop.failures.tapCreate = false;
    desktop.time.runFor(Seconds{2});
    EXPECT_TRUE(app->eventMonitor->isRunning);
}

TEST_F(TrelvanAppTest, PressBecomesTheActionOfTheActiveProfile) {
    launch();
    profileWith(ButtonAction::copy);
    EXPECT_EQ(press(3), TapAnswer::swallow);
    desktop.time.runUntilBackgroundIsEmpty();
    EXPECT_THAT(desktop.all<trace::PostedKey>(),
                Contains(trace::PostedKey{8, true, flag::command, TapLocation::hid}));
}

TEST_F(TrelvanAppTest, SwitchedProfileTakesEffectOnTheNextPress) {
    launch();
    const auto first = app->profileManager.activeProfile();
    profileWith(ButtonAction::copy);
    EXPECT_EQ(press(3), TapAnswer::swallow);
    app->profileManager.setActive(first);
    // The default profile knows the button and gives it nothing to do.
    EXPECT_EQ(press(3), TapAnswer::deliver);
}

TEST_F(TrelvanAppTest, EndTakesTheTapAway) {
    launch();
    const std::weak_ptr<EventMonitor> monitor = app->eventMonitor;
    app.reset();
    EXPECT_FALSE(desktop.tapExists());
    EXPECT_TRUE(monitor.expired());
    desktop.time.runFor(Seconds{5});
}

TEST_F(TrelvanAppTest, AppearingTwiceWiresOnce) {
    launch();
    app->appear();
    desktop.time.runDue();
    EXPECT_EQ(desktop.tapsCreated(), 1);
}

// Background services

/// Remembers in which order the services' ports were taken.
class OrderedDesktop : public TestDesktop {
  public:
    UserDefaults& userDefaults() override { return note("userDefaults", TestDesktop::userDefaults()); }
    EventTap& eventTap() override { return note("eventTap", TestDesktop::eventTap()); }
    AccessibilityTrust& accessibilityTrust() override {
        return note("accessibilityTrust", TestDesktop::accessibilityTrust());
    }
    LoginItem& loginItem() override { return note("loginItem", TestDesktop::loginItem()); }
    IdleInhibitor& idleInhibitor() override { return note("idleInhibitor", TestDesktop::idleInhibitor()); }
    KeyMonitors& keyMonitors() override { return note("keyMonitors", TestDesktop::keyMonitors()); }

    std::vector<std::string> taken;

  private:
    template <typename Port>
    Port& note(const char* name, Port& port) {
        if (std::ranges::find(taken, name) == taken.end()) taken.emplace_back(name);
        return port;
    }
};

TEST(TrelvanAppOrderTest, EachServiceIsCreatedAtItsPlace) {
    OrderedDesktop desktop;
    test::FakePanels panels;
    const TrelvanApp app(desktop, panels, desktop.logger);
    // The store, the monitor, the permissions, launch at login, Keep Awake, the notifiers.
    EXPECT_THAT(desktop.taken, ElementsAre("userDefaults", "eventTap", "accessibilityTrust", "loginItem",
                                           "idleInhibitor", "keyMonitors"));
}

TEST_F(TrelvanAppTest, NotifiersStartWithoutTheInterfaceAfterSevenTenthsOfASecond) {
    app = std::make_unique<TrelvanApp>(desktop, panels, desktop.logger);
    desktop.time.runFor(Seconds{0.69});
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 0);
    desktop.time.runFor(Seconds{0.02});
    // One for each of them.
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 2);
    desktop.switchCapsLock(true);
    EXPECT_THAT(desktop.all<trace::Notification>(),
                ElementsAre(trace::Notification{"Trelvan v1.0", "Caps On"}));
}

TEST_F(TrelvanAppTest, AppearingStartsTheNotifiersAndTheLaterStartDoesNothing) {
    app = std::make_unique<TrelvanApp>(desktop, panels, desktop.logger);
    app->appear();
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 2);
    desktop.time.runFor(Seconds{5});
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 2);
    desktop.switchCapsLock(true);
    EXPECT_EQ(desktop.all<trace::Notification>().size(), 1U);
}

TEST_F(TrelvanAppTest, EndBeforeTheNotifiersStartStartsNothing) {
    app = std::make_unique<TrelvanApp>(desktop, panels, desktop.logger);
    app.reset();
    desktop.time.runFor(Seconds{5});
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 0);
}

TEST_F(TrelvanAppTest, NotificationIsShownWhileTheProgramIsFrontmost) {
    launch();
    desktop.frontmost = "com.yourname.Trelvan";
    desktop.switchCapsLock(true);
    EXPECT_EQ(desktop.notificationState.lastOptions, 26U);
    EXPECT_THAT(desktop.all<trace::Notification>(),
                ElementsAre(trace::Notification{"Trelvan v1.0", "Caps On"}));
}

TEST_F(TrelvanAppTest, EndTakesTheNotificationDelegateAway) {
    launch();
    app.reset();
    desktop.frontmost = "com.yourname.Trelvan";
    desktop.notifications().add({.identifier = "1", .title = "t", .body = "b"});
    EXPECT_EQ(desktop.notificationState.lastOptions, std::nullopt);
}

TEST_F(TrelvanAppTest, LoginItemIsReadAtTheStart) {
    desktop.loginStatus = LoginItem::Status::enabled;
    launch();
    EXPECT_TRUE(app->loginManager.isEnabled);
}

TEST_F(TrelvanAppTest, KeepAwakeGoesOnFromTheStoredSettingAndEndsWithTheApplication) {
    desktop.defaults["keep_awake_enabled"] = true;
    launch();
    desktop.time.runFor(Seconds{240});
    EXPECT_EQ(desktop.all<trace::PostedMouse>().size(), 1U);
    EXPECT_EQ(desktop.idleHolds, 1);
    app.reset();
    EXPECT_EQ(desktop.idleHolds, 0);
    desktop.time.runFor(Seconds{240});
    EXPECT_EQ(desktop.all<trace::PostedMouse>().size(), 1U);
}

TEST_F(TrelvanAppTest, NudgesPassTheTapUntouched) {
    desktop.defaults["keep_awake_enabled"] = true;
    desktop.defaults["trackball_mouse_speed"] = 0.5;
    launch();
    desktop.time.runFor(Seconds{241});
    const auto events = desktop.all<trace::Event>();
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].answer, TapAnswer::deliver);
    EXPECT_EQ(events[0].event.location, (Point{721, 450}));
    EXPECT_EQ(events[1].event.location, (Point{720, 450}));
    EXPECT_EQ(desktop.pointer, (Point{720, 450}));
}

}  // namespace
}  // namespace trelvan
