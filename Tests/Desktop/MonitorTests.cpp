#include "Desktop/DesktopTest.hpp"
#include "Desktop/Harness/Monitors.hpp"

#include <X11/Xatom.h>
#include <X11/extensions/Xrandr.h>
#include <X11/keysym.h>

#include <iostream>
#include <string>
#include <utility>
#include <vector>

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
        for (const char* name : {"first", "second"}) deleteMonitor(display(), name);
        DesktopTest::TearDown();
    }

    Display* display() { return client().connection().get(); }

    void setMonitor(const char* name, const MonitorPlace& place) {
        desktop::setMonitor(display(), name, place, place.x == 0 && place.y == 0);
    }
    void setSideBySide() {
        setMonitor("first", {0, 0, halfWidth, VirtualDesktop::height});
        setMonitor("second", {halfWidth, 0, halfWidth, VirtualDesktop::height});
    }
    void setStacked() {
        setMonitor("first", {0, 0, VirtualDesktop::width, halfHeight});
        setMonitor("second", {0, halfHeight, VirtualDesktop::width, halfHeight});
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

/// Where the main monitor begins, how large it is, and the same of the other one.
struct Arrangement {
    const char* name;
    MonitorPlace main;
    MonitorPlace other;
};

constexpr Arrangement arrangements[] = {
    {"laptop below a monitor", {37, 450, 1366, 450}, {0, 0, 1440, 450}},
    {"aligned at the bottom, the main one right", {720, 200, 720, 700}, {0, 0, 720, 900}},
    {"aligned at the bottom, the main one left", {0, 333, 701, 567}, {701, 0, 739, 900}},
    {"main one above", {0, 0, 1440, 600}, {37, 600, 1366, 300}},
};

class ArrangedMonitorTest : public MonitorTest {
  protected:
    void arrange(const Arrangement& arrangement) {
        if (std::exchange(isArranged, true)) {
            for (const char* name : {"first", "second"}) deleteMonitor(display(), name);
        }
        desktop::setMonitor(display(), "first", arrangement.main, true);
        desktop::setMonitor(display(), "second", arrangement.other, false);
    }

    /// Presses the button that clicks, at each place; where the clicks arrived.
    std::vector<Position> clicksAt(const std::vector<Position>& places) {
        std::vector<Position> arrived;
        for (const Position& place : places) {
            client().warpPointer(place);
            client().forget();
            trackball().click(extra);
            if (!client().waitForButton(Kind::buttonRelease, 1)) {
                std::cout << describe(client().events()) << program().output();
                return arrived;
            }
            for (const ClientEvent& event : client().events()) {
                if (event.kind == Kind::buttonPress && event.button == 1)
                    arrived.push_back({event.x, event.y});
            }
            EXPECT_EQ(client().pointer(), place);
        }
        return arrived;
    }

  private:
    bool isArranged = false;
};

TEST_F(ArrangedMonitorTest, ClicksArriveAtTheirPixelInEveryArrangementAndAtEveryScale) {
    const Position middle = client().middle();
    // Odd and even pixels on both sides of where the monitors meet, and on none of their lower edges.
    std::vector<Position> places;
    for (const int dx : {-101, -52, -3, 2, 53, 104}) {
        for (const int dy : {-61, -22, 31, 64}) places.push_back({middle.x + dx, middle.y + dy});
    }
    for (const auto& arrangement : arrangements) {
        arrange(arrangement);
        for (const char* scale : {"1", "1.25", "1.5", "2"}) {
            SCOPED_TRACE(std::string(arrangement.name) + " at " + scale);
            start(Settings().map(3, "Click Izquierdo"), {{"QT_SCALE_FACTOR", scale}});
            ASSERT_EQ(clicksAt(places), places);
        }
    }
}

TEST_F(ArrangedMonitorTest, ClicksArriveAtTheirPixelWhereMonitorsAreScaledDifferently) {
    const Position middle = client().middle();
    const std::vector<Position> places{{middle.x - 103, middle.y - 41},
                                       {middle.x + 52, middle.y - 22},
                                       {middle.x - 57, middle.y + 33},
                                       {middle.x + 101, middle.y + 64}};
    for (const auto& arrangement : arrangements) {
        arrange(arrangement);
        for (const char* factors : {"1.5;1", "1;2", "1.25;1.75"}) {
            SCOPED_TRACE(std::string(arrangement.name) + " with " + factors);
            start(Settings().map(3, "Click Izquierdo"), {{"QT_SCREEN_SCALE_FACTORS", factors}});
            ASSERT_EQ(clicksAt(places), places);
        }
    }
}

TEST_F(ArrangedMonitorTest, ClicksArriveAtTheirPixelAtTheDesktopsOwnScale) {
    const Position middle = client().middle();
    const std::vector<Position> places{{middle.x - 103, middle.y - 41}, {middle.x + 52, middle.y + 33}};
    const Window root = client().connection().root();
    for (const auto& arrangement : arrangements) {
        arrange(arrangement);
        for (const std::string dpi : {"120", "144", "192"}) {
            SCOPED_TRACE(std::string(arrangement.name) + " at " + dpi + " dpi");
            const std::string resources = "Xft.dpi:\t" + dpi + "\n";
            XChangeProperty(display(), root, XA_RESOURCE_MANAGER, XA_STRING, 8, PropModeReplace,
                            reinterpret_cast<const unsigned char*>(resources.data()),
                            static_cast<int>(resources.size()));
            XSync(display(), False);
            start(Settings().map(3, "Click Izquierdo"));
            ASSERT_EQ(clicksAt(places), places);
        }
    }
    XDeleteProperty(display(), root, XA_RESOURCE_MANAGER);
}

TEST_F(ArrangedMonitorTest, ClicksFollowAMainMonitorThatChangesPlace) {
    start(Settings().map(3, "Click Izquierdo"));
    const Position middle = client().middle();
    const std::vector<Position> places{{middle.x - 40, middle.y - 30}, {middle.x + 41, middle.y + 31}};
    ASSERT_EQ(clicksAt(places), places);
    for (const auto& arrangement : arrangements) {
        arrange(arrangement);
        SCOPED_TRACE(arrangement.name);
        ASSERT_EQ(clicksAt(places), places);
    }
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
