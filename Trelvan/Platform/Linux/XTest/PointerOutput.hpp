#pragma once

#include <cstdint>

namespace trelvan {

/// Where the tap's passed events go out. Main thread.
class PointerOutput {
  public:
    virtual ~PointerOutput() = default;

    /// A button by its Quartz number; one that the system cannot press is left out.
    virtual void button(std::int64_t number, bool down) = 0;
    /// Lines of the wheel with the Quartz sign, up and left positive.
    virtual void scroll(std::int64_t vertical, std::int64_t horizontal) = 0;
    /// Points, right and down positive, as they are: no acceleration is added.
    virtual void move(std::int64_t deltaX, std::int64_t deltaY) = 0;
};

}  // namespace trelvan
