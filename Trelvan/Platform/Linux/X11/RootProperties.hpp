#pragma once

#include "Platform/Linux/X11/WindowIdentity.hpp"
#include "Platform/Linux/X11/XConnection.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace trelvan {

/// The window manager's properties on the root window, and requests to it (EWMH). On the connection it is
/// given; each call waits for the server.
class RootProperties {
  public:
    explicit RootProperties(XConnection& connection) : connection_(connection) {}

    /// The first 32-bit number of a property of the root window.
    [[nodiscard]] std::optional<unsigned long> number(const char* property, std::size_t index = 0) const;
    /// All 32-bit numbers of a property of the root window, at most 1024.
    [[nodiscard]] std::vector<unsigned long> numbers(const char* property) const;
    /// Whether the window manager says that it understands the property.
    [[nodiscard]] bool isSupported(const char* property) const;
    /// Asks the window manager to change one of its properties.
    void request(const char* property, unsigned long value);
    /// Class of a window's application (second part of WM_CLASS); empty when it has none.
    [[nodiscard]] std::string applicationClass(unsigned long window) const;
    /// What a window tells about its application; nothing when it is gone.
    [[nodiscard]] WindowTraits traits(unsigned long window) const;

  private:
    XConnection& connection_;
};

}  // namespace trelvan
