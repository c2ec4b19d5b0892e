#pragma once

#include "Platform/BundleInfo.hpp"
#include "Version.hpp"

namespace trelvan {

/// The program has no package of its own on Linux: what the build knows of it. Any thread.
class LinuxBundleInfo final : public BundleInfo {
  public:
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override {
        if (key == "CFBundleDisplayName" || key == "CFBundleName") return "Trelvan";
        if (key == "CFBundleShortVersionString") return programVersion;
        return std::nullopt;
    }
};

}  // namespace trelvan
