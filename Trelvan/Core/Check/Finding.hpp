#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/CodingError.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// A text in both languages that was put together.
struct LocalizedString {
    std::string english;
    std::string spanish;

    [[nodiscard]] const std::string& in(AppLanguage language) const {
        return language == AppLanguage::spanish ? spanish : english;
    }
};

/// How bad a finding is.
enum class Severity {
    /// Something is not taken at all.
    error,
    /// Something counts otherwise than it is written, or does nothing.
    warning,
    /// Odd, but as it is meant.
    note,
};

/// One thing about a settings file that its owner should know.
struct Finding {
    Severity severity = Severity::error;
    /// The keys that lead there, such as "trackball_profiles[0].mappings[2].action"; empty for the whole
    /// file.
    std::string path;
    LocalizedString message;
    /// What was probably meant, as it must be written; empty when nothing is near.
    std::string suggestion = {};
    /// Every value that may stand there; empty when they cannot be listed.
    std::vector<std::string> allowed = {};
    TextPosition position = {};

    /// Message and suggestion in one sentence.
    [[nodiscard]] std::string text(AppLanguage language) const;
};

using Findings = std::vector<Finding>;

/// "error", "warning" or "note", for programs and for the English text.
[[nodiscard]] std::string_view nameOf(Severity severity);
[[nodiscard]] std::string_view nameOf(Severity severity, AppLanguage language);

}  // namespace trelvan
