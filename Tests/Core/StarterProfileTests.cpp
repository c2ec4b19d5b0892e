#include "Core/Check/MappingCheck.hpp"
#include "Core/MappingResolution.hpp"
#include "Core/Model/ProfileNormalization.hpp"
#include "Core/Model/ProfileSnapshot.hpp"
#include "Core/StarterProfile.hpp"

#include <gtest/gtest.h>

namespace trelvan {
namespace {

TEST(StarterProfileTest, NothingInItIsOddInEitherLanguage) {
    CheckSurroundings surroundings;
    surroundings.modifiers &= ~flag::function;
    for (const auto language : {AppLanguage::english, AppLanguage::spanish}) {
        const auto profile = starterProfile(language, &Uuid::random);
        Findings findings;
        checkProfile(profile, "p", surroundings, findings);
        EXPECT_TRUE(findings.empty()) << findings.front().text(language);
        EXPECT_EQ(normalizeProfile(profile), profile);
    }
}

TEST(StarterProfileTest, ExtraButtonsAndTheWheelDoWhatTheHelpSays) {
    const ProfileSnapshot profile(starterProfile(AppLanguage::english, &Uuid::random));
    const auto fires = [&](std::int64_t button, EventFlags flags) {
        return resolvedAction(profile.mapping(profile.mappings(button).front()), flags).action;
    };
    EXPECT_EQ(fires(3, 0), ButtonAction::copy);
    EXPECT_EQ(fires(3, flag::shift), ButtonAction::paste);
    EXPECT_EQ(fires(4, 0), ButtonAction::back);
    EXPECT_EQ(fires(4, flag::shift), ButtonAction::forward);
    EXPECT_EQ(fires(-100, flag::command), ButtonAction::volumeUp);
    EXPECT_EQ(fires(-101, flag::command), ButtonAction::volumeDown);
    EXPECT_EQ(fires(-100, 0), ButtonAction::none);
}

TEST(StarterProfileTest, LabelsFollowTheLanguage) {
    EXPECT_EQ(starterProfile(AppLanguage::english, &Uuid::random).mappings[3].buttonLabel, "Extra button 1");
    EXPECT_EQ(starterProfile(AppLanguage::spanish, &Uuid::random).mappings[3].buttonLabel, "Botón extra 1");
}

}  // namespace
}  // namespace trelvan
