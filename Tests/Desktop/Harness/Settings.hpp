#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <string>

namespace trelvan::desktop {

/// Builds the content of settings.json as a user's earlier session would have left it.
class Settings {
  public:
    Settings();

    /// Maps a button (the program's numbers: 2 middle, 3 and up extra, -100 and below the wheel) to an action
    /// by its stored name. `more` holds further keys of the mapping.
    Settings& map(int button, const std::string& action,
                  const nlohmann::json& more = nlohmann::json::object());
    /// Adds an entry to the radial menu: an application by its path, or a shortcut by the program's key code
    /// and modifier flags.
    Settings& menuApplication(const std::string& name, const std::string& path,
                              const std::string& iconPath = {});
    Settings& menuShortcut(const std::string& name, int keyCode, unsigned long modifiers,
                           const std::string& display = {});
    /// Sets one of the plain settings.
    Settings& set(const std::string& key, const nlohmann::json& value);

    [[nodiscard]] std::string text() const;

  private:
    Settings& menuEntry(nlohmann::json entry);

    nlohmann::json mappings = nlohmann::json::array();
    nlohmann::json entries = nlohmann::json::array();
    nlohmann::json plain = nlohmann::json::object();
};

/// The X button that a device sends for a button of the program's numbering.
constexpr int xButton(int button) {
    if (button == 0) return 1;
    if (button == 1) return 3;
    return button == 2 ? 2 : button + 5;  // X keeps 4 to 7 for the wheel
}

}  // namespace trelvan::desktop
