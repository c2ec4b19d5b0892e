#pragma once

#include "Utilities/LogLevel.hpp"

#include <string_view>

namespace trelvan {

/// One accepted log line; the texts live as long as the call that hands it over.
struct LogRecord {
    LogLevel level;
    /// The whole line without its line break.
    std::string_view line;
    /// The message alone.
    std::string_view message;
};

/// Where log lines go: standard output, the unified log. Any thread; lines are never torn, and a call never
/// waits for a slow reader, since the tap logs too.
class LogSink {
  public:
    virtual ~LogSink() = default;

    virtual void write(const LogRecord& record) = 0;
};

}  // namespace trelvan
