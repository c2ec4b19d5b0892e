#pragma once

#include "Utilities/LogLevel.hpp"

#include <string_view>

namespace trelvan {

/// How the program calls itself in the unified log.
namespace unifiedLog {
inline constexpr std::string_view subsystem = "com.yourname.Trelvan";
inline constexpr std::string_view category = "App";
}  // namespace unifiedLog

/// One accepted log line; the texts live as long as the call that hands it over, but for `file`.
struct LogRecord {
    LogLevel level;
    /// The whole line without its line break; one line, whatever names it contains.
    std::string_view line;
    /// The message alone, as it stands in the line.
    std::string_view message;
    /// Where in the source it was written: the file's name, which lives as long as the program, and the line.
    std::string_view file = {};
    unsigned lineNumber = 0;
};

/// Where log lines go: standard output, the unified log. Any thread; lines are never torn, and a call never
/// waits for a slow reader, since the tap logs too.
class LogSink {
  public:
    virtual ~LogSink() = default;

    virtual void write(const LogRecord& record) = 0;
};

}  // namespace trelvan
