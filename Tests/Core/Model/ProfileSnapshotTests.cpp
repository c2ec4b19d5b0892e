#include "Core/Model/ProfileSnapshot.hpp"
#include "Support/AllocationCounter.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace trelvan {
namespace {

TrackballProfile profileWith(const std::vector<std::int64_t>& numbers) {
    TrackballProfile profile;
    for (const auto number : numbers) profile.mappings.push_back(ButtonMapping::unassigned({}, number, ""));
    return profile;
}

std::vector<std::uint32_t> found(const ProfileSnapshot& snapshot, std::int64_t number) {
    const auto indices = snapshot.mappings(number);
    return {indices.begin(), indices.end()};
}

using Indices = std::vector<std::uint32_t>;

TEST(ProfileSnapshot, FindsTheMappingsOfExactlyThatButtonInProfileOrder) {
    const ProfileSnapshot snapshot(profileWith({3, 0, 3, 1, -99, 3}));
    EXPECT_EQ(found(snapshot, 3), (Indices{0, 2, 5}));
    EXPECT_EQ(found(snapshot, 0), Indices{1});
    EXPECT_EQ(found(snapshot, -99), Indices{4});
    EXPECT_EQ(found(snapshot, 4), Indices{});
    EXPECT_EQ(found(snapshot, -1), Indices{});
    EXPECT_EQ(snapshot.mapping(4).buttonNumber, -99);
}

TEST(ProfileSnapshot, ScrollDirectionsAreGroupedByParity) {
    constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
    const ProfileSnapshot snapshot(profileWith({-103, -100, lowest, 2, -101, lowest + 1, -102}));
    EXPECT_EQ(found(snapshot, -100), (Indices{1, 2, 6}));
    EXPECT_EQ(found(snapshot, -101), (Indices{0, 4, 5}));
    EXPECT_EQ(found(snapshot, -250), (Indices{1, 2, 6}));
    EXPECT_EQ(found(snapshot, lowest), (Indices{1, 2, 6}));
    EXPECT_EQ(found(snapshot, lowest + 1), (Indices{0, 4, 5}));
}

TEST(ProfileSnapshot, EmptyProfileHasNoMappings) {
    const ProfileSnapshot snapshot{TrackballProfile{}};
    EXPECT_TRUE(snapshot.mappings(3).empty());
    EXPECT_TRUE(snapshot.mappings(-100).empty());
}

TEST(ProfileSnapshot, AgreesWithASearchThroughAllMappings) {
    std::mt19937 engine(7);
    std::vector<std::int64_t> numbers(1000);
    for (auto& number : numbers) number = static_cast<std::int64_t>(engine() % 240) - 120;
    const ProfileSnapshot snapshot(profileWith(numbers));
    for (std::int64_t wanted = -130; wanted <= 130; ++wanted) {
        Indices expected;
        for (std::uint32_t index = 0; index < numbers.size(); ++index) {
            const auto number = numbers[index];
            const bool matches =
                wanted <= -100 ? number <= -100 && (-number) % 2 == (-wanted) % 2 : number == wanted;
            if (matches) expected.push_back(index);
        }
        EXPECT_EQ(found(snapshot, wanted), expected) << wanted;
    }
}

TEST(ProfileSnapshot, LookupAllocatesNothing) {
    std::vector<std::int64_t> numbers(1000);
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        numbers[index] = static_cast<std::int64_t>(index) - 200;
    }
    const ProfileSnapshot snapshot(profileWith(numbers));
    std::size_t count = 0;
    const auto before = test::allocationCount();
    for (std::int64_t number = -200; number < 900; ++number) count += snapshot.mappings(number).size();
    EXPECT_EQ(test::allocationCount(), before);
    EXPECT_GT(count, numbers.size());
}

TEST(ProfileSnapshotTest, AppendingGivesWhatANewSnapshotWouldHave) {
    TrackballProfile profile;
    ProfileSnapshot growing(profile);
    const std::vector<std::int64_t> numbers{5, -100, 3, 5, 0, -101, 9, 3, -102, 1, 5, 4, -100, 2, 9};
    for (const auto number : numbers) {
        const auto mapping =
            ButtonMapping::unassigned(Uuid{}, number, std::to_string(profile.mappings.size()));
        profile.mappings.push_back(mapping);
        growing.append(mapping);
        const ProfileSnapshot fresh(profile);
        EXPECT_EQ(growing.profile(), profile);
        for (std::int64_t button = -103; button <= 10; ++button) {
            const auto one = growing.mappings(button);
            const auto other = fresh.mappings(button);
            EXPECT_TRUE(std::ranges::equal(one, other)) << "button " << button;
        }
    }
}

}  // namespace
}  // namespace trelvan
