#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// Bytes as base64 text with padding, and back; none for what is not exactly that.
[[nodiscard]] std::string base64Encode(std::string_view bytes);
[[nodiscard]] std::optional<std::string> base64Decode(std::string_view text);

}  // namespace trelvan
