#include "Desktop/Harness/ChildProcess.hpp"
#include "Desktop/Platform/InputServerTest.hpp"
#include "Desktop/Platform/QtLoop.hpp"
#include "Platform/Linux/Poster/X11KeyMonitors.hpp"
#include "Platform/Linux/X11/X11.hpp"

#include <QKeyEvent>
#include <QRasterWindow>
#include <memory>
#include <vector>

namespace trelvan::desktop {
namespace {

// X key codes.
constexpr int controlLeft = 37;
constexpr int keyK = 45;
constexpr int shiftLeft = 50;
constexpr int altLeft = 64;
constexpr int capsLock = 66;
constexpr int pad1 = 87;
constexpr int leftArrow = 113;
/// A key that no macOS keyboard has.
constexpr int browser = 158;

constexpr auto keyDownMask = maskBit(EventType::keyDown);
constexpr auto keysMask = keyDownMask | maskBit(EventType::keyUp);
constexpr auto flagsMask = maskBit(EventType::flagsChanged);

/// A window of the program.
class OwnWindow : public QRasterWindow {
  public:
    int keysPressed = 0;

  protected:
    void keyPressEvent(QKeyEvent* /*event*/) override { ++keysPressed; }
};

class X11KeyMonitorsTest : public InputServerTest {
  protected:
    using Answer = KeyMonitors::LocalAnswer;

    void SetUp() override {
        InputServerTest::SetUp();
        // The server has been told what we want to see.
        XSync(connection->display(), x11::no);
    }
    void TearDown() override { desktop().keyboard().releaseAll(); }

    /// Brings a window of the program to the front.
    void comeToFront() {
        window.show();
        window.requestActivate();
        ASSERT_TRUE(runUntil([&] { return window.isActive(); }));
    }
    [[nodiscard]] KeyMonitors::GlobalHandler toGlobal() {
        return [this](const KeyMonitorEvent& event) { global.push_back(event); };
    }
    [[nodiscard]] KeyMonitors::LocalHandler toLocal(Answer answer = Answer::passOn) {
        return [this, answer](const KeyMonitorEvent& event) {
            local.push_back(event);
            return answer;
        };
    }
    void press(const std::vector<int>& keys) {
        for (const int key : keys) desktop().keyboard().keyDown(key);
        for (auto key = keys.rbegin(); key != keys.rend(); ++key) desktop().keyboard().keyUp(*key);
    }
    void useLayout(const std::string& layout) {
        ChildProcess command(Launch{.arguments = {"/usr/bin/setxkbmap", layout},
                                    .environment = desktop().environment(),
                                    .directory = desktop().folder(),
                                    .output = desktop().folder() / "setxkbmap.output",
                                    .errors = {}});
        ASSERT_EQ(command.waitForEnd(timeout), 0);
    }

    KeyMonitors& monitors = backend.keyMonitors();
    OwnWindow window;
    std::vector<KeyMonitorEvent> local;
    std::vector<KeyMonitorEvent> global;
};

TEST_F(X11KeyMonitorsTest, GlobalMonitorSeesKeysOfOtherProgramsWithTheirModifiers) {
    const auto monitor = monitors.addGlobal(keysMask, toGlobal());
    const auto other = monitors.addLocal(keysMask, toLocal());
    press({controlLeft, altLeft, keyK});
    ASSERT_TRUE(runUntil([&] { return global.size() >= 2; }));
    EXPECT_EQ(global[0].type, EventType::keyDown);
    EXPECT_EQ(global[0].keyCode, 40);
    EXPECT_EQ(global[0].flags, flag::control | flag::option);
    EXPECT_EQ(global[0].characters, "k");
    EXPECT_EQ(global[1].type, EventType::keyUp);
    EXPECT_EQ(global[1].keyCode, 40);
    EXPECT_EQ(global.size(), 2U) << "modifiers are no keys";
    EXPECT_TRUE(local.empty());
}

TEST_F(X11KeyMonitorsTest, LocalMonitorAloneSeesKeysOfTheOwnWindow) {
    const auto monitor = monitors.addLocal(keyDownMask, toLocal());
    const auto other = monitors.addGlobal(keyDownMask, toGlobal());
    comeToFront();
    press({shiftLeft, keyK});
    ASSERT_TRUE(runUntil([&] { return window.keysPressed >= 2; })) << "Shift and K reach the window";
    ASSERT_EQ(local.size(), 1U);
    EXPECT_EQ(local[0].keyCode, 40);
    EXPECT_EQ(local[0].flags, flag::shift);
    EXPECT_EQ(local[0].characters, "k");
    EXPECT_TRUE(global.empty());
}

TEST_F(X11KeyMonitorsTest, ConsumedKeyDoesNotReachTheWindow) {
    auto monitor = monitors.addLocal(keyDownMask, toLocal(Answer::consume));
    comeToFront();
    press({keyK});
    ASSERT_TRUE(runUntil([&] { return local.size() == 1; }));
    monitor.reset();
    press({leftArrow});
    ASSERT_TRUE(runUntil([&] { return window.keysPressed > 0; }));
    EXPECT_EQ(window.keysPressed, 1);
    EXPECT_EQ(local.size(), 1U);
}

TEST_F(X11KeyMonitorsTest, MonitorThatIsLetGoOfIsNotCalled) {
    auto monitor = monitors.addGlobal(keyDownMask, toGlobal());
    monitor.reset();
    std::vector<KeyMonitorEvent> later;
    const auto sentinel =
        monitors.addGlobal(keyDownMask, [&](const KeyMonitorEvent& event) { later.push_back(event); });
    press({keyK});
    ASSERT_TRUE(runUntil([&] { return later.size() == 1; }));
    EXPECT_TRUE(global.empty());
}

TEST_F(X11KeyMonitorsTest, KeyWithoutACodeIsNotTakenForAnother) {
    const auto monitor = monitors.addGlobal(keyDownMask, toGlobal());
    press({browser});
    press({keyK});
    ASSERT_TRUE(runUntil([&] { return !global.empty(); }));
    EXPECT_EQ(global.size(), 1U);
    EXPECT_EQ(global[0].keyCode, 40);
    const auto own = monitors.addLocal(keyDownMask, toLocal());
    comeToFront();
    press({browser});
    press({keyK});
    ASSERT_TRUE(runUntil([&] { return !local.empty(); }));
    EXPECT_EQ(local.size(), 1U);
    EXPECT_EQ(local[0].keyCode, 40);
}

TEST_F(X11KeyMonitorsTest, CharactersAreThoseOfTheLayoutAndOfThePadItsDigits) {
    const auto monitor = monitors.addGlobal(keyDownMask, toGlobal());
    useLayout("ru");
    press({shiftLeft, keyK});
    press({pad1});
    press({leftArrow});
    EXPECT_TRUE(runUntil([&] { return global.size() == 3; }));
    useLayout("us");
    std::vector<std::string> characters;
    for (const auto& event : global) characters.push_back(event.characters);
    EXPECT_EQ(characters, (std::vector<std::string>{"л", "1", ""}));
}

TEST_F(X11KeyMonitorsTest, EachChangeOfTheModifiersIsToldOnceAndInOnePlace) {
    const auto outside = monitors.addGlobal(flagsMask, toGlobal());
    const auto inside = monitors.addLocal(flagsMask, toLocal());
    press({capsLock});
    ASSERT_TRUE(runUntil([&] { return !global.empty(); }));
    comeToFront();
    press({capsLock});
    ASSERT_TRUE(runUntil([&] { return !local.empty(); }));
    press({shiftLeft});
    ASSERT_TRUE(runUntil([&] { return local.size() == 3; }));
    ASSERT_EQ(global.size(), 1U);
    EXPECT_EQ(global[0].keyCode, key::capsLock);
    EXPECT_EQ(global[0].flags, flag::alphaShift);
    EXPECT_EQ(local[0].flags, 0U);
    EXPECT_EQ(local[1].flags, flag::shift);
    EXPECT_EQ(local[2].flags, 0U);
}

}  // namespace
}  // namespace trelvan::desktop
