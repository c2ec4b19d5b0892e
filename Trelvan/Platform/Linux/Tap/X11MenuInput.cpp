#include "Platform/Linux/Tap/X11MenuInput.hpp"

#include "Platform/Linux/Tap/MenuKeyTable.hpp"
#include "Platform/Linux/X11/X11.hpp"
#include "Utilities/Logger.hpp"

#include <QObject>
#include <QSocketNotifier>
#include <algorithm>

namespace trelvan {

namespace {

constexpr unsigned groupShift = 13;
/// Of the core protocol's state: the modifiers without the buttons and the group.
constexpr unsigned modifierBits = 0xFF;

KeySym symbol(Display* display, int keycode, unsigned state) {
    unsigned unused = 0;
    KeySym result = NoSymbol;
    XkbLookupKeySym(display, static_cast<::KeyCode>(keycode), state, &unused, &result);
    return result;
}

/// Each selection of the modifiers in the mask, none and all included.
std::vector<unsigned> selections(unsigned mask) {
    std::vector<unsigned> result;
    unsigned each = mask;
    do {
        result.push_back(each);
        each = (each - 1) & mask;
    } while (each != mask);
    return result;
}

bool isWheel(int xButton) {
    return xButton >= 4 && xButton <= 7;
}

}  // namespace

class X11MenuInput::Opened final : public Session {
  public:
    Opened(X11MenuInput& owner, Handlers given) : handlers(std::move(given)), owner_(owner) {}
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    ~Opened() override { owner_.close(*this); }

    const Handlers handlers;

  private:
    X11MenuInput& owner_;
};

X11MenuInput::X11MenuInput(XEventPump& pump, MenuKeyGrabs& grabs)
    : pump_(pump), grabs_(grabs), context_(std::make_unique<QObject>()) {
    grabs_.onRead = [this] {
        QMetaObject::invokeMethod(
            context_.get(), [this] { readKeys(); }, Qt::QueuedConnection);
    };
    pump_.add(*this);
}

X11MenuInput::~X11MenuInput() {
    grabs_.onRead = nullptr;
    pump_.remove(*this);
}

std::unique_ptr<MenuInput::Session> X11MenuInput::open(std::uintptr_t window, std::size_t entries,
                                                       Handlers handlers) {
    auto session = std::make_unique<Opened>(*this, std::move(handlers));
    ++sessions_;
    opened_ = session.get();
    window_ = window;
    entries_ = entries;
    down_.clear();
    // Keys that were pressed for a menu in whose place this one opens are not for this one.
    grabs_.letGo();
    grabKeys();
    return session;
}

void X11MenuInput::close(const Opened& session) {
    if (opened_ != &session) return;
    opened_ = nullptr;
    grabs_.letGo();
}

void X11MenuInput::grabKeys() {
    Display* display = pump_.connection().display();
    XkbStateRec state{};
    XkbGetState(display, XkbUseCoreKbd, &state);
    group_ = state.group;
    locks_ =
        LockMask | XkbKeysymToModifiers(display, XK_Num_Lock) | XkbKeysymToModifiers(display, XK_Scroll_Lock);
    int lowest = 0;
    int highest = 0;
    XDisplayKeycodes(display, &lowest, &highest);
    std::vector<MenuKeyGrabs::Combination> wanted;
    for (const unsigned locks : selections(locks_)) {
        for (int keycode = lowest; keycode <= highest; ++keycode) {
            if (meaning(keycode, locks)) wanted.push_back({.keycode = keycode, .modifiers = locks});
        }
    }
    // One that was killed is replaced.
    if (grabs_.dropIfLost()) notifier_.reset();
    if (!grabs_.hold(std::move(wanted))) {
        AppLogger.warning("Sin conexión para las teclas del Smart Button: solo responde al puntero");
        return;
    }
    if (notifier_) return;
    notifier_ = std::make_unique<QSocketNotifier>(grabs_.descriptor(), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, context_.get(), [this] { readKeys(); });
}

std::optional<MenuKey> X11MenuInput::meaning(int keycode, unsigned locks) const {
    Display* display = pump_.connection().display();
    const unsigned state = locks | group_ << groupShift;
    const auto key =
        menuKeyOf(keycode, symbol(display, keycode, state), symbol(display, keycode, state | ShiftMask));
    if (!key) return std::nullopt;
    const auto entry = entryOf(*key);
    return !entry || *entry < entries_ ? key : std::nullopt;
}

void X11MenuInput::readKeys() {
    const unsigned session = sessions_;
    for (const auto& event : grabs_.read()) {
        if (opened_ == nullptr || sessions_ != session) return;
        tell(event);
    }
    if (!grabs_.dropIfLost()) return;
    if (notifier_) {
        notifier_->setEnabled(false);
        notifier_.release()->deleteLater();
    }
    // The guard has taken the window away too.
    if (opened_ != nullptr && opened_->handlers.leave) {
        const auto leave = opened_->handlers.leave;
        leave();
    }
}

void X11MenuInput::tell(const MenuKeyGrabs::KeyEvent& event) {
    const auto known = std::ranges::find(down_, event.keycode, [](const auto& each) { return each.first; });
    std::optional<MenuKey> key;
    if (event.down) {
        key = meaning(event.keycode, event.modifiers & locks_);
        // While one of the keys is down the others come here too.
        if (!key || (event.modifiers & modifierBits & ~locks_) != 0) return;
        if (known == down_.end()) {
            down_.emplace_back(event.keycode, *key);
        } else {
            known->second = *key;
        }
    } else {
        if (known == down_.end()) return;
        key = known->second;
        down_.erase(known);
    }
    // A copy: the handler may let go of the session.
    const auto handler = event.down ? opened_->handlers.keyDown : opened_->handlers.keyUp;
    if (handler) handler(*key);
}

bool X11MenuInput::isPointerOnMenu() const {
    Window root = 0;
    Window child = 0;
    int x = 0;
    int y = 0;
    int windowX = 0;
    int windowY = 0;
    unsigned mask = 0;
    XQueryPointer(pump_.connection().display(), pump_.connection().root(), &root, &child, &x, &y, &windowX,
                  &windowY, &mask);
    return child == window_;
}

void X11MenuInput::handle(_XEvent& event) {
    if (opened_ == nullptr) return;
    if (event.type == MappingNotify) return grabKeys();
    if (event.type == pump_.connection().keyboardEventBase()) {
        const int what = reinterpret_cast<const XkbEvent&>(event).any.xkb_type;
        if (what == XkbMapNotify || what == XkbNewKeyboardNotify) grabKeys();
        return;
    }
    if (event.type != GenericEvent || event.xcookie.extension != pump_.connection().inputOpcode()) return;
    if (event.xcookie.data == nullptr || event.xcookie.evtype != XI_RawButtonPress) return;
    if (isWheel(static_cast<const XIRawEvent*>(event.xcookie.data)->detail) || isPointerOnMenu()) return;
    const auto leave = opened_->handlers.leave;
    if (leave) leave();
}

}  // namespace trelvan
