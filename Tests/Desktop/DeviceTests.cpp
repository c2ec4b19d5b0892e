#include "Desktop/DeviceFixture.hpp"

#include <X11/keysym.h>

#include <csignal>

/// Which devices the program takes, and when.
namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);
const KeyStroke copy{XK_c, ControlMask};
const KeyStroke paste{XK_v, ControlMask};
const KeyStroke cut{XK_x, ControlMask};

using DeviceTest = DeviceFixture;

TEST_F(DeviceTest, MiceAreTakenAndTabletsAndTouchScreensAreNot) {
    start(Settings().map(3, "Copiar"));
    EXPECT_TRUE(isTaken("trackball"));
    EXPECT_TRUE(isTaken("mouse"));
    for (const char* other : {"tablet", "touch screen", "keyboard"}) EXPECT_FALSE(isTaken(other)) << other;
}

TEST_F(DeviceTest, TabletsButtonArrivesAsItself) {
    start(Settings().map(3, "Copiar"));
    desktop().tablet().click(extra);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, extra));
    passSentinel();
    EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{});
}

TEST_F(DeviceTest, MouseWithAPropertyOfTouchpadsOrTabletsIsLeftAlone) {
    for (const char* property : foreignProperties) {
        devices->addProperty("mouse", property);
        start(Settings().map(3, "Copiar"));
        EXPECT_TRUE(isTaken("trackball"));
        EXPECT_FALSE(isTaken("mouse")) << property;
        mouse().click(extra);
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, extra)) << property;
        devices->removeProperty("mouse", property);
    }
}

TEST_F(DeviceTest, DevicePluggedInLaterIsTaken) {
    unplug("mouse");
    start(Settings().map(3, "Copiar"));
    EXPECT_FALSE(isTaken("mouse"));
    plugIn("mouse");
    ASSERT_TRUE(waitUntilTaken("mouse"));
    mouse().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    passSentinel();
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
}

TEST_F(DeviceTest, DeviceThatAnotherProgramHoldsIsNamedOnceAndTakenWhenItIsLetGo) {
    ASSERT_TRUE(devices->hold("mouse"));
    start(Settings().map(3, "Copiar"));
    const std::string line = "Otro programa retiene el dispositivo mouse; se reintentará";
    EXPECT_TRUE(program().waitForLine(line));
    EXPECT_EQ(wholeOutput().find("Dispositivo capturado: mouse"), std::string::npos);
    // The second try finds it held again; a busy minute of them must not fill the log.
    ASSERT_FALSE(waitUntil([&] { return program().lines(line) > 1; }, std::chrono::milliseconds{1500}));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    devices->letGo("mouse");
    ASSERT_TRUE(waitUntilTaken("mouse"));
    mouse().click(extra);
    EXPECT_TRUE(client().waitFor([&](const auto&) { return client().strokes().size() == 2; }));
    passSentinel();
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
}

TEST_F(DeviceTest, DeviceWithAButtonDownIsTakenOnceItIsUp) {
    trackball().press(9);
    ASSERT_TRUE(client().waitForButton(Kind::buttonPress, 9));
    launch(Settings().map(3, "Copiar"));
    EXPECT_TRUE(waitUntilTaken("mouse"));
    EXPECT_FALSE(isTaken("trackball"));
    trackball().release(9);
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, 9));
    ASSERT_TRUE(waitUntilTaken("trackball"));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
}

TEST_F(DeviceTest, ExtraButtonsCountFromThree) {
    launch(Settings().map(3, "Copiar").map(4, "Pegar").map(5, "Cortar"));
    ASSERT_TRUE(waitUntilTaken("trackball"));
    std::size_t strokes = 0;
    for (const int button : {8, 9, 10}) {
        trackball().click(button);
        ++strokes;
        ASSERT_TRUE(client().waitFor([&](const auto&) { return client().strokes().size() == strokes; }));
        const std::string number = std::to_string(button - 5);
        EXPECT_TRUE(program().waitForLine("Evento botón " + number + " consumido en down (swallowed)"));
        EXPECT_TRUE(program().waitForLine("Evento botón " + number + " ya manejado en down"));
    }
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{copy, paste, cut}));
}

TEST_F(DeviceTest, LeftHandedButtonMapIsKept) {
    devices->setButtonMap("trackball", {3, 2, 1});
    start(Settings().map(3, "Copiar"));
    trackball().click(1);
    trackball().click(3);
    passSentinel();
    EXPECT_EQ(buttonsArrived(), (std::vector<unsigned>{3, 1}));
}

TEST_F(DeviceTest, MappedButtonHeldWhileUnpluggedActsAgainAfterTheReturn) {
    start(Settings().map(3, "Copiar"));
    trackball().press(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    unplug("trackball");
    EXPECT_TRUE(program().waitForLine("Dispositivo retirado: trackball"));
    plugIn("trackball");
    ASSERT_TRUE(waitUntilTaken("trackball", 2));
    trackball().click(extra);
    EXPECT_TRUE(client().waitFor([&](const auto&) { return client().strokes().size() == 2; }));
    passSentinel();
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{copy, copy}));
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
}

TEST_F(DeviceTest, UnpluggedAndPluggedInWhileTheProgramWasBusyIsServed) {
    start(Settings().map(3, "Copiar"));
    program().signal(SIGSTOP);
    unplug("trackball");
    plugIn("trackball");
    program().signal(SIGCONT);
    ASSERT_TRUE(waitUntilTaken("trackball", 2));
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    passSentinel();
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
}

TEST_F(DeviceTest, PassedButtonHeldWhileUnpluggedIsReleased) {
    start(Settings().map(3, "Copiar"));
    for (const int button : {1, 9}) trackball().press(button);
    EXPECT_TRUE(client().waitForButton(Kind::buttonPress, 9));
    unplug("trackball");
    for (const unsigned button : {1U, 9U}) EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, button));
    EXPECT_TRUE(waitUntil([&] { return !client().isAnythingHeld(); }));
    plugIn("trackball");
    ASSERT_TRUE(waitUntilTaken("trackball", 2));
    trackball().click(1);
    passSentinel();
    EXPECT_EQ(buttonsArrived(), (std::vector<unsigned>{1, 9, 1}));
    EXPECT_EQ(client().count(Kind::buttonRelease, 1), 2);
    EXPECT_EQ(client().count(Kind::buttonRelease, 9), 1);
}

}  // namespace
}  // namespace trelvan::desktop
