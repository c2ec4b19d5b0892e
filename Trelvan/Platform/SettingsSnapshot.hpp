#pragma once

#include "Platform/PlatformFailure.hpp"
#include "Platform/UserDefaults.hpp"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace trelvan {

/// The settings as they were at one moment. What is set here stays here: nothing reaches the disk.
class SettingsSnapshot final : public UserDefaults {
  public:
    using Values = std::map<std::string, DefaultsValue, std::less<>>;

    explicit SettingsSnapshot(Values values) : values_(std::move(values)) {}

    [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override {
        const auto found = values_.find(key);
        return found != values_.end() ? std::optional{found->second} : std::nullopt;
    }
    void set(std::string_view key, DefaultsValue value) override {
        values_.insert_or_assign(std::string(key), std::move(value));
    }
    void remove(std::string_view key) override {
        if (const auto found = values_.find(key); found != values_.end()) values_.erase(found);
    }
    [[nodiscard]] std::optional<std::string> putAside(std::string_view /*key*/,
                                                      const Data& /*data*/) override {
        return std::nullopt;
    }

  private:
    Values values_;
};

/// Reads the user's settings without a display and without changing them; `configDirectory` as in
/// `PlatformOptions`. No file is no settings; a file that cannot be understood is a failure that names the
/// place.
[[nodiscard]] std::variant<SettingsSnapshot::Values, PlatformFailure> readSettings(
    const std::string& configDirectory);

}  // namespace trelvan
