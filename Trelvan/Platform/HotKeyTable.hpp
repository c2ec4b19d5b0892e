#pragma once

#include "Platform/KeyChord.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace trelvan {

/// Symbolic identifiers of the desktop's functions.
namespace hotkey {
inline constexpr int menuBar = 7;
inline constexpr int dock = 8;
inline constexpr int activeWindow = 9;
inline constexpr int screenshotFull = 28;
inline constexpr int screenshotArea = 30;
inline constexpr int missionControl = 32;
inline constexpr int appWindows = 33;
inline constexpr int showDesktop = 36;
inline constexpr int desktopLeft = 79;
inline constexpr int desktopRight = 81;
inline constexpr int launchpad = 160;
inline constexpr int screenshotTool = 184;
// Second entries, for when the first ones have no keys.
inline constexpr int appWindowsAlternate = 34;
inline constexpr int showDesktopAlternate = 37;
inline constexpr int desktopLeftAlternate = 80;
inline constexpr int desktopRightAlternate = 82;
inline constexpr int launchpadAlternate = 161;
// Not among the system's own: other platforms' desktops have shortcuts for these, too.
inline constexpr int lockScreen = 1000;
inline constexpr int emojiPanel = 1001;
}  // namespace hotkey

/// One entry of the symbolic hot-key table, as the system stores it. A platform that keeps shortcuts in
/// another form offers them as {character or 65535, key code, modifier flags}.
struct HotKeyEntry {
    bool enabled = false;
    /// The array "parameters"; no value for an element that is not a whole number.
    std::vector<std::optional<std::int64_t>> parameters;
};

/// A combination by what its key is called.
struct NamedHotKey {
    EventFlags flags = 0;
    std::string key;
    friend bool operator==(const NamedHotKey&, const NamedHotKey&) = default;
};

/// The shortcuts that the user gave the desktop's own functions, under the system's symbolic identifiers.
/// Any thread; as they are at each call.
class HotKeyTable {
  public:
    virtual ~HotKeyTable() = default;

    /// None when there is no such entry or it has another shape.
    [[nodiscard]] virtual std::optional<HotKeyEntry> entry(int id) const = 0;
};

}  // namespace trelvan
