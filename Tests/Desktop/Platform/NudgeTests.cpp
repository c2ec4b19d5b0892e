#include "Core/KeepAwakeManager.hpp"
#include "Desktop/Harness/Monitors.hpp"
#include "Desktop/Platform/InputServerTest.hpp"
#include "Desktop/Platform/QtLoop.hpp"
#include "Platform/Linux/Session/X11Screens.hpp"
#include "Platform/Linux/X11/PointerLocation.hpp"
#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Simulated/SimulatedDesktop.hpp"

#include <QGuiApplication>
#include <QScreen>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace trelvan::desktop {
namespace {

using namespace std::chrono_literals;

/// Keep Awake with the real poster and the real idle times on a real server, and everything else simulated.
class NudgeTest : public InputServerTest {
  protected:
    void TearDown() override { setScreenSaver(0); }

    /// The server's own screen saver, after so many seconds; 0 for never.
    void setScreenSaver(int seconds) const {
        XSetScreenSaver(connection->display(), seconds, 0, DontPreferBlanking, AllowExposures);
        XResetScreenSaver(connection->display());
        XSync(connection->display(), x11::no);
    }
    [[nodiscard]] bool isScreenSaverOn() const {
        const std::unique_ptr<XScreenSaverInfo, decltype(&XFree)> info(XScreenSaverAllocInfo(), &XFree);
        XScreenSaverQueryInfo(connection->display(), connection->root(), info.get());
        return info->state == ScreenSaverOn;
    }
    [[nodiscard]] TopLeftPoint pointer() const {
        return origin.location(pointerLocation(connection->display(), connection->root()));
    }
    void keepAwake() {
        simulated.pointer = pointer();
        keepAwake(simulated.screens());
    }
    void keepAwake(Screens& onScreens) {
        manager.emplace(KeepAwakeManager::Ports{.input = simulated.inputState(),
                                                .poster = poster,
                                                .screens = onScreens,
                                                .defaults = simulated.userDefaults(),
                                                .clock = simulated.clock(),
                                                .mainQueue = simulated.mainQueue(),
                                                .timers = simulated.timers(),
                                                .inhibitor = simulated.idleInhibitor()});
        manager->idleThresholdMinutes = 1;
        manager->isEnabled = true;
    }

    SimulatedDesktop simulated;
    std::optional<KeepAwakeManager> manager;
};

TEST_F(NudgeTest, ScreenSaverStaysOffForANightOfNudges) {
    setScreenSaver(1);
    EXPECT_TRUE(runUntil([&] { return isScreenSaverOn(); })) << "without nudges it comes";
    setScreenSaver(1);
    keepAwake();
    bool cameOn = false;
    // Eight hours; the nudges are a minute apart, and so come about 100 times within the screen saver's
    // second.
    for (int minute = 0; minute < 480 && !cameOn; ++minute) {
        simulated.time.runFor(Seconds{60});
        cameOn = runUntil([&] { return isScreenSaverOn(); }, 10ms);
    }
    EXPECT_FALSE(cameOn);
}

TEST_F(NudgeTest, PointerMovesOnePointAndBack) {
    keepAwake();
    const Point before = pointer();
    simulated.time.runFor(Seconds{120});
    EXPECT_TRUE(runUntil([&] { return pointer() == Point{before.x + 1, before.y}; }));
    simulated.time.runFor(Seconds{0.12});
    EXPECT_TRUE(runUntil([&] { return pointer() == before; }));
    simulated.time.runFor(Seconds{59.88});
    EXPECT_TRUE(runUntil([&] { return pointer() == Point{before.x - 1, before.y}; }));
}

/// The main monitor does not begin where the X screen does.
class NudgeOnMonitorsTest : public NudgeTest {
  protected:
    void TearDown() override {
        deleteMonitors();
        EXPECT_TRUE(runUntil([&] { return QGuiApplication::screens().size() == 1; }));
        NudgeTest::TearDown();
    }

    /// The toolkit takes monitors of the same name for the same, so they get new ones each time.
    void arrange(const PixelRect& main, const PixelRect& other) {
        deleteMonitors();
        const std::string number = std::to_string(++arranged);
        for (const auto& [name, at, isMain] :
             {std::tuple{"main-" + number, main, true}, std::tuple{"other-" + number, other, false}}) {
            setMonitor(connection->display(), name.c_str(), {at.x, at.y, at.width, at.height}, isMain);
            names.push_back(name);
        }
    }
    static std::string toolkitsScreens() {
        std::string text;
        for (const QScreen* screen : QGuiApplication::screens()) {
            const QRect at = screen->geometry();
            text += screen->name().toStdString() +
                    (screen == QGuiApplication::primaryScreen() ? " (main) " : " ") + std::to_string(at.x()) +
                    "," + std::to_string(at.y()) + " " + std::to_string(at.width()) + "x" +
                    std::to_string(at.height()) + "\n";
        }
        return text;
    }
    void deleteMonitors() {
        for (const auto& name : names) deleteMonitor(connection->display(), name.c_str());
        names.clear();
    }
    void place(Pixel at) const {
        XWarpPointer(connection->display(), x11::none, connection->root(), 0, 0, 0, 0, at.x, at.y);
        XSync(connection->display(), x11::no);
    }
    [[nodiscard]] Pixel pixel() const { return pointerLocation(connection->display(), connection->root()); }

    X11Screens screens{pump, backend.pointer(), origin};

  private:
    std::vector<std::string> names;
    int arranged = 0;
};

TEST_F(NudgeOnMonitorsTest, PointerIsNudgedByAPointAndComesBackToItsPixel) {
    struct Arrangement {
        PixelRect main;
        PixelRect other;
    };
    // Below the other one; right of it, aligned at the bottom; left of it, aligned at the bottom.
    const Arrangement arrangements[] = {{{37, 450, 1366, 450}, {0, 0, 1440, 450}},
                                        {{720, 200, 720, 700}, {0, 0, 720, 900}},
                                        {{0, 333, 701, 567}, {701, 0, 739, 900}}};
    for (const auto& arrangement : arrangements) {
        const PixelRect& main = arrangement.main;
        const PixelRect& other = arrangement.other;
        SCOPED_TRACE(testing::Message() << "main at " << main.x << ", " << main.y);
        arrange(main, other);
        const BottomLeftRect expected = screenFrames(std::vector{main}).front();
        ASSERT_TRUE(runUntil([&] {
            return origin.pixel({0, 0}) == Pixel{main.x, main.y} && screens.frames().front() == expected;
        })) << toolkitsScreens();

        const Pixel inMain{main.x + 211, main.y + 103};
        place(inMain);
        ASSERT_EQ(screens.eventLocation(screens.pointerLocation()).x, 211);
        // From here on the user is idle, so that the first nudge comes after two minutes and not at once.
        simulated.send({.type = EventType::mouseMoved});
        keepAwake(screens);
        simulated.time.runFor(Seconds{120});
        EXPECT_TRUE(runUntil([&] { return pixel() == Pixel{inMain.x + 1, inMain.y}; }));
        simulated.time.runFor(Seconds{0.12});
        EXPECT_TRUE(runUntil([&] { return pixel() == inMain; }));

        const Pixel inOther{other.x + 150, other.y + 77};
        place(inOther);
        for (int nudge = 0; nudge < 10; ++nudge) {
            simulated.time.runFor(Seconds{60});
            EXPECT_TRUE(runUntil([&] { return pixel() == inOther; }));
        }
        manager.reset();
    }
}

TEST_F(NudgeTest, NudgeIsNoActivityOfTheUserAndAHandIs) {
    // Whatever came before has been seen when a movement of the hand has.
    desktop().trackball().move(3, 0);
    EXPECT_TRUE(runUntil([&] { return input.secondsSinceLast(EventType::mouseMoved) < 0.1; }));
    EXPECT_TRUE(runUntil([&] { return input.secondsSinceLast(EventType::mouseMoved) > 0.6; }));
    const Point from = pointer();
    const auto nudge = poster.makeMouse(EventType::mouseMoved, 0, {from.x + 1, from.y});
    ASSERT_TRUE(nudge);
    poster.post(*nudge, TapLocation::hid);
    EXPECT_TRUE(runUntil([&] { return pointer().x == from.x + 1; }));
    // A key of the hand comes after it on the same pipeline.
    desktop().keyboard().keyStroke(50);
    EXPECT_TRUE(runUntil([&] { return input.secondsSinceLast(EventType::keyDown) < 0.1; }));
    EXPECT_GT(input.secondsSinceLast(EventType::mouseMoved), 0.6);
    desktop().trackball().move(3, 0);
    EXPECT_TRUE(runUntil([&] { return input.secondsSinceLast(EventType::mouseMoved) < 0.1; }));
}

TEST_F(NudgeTest, TakingTheDevicesIsNoActivityOfTheUser) {
    desktop().trackball().move(3, 0);
    EXPECT_TRUE(runUntil([&] { return input.secondsSinceLast(EventType::mouseMoved) < 0.1; }));
    EXPECT_TRUE(runUntil([&] { return input.secondsSinceLast(EventType::mouseMoved) > 0.6; }));
    ASSERT_TRUE(tap.create(
        maskBit(EventType::otherMouseDown), [](void*, TapEvent&) { return TapAnswer::deliver; }, nullptr));
    tap.enable(true);
    // A key of the hand comes after what taking them sent.
    desktop().keyboard().keyStroke(50);
    EXPECT_TRUE(runUntil([&] { return input.secondsSinceLast(EventType::keyDown) < 0.1; }));
    EXPECT_GT(input.secondsSinceLast(EventType::mouseMoved), 0.6);
    desktop().trackball().move(3, 0);
    EXPECT_TRUE(runUntil([&] { return input.secondsSinceLast(EventType::mouseMoved) < 0.1; }));
    tap.remove();
}

TEST_F(NudgeTest, EachKindOfEventHasItsOwnIdleTime) {
    desktop().trackball().click(1);
    desktop().keyboard().keyStroke(50);
    EXPECT_TRUE(runUntil([&] {
        return input.secondsSinceLast(EventType::leftMouseDown) < 0.2 &&
               input.secondsSinceLast(EventType::keyDown) < 0.2;
    }));
    EXPECT_TRUE(runUntil([&] { return input.secondsSinceLast(EventType::leftMouseDown) > 0.4; }));
    desktop().keyboard().keyStroke(50);
    EXPECT_TRUE(runUntil([&] { return input.secondsSinceLast(EventType::keyDown) < 0.2; }));
    EXPECT_GT(input.secondsSinceLast(EventType::leftMouseDown), 0.4);
    // Never seen since the start: as long as there was no input of any kind before it.
    EXPECT_GE(input.secondsSinceLast(EventType::rightMouseDown),
              input.secondsSinceLast(EventType::leftMouseDown));
}

}  // namespace
}  // namespace trelvan::desktop
