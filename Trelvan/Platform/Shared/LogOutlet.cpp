#include "Platform/Shared/LogOutlet.hpp"

#include "Utilities/Text.hpp"

#include <utility>

namespace trelvan {

namespace {

/// As many lines as come in a bad moment; at the usual length they are less than a megabyte.
constexpr std::size_t maxKept = 4096;

}  // namespace

void LogOutlet::take(const QueuedLine& line) {
    countLost(line.lostBefore);
    if (kept_.size() >= maxKept) return countLost(1);
    sayLost();
    kept_.push_back(line);
    kept_.back().lostBefore = 0;
    flush();
}

void LogOutlet::flush() {
    if (kept_.empty()) sayLost();
    while (!kept_.empty()) {
        const Sent sent = send(kept_.front());
        if (sent == Sent::full) return;
        const auto said = kept_.front().lostBefore;
        kept_.pop_front();
        if (sent == Sent::lost) {
            countLost(said > 0 ? said : 1);
        } else if (kept_.empty()) {
            sayLost();
        }
    }
}

/// In the place of the lines that are missing: after those that came before them.
void LogOutlet::sayLost() {
    const auto lines = std::exchange(lost_, 0);
    if (lines == 0) return;
    kept_.push_back({.level = LogLevel::warning,
                     .text = std::string(InlineText("… ", lines, " líneas de registro perdidas").view()),
                     .file = {},
                     .lineNumber = 0,
                     .lostBefore = lines});
}

}  // namespace trelvan
