#include "Desktop/Demo/Viewer.hpp"

#include <X11/Xft/Xft.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cctype>

namespace trelvan::desktop {
namespace {

constexpr unsigned width = 960;
constexpr unsigned height = 560;
constexpr int margin = 48;
constexpr std::size_t linesShown = 5;

constexpr auto titleFont = "DejaVu Sans:bold:pixelsize=34";
constexpr auto textFont = "DejaVu Sans:pixelsize=22";
constexpr auto eventFont = "DejaVu Sans Mono:bold:pixelsize=30";

}  // namespace

std::string inWords(const ClientEvent& event) {
    using Kind = ClientEvent::Kind;
    if (event.kind == Kind::buttonPress) return "button " + std::to_string(event.button) + " pressed";
    if (event.kind != Kind::keyPress || IsModifierKey(event.key) != 0) return {};
    std::string stroke =
        describe(KeyStroke{event.key, event.state & (ControlMask | ShiftMask | Mod1Mask | Mod4Mask)});
    stroke.back() = static_cast<char>(std::toupper(static_cast<unsigned char>(stroke.back())));
    return stroke;
}

Viewer::Viewer(ClientWindow& client) : window(client) {
    Display* display = window.connection().get();
    canvas = XCreatePixmap(display, window.window(), width, height,
                           static_cast<unsigned>(DefaultDepth(display, DefaultScreen(display))));
    XSetWindowBackground(display, window.connection().root(), 0x2b3a42);
    XClearWindow(display, window.connection().root());
    paint();
}

Viewer::~Viewer() {
    XFreePixmap(window.connection().get(), canvas);
}

void Viewer::say(const std::string& line) {
    story.push_back(line);
    paint();
}

void Viewer::write(const std::string& text, const char* font, const char* colour, int x, int baseline) {
    Display* display = window.connection().get();
    const int screen = DefaultScreen(display);
    Visual* visual = DefaultVisual(display, screen);
    const Colormap colours = DefaultColormap(display, screen);
    XftFont* face = XftFontOpenName(display, screen, font);
    XftDraw* draw = XftDrawCreate(display, canvas, visual, colours);
    XftColor ink{};
    if (face != nullptr && draw != nullptr &&
        XftColorAllocName(display, visual, colours, colour, &ink) != 0) {
        XftDrawStringUtf8(draw, &ink, face, x, baseline, reinterpret_cast<const FcChar8*>(text.data()),
                          static_cast<int>(text.size()));
        XftColorFree(display, visual, colours, &ink);
    }
    if (draw != nullptr) XftDrawDestroy(draw);
    if (face != nullptr) XftFontClose(display, face);
}

void Viewer::paint() {
    Display* display = window.connection().get();
    GC pen = XCreateGC(display, canvas, 0, nullptr);
    XSetForeground(display, pen, 0xfbf7ee);
    XFillRectangle(display, canvas, pen, 0, 0, width, height);
    XSetForeground(display, pen, 0x1f5f8b);
    XFillRectangle(display, canvas, pen, 0, 0, width, 96);
    XFreeGC(display, pen);

    write("An ordinary application", titleFont, "#ffffff", margin, 62);
    write("What this window received, newest last:", textFont, "#44525c", margin, 142);
    std::vector<std::string> lines;
    for (const ClientEvent& event : window.events()) {
        if (const std::string words = inWords(event); !words.empty()) lines.push_back(words);
    }
    const std::size_t first = lines.size() > linesShown ? lines.size() - linesShown : 0;
    int baseline = 190;
    for (std::size_t index = first; index < lines.size(); ++index, baseline += 40) {
        write(lines[index], eventFont, "#14342b", margin + 24, baseline);
    }
    if (lines.empty()) write("nothing yet", textFont, "#8a949b", margin + 24, baseline);

    const std::size_t firstSaid = story.size() > linesShown ? story.size() - linesShown : 0;
    baseline = 412;
    for (std::size_t index = firstSaid; index < story.size(); ++index, baseline += 30) {
        write(story[index], textFont, "#8b3a1f", margin, baseline);
    }
    XSetWindowBackgroundPixmap(display, window.window(), canvas);
    XClearWindow(display, window.window());
    XSync(display, 0);
}

}  // namespace trelvan::desktop
