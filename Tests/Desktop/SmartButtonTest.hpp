#pragma once

#include "Desktop/DesktopTest.hpp"

#include <X11/keysym.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <string>
#include <vector>

/// What the tests of the radial menu share.
namespace trelvan::desktop {

inline constexpr int opener = 3;
inline constexpr int radius = 138;
inline constexpr int margin = 248;
inline constexpr unsigned long command = 0x100000;
inline constexpr unsigned long control = 0x40000;
inline constexpr int keyC = 8;
inline constexpr int keyV = 9;

/// A test with the radial menu on the trackball's opener.
class SmartButtonTest : public DesktopTest {
  protected:
    /// An executable that leaves a file behind when it runs.
    std::string program(const std::string& name) {
        std::filesystem::remove(witness(name));
        const auto path = desktop().folder() / "home" / name;
        writeFile(path, "#!/bin/sh\ntouch '" + witness(name) + "'\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    std::string witness(const std::string& name) { return desktop().folder() / "home" / (name + ".ran"); }
    bool hasRun(const std::string& name) {
        return waitUntil([&] { return std::filesystem::exists(witness(name)); });
    }

    /// The overlay: the only window of that size that no window manager knows. Windows may go while they are
    /// looked at.
    [[nodiscard]] Window overlay(int x = 0, int width = VirtualDesktop::width) {
        Display* display = client().connection().get();
        const auto former = XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
        Window root = 0;
        Window parent = 0;
        Window* children = nullptr;
        unsigned count = 0;
        Window found = 0;
        XQueryTree(display, client().connection().root(), &root, &parent, &children, &count);
        for (unsigned index = 0; index < count; ++index) {
            XWindowAttributes attributes;
            if (XGetWindowAttributes(display, children[index], &attributes) == 0) continue;
            if (attributes.override_redirect != 0 && attributes.map_state == IsViewable &&
                attributes.x == x && attributes.width == width && attributes.height == VirtualDesktop::height)
                found = children[index];
        }
        if (children != nullptr) XFree(children);
        XSync(display, 0);
        XSetErrorHandler(former);
        return found;
    }
    bool isOpen() {
        return waitUntil([&] { return overlay() != 0; });
    }
    bool isClosed() {
        return waitUntil([&] { return overlay() == 0; });
    }

    /// Whether some client has the key with these modifiers and no others for itself.
    bool isTaken(KeySym key, unsigned modifiers = 0) {
        const XConnection other(desktop().displayName());
        static bool isRefused;
        isRefused = false;
        const auto former = XSetErrorHandler([](Display*, XErrorEvent* error) {
            isRefused = isRefused || error->error_code == BadAccess;
            return 0;
        });
        // Ends with the connection.
        XGrabKey(other.get(), client().keyCode(key), modifiers, other.root(), False, GrabModeAsync,
                 GrabModeAsync);
        XSync(other.get(), False);
        XSetErrorHandler(former);
        return isRefused;
    }
    /// Opens the menu with the pointer there, and waits until it has its keys; where its centre is.
    Position openAt(Position place) {
        client().warpPointer(place);
        trackball().click(xButton(opener));
        EXPECT_TRUE(isOpen());
        // To ask is to have the key for a moment, so what is asked is none of those that tests press, and one
        // of the two will do.
        EXPECT_TRUE(waitUntil([&] { return isTaken(XK_KP_Up, LockMask) || isTaken(XK_KP_Down, LockMask); }));
        return {std::clamp(place.x, margin, VirtualDesktop::width - margin),
                std::clamp(place.y, margin, VirtualDesktop::height - margin)};
    }
    /// The middle of an entry of so many.
    static Position entry(Position centre, int index, int count) {
        const double angle = 2 * std::numbers::pi * index / count - std::numbers::pi / 2;
        return {centre.x + static_cast<int>(std::lround(radius * std::cos(angle))),
                centre.y + static_cast<int>(std::lround(radius * std::sin(angle)))};
    }
    /// Moves the trackball there and clicks.
    void clickAt(Position place) {
        const Position from = client().pointer();
        trackball().move(place.x - from.x, place.y - from.y);
        EXPECT_TRUE(waitUntil([&] { return client().pointer() == place; }));
        trackball().click(1);
    }
    [[nodiscard]] Window focus() {
        Window window = 0;
        int revert = 0;
        XGetInputFocus(client().connection().get(), &window, &revert);
        return window;
    }
    /// What is typed reaches the application again.
    void expectKeyboardFree() {
        client().forget();
        desktop().keyboard().keyStroke(client().keyCode(XK_a));
        EXPECT_TRUE(client().waitForStroke({XK_a, 0}));
    }

    Settings twoShortcuts() {
        return Settings()
            .map(opener, "Smart Button")
            .menuShortcut("Copy", keyC, control)
            .menuShortcut("Paste", keyV, control);
    }
};

}  // namespace trelvan::desktop
