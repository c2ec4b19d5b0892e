#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace trelvan {

/// How urgently a notification is to be shown; the raw values are the notification centre's.
enum class InterruptionLevel : std::uint8_t { passive = 0, active = 1, timeSensitive = 2, critical = 3 };

/// A notification that is delivered at once, with the default sound.
struct NotificationRequest {
    /// A fresh one for each notification: one with the identifier of an earlier one would replace it.
    std::string identifier;
    /// What the news is of, in this poster's words ("caps-lock"): on a platform whose notifications stay,
    /// news replaces what is shown of the same kind. Empty: it replaces nothing.
    std::string kind{};
    std::string title;
    /// Plain text; the platform escapes it where its form has markup.
    std::string body;
    InterruptionLevel level = InterruptionLevel::active;
};

/// Asked how a notification is shown while the program is frontmost. Main thread.
class NotificationDelegate {
  public:
    virtual ~NotificationDelegate() = default;

    /// The bits of `presentationOption`, handed to `answer` on the main thread.
    virtual void willPresent(const NotificationRequest& request,
                             const std::function<void(std::uint32_t options)>& answer) = 0;
};

namespace presentationOption {
inline constexpr std::uint32_t sound = 1U << 1;
inline constexpr std::uint32_t list = 1U << 3;
inline constexpr std::uint32_t banner = 1U << 4;
}  // namespace presentationOption

namespace authorizationOption {
inline constexpr std::uint32_t sound = 1U << 1;
inline constexpr std::uint32_t alert = 1U << 2;
}  // namespace authorizationOption

/// The notification centre. Calls on the main thread; none of them waits for the user or for a server.
class Notifications {
  public:
    enum class Authorization : std::uint8_t { notDetermined, denied, authorized };

    virtual ~Notifications() = default;

    /// The delegate outlives this object or is taken away with null.
    virtual void setDelegate(NotificationDelegate* delegate) = 0;
    /// Asks the user for permission where the platform has one; `options` are the bits of
    /// `authorizationOption`. What the user says is not reported.
    virtual void requestAuthorization(std::uint32_t options) = 0;
    /// Hands the permission to `answer`, on a thread of the platform's choice.
    virtual void getAuthorization(std::function<void(Authorization)> answer) = 0;
    /// Delivers at once. Where there is nobody to show it, it is lost; that is said once in the log.
    virtual void add(const NotificationRequest& request) = 0;
};

}  // namespace trelvan
