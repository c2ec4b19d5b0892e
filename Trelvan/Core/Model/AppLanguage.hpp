#pragma once

#include "Core/Model/RawRepresentable.hpp"

#include <array>
#include <string_view>

namespace trelvan {

/// A language of the interface; stored by its raw value.
enum class AppLanguage { english, spanish };

template <>
struct RawValueTable<AppLanguage> {
    static constexpr std::string_view noun = "a language";
    static constexpr std::array<std::string_view, 2> rawValues{"English", "Español"};
};

/// The language that a setting's text stands for: English unless it is the Spanish raw value.
[[nodiscard]] inline AppLanguage languageFromSetting(std::string_view setting) {
    return fromRawValue<AppLanguage>(setting).value_or(AppLanguage::english);
}

/// The language of texts that are English for the English raw value only, and Spanish for any other setting.
constexpr AppLanguage spanishUnlessEnglish(std::string_view setting) {
    return setting == rawValue(AppLanguage::english) ? AppLanguage::english : AppLanguage::spanish;
}

/// The one of a pair of texts that the language shows.
constexpr std::string_view localized(AppLanguage language, std::string_view english,
                                     std::string_view spanish) {
    return language == AppLanguage::spanish ? spanish : english;
}

/// A text in both languages.
struct TextPair {
    std::string_view english;
    std::string_view spanish;
};

constexpr std::string_view localized(AppLanguage language, TextPair text) {
    return localized(language, text.english, text.spanish);
}

}  // namespace trelvan
