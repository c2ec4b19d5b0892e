#pragma once

#include <chrono>
#include <functional>

namespace trelvan::desktop {

/// How long a condition that must come true may take on a busy machine, unless a test says otherwise.
inline constexpr std::chrono::milliseconds timeout{10'000};

/// Asks `done` again and again until it answers true or the bound has passed. Its last answer.
bool waitUntil(const std::function<bool()>& done, std::chrono::milliseconds bound = timeout);

}  // namespace trelvan::desktop
