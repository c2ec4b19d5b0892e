#include "Core/Model/ButtonAction.hpp"

#include "Core/Model/ActionCatalogue.hpp"

namespace trelvan {

std::string_view englishLabel(ButtonAction action) {
    return rowOf(action).englishLabel;
}

std::string_view label(ButtonAction action, std::string_view languageSetting) {
    return localized(spanishUnlessEnglish(languageSetting), englishLabel(action), rawValue(action));
}

}  // namespace trelvan
