#include "Core/Check/Finding.hpp"

#include "Utilities/Text.hpp"

namespace trelvan {

std::string Finding::text(AppLanguage language) const {
    if (suggestion.empty()) return message.in(language);
    return std::string(InlineText(message.in(language),
                                  localized(language, "; did you mean '", "; ¿quisiste decir '"), suggestion,
                                  "'?")
                           .view());
}

std::string_view nameOf(Severity severity) {
    return nameOf(severity, AppLanguage::english);
}

std::string_view nameOf(Severity severity, AppLanguage language) {
    switch (severity) {
        case Severity::error:
            return "error";
        case Severity::warning:
            return localized(language, "warning", "aviso");
        case Severity::note:
            return localized(language, "note", "nota");
    }
    return {};
}

}  // namespace trelvan
