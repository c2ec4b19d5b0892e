#include "Utilities/Logger.hpp"

#include <array>
#include <ctime>

namespace trelvan {

namespace {

/// "HH:mm:ss.SSS" in local time.
using TimeText = std::array<char, 12>;

void putTwoDigits(char* at, int value) {
    at[0] = static_cast<char>('0' + value / 10);
    at[1] = static_cast<char>('0' + value % 10);
}

TimeText format(std::chrono::system_clock::time_point time) {
    using namespace std::chrono;
    const auto milliseconds = floor<std::chrono::milliseconds>(time.time_since_epoch());
    const auto seconds = floor<std::chrono::seconds>(milliseconds);
    const auto wholeSeconds = static_cast<std::time_t>(seconds.count());
    // Converting to local time is far slower than the rest of a line, and lines come in bursts.
    thread_local std::time_t cachedSecond = -1;
    thread_local TimeText cached{};
    if (wholeSeconds != cachedSecond) {
        std::tm local{};
        localtime_r(&wholeSeconds, &local);
        putTwoDigits(cached.data(), local.tm_hour);
        cached[2] = ':';
        putTwoDigits(cached.data() + 3, local.tm_min);
        cached[5] = ':';
        putTwoDigits(cached.data() + 6, local.tm_sec);
        cached[8] = '.';
        cachedSecond = wholeSeconds;
    }
    TimeText result = cached;
    const int fraction = static_cast<int>((milliseconds - seconds).count());
    result[9] = static_cast<char>('0' + fraction / 100);
    putTwoDigits(result.data() + 10, fraction % 100);
    return result;
}

}  // namespace

Logger& Logger::shared() {
    static Logger instance;
    return instance;
}

void Logger::connect(LogSink* standardOutput, LogSink* unifiedLog, TimeOfDay timeOfDay, void* context) {
    standardOutput_ = standardOutput;
    unifiedLog_ = unifiedLog;
    timeOfDay_ = timeOfDay;
    context_ = context;
}

void Logger::log(LogLevel level, std::string_view message, std::string_view file, unsigned line) {
    if (!accepts(level)) return;
    if (standardOutput_ == nullptr && unifiedLog_ == nullptr) return;
    const auto time = format(timeOfDay_ != nullptr ? timeOfDay_(context_) : std::chrono::system_clock::now());
    const std::string_view name = lastPathComponent(file);
    InlineText text("[", std::string_view(time.data(), time.size()), "] ", label(level), " [", name, ":",
                    line, "] ");
    const std::size_t start = text.view().size();
    // Names and paths are in it that others chose.
    appendVisible(text, message);
    const LogRecord record{.level = level,
                           .line = text.view(),
                           .message = text.view().substr(start),
                           .file = name,
                           .lineNumber = line};
    if (standardOutput_ != nullptr) standardOutput_->write(record);
    if (unifiedLog_ != nullptr) unifiedLog_->write(record);
}

}  // namespace trelvan
