#include "Support/TestDesktop.hpp"
#include "TrelvanApp.hpp"

#include <gmock/gmock.h>

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
        mapping.action = action;
        profile.mappings.push_back(mapping);
        app->profileManager.setActive(profile);
        app->profileManager.setActiveProfile(profile);
        return profile;
    }
    void launch() {
        app = std::make_unique<TrelvanApp>(desktop, desktop.logger);
        app->appear();
        desktop.time.runDue();
    }

    TestDesktop desktop;
    std::unique_ptr<TrelvanApp> app;
};

TEST_F(TrelvanAppTest, ServicesAreCreatedInOrderAndNoTapBeforeAppearing) {
    app = std::make_unique<TrelvanApp>(desktop, desktop.logger);
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

}  // namespace
}  // namespace trelvan
