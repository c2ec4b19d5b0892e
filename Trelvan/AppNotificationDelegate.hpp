#pragma once

#include "Platform/Notifications.hpp"

namespace trelvan {

/// Lets the program's own notifications be shown while it is frontmost as at any other time. Main thread.
class AppNotificationDelegate final : public NotificationDelegate {
  public:
    void willPresent(const NotificationRequest& /*request*/,
                     const std::function<void(std::uint32_t options)>& answer) override {
        answer(presentationOption::banner | presentationOption::list | presentationOption::sound);
    }
};

}  // namespace trelvan
