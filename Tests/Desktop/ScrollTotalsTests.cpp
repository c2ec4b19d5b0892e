#include "Desktop/DesktopTest.hpp"

#include <cmath>
#include <ostream>
#include <random>

/// Long strokes of a wheel that reports parts of a notch: what arrives is what was turned.
namespace trelvan::desktop {
namespace {

constexpr int notch = HardwareDevice::partsOfANotch;

struct Speeds {
    const char* name;
    double vertical = 1;
    double horizontal = 1;
    bool swapped = false;
};
void PrintTo(const Speeds& speeds, std::ostream* out) {
    *out << speeds.name;
}

/// Worked out in whole parts of a notch, so that nothing can be rounded away here.
class ExpectedWheel {
  public:
    explicit ExpectedWheel(const Speeds& wheelSpeeds) : speeds(wheelSpeeds) {}

    void turn(int up, int left) {
        const int sign = speeds.swapped ? -1 : 1;
        click(6, scaled(sign * whole(restLeft, left), speeds.horizontal));
        click(4, scaled(sign * whole(restUp, up), speeds.vertical));
    }
    /// What is missing to the next whole notch.
    [[nodiscard]] int missingUp() const { return -restUp; }
    [[nodiscard]] int missingLeft() const { return -restLeft; }

    std::vector<unsigned> buttons;

  private:
    static int whole(int& rest, int parts) {
        rest += parts;
        const int lines = rest / notch;
        rest -= lines * notch;
        return lines;
    }
    static int scaled(int lines, double speed) {
        const auto result = static_cast<int>(std::round(lines * speed));
        if (result == 0 && lines != 0) return lines > 0 ? 1 : -1;
        return result;
    }
    void click(unsigned positive, int lines) {
        buttons.insert(buttons.end(), static_cast<std::size_t>(std::abs(lines)),
                       lines > 0 ? positive : positive + 1);
    }

    Speeds speeds;
    int restUp = 0;
    int restLeft = 0;
};

class ScrollTotalsTest : public DesktopTest, public testing::WithParamInterface<Speeds> {
  protected:
    void start() {
        DesktopTest::start(Settings()
                               .set("trackball_scroll_speed_vertical", GetParam().vertical)
                               .set("trackball_scroll_speed_horizontal", GetParam().horizontal)
                               .set("trackball_horizontal_scroll_enabled", GetParam().horizontal != 1)
                               .set("trackball_swap_scroll_direction", GetParam().swapped));
    }
    void turn(int up, int left) {
        if (up == 0 && left == 0) return;
        // Of more than any hand sends and the program is behind with, turns are left out.
        constexpr int atATime = 1'000;
        if (++turns % atATime == 0) passSentinel();
        trackball().scrollParts(up, left);
        expected.turn(up, left);
        sentUp += up;
        sentLeft += left;
    }
    /// Brings the wheel to whole notches, as it was before, and compares all of the stroke.
    void finish() {
        turn(expected.missingUp(), expected.missingLeft());
        passSentinel();
        const auto arrived = buttonsArrived();
        EXPECT_EQ(arrived.size(), expected.buttons.size());
        EXPECT_TRUE(arrived == expected.buttons) << "the clicks differ from the expected ones";
        const Turn total = client().scrolled();
        if (GetParam().vertical == 1) {
            EXPECT_EQ(sign() * total.vertical * notch, sentUp);
        }
        if (GetParam().horizontal == 1) {
            EXPECT_EQ(sign() * total.horizontal * notch, sentLeft);
        }
    }
    [[nodiscard]] static double sign() { return GetParam().swapped ? -1 : 1; }

    ExpectedWheel expected{GetParam()};
    long sentUp = 0;
    long sentLeft = 0;
    int turns = 0;
};

TEST_P(ScrollTotalsTest, TenThousandEighthsArriveAsTheirSum) {
    start();
    for (int step = 0; step < 10'000; ++step) turn(step < 7'000 ? 15 : -15, 0);
    finish();
}

TEST_P(ScrollTotalsTest, TenThousandUnevenFractionsOfBothAxesArriveAsTheirSum) {
    start();
    std::mt19937 random(7);
    std::uniform_int_distribution<int> parts(1, 2 * notch);
    for (int step = 0; step < 10'000; ++step) {
        // Strokes of some length, as a finger makes them, and the other way at some part of a notch.
        const int direction = step / 37 % 2 == 0 ? 1 : -1;
        const int up = step % 3 == 2 ? 0 : direction * parts(random) / (step % 5 + 1);
        const int left = step % 3 == 0 ? 0 : -direction * parts(random) / (step % 7 + 1);
        turn(up, left);
    }
    finish();
}

TEST_P(ScrollTotalsTest, SmallestFractionsThereAndBackScrollNothingTwice) {
    start();
    for (int round = 0; round < 40; ++round) {
        for (int step = 0; step < 119; ++step) turn(1, -1);
        for (int step = 0; step < 119; ++step) turn(-1, 1);
    }
    EXPECT_EQ(expected.buttons, std::vector<unsigned>{});
    for (int step = 0; step < 2 * notch; ++step) turn(1, -1);
    finish();
}

INSTANTIATE_TEST_SUITE_P(Speeds, ScrollTotalsTest,
                         testing::Values(Speeds{"Plain"}, Speeds{"Half", 0.5, 0.5},
                                         Speeds{"Double", 2.0, 2.0}, Speeds{"Swapped", 1, 1, true}),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace
}  // namespace trelvan::desktop
