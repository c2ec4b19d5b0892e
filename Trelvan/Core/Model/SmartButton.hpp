#pragma once

#include "Core/Model/ButtonModifierTrigger.hpp"
#include "Core/Model/CustomShortcut.hpp"
#include "Core/Model/RawRepresentable.hpp"
#include "Core/Model/RecordField.hpp"
#include "Utilities/Uuid.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace trelvan {

/// What an entry of the radial menu does: open an application or a file, or send a shortcut.
enum class SmartButtonItemKind { application, shortcut };

template <>
struct RawValueTable<SmartButtonItemKind> {
    static constexpr std::string_view noun = "a kind of Smart Button entry";
    static constexpr std::array<std::string_view, 2> rawValues{"application", "shortcut"};
};

/// One entry of the radial menu.
struct SmartButtonApp {
    Uuid id;
    std::string name = "Shortcut";
    /// File path of the application, for entries of that kind.
    std::string path;
    SmartButtonItemKind kind = SmartButtonItemKind::application;
    /// What is sent, for entries of that kind.
    CustomShortcut shortcut;
    /// File path of an image; empty for the application's own icon.
    std::string iconPath;

    static constexpr auto fields() {
        using Self = SmartButtonApp;
        return std::tuple{
            identifier("id", &Self::id),
            defaulted("name", &Self::name),
            defaulted("path", &Self::path),
            defaulted("kind", &Self::kind),
            defaulted("shortcut", &Self::shortcut),
            defaulted("iconPath", &Self::iconPath),
        };
    }
    friend bool operator==(const SmartButtonApp& left, const SmartButtonApp& right) {
        return equalFields(left, right);
    }
};

/// The radial menu of a profile.
struct SmartButtonConfiguration {
    bool isEnabled = false;
    /// The mouse button that opens the menu; none chosen when there is no value.
    std::optional<std::int64_t> triggerButtonNumber;
    /// Must be held together with the trigger button.
    ButtonModifierTrigger triggerModifier = ButtonModifierTrigger::none;
    /// In display order.
    std::vector<SmartButtonApp> apps;

    static constexpr auto fields() {
        using Self = SmartButtonConfiguration;
        return std::tuple{
            defaulted("isEnabled", &Self::isEnabled),
            defaulted("triggerButtonNumber", &Self::triggerButtonNumber),
            defaulted("triggerModifier", &Self::triggerModifier),
            defaulted("apps", &Self::apps),
        };
    }
    friend bool operator==(const SmartButtonConfiguration& left, const SmartButtonConfiguration& right) {
        return equalFields(left, right);
    }
};

}  // namespace trelvan
