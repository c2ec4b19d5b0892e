#include "Core/Model/ProfileNormalization.hpp"

#include "Core/Model/ButtonNumbers.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

void separateScrollDirections(std::vector<ButtonMapping>& mappings) {
    const auto withNumber = [&](std::int64_t number) {
        return std::ranges::find(mappings, number, &ButtonMapping::buttonNumber);
    };
    if (withNumber(scrollUpButtonNumber) != mappings.end()) return;
    const auto down = withNumber(scrollDownButtonNumber);
    if (down == mappings.end()) return;
    down->buttonNumber = scrollUpButtonNumber;
    if (trimmed(down->buttonLabel).empty()) down->buttonLabel = "Scroll 1";
}

}  // namespace

ButtonMapping normalizeMapping(ButtonMapping mapping) {
    const bool isLeft = mapping.buttonNumber == nonRemappableLeftButtonNumber;
    if (!isLeft && mapping.buttonNumber != nonRemappableRightButtonNumber) return mapping;
    mapping.primaryTrigger1() = ButtonModifierTrigger::none;
    mapping.primaryTrigger2() = ButtonModifierTrigger::none;
    mapping.action() = isLeft ? ButtonAction::leftClick : ButtonAction::rightClick;
    for (auto& function : mapping.functions) {
        function.shortcut = {};
        function.shortcutName.clear();
    }
    mapping.dictationShortcut = {};
    mapping.appPath.clear();
    return mapping;
}

TrackballProfile normalizeProfile(TrackballProfile profile) {
    for (auto& mapping : profile.mappings) mapping = normalizeMapping(std::move(mapping));
    separateScrollDirections(profile.mappings);
    return profile;
}

}  // namespace trelvan
