#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace trelvan {

/// Raw bytes of a stored value.
struct Data {
    std::string bytes;
    friend bool operator==(const Data&, const Data&) = default;
};

/// One stored value.
using DefaultsValue = std::variant<bool, std::int64_t, double, std::string, Data>;

/// The user's settings, by key. Main thread. A value set is on disk soon after, whole or not at all.
class UserDefaults {
  public:
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
    virtual void setLazily(std::string_view key, Maker make) {
        if (auto value = make()) set(key, std::move(*value));
    }

    /// Keeps a copy of bytes that are about to be lost, next to the settings, under a name that was free.
    /// Where it is; none when it could not be written.
    [[nodiscard]] virtual std::optional<std::string> putAside(std::string_view key, const Data& data) = 0;
};

/// The value as a number, as the system reads one: whole numbers and truth values count, texts do not.
[[nodiscard]] std::optional<double> asDouble(const std::optional<DefaultsValue>& value);

/// The value as a truth value, as the system reads one: numbers count as true when not zero, the texts "yes",
/// "true" and whole numbers likewise; what cannot be read is false. No value only for no object.
[[nodiscard]] std::optional<bool> asBool(const std::optional<DefaultsValue>& value);

/// The value when it is a text.
[[nodiscard]] std::optional<std::string> asText(const std::optional<DefaultsValue>& value);

/// The value when it is a truth value; numbers and texts are not.
[[nodiscard]] std::optional<bool> onlyBool(const std::optional<DefaultsValue>& value);

/// The value when it is a number, whole or not; truth values and texts are not.
[[nodiscard]] std::optional<double> onlyNumber(const std::optional<DefaultsValue>& value);

}  // namespace trelvan
