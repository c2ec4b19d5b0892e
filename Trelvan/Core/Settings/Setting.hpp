#pragma once

#include "Core/Model/RawRepresentable.hpp"
#include "Core/Settings/SettingRow.hpp"
#include "Platform/UserDefaults.hpp"
#include "Utilities/Fatal.hpp"
#include "Utilities/Published.hpp"

#include <cmath>
#include <concepts>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace trelvan {

/// What a load did.
enum class Loaded {
    /// The stored value, or the default, holds.
    taken,
    /// What is stored is of the wrong kind and changed nothing.
    ignored,
    /// The stored number does not survive a start: the default holds and was written back.
    reset,
};

/// A setting whatever its type, for all that treats settings alike. Main thread.
class AnySetting {
  public:
    explicit AnySetting(const SettingRow& row) : row_(&row) {}
    AnySetting(const AnySetting&) = delete;
    AnySetting& operator=(const AnySetting&) = delete;
    virtual ~AnySetting() = default;

    [[nodiscard]] const SettingRow& row() const { return *row_; }

    /// Reads what is stored, by the row's policy.
    virtual Loaded load() = 0;
    /// Writes the value as it is.
    virtual void save() = 0;
    /// The value in force.
    [[nodiscard]] virtual DefaultsValue exported() const = 0;
    /// Sets the value that a backup, a script or a person gives, by the row's policy. False, and nothing
    /// changes, for another type, for what is not a number and for an unknown word that may not stand.
    virtual bool take(const DefaultsValue& value) = 0;

    /// Reads it again if another program changed it.
    Loaded follow(const UserDefaults::Keys& keys) {
        return contains(keys, row_->key) ? load() : Loaded::ignored;
    }

  private:
    const SettingRow* row_;
};

/// How a value of one type stands in the defaults, and what becomes of one that comes from there.
template <typename T>
struct StoredForm;

template <>
struct StoredForm<bool> {
    static constexpr SettingKind kind = SettingKind::boolean;
    static bool initial(const SettingRow& row) { return row.isOn; }
    static DefaultsValue of(bool value) { return value; }
    static std::optional<bool> loaded(const SettingRow& row, const DefaultsValue& stored) {
        return row.booleanOf(stored);
    }
    static std::optional<bool> given(const DefaultsValue& value) { return strictBool(value); }
    static std::optional<bool> accepted(const SettingRow& /*row*/, bool value) { return value; }
};

template <>
struct StoredForm<double> {
    static constexpr SettingKind kind = SettingKind::number;
    static double initial(const SettingRow& row) { return row.initial; }
    static DefaultsValue of(double value) { return value; }
    static std::optional<double> loaded(const SettingRow& row, const DefaultsValue& stored) {
        return row.accepted(row.numberOf(stored));
    }
    static std::optional<double> given(const DefaultsValue& value) { return strictNumber(value); }
    static std::optional<double> accepted(const SettingRow& row, double value) {
        if (!row.clampsWhenSet && !std::isnan(value)) return value;
        return row.accepted(value);
    }
};

template <>
struct StoredForm<std::string> {
    static constexpr SettingKind kind = SettingKind::string;
    static std::string initial(const SettingRow& row) { return std::string(row.text); }
    static DefaultsValue of(const std::string& value) { return value; }
    static std::optional<std::string> loaded(const SettingRow& row, const DefaultsValue& stored) {
        auto text = asText(stored);
        return text && (row.keepsUnknownWords || row.isWord(*text)) ? text : std::nullopt;
    }
    static std::optional<std::string> given(const DefaultsValue& value) { return asText(value); }
    static std::optional<std::string> accepted(const SettingRow& row, const std::string& value) {
        return row.keepsUnknownWords || row.isWord(value) ? std::optional(value) : std::nullopt;
    }
};

template <RawRepresentable Enum>
struct StoredForm<Enum> {
    static constexpr SettingKind kind = SettingKind::string;
    static Enum initial(const SettingRow& row) { return fromRawValue<Enum>(row.text).value_or(Enum{}); }
    static DefaultsValue of(Enum value) { return std::string(rawValue(value)); }
    static std::optional<Enum> loaded(const SettingRow& /*row*/, const DefaultsValue& stored) {
        return given(stored);
    }
    static std::optional<Enum> given(const DefaultsValue& value) {
        const auto text = asText(value);
        return text ? fromRawValue<Enum>(*text) : std::nullopt;
    }
    static std::optional<Enum> accepted(const SettingRow& /*row*/, Enum value) { return value; }
};

/// What the defaults hold for a row now; its default when that is nothing readable. For a setting that is
/// read anew at each use.
template <typename T>
[[nodiscard]] T storedValue(const SettingRow& row, const UserDefaults& defaults) {
    const auto stored = defaults.object(row.key);
    auto value = stored ? StoredForm<T>::loaded(row, *stored) : std::nullopt;
    return value ? *std::move(value) : StoredForm<T>::initial(row);
}

/// One setting: reads like its value, and tells its observers before it changes. It loads, clamps, saves and
/// exports itself by the policy of its row. Main thread.
template <typename T>
class Setting final : public AnySetting {
    using Form = StoredForm<T>;

  public:
    using Observer = typename Published<T>::Observer;

    /// Has its default until it is loaded. `afterSet` is called after each value that was set, and not after
    /// a load.
    Setting(const SettingRow& row, UserDefaults& defaults, std::function<void()> afterSet = {})
        : AnySetting(row), defaults_(&defaults), value_(Form::initial(row)), afterSet_(std::move(afterSet)) {
        if (row.kind != Form::kind) fatal("a setting of another type than its row");
    }

    [[nodiscard]] const T& get() const { return value_.get(); }
    operator const T&() const {
        return value_.get();
    }  // NOLINT(google-explicit-constructor): reads like the value
    const T* operator->() const { return &value_.get(); }
    [[nodiscard]] Subscription observe(Observer observer) { return value_.observe(std::move(observer)); }

    /// Sets it, also when it has that value already; written at once unless the row is written on request.
    /// What is not a number changes nothing.
    Setting& operator=(const T& value) {
        if (auto accepted = Form::accepted(row(), value)) set(*std::move(accepted));
        return *this;
    }

    Loaded load() override {
        const auto stored = defaults_->object(row().key);
        if (!stored) {
            value_ = Form::initial(row());
            return Loaded::taken;
        }
        auto loaded = Form::loaded(row(), *stored);
        if (!loaded) {
            if (row().reading == Reading::strict) value_ = Form::initial(row());
            return Loaded::ignored;
        }
        if constexpr (std::same_as<T, double>) {
            if (row().isReset(row().numberOf(*stored).value_or(*loaded))) {
                value_ = row().initial;
                save();
                return Loaded::reset;
            }
        }
        value_ = *std::move(loaded);
        return Loaded::taken;
    }

    void save() override { defaults_->set(row().key, Form::of(get())); }

    [[nodiscard]] DefaultsValue exported() const override {
        return Form::of(row().keeping == Keeping::readAnew ? storedValue<T>(row(), *defaults_) : get());
    }

    bool take(const DefaultsValue& value) override {
        const auto given = Form::given(value);
        auto accepted = given ? Form::accepted(row(), *given) : std::nullopt;
        if (!accepted) return false;
        set(*std::move(accepted));
        return true;
    }

  private:
    void set(T value) {
        value_ = std::move(value);
        if (row().keeping != Keeping::onRequest) save();
        if (afterSet_) afterSet_();
    }

    UserDefaults* defaults_;
    Published<T> value_;
    std::function<void()> afterSet_;
};

}  // namespace trelvan
