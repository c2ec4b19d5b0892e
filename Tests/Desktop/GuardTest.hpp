#pragma once

#include "Desktop/DesktopTest.hpp"

#include <X11/keysym.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <optional>
#include <span>
#include <utility>
#include <vector>

/// The program hangs, is stopped or is killed at the worst moment: the pointer works and nothing stays held.
namespace trelvan::desktop {

class GuardTest : public DesktopTest {
  protected:
    static constexpr int extra = xButton(3);
    static constexpr int secondExtra = xButton(4);
    /// More than the server's XTEST pointer has.
    static constexpr int highButton = 12;
    static constexpr KeyStroke copy{XK_c, ControlMask};
    static constexpr auto takenAgain = "EventTap reactivado tras deshabilitación del sistema";

    /// A shortcut that takes some fifty milliseconds: all four modifiers, on both sides.
    static Settings longShortcut() {
        return Settings().map(
            3, "Atajo Personalizado",
            {{"shortcut", {{"keyCode", 40}, {"modifiersRawValue", 0x1E0000}, {"displayString", "⌃⌥⇧⌘K"}}}});
    }

    /// Stops the program while it types; what it had pressed by then is down.
    void stopInTheMiddleOfAShortcut() {
        const auto isHeldWhileStopped = [&] {
            client().forget();
            trackball().click(extra);
            const bool begun = client().waitFor([](const auto& all) { return !all.empty(); });
            program().signal(SIGSTOP);
            if (begun && client().isAnythingHeld()) return true;
            program().signal(SIGCONT);
            return false;
        };
        ASSERT_TRUE(waitUntil(isHeldWhileStopped));
    }

    /// Moves until the pointer follows; how long that took.
    std::chrono::milliseconds moveUntilFree() {
        const auto begin = std::chrono::steady_clock::now();
        const Position from = client().pointer();
        EXPECT_TRUE(waitUntil([&] {
            trackball().move(1, 0);
            return client().pointer() != from;
        })) << "the pointer does not follow the trackball";
        return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                     begin);
    }

    /// Both devices reach the application as if the program had never been there.
    void expectDevicesFree() {
        client().forget();
        trackball().click(extra);
        mouse().click(extra);
        EXPECT_TRUE(client().waitForButton(Kind::buttonRelease, extra, 2));
        EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{});
    }

    void expectNothingHeld() {
        EXPECT_TRUE(waitUntil([&] { return !client().isAnythingHeld(); }));
    }

    void expectServed(int button = extra) {
        client().forget();
        trackball().click(button);
        EXPECT_TRUE(client().waitForStroke(copy));
        passSentinel();
        EXPECT_EQ(client().strokes(), std::vector<KeyStroke>{copy});
        EXPECT_EQ(buttonsArrived(), std::vector<unsigned>{});
    }

    /// The files in which programs keep what they hold.
    int pressedStates() {
        int count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(desktop().folder() / "run")) {
            count += entry.path().filename().string().starts_with("trelvan-held") ? 1 : 0;
        }
        return count;
    }

    /// The program's windows of one point outside the screen, on it or not.
    std::vector<std::pair<Window, bool>> grabWindows() {
        Display* display = client().connection().get();
        std::vector<std::pair<Window, bool>> found;
        Window root = None;
        Window parent = None;
        Window* windows = nullptr;
        unsigned count = 0;
        // Windows may go while they are looked at.
        const auto former = XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
        XQueryTree(display, client().connection().root(), &root, &parent, &windows, &count);
        for (const Window window : std::span(windows, count)) {
            XWindowAttributes attributes{};
            if (XGetWindowAttributes(display, window, &attributes) == 0) continue;
            if (attributes.c_class != InputOnly || attributes.x != -1 || attributes.width != 1) continue;
            // The tap's alone asks for events; others of this size are owners of selections and probes.
            if ((attributes.all_event_masks & StructureNotifyMask) == 0) continue;
            found.emplace_back(window, attributes.map_state == IsViewable);
        }
        if (windows != nullptr) XFree(windows);
        XSetErrorHandler(former);
        return found;
    }
    void destroyGrabWindow() {
        const auto windows = grabWindows();
        ASSERT_EQ(windows.size(), 1U);
        XDestroyWindow(client().connection().get(), windows.front().first);
        XSync(client().connection().get(), False);
    }
    /// Whether the program still holds the devices; to ask moves nothing.
    bool holdsDevices() {
        const auto windows = grabWindows();
        return std::ranges::any_of(windows, [](const auto& window) { return window.second; });
    }
    bool losesDevicesSoon() {
        return waitUntil([&] { return !holdsDevices(); }, std::chrono::milliseconds{3000});
    }
    static void pause(std::chrono::milliseconds length) {
        waitUntil([] { return false; }, length);
    }
    /// Another guard than this one.
    pid_t guardAfter(pid_t former) {
        EXPECT_TRUE(waitUntil([&] {
            const auto present = program().guard();
            return present.has_value() && *present != former;
        })) << "the program has no new guard";
        return program().guard().value_or(0);
    }

    pid_t guard() {
        const auto process = program().guard();
        EXPECT_TRUE(process.has_value()) << "the program has no guard";
        return process.value_or(0);
    }

    static bool isAlive(pid_t process) { return ::kill(process, 0) == 0; }
};

}  // namespace trelvan::desktop
