#include "Platform/Linux/XTest/SharedIds.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace trelvan {
namespace {

std::vector<std::uint32_t> taken(SharedIds& ids) {
    std::vector<std::uint32_t> result;
    ids.take([&](std::uint32_t id) { result.push_back(id); });
    return result;
}

TEST(SharedIdsTest, IdentifiersAreThereOnceUntilTheyAreRemovedOrTaken) {
    SharedIds ids;
    EXPECT_FALSE(ids.any());
    EXPECT_TRUE(ids.add(7));
    EXPECT_TRUE(ids.add(9));
    EXPECT_TRUE(ids.add(7));
    ids.remove(9);
    ids.remove(9);
    EXPECT_TRUE(ids.any());
    EXPECT_EQ(taken(ids), std::vector<std::uint32_t>{7});
    EXPECT_FALSE(ids.any());
    EXPECT_EQ(taken(ids), std::vector<std::uint32_t>{});
}

TEST(SharedIdsTest, OneTooMany_IsRefused) {
    SharedIds ids;
    for (std::uint32_t id = 1; id <= SharedIds::most; ++id) EXPECT_TRUE(ids.add(id));
    EXPECT_FALSE(ids.add(100));
    ids.remove(3);
    EXPECT_TRUE(ids.add(100));
}

}  // namespace
}  // namespace trelvan
