#pragma once

#include "Core/Model/TrackballProfile.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace trelvan {

/// A profile as it was at one moment, indexed by button for the event tap.
///
/// Whoever is handed one may read it on any thread: it changes only while its owner alone has it.
class ProfileSnapshot {
  public:
    /// Places of mappings in `profile().mappings`, ascending.
    using MappingIndices = std::span<const std::uint32_t>;

    explicit ProfileSnapshot(TrackballProfile profile);
    ProfileSnapshot(const ProfileSnapshot&) = delete;
    ProfileSnapshot& operator=(const ProfileSnapshot&) = delete;

    [[nodiscard]] const TrackballProfile& profile() const { return profile_; }
    /// `index` comes from `mappings`.
    [[nodiscard]] const ButtonMapping& mapping(std::uint32_t index) const { return profile_.mappings[index]; }

    /// The mappings of a button in profile order. A number of -100 or below stands for a scroll direction and
    /// has all the scroll mappings of that direction, the even numbers being one and the odd ones the other.
    /// Allocates nothing; logarithmic in the number of mappings. Valid as long as the snapshot.
    [[nodiscard]] MappingIndices mappings(std::int64_t buttonNumber) const noexcept;

    /// Follows the profile, which got one more mapping.
    void append(ButtonMapping mapping);
    /// Follows the profile, of which a mapping was replaced by one of the same button.
    void replace(std::size_t index, ButtonMapping mapping) { profile_.mappings[index] = std::move(mapping); }

  private:
    struct Group {
        std::int64_t buttonNumber;
        std::uint32_t first;
        std::uint32_t count;
    };

    TrackballProfile profile_;
    /// The mappings of ordinary buttons, by number and then by place.
    std::vector<std::uint32_t> byNumber_;
    /// One for each ordinary number, ascending; its stretch of `byNumber_`.
    std::vector<Group> groups_;
    std::vector<std::uint32_t> evenScroll_;
    std::vector<std::uint32_t> oddScroll_;
};

}  // namespace trelvan
