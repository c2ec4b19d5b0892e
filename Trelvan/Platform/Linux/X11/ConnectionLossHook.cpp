#include "Platform/Linux/X11/ConnectionLossHook.hpp"

#include <thread>
#include <utility>

namespace trelvan {

namespace {

std::function<void()> connectionLossHook;
std::thread::id owner;

}  // namespace

void setConnectionLossHook(std::function<void()> hook) {
    owner = std::this_thread::get_id();
    connectionLossHook = std::move(hook);
}

bool runConnectionLossHook() {
    if (std::this_thread::get_id() != owner) return false;
    const auto hook = std::exchange(connectionLossHook, nullptr);
    if (hook) hook();
    return hook != nullptr;
}

}  // namespace trelvan
