#include "Platform/Linux/XTest/XTestPointerOutput.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XButtons.hpp"
#include "Utilities/Logger.hpp"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace trelvan {

namespace {

/// The protocol carries a movement as 16 bits an axis; no screen is wider.
int clamped(std::int64_t delta) {
    return static_cast<int>(std::clamp<std::int64_t>(delta, -32767, 32767));
}

/// Each line is two requests. No wheel turns as fast, and no speed makes so many lines of its turns.
constexpr std::int64_t maxLines = 1'000;

}  // namespace

XTestPointerOutput::XTestPointerOutput(_XDisplay* display, PressedState& page)
    : display_(display),
      page_(page),
      map_(display),
      slots_(map_.buttonCount()),
      ledger_(display, page.byTap) {
    // What a program that was killed without leaving a page had borrowed.
    map_.restoreBeyond();
}

XTestPointerOutput::~XTestPointerOutput() {
    ledger_.releaseAll();
    for (const int place : slots_.lent()) takeBack(place);
}

void XTestPointerOutput::lend(int place, int xButton) {
    page_.lent.set(place, true);
    map_.setNumber(place, xButton);
}

void XTestPointerOutput::takeBack(int place) {
    map_.setNumber(place, place);
    page_.lent.set(place, false);
}

void XTestPointerOutput::button(std::int64_t number, bool down) {
    const auto known = xButton(number);
    if (!known || edge(*known, down) || !down || std::exchange(reportedMissing_, true)) return;
    AppLogger.warning(
        InlineText("El servidor X no puede reenviar más botones a la vez; se pierde el botón ", number));
}

bool XTestPointerOutput::edge(int xButton, bool down) {
    const auto place = down ? slots_.press(xButton) : slots_.release(xButton);
    if (!place) return false;
    const bool isLent = *place != xButton;
    if (isLent && down) lend(*place, xButton);
    ledger_.button(*place, down);
    if (isLent && !down) takeBack(*place);
    return true;
}

void XTestPointerOutput::scroll(std::int64_t vertical, std::int64_t horizontal) {
    // The order of the server itself, whose horizontal axis has the lower number.
    click(2, horizontal);
    click(1, vertical);
}

void XTestPointerOutput::click(int axis, std::int64_t lines) {
    const int xButton = wheelButton(axis, lines > 0);
    for (std::int64_t left = std::min(std::abs(lines), maxLines); left > 0; --left) {
        edge(xButton, true);
        edge(xButton, false);
    }
}

void XTestPointerOutput::move(std::int64_t deltaX, std::int64_t deltaY) {
    XTestFakeRelativeMotionEvent(display_, clamped(deltaX), clamped(deltaY), CurrentTime);
}

void XTestPointerOutput::anchor(int x, int y) {
    XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
}

}  // namespace trelvan
