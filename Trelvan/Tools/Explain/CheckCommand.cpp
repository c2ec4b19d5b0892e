#include "Tools/Explain/CheckCommand.hpp"

#include "Core/Check/SettingsCheck.hpp"
#include "Core/Settings/LanguageSetting.hpp"
#include "Platform/SettingsSnapshot.hpp"
#include "StartReport.hpp"
#include "Tools/Simulate/JsonLine.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <cstdio>
#include <string>

namespace trelvan {

namespace {

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

/// The language that the settings name, where they can be read and name one.
AppLanguage languageOf(const command::Check& request, AppLanguage terminal) {
    if (request.language) return *request.language;
    const auto read = readSettings(request.configDirectory);
    const auto* const values = std::get_if<SettingsSnapshot::Values>(&read);
    if (values == nullptr) return terminal;
    return chosenLanguage(SettingsSnapshot(*values)).value_or(terminal);
}

std::string jsonOf(const Finding& finding, AppLanguage language) {
    JsonLine line;
    line.begin();
    line.add("severity", nameOf(finding.severity))
        .add("line", finding.position.line)
        .add("column", finding.position.column)
        .add("path", finding.path)
        .add("message", finding.message.in(language))
        .add("suggestion", finding.suggestion)
        .addRaw("allowed", jsonTexts(finding.allowed));
    return std::string(trimmed(line.end()));
}

void printJson(const std::string& path, const Findings& findings, AppLanguage language) {
    std::string list;
    for (const auto& finding : findings) list += (list.empty() ? "" : ",") + jsonOf(finding, language);
    JsonLine line;
    line.begin();
    line.add("file", path).addRaw("findings", "[" + list + "]");
    print(line.end());
}

void printText(const std::string& path, const Findings& findings, AppLanguage language) {
    for (const auto& finding : findings) print(findingLine(path, finding, language));
    if (!findings.empty()) return;
    print(InlineText(path, ": ", localized(language, "nothing wrong", "nada que corregir"), "\n"));
}

}  // namespace

int checkSettingsFile(const command::Check& request, const CheckSurroundings& surroundings,
                      AppLanguage terminal) {
    const AppLanguage language = languageOf(request, terminal);
    const auto read = readSettingsText(request.configDirectory);
    if (const auto* failure = std::get_if<PlatformFailure>(&read)) {
        const auto& reason = localized(language, failure->english, failure->spanish);
        std::fprintf(stderr, "trelvan: %s\n", std::string(reason).c_str());
        return exitStatus::findings;
    }
    const auto& [path, bytes] = std::get<SettingsText>(read);
    if (!bytes && !request.json) {
        print(InlineText(path, ": ", localized(language, "no settings yet", "aún no hay ajustes"), "\n"));
        return exitStatus::ok;
    }
    const Findings findings = bytes ? checkSettings(*bytes, surroundings) : Findings{};
    if (request.json) {
        printJson(path, findings, language);
    } else {
        printText(path, findings, language);
    }
    const bool isWell = std::ranges::all_of(
        findings, [](const Finding& finding) { return finding.severity == Severity::note; });
    return isWell ? exitStatus::ok : exitStatus::findings;
}

}  // namespace trelvan
