#include "Core/Model/ProfileSnapshot.hpp"

#include "Core/Model/ButtonNumbers.hpp"

#include <algorithm>
#include <utility>

namespace trelvan {

ProfileSnapshot::ProfileSnapshot(TrackballProfile profile) : profile_(std::move(profile)) {
    const auto& all = profile_.mappings;
    for (std::uint32_t index = 0; index < all.size(); ++index) {
        const auto number = all[index].buttonNumber;
        if (!isScrollButton(number)) {
            byNumber_.push_back(index);
        } else if (isEvenButton(number)) {
            evenScroll_.push_back(index);
        } else {
            oddScroll_.push_back(index);
        }
    }
    std::ranges::stable_sort(byNumber_, {}, [&](std::uint32_t index) { return all[index].buttonNumber; });
    for (std::uint32_t place = 0; place < byNumber_.size(); ++place) {
        const auto number = all[byNumber_[place]].buttonNumber;
        if (groups_.empty() || groups_.back().buttonNumber != number) groups_.push_back({number, place, 0});
        ++groups_.back().count;
    }
}

ProfileSnapshot::MappingIndices ProfileSnapshot::mappings(std::int64_t buttonNumber) const noexcept {
    if (isScrollButton(buttonNumber)) return isEvenButton(buttonNumber) ? evenScroll_ : oddScroll_;
    const auto group = std::ranges::lower_bound(groups_, buttonNumber, {}, &Group::buttonNumber);
    if (group == groups_.end() || group->buttonNumber != buttonNumber) return {};
    return MappingIndices(byNumber_).subspan(group->first, group->count);
}

}  // namespace trelvan
