#pragma once

#include <string>

namespace trelvan {

/// The user's home folder: $HOME where it is an absolute path, else that of the password file, else "/".
[[nodiscard]] std::string homeFolder();

}  // namespace trelvan
