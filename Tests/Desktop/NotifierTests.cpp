#include "Desktop/DesktopTest.hpp"
#include "Desktop/Harness/NotificationDaemon.hpp"
#include "Desktop/Harness/SoundServer.hpp"

#include <X11/keysym.h>

#include <algorithm>

namespace trelvan::desktop {
namespace {

/// How often the text stands in the other.
std::size_t count(const std::string& text, const std::string& in) {
    std::size_t result = 0;
    for (auto at = in.find(text); at != std::string::npos; at = in.find(text, at + text.size())) ++result;
    return result;
}

class NotifierTest : public DesktopTest {
  protected:
    void toggleCapsLock() { desktop().keyboard().keyStroke(client().keyCode(XK_Caps_Lock)); }

    /// What the daemon has shown, without what is the same in all of them.
    static std::vector<std::string> bodies(const NotificationDaemon& daemon) {
        std::vector<std::string> result;
        for (const auto& notification : daemon.shown()) {
            EXPECT_EQ(notification.program, "Trelvan");
            EXPECT_EQ(notification.title, "Trelvan v0.1.0");
            EXPECT_EQ(notification.urgency, "NORMAL");
            result.push_back(notification.body);
        }
        return result;
    }
};

using Bodies = std::vector<std::string>;

TEST_F(NotifierTest, EachPressOfCapsLockIsToldOnce) {
    const NotificationDaemon daemon(desktop());
    start(Settings());
    for (std::size_t press = 1; press <= 4; ++press) {
        toggleCapsLock();
        EXPECT_TRUE(daemon.waitForCount(press));
    }
    EXPECT_EQ(bodies(daemon), (Bodies{"Caps On", "Caps Off", "Caps On", "Caps Off"}));
}

TEST_F(NotifierTest, CapsLockIsToldInSpanishWhereTheInterfaceIs) {
    const NotificationDaemon daemon(desktop());
    start(Settings().set("general_language", "Español"));
    toggleCapsLock();
    EXPECT_TRUE(daemon.waitForCount(1));
    toggleCapsLock();
    EXPECT_TRUE(daemon.waitForCount(2));
    EXPECT_EQ(bodies(daemon), (Bodies{"Caps activado", "Caps desactivado"}));
}

TEST_F(NotifierTest, MissingDaemonIsLoggedOnceAndALaterOneIsUsed) {
    start(Settings());
    toggleCapsLock();
    const std::string missing = "No hay servicio de notificaciones en este escritorio";
    EXPECT_TRUE(program().waitForLine(missing));
    toggleCapsLock();
    const NotificationDaemon daemon(desktop());
    toggleCapsLock();
    EXPECT_TRUE(daemon.waitForCount(1));
    toggleCapsLock();
    EXPECT_TRUE(daemon.waitForCount(2));
    EXPECT_EQ(bodies(daemon), (Bodies{"Caps On", "Caps Off"}));
    EXPECT_EQ(count(missing, wholeOutput()), 1U);
}

TEST_F(NotifierTest, MutingTheMicrophoneIsTold) {
    const NotificationDaemon daemon(desktop());
    SoundServer server(desktop());
    start(Settings());
    server.setMute(true);
    EXPECT_TRUE(daemon.waitForCount(1));
    server.setMute(false);
    EXPECT_TRUE(daemon.waitForCount(2));
    EXPECT_EQ(bodies(daemon), (Bodies{"Microphone muted", "Microphone unmuted"}));
}

TEST_F(NotifierTest, MicrophoneIsToldOfInSpanishAndNotItsStateAtTheStart) {
    const NotificationDaemon daemon(desktop());
    SoundServer server(desktop());
    server.setMute(true);
    start(Settings().set("general_language", "Español"));
    server.setMute(false);
    EXPECT_TRUE(daemon.waitForCount(1));
    server.setMute(true);
    EXPECT_TRUE(daemon.waitForCount(2));
    EXPECT_EQ(bodies(daemon), (Bodies{"Microfono con audio", "Microfono en mute"}));
}

TEST_F(NotifierTest, NewsTakesThePlaceOfTheLastOfItsKindAndOfNoOther) {
    const NotificationDaemon daemon(desktop());
    SoundServer server(desktop());
    start(Settings());
    toggleCapsLock();
    EXPECT_TRUE(daemon.waitForCount(1));
    server.setMute(true);
    EXPECT_TRUE(daemon.waitForCount(2));
    toggleCapsLock();
    EXPECT_TRUE(daemon.waitForCount(3));
    server.setMute(false);
    ASSERT_TRUE(daemon.waitForCount(4));
    const auto shown = daemon.shown();
    EXPECT_EQ(bodies(daemon), (Bodies{"Caps On", "Microphone muted", "Caps Off", "Microphone unmuted"}));
    EXPECT_FALSE(shown[0].number.empty());
    EXPECT_EQ(shown[2].number, shown[0].number);
    EXPECT_EQ(shown[3].number, shown[1].number);
    EXPECT_NE(shown[0].number, shown[1].number);
}

TEST_F(NotifierTest, SoundServerThatComesBackIsHeardAgain) {
    const NotificationDaemon daemon(desktop());
    auto server = std::make_unique<SoundServer>(desktop());
    start(Settings());
    server->setMute(true);
    EXPECT_TRUE(daemon.waitForCount(1));
    server.reset();
    server = std::make_unique<SoundServer>(desktop());
    // The new server's microphone is not muted.
    EXPECT_TRUE(daemon.waitForCount(2));
    EXPECT_EQ(bodies(daemon), (Bodies{"Microphone muted", "Microphone unmuted"}));
}

TEST_F(NotifierTest, ProgramWithoutSoundServerSaysNothingOfIt) {
    start(Settings());
    const std::string output = wholeOutput();
    EXPECT_EQ(output.find("sonido"), std::string::npos) << output;
}

}  // namespace
}  // namespace trelvan::desktop
