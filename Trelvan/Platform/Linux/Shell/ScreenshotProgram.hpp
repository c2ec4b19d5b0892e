#pragma once

#include "Platform/Linux/Shell/CurrentDesktop.hpp"
#include "Platform/SystemViews.hpp"

#include <string>
#include <vector>

namespace trelvan {

/// The desktop's program that takes a screenshot of this kind, with its arguments; empty where the desktop
/// takes it by itself, and for other views.
[[nodiscard]] std::vector<std::string> screenshotCommand(DesktopKind desktop, SystemView view);

/// Starts that program; false when there is none, or it is not installed. Main thread.
[[nodiscard]] bool startScreenshot(DesktopKind desktop, SystemView view);

}  // namespace trelvan
