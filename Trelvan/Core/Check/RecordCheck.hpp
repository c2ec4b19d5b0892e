#pragma once

#include "Core/Check/Finding.hpp"
#include "Core/Model/RecordJson.hpp"
#include "Core/Model/TrackballProfile.hpp"

#include <string>

namespace trelvan {

/// Compares a JSON list of profiles with the form of the records and notes everything that differs: values of
/// the wrong kind, texts that stand for nothing, missing keys, unknown keys. Decoding stops at the first.
void checkProfileRecords(const json::Value& profiles, const std::string& path, Findings& findings);

}  // namespace trelvan
