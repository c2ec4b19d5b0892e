#pragma once

#include "Platform/Simulated/SimulatedDesktop.hpp"

#include <string>
#include <variant>
#include <vector>

namespace trelvan::test {

/// A simulated desktop that keeps its trace.
class TestDesktop : public SimulatedDesktop {
  public:
    explicit TestDesktop(const ActionShortcuts& shortcuts = macShortcuts) : SimulatedDesktop(shortcuts) {
        onTrace = [this](const TraceEntry& entry) { entries.push_back(entry); };
    }

    std::vector<TraceEntry> entries;

    /// All entries of one kind, in order.
    template <typename What>
    [[nodiscard]] std::vector<What> all() const {
        std::vector<What> result;
        for (const auto& entry : entries) {
            if (const auto* what = std::get_if<What>(&entry.what)) result.push_back(*what);
        }
        return result;
    }

    /// The messages of one level, in order.
    [[nodiscard]] std::vector<std::string> messages(LogLevel level) const {
        std::vector<std::string> result;
        for (const auto& logged : all<trace::Logged>()) {
            if (logged.level == level) result.push_back(logged.message);
        }
        return result;
    }
};

}  // namespace trelvan::test
