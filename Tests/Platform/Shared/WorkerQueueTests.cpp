#include "Platform/Shared/WorkerQueue.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <vector>

namespace trelvan {
namespace {

constexpr std::chrono::seconds bound{10};

TEST(WorkerQueue, JobsDueAtOnce_RunInTheOrderTheyWerePutIn) {
    std::vector<int> order;
    std::promise<void> done;
    WorkerQueue queue;
    for (int number = 0; number < 100; ++number) queue.async([&order, number] { order.push_back(number); });
    queue.async([&done] { done.set_value(); });
    ASSERT_EQ(done.get_future().wait_for(bound), std::future_status::ready);
    ASSERT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST(WorkerQueue, LaterJob_RunsAfterItsDelayAndAfterSoonerOnes) {
    std::vector<int> order;
    std::promise<std::chrono::steady_clock::time_point> done;
    WorkerQueue queue;
    const auto start = std::chrono::steady_clock::now();
    queue.after(Seconds{0.02}, [&] {
        order.push_back(2);
        done.set_value(std::chrono::steady_clock::now());
    });
    queue.after(Seconds{0.005}, [&] { order.push_back(1); });
    auto end = done.get_future();
    ASSERT_EQ(end.wait_for(bound), std::future_status::ready);
    EXPECT_GE(end.get() - start, std::chrono::milliseconds(20));
    EXPECT_EQ(order, (std::vector{1, 2}));
}

TEST(WorkerQueue, TooManyJobs_AreLeftOutAndWhatHasBegunGoesOn) {
    std::promise<void> release;
    std::promise<void> done;
    std::promise<void> again;
    std::size_t begun = 0;
    int continued = 0;
    WorkerQueue queue;
    queue.async([&] { release.get_future().wait(); });
    for (std::size_t job = 0; job < 10 * WorkerQueue::maxWaiting; ++job) queue.async([&] { ++begun; });
    for (int job = 0; job < 100; ++job) queue.after(Seconds{0}, [&] { ++continued; });
    queue.after(Seconds{0.001}, [&] { done.set_value(); });
    release.set_value();
    ASSERT_EQ(done.get_future().wait_for(bound), std::future_status::ready);
    EXPECT_GE(begun, WorkerQueue::maxWaiting - 1);
    EXPECT_LE(begun, WorkerQueue::maxWaiting);
    EXPECT_EQ(continued, 100);
    queue.async([&] { again.set_value(); });
    EXPECT_EQ(again.get_future().wait_for(bound), std::future_status::ready) << "there is room again";
}

TEST(WorkerQueue, EndWithJobsPending_RunsThemAtOnceInOrder) {
    std::vector<int> order;
    const auto start = std::chrono::steady_clock::now();
    {
        WorkerQueue queue;
        queue.after(Seconds{3600}, [&] { order.push_back(3); });
        queue.after(Seconds{60}, [&] {
            order.push_back(1);
            // The rest of a sequence, put in only now.
            queue.after(Seconds{1}, [&] { order.push_back(2); });
        });
    }
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

TEST(WorkerQueue, EndWithAJobThatAlwaysFollowsItself_StillEnds) {
    int runs = 0;
    // Outlives the queue, whose end runs it.
    std::function<void()> again;
    {
        WorkerQueue queue;
        again = [&] {
            ++runs;
            queue.after(Seconds{1}, again);
        };
        queue.after(Seconds{1}, again);
    }
    EXPECT_GT(runs, 1);
}

}  // namespace
}  // namespace trelvan
