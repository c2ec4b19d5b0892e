#include "UI/Models/MappingText.hpp"

#include "Core/Model/ButtonNumbers.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>

namespace trelvan {

namespace {

constexpr std::int64_t highestAutomaticNumber = 32;

}  // namespace

std::string_view title(ButtonsSubTab part, AppLanguage language) {
    return part == ButtonsSubTab::scroll ? "Scroll" : localized(language, "Buttons", "Botones");
}

bool isScrollMapping(const ButtonMapping& mapping) {
    return isScrollButton(mapping.buttonNumber);
}

ButtonsSubTab subTabOf(const ButtonMapping& mapping) {
    return isScrollMapping(mapping) ? ButtonsSubTab::scroll : ButtonsSubTab::buttons;
}

std::string mappingTitle(const ButtonMapping& mapping) {
    if (!isScrollMapping(mapping)) return "B" + std::to_string(mapping.buttonNumber) + ":";
    const auto label = trimmed(mapping.buttonLabel);
    return label.empty() ? "Scroll" : std::string(label);
}

std::string spokenTitle(const ButtonMapping& mapping, AppLanguage language) {
    if (isScrollMapping(mapping)) return mappingTitle(mapping);
    return std::string(localized(language, "Button ", "Botón ")) + std::to_string(mapping.buttonNumber);
}

std::string_view buttonIcon(const ButtonMapping& mapping) {
    if (isScrollMapping(mapping)) return "arrow.up.arrow.down.circle";
    switch (mapping.buttonNumber) {
        case 0:
            return "cursorarrow.click";
        case 1:
            return "cursorarrow.click.2";
        case 2:
            return "circle.circle";
        case 3:
            return "1.circle";
        case 4:
            return "2.circle";
        default:
            return "circle";
    }
}

std::int64_t nextAutoButtonNumber(const std::vector<ButtonMapping>& mappings) {
    std::array<bool, highestAutomaticNumber + 1> isUsed{};
    std::int64_t largest = firstExtraButtonNumber - 1;
    for (const auto& mapping : mappings) {
        const auto number = mapping.buttonNumber;
        largest = std::max(largest, number);
        if (number >= 0 && number <= highestAutomaticNumber) isUsed[static_cast<std::size_t>(number)] = true;
    }
    const auto* const free = std::find(isUsed.cbegin() + firstExtraButtonNumber, isUsed.cend(), false);
    return free != isUsed.cend() ? free - isUsed.cbegin() : largest + 1;
}

}  // namespace trelvan
