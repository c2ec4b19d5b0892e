#pragma once

#include "Core/Settings/SettingsCatalogue.hpp"

#include <gtest/gtest.h>

#include <cctype>
#include <string>
#include <vector>

namespace trelvan::test {

/// The rows that are plain values in the defaults.
inline std::vector<SettingRow> valueRows() {
    std::vector<SettingRow> rows;
    for (const auto& row : setting::all) {
        if (row.isStored() && row.kind != SettingKind::data) rows.push_back(row);
    }
    return rows;
}

/// The rows that a service or the interface has as a setting.
inline std::vector<SettingRow> settableRows() {
    std::vector<SettingRow> rows;
    for (const auto& row : setting::all) {
        const bool isProfiles = row.isStored() && row.keeping == Keeping::byOwner;
        if (!isProfiles) rows.push_back(row);
    }
    return rows;
}

/// A value that is not the default, survives a start and is taken as it is.
inline DefaultsValue otherValue(const SettingRow& row) {
    switch (row.kind) {
        case SettingKind::boolean:
            return !row.isOn;
        case SettingKind::number:
            return (row.minimum + row.initial) / 2 == row.initial ? (row.initial + row.maximumLoaded) / 2
                                                                  : (row.minimum + row.initial) / 2;
        case SettingKind::string:
            return std::string(row.words.empty() ? "something" : row.words.back());
        case SettingKind::data:
            break;
    }
    return Data{"something"};
}

/// Values that are never of the row's type, however loosely it reads.
inline std::vector<DefaultsValue> neverOfTheType(const SettingRow& row) {
    if (row.kind == SettingKind::number) return {std::string("1"), Data{"1"}};
    if (row.kind == SettingKind::string) return {true, 1.0, Data{"System"}};
    return {};
}

/// Names a test after its row.
inline std::string rowName(const testing::TestParamInfo<SettingRow>& info) {
    return std::string(info.param.name);
}

}  // namespace trelvan::test
