#include "Platform/Linux/SettingsFile.hpp"

#include "Platform/Linux/DurableFile.hpp"
#include "Platform/Linux/HomeFolder.hpp"
#include "Platform/SettingsSnapshot.hpp"
#include "Utilities/Logger.hpp"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace trelvan {

namespace {

constexpr const char* fileName = "/settings.json";

/// A key as part of a file name.
std::string asFileName(std::string_view key) {
    std::string name(key);
    std::ranges::replace_if(
        name, [](char c) { return c == '/' || c == '\0'; }, '_');
    return name;
}

}  // namespace

SettingsFile::SettingsFile(std::string folder, Later later)
    : folder_(std::move(folder)), path_(folder_ + fileName), later_(std::move(later)) {
    load();
}

SettingsFile::~SettingsFile() {
    flush();
}

std::string SettingsFile::defaultFolder() {
    const char* configured = std::getenv("XDG_CONFIG_HOME");
    if (configured != nullptr && *configured == '/') return std::string(configured) + "/trelvan";
    return homeFolder() + "/.config/trelvan";
}

void SettingsFile::load() {
    const auto content = readFile(path_);
    if (content.missing) return;
    if (!content.bytes) {
        irreplaceable_ = true;
        AppLogger.error(ShortText("No se pueden leer los ajustes ", path_, ": ", content.error));
        return;
    }
    auto parsed = parseSettings(*content.bytes);
    if (const auto* damage = std::get_if<SettingsDamage>(&parsed)) {
        keepDamaged(*content.bytes, damage->place);
        return;
    }
    values_ = std::move(std::get<SettingsValues>(parsed));
}

void SettingsFile::keepDamaged(const std::string& bytes, const std::string& place) {
    const auto copy = writeNumbered(path_ + ".damaged-", "", bytes);
    irreplaceable_ = !copy.has_value();
    if (copy) {
        AppLogger.warning(ShortText("Ajustes dañados en ", path_, " (", place, "): copia en ", *copy,
                                    "; se empieza con ajustes vacíos"));
    } else {
        AppLogger.error(ShortText("Ajustes dañados en ", path_, " (", place,
                                  ") y no se pudo guardar una copia: no se escribirá encima"));
    }
}

std::optional<DefaultsValue> SettingsFile::object(std::string_view key) const {
    const auto value = values_.find(key);
    return value == values_.end() ? std::nullopt : std::optional(value->second);
}

void SettingsFile::set(std::string_view key, DefaultsValue value) {
    const auto present = values_.find(key);
    if (present != values_.end()) {
        if (present->second == value && !dirty_) return;
        present->second = std::move(value);
    } else {
        values_.emplace(key, std::move(value));
    }
    changed();
}

void SettingsFile::remove(std::string_view key) {
    const auto present = values_.find(key);
    if (present == values_.end()) return;
    values_.erase(present);
    changed();
}

void SettingsFile::changed() {
    dirty_ = true;
    if (!later_) {
        flush();
        return;
    }
    if (std::exchange(scheduled_, true)) return;
    later_([self = std::weak_ptr(alive_)] {
        const auto alive = self.lock();
        if (!alive) return;
        (*alive)->scheduled_ = false;
        (*alive)->flush();
    });
}

bool SettingsFile::flush() {
    if (!dirty_) return true;
    if (irreplaceable_) {
        AppLogger.error(ShortText("Los ajustes no se guardan: ", path_, " no se pudo leer ni copiar"));
        return false;
    }
    if (const auto failure = replaceFile(path_, settingsText(values_))) {
        AppLogger.error(ShortText("No se pudieron guardar los ajustes en ", path_, ": ", *failure));
        return false;
    }
    dirty_ = false;
    return true;
}

std::optional<std::string> SettingsFile::putAside(std::string_view key, const Data& data) {
    return writeNumbered(folder_ + "/" + asFileName(key) + ".undecodable-", ".json", data.bytes);
}

std::variant<SettingsSnapshot::Values, PlatformFailure> readSettings(const std::string& configDirectory) {
    const std::string path =
        (configDirectory.empty() ? SettingsFile::defaultFolder() : configDirectory) + fileName;
    const auto content = readFile(path);
    if (content.missing) return SettingsSnapshot::Values{};
    if (!content.bytes) {
        return PlatformFailure{"cannot read " + path + ": " + content.error,
                               "no se puede leer " + path + ": " + content.error};
    }
    auto parsed = parseSettings(*content.bytes);
    if (const auto* damage = std::get_if<SettingsDamage>(&parsed)) {
        return PlatformFailure{path + " is damaged: " + damage->place,
                               path + " está dañado: " + damage->place};
    }
    return std::get<SettingsValues>(std::move(parsed));
}

}  // namespace trelvan
