#include "Desktop/Harness/ChildProcess.hpp"
#include "Desktop/Harness/ClientWindow.hpp"
#include "Desktop/Harness/TrelvanProcess.hpp"
#include "Desktop/Harness/VirtualDesktop.hpp"

#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

/// The time from a press of the trackball's button to the radial menu's first painted frame: the device's
/// event is written, and another client looks at the screen until a pixel of the menu is another one. Prints
/// a line for each kind of entries; its status is 1 when the menu does not come, or when a median is above
/// the bound.
namespace trelvan::desktop {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr double bound = 50;
constexpr int entries = 8;
constexpr int opener = 3;
constexpr int openings = 30;
constexpr int starts = 5;
constexpr std::chrono::microseconds pollInterval{200};
/// No faster than a hand: what fires too often is stopped.
constexpr std::chrono::milliseconds handInterval{150};

/// The colour of one pixel of what is seen on the screen.
unsigned long pixelAt(ClientWindow& client, Position place) {
    XImage* image = XGetImage(client.connection().get(), client.connection().root(), place.x, place.y, 1, 1,
                              AllPlanes, ZPixmap);
    if (image == nullptr) throw std::runtime_error("the screen cannot be read");
    const unsigned long pixel = XGetPixel(image, 0, 0);
    XDestroyImage(image);
    return pixel;
}

bool waitForPixel(ClientWindow& client, Position place, const std::function<bool(unsigned long)>& isThere) {
    const auto end = Clock::now() + timeout;
    while (!isThere(pixelAt(client, place))) {
        if (Clock::now() > end) return false;
        std::this_thread::sleep_for(pollInterval);
    }
    return true;
}

/// Opens the menu once, in milliseconds, and closes it again.
double open(VirtualDesktop& desktop, ClientWindow& client) {
    const Position pointer = client.middle();
    client.warpPointer(pointer);
    // Between the symbol in the middle and its edge.
    const Position shown{pointer.x, pointer.y - 40};
    const unsigned long before = pixelAt(client, shown);
    const auto begin = Clock::now();
    desktop.trackball().press(xButton(opener));
    const bool isOpen = waitForPixel(client, shown, [&](unsigned long pixel) { return pixel != before; });
    const double time = Milliseconds(Clock::now() - begin).count();
    desktop.trackball().release(xButton(opener));
    if (!isOpen) throw std::runtime_error("the menu does not open");
    desktop.keyboard().keyStroke(client.keyCode(XK_Escape));
    if (!waitForPixel(client, shown, [&](unsigned long pixel) { return pixel == before; }))
        throw std::runtime_error("the menu does not close");
    std::this_thread::sleep_for(handInterval);
    return time;
}

double median(std::vector<double>& times) {
    std::ranges::sort(times);
    return times[times.size() / 2];
}

/// What the eight entries are, and whether the bound holds for them.
bool measure(VirtualDesktop& desktop, ClientWindow& client, const char* name, const Settings& settings) {
    std::vector<double> first;
    std::vector<double> later;
    for (int start = 0; start < starts; ++start) {
        const TrelvanProcess program(desktop, settings);
        first.push_back(open(desktop, client));
        for (int count = 0; count < openings / starts; ++count) later.push_back(open(desktop, client));
    }
    const double firstMedian = median(first);
    const double laterMedian = median(later);
    std::printf("%-22s %8.1f %8.1f %8.1f %8.1f %8.1f\n", name, firstMedian, first.back(), later.front(),
                laterMedian, later[later.size() * 95 / 100]);
    std::fflush(stdout);
    return laterMedian <= bound;
}

Settings menu() {
    return Settings().map(opener, "Smart Button");
}

Settings shortcuts() {
    Settings settings = menu();
    for (int entry = 0; entry < entries; ++entry) settings.menuShortcut("Copy", 8, 0x40000);
    return settings;
}

/// A drawing of some hundred shapes, as icon themes have them.
std::string drawing(int hue) {
    std::string text = R"(<svg xmlns="http://www.w3.org/2000/svg" width="128" height="128">)";
    for (int shape = 0; shape < 150; ++shape) {
        text += "<path d='M64 64 C" + std::to_string(shape) + " 10 120 " + std::to_string(128 - shape) + " " +
                std::to_string(shape * 7 % 128) + " " + std::to_string(shape * 13 % 128) + " Z' fill='#" +
                std::to_string(100 + (hue + shape) % 900) + "' opacity='0.5'/>";
    }
    return text + "</svg>";
}

Settings themeIcons(const VirtualDesktop& desktop) {
    Settings settings = menu();
    const auto icons = desktop.folder() / "data" / "icons" / "hicolor" / "scalable" / "apps";
    const auto applications = desktop.folder() / "data" / "applications";
    std::filesystem::create_directories(icons);
    std::filesystem::create_directories(applications);
    for (int entry = 0; entry < entries; ++entry) {
        const std::string name = "benchmark" + std::to_string(entry);
        writeFile(icons / (name + ".svg"), drawing(entry * 100));
        const auto path = applications / (name + ".desktop");
        writeFile(path, "[Desktop Entry]\nType=Application\nName=x\nExec=true\nIcon=" + name + "\n");
        settings.menuApplication(name, path);
    }
    return settings;
}

/// Images of 2,000 by 2,000 pixels, which the user has chosen.
Settings largeImages(const VirtualDesktop& desktop) {
    Settings settings = menu();
    const auto image = desktop.folder() / "large.png";
    ChildProcess convert(
        Launch{.arguments = {"/usr/bin/convert", "-size", "2000x2000", "plasma:red-blue", image},
               .environment = desktop.environment(),
               .directory = desktop.folder(),
               .output = desktop.folder() / "convert.output",
               .errors = {}});
    if (convert.waitForEnd(std::chrono::minutes{1}) != 0) throw std::runtime_error("no image could be made");
    for (int entry = 0; entry < entries; ++entry) settings.menuApplication("Image", "/usr/bin/true", image);
    return settings;
}

bool run() {
    VirtualDesktop desktop;
    ClientWindow client(desktop.displayName());
    std::printf("milliseconds from the press to the first painted frame, %d entries\n", entries);
    std::printf("%-22s %8s %8s %8s %8s %8s\n", "", "first:", "worst", "best:", "median", "95 %");
    bool isFast = measure(desktop, client, "shortcuts", shortcuts());
    isFast &= measure(desktop, client, "icons of the theme", themeIcons(desktop));
    isFast &= measure(desktop, client, "large images", largeImages(desktop));
    return isFast;
}

}  // namespace
}  // namespace trelvan::desktop

int main() {
    try {
        if (trelvan::desktop::run()) return 0;
        std::fprintf(stderr, "menu_benchmark: a median is above the bound\n");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "menu_benchmark: %s\n", error.what());
    }
    return 1;
}
