#include "Utilities/JsonText.hpp"

#include <algorithm>
#include <charconv>

namespace trelvan {

namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// The offset behind the string that starts at `offset`.
std::size_t pastString(std::string_view json, std::size_t offset) {
    for (++offset; offset < json.size() && json[offset] != '"'; ++offset) {
        if (json[offset] == '\\') ++offset;
    }
    return std::min(offset + 1, json.size());
}

std::size_t pastSpace(std::string_view json, std::size_t offset) {
    while (offset < json.size() && isSpace(json[offset])) ++offset;
    return offset;
}

/// The offset behind the value that starts at `offset`.
std::size_t pastValue(std::string_view json, std::size_t offset) {
    std::size_t depth = 0;
    while (offset < json.size()) {
        const char c = json[offset];
        if (c == '"') {
            offset = pastString(json, offset);
            if (depth == 0) return offset;
            continue;
        }
        const bool closes = c == ']' || c == '}';
        if (depth == 0 && (closes || c == ',' || isSpace(c))) return offset;
        if (c == '[' || c == '{') ++depth;
        if (closes) --depth;
        ++offset;
        if (closes && depth == 0) return offset;
    }
    return offset;
}

/// One step towards a value: the key of an object's member, or the place in a list.
struct JsonStep {
    std::string_view key;
    std::optional<std::size_t> index;
};

/// Takes the first step off a path; none where it has no more.
std::optional<JsonStep> takeStep(std::string_view& path) {
    if (path.starts_with('.')) path.remove_prefix(1);
    if (path.empty()) return std::nullopt;
    if (path.front() != '[') {
        const auto key = path.substr(0, path.find_first_of(".["));
        path.remove_prefix(key.size());
        return JsonStep{.key = key, .index = {}};
    }
    std::size_t index = 0;
    const auto [end, error] = std::from_chars(path.data() + 1, path.data() + path.size(), index);
    if (error != std::errc{}) return std::nullopt;
    path.remove_prefix(std::min(path.size(), static_cast<std::size_t>(end - path.data()) + 1));
    return JsonStep{.key = {}, .index = index};
}

/// The value that one step from the one at `offset` leads to.
std::optional<std::size_t> stepInto(std::string_view json, std::size_t offset, const JsonStep& step) {
    if (offset >= json.size() || json[offset] != (step.index ? '[' : '{')) return std::nullopt;
    offset = pastSpace(json, offset + 1);
    for (std::size_t index = 0; offset < json.size() && json[offset] != ']' && json[offset] != '}'; ++index) {
        bool isWanted = step.index == index;
        if (!step.index) {
            const auto end = pastString(json, offset);
            isWanted = json.substr(offset + 1, end - offset - 2) == step.key;
            offset = pastSpace(json, pastSpace(json, end) + 1);
        }
        if (isWanted) return offset;
        offset = pastSpace(json, pastValue(json, offset));
        if (offset < json.size() && json[offset] == ',') offset = pastSpace(json, offset + 1);
    }
    return std::nullopt;
}

}  // namespace

std::vector<JsonMember> jsonMembers(std::string_view json) {
    std::vector<JsonMember> members;
    std::size_t offset = pastSpace(json, 0);
    if (offset >= json.size() || json[offset] != '{') return members;
    offset = pastSpace(json, offset + 1);
    while (offset < json.size() && json[offset] != '}') {
        const std::size_t keyEnd = pastString(json, offset);
        const std::size_t value = pastSpace(json, pastSpace(json, keyEnd) + 1);
        members.push_back({json.substr(offset, keyEnd - offset), value});
        offset = pastSpace(json, pastValue(json, value));
        if (offset < json.size() && json[offset] == ',') offset = pastSpace(json, offset + 1);
    }
    return members;
}

TextPosition positionOf(std::string_view text, std::size_t offset) {
    const auto before = text.substr(0, offset);
    const auto lineStart = before.rfind('\n');
    return {1 + static_cast<std::size_t>(std::ranges::count(before, '\n')),
            1 + before.size() - (lineStart == std::string_view::npos ? 0 : lineStart + 1)};
}

std::optional<std::size_t> tooDeepAt(std::string_view json) {
    std::size_t depth = 0;
    for (std::size_t offset = 0; offset < json.size();) {
        const char c = json[offset];
        if (c == '"') {
            offset = pastString(json, offset);
            continue;
        }
        if ((c == '[' || c == '{') && ++depth > deepestJson) return offset;
        if ((c == ']' || c == '}') && depth > 0) --depth;
        ++offset;
    }
    return std::nullopt;
}

std::string compactJson(std::string_view json) {
    std::string result;
    result.reserve(json.size());
    for (std::size_t offset = 0; offset < json.size();) {
        const std::size_t end = json[offset] == '"' ? pastString(json, offset) : offset + 1;
        if (!isSpace(json[offset])) result.append(json.substr(offset, end - offset));
        offset = end;
    }
    return result;
}

std::string indentedJson(std::string_view json, std::size_t width, std::size_t depth) {
    std::string result;
    result.reserve(2 * json.size());
    const auto breakLine = [&] { result.append("\n").append(depth * width, ' '); };
    for (std::size_t offset = 0; offset < json.size();) {
        const char c = json[offset];
        const std::size_t end = c == '"' ? pastString(json, offset) : offset + 1;
        if (c == ']' || c == '}') {
            --depth;
            breakLine();
        }
        if (!isSpace(c)) result.append(json.substr(offset, end - offset));
        if (c == ':') result += ' ';
        if (c == '[' || c == '{') {
            const std::size_t next = pastSpace(json, end);
            const bool isEmpty = next < json.size() && (json[next] == ']' || json[next] == '}');
            if (isEmpty) {
                result += json[next];
                offset = next + 1;
                continue;
            }
            ++depth;
            breakLine();
        }
        if (c == ',') breakLine();
        offset = end;
    }
    return result;
}

std::string_view jsonValueAt(std::string_view json, std::size_t offset) {
    const std::size_t start = pastSpace(json, offset);
    return json.substr(start, pastValue(json, start) - start);
}

std::size_t offsetOfJson(std::string_view json, std::string_view path) {
    std::size_t offset = pastSpace(json, 0);
    while (const auto step = takeStep(path)) {
        const auto next = stepInto(json, offset, *step);
        if (!next) break;
        offset = *next;
    }
    return offset;
}

}  // namespace trelvan
