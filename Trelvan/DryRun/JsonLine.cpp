#include "DryRun/JsonLine.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace trelvan {

void JsonLine::quote(std::string_view text) {
    const bool plain = std::ranges::all_of(text, [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte >= 0x20 && byte < 0x80 && c != '"' && c != '\\';
    });
    if (plain) {
        text_ += '"';
        text_ += text;
        text_ += '"';
        return;
    }
    // Bytes that are not UTF-8 become the replacement character: a trace is always valid JSON.
    text_ += nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace trelvan
