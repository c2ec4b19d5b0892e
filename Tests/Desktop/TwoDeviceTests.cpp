#include "Desktop/DeviceFixture.hpp"

#include <X11/keysym.h>

#include <array>
#include <random>

/// Two mice used at once, as by both hands.
namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);
const KeyStroke copy{XK_c, ControlMask};

using TwoDeviceTest = DeviceFixture;

TEST_F(TwoDeviceTest, ButtonHeldOnBothIsOneButtonUntilBothLetGo) {
    start(Settings().map(3, "Copiar"));
    trackball().press(1);
    mouse().press(1);
    trackball().release(1);
    passSentinel();
    EXPECT_EQ(client().count(Kind::buttonPress, 1), 1);
    EXPECT_EQ(client().count(Kind::buttonRelease, 1), 0);
    mouse().move(10, 0);
    mouse().release(1);
    passSentinel();
    EXPECT_EQ(client().count(Kind::buttonPress, 1), 1);
    EXPECT_EQ(client().count(Kind::buttonRelease, 1), 1);
}

TEST_F(TwoDeviceTest, MappedButtonHeldOnBothActsOnce) {
    start(Settings().map(3, "Copiar"));
    trackball().press(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    mouse().press(extra);
    trackball().release(extra);
    mouse().release(extra);
    wholeOutput();
    EXPECT_EQ(program().lines("Ejecutando 'Copiar'"), 1);
    mouse().click(extra);
    EXPECT_TRUE(client().waitFor([&](const auto&) { return client().strokes().size() == 2; }));
    passSentinel();
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{copy, copy}));
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
}

TEST_F(TwoDeviceTest, MappedButtonHeldOnBothCanBeUnpluggedFromOne) {
    start(Settings().map(3, "Copiar"));
    trackball().press(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    mouse().press(extra);
    unplug("mouse");
    EXPECT_TRUE(program().waitForLine("Dispositivo retirado: mouse"));
    trackball().release(extra);
    wholeOutput();
    EXPECT_EQ(program().lines("Ejecutando 'Copiar'"), 1);
    trackball().click(extra);
    EXPECT_TRUE(client().waitFor([&](const auto&) { return client().strokes().size() == 2; }));
    passSentinel();
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
}

TEST_F(TwoDeviceTest, MotionsOfBothAddUp) {
    start(Settings());
    const Position from = client().pointer();
    Position sum;
    for (int step = 0; step < 200; ++step) {
        const Position first{step % 7 - 3, step % 5 - 2};
        const Position second{4 - step % 9, step % 3};
        trackball().move(first.x, first.y);
        mouse().move(second.x, second.y);
        sum = {sum.x + first.x + second.x, sum.y + first.y + second.y};
    }
    EXPECT_EQ(passSentinel(), (Position{from.x + sum.x, from.y + sum.y}));
}

TEST_F(TwoDeviceTest, OneUnpluggedWhileBothHoldTheButtonLeavesItHeldByTheOther) {
    start(Settings().map(3, "Copiar"));
    trackball().press(1);
    mouse().press(1);
    mouse().press(9);
    EXPECT_TRUE(client().waitForButton(Kind::buttonPress, 9));
    unplug("mouse");
    EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, 9));
    trackball().move(5, 5);
    passSentinel();
    EXPECT_EQ(client().count(Kind::buttonRelease, 1), 0);
    trackball().release(1);
    passSentinel();
    EXPECT_EQ(client().count(Kind::buttonPress, 1), 1);
    EXPECT_EQ(client().count(Kind::buttonRelease, 1), 1);
}

/// What the applications must see of two hands at work: a button is down while any device holds it.
class ExpectedButtons {
  public:
    void change(int device, int button, bool down) {
        const bool before = isDown(button);
        held[static_cast<std::size_t>(device)][static_cast<std::size_t>(button)] = down;
        if (isDown(button) != before) edges.emplace_back(button, down);
    }
    [[nodiscard]] bool holds(int device, int button) const {
        return held[static_cast<std::size_t>(device)][static_cast<std::size_t>(button)];
    }
    std::vector<std::pair<int, bool>> edges;

  private:
    [[nodiscard]] bool isDown(int button) const { return holds(0, button) || holds(1, button); }
    std::array<std::array<bool, 16>, 2> held{};
};

TEST_F(TwoDeviceTest, LongMixtureOfBothLosesNothingAndLeavesNothingHeld) {
    start(Settings().map(3, "Copiar"));
    std::mt19937 random(20'240);
    const std::array buttons{1, 2, 3, 9, 11, 12};
    const std::array<HardwareDevice*, 2> hands{&trackball(), &mouse()};
    ExpectedButtons expected;
    const Position from = client().pointer();
    Position to = from;
    for (int step = 0; step < 3000; ++step) {
        const int device = static_cast<int>(random() % 2);
        HardwareDevice& hand = *hands.at(static_cast<std::size_t>(device));
        if (random() % 3 == 0) {
            const Position by{static_cast<int>(random() % 5) - 2, static_cast<int>(random() % 5) - 2};
            hand.move(by.x, by.y);
            to = {to.x + by.x, to.y + by.y};
            continue;
        }
        const int button = buttons.at(random() % buttons.size());
        const bool down = !expected.holds(device, button);
        down ? hand.press(button) : hand.release(button);
        expected.change(device, button, down);
    }
    for (int device = 0; device < 2; ++device) {
        for (const int button : buttons) {
            if (!expected.holds(device, button)) continue;
            hands.at(static_cast<std::size_t>(device))->release(button);
            expected.change(device, button, false);
        }
    }
    EXPECT_EQ(passSentinel(), to);
    std::vector<std::pair<int, bool>> arrived;
    for (const ClientEvent& event : client().events()) {
        if (event.kind == Kind::motion || event.button == sentinelButton) continue;
        arrived.emplace_back(static_cast<int>(event.button), event.kind == Kind::buttonPress);
    }
    EXPECT_EQ(arrived, expected.edges);
    EXPECT_FALSE(client().isAnythingHeld());
}

}  // namespace
}  // namespace trelvan::desktop
