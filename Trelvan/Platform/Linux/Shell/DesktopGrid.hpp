#pragma once

#include <optional>

namespace trelvan {

/// How the window manager lays out its desktops. Pure arithmetic.
struct DesktopGrid {
    unsigned long count = 0;
    unsigned long current = 0;
    /// Desktops in a row; 0 for one row of all.
    unsigned long columns = 0;
    /// Numbered down the columns rather than along the rows; then `rows` is how many make a column.
    bool byColumns = false;
    unsigned long rows = 0;

    /// The desktop one to the left or right; none at the end of the row.
    [[nodiscard]] std::optional<unsigned long> neighbour(bool right) const {
        if (current >= count) return std::nullopt;
        if (byColumns && rows > 1) {
            if (right) return current + rows < count ? std::optional(current + rows) : std::nullopt;
            return current >= rows ? std::optional(current - rows) : std::nullopt;
        }
        const unsigned long width = columns > 0 ? columns : count;
        const unsigned long column = current % width;
        if (right)
            return column + 1 < width && current + 1 < count ? std::optional(current + 1) : std::nullopt;
        return column > 0 ? std::optional(current - 1) : std::nullopt;
    }
};

}  // namespace trelvan
