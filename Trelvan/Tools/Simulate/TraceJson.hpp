#pragma once

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdint>
#include <string>

namespace trelvan {

/// JSON with its keys in the order in which they were given, as traces have them.
using TraceJson = nlohmann::ordered_json;

/// A whole number without a fraction, as everywhere in a trace.
[[nodiscard]] inline TraceJson plainNumber(double number) {
    constexpr double wholeUpTo = 9007199254740992.0;
    const bool whole = number == std::trunc(number) && std::abs(number) <= wholeUpTo;
    return whole ? TraceJson(static_cast<std::int64_t>(number)) : TraceJson(number);
}

/// One line; bytes that are no UTF-8 are replaced.
[[nodiscard]] inline std::string traceText(const TraceJson& value) {
    return value.dump(-1, ' ', false, TraceJson::error_handler_t::replace);
}

}  // namespace trelvan
