// How long the radial menu takes from the press of the trackball's button to the first frame on the screen,
// seen from outside: the first pixel of the screen that is no longer what it was.
//
//   menu_benchmark [ROUNDS]

#include "Desktop/Harness/ClientWindow.hpp"
#include "Desktop/Harness/TrelvanProcess.hpp"
#include "Desktop/Harness/Xlib.hpp"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

using namespace trelvan::desktop;
using Clock = std::chrono::steady_clock;

constexpr int opener = 3;

/// The colour of a place that the menu darkens.
unsigned long pixel(ClientWindow& client) {
    constexpr int x = 30;
    constexpr int y = 30;
    XImage* image =
        XGetImage(client.connection().get(), client.connection().root(), x, y, 1, 1, AllPlanes, ZPixmap);
    const unsigned long color = image != nullptr ? XGetPixel(image, 0, 0) : 0;
    if (image != nullptr) XDestroyImage(image);
    return color;
}

}  // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 60;
    if (rounds <= 0) {
        std::fputs("menu_benchmark [ROUNDS]\n", stderr);
        return 2;
    }
    VirtualDesktop desktop;
    ClientWindow client(desktop.displayName());
    // A picture that is not black, which no shade would change.
    XSetWindowBackground(client.connection().get(), client.connection().root(), 0x406080);
    XClearWindow(client.connection().get(), client.connection().root());
    Settings settings = Settings().map(opener, "Smart Button");
    for (const char* program : {"xterm", "xev", "xclock", "xeyes"})
        settings.menuApplication(program, std::string("/usr/bin/") + program);
    for (int key = 0; key < 4; ++key) settings.menuShortcut("Shortcut", key, 0x40000);
    TrelvanProcess program(desktop, settings);
    client.warpPointer(client.middle());
    const unsigned long before = pixel(client);

    std::vector<double> milliseconds;
    for (int round = 0; round < rounds; ++round) {
        const auto start = Clock::now();
        desktop.trackball().press(xButton(opener));
        if (!waitUntil([&] { return pixel(client) != before; })) {
            std::fputs("the menu did not come\n", stderr);
            return 1;
        }
        milliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count());
        desktop.trackball().release(xButton(opener));
        desktop.trackball().click(xButton(opener));
        if (!waitUntil([&] { return pixel(client) == before; })) {
            std::fputs("the menu does not go\n", stderr);
            return 1;
        }
        // No faster than a hand: what fires too often is stopped.
        waitUntil([] { return false; }, std::chrono::milliseconds{150});
    }
    std::ranges::sort(milliseconds);
    std::printf("press to first frame, %d rounds: first %.1f ms, median %.1f ms (aim: 50), 99 %% %.1f ms\n",
                rounds, milliseconds.front(), milliseconds[milliseconds.size() / 2],
                milliseconds[milliseconds.size() * 99 / 100]);
    return 0;
}
