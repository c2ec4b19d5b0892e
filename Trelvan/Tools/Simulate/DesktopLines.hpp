#pragma once

#include "Core/Model/RecordJson.hpp"
#include "Platform/Simulated/SimulatedDesktop.hpp"

/// The lines of a script that change the desktop around the tap, or send it an event. Each says what is wrong
/// with the line; then nothing has changed.
namespace trelvan::lines {

/// One event of a pointer device for the tap.
[[nodiscard]] json::Problem sendEvent(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem setAccessibility(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem setModifiers(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem setScreens(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem movePointer(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem setOwnWindows(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem bringToFront(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem setHotKeys(SimulatedDesktop& desktop, const json::Value& line);
/// What the desktop itself shows when it is asked.
[[nodiscard]] json::Problem offerViews(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem changeDisk(SimulatedDesktop& desktop, const json::Value& line);
/// A call fails from now on, or no longer.
[[nodiscard]] json::Problem letFail(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem disableTap(SimulatedDesktop& desktop, const json::Value& line);

}  // namespace trelvan::lines
