#include "UI/Models/SettingsTab.hpp"

namespace trelvan {

TextPair tabTitle(SettingsTab tab) {
    switch (tab) {
        case SettingsTab::keepAwake:
            return {"Keep Awake", "Keep Awake"};
        case SettingsTab::buttons:
            return {"Buttons & Scroll", "Botones y Scroll"};
        case SettingsTab::smartButton:
            return {"Smart Button", "Smart Button"};
        case SettingsTab::notifications:
            return {"Notifications", "Notificaciones"};
        case SettingsTab::debug:
            return {"Debug", "Debug"};
        case SettingsTab::settings:
            return {"System", "Sistema"};
        case SettingsTab::backup:
            return {"Export", "Exportar"};
        case SettingsTab::privacyLegal:
            return {"Privacy & Legal", "Privacy & Legal"};
        case SettingsTab::share:
        case SettingsTab::scroll:
            break;
    }
    return {"Share", "Share"};
}

std::string_view iconName(SettingsTab tab) {
    switch (tab) {
        case SettingsTab::keepAwake:
            return "figure.wave.circle";
        case SettingsTab::buttons:
            return "computermouse";
        case SettingsTab::smartButton:
            return "circle.grid.3x3.fill";
        case SettingsTab::notifications:
            return "bell.badge";
        case SettingsTab::debug:
            return "ant";
        case SettingsTab::settings:
            return "slider.horizontal.3";
        case SettingsTab::backup:
            return "externaldrive.badge.checkmark";
        case SettingsTab::privacyLegal:
            return "hand.raised";
        case SettingsTab::share:
        case SettingsTab::scroll:
            break;
    }
    return "square.and.arrow.up";
}

std::vector<SettingsTab> availableTabs(bool debugMode) {
    std::vector tabs{SettingsTab::settings,     SettingsTab::keepAwake, SettingsTab::buttons,
                     SettingsTab::smartButton,  SettingsTab::backup,    SettingsTab::notifications,
                     SettingsTab::privacyLegal, SettingsTab::share};
    constexpr int debugPosition = 6;
    if (debugMode) tabs.insert(tabs.begin() + debugPosition, SettingsTab::debug);
    return tabs;
}

}  // namespace trelvan
