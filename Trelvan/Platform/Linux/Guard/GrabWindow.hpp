#pragma once

#include "Platform/Linux/X11/XConnection.hpp"
#include "Platform/Linux/XTest/PressedState.hpp"

union _XEvent;

namespace trelvan {

/// The window that the device grabs are made on: one point outside the screen that shows nothing and takes no
/// input.
///
/// The server ends a grab when its window leaves the screen, and any client may take a window off it. So one
/// request of the guard frees all devices at once, whatever this process is doing. Main thread.
class GrabWindow {
  public:
    /// The page must outlive the window; it says which one it is.
    GrabWindow(XConnection& connection, PressedState& page);
    GrabWindow(const GrabWindow&) = delete;
    GrabWindow& operator=(const GrabWindow&) = delete;
    ~GrabWindow() { close(); }

    /// Puts the window on the screen; nothing happens where it is there.
    void show();
    void close();
    [[nodiscard]] unsigned long id() const { return window_; }

    /// Whether the event says that somebody took the window off the screen since it was last shown.
    [[nodiscard]] bool isLost(const _XEvent& event);
    /// Answers where the event is the guard's question.
    void answer(const _XEvent& event);

    /// The message that asks whether the main loop still runs: a number that the page's `answered` then has.
    static constexpr const char* question = "_TRELVAN_ALIVE";

  private:
    XConnection& connection_;
    PressedState& page_;
    unsigned long questionAtom_;
    unsigned long window_ = 0;
    unsigned long shownSince_ = 0;
};

}  // namespace trelvan
