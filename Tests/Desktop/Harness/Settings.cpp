#include "Desktop/Harness/Settings.hpp"

#include <cstdio>
#include <utility>

namespace trelvan::desktop {
namespace {

constexpr auto profileId = "5B6E1B7C-0D5E-4F0B-9C57-2F6D8A1E3C44";

}  // namespace

Settings::Settings() {
    map(0, "Click Izquierdo");
    map(1, "Click Derecho");
}

Settings& Settings::map(int button, const std::string& action, const nlohmann::json& more) {
    nlohmann::json mapping = {{"buttonNumber", button}, {"buttonLabel", "Button"}, {"action", action}};
    mapping.update(more);
    mappings.push_back(mapping);
    return *this;
}

Settings& Settings::menuApplication(const std::string& name, const std::string& path,
                                    const std::string& iconPath) {
    return menuEntry({{"name", name}, {"path", path}, {"kind", "application"}, {"iconPath", iconPath}});
}

Settings& Settings::menuShortcut(const std::string& name, int keyCode, unsigned long modifiers,
                                 const std::string& display) {
    const nlohmann::json shortcut = {{"keyCode", keyCode},
                                     {"modifiersRawValue", modifiers},
                                     {"displayString", display.empty() ? name : display}};
    return menuEntry({{"name", name}, {"kind", "shortcut"}, {"shortcut", shortcut}});
}

Settings& Settings::menuEntry(nlohmann::json entry) {
    char id[37];
    std::snprintf(id, sizeof id, "00000000-0000-4000-8000-%012zu", entries.size() + 1);
    entry["id"] = id;
    entries.push_back(std::move(entry));
    return *this;
}

Settings& Settings::set(const std::string& key, const nlohmann::json& value) {
    plain[key] = value;
    return *this;
}

std::string Settings::text() const {
    const nlohmann::json profiles = {{{"id", profileId},
                                      {"name", "Desktop test"},
                                      {"mappings", mappings},
                                      {"smartButton", {{"isEnabled", true}, {"apps", entries}}}}};
    nlohmann::json all = plain;
    all["trackball_profiles"] = {{"utf8", profiles.dump()}};
    all["trackball_active_profile"] = profileId;
    return all.dump(2);
}

}  // namespace trelvan::desktop
