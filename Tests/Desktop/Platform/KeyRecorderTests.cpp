#include "Desktop/Harness/ChildProcess.hpp"
#include "Desktop/Platform/InputServerTest.hpp"
#include "Desktop/Platform/QtLoop.hpp"
#include "Platform/Linux/Poster/X11KeyMonitors.hpp"
#include "UI/Models/KeyRecorder.hpp"

#include <QKeyEvent>
#include <QRasterWindow>
#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

// The X library's macros come after Qt.
#include "Desktop/Harness/ClientWindow.hpp"
#include "Platform/Linux/X11/X11.hpp"

namespace trelvan::desktop {
namespace {

// X key codes.
constexpr int escape = 9;
constexpr int backspace = 22;
constexpr int keyY = 29;
constexpr int controlLeft = 37;
constexpr int keyK = 45;
constexpr int shiftLeft = 50;
constexpr int altLeft = 64;
constexpr int functionKey5 = 71;
constexpr int leftArrow = 113;

/// A window of the program.
class OwnWindow : public QRasterWindow {
  public:
    std::vector<int> pressed;

  protected:
    void keyPressEvent(QKeyEvent* event) override { pressed.push_back(event->key()); }
};

/// The recorder with keys of a real keyboard.
class KeyRecorderServerTest : public InputServerTest {
  protected:
    void SetUp() override {
        InputServerTest::SetUp();
        XSync(connection->display(), x11::no);
    }
    void TearDown() override { desktop().keyboard().releaseAll(); }

    void comeToFront() {
        window.show();
        window.requestActivate();
        ASSERT_TRUE(runUntil([&] { return window.isActive(); }));
    }
    void press(const std::vector<int>& keys) {
        for (const int key : keys) desktop().keyboard().keyDown(key);
        for (auto key = keys.rbegin(); key != keys.rend(); ++key) desktop().keyboard().keyUp(*key);
    }
    /// Records the combination; what the user reads of it.
    std::string record(const std::vector<int>& keys) {
        recorder.startRecording();
        press(keys);
        EXPECT_TRUE(runUntil([&] { return !recorder.isRecording; }));
        return recorder.shortcut.get() ? recorder.shortcut.get()->displayString : std::string("none");
    }
    void useLayout(const std::string& layout) {
        ChildProcess command(Launch{.arguments = {"/usr/bin/setxkbmap", layout},
                                    .environment = desktop().environment(),
                                    .directory = desktop().folder(),
                                    .output = desktop().folder() / "setxkbmap.output",
                                    .errors = {}});
        ASSERT_EQ(command.waitForEnd(timeout), 0);
    }

    QtMainQueue queue;
    Logger logger;
    KeyMonitors& monitors = backend.keyMonitors();
    OwnWindow window;
    ActiveRecorderID active;
    KeyRecorder recorder{{monitors, input, queue, logger}, active, "a-main", nullptr};
};

TEST_F(KeyRecorderServerTest, CombinationInTheOwnWindowIsRecordedAndReachesNothingElse) {
    comeToFront();
    EXPECT_EQ(record({controlLeft, altLeft, keyK}), "⌃⌥K");
    EXPECT_EQ(recorder.shortcut.get()->keyCode, 40);
    EXPECT_EQ(recorder.shortcut.get()->modifiersRawValue, flag::control | flag::option);
    press({leftArrow});
    ASSERT_TRUE(runUntil([&] { return !window.pressed.empty() && window.pressed.back() == Qt::Key_Left; }));
    EXPECT_EQ(std::count(window.pressed.begin(), window.pressed.end(), Qt::Key_K), 0);
}

TEST_F(KeyRecorderServerTest, EscapeKeepsAndBackspaceTakesAway) {
    comeToFront();
    EXPECT_EQ(record({shiftLeft, backspace}), "⇧⌫");
    EXPECT_EQ(record({escape}), "⇧⌫");
    EXPECT_EQ(record({backspace}), "none");
}

TEST_F(KeyRecorderServerTest, FunctionKeysAndArrowsHaveTheirNames) {
    comeToFront();
    EXPECT_EQ(record({functionKey5}), "F5");
    EXPECT_EQ(record({shiftLeft, leftArrow}), "⇧←");
}

TEST_F(KeyRecorderServerTest, KeyIsCalledAsInTheLayoutInUse) {
    comeToFront();
    useLayout("de");
    const auto german = record({controlLeft, keyY});
    useLayout("ru");
    const auto russian = record({controlLeft, keyK});
    useLayout("us");
    EXPECT_EQ(german, "⌃Z");
    EXPECT_EQ(russian, "⌃Л");
}

TEST_F(KeyRecorderServerTest, KeyOfAnotherApplicationIsRecordedAndReachesItToo) {
    ClientWindow other(desktop().displayName());
    EXPECT_EQ(record({controlLeft, keyK}), "⌃K");
    EXPECT_TRUE(other.waitForStroke({XK_k, ControlMask}));
}

}  // namespace
}  // namespace trelvan::desktop
