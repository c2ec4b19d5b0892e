#include "Core/ActionReport.hpp"

#include "Core/ActionDescription.hpp"
#include "Core/Model/ActionCatalogue.hpp"
#include "Core/ModifierNames.hpp"
#include "Utilities/Text.hpp"

#include <utility>
#include <variant>

namespace trelvan {

namespace {

using Way = ViewAbility::Way;

/// None for an action that the desktop has no part in.
const ViewAbility* abilityFor(ButtonAction action, const DesktopAbilities& desktop) {
    const auto* const tool = desktopTool(action);
    const auto found = tool != nullptr ? desktop.views.find(tool->view) : desktop.views.end();
    return found != desktop.views.end() ? &found->second : nullptr;
}

/// Whether the action needs something to write a note in.
bool writesNotes(ButtonAction action) {
    return std::holds_alternative<does::Note>(rowOf(action).effect);
}

std::string combination(const ViewAbility& ability) {
    std::string text = namesOf(ability.flags);
    if (!text.empty()) text += '+';
    return text + ability.with;
}

/// In what way the desktop does it; none when that cannot be told or nothing does.
std::optional<std::string> wayHere(const ViewAbility& ability, AppLanguage language) {
    const std::string here(localized(language, "Here: ", "Aquí: "));
    switch (ability.way) {
        case Way::unknown:
        case Way::nothing:
            return std::nullopt;
        case Way::windowManager:
            return here + std::string(localized(language, "the window manager", "el gestor de ventanas"));
        case Way::shell:
        case Way::program:
            return here + ability.with;
        case Way::shortcut:
            return here + combination(ability);
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> obstacleTo(ButtonAction action, const DesktopAbilities& desktop,
                                      AppLanguage language) {
    if (writesNotes(action) && !desktop.noteApplication)
        return std::string(localized(language, "No editor and no note taker is installed",
                                     "No hay ningún editor ni aplicación de notas instalado"));
    const auto* const ability = abilityFor(action, desktop);
    // What has a combination is sent by it where the desktop has no tool for it.
    if (ability == nullptr || ability->way != Way::nothing || catalogueCombination(action) != nullptr)
        return std::nullopt;
    std::string text(
        localized(language, "Nothing on this desktop does it", "Nada en este escritorio lo hace"));
    if (!ability->toInstall.empty())
        text.append(localized(language, "; installed, this would: ", "; instalado, lo haría: "))
            .append(ability->toInstall);
    return text;
}

std::vector<ActionReport> reportActions(const ActionShortcuts& shortcuts, const DesktopAbilities& desktop,
                                        AppLanguage language) {
    const NamedHotKeys hotKeys = [&desktop](int id) -> std::optional<NamedHotKey> {
        const auto found = desktop.hotKeys.find(id);
        return found != desktop.hotKeys.end() ? std::optional(found->second) : std::nullopt;
    };
    std::vector<ActionReport> reports;
    for (const auto action : allCases<ButtonAction>()) {
        ActionReport report{.action = action,
                            .sends = describeAction(action, shortcuts, language, hotKeys),
                            .obstacle = obstacleTo(action, desktop, language)};
        if (const auto* const ability = abilityFor(action, desktop)) {
            if (auto way = wayHere(*ability, language)) report.sends.push_back(*std::move(way));
        }
        if (writesNotes(action) && desktop.noteApplication)
            report.sends.push_back(std::string(localized(language, "Here: ", "Aquí: ")) +
                                   std::string(lastPathComponent(*desktop.noteApplication)));
        reports.push_back(std::move(report));
    }
    return reports;
}

}  // namespace trelvan
