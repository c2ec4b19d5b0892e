#pragma once

#include "Core/Model/RecordJson.hpp"
#include "Platform/Simulated/SimulatedDesktop.hpp"

/// The lines of a script that change what the background services look at.
namespace trelvan::lines {

/// One key event for the key monitors. Modifier keys change flags, as on a real keyboard.
[[nodiscard]] json::Problem pressKey(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem switchCapsLock(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem setMicrophone(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem setBattery(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem setFnState(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem setDoNotDisturb(SimulatedDesktop& desktop, const json::Value& line);
/// The session is locked or unlocked, or another one gets the screen.
[[nodiscard]] json::Problem changeSession(SimulatedDesktop& desktop, const json::Value& line);
[[nodiscard]] json::Problem setLaunchAtLogin(SimulatedDesktop& desktop, const json::Value& line);

}  // namespace trelvan::lines
