#include "Platform/Linux/XTest/XTestPointerOutput.hpp"

#include "Platform/Linux/X11/X11.hpp"
#include "Utilities/Logger.hpp"

#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

/// The protocol carries a movement as 16 bits an axis; no screen is wider.
int clamped(std::int64_t delta) {
    return static_cast<int>(std::clamp<std::int64_t>(delta, -32767, 32767));
}

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

void XTestPointerOutput::button(int xButton, bool down) {
    const auto place = down ? slots_.press(xButton) : slots_.release(xButton);
    if (!place) {
        if (down && !std::exchange(reportedMissing_, true)) {
            AppLogger.warning(InlineText(
                "El servidor X no puede reenviar más botones a la vez; se pierde el botón ", xButton));
        }
        return;
    }
    const bool isLent = *place != xButton;
    if (isLent && down) lend(*place, xButton);
    ledger_.button(*place, down);
    if (isLent && !down) takeBack(*place);
}

void XTestPointerOutput::move(std::int64_t deltaX, std::int64_t deltaY) {
    XTestFakeRelativeMotionEvent(display_, clamped(deltaX), clamped(deltaY), CurrentTime);
}

void XTestPointerOutput::anchor(int x, int y) {
    XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
}

}  // namespace trelvan
