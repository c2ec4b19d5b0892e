#pragma once

#include "Core/NotificationPoster.hpp"
#include "Support/SequentialUuids.hpp"
#include "Support/TestDesktop.hpp"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace trelvan::test {

/// A notification centre that shows what is posted, for services that announce something.
class NotifierFixture : public testing::Test {
  protected:
    /// The bodies of what was shown, in order.
    std::vector<std::string> bodies() const {
        std::vector<std::string> texts;
        for (const auto& shown : desktop.all<trace::Notification>()) texts.push_back(shown.body);
        return texts;
    }
    void runFor(double seconds) { desktop.time.runFor(Seconds{seconds}); }

    TestDesktop desktop;
    NotificationPoster poster{{.center = desktop.notifications(),
                               .bundle = desktop.bundleInfo(),
                               .defaults = desktop.userDefaults(),
                               .mainQueue = desktop.mainQueue()},
                              sequentialUuids()};
};

}  // namespace trelvan::test
