#pragma once

#include "Desktop/Harness/Xlib.hpp"

#include <string>
#include <vector>

namespace trelvan::desktop {

/// One connection to an X server, closed with its owner. Main thread.
class XConnection {
  public:
    /// Throws std::runtime_error when the server does not answer.
    explicit XConnection(const std::string& displayName);
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;

    [[nodiscard]] Display* get() const { return connection; }
    [[nodiscard]] Window root() const { return DefaultRootWindow(connection); }
    [[nodiscard]] Atom atom(const char* name) const { return XInternAtom(connection, name, False); }

    /// The values of a 32-bit property; none when the window has no such property.
    [[nodiscard]] std::vector<long> property(Window window, const char* name) const;

    /// Sends a request to the window manager, with one value.
    void sendToRoot(const char* message, long value) const;
    /// Asks the window manager to raise a window and give it the focus, as a task bar does.
    void activate(Window window) const;
    /// Gives a window a text property.
    void setText(Window window, const char* name, const std::string& text) const;

  private:
    Display* connection;
};

}  // namespace trelvan::desktop
