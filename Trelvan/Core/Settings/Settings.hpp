#pragma once

#include "Core/Settings/Setting.hpp"
#include "Core/Settings/SettingsCatalogue.hpp"
#include "Platform/UserDefaults.hpp"
#include "Utilities/Fatal.hpp"

#include <array>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace trelvan {

/// A setting of the row's type, as yet unloaded; null for bytes.
[[nodiscard]] std::unique_ptr<AnySetting> makeSetting(const SettingRow& row, UserDefaults& defaults);

/// A boolean that its owner keeps somewhere else than in the defaults.
class OwnedSwitch final : public AnySetting {
  public:
    OwnedSwitch(const SettingRow& row, std::function<bool()> get, std::function<void(bool)> set)
        : AnySetting(row), get_(std::move(get)), set_(std::move(set)) {}

    Loaded load() override { return Loaded::taken; }
    void save() override {}
    [[nodiscard]] DefaultsValue exported() const override { return get_(); }
    bool take(const DefaultsValue& value) override;

  private:
    std::function<bool()> get_;
    std::function<void(bool)> set_;
};

/// The settings of a running program by their rows, wherever each of them lives. Makes and keeps those that
/// no service has, and follows them when another program changes them. Main thread.
class Settings {
  public:
    explicit Settings(UserDefaults& defaults);
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    /// Enters a setting that a service has, which outlives this object's use.
    void add(AnySetting& setting);
    void add(std::span<AnySetting* const> settings);

    /// Null where neither this object nor a service has one as a single value: the profiles.
    [[nodiscard]] AnySetting* at(const SettingRow& row) const;
    /// By the name of the property; null when there is none.
    [[nodiscard]] AnySetting* named(std::string_view name) const;

    /// One that no service has.
    template <typename T>
    [[nodiscard]] Setting<T>& of(const SettingRow& row) const {
        auto* const setting = dynamic_cast<Setting<T>*>(at(row));
        if (setting == nullptr) fatal("a setting asked for by another type");
        return *setting;
    }

  private:
    std::array<AnySetting*, setting::all.size()> byRow_{};
    std::vector<std::unique_ptr<AnySetting>> own_;
    Subscription outsideChange_;
};

}  // namespace trelvan
