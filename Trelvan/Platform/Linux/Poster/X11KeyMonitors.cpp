#include "Platform/Linux/Poster/X11KeyMonitors.hpp"

#include "Platform/Linux/X11/KeyTable.hpp"
#include "Platform/Linux/X11/PlainCharacters.hpp"
#include "Platform/Linux/X11/X11.hpp"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWindow>
#include <utility>

namespace trelvan {

namespace {

bool isOwnWindowFocused() {
    return QGuiApplication::focusWindow() != nullptr;
}

bool isModifier(int qtKey) {
    return (qtKey >= Qt::Key_Shift && qtKey <= Qt::Key_ScrollLock) || qtKey == Qt::Key_Super_L ||
           qtKey == Qt::Key_Super_R || qtKey == Qt::Key_Hyper_L || qtKey == Qt::Key_Hyper_R ||
           qtKey == Qt::Key_AltGr;
}

}  // namespace

class X11KeyMonitors::Installed final : public Monitor {
  public:
    explicit Installed(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;
    /// A monitor that goes away while it is being called is not called again either.
    ~Installed() override { entry_->mask = 0; }

  private:
    std::shared_ptr<Entry> entry_;
};

X11KeyMonitors::X11KeyMonitors(XEventPump& pump, const ModifierState& modifiers)
    : pump_(pump), modifiers_(modifiers), lastFlags_(modifiers.flags()) {
    pump_.add(*this);
    QCoreApplication::instance()->installEventFilter(this);
}

X11KeyMonitors::~X11KeyMonitors() {
    pump_.remove(*this);
}

std::unique_ptr<KeyMonitors::Monitor> X11KeyMonitors::addLocal(std::uint64_t mask, LocalHandler handler) {
    return install({.mask = mask, .local = std::move(handler), .global = nullptr});
}

std::unique_ptr<KeyMonitors::Monitor> X11KeyMonitors::addGlobal(std::uint64_t mask, GlobalHandler handler) {
    return install({.mask = mask, .local = nullptr, .global = std::move(handler)});
}

std::unique_ptr<KeyMonitors::Monitor> X11KeyMonitors::install(Entry entry) {
    std::erase_if(entries_, [](const auto& known) { return known.expired(); });
    auto shared = std::make_shared<Entry>(std::move(entry));
    entries_.push_back(shared);
    return std::make_unique<Installed>(std::move(shared));
}

bool X11KeyMonitors::anyFor(EventType type, bool isLocal) const {
    for (const auto& known : entries_) {
        const auto entry = known.lock();
        if (!entry || (entry->mask & maskBit(type)) == 0) continue;
        if (isLocal ? entry->local != nullptr : entry->global != nullptr) return true;
    }
    return false;
}

KeyMonitors::LocalAnswer X11KeyMonitors::tell(const KeyMonitorEvent& event, bool isLocal) {
    // A copy: a handler may install monitors and let go of them.
    const auto entries = entries_;
    for (const auto& known : entries) {
        const auto entry = known.lock();
        if (!entry || (entry->mask & maskBit(event.type)) == 0) continue;
        if (isLocal && entry->local && entry->local(event) == LocalAnswer::consume)
            return LocalAnswer::consume;
        if (!isLocal && entry->global) entry->global(event);
    }
    return LocalAnswer::passOn;
}

void X11KeyMonitors::handle(_XEvent& event) {
    if (event.type == pump_.connection().keyboardEventBase()) {
        const auto& notice = reinterpret_cast<const XkbEvent&>(event);
        if (notice.any.xkb_type == XkbStateNotify) modifiersChanged(notice.state.keycode);
        return;
    }
    if (event.type != GenericEvent || event.xcookie.extension != pump_.connection().inputOpcode()) return;
    const int type = event.xcookie.evtype;
    if (event.xcookie.data == nullptr || (type != XI_RawKeyPress && type != XI_RawKeyRelease)) return;
    rawKey(static_cast<const XIRawEvent*>(event.xcookie.data)->detail,
           type == XI_RawKeyPress ? EventType::keyDown : EventType::keyUp);
}

void X11KeyMonitors::modifiersChanged(int keycode) {
    const EventFlags flags = modifiers_.flags();
    if (std::exchange(lastFlags_, flags) == flags) return;
    // Programs may change the state without any key.
    const auto keyCode = KeyTable::keyCodeOfX(keycode);
    tell({.type = EventType::flagsChanged, .keyCode = keyCode.value_or(0), .flags = flags, .characters = {}},
         isOwnWindowFocused());
}

void X11KeyMonitors::rawKey(int keycode, EventType type) {
    if (!anyFor(type, false) || isOwnWindowFocused()) return;
    if (isModifierKey(pump_.connection().display(), keycode)) return;
    if (const auto event = eventOf(keycode, type, modifiers_.flags())) tell(*event, false);
}

std::optional<KeyMonitorEvent> X11KeyMonitors::eventOf(int keycode, EventType type, EventFlags flags) const {
    const auto keyCode = KeyTable::keyCodeOfX(keycode);
    if (!keyCode) return std::nullopt;
    return KeyMonitorEvent{.type = type,
                           .keyCode = *keyCode,
                           .flags = flags,
                           .characters = plainCharacters(pump_.connection().display(), keycode)};
}

bool X11KeyMonitors::eventFilter(QObject* receiver, QEvent* event) {
    const bool isDown = event->type() == QEvent::KeyPress;
    if (event->type() == QEvent::ShortcutOverride) {
        // Whoever looks at keys sees them before any shortcut of the window takes them.
        if (!anyFor(EventType::keyDown, true)) return false;
        event->accept();
        return true;
    }
    if (!isDown && event->type() != QEvent::KeyRelease) return false;
    // Each event goes to the window first and then from widget to widget; the first is enough.
    if (qobject_cast<QWindow*>(receiver) == nullptr) return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (isModifier(key.key()) || (!isDown && key.isAutoRepeat())) return false;
    const auto type = isDown ? EventType::keyDown : EventType::keyUp;
    if (!anyFor(type, true)) return false;
    // The state that came with the event: news of the modifiers, on another connection, may be behind.
    const auto told =
        eventOf(static_cast<int>(key.nativeScanCode()), type, modifiers_.flagsOf(key.nativeModifiers()));
    return told && tell(*told, true) == LocalAnswer::consume;
}

}  // namespace trelvan
