#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace trelvan {

/// Which button of a device with few buttons stands in for which X button.
///
/// A button that the device has is itself. One beyond them borrows the place of one that is up, for as long
/// as it is down. Not thread-safe.
class ButtonSlots {
  public:
    /// Places are borrowed from this button on: the lower ones are the clicks and the wheel.
    static constexpr int firstLent = 8;

    explicit ButtonSlots(int buttonCount) : held_(static_cast<std::size_t>(buttonCount) + 1, 0) {}

    /// The place that the button is to be pressed in, which is then taken; none when all that are lent are.
    [[nodiscard]] std::optional<int> press(int xButton);
    /// The place that the button was pressed in, which is free again; none when it was not.
    [[nodiscard]] std::optional<int> release(int xButton);
    /// The places that stand in for another button now.
    [[nodiscard]] std::vector<int> lent() const;

  private:
    /// By place: the X button that is down in it, or 0.
    std::vector<int> held_;
};

}  // namespace trelvan
