#include "Platform/Linux/XTest/ButtonSlots.hpp"

#include <algorithm>

namespace trelvan {

std::optional<int> ButtonSlots::press(int xButton) {
    if (xButton <= 0) return std::nullopt;
    if (const auto same = std::ranges::find(held_, xButton); same != held_.end())
        return static_cast<int>(same - held_.begin());
    const auto take = [this, xButton](int place) {
        held_[static_cast<std::size_t>(place)] = xButton;
        return place;
    };
    const int last = static_cast<int>(held_.size()) - 1;
    if (xButton <= last && held_[static_cast<std::size_t>(xButton)] == 0) return take(xButton);
    for (int place = last; place >= firstLent; --place) {
        if (held_[static_cast<std::size_t>(place)] == 0) return take(place);
    }
    return std::nullopt;
}

std::optional<int> ButtonSlots::release(int xButton) {
    const auto found = std::ranges::find(held_, xButton);
    if (xButton <= 0 || found == held_.end()) return std::nullopt;
    *found = 0;
    return static_cast<int>(found - held_.begin());
}

std::vector<int> ButtonSlots::lent() const {
    std::vector<int> result;
    for (std::size_t place = 1; place < held_.size(); ++place) {
        if (held_[place] != 0 && held_[place] != static_cast<int>(place))
            result.push_back(static_cast<int>(place));
    }
    return result;
}

}  // namespace trelvan
