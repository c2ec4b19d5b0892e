#pragma once

#include "Utilities/LogSink.hpp"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// A log line on its way to the outputs.
struct QueuedLine {
    LogLevel level = LogLevel::info;
    std::string text;
    /// Where it was written; a name that lives as long as the program.
    std::string_view file;
    unsigned lineNumber = 0;
    /// How many lines found no room between the one before and this one.
    std::uint64_t lostBefore = 0;
};

/// A bounded queue of log lines from many threads to one, without locks. Lines of the usual length are
/// copied into their place; longer ones take memory of their own.
class LineRing {
  public:
    /// `capacity` is a power of two.
    explicit LineRing(std::size_t capacity) : slots_(capacity) {
        for (std::size_t index = 0; index < capacity; ++index) {
            slots_[index].turn.store(index, std::memory_order_relaxed);
        }
    }

    /// False when there is no room; the line is counted then.
    bool push(const LogRecord& record) {
        std::size_t position = tail_.load(std::memory_order_relaxed);
        for (;;) {
            Slot& slot = slots_[position & (slots_.size() - 1)];
            const std::size_t turn = slot.turn.load(std::memory_order_acquire);
            if (turn == position) {
                if (!tail_.compare_exchange_weak(position, position + 1, std::memory_order_relaxed)) continue;
                slot.put(record, takeLost());
                slot.turn.store(position + 1, std::memory_order_release);
                return true;
            }
            if (turn < position) {
                lost_.fetch_add(1, std::memory_order_relaxed);
                return false;
            }
            position = tail_.load(std::memory_order_relaxed);
        }
    }

    /// Takes the oldest line out; false when there is none. One thread only.
    bool pop(QueuedLine& line) {
        Slot& slot = slots_[head_ & (slots_.size() - 1)];
        if (slot.turn.load(std::memory_order_acquire) != head_ + 1) return false;
        slot.take(line);
        slot.turn.store(head_ + slots_.size(), std::memory_order_release);
        ++head_;
        return true;
    }

    /// How many lines found no room since the last that did; counted from new after this.
    std::uint64_t takeLost() {
        return lost_.load(std::memory_order_relaxed) == 0 ? 0 : lost_.exchange(0, std::memory_order_relaxed);
    }

  private:
    struct Slot {
        static constexpr std::size_t inlineLength = 480;

        std::atomic<std::size_t> turn{0};
        LogLevel level = LogLevel::info;
        std::string_view file;
        unsigned lineNumber = 0;
        std::uint64_t lostBefore = 0;
        std::size_t length = 0;
        std::array<char, inlineLength> inlineText;
        std::string longText;

        void put(const LogRecord& record, std::uint64_t lost) {
            level = record.level;
            file = record.file;
            lineNumber = record.lineNumber;
            lostBefore = lost;
            length = record.line.size();
            if (length > inlineLength) {
                longText.assign(record.line);
            } else if (length > 0) {
                std::memcpy(inlineText.data(), record.line.data(), length);
            }
        }
        void take(QueuedLine& line) {
            line.level = level;
            line.file = file;
            line.lineNumber = lineNumber;
            line.lostBefore = lostBefore;
            if (length > inlineLength) {
                line.text = std::move(longText);
                longText = {};
            } else {
                line.text.assign(inlineText.data(), length);
            }
        }
    };

    std::vector<Slot> slots_;
    std::atomic<std::size_t> tail_{0};
    std::atomic<std::uint64_t> lost_{0};
    std::size_t head_ = 0;
};

}  // namespace trelvan
