#pragma once

#include "Platform/Linux/HeldPageFile.hpp"

namespace trelvan {

/// The guard process's whole life: watches over the program until `owner` reaches its end, which is the
/// program's, then releases what the page says and removes its file.
void watchOver(HeldPageFile& file, int owner);

}  // namespace trelvan
