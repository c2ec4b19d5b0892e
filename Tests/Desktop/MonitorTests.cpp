#include "Desktop/DesktopTest.hpp"

#include <X11/extensions/Xrandr.h>
#include <X11/keysym.h>

/// Two monitors on the one screen of the server, as every desktop of today has them.
namespace trelvan::desktop {
namespace {

constexpr int extra = xButton(3);
constexpr int halfWidth = VirtualDesktop::width / 2;
constexpr int halfHeight = VirtualDesktop::height / 2;
const KeyStroke copy{XK_c, ControlMask};

class MonitorTest : public DesktopTest {
  protected:
    void SetUp() override {
        DesktopTest::SetUp();
        int major = 1;
        int minor = 5;
        ASSERT_NE(XRRQueryVersion(display(), &major, &minor), 0);
        ASSERT_GE(major * 100 + minor, 105) << "the server knows no monitors";
    }
    void TearDown() override {
        for (const char* name : {"first", "second"}) {
            XRRDeleteMonitor(display(), client().connection().root(), client().connection().atom(name));
            XSync(display(), False);
        }
        DesktopTest::TearDown();
    }

    Display* display() { return client().connection().get(); }

    /// A part of the server's screen, besides its one output.
    void setMonitor(const char* name, Position at, int width, int height) {
        XRRMonitorInfo* monitor = XRRAllocateMonitor(display(), 0);
        monitor->name = client().connection().atom(name);
        monitor->x = at.x;
        monitor->y = at.y;
        monitor->width = width;
        monitor->height = height;
        monitor->mwidth = width / 4;
        monitor->mheight = height / 4;
        monitor->primary = at == Position{0, 0} ? True : False;
        XRRSetMonitor(display(), client().connection().root(), monitor);
        XRRFreeMonitors(monitor);
        XSync(display(), False);
    }
    void setSideBySide() {
        setMonitor("first", {0, 0}, halfWidth, VirtualDesktop::height);
        setMonitor("second", {halfWidth, 0}, halfWidth, VirtualDesktop::height);
    }
    void setStacked() {
        setMonitor("first", {0, 0}, VirtualDesktop::width, halfHeight);
        setMonitor("second", {0, halfHeight}, VirtualDesktop::width, halfHeight);
    }
};

TEST_F(MonitorTest, PointerCrossesFromOneToTheOtherAndBackWithoutLoss) {
    setSideBySide();
    for (const bool advanced : {true, false}) {
        start(Settings()
                  .set("trackball_mouse_speed", 1.3)
                  .set("trackball_mouse_acceleration", 0.0)
                  .set("trackball_advanced_mouse_speed_enabled", advanced));
        // So fast a movement takes the full speed: 30 become 39.
        client().warpPointer({halfWidth - 50, 400});
        trackball().move(30, 0);
        trackball().move(30, 0);
        EXPECT_EQ(passSentinel(), (Position{halfWidth + 28, 400}));
        trackball().move(-30, 0);
        trackball().move(-30, 0);
        EXPECT_EQ(passSentinel(), (Position{halfWidth - 50, 400}));
    }
}

TEST_F(MonitorTest, LowerEdgeOfEachMonitorLeavesPressesAlone) {
    setStacked();
    start(Settings().map(3, "Copiar"));
    const auto clickAt = [&](int height) {
        client().warpPointer({VirtualDesktop::width / 2, height});
        trackball().click(extra);
        passSentinel();
    };
    clickAt(halfHeight - 20);
    clickAt(halfHeight + 80);
    clickAt(halfHeight - 80);
    EXPECT_TRUE(client().waitFor([&](const auto&) { return client().strokes().size() == 2; }));
    EXPECT_EQ(client().strokes(), (std::vector<KeyStroke>{copy, copy}));
    EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{extra});
}

TEST_F(MonitorTest, MonitorsThatChangeWhileTheProgramRunsAreFollowed) {
    start(Settings().map(3, "Copiar"));
    const Position edge{VirtualDesktop::width / 2, halfHeight - 20};
    client().warpPointer(edge);
    trackball().click(extra);
    EXPECT_TRUE(client().waitForStroke(copy));
    setStacked();
    const auto isLeftAlone = [&] {
        trackball().click(extra);
        passSentinel();
        return client().count(Kind::buttonRelease, extra) > 0;
    };
    EXPECT_TRUE(waitUntil(isLeftAlone));
}

}  // namespace
}  // namespace trelvan::desktop
