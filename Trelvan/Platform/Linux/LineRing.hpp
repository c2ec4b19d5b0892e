#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// A bounded queue of text lines from many threads to one, without locks. Lines of the usual length are
/// copied into their place; longer ones take memory of their own.
class LineRing {
  public:
    /// `capacity` is a power of two.
    explicit LineRing(std::size_t capacity) : slots_(capacity) {
        for (std::size_t index = 0; index < capacity; ++index) {
            slots_[index].turn.store(index, std::memory_order_relaxed);
        }
    }

    /// False when there is no room.
    bool push(std::string_view line) {
        std::size_t position = tail_.load(std::memory_order_relaxed);
        for (;;) {
            Slot& slot = slots_[position & (slots_.size() - 1)];
            const std::size_t turn = slot.turn.load(std::memory_order_acquire);
            if (turn == position) {
                if (!tail_.compare_exchange_weak(position, position + 1, std::memory_order_relaxed)) continue;
                slot.put(line);
                slot.turn.store(position + 1, std::memory_order_release);
                return true;
            }
            if (turn < position) return false;
            position = tail_.load(std::memory_order_relaxed);
        }
    }

    /// Appends the oldest line to `text`; false when there is none. One thread only.
    bool pop(std::string& text) {
        Slot& slot = slots_[head_ & (slots_.size() - 1)];
        if (slot.turn.load(std::memory_order_acquire) != head_ + 1) return false;
        text.append(slot.view());
        slot.turn.store(head_ + slots_.size(), std::memory_order_release);
        ++head_;
        return true;
    }

  private:
    struct Slot {
        static constexpr std::size_t inlineLength = 480;

        std::atomic<std::size_t> turn{0};
        std::size_t length = 0;
        std::array<char, inlineLength> inlineText;
        std::string longText;

        void put(std::string_view line) {
            length = line.size();
            if (length > inlineLength) {
                longText.assign(line);
            } else if (length > 0) {
                std::memcpy(inlineText.data(), line.data(), length);
            }
        }
        [[nodiscard]] std::string_view view() const {
            return length > inlineLength ? std::string_view(longText)
                                         : std::string_view(inlineText.data(), length);
        }
    };

    std::vector<Slot> slots_;
    std::atomic<std::size_t> tail_{0};
    std::size_t head_ = 0;
};

}  // namespace trelvan
