#include "Core/MappingResolution.hpp"

#include "Core/Model/ButtonNumbers.hpp"
#include "Platform/HotKeyTable.hpp"

#include <algorithm>

namespace trelvan {

namespace {

constexpr bool contains(EventFlags flags, EventFlags wanted) {
    return (flags & wanted) == wanted;
}

bool isActive(const ButtonMapping& mapping, FunctionSlot slot, EventFlags flags) {
    const EventFlags wanted = triggerFlags(mapping.function(slot));
    return wanted != 0 && contains(flags, wanted);
}

/// Whether the slot is in use and does something.
bool isUsable(const ButtonMapping& mapping, FunctionSlot slot) {
    return isInUse(mapping, slot) && mapping.function(slot).action != ButtonAction::none;
}

}  // namespace

bool isInUse(const ButtonMapping& mapping, FunctionSlot slot) {
    return mapping.functionSlots > static_cast<std::int64_t>(slot);
}

std::string_view nameOf(FunctionSlot slot) {
    static constexpr std::array<std::string_view, allFunctionSlots.size()> names{"primary", "secondary",
                                                                                 "tertiary", "quaternary"};
    return names[indexOf(slot)];
}

bool isOwnClick(const ButtonMapping& mapping) {
    return (mapping.buttonNumber == nonRemappableLeftButtonNumber &&
            mapping.action() == ButtonAction::leftClick) ||
           (mapping.buttonNumber == nonRemappableRightButtonNumber &&
            mapping.action() == ButtonAction::rightClick);
}

std::optional<KeyChord> catalogueShortcut(ButtonAction action, const ActionShortcuts& shortcuts) {
    switch (action) {
        case ButtonAction::back:
            return shortcuts.back;
        case ButtonAction::forward:
            return shortcuts.forward;
        case ButtonAction::copy:
            return shortcuts.copy;
        case ButtonAction::paste:
            return shortcuts.paste;
        case ButtonAction::cut:
            return shortcuts.cut;
        case ButtonAction::undo:
            return shortcuts.undo;
        case ButtonAction::screenshotArea:
            return shortcuts.screenshotArea;
        case ButtonAction::screenshotFull:
            return shortcuts.screenshotFull;
        case ButtonAction::screenshotTool:
            return shortcuts.screenshotTool;
        case ButtonAction::emojiPanel:
            return shortcuts.emojiPanel;
        case ButtonAction::lockWorkstation:
            return shortcuts.lockWorkstation;
        default:
            return std::nullopt;
    }
}

bool isForText(ButtonAction action) {
    return action == ButtonAction::copy || action == ButtonAction::paste || action == ButtonAction::cut ||
           action == ButtonAction::undo;
}

std::optional<KeyChord> shortcutInTerminal(ButtonAction action, const TerminalShortcuts& terminal) {
    switch (action) {
        case ButtonAction::copy:
        case ButtonAction::cut:
            return terminal.copy;
        case ButtonAction::paste:
            return terminal.paste;
        default:
            return std::nullopt;
    }
}

std::span<const DesktopTool> desktopTools() {
    static constexpr std::array missionControl{hotkey::missionControl, 7, 8, 9};
    static constexpr std::array appExpose{hotkey::appWindows, 34};
    static constexpr std::array launchpad{hotkey::launchpad, 161};
    static constexpr std::array showDesktop{hotkey::showDesktop, 37};
    static constexpr std::array desktopLeft{hotkey::desktopLeft, 80};
    static constexpr std::array desktopRight{hotkey::desktopRight, 82};
    static constexpr std::array screenshotArea{hotkey::screenshotArea};
    static constexpr std::array screenshotFull{hotkey::screenshotFull};
    static constexpr std::array screenshotTool{hotkey::screenshotTool};
    static constexpr std::array emojiPanel{hotkey::emojiPanel};
    static constexpr std::array lockScreen{hotkey::lockScreen};
    static constexpr std::array tools{
        DesktopTool{ButtonAction::missionControl, SystemView::missionControl, missionControl},
        DesktopTool{ButtonAction::appExpose, SystemView::appExpose, appExpose},
        DesktopTool{ButtonAction::launchpad, SystemView::launchpad, launchpad},
        DesktopTool{ButtonAction::showDesktop, SystemView::showDesktop, showDesktop},
        DesktopTool{ButtonAction::moveDesktopLeft, SystemView::desktopLeft, desktopLeft},
        DesktopTool{ButtonAction::moveDesktopRight, SystemView::desktopRight, desktopRight},
        DesktopTool{ButtonAction::screenshotArea, SystemView::screenshotArea, screenshotArea},
        DesktopTool{ButtonAction::screenshotFull, SystemView::screenshotFull, screenshotFull},
        DesktopTool{ButtonAction::screenshotTool, SystemView::screenshotTool, screenshotTool},
        DesktopTool{ButtonAction::emojiPanel, SystemView::emojiPanel, emojiPanel},
        DesktopTool{ButtonAction::lockWorkstation, SystemView::lockScreen, lockScreen},
    };
    return tools;
}

const DesktopTool* desktopTool(ButtonAction action) {
    const auto tools = desktopTools();
    const auto found = std::ranges::find(tools, action, &DesktopTool::action);
    return found != tools.end() ? &*found : nullptr;
}

std::optional<KeyChord> combinationOf(const std::optional<HotKeyEntry>& entry) {
    // The key code that says that no key is assigned.
    constexpr std::int64_t noKeyAssigned = 65535;
    if (!entry || !entry->enabled || entry->parameters.size() < 3) return std::nullopt;
    const auto keyCode = entry->parameters[1];
    const auto modifiers = entry->parameters[2];
    if (!keyCode || *keyCode < 0 || *keyCode >= noKeyAssigned || !modifiers || *modifiers < 0)
        return std::nullopt;
    return KeyChord{static_cast<KeyCode>(*keyCode), static_cast<EventFlags>(*modifiers)};
}

bool isPrimaryModifiersMatch(const ButtonMapping& mapping, EventFlags flags) {
    return contains(flags, triggerFlags(mapping.function(FunctionSlot::primary)));
}

bool areSecondaryModifiersActive(const ButtonMapping& mapping, EventFlags flags) {
    return isActive(mapping, FunctionSlot::secondary, flags);
}

bool areTertiaryModifiersActive(const ButtonMapping& mapping, EventFlags flags) {
    return isActive(mapping, FunctionSlot::tertiary, flags);
}

bool areQuaternaryModifiersActive(const ButtonMapping& mapping, EventFlags flags) {
    return isActive(mapping, FunctionSlot::quaternary, flags);
}

std::optional<ResolvedFunction> resolvedAlternateAction(const ButtonMapping& mapping, EventFlags flags) {
    for (const auto slot : {FunctionSlot::quaternary, FunctionSlot::tertiary, FunctionSlot::secondary}) {
        if (isUsable(mapping, slot) && isActive(mapping, slot, flags))
            return ResolvedFunction{mapping.function(slot).action, slot};
    }
    return std::nullopt;
}

ResolvedFunction resolvedAction(const ButtonMapping& mapping, EventFlags flags) {
    if (const auto triggered = resolvedAlternateAction(mapping, flags)) return *triggered;
    if (isPrimaryModifiersMatch(mapping, flags)) return {mapping.action(), FunctionSlot::primary};
    for (const auto slot : {FunctionSlot::secondary, FunctionSlot::tertiary, FunctionSlot::quaternary}) {
        if (isUsable(mapping, slot) && triggerFlags(mapping.function(slot)) == 0)
            return {mapping.function(slot).action, slot};
    }
    return {};
}

}  // namespace trelvan
