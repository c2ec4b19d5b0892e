#pragma once

#include "Core/Model/ButtonMapping.hpp"
#include "Utilities/Uuid.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <vector>

namespace trelvan {

/// The identifiers and button numbers of one profile's mappings, each in a row of their own. Every change of
/// a profile looks for them, and mappings are large records: in a profile of thousands the search would read
/// megabytes.
class MappingColumns {
  public:
    MappingColumns(std::size_t profile, const std::vector<ButtonMapping>& mappings) : profile_(profile) {
        ids_.reserve(mappings.size());
        numbers_.reserve(mappings.size());
        for (const auto& mapping : mappings) append(mapping);
    }

    /// The place of the profile in its list.
    [[nodiscard]] std::size_t profile() const { return profile_; }
    [[nodiscard]] const std::vector<std::int64_t>& numbers() const { return numbers_; }
    /// The place of the first mapping that is called so.
    [[nodiscard]] std::optional<std::size_t> find(const Uuid& id) const {
        const auto found = std::ranges::find(ids_, id);
        if (found == ids_.end()) return std::nullopt;
        return static_cast<std::size_t>(found - ids_.begin());
    }

    // These follow the profile.
    void append(const ButtonMapping& mapping) {
        ids_.push_back(mapping.id);
        numbers_.push_back(mapping.buttonNumber);
    }
    void replace(std::size_t place, const ButtonMapping& mapping) {
        ids_[place] = mapping.id;
        numbers_[place] = mapping.buttonNumber;
    }
    void remove(std::size_t place) {
        ids_.erase(std::next(ids_.begin(), static_cast<std::ptrdiff_t>(place)));
        numbers_.erase(std::next(numbers_.begin(), static_cast<std::ptrdiff_t>(place)));
    }
    void swap(std::size_t one, std::size_t other) {
        std::swap(ids_[one], ids_[other]);
        std::swap(numbers_[one], numbers_[other]);
    }

  private:
    std::size_t profile_;
    std::vector<Uuid> ids_;
    std::vector<std::int64_t> numbers_;
};

}  // namespace trelvan
