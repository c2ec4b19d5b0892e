#pragma once

#include <cstdio>
#include <cstdlib>

namespace trelvan {

/// Ends the process over a broken invariant, saying which. For conditions that no input can bring about.
[[noreturn]] inline void fatal(const char* what) {
    std::fprintf(stderr, "trelvan: fatal: %s\n", what);
    std::abort();
}

}  // namespace trelvan
