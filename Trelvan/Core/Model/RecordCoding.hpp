#pragma once

#include "Core/Model/CodingError.hpp"
#include "Core/Model/TrackballProfile.hpp"
#include "Utilities/Uuid.hpp"

#include <string>
#include <string_view>
#include <vector>

/// The JSON form of profiles. Any thread; nothing throws.
namespace trelvan {

/// Compact JSON of the profiles, keys in alphabetical order; fails on a text that is not UTF-8.
[[nodiscard]] Coded<std::string> encodeProfiles(const std::vector<TrackballProfile>& profiles);

/// A JSON list of profiles. Identifiers that are missing come from `newId`.
[[nodiscard]] Coded<std::vector<TrackballProfile>> decodeProfiles(std::string_view bytes,
                                                                  const UuidSource& newId);

/// One JSON object that is a profile. Identifiers that are missing come from `newId`.
[[nodiscard]] Coded<TrackballProfile> decodeProfile(std::string_view bytes, const UuidSource& newId);

}  // namespace trelvan
