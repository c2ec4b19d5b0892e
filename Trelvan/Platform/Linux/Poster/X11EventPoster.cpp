#include "Platform/Linux/Poster/X11EventPoster.hpp"

#include "Platform/Linux/X11/ActivityLog.hpp"
#include "Platform/Linux/X11/KeyTable.hpp"
#include "Platform/Linux/X11/KeyboardLayout.hpp"
#include "Platform/Linux/X11/PointerLocation.hpp"
#include "Platform/Linux/X11/X11.hpp"
#include "Platform/Linux/X11/XButtons.hpp"
#include "Utilities/Logger.hpp"

#include <algorithm>
#include <string_view>

namespace trelvan {

namespace {

/// The states in the middle byte of a media key's data.
constexpr std::int64_t mediaDown = 0xA;
constexpr std::int64_t mediaUp = 0xB;

struct ButtonEdge {
    bool isButton = false;
    bool down = false;
};

/// Whether the keyboard mapping numbers its keys as the kernel does, which the key table takes for granted.
bool usesKernelKeycodes(Display* display) {
    XkbDescPtr keyboard = XkbAllocKeyboard();
    if (keyboard == nullptr) return true;
    bool result = true;
    if (XkbGetNames(display, XkbKeycodesNameMask, keyboard) == x11::success && keyboard->names != nullptr) {
        const Atom atom = keyboard->names->keycodes;
        char* name = atom != x11::none ? XGetAtomName(display, atom) : nullptr;
        result = name == nullptr || std::string_view(name).starts_with("evdev");
        if (name != nullptr) XFree(name);
    }
    XkbFreeKeyboard(keyboard, 0, x11::yes);
    return result;
}

ButtonEdge edgeOf(EventType type) {
    switch (type) {
        case EventType::leftMouseDown:
        case EventType::rightMouseDown:
        case EventType::otherMouseDown:
            return {.isButton = true, .down = true};
        case EventType::leftMouseUp:
        case EventType::rightMouseUp:
        case EventType::otherMouseUp:
            return {.isButton = true, .down = false};
        default:
            return {};
    }
}

bool isMotion(EventType type) {
    return type == EventType::mouseMoved || type == EventType::leftMouseDragged ||
           type == EventType::rightMouseDragged || type == EventType::otherMouseDragged;
}

}  // namespace

X11EventPoster::X11EventPoster(std::unique_ptr<XConnection> connection, PointerPipeline& pipeline,
                               MenuKeyGrabs& menuKeys, PressedState& page, const EventOrigin& origin)
    : connection_(std::move(connection)),
      pipeline_(pipeline),
      menuKeys_(menuKeys),
      origin_(origin),
      ledger_(connection_->display(), page.byPoster),
      held_(connection_->display(), ledger_, page.putBack),
      map_(ModifierMap::read(connection_->display())),
      mediaKeys_(connection_->display()) {
    XkbSelectEvents(connection_->display(), XkbUseCoreKbd, XkbMapNotifyMask | XkbNewKeyboardNotifyMask,
                    XkbMapNotifyMask | XkbNewKeyboardNotifyMask);
    if (!usesKernelKeycodes(connection_->display())) {
        AppLogger.warning("El teclado del servidor X no usa los códigos evdev: los atajos pueden salir mal");
    }
}

X11EventPoster::~X11EventPoster() {
    const std::lock_guard lock(mutex_);
    ledger_.releaseAll();
    held_.abandon();
    XSync(connection_->display(), x11::no);
}

std::optional<KeyEvent> X11EventPoster::makeKey(EventSourceState /*source*/, KeyCode keyCode, bool down,
                                                EventFlags flags) {
    if (!KeyTable::xKeycode(keyCode)) return std::nullopt;
    return KeyEvent{.keyCode = keyCode, .down = down, .flags = flags, .native = {}};
}

std::optional<MouseEvent> X11EventPoster::makeMouse(EventType type, std::int64_t buttonNumber,
                                                    TopLeftPoint location) {
    const bool isKnown = edgeOf(type).isButton ? xButton(buttonNumber).has_value() : isMotion(type);
    if (!isKnown) return std::nullopt;
    return MouseEvent{.type = type, .buttonNumber = buttonNumber, .location = location, .native = {}};
}

std::optional<KeyChord> X11EventPoster::keyTyping(char32_t character) {
    return keyFor(KeyboardLayout::keysym(character));
}

std::optional<KeyChord> X11EventPoster::keyFor(unsigned long keysym) {
    const std::lock_guard lock(mutex_);
    refresh();
    return KeyboardLayout::inUse(connection_->display()).find(keysym);
}

void X11EventPoster::refresh() {
    Display* display = connection_->display();
    bool changed = false;
    while (XPending(display) > 0) {
        XEvent event;
        XNextEvent(display, &event);
        if (event.type == MappingNotify) {
            XRefreshKeyboardMapping(&event.xmapping);
            changed = true;
        } else if (event.type == connection_->keyboardEventBase()) {
            auto& notice = reinterpret_cast<XkbEvent&>(event);
            if (notice.any.xkb_type == XkbMapNotify) XkbRefreshKeyboardMapping(&notice.map);
            changed = true;
        }
    }
    if (changed) map_ = ModifierMap::read(display);
}

void X11EventPoster::post(const KeyEvent& event, TapLocation /*at*/) {
    const auto keycode = KeyTable::xKeycode(event.keyCode);
    if (!keycode) return;
    const std::lock_guard lock(mutex_);
    refresh();
    if (event.down) {
        pressKey(*keycode, event.flags);
    } else {
        releaseKey(*keycode);
    }
    send();
}

void X11EventPoster::pressKey(int keycode, EventFlags flags) {
    const MenuKeyGrabs::Gap gap = menuKeys_.letThrough(keycode);
    const unsigned wanted = map_.modifiers(flags);
    held_.settle();
    held_.suspendAllBut(wanted, map_);
    if (map_.modifiersOf(keycode) == 0) {
        liftUnwanted(wanted);
        pressMissing(keycode, wanted);
        // Shortcuts in a quick row overlap: one presses the key while the last still holds it, which the
        // server would not pass on.
        if (ledger_.isKeyDown(keycode)) ledger_.key(keycode, false);
    }
    held_.forgetBeforePress(keycode);
    ledger_.key(keycode, true);
    if (gap.isOpen()) XSync(connection_->display(), x11::no);
}

void X11EventPoster::liftUnwanted(unsigned wanted) {
    for (const int modifier : map_.keycodes(~wanted & ModifierMap::all)) {
        if (ledger_.isKeyDown(modifier) && (map_.modifiersOf(modifier) & wanted) == 0) lift(modifier);
    }
}

void X11EventPoster::pressMissing(int keycode, unsigned wanted) {
    XkbStateRec state{};
    XkbGetState(connection_->display(), XkbUseCoreKbd, &state);
    for (const KeyCode modifier : {key::control, key::option, key::shift, key::command}) {
        const auto companion = KeyTable::xKeycode(modifier);
        const unsigned sets = companion ? map_.modifiersOf(*companion) : 0;
        if ((sets & wanted) == 0 || (sets & state.mods) != 0) continue;
        held_.forgetBeforePress(*companion);
        if (ledger_.isKeyDown(*companion)) {
            // It went up with the user's own key of the same code; its owner lifts it again.
            ledger_.key(*companion, false);
            ledger_.key(*companion, true);
            continue;
        }
        ledger_.key(*companion, true);
        companions_[static_cast<std::size_t>(keycode)].push_back(*companion);
    }
}

void X11EventPoster::releaseKey(int keycode) {
    lift(keycode);
    auto& companions = companions_[static_cast<std::size_t>(keycode)];
    while (!companions.empty()) {
        lift(companions.back());
        companions.pop_back();
    }
    if (!ledger_.anyKeyDown()) held_.resume();
}

void X11EventPoster::lift(int keycode) {
    ledger_.key(keycode, false);
    if (map_.modifiersOf(keycode) != 0) held_.noteLifted(keycode, map_);
}

void X11EventPoster::post(const MouseEvent& event, TapLocation /*at*/) {
    const std::lock_guard lock(mutex_);
    moveTo(origin_.pixel(event.location));
    const ButtonEdge edge = edgeOf(event.type);
    const auto button = xButton(event.buttonNumber);
    if (edge.isButton && button) ledger_.button(*button, edge.down);
    send();
}

void X11EventPoster::moveTo(Pixel place) {
    // A movement of nothing is still a movement to the applications.
    if (pointerLocation(connection_->display(), connection_->root()) == place) return;
    XTestFakeMotionEvent(connection_->display(), -1, place.x, place.y, CurrentTime);
}

void X11EventPoster::post(const MediaKeyEvent& event, TapLocation /*at*/) {
    const std::int64_t state = (event.data1 >> 8) & 0xF;
    if (state != mediaDown && state != mediaUp) return;
    const std::lock_guard lock(mutex_);
    refresh();
    const auto keycode = mediaKeys_.keycode((event.data1 >> 16) & 0xFFFF);
    if (!keycode) return;
    // The modifiers that chose the function must not turn the key into another one.
    if (state == mediaDown) {
        pressKey(*keycode, 0);
    } else {
        releaseKey(*keycode);
    }
    send();
}

bool X11EventPoster::postCopy(const TapEvent& changed, TapLocation /*at*/) {
    return pipeline_.sendCopy(changed);
}

void X11EventPoster::send() {
    lastPost_ = std::chrono::steady_clock::now();
    XFlush(connection_->display());
}

bool X11EventPoster::hasJustPosted() const {
    return std::chrono::steady_clock::now() - lastPost_.load() < ActivityLog::returnTime;
}

void X11EventPoster::physicalKeyReleased() {
    const std::lock_guard lock(mutex_);
    if (!held_.anyPutBack()) return;
    held_.settle();
    XFlush(connection_->display());
}

void X11EventPoster::releaseAll() {
    const std::lock_guard lock(mutex_);
    ledger_.releaseAll();
    for (auto& companions : companions_) companions.clear();
    held_.resume();
    XFlush(connection_->display());
}

}  // namespace trelvan
