#pragma once

#include "Desktop/Harness/ChildProcess.hpp"
#include "Desktop/Harness/HardwareDevice.hpp"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace trelvan::desktop {

/// A private desktop: a real X server with a screen in memory and hardware-level devices, a window manager
/// and a session bus, all in a temporary folder. It leaves no process, lock or socket behind. Main thread.
class VirtualDesktop {
  public:
    static constexpr int width = 1440;
    static constexpr int height = 900;
    static constexpr int desktops = 4;

    /// Whether devices can be plugged in while the desktop runs, with `HotPlug`. The server then runs in
    /// namespaces of its own, where it hears of no device manager but ours.
    enum class Plugs { fixed, open };

    /// Brings the desktop up and waits until it is ready. Throws std::runtime_error with the server's own
    /// words when it does not come. `serverArguments` are further ones for the server.
    explicit VirtualDesktop(std::vector<std::string> serverArguments = {}, Plugs plugs = Plugs::fixed);
    ~VirtualDesktop();
    VirtualDesktop(const VirtualDesktop&) = delete;
    VirtualDesktop& operator=(const VirtualDesktop&) = delete;

    /// ":50" or above.
    [[nodiscard]] const std::string& displayName() const { return display; }
    /// Everything of this desktop is in here; goes with it.
    [[nodiscard]] const std::filesystem::path& folder() const { return place; }
    /// The whole environment of a program that runs on this desktop, and on no other.
    [[nodiscard]] const std::map<std::string, std::string>& environment() const { return variables; }
    /// Whether server, window manager and bus are all still there.
    [[nodiscard]] bool isAlive();
    [[nodiscard]] std::string serverLog() const;
    [[nodiscard]] pid_t serverId() const { return server->id(); }

    HardwareDevice& trackball() { return *firstPointer; }
    HardwareDevice& mouse() { return *secondPointer; }
    HardwareDevice& tablet() { return *penTablet; }
    HardwareDevice& keyboard() { return *keys; }

    /// The state in which every test begins: nothing held, first desktop, no process of an earlier test.
    void reset();

    /// Ends the X server at once, as a crash does.
    void killServer();

    /// What programs asked xdg-open to open on this desktop, one line each, oldest first.
    [[nodiscard]] std::string opened() const;

  private:
    void makeFolders();
    void startServer();
    void startBus();
    void startWindowManager();
    void takeDown();

    std::filesystem::path place;
    int claim = -1;  ///< an open, locked file in the folder: it belongs to somebody
    std::vector<std::string> furtherArguments;
    Plugs plugs;
    std::string display;
    std::map<std::string, std::string> variables;
    std::unique_ptr<ChildProcess> server;
    std::unique_ptr<ChildProcess> bus;
    std::unique_ptr<ChildProcess> windowManager;
    std::unique_ptr<HardwareDevice> firstPointer;
    std::unique_ptr<HardwareDevice> secondPointer;
    std::unique_ptr<HardwareDevice> penTablet;
    std::unique_ptr<HardwareDevice> keys;
};

}  // namespace trelvan::desktop
