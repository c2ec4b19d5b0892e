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

void performLastWish() {
    if (std::this_thread::get_id() != owner) return;
    if (const auto wish = std::exchange(lastWish, nullptr)) wish();
}

}  // namespace trelvan
