#include "Utilities/Published.hpp"

#include <gmock/gmock.h>

#include <optional>
#include <vector>

namespace trelvan {
namespace {

using testing::ElementsAre;

TEST(PublishedTest, ObserverIsToldBeforeTheChange) {
    Published<int> value{1};
    std::vector<int> old;
    std::vector<int> coming;
    const auto subscription = value.observe([&](int newValue) {
        old.push_back(value);
        coming.push_back(newValue);
    });
    value = 2;
    value = 3;
    EXPECT_THAT(old, ElementsAre(1, 2));
    EXPECT_THAT(coming, ElementsAre(2, 3));
    EXPECT_EQ(value, 3);
}

TEST(PublishedTest, EqualValueIsToldToo) {
    Published<bool> value{true};
    int told = 0;
    const auto subscription = value.observe([&](bool) { ++told; });
    value = true;
    EXPECT_EQ(told, 1);
}

TEST(PublishedTest, EndedSubscriptionIsNotTold) {
    Published<int> value{0};
    int told = 0;
    auto subscription = value.observe([&](int) { ++told; });
    value = 1;
    subscription.reset();
    value = 2;
    EXPECT_EQ(told, 1);
}

TEST(PublishedTest, ObserverMayEndItselfAndAnotherWhileTold) {
    Published<int> value{0};
    std::vector<int> order;
    Subscription first;
    Subscription second;
    first = value.observe([&](int) {
        order.push_back(1);
        first.reset();
        second.reset();
    });
    second = value.observe([&](int) { order.push_back(2); });
    value = 1;
    value = 2;
    EXPECT_THAT(order, ElementsAre(1));
}

TEST(PublishedTest, SubscriptionMayOutliveWhatItObserves) {
    Subscription subscription;
    {
        Published<int> value{0};
        subscription = value.observe([](int) {});
    }
    subscription.reset();
    SUCCEED();
}

TEST(PublishedTest, UpdateTellsTheValueAsItWillBe) {
    Published<std::vector<int>> value;
    std::size_t coming = 0;
    const auto subscription = value.observe([&](const std::vector<int>& next) { coming = next.size(); });
    value.update([](std::vector<int>& list) { list.push_back(7); });
    EXPECT_EQ(coming, 1U);
    EXPECT_THAT(value.get(), ElementsAre(7));
}

}  // namespace
}  // namespace trelvan
