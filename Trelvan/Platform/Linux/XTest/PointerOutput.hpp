#pragma once

#include <cstdint>

namespace trelvan {

/// Where the tap's passed events go out. Main thread.
class PointerOutput {
  public:
    virtual ~PointerOutput() = default;

    /// An X button, 1 to 255.
    virtual void button(int xButton, bool down) = 0;
    /// Points, right and down positive, as they are: no acceleration is added.
    virtual void move(std::int64_t deltaX, std::int64_t deltaY) = 0;
};

}  // namespace trelvan
