#pragma once

#include "Platform/Linux/XTest/PressedStateFile.hpp"

namespace trelvan {

/// The guard process's whole life: watches over the program until `owner` reaches its end, which is the
/// program's, then releases what the page says and removes its file. A byte on `owner` says that the page has
/// other windows or keys than before. Returns early where the server does not serve a guard; the file is then
/// left to the program, if that is still there.
void watchOver(PressedStateFile& file, int owner);

}  // namespace trelvan
