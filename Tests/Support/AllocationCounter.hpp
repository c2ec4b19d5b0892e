#pragma once

#include <cstddef>

namespace trelvan::test {

/// How many times this thread has taken memory with `new`.
[[nodiscard]] std::size_t allocationCount();

}  // namespace trelvan::test
