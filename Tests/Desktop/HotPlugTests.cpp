#include "Desktop/Harness/ClientWindow.hpp"
#include "Desktop/Harness/DesktopFiles.hpp"
#include "Desktop/Harness/HotPlug.hpp"
#include "Desktop/Harness/InputDevices.hpp"
#include "Desktop/Harness/TrelvanProcess.hpp"
#include "Desktop/Harness/VirtualDesktop.hpp"

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <csignal>
#include <memory>

/// A mouse that is really plugged in and pulled out: the server makes a device with a new number each time.
namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);
const KeyStroke copy{XK_c, ControlMask};

class HotPlugTest : public testing::Test {
  protected:
    using Kind = ClientEvent::Kind;

    static void SetUpTestSuite() {
        if (HotPlug::isPossible()) {
            desktop =
                std::make_unique<VirtualDesktop>(std::vector<std::string>(), VirtualDesktop::Plugs::open);
        }
    }
    static void TearDownTestSuite() { desktop.reset(); }

    void SetUp() override {
        // A new device is announced to the server inside namespaces of the test's own; where nobody may make
        // such, nothing can be announced.
        if (!desktop) GTEST_SKIP() << "this machine does not let a user have namespaces";
        desktop->reset();
        devices = std::make_unique<InputDevices>(desktop->displayName());
        plug = std::make_unique<HotPlug>(desktop->serverId());
        client = std::make_unique<ClientWindow>(desktop->displayName());
    }
    void TearDown() override {
        if (!desktop) return;
        if (mouse) pullOut();
        EXPECT_TRUE(waitUntil([&] { return !client->isAnythingHeld(); }));
        if (HasFailure() && program) std::cout << program->output() << describe(client->events());
    }

    void start() { program = std::make_unique<TrelvanProcess>(*desktop, Settings().map(3, "Copiar")); }
    void plugIn() {
        plug->plugIn();
        mouse = std::make_unique<HardwareDevice>(desktop->folder() / pluggedMouse.socket);
    }
    void pullOut() {
        plug->pullOut();
        EXPECT_TRUE(waitUntil([&] { return !devices->exists(pluggedMouse.name); }));
        mouse.reset();
    }
    void expectTaken(int times) {
        const std::string line = std::string("Dispositivo capturado: ") + pluggedMouse.name;
        EXPECT_TRUE(waitUntil(
            [&] { return program->lines(line) == times && devices->isOffThePointer(pluggedMouse.name); }));
    }

    static std::unique_ptr<VirtualDesktop> desktop;
    std::unique_ptr<InputDevices> devices;
    std::unique_ptr<HotPlug> plug;
    std::unique_ptr<ClientWindow> client;
    std::unique_ptr<HardwareDevice> mouse;
    std::unique_ptr<TrelvanProcess> program;
};

std::unique_ptr<VirtualDesktop> HotPlugTest::desktop;

TEST_F(HotPlugTest, WithoutTheProgramThePluggedMouseIsAPlainOne) {
    plugIn();
    mouse->click(extra);
    EXPECT_TRUE(client->waitForButton(Kind::buttonRelease, extra));
    EXPECT_FALSE(devices->isOffThePointer(pluggedMouse.name));
}

TEST_F(HotPlugTest, PluggedMouseIsTakenAndServed) {
    start();
    plugIn();
    expectTaken(1);
    mouse->click(extra);
    EXPECT_TRUE(client->waitForStroke(copy));
    const Position from = client->pointer();
    mouse->move(12, 7);
    mouse->click(9);
    EXPECT_TRUE(client->waitForButton(Kind::buttonRelease, 9));
    EXPECT_EQ(client->pointer(), (Position{from.x + 12, from.y + 7}));
    EXPECT_EQ(client->buttonsPressed(), std::vector<unsigned>{9});
}

TEST_F(HotPlugTest, PulledWithAPassedButtonHeldReleasesIt) {
    start();
    plugIn();
    expectTaken(1);
    mouse->press(1);
    mouse->press(9);
    EXPECT_TRUE(client->waitForButton(Kind::buttonPress, 9));
    pullOut();
    for (const unsigned button : {1U, 9U}) EXPECT_TRUE(client->waitForButton(Kind::buttonRelease, button));
    EXPECT_TRUE(waitUntil([&] { return !client->isAnythingHeld(); }));
}

TEST_F(HotPlugTest, PulledWithAMappedButtonHeldActsAgainWhenPluggedInAnew) {
    start();
    plugIn();
    expectTaken(1);
    mouse->press(extra);
    EXPECT_TRUE(client->waitForStroke(copy));
    pullOut();
    plugIn();
    expectTaken(2);
    mouse->click(extra);
    EXPECT_TRUE(client->waitFor([&](const auto&) { return client->strokes().size() == 2; }));
    mouse->click(9);
    EXPECT_TRUE(client->waitForButton(Kind::buttonRelease, 9));
    EXPECT_EQ(client->buttonsPressed(), std::vector<unsigned>{9});
    EXPECT_EQ(client->strokes(), (std::vector<KeyStroke>{copy, copy}));
}

TEST_F(HotPlugTest, PulledAndPluggedInWhileTheProgramWasBusyIsServed) {
    start();
    plugIn();
    expectTaken(1);
    mouse->press(1);
    EXPECT_TRUE(client->waitForButton(Kind::buttonPress, 1));
    // The new device gets the number of the old one, and both changes are over when the program looks.
    program->signal(SIGSTOP);
    pullOut();
    plugIn();
    program->signal(SIGCONT);
    expectTaken(2);
    EXPECT_TRUE(client->waitForButton(Kind::buttonRelease, 1));
    mouse->click(extra);
    EXPECT_TRUE(client->waitForStroke(copy));
    EXPECT_EQ(client->buttonsPressed(), std::vector<unsigned>{1});
}

TEST_F(HotPlugTest, ManyChangesLeaveEveryDeviceServed) {
    start();
    for (int round = 1; round <= 15; ++round) {
        plugIn();
        expectTaken(round);
        mouse->press(9);
        mouse->move(1, 0);
        EXPECT_TRUE(client->waitForButton(Kind::buttonPress, 9, round));
        pullOut();
        EXPECT_TRUE(client->waitForButton(Kind::buttonRelease, 9, round));
    }
    desktop->trackball().click(extra);
    EXPECT_TRUE(client->waitForStroke(copy));
}

TEST_F(HotPlugTest, PulledInTheMiddleOfAStrokeTheOtherGoesOn) {
    start();
    plugIn();
    expectTaken(1);
    desktop->trackball().press(1);
    mouse->setWaiting(false);
    for (int step = 0; step < 200; ++step) mouse->move(step % 2 == 0 ? 1 : -1, 0);
    pullOut();
    desktop->trackball().move(3, 0);
    desktop->trackball().release(1);
    EXPECT_TRUE(client->waitForButton(Kind::buttonRelease, 1));
    EXPECT_EQ(client->count(Kind::buttonPress, 1), 1);
}

}  // namespace
}  // namespace trelvan::desktop
