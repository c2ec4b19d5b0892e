#include "Platform/Linux/LastWish.hpp"

#include <thread>
#include <utility>

namespace trelvan {

namespace {

std::function<void()> lastWish;
std::thread::id owner;

}  // namespace

void setLastWish(std::function<void()> wish) {
    owner = std::this_thread::get_id();
    lastWish = std::move(wish);
}

bool performLastWish() {
    if (std::this_thread::get_id() != owner) return false;
    const auto wish = std::exchange(lastWish, nullptr);
    if (wish) wish();
    return wish != nullptr;
}

}  // namespace trelvan
