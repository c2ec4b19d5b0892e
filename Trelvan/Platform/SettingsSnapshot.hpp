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

/// The settings file as it is on the disk.
struct SettingsText {
    std::string path;
    /// None where there is no file.
    std::optional<std::string> bytes;
};

/// The file that `readSettings` reads, unread; a failure when it is there and cannot be read.
[[nodiscard]] std::variant<SettingsText, PlatformFailure> readSettingsText(
    const std::string& configDirectory);

/// Where the settings file is, and whether it was made just now.
struct MadeSettings {
    std::string path;
    /// False where a file was there already; it was not touched.
    bool isNew = false;
};

/// Makes a settings file with these values where there is none, whole or not at all.
[[nodiscard]] std::variant<MadeSettings, PlatformFailure> makeSettings(
    const std::string& configDirectory, const SettingsSnapshot::Values& values);

}  // namespace trelvan
