#pragma once

#include "Utilities/Published.hpp"

#include <functional>
#include <list>
#include <memory>
#include <utility>

namespace trelvan {

/// Who gets the Escape key, the innermost first.
enum class EscapeLevel { recorder, menu, sheet, countdown, window };

/// Those who want the Escape key now. Main thread.
class EscapeChain {
  public:
    /// Calls the function at Escape for as long as the subscription lives and nothing further in wants it.
    [[nodiscard]] Subscription add(EscapeLevel level, std::function<void()> onEscape) {
        auto entry = std::make_shared<Entry>(Entry{level, std::move(onEscape)});
        entries_->push_front(entry);
        return Subscription([entries = std::weak_ptr(entries_), entry] {
            if (const auto list = entries.lock()) list->remove(entry);
        });
    }

    [[nodiscard]] bool has(EscapeLevel level) const {
        for (const auto& entry : *entries_) {
            if (entry->level == level) return true;
        }
        return false;
    }

    /// Gives the key to the innermost, of several at one level to the one that came last. False when nobody
    /// wants it.
    bool handle() {
        std::shared_ptr<Entry> innermost;
        for (const auto& entry : *entries_) {
            if (!innermost || entry->level < innermost->level) innermost = entry;
        }
        if (!innermost) return false;
        innermost->onEscape();
        return true;
    }

  private:
    struct Entry {
        EscapeLevel level;
        std::function<void()> onEscape;
    };

    /// Latest first.
    std::shared_ptr<std::list<std::shared_ptr<Entry>>> entries_ =
        std::make_shared<std::list<std::shared_ptr<Entry>>>();
};

}  // namespace trelvan
