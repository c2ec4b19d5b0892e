#pragma once

#include "Platform/UserDefaults.hpp"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace trelvan {

/// The type of a setting's value.
enum class SettingKind { boolean, number, string, data };

/// What a stored value of another type becomes.
enum class Reading {
    /// Nothing counts as another type: the setting has its default.
    strict,
    /// Booleans and numbers read as each other, as the system reads them; what cannot be read at all leaves
    /// the setting as it is.
    loose,
};

/// Where a setting's value is kept, and when it is written.
enum class Keeping {
    /// In memory; written with each change.
    onChange,
    /// In memory; a change is written by the explicit save only.
    onRequest,
    /// In the defaults alone: read anew at each use, written with each change.
    readAnew,
    /// Where its owner keeps it: the profile store, the system's login items, memory.
    byOwner,
};

/// All that is known about one setting. Rows are made in `SettingsCatalogue.hpp` and nowhere else.
struct SettingRow {
    /// Under which it is stored; empty when it is not among the defaults.
    std::string_view key;
    /// What its property is called in scripts and printed states.
    std::string_view name;
    /// Its key in a backup's block of settings; empty when it does not travel.
    std::string_view backupName{};

    SettingKind kind = SettingKind::boolean;
    Keeping keeping = Keeping::byOwner;
    Reading reading = Reading::strict;

    /// The default of a boolean.
    bool isOn = false;

    /// The default of a number, and its range with both ends. A number outside is clamped when it is loaded.
    double initial = 0;
    double minimum = 0;
    double maximum = 0;
    /// Above this a loaded number counts as outside the range too.
    double maximumLoaded = 0;
    /// A loaded number outside becomes the default instead, which is written back at once.
    bool resetsOutside = false;
    /// Whether a number is clamped when it is set too, and not before the next load.
    bool clampsWhenSet = true;

    /// The default of a string.
    std::string_view text{};
    /// The strings that mean something; empty where any does.
    std::span<const std::string_view> words{};
    /// What one of them is called in an error.
    std::string_view wordNoun{};
    /// Whether another string stays as it is stored, and each reader makes of it what it will; otherwise it
    /// becomes the default.
    bool keepsUnknownWords = true;

    /// Whether it decides what becomes of an event, so that a recording has it.
    bool isRecorded = false;

    /// The number as the setting takes it from the defaults, a backup or a script: moved into the range. None
    /// for none, and for what is not a number, which counts as a value of the wrong kind.
    [[nodiscard]] std::optional<double> accepted(std::optional<double> given) const;
    /// Whether a loaded number is reset to the default rather than clamped.
    [[nodiscard]] bool isReset(double loaded) const;
    /// Whether the string is one of the words, however an accented letter is written, or any may stand.
    [[nodiscard]] bool isWord(std::string_view given) const;

    /// A stored value by the row's reading, before its range or its words are looked at; none when it is of
    /// the wrong kind.
    [[nodiscard]] std::optional<bool> booleanOf(const DefaultsValue& stored) const;
    [[nodiscard]] std::optional<double> numberOf(const DefaultsValue& stored) const;

    [[nodiscard]] bool isStored() const { return !key.empty(); }
    [[nodiscard]] bool isInBackup() const { return !backupName.empty(); }
    /// What holds while nothing readable is stored. Bytes have no default.
    [[nodiscard]] DefaultsValue defaultValue() const;
};

}  // namespace trelvan
