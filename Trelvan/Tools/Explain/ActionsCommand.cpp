#include "Tools/Explain/ActionsCommand.hpp"

#include "Core/ActionReport.hpp"
#include "Core/Settings/LanguageSetting.hpp"
#include "Platform/SettingsSnapshot.hpp"
#include "Tools/Simulate/JsonLine.hpp"
#include "Utilities/Text.hpp"

#include <cstdio>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace trelvan {

namespace {

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

std::string both(ButtonAction action) {
    std::string text(rawValue(action));
    if (englishLabel(action) != rawValue(action)) text.append(" (").append(englishLabel(action)).append(")");
    return text;
}

void printText(const std::vector<ActionReport>& reports, const DesktopAbilities& desktop,
               AppLanguage language) {
    const auto unknown = localized(language, "not known", "desconocido");
    print(std::string(localized(language, "Desktop: ", "Escritorio: "))
              .append(desktop.desktop.empty() ? unknown : std::string_view(desktop.desktop))
              .append("\n\n"));
    for (const auto& report : reports) {
        print((report.obstacle ? "✗ " : "  ") + both(report.action) + "\n");
        for (const auto& sentence : report.sends) print("      " + sentence + "\n");
        if (report.obstacle) print("      " + *report.obstacle + "\n");
    }
}

void printJson(const std::vector<ActionReport>& reports, const DesktopAbilities& desktop) {
    std::string list = "[";
    for (const auto& report : reports) {
        JsonLine one;
        one.begin();
        one.add("action", rawValue(report.action))
            .add("english", englishLabel(report.action))
            .add("spanish", rawValue(report.action))
            .addRaw("sends", jsonTexts(report.sends))
            .add("can", !report.obstacle.has_value());
        if (report.obstacle) one.add("obstacle", *report.obstacle);
        if (list.size() > 1) list += ",";
        list += trimmed(one.end());
    }
    JsonLine line;
    line.begin();
    line.add("desktop", desktop.desktop).addRaw("actions", list + "]");
    print(line.end());
}

}  // namespace

int listActions(const command::Actions& request, const ActionShortcuts& shortcuts,
                AppLanguage terminalLanguage) {
    AppLanguage language = terminalLanguage;
    if (auto read = readSettings(request.configDirectory);
        auto* values = std::get_if<SettingsSnapshot::Values>(&read))
        language = languageFromSetting(languageSetting(SettingsSnapshot(std::move(*values))));
    language = request.language.value_or(language);
    const auto desktop = desktopAbilities();
    const auto reports = reportActions(shortcuts, desktop, language);
    if (request.json) {
        printJson(reports, desktop);
    } else {
        printText(reports, desktop, language);
    }
    return exitStatus::ok;
}

}  // namespace trelvan
