#pragma once

#include "Platform/Linux/XTest/ButtonSlots.hpp"
#include "Platform/Linux/XTest/PointerOutput.hpp"
#include "Platform/Linux/XTest/XTestButtonMap.hpp"
#include "Platform/Linux/XTest/XTestLedger.hpp"

namespace trelvan {

/// Passes the tap's events on through XTEST on the main connection, whose device the tap never holds, so that
/// they do not come back. Quartz numbers and wheel lines become X buttons here. Main thread.
class XTestPointerOutput : public PointerOutput {
  public:
    /// The page must outlive the output.
    XTestPointerOutput(_XDisplay* display, PressedState& page);
    ~XTestPointerOutput() override;
    XTestPointerOutput(const XTestPointerOutput&) = delete;
    XTestPointerOutput& operator=(const XTestPointerOutput&) = delete;

    void button(std::int64_t number, bool down) override;
    void scroll(std::int64_t vertical, std::int64_t horizontal) override;
    void move(std::int64_t deltaX, std::int64_t deltaY) override;
    /// Makes the XTEST device the one that moved the pointer last, without moving it from where it is. Until
    /// then the server forgets warps that applications ask for.
    void anchor(int x, int y);

  private:
    /// One edge of an X button; false where no button of the XTEST device is free to stand in for it.
    bool edge(int xButton, bool down);
    /// Lines along an axis, 1 vertical and 2 horizontal.
    void click(int axis, std::int64_t lines);
    void lend(int place, int xButton);
    void takeBack(int place);

    _XDisplay* display_;
    PressedState& page_;
    XTestButtonMap map_;
    ButtonSlots slots_;
    XTestLedger ledger_;
    bool reportedMissing_ = false;
};

}  // namespace trelvan
