#pragma once

#include "Utilities/LogLevel.hpp"
#include "Utilities/LogSink.hpp"
#include "Utilities/Text.hpp"

#include <atomic>
#include <chrono>
#include <string_view>

namespace trelvan {

/// The single logging facility: each accepted line goes to standard output and to the unified log.
///
/// Any thread, no lock, no allocation for lines of the usual length. Log texts are Spanish. Control
/// characters in a message are written visibly (`\n`, `\x1b`), so that no name can forge a line.
class Logger {
  public:
    /// Tells the time of day.
    using TimeOfDay = std::chrono::system_clock::time_point (*)(void* context);

    Logger() = default;
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    /// The one instance of the running program. It writes nowhere until it is connected.
    static Logger& shared();

    /// Joins the logger to its outputs, which must outlive the connection; before any other thread logs. An
    /// output may be missing, or stand for both.
    /// A null `timeOfDay` stands for the system's clock.
    void connect(LogSink* standardOutput, LogSink* unifiedLog, TimeOfDay timeOfDay = nullptr,
                 void* context = nullptr);
    void disconnect() { connect(nullptr, nullptr); }

    /// Lines below this level are dropped.
    std::atomic<LogLevel> minimumLevel{LogLevel::debug};

    [[nodiscard]] bool accepts(LogLevel level) const {
        return level >= minimumLevel.load(std::memory_order_relaxed);
    }

    /// `file` is a path that lives as long as the program, of which only the last component is shown; both
    /// name the place of the call by default.
    void debug(std::string_view message, const char* file = __builtin_FILE(),
               unsigned line = __builtin_LINE()) {
        log(LogLevel::debug, message, file, line);
    }
    void info(std::string_view message, const char* file = __builtin_FILE(),
              unsigned line = __builtin_LINE()) {
        log(LogLevel::info, message, file, line);
    }
    void warning(std::string_view message, const char* file = __builtin_FILE(),
                 unsigned line = __builtin_LINE()) {
        log(LogLevel::warning, message, file, line);
    }
    void error(std::string_view message, const char* file = __builtin_FILE(),
               unsigned line = __builtin_LINE()) {
        log(LogLevel::error, message, file, line);
    }

  private:
    void log(LogLevel level, std::string_view message, std::string_view file, unsigned line);

    LogSink* standardOutput_ = nullptr;
    LogSink* unifiedLog_ = nullptr;
    TimeOfDay timeOfDay_ = nullptr;
    void* context_ = nullptr;
};

/// The shared logger under its everyday name.
inline Logger& AppLogger = Logger::shared();

}  // namespace trelvan
