#pragma once

#include "Platform/BundleInfo.hpp"
#include "Platform/Notifications.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/UserDefaults.hpp"
#include "Utilities/Uuid.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace trelvan {

/// Posts user notifications in the program's name: the one place that knows what they have in common. Main
/// thread.
class NotificationPoster {
  public:
    struct Ports {
        Notifications& center;
        const BundleInfo& bundle;
        const UserDefaults& defaults;
        MainQueue& mainQueue;
    };

    explicit NotificationPoster(const Ports& ports, UuidSource uuids = &Uuid::random);

    /// Asks for permission to show alerts with sound, where the platform has one.
    void requestAuthorization();
    /// Posts the text of the user's language under the program's name and version. Asks for permission if the
    /// user was never asked, without waiting for it.
    ///
    /// The kind is the poster's own for one subject (see `NotificationRequest`): two that tell of the same
    /// change in their own words have two kinds, so that neither takes the other's place.
    void announce(std::string_view kind, std::string_view english, std::string_view spanish);
    /// Posts at once, time-sensitive, with the default sound and a fresh identifier.
    void post(std::string_view kind, std::string title, std::string body);

  private:
    Ports ports_;
    UuidSource uuids_;
};

}  // namespace trelvan
