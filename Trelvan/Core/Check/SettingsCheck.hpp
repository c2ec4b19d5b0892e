#pragma once

#include "Core/Check/Finding.hpp"
#include "Core/Check/MappingCheck.hpp"

#include <string_view>

namespace trelvan {

/// Everything wrong or odd in the text of a settings file, in the order of the file. An error is what a start
/// does not take: defaults stand in for it. Nothing is changed; any thread.
[[nodiscard]] Findings checkSettings(std::string_view file, const CheckSurroundings& surroundings);

}  // namespace trelvan
