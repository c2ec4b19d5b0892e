#pragma once

#include "Utilities/LogSink.hpp"
#include "Utilities/Logger.hpp"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan::test {

/// A logger whose lines a test can read back.
class CapturingLog : public LogSink {
  public:
    struct Line {
        LogLevel level;
        std::string message;
        friend bool operator==(const Line&, const Line&) = default;
    };

    CapturingLog() { logger.connect(this, nullptr); }

    void write(const LogRecord& record) override {
        lines.push_back({record.level, std::string(record.message)});
    }

    [[nodiscard]] std::vector<std::string> messages(LogLevel level) const {
        std::vector<std::string> result;
        for (const auto& line : lines) {
            if (line.level == level) result.push_back(line.message);
        }
        return result;
    }

    Logger logger;
    std::vector<Line> lines;
};

}  // namespace trelvan::test
