#include "Platform/Linux/Shell/DesktopGrid.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

TEST(DesktopGrid, OneRow_StopsAtBothEnds) {
    EXPECT_EQ((DesktopGrid{.count = 3, .current = 0}.neighbour(false)), std::nullopt);
    EXPECT_EQ((DesktopGrid{.count = 3, .current = 0}.neighbour(true)), 1U);
    EXPECT_EQ((DesktopGrid{.count = 3, .current = 2}.neighbour(true)), std::nullopt);
    EXPECT_EQ((DesktopGrid{.count = 3, .current = 2}.neighbour(false)), 1U);
}

TEST(DesktopGrid, TwoColumns_StopAtTheEndOfTheRow) {
    EXPECT_EQ((DesktopGrid{.count = 4, .current = 1, .columns = 2}.neighbour(true)), std::nullopt);
    EXPECT_EQ((DesktopGrid{.count = 4, .current = 2, .columns = 2}.neighbour(false)), std::nullopt);
    EXPECT_EQ((DesktopGrid{.count = 4, .current = 2, .columns = 2}.neighbour(true)), 3U);
    EXPECT_EQ((DesktopGrid{.count = 3, .current = 2, .columns = 2}.neighbour(true)), std::nullopt);
}

TEST(DesktopGrid, NumberedByColumns_MovesAWholeColumn) {
    const auto at = [](unsigned long current) {
        return DesktopGrid{.count = 4, .current = current, .columns = 2, .byColumns = true, .rows = 2};
    };
    EXPECT_EQ(at(0).neighbour(true), 2U);
    EXPECT_EQ(at(3).neighbour(false), 1U);
    EXPECT_EQ(at(2).neighbour(true), std::nullopt);
    EXPECT_EQ(at(1).neighbour(false), std::nullopt);
}

TEST(DesktopGrid, NoDesktops_HasNoNeighbour) {
    EXPECT_EQ(DesktopGrid{}.neighbour(true), std::nullopt);
    EXPECT_EQ(DesktopGrid{}.neighbour(false), std::nullopt);
}

}  // namespace
}  // namespace trelvan
