#pragma once

#include "Core/Model/RecordJson.hpp"
#include "Core/Model/TrackballProfile.hpp"
#include "Support/SequentialUuids.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace trelvan::test {

/// The record that the text decodes to; a failed test and an empty record when it does not.
template <typename Record>
Record decoded(std::string_view bytes) {
    auto result = json::decode<Record>(bytes, sequentialUuids());
    if (result) return *result;
    ADD_FAILURE() << result.error().text();
    return {};
}

/// The text of the error that decoding ends in; "" when it succeeds.
template <typename Record>
std::string decodingError(std::string_view bytes) {
    const auto result = json::decode<Record>(bytes, sequentialUuids());
    return result ? std::string() : result.error().text();
}

/// The JSON that the record encodes to.
template <typename Record>
nlohmann::json encoded(const Record& record) {
    const auto result = json::encode(record);
    if (result) return nlohmann::json::parse(*result);
    ADD_FAILURE() << result.error().text();
    return {};
}

}  // namespace trelvan::test
