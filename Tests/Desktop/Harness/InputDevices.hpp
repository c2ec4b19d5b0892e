#pragma once

#include "Desktop/Harness/XConnection.hpp"

#include <string>
#include <vector>

namespace trelvan::desktop {

/// The server's input devices as a client with a connection of its own sees and changes them. Main thread.
class InputDevices {
  public:
    explicit InputDevices(const std::string& displayName) : server(displayName) {}

    [[nodiscard]] bool exists(const std::string& name);
    /// Throws std::runtime_error when there is no device of that name.
    [[nodiscard]] int id(const std::string& name);
    /// Whether the device is off the pointer: held by some client, or taken off it on purpose.
    [[nodiscard]] bool isOffThePointer(const std::string& name);

    /// Takes a device off the pointer, and puts one onto it, wherever it is now.
    void detach(const std::string& name);
    void attachToPointer(const std::string& name);

    /// Takes a device from the server, as when its plug is pulled, and brings it back. The server keeps its
    /// name and number.
    void setPresent(const std::string& name, bool on);
    /// Whether the device is in use: not taken away.
    [[nodiscard]] bool isPresent(const std::string& name);

    /// Gives the device a property, as its driver would.
    void addProperty(const std::string& name, const char* property);
    void removeProperty(const std::string& name, const char* property);

    /// Holds the device as another program of this kind does; false when somebody has it already.
    [[nodiscard]] bool hold(const std::string& name);
    void letGo(const std::string& name);

    /// What the device's buttons arrive as, by their place; sets as many as are given.
    void setButtonMap(const std::string& name, const std::vector<unsigned char>& numbers);

  private:
    /// 0 when there is none of that name; the server's own numbers begin above.
    int find(const std::string& name);

    XConnection server;
};

}  // namespace trelvan::desktop
