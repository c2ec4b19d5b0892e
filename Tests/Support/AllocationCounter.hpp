#pragma once

#include <cstdint>

namespace trelvan::test {

/// How often this process has allocated from the heap so far. Linking AllocationCounter.cpp counts.
[[nodiscard]] std::uint64_t allocationCount();

}  // namespace trelvan::test
