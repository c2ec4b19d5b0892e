#include "StartReport.hpp"

#include "Core/Check/SettingsCheck.hpp"
#include "Utilities/Text.hpp"

#include <string>

namespace trelvan {

namespace {

std::string joined(const std::vector<std::string>& texts) {
    std::string result;
    for (const auto& text : texts) result += (result.empty() ? "" : ", ") + text;
    return result;
}

/// Short enough for a notification: the first error, and how many more there are.
std::string shortText(const Findings& errors, AppLanguage language) {
    const Finding& first = errors.front();
    std::string text(
        InlineText(localized(language, "The settings have an error, and the default profile is in use. Line ",
                             "Los ajustes tienen un error y se usa el perfil por defecto. Línea "),
                   first.position.line, ": ", first.text(language))
            .view());
    if (errors.size() > 1) {
        text.append(InlineText(" (", localized(language, "and ", "y "), errors.size() - 1,
                               localized(language, " more)", " más)"))
                        .view());
    }
    return text;
}

}  // namespace

std::string findingLine(const std::string& path, const Finding& finding, AppLanguage language) {
    std::string line(InlineText(visible(path), ":", finding.position.line, ":", finding.position.column, ": ",
                                nameOf(finding.severity, language), ": ", visible(finding.path),
                                finding.path.empty() ? "" : ": ", finding.text(language), "\n")
                         .view());
    if (!finding.allowed.empty()) {
        line.append(localized(language, "    allowed: ", "    se admite: "))
            .append(joined(finding.allowed))
            .append("\n");
    }
    return line;
}

bool StartReport::tell(const SettingsText& settings) const {
    if (!settings.bytes) {
        tellFirstStart(settings.path);
        return false;
    }
    Findings errors = checkSettings(*settings.bytes, {});
    std::erase_if(errors, [](const Finding& finding) { return finding.severity != Severity::error; });
    if (!errors.empty()) tellUntaken(settings.path, errors);
    return !errors.empty();
}

void StartReport::tellFirstStart(const std::string& path) const {
    logger.info(InlineText("Aún no hay ajustes; se guardarán en ", path));
    print(InlineText(
        localized(language, "Welcome to Trelvan. Nothing is mapped yet; the settings will be in\n  ",
                  "Bienvenido a Trelvan. Aún no hay nada asignado; los ajustes estarán en\n  "),
        path,
        localized(language,
                  "\n'trelvan init' writes a profile to begin with there, and 'trelvan buttons' "
                  "shows\nthe numbers of your buttons.\n",
                  "\n'trelvan init' escribe allí un perfil para empezar, y 'trelvan buttons' "
                  "muestra\nlos números de tus botones.\n")));
}

void StartReport::tellUntaken(const std::string& path, const Findings& errors) const {
    for (const auto& finding : errors) {
        logger.warning(InlineText("Ajustes no aceptados: ", path, ":", finding.position.line, ":",
                                  finding.position.column, ": ", finding.path, ": ",
                                  finding.text(AppLanguage::spanish)));
        printError(findingLine(path, finding, language));
    }
    printError(localized(language,
                         "trelvan: the default profile stands in until this is mended; 'trelvan check' tells "
                         "more\n",
                         "trelvan: se usa el perfil por defecto hasta que se corrija; 'trelvan check' dice "
                         "más\n"));
    notifications.announce(notificationKind, shortText(errors, AppLanguage::english),
                           shortText(errors, AppLanguage::spanish));
}

}  // namespace trelvan
