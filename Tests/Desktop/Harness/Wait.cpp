#include "Desktop/Harness/Wait.hpp"

#include <poll.h>

namespace trelvan::desktop {

bool waitUntil(const std::function<bool()>& done, std::chrono::milliseconds bound) {
    const auto end = std::chrono::steady_clock::now() + bound;
    while (!done()) {
        if (std::chrono::steady_clock::now() >= end) return done();
        ::poll(nullptr, 0, 2);  // only spares the processor; the answer is always asked for again
    }
    return true;
}

}  // namespace trelvan::desktop
