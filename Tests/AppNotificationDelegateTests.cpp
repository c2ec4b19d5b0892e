#include "AppNotificationDelegate.hpp"

#include <gmock/gmock.h>

#include <vector>

namespace trelvan {
namespace {

TEST(AppNotificationDelegateTest, AnswersAtOnceWithBannerListAndSound) {
    AppNotificationDelegate delegate;
    std::vector<std::uint32_t> answers;
    delegate.willPresent({.identifier = "1", .title = "t", .body = "b"},
                         [&](std::uint32_t options) { answers.push_back(options); });
    EXPECT_THAT(answers, testing::ElementsAre(26U));
}

}  // namespace
}  // namespace trelvan
