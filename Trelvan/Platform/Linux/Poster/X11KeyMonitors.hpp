#pragma once

#include "Platform/KeyMonitors.hpp"
#include "Platform/Linux/X11/ModifierState.hpp"
#include "Platform/Linux/X11/XEventPump.hpp"

#include <QObject>
#include <memory>
#include <optional>
#include <vector>

namespace trelvan {

/// Key monitors: changes of the modifiers from the server's own notices, keys from Qt's events for the
/// program's windows and from the server's raw events for all others, which are looked at only while a
/// monitor wants them. Keys without a place on a macOS keyboard are not told. Main thread.
class X11KeyMonitors final : public QObject, public KeyMonitors, public XEventHandler {
  public:
    /// Made after the modifier state, whose news it passes on. Raw events are those that the input state asks
    /// the server for.
    X11KeyMonitors(XEventPump& pump, const ModifierState& modifiers);
    ~X11KeyMonitors() override;

    [[nodiscard]] std::unique_ptr<Monitor> addLocal(std::uint64_t mask, LocalHandler handler) override;
    [[nodiscard]] std::unique_ptr<Monitor> addGlobal(std::uint64_t mask, GlobalHandler handler) override;

    void handle(_XEvent& event) override;
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    struct Entry {
        std::uint64_t mask = 0;
        LocalHandler local;
        GlobalHandler global;
    };
    class Installed;

    [[nodiscard]] std::unique_ptr<Monitor> install(Entry entry);
    [[nodiscard]] bool anyFor(EventType type, bool isLocal) const;
    LocalAnswer tell(const KeyMonitorEvent& event, bool isLocal);
    void modifiersChanged(int keycode);
    void rawKey(int keycode, EventType type);
    /// None for a key without a code.
    [[nodiscard]] std::optional<KeyMonitorEvent> eventOf(int keycode, EventType type, EventFlags flags) const;

    XEventPump& pump_;
    const ModifierState& modifiers_;
    EventFlags lastFlags_;
    std::vector<std::weak_ptr<Entry>> entries_;
};

}  // namespace trelvan
