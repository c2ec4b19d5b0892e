#include "Core/Settings/AppSettingsSnapshot.hpp"

#include "Core/Model/RecordJson.hpp"
#include "Utilities/Fatal.hpp"
#include "Utilities/Text.hpp"

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

namespace trelvan {

namespace {

/// The place of a row among those in the backup.
std::size_t placeOf(const SettingRow& row) {
    std::size_t place = 0;
    for (const auto& each : setting::all) {
        if (!each.isInBackup()) continue;
        if (each.backupName == row.backupName) return place;
        ++place;
    }
    fatal("a setting that is in no backup");
}

bool areEqual(const DefaultsValue& left, const DefaultsValue& right) {
    const auto* const text = std::get_if<std::string>(&left);
    const auto* const other = std::get_if<std::string>(&right);
    return text != nullptr && other != nullptr ? canonicallyEquivalent(*text, *other) : left == right;
}

}  // namespace

AppSettingsSnapshot::AppSettingsSnapshot() {
    for (const auto& row : setting::all) {
        if (row.isInBackup()) set(row, row.defaultValue());
    }
}

const DefaultsValue& AppSettingsSnapshot::operator[](const SettingRow& row) const {
    return values_[placeOf(row)];
}

void AppSettingsSnapshot::set(const SettingRow& row, DefaultsValue value) {
    if (value.index() != row.defaultValue().index()) fatal("a setting of another type than its row");
    values_[placeOf(row)] = std::move(value);
}

bool operator==(const AppSettingsSnapshot& left, const AppSettingsSnapshot& right) {
    for (std::size_t place = 0; place < left.values_.size(); ++place) {
        if (!areEqual(left.values_[place], right.values_[place])) return false;
    }
    return true;
}

namespace json {

namespace {

/// Reads a value of the type that `out` has.
Problem readSame(const Value& value, DefaultsValue& out, const UuidSource& newId) {
    return std::visit(
        [&](auto& held) -> Problem {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, Data>) {
                return unexpected("a value with a form of its own", value);
            } else {
                return read(value, held, newId);
            }
        },
        out);
}

Problem writeAny(const DefaultsValue& in, Value& value) {
    return std::visit(
        [&](const auto& held) -> Problem {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, Data>) {
                return CodingError{"", "bytes have no form here"};
            } else {
                return write(held, value);
            }
        },
        in);
}

}  // namespace

Problem read(const Value& value, AppSettingsSnapshot& out, const UuidSource& newId) {
    if (!value.is_object()) return unexpected("an object", value);
    for (const auto& row : setting::all) {
        if (!row.isInBackup()) continue;
        const std::string key(row.backupName);
        const Value* const found = member(value, key);
        if (found == nullptr)
            return CodingError{key, value.contains(key) ? "required key is null" : "required key is missing"};
        DefaultsValue taken = row.defaultValue();
        if (auto problem = readSame(*found, taken, newId)) return std::move(*problem).inside(key);
        out.set(row, std::move(taken));
    }
    return std::nullopt;
}

Problem write(const AppSettingsSnapshot& in, Value& value) {
    value = Value::object();
    for (const auto& row : setting::all) {
        if (!row.isInBackup()) continue;
        const std::string key(row.backupName);
        if (auto problem = writeAny(in[row], value[key])) return std::move(*problem).inside(key);
    }
    return std::nullopt;
}

}  // namespace json

}  // namespace trelvan
