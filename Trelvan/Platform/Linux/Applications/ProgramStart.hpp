#pragma once

#include <functional>
#include <string>

namespace trelvan {

/// What a start tells, and whom.
struct StartTold {
    /// Given to the application, which names it on its windows (DESKTOP_STARTUP_ID); empty for none.
    std::string startupId;
    /// Gets the id of the process, where one is started; called at once or, where the application was first
    /// asked over the bus, later.
    std::function<void(long process)> started;
};

/// Starts what is at the path, in a session of its own and with the user's home as working folder unless it
/// names another: an application by its desktop entry, a program, or a folder in the file manager. What
/// cannot be started is named in the log. False when nothing was started. Main thread.
bool startApplication(const std::string& path, const StartTold& told = {});

/// Opens a file, folder or address in the application that the desktop has for it. Main thread.
void openWithDesktop(const std::string& address, bool isLocalPath);

}  // namespace trelvan
