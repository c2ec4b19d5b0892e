#include "Platform/Shared/SettingsFile.hpp"

#include "Platform/SettingsSnapshot.hpp"
#include "Platform/Shared/DurableFile.hpp"
#include "Platform/Shared/FolderLock.hpp"
#include "Platform/Shared/XdgFolders.hpp"
#include "Utilities/Logger.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <set>
#include <system_error>
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

/// Like the operator, but not a number is the same as itself: a value that stayed is no change.
bool isSame(const DefaultsValue* left, const DefaultsValue* right) {
    if (left == nullptr || right == nullptr) return left == right;
    const auto* one = std::get_if<double>(left);
    const auto* other = std::get_if<double>(right);
    if (one != nullptr && other != nullptr && std::isnan(*one) && std::isnan(*other)) return true;
    return *left == *right;
}

const DefaultsValue* find(const SettingsValues& values, std::string_view key) {
    const auto found = values.find(key);
    return found != values.end() ? &found->second : nullptr;
}

SettingsProblem problemAt(const std::string& path, const SettingsDamage& damage) {
    return {{path, damage.position}, damage.english, damage.spanish};
}

std::string pathIn(const std::string& configDirectory) {
    return (configDirectory.empty() ? SettingsFile::defaultFolder() : configDirectory) + fileName;
}

}  // namespace

SettingsFile::SettingsFile(std::string folder, Later later)
    : folder_(std::move(folder)), path_(folder_ + fileName), later_(std::move(later)) {
    removeStaleTemporaries(path_);
    reload();
}

SettingsFile::~SettingsFile() {
    flush();
}

std::string SettingsFile::defaultFolder() {
    return configHome() + "/trelvan";
}

// Reading

void SettingsFile::reload() {
    const auto content = readFile(path_);
    // A file that was deleted is no new decision: what was set stays in force, and is written again.
    if (content.bytes) {
        if (*content.bytes != text_ || !damaged_.empty()) takeIn(*content.bytes);
    } else if (!content.missing) {
        const SettingsDamage damage{{.line = 0, .column = 0},
                                    "cannot be read: " + content.error,
                                    "no se puede leer: " + content.error};
        const bool isNew = !problem.get() || problem.get()->english != damage.english;
        if (isNew) {
            problem = problemAt(path_, damage);
            AppLogger.error(InlineText("No se pueden leer los ajustes ", path_, ": ", content.error));
        }
    }
    tell();
}

/// Takes in a text that somebody else wrote; false when it cannot be understood.
bool SettingsFile::takeIn(const std::string& text) {
    const auto parsed = parseSettings(text);
    if (const auto* damage = std::get_if<SettingsDamage>(&parsed)) {
        report(text, *damage);
        return false;
    }
    damaged_.clear();
    if (problem.get()) problem = std::nullopt;
    merge(std::get<SettingsValues>(parsed), text);
    text_ = text;
    return true;
}

void SettingsFile::merge(const SettingsValues& theirs, const std::string& text) {
    std::set<std::string_view> keys;
    for (const auto& [key, value] : base_) keys.insert(key);
    for (const auto& [key, value] : theirs) keys.insert(key);
    bool isContested = false;
    for (const auto key : keys) {
        const auto* was = find(base_, key);
        const auto* now = find(theirs, key);
        const auto* ours = find(values_, key);
        if (isSame(was, now) || isSame(ours, now)) continue;
        if (!isSame(ours, was)) {
            isContested = true;
            continue;
        }
        untold_.emplace_back(key);
        if (now != nullptr) {
            values_.insert_or_assign(std::string(key), *now);
        } else {
            values_.erase(values_.find(key));
        }
    }
    base_ = theirs;
    if (!isContested) return;
    const auto copy = writeNumbered(path_ + ".replaced-", "", text);
    AppLogger.warning(InlineText("Otro programa cambió los mismos ajustes en ", path_,
                                 ": se conservan los de Trelvan; copia de los otros en ",
                                 copy.value_or("(no se pudo guardar)")));
}

void SettingsFile::report(const std::string& text, const SettingsDamage& damage) {
    const bool isNew = damaged_ != text || !problem.get();
    if (damaged_ != text) damageIsKept_ = false;
    damaged_ = text;
    if (!isNew) return;
    problem = problemAt(path_, damage);
    AppLogger.warning(InlineText("Ajustes dañados: ", problem.get()->spanishText(),
                                 ". Siguen en vigor los anteriores; el archivo se copia antes de escribir"));
}

void SettingsFile::tell() {
    if (untold_.empty()) return;
    tellOutsideChange(std::exchange(untold_, {}));
}

std::optional<DefaultsValue> SettingsFile::object(std::string_view key) const {
    const auto value = values_.find(key);
    return value == values_.end() ? std::nullopt : std::optional(value->second);
}

void SettingsFile::set(std::string_view key, DefaultsValue value) {
    const auto present = values_.find(key);
    if (present != values_.end()) {
        if (isSame(&present->second, &value) && !dirty_) return;
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

// Writing

void SettingsFile::changed() {
    dirty_ = true;
    if (!later_) {
        flush();
        return;
    }
    if (std::exchange(scheduled_, true)) return;
    later_(lifetime_.whileAlive([this] {
        scheduled_ = false;
        flush();
        tell();
    }));
}

bool SettingsFile::flush() {
    if (!dirty_) return true;
    const std::string target = linkTarget(path_);
    std::error_code ignored;
    std::filesystem::create_directories(folderOf(target), ignored);
    const FolderLock lock(folderOf(target));
    if (lock.isHeldByAnother()) {
        AppLogger.warning(InlineText("Los ajustes no se guardan por ahora: otro programa bloquea ", path_));
        if (onPostponed) onPostponed();
        return false;
    }
    const auto content = readFile(path_);
    if (!content.bytes && !content.missing) {
        AppLogger.error(
            InlineText("Los ajustes no se guardan: no se puede leer ", path_, ": ", content.error));
        return false;
    }
    if (content.bytes && *content.bytes != text_ && !takeIn(*content.bytes) && !keepDamaged(*content.bytes))
        return false;
    return write();
}

/// Before it is written over: somebody's edit that is not finished.
bool SettingsFile::keepDamaged(const std::string& text) {
    if (damageIsKept_) return true;
    const auto copy = writeNumbered(path_ + ".damaged-", "", text);
    damageIsKept_ = copy.has_value();
    if (copy) {
        AppLogger.warning(InlineText("Ajustes dañados en ", path_, ": copia en ", *copy));
    } else {
        AppLogger.error(
            InlineText("Los ajustes no se guardan: ", path_, " está dañado y no se pudo guardar una copia"));
    }
    return damageIsKept_;
}

bool SettingsFile::write() {
    std::string text = settingsText(values_);
    if (const auto failure = replaceFile(path_, text)) {
        AppLogger.error(InlineText("No se pudieron guardar los ajustes en ", path_, ": ", *failure));
        return false;
    }
    // As it will be read, so that what another program leaves alone is no change of its.
    if (auto parsed = parseSettings(text); auto* values = std::get_if<SettingsValues>(&parsed))
        values_ = std::move(*values);
    base_ = values_;
    text_ = std::move(text);
    damaged_.clear();
    if (problem.get()) problem = std::nullopt;
    dirty_ = false;
    return true;
}

std::optional<std::string> SettingsFile::putAside(std::string_view key, const Data& data) {
    return writeNumbered(folder_ + "/" + asFileName(key) + ".undecodable-", ".json", data.bytes);
}

std::optional<SettingsPlace> SettingsFile::locate(std::string_view key, std::string_view path) const {
    if (text_.empty()) return std::nullopt;
    return SettingsPlace{path_, positionOf(text_, offsetOfJson(text_, std::string(key) + std::string(path)))};
}

std::variant<SettingsText, PlatformFailure> readSettingsText(const std::string& configDirectory) {
    SettingsText text{.path = pathIn(configDirectory), .bytes = {}};
    auto content = readFile(text.path);
    if (!content.bytes && !content.missing) {
        return PlatformFailure{"cannot read " + text.path + ": " + content.error,
                               "no se puede leer " + text.path + ": " + content.error};
    }
    text.bytes = std::move(content.bytes);
    return text;
}

std::variant<SettingsSnapshot::Values, PlatformFailure> readSettings(const std::string& configDirectory) {
    auto read = readSettingsText(configDirectory);
    if (auto* failure = std::get_if<PlatformFailure>(&read)) return std::move(*failure);
    const auto& [path, bytes] = std::get<SettingsText>(read);
    if (!bytes) return SettingsSnapshot::Values{};
    auto parsed = parseSettings(*bytes);
    if (const auto* damage = std::get_if<SettingsDamage>(&parsed)) {
        const auto problem = problemAt(path, *damage);
        return PlatformFailure{problem.englishText(), problem.spanishText()};
    }
    return std::get<SettingsValues>(std::move(parsed));
}

std::variant<MadeSettings, PlatformFailure> makeSettings(const std::string& configDirectory,
                                                         const SettingsSnapshot::Values& values) {
    const std::string path = pathIn(configDirectory);
    struct stat info {};
    if (lstat(path.c_str(), &info) == 0) return MadeSettings{.path = path, .isNew = false};
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    const auto written = writeNumbered(path + ".new-", "", settingsText(values));
    // A link is made only where nothing is, unlike a rename.
    const int result = written ? link(written->c_str(), path.c_str()) : -1;
    const int reason = errno;
    if (written) unlink(written->c_str());
    if (result == 0) return MadeSettings{.path = path, .isNew = true};
    if (written && reason == EEXIST) return MadeSettings{.path = path, .isNew = false};
    return PlatformFailure{"cannot write " + path + ": " + std::strerror(reason),
                           "no se puede escribir " + path + ": " + std::strerror(reason)};
}

}  // namespace trelvan
