#pragma once

#include "Platform/Linux/Shell/Accelerator.hpp"

#include <ostream>

namespace trelvan {

/// For test output.
inline void PrintTo(const Accelerator& accelerator, std::ostream* out) {
    *out << std::hex << "keysym " << accelerator.keysym << " flags " << accelerator.flags << std::dec;
}

}  // namespace trelvan
