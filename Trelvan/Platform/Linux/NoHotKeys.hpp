#pragma once

#include "Platform/HotKeyTable.hpp"

namespace trelvan {

/// No symbolic hot keys: each desktop keeps its shortcuts in a store of its own, and none of them is read
/// yet. Any thread.
class NoHotKeys : public HotKeyTable {
  public:
    [[nodiscard]] std::optional<HotKeyEntry> entry(int /*id*/) const override { return std::nullopt; }
};

}  // namespace trelvan
