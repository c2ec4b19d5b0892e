#pragma once

#include "Platform/Linux/X11/WindowIdentity.hpp"

#include <string>

namespace trelvan {

/// The identity that a desktop entry or a program at the path promises: names only. Any thread; reads the
/// file.
[[nodiscard]] ApplicationIdentity identityOf(const std::string& path);

}  // namespace trelvan
