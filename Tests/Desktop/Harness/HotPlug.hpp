#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace trelvan::desktop {

/// Plugs a mouse into a running X server and pulls it out again, by telling the server what the system's
/// device manager would. The server does all that it does for a real mouse: a new device with a new number
/// comes, and goes for good. The server must have been started with `launchCommand`.
class HotPlug {
  public:
    explicit HotPlug(pid_t serverProcess) : server(serverProcess) {}

    /// Throw std::runtime_error when the server cannot be told.
    void plugIn() { announce("add"); }
    void pullOut() { announce("remove"); }

    /// The command that starts a server in namespaces of its own: its network carries no announcements but
    /// ours, and ours reach nobody else.
    static std::vector<std::string> launchCommand(std::vector<std::string> serverCommand);

    /// Whether this machine lets us have such namespaces.
    [[nodiscard]] static bool isPossible();

  private:
    void announce(const char* action);

    pid_t server;
    int sequence = 0;
};

}  // namespace trelvan::desktop
