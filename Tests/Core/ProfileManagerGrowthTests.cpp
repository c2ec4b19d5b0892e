#include "Core/ProfileManagerTest.hpp"

#include <gmock/gmock.h>

#include <map>
#include <random>

namespace trelvan::test {
namespace {

/// Settings that ask for a lazily set value only when it is read, and count how often.
class LazyUserDefaults final : public FakeUserDefaults {
  public:
    [[nodiscard]] std::optional<DefaultsValue> object(std::string_view key) const override {
        settle();
        return FakeUserDefaults::object(key);
    }
    void setLazily(std::string_view key, Maker make) override { makers_[std::string(key)] = std::move(make); }

    /// How many values were made so far.
    mutable int made = 0;

  private:
    void settle() const {
        for (auto& [key, make] : std::exchange(makers_, {})) {
            ++made;
            if (auto value = make()) const_cast<LazyUserDefaults*>(this)->values[key] = std::move(*value);
        }
    }
    mutable std::map<std::string, Maker> makers_;
};

class ProfileManagerGrowthTest : public ::testing::Test {
  protected:
    std::vector<TrackballProfile> stored() const {
        const auto bytes = defaults.bytes(storageKey);
        return bytes ? *decodeProfiles(*bytes, sequentialUuids()) : std::vector<TrackballProfile>{};
    }
    const TrackballProfile& active() const { return manager->activeProfile(); }

    LazyUserDefaults defaults;
    CapturingLog log;
    std::optional<ProfileManager> manager{std::in_place, defaults, log.logger, sequentialUuids()};
};

TEST_F(ProfileManagerGrowthTest, ThousandChangesAreEncodedOnceWhenTheyAreRead) {
    for (std::int64_t button = 10; button < 1010; ++button) manager->addExtraButtonMapping(button);
    EXPECT_EQ(defaults.made, 0);
    EXPECT_EQ(stored(), manager->profiles.get());
    EXPECT_EQ(defaults.made, 1);
    EXPECT_EQ(active().mappings.size(), 1005U);
}

TEST_F(ProfileManagerGrowthTest, WhatWasNotReadYetIsStoredAtTheEnd) {
    manager->addExtraButtonMapping(10);
    const auto last = manager->profiles.get();
    manager.reset();
    EXPECT_EQ(defaults.made, 1);
    EXPECT_EQ(stored(), last);
}

TEST_F(ProfileManagerGrowthTest, SnapshotThatNobodyHoldsFollowsAndOneThatIsHeldStays) {
    const auto* first = manager->activeSnapshot().get();
    manager->addExtraButtonMapping(10);
    EXPECT_EQ(manager->activeSnapshot().get(), first);
    const auto held = manager->activeSnapshot();
    manager->addExtraButtonMapping(11);
    EXPECT_TRUE(held->mappings(11).empty());
    EXPECT_EQ(held->profile().mappings.size(), 6U);
    EXPECT_EQ(manager->activeSnapshot()->mappings(11).size(), 1U);
}

/// Any order of changes leaves the snapshot, the store and what is looked up as if all were made anew.
TEST_F(ProfileManagerGrowthTest, RandomChanges_LeaveEverythingInStep) {
    std::mt19937 random(7);
    const auto below = [&random](std::size_t bound) { return static_cast<std::size_t>(random() % bound); };
    for (int step = 0; step < 600; ++step) {
        const auto& all = manager->profiles.get();
        const auto& [profileID, name, mappings, menu] = all[below(all.size())];
        const Uuid profile = profileID;
        auto mapping = mappings.empty() ? ButtonMapping{} : mappings[below(mappings.size())];
        const Uuid mappingID = mapping.id;
        switch (below(10)) {
            case 0:
                manager->createProfile("new");
                break;
            case 1:
                if (all.size() > 3) manager->deleteProfile(profile);
                break;
            case 2:
                manager->setActive(all[below(all.size())]);
                break;
            case 3:
                manager->moveMapping(mappingID, profile,
                                     below(2) == 0 ? MoveDirection::towardsStart : MoveDirection::towardsEnd);
                break;
            case 4:
                manager->removeExtraButtonMapping(mappingID, profile);
                break;
            case 5:
                mapping.buttonNumber += static_cast<std::int64_t>(below(2));
                mapping.buttonLabel = std::to_string(step);
                manager->updateMapping(mapping, profile);
                break;
            case 6:
                manager->addScrollMappings();
                break;
            default:
                manager->addExtraButtonMapping(2 + static_cast<std::int64_t>(below(60)));
        }
        const auto snapshot = manager->activeSnapshot();
        const ProfileSnapshot fresh(active());
        ASSERT_EQ(snapshot->profile(), active()) << "step " << step;
        for (std::int64_t button = -101; button < 70; ++button)
            ASSERT_TRUE(std::ranges::equal(snapshot->mappings(button), fresh.mappings(button))) << step;
        if (step % 20 == 19) {
            ASSERT_EQ(stored(), manager->profiles.get()) << "step " << step;
        }
    }
}

}  // namespace
}  // namespace trelvan::test
