#include "UI/Models/InterfaceSettings.hpp"

#include "Core/SettingsCatalogue.hpp"

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
          if (contains(keys, setting::language.key) || contains(keys, setting::theme.key)) changed_ = true;
      })) {}

AppLanguage InterfaceSettings::language() const {
    return languageFromSetting(languageSetting(defaults_));
}

AppTheme InterfaceSettings::theme() const {
    const auto stored = asText(defaults_.object(setting::theme.key)).value_or("");
    return fromRawValue<AppTheme>(stored).value_or(AppTheme::system);
}

void InterfaceSettings::setLanguage(AppLanguage language) {
    store(setting::language.key, rawValue(language));
}

void InterfaceSettings::setTheme(AppTheme theme) {
    store(setting::theme.key, rawValue(theme));
}

void InterfaceSettings::store(std::string_view key, std::string_view rawValue) {
    defaults_.set(key, std::string(rawValue));
    changed_ = true;
}

WindowSize InterfaceSettings::windowSize() const {
    return {std::max(numberOf(defaults_, setting::windowWidth), smallestWindow.width),
            std::max(numberOf(defaults_, setting::windowHeight), smallestWindow.height)};
}

void InterfaceSettings::setWindowSize(WindowSize size) {
    defaults_.set(setting::windowWidth.key, size.width);
    defaults_.set(setting::windowHeight.key, size.height);
}

Subscription InterfaceSettings::observe(std::function<void()> changed) {
    return changed_.observe([changed = std::move(changed)](bool /*told*/) { changed(); });
}

}  // namespace trelvan
