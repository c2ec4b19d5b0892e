#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace trelvan {

/// A few X identifiers in memory that two processes share. Any thread; each call on one identifier is one
/// atomic step. No identifier is 0.
class SharedIds {
  public:
    static constexpr std::size_t most = 16;

    /// False when there is no room. One that is there already stays there once.
    bool add(std::uint32_t id) {
        for (const auto& each : ids_) {
            if (each.load() == id) return true;
        }
        for (auto& each : ids_) {
            std::uint32_t empty = 0;
            if (each.compare_exchange_strong(empty, id)) return true;
        }
        return false;
    }
    void remove(std::uint32_t id) {
        for (auto& each : ids_) {
            std::uint32_t present = id;
            each.compare_exchange_strong(present, 0);
        }
    }
    [[nodiscard]] bool any() const {
        for (const auto& each : ids_) {
            if (each.load() != 0) return true;
        }
        return false;
    }
    /// Empties the list and calls `use` with each identifier that was in it.
    template <typename Use>
    void take(const Use& use) {
        for (auto& each : ids_) {
            if (const std::uint32_t id = each.exchange(0); id != 0) use(id);
        }
    }

  private:
    static_assert(std::atomic<std::uint32_t>::is_always_lock_free);
    std::array<std::atomic<std::uint32_t>, most> ids_{};
};

}  // namespace trelvan
