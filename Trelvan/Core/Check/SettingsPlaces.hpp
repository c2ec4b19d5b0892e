#pragma once

#include "Core/Model/CodingError.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace trelvan {

/// Finds the places of values in the text of a settings file. Profiles may stand there as a list or, in a
/// string, as text of their own; a place in that text is the place of its character in the file.
class SettingsPlaces {
  public:
    /// `file` is valid JSON and outlives this object.
    explicit SettingsPlaces(std::string_view file);

    /// The text of the profiles inside their string; empty when they are not kept in one.
    [[nodiscard]] std::string_view innerProfiles() const { return inner_; }

    /// Where the value at the path stands; the last value on the way that is there where it leads on.
    [[nodiscard]] TextPosition of(std::string_view path) const;
    /// Where a byte of the inner text stands in the file.
    [[nodiscard]] TextPosition ofInner(std::size_t offset) const;

  private:
    void readInner();

    std::string_view file_;
    std::string inner_;
    /// For each byte of the inner text the offset in the file that it came from, and that of its end.
    std::vector<std::size_t> origins_;
};

}  // namespace trelvan
