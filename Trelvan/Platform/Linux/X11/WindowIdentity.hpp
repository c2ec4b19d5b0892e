#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// What a window tells about its application.
struct WindowTraits {
    /// The two parts of WM_CLASS.
    std::string instanceName = {};
    std::string className = {};
    /// Of the start that it came from (_NET_STARTUP_ID); empty where it names none.
    std::string startupId = {};
    /// _NET_WM_PID; 0 where it names none.
    long process = 0;
};

/// By what the windows of one application are known.
struct ApplicationIdentity {
    /// What its windows may have as either part of their class, in lower case.
    std::vector<std::string> names = {};
    /// The id that it was started or asked with; empty for none.
    std::string startupId = {};
    /// The process that was started for it; 0 for none.
    long process = 0;
};

/// A window class as it is compared: A to Z in lower case.
[[nodiscard]] std::string comparableClass(std::string_view name);

/// Tells a process's parent; 0 when it has none.
using ParentOf = std::function<long(long process)>;
/// From /proc. Any thread.
[[nodiscard]] long parentProcess(long process);

/// Whether the window is one of the application's: it comes from its start, from its process or one that this
/// started, or is of its class.
[[nodiscard]] bool isWindowOf(const ApplicationIdentity& application, const WindowTraits& window,
                              const ParentOf& parentOf = &parentProcess);

}  // namespace trelvan
