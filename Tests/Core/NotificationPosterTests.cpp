#include "Core/ProgramTitle.hpp"
#include "Support/NotifierFixture.hpp"

namespace trelvan {
namespace {

using test::sequentialUuid;
using testing::ElementsAre;
using testing::IsEmpty;

class NotificationPosterTest : public test::NotifierFixture {
  protected:
    const NotificationRequest& last() const { return *desktop.notificationState.lastRequest; }
    std::string announced() {
        poster.announce("kind", "english", "spanish");
        return last().body;
    }
};

TEST_F(NotificationPosterTest, RequestIsTimeSensitiveWithAFreshIdentifier) {
    poster.announce("kind", "a", "b");
    EXPECT_EQ(last().level, InterruptionLevel::timeSensitive);
    EXPECT_EQ(static_cast<int>(last().level), 2);
    EXPECT_EQ(last().identifier, sequentialUuid(1).text());
    poster.announce("kind", "a", "b");
    EXPECT_EQ(last().identifier, sequentialUuid(2).text());
}

TEST_F(NotificationPosterTest, TitleIsTheNameAndTheVersionWithTheirFallbacks) {
    const auto title = [this] {
        poster.announce("kind", "a", "b");
        return last().title;
    };
    desktop.bundle = {{"CFBundleDisplayName", "Trelvan Beta"},
                      {"CFBundleName", "TB"},
                      {"CFBundleShortVersionString", "2.3.1"}};
    EXPECT_EQ(title(), "Trelvan Beta v2.3.1");
    desktop.bundle.erase("CFBundleDisplayName");
    EXPECT_EQ(title(), "TB v2.3.1");
    desktop.bundle.erase("CFBundleName");
    EXPECT_EQ(title(), "Trelvan v2.3.1");
    desktop.bundle.clear();
    EXPECT_EQ(title(), "Trelvan v1.0");
}

TEST_F(NotificationPosterTest, EnglishForNoSettingAndTheEnglishOneSpanishForAnyOther) {
    EXPECT_EQ(announced(), "english");
    desktop.defaults["general_language"] = std::string("English");
    EXPECT_EQ(announced(), "english");
    desktop.defaults["general_language"] = std::string("Español");
    EXPECT_EQ(announced(), "spanish");
    desktop.defaults["general_language"] = std::string("Deutsch");
    EXPECT_EQ(announced(), "spanish");
    desktop.defaults["general_language"] = true;
    EXPECT_EQ(announced(), "english");
}

TEST_F(NotificationPosterTest, PermissionIsAskedForWhenItNeverWasAndThePostDoesNotWait) {
    poster.announce("kind", "a", "b");
    // Posted at once, and lost: nobody has allowed it yet.
    EXPECT_EQ(last().body, "a");
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 0);
    EXPECT_THAT(bodies(), IsEmpty());
    runFor(0);
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 1);
    EXPECT_EQ(desktop.notificationState.requestedOptions, 6U);
    poster.announce("kind", "c", "d");
    runFor(0);
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 1);
    EXPECT_THAT(bodies(), ElementsAre("c"));
}

TEST_F(NotificationPosterTest, PermissionThatWasRefusedIsNotAskedForAgain) {
    desktop.notificationState.userAllows = false;
    poster.requestAuthorization();
    poster.announce("kind", "a", "b");
    runFor(0);
    EXPECT_EQ(desktop.notificationState.authorizationRequests, 1);
    EXPECT_THAT(bodies(), IsEmpty());
}

TEST_F(NotificationPosterTest, PlainPostKeepsTitleAndBody) {
    poster.requestAuthorization();
    poster.post("battery", "Low Battery", "Low battery detected");
    EXPECT_THAT(desktop.all<trace::Notification>(),
                ElementsAre(trace::Notification{"Low Battery", "Low battery detected"}));
    EXPECT_EQ(last().level, InterruptionLevel::timeSensitive);
    EXPECT_EQ(last().kind, "battery");
}

TEST_F(NotificationPosterTest, AnnouncementKeepsItsKind) {
    poster.announce("caps-lock", "a", "b");
    EXPECT_EQ(last().kind, "caps-lock");
}

TEST_F(NotificationPosterTest, VersionLabelFallsBackToOne) {
    EXPECT_EQ(versionLabel(desktop.bundleInfo()), "v1.0");
    desktop.bundle["CFBundleShortVersionString"] = "0.1.0";
    EXPECT_EQ(versionLabel(desktop.bundleInfo()), "v0.1.0");
    desktop.bundle.clear();
    EXPECT_EQ(versionLabel(desktop.bundleInfo()), "v1.0");
}

}  // namespace
}  // namespace trelvan
