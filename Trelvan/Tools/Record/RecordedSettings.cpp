#include "Tools/Record/RecordedSettings.hpp"

#include "Core/Model/ActionCatalogue.hpp"
#include "Core/Model/RecordCoding.hpp"
#include "Core/ProfileManager.hpp"
#include "Core/Settings/SettingsCatalogue.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <map>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

namespace trelvan {

namespace {

using Json = TraceJson;

/// The value as a script takes it; bytes have no form of their own there.
std::optional<Json> scriptValue(const DefaultsValue& value) {
    return std::visit(
        [](const auto& stored) -> std::optional<Json> {
            if constexpr (std::is_same_v<std::decay_t<decltype(stored)>, Data>) {
                return std::nullopt;
            } else {
                return Json(stored);
            }
        },
        value);
}

/// Puts other names in place of the user's, the same one for the same path.
class Anonymizer {
  public:
    explicit Anonymizer(const Workspace& workspace) : workspace_(workspace) {}

    void anonymize(TrackballProfile& profile) {
        profile.name = "Profile";
        for (auto& mapping : profile.mappings) anonymize(mapping);
        std::size_t number = 0;
        for (auto& app : profile.smartButton.apps) {
            app.name = "Entry " + std::to_string(++number);
            app.iconPath.clear();
            anonymize(app.shortcut);
            replacePath(app.path, "application");
        }
    }
    void addApplication(std::string_view bundle) {
        auto path = workspace_.applicationPath(bundle);
        if (!path) return;
        replacePath(*path, "application");
        disk_.push_back({.path = *path, .kind = "application", .bundle = std::string(bundle)});
    }
    [[nodiscard]] std::vector<RecordedItem> disk() && { return std::move(disk_); }

  private:
    static void anonymize(CustomShortcut& shortcut) {
        if (!shortcut.displayString.empty()) shortcut.displayString = "Shortcut";
    }
    void anonymize(ButtonMapping& mapping) {
        // A label of blanks may be given another one at the load.
        if (!trimmed(mapping.buttonLabel).empty()) mapping.buttonLabel = "Label";
        for (auto& function : mapping.functions) {
            function.shortcutName.clear();
            anonymize(function.shortcut);
        }
        anonymize(mapping.dictationShortcut);
        replacePath(mapping.appPath, "application");
        replacePath(mapping.folderPath, "folder");
    }
    void replacePath(std::string& path, std::string_view kind) {
        if (path.empty()) return;
        auto& name = names_[path];
        if (name.empty()) {
            name = "/recorded/" + std::to_string(names_.size());
            if (workspace_.exists(path))
                disk_.push_back({.path = name, .kind = std::string(kind), .bundle = {}});
        }
        path = name;
    }

    const Workspace& workspace_;
    std::map<std::string, std::string> names_;
    std::vector<RecordedItem> disk_;
};

/// The profile that is active with these settings; none when the program makes one of its own.
std::optional<TrackballProfile> activeProfile(const UserDefaults& defaults) {
    const auto stored = defaults.object(ProfileManager::storageKey);
    const auto* data = stored ? std::get_if<Data>(&*stored) : nullptr;
    if (data == nullptr) return std::nullopt;
    auto profiles = decodeProfiles(data->bytes, &Uuid::random);
    if (!profiles || profiles->empty()) return std::nullopt;
    std::optional<Uuid> active;
    if (const auto text = asText(defaults.object(ProfileManager::activeKey))) active = Uuid::parse(*text);
    const auto found = std::ranges::find_if(*profiles, [&](const auto& each) { return each.id == active; });
    return found != profiles->end() ? std::move(*found) : std::move(profiles->front());
}

}  // namespace

RecordedSettings recordedSettings(const UserDefaults& defaults, const Workspace& workspace) {
    RecordedSettings result;
    Anonymizer anonymizer(workspace);
    if (auto profile = activeProfile(defaults)) {
        anonymizer.anonymize(*profile);
        if (const auto bytes = encodeProfiles({std::move(*profile)}))
            result.defaults[std::string(ProfileManager::storageKey)] = Json::parse(*bytes);
    }
    for (const auto& row : setting::all) {
        const auto stored = row.isRecorded ? defaults.object(row.key) : std::nullopt;
        if (!stored) continue;
        if (auto value = scriptValue(*stored)) result.defaults[std::string(row.key)] = std::move(*value);
    }
    // Applications that an action finds by their identifier.
    for (const auto& row : actionCatalogue()) {
        if (const auto* const note = std::get_if<does::Note>(&row.effect))
            anonymizer.addApplication(note->bundleID);
    }
    result.disk = std::move(anonymizer).disk();
    return result;
}

}  // namespace trelvan
