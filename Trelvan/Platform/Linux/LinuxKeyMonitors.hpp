#pragma once

#include "Platform/KeyMonitors.hpp"
#include "Platform/Linux/ModifierState.hpp"
#include "Platform/Linux/XEventPump.hpp"

#include <QObject>
#include <memory>
#include <vector>

class QKeyEvent;

namespace trelvan {

/// Key monitors: changes of the modifiers from the server's own notices, keys from Qt's events for the
/// program's windows. Global monitors are told of modifier changes only: what is typed into other programs is
/// none of this program's business. Main thread.
class LinuxKeyMonitors final : public QObject, public KeyMonitors, public XEventHandler {
  public:
    /// Made after the modifier state, whose news it passes on.
    LinuxKeyMonitors(XEventPump& pump, const ModifierState& modifiers);
    ~LinuxKeyMonitors() override;

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
    [[nodiscard]] bool anyLocalFor(EventType type) const;
    LocalAnswer tell(const KeyMonitorEvent& event, bool isLocal);
    [[nodiscard]] KeyMonitorEvent eventOf(const QKeyEvent& key, EventType type) const;

    XEventPump& pump_;
    const ModifierState& modifiers_;
    EventFlags lastFlags_;
    std::vector<std::weak_ptr<Entry>> entries_;
};

}  // namespace trelvan
