#pragma once

#include "Core/Model/RecordCoding.hpp"
#include "Core/ProfileManager.hpp"
#include "Support/CapturingLog.hpp"
#include "Support/FakeUserDefaults.hpp"
#include "Support/SequentialUuids.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace trelvan::test {

inline constexpr auto storageKey = ProfileManager::storageKey;
inline constexpr auto activeKey = ProfileManager::activeKey;

inline TrackballProfile profileNamed(std::string name, std::uint32_t id) {
    TrackballProfile profile;
    profile.id = sequentialUuid(1000 + id);
    profile.name = std::move(name);
    return profile;
}

/// A store over settings and a log in memory, not started until the test says so.
class ProfileManagerTest : public ::testing::Test {
  protected:
    void store(const std::vector<TrackballProfile>& profiles) {
        const auto bytes = encodeProfiles(profiles);
        ASSERT_TRUE(bytes) << bytes.error().text();
        storeText(*bytes);
    }
    void storeText(std::string bytes) {
        defaults.values.insert_or_assign(std::string(storageKey), Data{std::move(bytes)});
    }
    void storeActive(std::string text) {
        defaults.values.insert_or_assign(std::string(activeKey), std::move(text));
    }
    /// Stores three empty profiles and starts over with the second one active.
    void startWithThree() {
        store({profileNamed("A", 1), profileNamed("B", 2), profileNamed("C", 3)});
        storeActive(profileNamed("B", 2).id.text());
        start();
    }
    /// Stores one profile with mappings of these buttons and starts over.
    void startWithButtons(const std::vector<std::int64_t>& numbers) {
        auto profile = profileNamed("A", 1);
        for (const auto number : numbers) {
            const auto id = sequentialUuid(2000 + static_cast<std::uint32_t>(profile.mappings.size()));
            profile.mappings.push_back(ButtonMapping::unassigned(id, number, "x"));
        }
        store({profile});
        start();
    }
    void start() {
        manager.emplace(defaults, log.logger, sequentialUuids());
        log.lines.clear();
    }
    /// What a new start would load.
    std::vector<TrackballProfile> stored() const {
        const auto bytes = defaults.bytes(storageKey);
        if (!bytes) return {};
        const auto profiles = decodeProfiles(*bytes, sequentialUuids());
        return profiles ? *profiles : std::vector<TrackballProfile>{};
    }
    std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& profile : manager->profiles.get()) result.push_back(profile.name);
        return result;
    }
    std::vector<std::pair<std::int64_t, std::string>> activeButtons() const {
        std::vector<std::pair<std::int64_t, std::string>> result;
        for (const auto& mapping : manager->activeProfile().mappings) {
            result.emplace_back(mapping.buttonNumber, mapping.buttonLabel);
        }
        return result;
    }
    std::vector<std::int64_t> activeNumbers() const {
        std::vector<std::int64_t> result;
        for (const auto& mapping : manager->activeProfile().mappings) result.push_back(mapping.buttonNumber);
        return result;
    }

    FakeUserDefaults defaults;
    CapturingLog log;
    std::optional<ProfileManager> manager;
    const Uuid unknown = sequentialUuid(9999);
};

}  // namespace trelvan::test
