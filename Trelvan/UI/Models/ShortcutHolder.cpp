#include "UI/Models/ShortcutHolder.hpp"

#include "Core/MappingResolution.hpp"
#include "Core/Model/ActionCatalogue.hpp"
#include "UI/Models/ModifierSigns.hpp"

namespace trelvan {

std::optional<ButtonAction> desktopHolderOf(const CustomShortcut& shortcut, const HotKeyTable& hotKeys) {
    if (shortcut.isEmpty()) return std::nullopt;
    for (const auto& row : actionCatalogue()) {
        const auto* const tool = desktopTool(row.action);
        if (tool == nullptr) continue;
        for (const int id : tool->hotKeys) {
            const auto chord = combinationOf(hotKeys.entry(id));
            if (chord && chord->keyCode == shortcut.keyCode &&
                (chord->flags & combinationModifiers) == (shortcut.modifiersRawValue & combinationModifiers))
                return row.action;
        }
    }
    return std::nullopt;
}

std::optional<std::string> desktopWarning(const CustomShortcut& shortcut, const HotKeyTable& hotKeys,
                                          AppLanguage language) {
    const auto holder = desktopHolderOf(shortcut, hotKeys);
    if (!holder) return std::nullopt;
    return std::string(localized(language, "The desktop itself uses ", "El propio escritorio usa ")) +
           shortcut.displayString + std::string(localized(language, " for ", " para ")) +
           std::string(label(*holder, rawValue(language))) +
           std::string(localized(language, ": it may not arrive", ": puede que no llegue"));
}

}  // namespace trelvan
