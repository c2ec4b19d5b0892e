#include "Core/RadialLayout.hpp"
#include "UI/RadialNavigation.hpp"

#include <gtest/gtest.h>

#include <set>

namespace trelvan {
namespace {

RadialLayout layoutOf(std::size_t count) {
    return RadialLayout::make({700, 450}, {0, 0, 1440, 900}, count);
}

std::optional<std::size_t> after(const RadialLayout& layout, std::optional<std::size_t> from, Arrow arrow) {
    return nextPlace(layout.entries, layout.centre, from, arrow);
}

TEST(RadialNavigation, FromTheMiddle_AnArrowLeadsToTheEntryThatLiesThere) {
    const auto eight = layoutOf(8);
    EXPECT_EQ(after(eight, std::nullopt, Arrow::up), 0U);
    EXPECT_EQ(after(eight, std::nullopt, Arrow::right), 2U);
    EXPECT_EQ(after(eight, std::nullopt, Arrow::down), 4U);
    EXPECT_EQ(after(eight, std::nullopt, Arrow::left), 6U);
}

TEST(RadialNavigation, OnTheRing_AnArrowGoesTheWayItPoints) {
    const auto eight = layoutOf(8);
    EXPECT_EQ(after(eight, 0, Arrow::right), 1U);
    EXPECT_EQ(after(eight, 1, Arrow::down), 2U);
    // At the bottom right is the neighbour against the clock.
    EXPECT_EQ(after(eight, 4, Arrow::right), 3U);
    EXPECT_EQ(after(eight, 0, Arrow::down), 4U);
}

TEST(RadialNavigation, NothingAhead_LeadsNowhere) {
    const auto eight = layoutOf(8);
    EXPECT_EQ(after(eight, 0, Arrow::up), std::nullopt);
    EXPECT_EQ(after(eight, 2, Arrow::right), std::nullopt);
    // Two entries of one row differ in height by rounding only.
    EXPECT_EQ(after(layoutOf(4), 1, Arrow::right), std::nullopt);
    EXPECT_EQ(after(layoutOf(1), 0, Arrow::left), std::nullopt);
}

TEST(RadialNavigation, EveryEntryOfEveryMenu_IsReachedByArrows) {
    for (std::size_t count = 1; count <= RadialLayout::maxEntries; ++count) {
        const auto layout = layoutOf(count);
        std::set<std::size_t> reached;
        std::vector<std::optional<std::size_t>> next{std::nullopt};
        while (!next.empty()) {
            const auto from = next.back();
            next.pop_back();
            for (const Arrow arrow : {Arrow::left, Arrow::right, Arrow::up, Arrow::down}) {
                const auto to = after(layout, from, arrow);
                if (to && reached.insert(*to).second) next.push_back(to);
            }
        }
        EXPECT_EQ(reached.size(), count);
    }
}

}  // namespace
}  // namespace trelvan
