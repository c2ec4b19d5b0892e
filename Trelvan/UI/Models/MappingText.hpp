#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/ButtonMapping.hpp"
#include "Core/Model/RawRepresentable.hpp"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// The two kinds of mapping that the editor shows apart.
enum class ButtonsSubTab { buttons, scroll };

template <>
struct RawValueTable<ButtonsSubTab> {
    static constexpr std::string_view noun = "a part of the editor";
    static constexpr std::array<std::string_view, 2> rawValues{"Buttons", "Scroll"};
};

/// What the segment that chooses the part says.
[[nodiscard]] std::string_view title(ButtonsSubTab part, AppLanguage language);

/// Whether the mapping is one of the wheel rather than of a button.
[[nodiscard]] bool isScrollMapping(const ButtonMapping& mapping);
[[nodiscard]] ButtonsSubTab subTabOf(const ButtonMapping& mapping);

/// "B3:" of a button; the trimmed label of a scroll mapping, "Scroll" when it has none.
[[nodiscard]] std::string mappingTitle(const ButtonMapping& mapping);
/// What a screen reader and a tooltip call the mapping: "Button 3", "Scroll Up 1".
[[nodiscard]] std::string spokenTitle(const ButtonMapping& mapping, AppLanguage language);
/// The name of the symbol at the head of the row.
[[nodiscard]] std::string_view buttonIcon(const ButtonMapping& mapping);

/// The number that the next button gets: the lowest free one of 2 to 32, else one past the largest in use.
[[nodiscard]] std::int64_t nextAutoButtonNumber(const std::vector<ButtonMapping>& mappings);

}  // namespace trelvan
