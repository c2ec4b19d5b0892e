#pragma once

#include "Core/Model/RawRepresentable.hpp"

#include <array>
#include <string_view>

namespace trelvan {

/// How the interface looks; stored by its raw value. `system`, and any unknown value, follows the desktop.
enum class AppTheme { system, light, dark };

template <>
struct RawValueTable<AppTheme> {
    static constexpr std::string_view noun = "a theme";
    static constexpr std::array<std::string_view, 3> rawValues{"System", "Light", "Dark"};
};

}  // namespace trelvan
