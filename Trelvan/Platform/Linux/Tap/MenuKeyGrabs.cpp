#include "Platform/Linux/Tap/MenuKeyGrabs.hpp"

#include <xcb/xcb.h>

#include <cstdlib>
#include <utility>

namespace trelvan {

namespace {

constexpr int eventTypeBits = 0x7F;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

}  // namespace

MenuKeyGrabs::~MenuKeyGrabs() {
    page_.menuKeys = 0;
    if (connection_ != nullptr) xcb_disconnect(connection_);
}

bool MenuKeyGrabs::connect() {
    if (connection_ != nullptr) return xcb_connection_has_error(connection_) == 0;
    int number = 0;
    connection_ = xcb_connect(nullptr, &number);
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        connection_ = nullptr;
        return false;
    }
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    while (number-- > 0 && screens.rem > 1) xcb_screen_next(&screens);
    root_ = screens.data->root;
    resource_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, resource_, root_, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    return true;
}

void MenuKeyGrabs::grab(const Combination& combination) {
    // On the root window, for they are wanted whichever window has the focus.
    xcb_grab_key(connection_, 0, root_, static_cast<std::uint16_t>(combination.modifiers),
                 static_cast<xcb_keycode_t>(combination.keycode), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
}

void MenuKeyGrabs::waitForServer() {
    const std::unique_ptr<xcb_get_input_focus_reply_t, Free> answer(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

bool MenuKeyGrabs::hold(std::vector<Combination> combinations) {
    const std::lock_guard lock(mutex_);
    if (!connect()) return false;
    if (isHolding_ && held_ == combinations) return true;
    // What was pressed already stays to be read: a key of another keyboard changes the map as it comes.
    if (isHolding_) xcb_ungrab_key(connection_, XCB_GRAB_ANY, root_, XCB_MOD_MASK_ANY);
    held_ = std::move(combinations);
    page_.menuKeys = resource_;
    isHolding_ = true;
    for (const auto& each : held_) grab(each);
    xcb_flush(connection_);
    return true;
}

void MenuKeyGrabs::letGo() {
    const std::lock_guard lock(mutex_);
    if (!isHolding_.exchange(false)) return;
    held_.clear();
    xcb_ungrab_key(connection_, XCB_GRAB_ANY, root_, XCB_MOD_MASK_ANY);
    waitForServer();
    page_.menuKeys = 0;
    // What was pressed for a menu that is closed is nothing to the next one.
    while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_poll_for_event(connection_)}) {
    }
}

std::vector<MenuKeyGrabs::KeyEvent> MenuKeyGrabs::read() {
    const std::lock_guard lock(mutex_);
    std::vector<KeyEvent> result;
    if (connection_ == nullptr) return result;
    while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_poll_for_event(connection_)}) {
        const int type = event->response_type & eventTypeBits;
        if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE) continue;
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(*event);
        result.push_back({.keycode = key.detail, .modifiers = key.state, .down = type == XCB_KEY_PRESS});
    }
    return result;
}

bool MenuKeyGrabs::dropIfLost() {
    const std::lock_guard lock(mutex_);
    if (connection_ == nullptr || xcb_connection_has_error(connection_) == 0) return false;
    xcb_disconnect(connection_);
    connection_ = nullptr;
    held_.clear();
    page_.menuKeys = 0;
    isHolding_ = false;
    return true;
}

int MenuKeyGrabs::descriptor() const {
    return connection_ != nullptr ? xcb_get_file_descriptor(connection_) : -1;
}

MenuKeyGrabs::Gap::Gap(MenuKeyGrabs& grabs, int keycode) : keycode_(keycode), lock_(grabs.mutex_) {
    if (!grabs.isHolding_) {
        lock_.unlock();
        return;
    }
    grabs_ = &grabs;
    // While one of the keys is down its grab is an active one, and all other keys go the same way.
    xcb_ungrab_keyboard(grabs.connection_, XCB_CURRENT_TIME);
    for (const auto& each : grabs.held_) {
        if (each.keycode == keycode)
            xcb_ungrab_key(grabs.connection_, static_cast<xcb_keycode_t>(keycode), grabs.root_,
                           static_cast<std::uint16_t>(each.modifiers));
    }
    grabs.waitForServer();
}

MenuKeyGrabs::Gap::~Gap() {
    if (grabs_ == nullptr) return;
    for (const auto& each : grabs_->held_) {
        if (each.keycode == keycode_) grabs_->grab(each);
    }
    xcb_flush(grabs_->connection_);
    lock_.unlock();
    if (grabs_->onRead) grabs_->onRead();
}

}  // namespace trelvan
