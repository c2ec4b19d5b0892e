#include "Core/Model/ProfileSnapshot.hpp"

#include "Core/Model/ButtonNumbers.hpp"

#include <algorithm>
#include <iterator>
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

void ProfileSnapshot::append(ButtonMapping mapping) {
    const auto number = mapping.buttonNumber;
    const auto index = static_cast<std::uint32_t>(profile_.mappings.size());
    profile_.mappings.push_back(std::move(mapping));
    if (isScrollButton(number)) {
        (isEvenButton(number) ? evenScroll_ : oddScroll_).push_back(index);
        return;
    }
    auto group = std::ranges::lower_bound(groups_, number, {}, &Group::buttonNumber);
    if (group == groups_.end() || group->buttonNumber != number) {
        const auto first =
            group != groups_.end() ? group->first : static_cast<std::uint32_t>(byNumber_.size());
        group = groups_.insert(group, {number, first, 0});
    }
    byNumber_.insert(byNumber_.begin() + static_cast<std::ptrdiff_t>(group->first + group->count), index);
    ++group->count;
    for (auto later = std::next(group); later != groups_.end(); ++later) ++later->first;
}

ProfileSnapshot::MappingIndices ProfileSnapshot::mappings(std::int64_t buttonNumber) const noexcept {
    if (isScrollButton(buttonNumber)) return isEvenButton(buttonNumber) ? evenScroll_ : oddScroll_;
    const auto group = std::ranges::lower_bound(groups_, buttonNumber, {}, &Group::buttonNumber);
    if (group == groups_.end() || group->buttonNumber != buttonNumber) return {};
    return MappingIndices(byNumber_).subspan(group->first, group->count);
}

}  // namespace trelvan
