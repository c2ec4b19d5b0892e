#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace trelvan {

/// The program as something that starts when the user logs in; the system's own registration is the only
/// record of it. Main thread.
class LoginItem {
  public:
    enum class Status : std::uint8_t { notRegistered, enabled, requiresApproval, notFound };

    virtual ~LoginItem() = default;

    /// Read afresh at each call.
    [[nodiscard]] virtual Status status() = 0;
    /// The error's description when it failed.
    [[nodiscard]] virtual std::optional<std::string> registerItem() = 0;
    [[nodiscard]] virtual std::optional<std::string> unregisterItem() = 0;
};

}  // namespace trelvan
