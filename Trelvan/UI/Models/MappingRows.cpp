#include "UI/Models/MappingRows.hpp"

#include "Core/Model/ButtonNumbers.hpp"
#include "UI/Models/ActionChoices.hpp"
#include "UI/Models/FunctionSlots.hpp"
#include "UI/Models/TriggerSentence.hpp"

namespace trelvan {

namespace {

constexpr std::array<TextPair, 4> sectionTitles{{{"Main Function", "Función principal"},
                                                 {"Second Function", "Función secundaria"},
                                                 {"Third Function", "Función tercera"},
                                                 {"Fourth Function", "Función cuarta"}}};
constexpr std::array<TextPair, 4> removeHelps{{{"", ""},
                                               {"Remove second function", "Quitar función secundaria"},
                                               {"Remove third function", "Quitar función tercera"},
                                               {"Remove fourth function", "Quitar función cuarta"}}};
constexpr std::array<std::string_view, 4> recorderSuffixes{"-main", "-secondary", "-tertiary", "-quaternary"};

FunctionSection makeSection(const ButtonMapping& mapping, FunctionSlot slot, AppLanguage language,
                            EventFlags reported) {
    const auto place = indexOf(slot);
    auto sentence = triggerSentence(mapping, slot, language, reported);
    FunctionSection section{.slot = slot,
                            .title = localized(language, sectionTitles[place]),
                            .action = mapping.function(slot).action,
                            .triggers = {mapping.function(slot).trigger1, mapping.function(slot).trigger2},
                            .isMuted = isMuted(mapping, slot),
                            .isDuplicate = hasDuplicateFunction(mapping, slot),
                            .isLocked = slot == FunctionSlot::primary && isLocked(mapping),
                            .sentence = std::move(sentence.text),
                            .fires = sentence.fires,
                            .editor = extraEditorFor(mapping, slot),
                            .shortcut = mapping.function(slot).shortcut,
                            .shortcutName = mapping.function(slot).shortcutName,
                            .recorderLabel = "Shortcut " + std::to_string(place + 1) + ":",
                            .recorderID = recorderIDFor(mapping.id, slot),
                            .path = {},
                            .removeHelp = localized(language, removeHelps[place])};
    if (section.editor == ExtraEditor::dictation) section.shortcut = mapping.dictationShortcut;
    if (section.editor == ExtraEditor::application) section.path = mapping.appPath;
    if (section.editor == ExtraEditor::folder) section.path = mapping.folderPath;
    return section;
}

}  // namespace

bool isLocked(const ButtonMapping& mapping) {
    return mapping.buttonNumber == nonRemappableLeftButtonNumber ||
           mapping.buttonNumber == nonRemappableRightButtonNumber;
}

ExtraEditor extraEditorFor(const ButtonMapping& mapping, FunctionSlot slot) {
    const auto kept = [&mapping](ExtraEditor editor) {
        return isLocked(mapping) ? ExtraEditor::notKept : editor;
    };
    switch (rowOf(mapping.function(slot).action).input) {
        case ActionInput::shortcut:
            return kept(ExtraEditor::shortcut);
        case ActionInput::dictationShortcut:
            return kept(ExtraEditor::dictation);
        case ActionInput::application:
            return kept(ExtraEditor::application);
        case ActionInput::folder:
            return ExtraEditor::folder;
        case ActionInput::nothing:
        case ActionInput::menu:
            break;
    }
    return ExtraEditor::none;
}

std::string recorderIDFor(const Uuid& mapping, FunctionSlot slot) {
    return mapping.text().append(recorderSuffixes[indexOf(slot)]);
}

MappingRow makeRow(const ButtonMapping& mapping, bool isExpanded, AppLanguage language, EventFlags reported) {
    MappingRow row{.id = mapping.id,
                   .buttonNumber = mapping.buttonNumber,
                   .title = mappingTitle(mapping),
                   .spokenTitle = spokenTitle(mapping, language),
                   .icon = buttonIcon(mapping),
                   .isLocked = isLocked(mapping),
                   .canRemove = mapping.buttonNumber >= firstExtraButtonNumber || isScrollMapping(mapping),
                   .isExpanded = isExpanded,
                   .canAddFunction = mapping.functionSlots < ButtonMapping::maximumFunctionSlots};
    for (const auto slot : allFunctionSlots) {
        if (!isInUse(mapping, slot)) continue;
        const auto& name = mapping.function(slot).shortcutName;
        const auto action = mapping.function(slot).action;
        const bool isNamed = action == ButtonAction::customShortcut && !name.empty();
        row.summary.push_back({modifierSigns(wantedBy(mapping, slot)),
                               isNamed ? name : actionDisplayName(action, language), isMuted(mapping, slot)});
        if (isExpanded) row.sections.push_back(makeSection(mapping, slot, language, reported));
    }
    return row;
}

}  // namespace trelvan
