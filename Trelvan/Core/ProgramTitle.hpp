#pragma once

#include "Platform/BundleInfo.hpp"

#include <string>

namespace trelvan {

/// The program's name for the user: its display name, else its short name, else the product's.
[[nodiscard]] inline std::string programName(const BundleInfo& bundle) {
    if (auto name = bundle.text("CFBundleDisplayName")) return *std::move(name);
    if (auto name = bundle.text("CFBundleName")) return *std::move(name);
    return "Trelvan";
}

/// "v" and the short version; "v1.0" for a package without one.
[[nodiscard]] inline std::string versionLabel(const BundleInfo& bundle) {
    return "v" + bundle.text("CFBundleShortVersionString").value_or("1.0");
}

}  // namespace trelvan
