#include "UI/Models/InterfaceSettings.hpp"

#include "Core/Settings/LanguageSetting.hpp"
#include "Core/Settings/SettingsCatalogue.hpp"

#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

double numberOf(const UserDefaults& defaults, const SettingRow& row) {
    return row.accepted(asDouble(defaults.object(row.key))).value_or(row.initial);
}

}  // namespace

InterfaceSettings::InterfaceSettings(UserDefaults& defaults)
    : defaults_(defaults), outsideChange_(defaults.onOutsideChange([this](const UserDefaults::Keys& keys) {
          if (contains(keys, setting::row("language").key) || contains(keys, setting::row("theme").key))
              changed_ = true;
      })) {}

AppLanguage InterfaceSettings::language() const {
    return languageFromSetting(languageSetting(defaults_));
}

AppTheme InterfaceSettings::theme() const {
    const auto stored = asText(defaults_.object(setting::row("theme").key)).value_or("");
    return fromRawValue<AppTheme>(stored).value_or(AppTheme::system);
}

void InterfaceSettings::setLanguage(AppLanguage language) {
    store(setting::row("language").key, rawValue(language));
}

void InterfaceSettings::setTheme(AppTheme theme) {
    store(setting::row("theme").key, rawValue(theme));
}

void InterfaceSettings::store(std::string_view key, std::string_view rawValue) {
    defaults_.set(key, std::string(rawValue));
    changed_ = true;
}

WindowSize InterfaceSettings::windowSize() const {
    return {std::max(numberOf(defaults_, setting::row("windowWidth")), smallestWindow.width),
            std::max(numberOf(defaults_, setting::row("windowHeight")), smallestWindow.height)};
}

void InterfaceSettings::setWindowSize(WindowSize size) {
    defaults_.set(setting::row("windowWidth").key, size.width);
    defaults_.set(setting::row("windowHeight").key, size.height);
}

Subscription InterfaceSettings::observe(std::function<void()> changed) {
    return changed_.observe([changed = std::move(changed)](bool /*told*/) { changed(); });
}

}  // namespace trelvan
