#pragma once

#include "Core/Model/ButtonMapping.hpp"
#include "Core/Model/RecordField.hpp"
#include "Core/Model/SmartButton.hpp"
#include "Utilities/Uuid.hpp"

#include <string>
#include <tuple>
#include <vector>

namespace trelvan {

/// A named set of button mappings with one radial menu.
struct TrackballProfile {
    Uuid id;
    std::string name;
    std::vector<ButtonMapping> mappings;
    SmartButtonConfiguration smartButton;

    /// A new profile named "Default" for the five usual buttons, the left and right ones being themselves and
    /// the others free.
    [[nodiscard]] static TrackballProfile defaultProfile(const UuidSource& newId);
    /// A new profile named "Default" with nothing but the left and right buttons.
    [[nodiscard]] static TrackballProfile minimalProfile(const UuidSource& newId);

    static constexpr auto fields() {
        using Self = TrackballProfile;
        return std::tuple{
            identifier("id", &Self::id),
            required("name", &Self::name),
            required("mappings", &Self::mappings),
            defaulted("smartButton", &Self::smartButton),
        };
    }
    friend bool operator==(const TrackballProfile& left, const TrackballProfile& right) {
        return equalFields(left, right);
    }
};

}  // namespace trelvan
