#pragma once

#include "Platform/Linux/ButtonSlots.hpp"
#include "Platform/Linux/PointerOutput.hpp"
#include "Platform/Linux/XTestLedger.hpp"

#include <memory>
#include <vector>

namespace trelvan {

/// Passes the tap's events on through XTEST on the main connection, whose device the tap never holds, so that
/// they do not come back. Main thread.
class XTestPointerOutput : public PointerOutput {
  public:
    explicit XTestPointerOutput(_XDisplay* display);
    ~XTestPointerOutput() override;
    XTestPointerOutput(const XTestPointerOutput&) = delete;
    XTestPointerOutput& operator=(const XTestPointerOutput&) = delete;

    void button(int xButton, bool down) override;
    void move(std::int64_t deltaX, std::int64_t deltaY) override;
    /// Makes the XTEST device the one that moved the pointer last, without moving it from where it is. Until
    /// then the server forgets warps that applications ask for.
    void anchor(int x, int y);

  private:
    class Device;

    _XDisplay* display_;
    std::unique_ptr<Device> device_;
    ButtonSlots slots_;
    XTestLedger ledger_;
    bool reportedMissing_ = false;
};

}  // namespace trelvan
