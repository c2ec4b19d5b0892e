#pragma once

#include <optional>
#include <string_view>

namespace trelvan {

/// How much a log line matters; ordered by raw value.
enum class LogLevel : int { debug = 0, info = 1, warning = 2, error = 3 };

/// The level of a raw value; none outside 0 to 3.
constexpr std::optional<LogLevel> logLevelFromRaw(int raw) {
    if (raw < 0 || raw > 3) return std::nullopt;
    return static_cast<LogLevel>(raw);
}

/// What a log line shows for the level; the trailing blanks keep the words five letters wide.
constexpr std::string_view label(LogLevel level) {
    switch (level) {
        case LogLevel::debug:
            return "🔍 DEBUG";
        case LogLevel::info:
            return "ℹ️ INFO ";
        case LogLevel::warning:
            return "⚠️ WARN ";
        case LogLevel::error:
            return "❌ ERROR";
    }
    return {};
}

}  // namespace trelvan
