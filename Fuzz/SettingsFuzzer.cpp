#include "Platform/Shared/SettingsJson.hpp"
#include "Utilities/Fatal.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Whatever the bytes: they are settings or damaged at a place inside them, and settings are the same after
/// being written and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace trelvan;
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    const auto parsed = parseSettings(text);
    if (const auto* damage = std::get_if<SettingsDamage>(&parsed)) {
        if (damage->english.empty() || damage->spanish.empty()) fatal("damage without a reason");
        if (damage->position.line == 0 || damage->position.column == 0) fatal("damage without a place");
        return 0;
    }
    const auto written = settingsText(std::get<SettingsValues>(parsed));
    const auto again = parseSettings(written);
    const auto* values = std::get_if<SettingsValues>(&again);
    if (values == nullptr) fatal("settings that were written cannot be read");
    // Not compared value by value: not a number is no equal of itself.
    if (settingsText(*values) != written) fatal("settings changed by being written");
    return 0;
}
