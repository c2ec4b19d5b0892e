#pragma once

#include "Platform/Linux/X11/XConnection.hpp"

#include <memory>
#include <vector>

union _XEvent;

namespace trelvan {

/// Takes part in the events of the main connection. Main thread.
class XEventHandler {
  public:
    virtual ~XEventHandler() = default;

    /// Looks at one event; the data of a generic event is already fetched.
    virtual void handle(_XEvent& event) = 0;
};

/// Reads the main connection on the main loop and shows every event to every handler, in the order they were
/// added. Main thread.
class XEventPump {
  public:
    explicit XEventPump(XConnection& connection);
    XEventPump(const XEventPump&) = delete;
    XEventPump& operator=(const XEventPump&) = delete;
    ~XEventPump();

    [[nodiscard]] XConnection& connection() { return connection_; }

    /// The handler must be removed before it goes away.
    void add(XEventHandler& handler) { handlers_.push_back(&handler); }
    void remove(XEventHandler& handler) { std::erase(handlers_, &handler); }

    /// How many events have been read and not yet handled.
    [[nodiscard]] int waiting() const;

    /// Handles all that has arrived and sends what has been asked.
    void drain();

  private:
    struct Wiring;

    /// The same for what Xlib has already read, without asking the system.
    void drainLeftovers();

    XConnection& connection_;
    std::vector<XEventHandler*> handlers_;
    bool draining_ = false;
    std::unique_ptr<Wiring> wiring_;
};

}  // namespace trelvan
