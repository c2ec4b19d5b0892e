#pragma once

#include <string>

namespace trelvan {

/// Starts what is at the path, in a session of its own and with the user's home as working folder unless it
/// names another: an application by its desktop entry, a program, or a folder in the file manager. What
/// cannot be started is named in the log. Main thread.
void startApplication(const std::string& path);

/// Opens a file, folder or address in the application that the desktop has for it. Main thread.
void openWithDesktop(const std::string& address, bool isLocalPath);

}  // namespace trelvan
