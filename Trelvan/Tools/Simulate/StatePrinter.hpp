#pragma once

#include "Platform/Simulated/SimulatedDesktop.hpp"
#include "Tools/Simulate/SimulatedMenu.hpp"
#include "TrelvanApp.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// A part of the state as JSON: "profiles", "activeProfile", "defaults", "monitor", "keepAwake",
/// "menu" or "debugLog". None for another name, and for profiles that have no JSON form.
[[nodiscard]] std::optional<std::string> stateOf(const TrelvanApp& app, const SimulatedDesktop& desktop,
                                                 const SimulatedMenu& menu, std::string_view what);

}  // namespace trelvan
