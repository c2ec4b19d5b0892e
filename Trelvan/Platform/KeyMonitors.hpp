#pragma once

#include "Platform/Quartz.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace trelvan {

/// A key event as a monitor sees it.
struct KeyMonitorEvent {
    /// `keyDown`, `keyUp` or `flagsChanged`.
    EventType type = EventType::flagsChanged;
    KeyCode keyCode = 0;
    /// The modifiers held, Caps Lock included.
    EventFlags flags = 0;
    /// What the key types without its modifiers, UTF-8, or a short name of it; empty for `flagsChanged`.
    std::string characters;
};

/// Looks at key events without standing in their pipeline. Main thread.
class KeyMonitors {
  public:
    /// What a local monitor does with the event: passes it to the window, or keeps it.
    enum class LocalAnswer : std::uint8_t { passOn, consume };
    using LocalHandler = std::function<LocalAnswer(const KeyMonitorEvent&)>;
    using GlobalHandler = std::function<void(const KeyMonitorEvent&)>;

    /// An installed monitor; letting go of it removes it.
    class Monitor {
      public:
        virtual ~Monitor() = default;
    };

    virtual ~KeyMonitors() = default;

    /// Events that go to the program's own windows. `mask`: the `maskBit` of the types wanted. Null when the
    /// system refuses.
    [[nodiscard]] virtual std::unique_ptr<Monitor> addLocal(std::uint64_t mask, LocalHandler handler) = 0;
    /// Events that go to other programs.
    [[nodiscard]] virtual std::unique_ptr<Monitor> addGlobal(std::uint64_t mask, GlobalHandler handler) = 0;
};

}  // namespace trelvan
