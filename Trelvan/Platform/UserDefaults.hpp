#pragma once

#include "Platform/SettingsProblem.hpp"
#include "Utilities/Published.hpp"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace trelvan {

/// Raw bytes of a stored value.
struct Data {
    std::string bytes;
    friend bool operator==(const Data&, const Data&) = default;
};

/// One stored value.
using DefaultsValue = std::variant<bool, std::int64_t, double, std::string, Data>;

/// The user's settings, by key. Main thread. A value set is on disk soon after, whole or not at all.
///
/// Another program (an editor, a second instance) may change them meanwhile. Its changes are in force as soon
/// as they are seen, and none of them is lost by a value set here, nor the other way round.
class UserDefaults {
  public:
    /// Keys whose values another program changed or removed.
    using Keys = std::vector<std::string>;

    UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    virtual ~UserDefaults() = default;

    /// The value under the key; none when nothing is stored there.
    [[nodiscard]] virtual std::optional<DefaultsValue> object(std::string_view key) const = 0;
    virtual void set(std::string_view key, DefaultsValue value) = 0;
    virtual void remove(std::string_view key) = 0;

    /// Makes the value when it is needed; none when there is nothing to store after all.
    using Maker = std::function<std::optional<DefaultsValue>()>;
    /// Sets what `make` makes, which may be asked for as late as the value is read or written to disk, and
    /// not at all when another value is set before. Until then it must go on making the same value, or that
    /// of a later call. Whoever sets one reads the key before the end of what `make` uses.
    // NOLINTNEXTLINE(performance-unnecessary-value-param): those that make it later keep it.
    virtual void setLazily(std::string_view key, Maker make) {
        if (auto value = make()) set(key, std::move(*value));
    }

    /// Keeps a copy of bytes that are about to be lost, next to the settings, under a name that was free.
    /// Where it is; none when it could not be written.
    [[nodiscard]] virtual std::optional<std::string> putAside(std::string_view key, const Data& data) = 0;

    /// Where the settings file has the value that a path such as "[0].mappings[2].action" leads to from the
    /// key's value, or the nearest one on the way to it; none where settings are no file.
    [[nodiscard]] virtual std::optional<SettingsPlace> locate(std::string_view /*key*/,
                                                              std::string_view /*path*/) const {
        return std::nullopt;
    }

    /// Why the stored settings could not be read; those that could be read last stay in force. None when they
    /// could. Observers are told when it comes, changes and goes.
    Published<std::optional<SettingsProblem>> problem;

    /// Calls the handler after another program has changed settings, once their new values are here.
    [[nodiscard]] Subscription onOutsideChange(std::function<void(const Keys&)> handler) {
        return outsideChange_.observe(std::move(handler));
    }
    /// Tells that other hands have changed the values of these keys.
    void tellOutsideChange(Keys keys) { outsideChange_ = std::move(keys); }

  private:
    Published<Keys> outsideChange_;
};

/// Whether the key is among them.
[[nodiscard]] inline bool contains(const UserDefaults::Keys& keys, std::string_view key) {
    return std::ranges::find(keys, key) != keys.end();
}

/// The value as a number, as the system reads one: whole numbers and booleans count, strings do not.
[[nodiscard]] std::optional<double> asDouble(const std::optional<DefaultsValue>& value);

/// The value as a boolean, as the system reads one: numbers count as true when not zero, the strings "yes",
/// "true" and whole numbers likewise; what cannot be read is false. No value only for no object.
[[nodiscard]] std::optional<bool> looseBool(const std::optional<DefaultsValue>& value);

/// The value when it is a string.
[[nodiscard]] std::optional<std::string> asText(const std::optional<DefaultsValue>& value);

/// The value when it is a boolean; numbers and strings are not.
[[nodiscard]] std::optional<bool> strictBool(const std::optional<DefaultsValue>& value);

/// The value when it is a number, whole or not; booleans and strings are not.
[[nodiscard]] std::optional<double> strictNumber(const std::optional<DefaultsValue>& value);

}  // namespace trelvan
