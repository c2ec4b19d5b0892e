#include "Core/LaunchAtLoginManager.hpp"
#include "Support/TestDesktop.hpp"

#include <gmock/gmock.h>

#include <memory>

namespace trelvan {
namespace {

using test::TestDesktop;
using testing::ElementsAre;
using testing::IsEmpty;
using Status = LoginItem::Status;

class LaunchAtLoginManagerTest : public testing::Test {
  protected:
    LaunchAtLoginManager& load(Status status) {
        desktop.loginStatus = status;
        manager = std::make_unique<LaunchAtLoginManager>(desktop.loginItem(), desktop.logger);
        return *manager;
    }

    TestDesktop desktop;
    std::unique_ptr<LaunchAtLoginManager> manager;
};

TEST_F(LaunchAtLoginManagerTest, OnlyTheStatusEnabledCountsAsOn) {
    EXPECT_TRUE(load(Status::enabled).isEnabled);
    EXPECT_FALSE(load(Status::notRegistered).isEnabled);
    EXPECT_FALSE(load(Status::requiresApproval).isEnabled);
    EXPECT_FALSE(load(Status::notFound).isEnabled);
}

TEST_F(LaunchAtLoginManagerTest, ToggleRegistersAndUnregisters) {
    auto& login = load(Status::notRegistered);
    login.toggle();
    EXPECT_TRUE(login.isEnabled);
    EXPECT_EQ(desktop.loginStatus, Status::enabled);
    login.toggle();
    EXPECT_FALSE(login.isEnabled);
    EXPECT_EQ(desktop.loginStatus, Status::notRegistered);
    EXPECT_THAT(desktop.entries, IsEmpty());
}

TEST_F(LaunchAtLoginManagerTest, RefusedRegistrationIsLoggedAndStaysOff) {
    desktop.failures.loginItem = true;
    auto& login = load(Status::notRegistered);
    login.toggle();
    EXPECT_FALSE(login.isEnabled);
    EXPECT_THAT(desktop.all<trace::Logged>(),
                ElementsAre(trace::Logged{LogLevel::error, "LaunchAtLogin: simulated failure"}));
}

TEST_F(LaunchAtLoginManagerTest, RefusedUnregistrationSnapsBackToOn) {
    desktop.failures.loginItem = true;
    auto& login = load(Status::enabled);
    login.toggle();
    EXPECT_TRUE(login.isEnabled);
    EXPECT_THAT(desktop.messages(LogLevel::error), ElementsAre("LaunchAtLogin: simulated failure"));
}

TEST_F(LaunchAtLoginManagerTest, RegistrationThatNeedsApprovalSucceedsAndStaysOff) {
    auto& login = load(Status::requiresApproval);
    login.toggle();
    EXPECT_FALSE(login.isEnabled);
    EXPECT_THAT(desktop.entries, IsEmpty());
    // The user approves it; the toggle reads the status afresh, and unregisters only what it knows to be on.
    desktop.loginStatus = Status::enabled;
    EXPECT_FALSE(login.isEnabled);
    login.toggle();
    EXPECT_TRUE(login.isEnabled);
}

TEST_F(LaunchAtLoginManagerTest, StatusIsReadAfreshAfterAFailureToo) {
    auto& login = load(Status::notRegistered);
    desktop.failures.loginItem = true;
    desktop.loginStatus = Status::enabled;
    login.toggle();
    EXPECT_TRUE(login.isEnabled);
}

TEST_F(LaunchAtLoginManagerTest, ObserversAreToldOfEachReading) {
    auto& login = load(Status::notRegistered);
    std::vector<bool> told;
    const auto subscription = login.isEnabled.observe([&](bool enabled) { told.push_back(enabled); });
    login.toggle();
    desktop.failures.loginItem = true;
    login.toggle();
    EXPECT_THAT(told, ElementsAre(true, true));
}

TEST_F(LaunchAtLoginManagerTest, ChangeByAnotherHandIsFollowed) {
    auto& login = load(Status::notRegistered);
    desktop.changeLoginItem(Status::enabled);
    EXPECT_TRUE(login.isEnabled);
    desktop.changeLoginItem(Status::notFound);
    EXPECT_FALSE(login.isEnabled);
    manager.reset();
    desktop.changeLoginItem(Status::enabled);
}

}  // namespace
}  // namespace trelvan
