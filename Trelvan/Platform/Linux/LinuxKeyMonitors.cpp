#include "Platform/Linux/LinuxKeyMonitors.hpp"

#include "Platform/Linux/KeyTable.hpp"
#include "Platform/Linux/X11.hpp"

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

class LinuxKeyMonitors::Installed final : public Monitor {
  public:
    explicit Installed(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;
    /// A monitor that goes away while it is being called is not called again either.
    ~Installed() override { entry_->mask = 0; }

  private:
    std::shared_ptr<Entry> entry_;
};

LinuxKeyMonitors::LinuxKeyMonitors(XEventPump& pump, const ModifierState& modifiers)
    : pump_(pump), modifiers_(modifiers), lastFlags_(modifiers.flags()) {
    pump_.add(*this);
    QCoreApplication::instance()->installEventFilter(this);
}

LinuxKeyMonitors::~LinuxKeyMonitors() {
    pump_.remove(*this);
}

std::unique_ptr<KeyMonitors::Monitor> LinuxKeyMonitors::addLocal(std::uint64_t mask, LocalHandler handler) {
    return install({.mask = mask, .local = std::move(handler), .global = nullptr});
}

std::unique_ptr<KeyMonitors::Monitor> LinuxKeyMonitors::addGlobal(std::uint64_t mask, GlobalHandler handler) {
    if ((mask & ~maskBit(EventType::flagsChanged)) != 0) return nullptr;
    return install({.mask = mask, .local = nullptr, .global = std::move(handler)});
}

std::unique_ptr<KeyMonitors::Monitor> LinuxKeyMonitors::install(Entry entry) {
    std::erase_if(entries_, [](const auto& known) { return known.expired(); });
    auto shared = std::make_shared<Entry>(std::move(entry));
    entries_.push_back(shared);
    return std::make_unique<Installed>(std::move(shared));
}

bool LinuxKeyMonitors::anyLocalFor(EventType type) const {
    for (const auto& known : entries_) {
        const auto entry = known.lock();
        if (entry && entry->local && (entry->mask & maskBit(type)) != 0) return true;
    }
    return false;
}

KeyMonitors::LocalAnswer LinuxKeyMonitors::tell(const KeyMonitorEvent& event, bool isLocal) {
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

void LinuxKeyMonitors::handle(_XEvent& event) {
    if (event.type != pump_.connection().keyboardEventBase()) return;
    const auto& notice = reinterpret_cast<const XkbEvent&>(event);
    if (notice.any.xkb_type != XkbStateNotify) return;
    const EventFlags flags = modifiers_.flags();
    if (std::exchange(lastFlags_, flags) == flags) return;
    const auto keyCode = KeyTable::keyCodeOfX(notice.state.keycode);
    tell({.type = EventType::flagsChanged, .keyCode = keyCode.value_or(0), .flags = flags, .characters = {}},
         isOwnWindowFocused());
}

KeyMonitorEvent LinuxKeyMonitors::eventOf(const QKeyEvent& key, EventType type) const {
    QString characters = key.text();
    // Control turns letters into control characters; the key still types the letter.
    if ((characters.isEmpty() || !characters.front().isPrint()) && key.key() > 0 &&
        key.key() < Qt::Key_Escape) {
        characters = QString(QChar(static_cast<char16_t>(key.key()))).toLower();
    }
    const auto keyCode = KeyTable::keyCodeOfX(static_cast<int>(key.nativeScanCode()));
    return {.type = type,
            .keyCode = keyCode.value_or(0),
            .flags = modifiers_.flags(),
            .characters = characters.toStdString()};
}

bool LinuxKeyMonitors::eventFilter(QObject* receiver, QEvent* event) {
    const bool isDown = event->type() == QEvent::KeyPress;
    if (event->type() == QEvent::ShortcutOverride) {
        // Whoever looks at keys sees them before any shortcut of the window takes them.
        if (!anyLocalFor(EventType::keyDown)) return false;
        event->accept();
        return true;
    }
    if (!isDown && event->type() != QEvent::KeyRelease) return false;
    // Each event goes to the window first and then from widget to widget; the first is enough.
    if (qobject_cast<QWindow*>(receiver) == nullptr) return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (isModifier(key.key()) || (!isDown && key.isAutoRepeat())) return false;
    const auto type = isDown ? EventType::keyDown : EventType::keyUp;
    return anyLocalFor(type) && tell(eventOf(key, type), true) == LocalAnswer::consume;
}

}  // namespace trelvan
