#pragma once

#include "Core/Check/Finding.hpp"
#include "Core/Model/TrackballProfile.hpp"
#include "Platform/Quartz.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace trelvan {

/// What a check must know of the computer that the settings are for.
struct CheckSurroundings {
    /// The modifiers that a keyboard can report here.
    EventFlags modifiers = flag::shift | flag::control | flag::option | flag::command | flag::function;
    /// The highest number that a button can have here.
    std::int64_t highestButton = 31;
    /// Whether something is at the path.
    std::function<bool(const std::string& path)> exists = [](const std::string&) { return true; };
    /// Why an action can do nothing on this desktop; none when it can, or when that is not known.
    std::function<std::optional<LocalizedString>(ButtonAction)> obstacle = [](ButtonAction) {
        return std::nullopt;
    };
};

/// Notes the mappings and functions of a profile, as it is stored, that can never fire, do nothing when they
/// fire, or count otherwise than they are written. `path` leads to the profile.
void checkProfile(const TrackballProfile& profile, const std::string& path,
                  const CheckSurroundings& surroundings, Findings& findings);

}  // namespace trelvan
