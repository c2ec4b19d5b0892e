#pragma once

#include "Platform/Linux/Shell/CurrentDesktop.hpp"
#include "Platform/SystemViews.hpp"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// A program that shows a view where the shell has no interface for it.
struct ViewProgram {
    std::vector<std::string> command;
    /// It ends at once, with 0 when the view is shown; others go on for as long as they show it.
    bool answers = false;
};

/// The programs that show the view on the desktop, its own first. A view of one application's windows is the
/// view of all, as none of them has another.
[[nodiscard]] std::vector<ViewProgram> viewPrograms(DesktopKind desktop, SystemView view);

/// The first of them that is installed; none when none is.
[[nodiscard]] std::optional<ViewProgram> installedViewProgram(DesktopKind desktop, SystemView view);

/// The program that shows the view on any desktop once it is installed; empty when there is none.
[[nodiscard]] std::string_view programToInstall(SystemView view);

/// Starts the first of the programs that is installed and does it; calls `otherwise` when none does. Main
/// thread; waits for nothing.
void showByProgram(DesktopKind desktop, SystemView view, const std::function<void()>& otherwise);

}  // namespace trelvan
