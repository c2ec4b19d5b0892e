#pragma once

#include "Core/Check/Finding.hpp"
#include "Core/Model/AppLanguage.hpp"
#include "Core/NotificationPoster.hpp"
#include "Platform/SettingsSnapshot.hpp"
#include "Utilities/Logger.hpp"

#include <functional>
#include <string>
#include <string_view>

namespace trelvan {

/// One finding with its place, in the form of a compiler's message; the allowed values on a line of their
/// own.
[[nodiscard]] std::string findingLine(const std::string& path, const Finding& finding, AppLanguage language);

/// Tells the user, while the program starts, what it does not take from the settings, and where they will be
/// when there are none. Main thread.
struct StartReport {
    /// The kind of the notifications about the settings.
    static constexpr std::string_view notificationKind = "settings";

    NotificationPoster& notifications;
    Logger& logger;
    /// The language of the terminal.
    AppLanguage language;
    /// Writes to the terminal; with a line break at the end of each text.
    std::function<void(std::string_view)> print;
    std::function<void(std::string_view)> printError;

    /// Whether the settings hold something that the start does not take.
    bool tell(const SettingsText& settings) const;

  private:
    void tellFirstStart(const std::string& path) const;
    void tellUntaken(const std::string& path, const Findings& errors) const;
};

}  // namespace trelvan
