#pragma once

#include "Platform/UserDefaults.hpp"
#include "Platform/Workspace.hpp"
#include "Tools/Simulate/TraceJson.hpp"

#include <string>
#include <vector>

namespace trelvan {

/// Something on the disk that a decision looks for.
struct RecordedItem {
    /// As it is called in the recording.
    std::string path;
    /// "application" or "folder".
    std::string kind;
    /// Bundle identifier, for applications that are found by it.
    std::string bundle;
};

/// What of the user's settings a replay needs to decide the same. A recording goes to other people, so it has
/// the active profile alone, with "Profile", "Label", "Entry 1" and the like in place of the names that the
/// user gave, and "/recorded/1" in place of each path; of a shortcut's text and a path only whether there is
/// one counts. Settings that decide nothing are left out.
struct RecordedSettings {
    /// As the script line `defaults` takes them.
    TraceJson defaults = TraceJson::object();
    /// The paths among them that are there.
    std::vector<RecordedItem> disk;
};
[[nodiscard]] RecordedSettings recordedSettings(const UserDefaults& defaults, const Workspace& workspace);

}  // namespace trelvan
