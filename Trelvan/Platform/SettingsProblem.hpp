#pragma once

#include "Utilities/JsonText.hpp"

#include <string>

namespace trelvan {

/// A place in the settings file.
struct SettingsPlace {
    std::string file;
    /// Line 0 for the file as a whole.
    TextPosition position;
    friend bool operator==(const SettingsPlace&, const SettingsPlace&) = default;
};

/// Why settings cannot be taken as they are written: where it is, and a reason in each language.
struct SettingsProblem {
    SettingsPlace place;
    std::string english;
    std::string spanish;
    friend bool operator==(const SettingsProblem&, const SettingsProblem&) = default;

    /// Place and reason in one line.
    [[nodiscard]] std::string englishText() const { return text(", line ", ", column ", english); }
    [[nodiscard]] std::string spanishText() const { return text(", línea ", ", columna ", spanish); }

  private:
    [[nodiscard]] std::string text(const char* line, const char* column, const std::string& reason) const {
        if (place.position.line == 0) return place.file + ": " + reason;
        return place.file + line + std::to_string(place.position.line) + column +
               std::to_string(place.position.column) + ": " + reason;
    }
};

}  // namespace trelvan
