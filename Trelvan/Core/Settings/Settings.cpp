#include "Core/Settings/Settings.hpp"

#include <algorithm>
#include <cstddef>
#include <string>

namespace trelvan {

namespace {

std::size_t indexOf(const SettingRow& row) {
    const auto found = std::ranges::find(setting::all, row.name, &SettingRow::name);
    if (found == setting::all.end()) fatal("a setting that is not in the catalogue");
    return static_cast<std::size_t>(found - setting::all.begin());
}

}  // namespace

std::unique_ptr<AnySetting> makeSetting(const SettingRow& row, UserDefaults& defaults) {
    switch (row.kind) {
        case SettingKind::boolean:
            return std::make_unique<Setting<bool>>(row, defaults);
        case SettingKind::number:
            return std::make_unique<Setting<double>>(row, defaults);
        case SettingKind::string:
            return std::make_unique<Setting<std::string>>(row, defaults);
        case SettingKind::data:
            break;
    }
    return nullptr;
}

bool OwnedSwitch::take(const DefaultsValue& value) {
    const auto isOn = strictBool(value);
    if (isOn) set_(*isOn);
    return isOn.has_value();
}

Settings::Settings(UserDefaults& defaults) {
    for (const auto& row : setting::all) {
        if (row.keeping != Keeping::readAnew) continue;
        own_.push_back(makeSetting(row, defaults));
        own_.back()->load();
        add(*own_.back());
    }
    outsideChange_ = defaults.onOutsideChange([this](const auto& keys) {
        for (const auto& setting : own_) setting->follow(keys);
    });
}

void Settings::add(AnySetting& setting) {
    byRow_[indexOf(setting.row())] = &setting;
}

void Settings::add(std::span<AnySetting* const> settings) {
    for (auto* const setting : settings) add(*setting);
}

AnySetting* Settings::at(const SettingRow& row) const {
    return byRow_[indexOf(row)];
}

AnySetting* Settings::named(std::string_view name) const {
    const auto found = std::ranges::find(setting::all, name, &SettingRow::name);
    return found != setting::all.end() ? at(*found) : nullptr;
}

}  // namespace trelvan
