#include "Tools/Simulate/JsonLine.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace trelvan {

std::string jsonText(std::string_view text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string jsonTexts(const std::vector<std::string>& texts) {
    std::string list = "[";
    for (const auto& text : texts) {
        if (list.size() > 1) list += ',';
        list += jsonText(text);
    }
    return list + "]";
}

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
    text_ += jsonText(text);
}

}  // namespace trelvan
