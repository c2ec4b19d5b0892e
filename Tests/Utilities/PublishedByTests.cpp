#include "Utilities/PublishedBy.hpp"

#include <gtest/gtest.h>

#include <type_traits>

namespace trelvan {
namespace {

class Counter {
  public:
    PublishedBy<int, Counter> count;
    void increment() {
        count.update([](int& value) { ++value; });
    }
    void reset() { count = 0; }
};

static_assert(!std::is_assignable_v<PublishedBy<int, Counter>&, int>);
static_assert(!std::is_copy_assignable_v<PublishedBy<int, Counter>>);

TEST(PublishedBy, OwnerChangesItAndObserversAreTold) {
    Counter counter;
    std::vector<int> told;
    const auto subscription = counter.count.observe([&](int value) { told.push_back(value); });
    counter.increment();
    counter.increment();
    counter.reset();
    EXPECT_EQ(told, (std::vector{1, 2, 0}));
    EXPECT_EQ(counter.count.get(), 0);
}

}  // namespace
}  // namespace trelvan
