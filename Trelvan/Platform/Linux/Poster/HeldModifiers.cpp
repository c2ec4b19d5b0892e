#include "Platform/Linux/Poster/HeldModifiers.hpp"

#include "Platform/Linux/X11/KeyTable.hpp"
#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XErrorScope.hpp"
#include "Platform/Linux/XTest/XTestDevices.hpp"

#include <algorithm>
#include <memory>
#include <string_view>

namespace trelvan {

namespace {

using DeviceList = std::unique_ptr<XIDeviceInfo, decltype(&XIFreeDeviceInfo)>;

constexpr std::string_view xtestSuffix = "XTEST keyboard";

}  // namespace

CodeSet HeldModifiers::physicallyDown() const {
    CodeSet down;
    const XErrorScope scope(display_);
    int count = 0;
    const DeviceList devices(XIQueryDevice(display_, XIAllDevices, &count), &XIFreeDeviceInfo);
    for (int index = 0; devices && index < count; ++index) {
        const XIDeviceInfo& info = devices.get()[index];
        if (info.use != XISlaveKeyboard || !info.enabled) continue;
        if (std::string_view(info.name).ends_with(xtestSuffix)) continue;
        down |= queryDeviceState(display_, info.deviceid).keys;
    }
    return down;
}

void HeldModifiers::suspendAllBut(unsigned wanted, const ModifierMap& map) {
    XkbStateRec state{};
    XkbGetState(display_, XkbUseCoreKbd, &state);
    const unsigned caps = LockMask;
    const unsigned unwanted = state.base_mods & ~wanted & ~caps;
    if (unwanted == 0) return;
    map_ = map;
    menuModifiers_ = map.super | map.alt;
    const auto down = physicallyDown();
    std::vector<int> lifted;
    for (const int keycode : map.keycodes(unwanted)) {
        if ((map.modifiersOf(keycode) & wanted) != 0 || ledger_.isKeyDown(keycode)) continue;
        if (down.test(static_cast<std::size_t>(keycode))) lifted.push_back(keycode);
    }
    mask(lifted);
    for (const int keycode : lifted) {
        std::erase(putBack_, keycode);
        liftPutBack(keycode);
        suspended_.push_back(keycode);
    }
}

void HeldModifiers::noteLifted(int keycode, const ModifierMap& map) {
    map_ = map;
    menuModifiers_ = map.super | map.alt;
    if (std::ranges::find(suspended_, keycode) == suspended_.end()) suspended_.push_back(keycode);
}

void HeldModifiers::abandon() {
    for (const int keycode : putBack_) liftPutBack(keycode);
    putBack_.clear();
    suspended_.clear();
}

void HeldModifiers::resume() {
    if (suspended_.empty()) return;
    const auto down = physicallyDown();
    std::vector<int> back;
    for (const int keycode : suspended_) {
        if (!down.test(static_cast<std::size_t>(keycode))) continue;
        back.push_back(keycode);
        putBack_.push_back(keycode);
        account_.set(keycode, true);
        XTestFakeKeyEvent(display_, static_cast<unsigned>(keycode), x11::yes, CurrentTime);
    }
    suspended_.clear();
    mask(back);
    // The user may have let go between the question and the press.
    settle();
}

void HeldModifiers::mask(const std::vector<int>& keycodes) {
    const bool opensMenus = std::ranges::any_of(
        keycodes, [&](int keycode) { return (map_.modifiersOf(keycode) & menuModifiers_) != 0; });
    const auto control = KeyTable::xKeycode(key::control);
    if (!opensMenus || !control || ledger_.isKeyDown(*control)) return;
    ledger_.key(*control, true);
    ledger_.key(*control, false);
}

void HeldModifiers::settle() {
    if (putBack_.empty()) return;
    const auto down = physicallyDown();
    std::erase_if(putBack_, [&](int keycode) {
        if (down.test(static_cast<std::size_t>(keycode))) return false;
        liftPutBack(keycode);
        return true;
    });
}

void HeldModifiers::forgetBeforePress(int keycode) {
    if (std::erase(putBack_, keycode) > 0) liftPutBack(keycode);
}

void HeldModifiers::liftPutBack(int keycode) {
    ledger_.key(keycode, false);
    account_.set(keycode, false);
}

}  // namespace trelvan
