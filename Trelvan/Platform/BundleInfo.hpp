#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// What the program's package says of itself. Any thread.
class BundleInfo {
  public:
    virtual ~BundleInfo() = default;

    /// The text under an information key ("CFBundleDisplayName", "CFBundleName",
    /// "CFBundleShortVersionString"); none when the key is missing or no text.
    [[nodiscard]] virtual std::optional<std::string> text(std::string_view key) const = 0;
};

}  // namespace trelvan
