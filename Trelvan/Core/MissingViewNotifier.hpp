#pragma once

#include "Core/NotificationPoster.hpp"
#include "Platform/SystemViews.hpp"

#include <set>
#include <string_view>

namespace trelvan {

/// Tells the user, once for each view, that this desktop cannot show what a button asks for, and what to
/// install so that it can. Main thread.
class MissingViewNotifier {
  public:
    /// Both outlive this object.
    MissingViewNotifier(SystemViews& views, NotificationPoster& poster);
    MissingViewNotifier(const MissingViewNotifier&) = delete;
    MissingViewNotifier& operator=(const MissingViewNotifier&) = delete;
    ~MissingViewNotifier();

  private:
    void announce(const MissingView& missing);

    SystemViews& views_;
    NotificationPoster& poster_;
    /// By their English names: moves to the left and to the right are one matter.
    std::set<std::string_view> announced_;
};

}  // namespace trelvan
