#pragma once

#include "Platform/Linux/X11/XConnection.hpp"

#include <optional>

namespace trelvan {

/// Marks a display as served, by a selection of the X server: it can have one owner only, whoever's program
/// that is, and the server itself ends the ownership with the owner's connection. Main thread.
class DisplayOwner {
  public:
    /// The name of the selection that says who serves the display.
    static constexpr const char* selection = "_TRELVAN_S0";

    /// Who serves the display already.
    struct Other {
        /// 0 where it does not tell.
        long process = 0;
    };

    /// Takes the display for this program, or tells who has it. The mark ends with the connection.
    [[nodiscard]] static std::optional<Other> take(const XConnection& connection);
};

}  // namespace trelvan
