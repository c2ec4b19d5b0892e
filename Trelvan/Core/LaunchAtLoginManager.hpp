#pragma once

#include "Platform/LoginItem.hpp"
#include "Utilities/Logger.hpp"
#include "Utilities/PublishedBy.hpp"

#include <memory>

namespace trelvan {

/// Lets the user choose whether the program starts when they log in. The system's registration is the only
/// record of it, no setting is kept. Main thread.
class LaunchAtLoginManager {
  public:
    LaunchAtLoginManager(LoginItem& item, Logger& logger);
    LaunchAtLoginManager(const LaunchAtLoginManager&) = delete;
    LaunchAtLoginManager& operator=(const LaunchAtLoginManager&) = delete;

    /// Whether the system reports the registration as enabled: at the start, after `toggle()`, and after
    /// changes by others on platforms that tell of them.
    PublishedBy<bool, LaunchAtLoginManager> isEnabled;

    /// Switches the registration; a failure is logged, and what the system reports stays in charge.
    void toggle();

  private:
    void refresh();

    LoginItem& item_;
    Logger& logger_;
    std::unique_ptr<LoginItem::Watch> watch_;
};

}  // namespace trelvan
