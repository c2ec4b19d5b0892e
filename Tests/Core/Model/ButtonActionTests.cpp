#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/ButtonAction.hpp"
#include "Core/Settings/LanguageSetting.hpp"
#include "Support/FakeUserDefaults.hpp"
#include "Utilities/Text.hpp"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace trelvan {
namespace {

struct CatalogueRow {
    ButtonAction action;
    std::string_view rawValue;
    std::string_view englishLabel;
};

constexpr CatalogueRow catalogue[] = {
    {ButtonAction::none, "Ninguna", "None"},
    {ButtonAction::back, "Atrás", "Back"},
    {ButtonAction::forward, "Adelante", "Forward"},
    {ButtonAction::missionControl, "Mission Control", "Mission Control"},
    {ButtonAction::appExpose, "App Exposé", "App Expose"},
    {ButtonAction::launchpad, "Launchpad", "Launchpad"},
    {ButtonAction::openFolder, "Abrir carpeta", "Open Folder"},
    {ButtonAction::showDesktop, "Mostrar Escritorio", "Show Desktop"},
    {ButtonAction::moveDesktopLeft, "Mover escritorio izquierda", "Move Desktop Left"},
    {ButtonAction::moveDesktopRight, "Mover escritorio derecha", "Move Desktop Right"},
    {ButtonAction::copy, "Copiar", "Copy"},
    {ButtonAction::paste, "Pegar", "Paste"},
    {ButtonAction::cut, "Cortar", "Cut"},
    {ButtonAction::undo, "Deshacer", "Undo"},
    {ButtonAction::screenshotArea, "Captura de Área", "Area Screenshot"},
    {ButtonAction::screenshotFull, "Captura Completa", "Full Screenshot"},
    {ButtonAction::volumeUp, "Volumen +", "Volume +"},
    {ButtonAction::volumeDown, "Volumen -", "Volume -"},
    {ButtonAction::mute, "Silencio", "Mute"},
    {ButtonAction::playPause, "Play/Pause", "Play/Pause"},
    {ButtonAction::openExplorer, "Open Explorer", "Open Explorer"},
    {ButtonAction::newNote, "New Note", "New Note"},
    {ButtonAction::emojiPanel, "Emoji", "Emoji"},
    {ButtonAction::dictation, "Iniciar dictado", "Start Dictation"},
    {ButtonAction::exploreAI, "Explore AI", "Explore AI"},
    {ButtonAction::screenshotTool, "Screenshot", "Screenshot"},
    {ButtonAction::lockWorkstation, "Lock Workstation", "Lock Workstation"},
    {ButtonAction::smartButton, "Smart Button", "Smart Button"},
    {ButtonAction::leftClick, "Click Izquierdo", "Left Click"},
    {ButtonAction::rightClick, "Click Derecho", "Right Click"},
    {ButtonAction::middleClick, "Click Medio", "Middle Click"},
    {ButtonAction::customShortcut, "Atajo Personalizado", "Custom Shortcut"},
    {ButtonAction::launchApp, "Abrir Aplicación", "Open App"},
};

TEST(ButtonAction, CatalogueHasEveryCaseInOrderWithBothLabels) {
    const auto cases = allCases<ButtonAction>();
    ASSERT_EQ(cases.size(), std::size(catalogue));
    for (std::size_t index = 0; index < cases.size(); ++index) {
        const auto& row = catalogue[index];
        EXPECT_EQ(cases[index], row.action) << row.rawValue;
        EXPECT_EQ(static_cast<std::size_t>(row.action), index);
        EXPECT_EQ(rawValue(row.action), row.rawValue);
        EXPECT_EQ(englishLabel(row.action), row.englishLabel);
        EXPECT_EQ(fromRawValue<ButtonAction>(row.rawValue), row.action);
    }
}

TEST(ButtonAction, RawValuesAreDistinctAndComposed) {
    std::set<std::string_view> seen;
    for (const auto action : allCases<ButtonAction>()) {
        EXPECT_TRUE(seen.insert(rawValue(action)).second) << rawValue(action);
        EXPECT_EQ(composed(rawValue(action)), std::string(rawValue(action)));
    }
}

TEST(ButtonActionFromRawValue, DecomposedAccentGivesTheSameCase) {
    EXPECT_EQ(fromRawValue<ButtonAction>("Atra\u0301s"), ButtonAction::back);
    EXPECT_EQ(fromRawValue<ButtonAction>("App Expose\u0301"), ButtonAction::appExpose);
    EXPECT_EQ(fromRawValue<ButtonAction>("Captura de A\u0301rea"), ButtonAction::screenshotArea);
    EXPECT_EQ(fromRawValue<ButtonAction>("Abrir Aplicacio\u0301n"), ButtonAction::launchApp);
}

TEST(ButtonActionFromRawValue, CaseAccentAndBlanksCount) {
    for (const auto* text : {"atrás", "Atras", "Atrás ", " Atrás", "App Expose", "COPIAR", "", "volumen +"}) {
        EXPECT_EQ(fromRawValue<ButtonAction>(text), std::nullopt) << text;
    }
}

TEST(ButtonActionFromRawValue, TriggerTextIsNoAction) {
    EXPECT_EQ(fromRawValue<ButtonAction>("Ninguno"), std::nullopt);
}

TEST(ButtonActionFromRawValue, TextThatIsNotUtf8IsNoAction) {
    EXPECT_EQ(fromRawValue<ButtonAction>("Atr\xE1s"), std::nullopt);
}

TEST(ButtonActionLabel, EnglishSettingGivesTheEnglishLabel) {
    EXPECT_EQ(label(ButtonAction::openFolder, "English"), "Open Folder");
}

TEST(ButtonActionLabel, AnyOtherSettingGivesTheRawValue) {
    for (const auto* setting : {"Español", "System", "", "english"}) {
        EXPECT_EQ(label(ButtonAction::openFolder, setting), "Abrir carpeta") << setting;
    }
}

TEST(AppLanguage, RawValuesAreTheStoredOnes) {
    EXPECT_EQ(rawValue(AppLanguage::english), "English");
    EXPECT_EQ(rawValue(AppLanguage::spanish), "Español");
    EXPECT_EQ(allCases<AppLanguage>().size(), 2U);
}

TEST(AppLanguage, SettingIsEnglishUnlessSpanish) {
    EXPECT_EQ(languageFromSetting("Español"), AppLanguage::spanish);
    for (const auto* setting : {"English", "System", "", "español"}) {
        EXPECT_EQ(languageFromSetting(setting), AppLanguage::english) << setting;
    }
}

TEST(AppLanguage, SettingIsReadWhenAsked) {
    test::FakeUserDefaults defaults;
    EXPECT_EQ(languageSetting(defaults), "English");
    defaults.set("general_language", DefaultsValue(std::string("Español")));
    EXPECT_EQ(languageSetting(defaults), "Español");
}

TEST(AppLanguage, PairShowsTheTextOfTheLanguage) {
    EXPECT_EQ(localized(AppLanguage::english, "Yes", "Sí"), "Yes");
    EXPECT_EQ(localized(AppLanguage::spanish, "Yes", "Sí"), "Sí");
}

}  // namespace
}  // namespace trelvan
