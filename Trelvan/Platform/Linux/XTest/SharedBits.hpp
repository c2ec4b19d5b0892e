#pragma once

#include <array>
#include <atomic>
#include <bitset>
#include <cstddef>
#include <cstdint>

namespace trelvan {

/// A flag for each key code or button.
using CodeSet = std::bitset<256>;

/// The same in memory that two processes share. Any thread; each call on one code is one atomic step.
class SharedBits {
  public:
    void set(int code, bool on) {
        const auto index = static_cast<std::size_t>(code);
        const std::uint64_t bit = std::uint64_t{1} << (index % 64);
        if (on) {
            words_[index / 64].fetch_or(bit);
        } else {
            words_[index / 64].fetch_and(~bit);
        }
    }
    [[nodiscard]] bool test(int code) const {
        const auto index = static_cast<std::size_t>(code);
        return (words_[index / 64].load() >> (index % 64) & 1U) != 0;
    }
    [[nodiscard]] bool any() const { return all().any(); }

    [[nodiscard]] CodeSet all() const {
        CodeSet result;
        for (std::size_t word = words_.size(); word-- > 0;)
            result = result << 64 | CodeSet(words_[word].load());
        return result;
    }
    void clear(const CodeSet& codes) {
        for (std::size_t code = 0; code < codes.size(); ++code) {
            if (codes.test(code)) set(static_cast<int>(code), false);
        }
    }

  private:
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
    std::array<std::atomic<std::uint64_t>, 4> words_{};
};

}  // namespace trelvan
