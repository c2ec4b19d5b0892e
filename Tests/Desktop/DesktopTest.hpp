#pragma once

#include "Desktop/Harness/ClientWindow.hpp"
#include "Desktop/Harness/TrelvanProcess.hpp"
#include "Desktop/Harness/VirtualDesktop.hpp"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace trelvan::desktop {

/// A test on the virtual desktop: begins with an application's window in front and nothing held, and must end
/// with nothing held. One desktop serves all tests of the run; it is made anew when a test has broken it.
class DesktopTest : public testing::Test {
  protected:
    using Kind = ClientEvent::Kind;

    void SetUp() override;
    void TearDown() override;

    VirtualDesktop& desktop();
    HardwareDevice& trackball() { return desktop().trackball(); }
    HardwareDevice& mouse() { return desktop().mouse(); }
    ClientWindow& client() { return *application; }
    TrelvanProcess& program() { return *running; }

    /// Starts the program and waits until it serves the devices. `more` stands in its environment besides the
    /// desktop's own.
    void start(const Settings& settings, const std::map<std::string, std::string>& more = {});
    /// The same without waiting for the trackball to be served.
    void launch(const Settings& settings, const std::map<std::string, std::string>& more = {},
                const std::vector<std::string>& command = {});
    /// Puts another application's window in the place of the present one.
    void useClient(Protocol protocol, const std::string& windowClass = "");
    /// Until the next `useClient` there is none.
    void closeClient() { application.reset(); }
    /// Ends the program as a user does.
    void stop() { running.reset(); }

    /// Presses a button that no test maps and waits until it arrives: whatever the devices did before has
    /// then arrived too, for all of it takes the same pipeline. Where the pointer was at the press.
    Position passSentinel();
    static constexpr int sentinelButton = 10;

    /// The program's output with all that it has said of what happened before; its lines come a little later.
    std::string wholeOutput();

    void holdKey(KeySym key) { desktop().keyboard().keyDown(client().keyCode(key)); }
    void releaseKey(KeySym key) { desktop().keyboard().keyUp(client().keyCode(key)); }

    /// Whether no key is down, of any keyboard's and of XTEST's.
    bool isNoKeyDown();
    /// Brings the window to the front and waits until the window manager says that it is there.
    void activate(ClientWindow& window);

    /// The buttons pressed by now, without the sentinels.
    std::vector<unsigned> buttonsArrived();

  private:
    std::unique_ptr<ClientWindow> application;
    std::unique_ptr<TrelvanProcess> running;
};

}  // namespace trelvan::desktop
