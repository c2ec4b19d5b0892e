#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace trelvan {

/// The program as something that starts when the user logs in; the system's own registration is the only
/// record of it. Main thread.
class LoginItem {
  public:
    enum class Status : std::uint8_t { notRegistered, enabled, requiresApproval, notFound };

    /// Keeps a change handler in place; letting go of it takes the handler away.
    class Watch {
      public:
        virtual ~Watch() = default;
    };

    virtual ~LoginItem() = default;

    /// Read afresh at each call.
    [[nodiscard]] virtual Status status() = 0;
    /// The error's description when it failed.
    [[nodiscard]] virtual std::optional<std::string> registerItem() = 0;
    [[nodiscard]] virtual std::optional<std::string> unregisterItem() = 0;

    /// Calls `changed` on the main thread each time the registration may have been changed by others (the
    /// user, another program). Null where the platform is not told of such changes.
    [[nodiscard]] virtual std::unique_ptr<Watch> watch(std::function<void()> changed) = 0;
};

}  // namespace trelvan
