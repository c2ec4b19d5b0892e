// The backup file and its way into and out of the store.

#include "Core/Model/ProfileNormalization.hpp"
#include "Core/Model/RecordJson.hpp"
#include "Core/ProfileManager.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <set>
#include <utility>

namespace trelvan {

namespace {

constexpr int indent = 2;
constexpr std::string_view nameOfTheNameless = "Imported Profile";

TransferError failure(ProfileTransferError error) {
    return {.text = std::string(description(error)), .kind = error};
}

/// The profiles of a file that is no backup: one of them, or a list.
std::optional<std::vector<TrackballProfile>> bareProfiles(std::string_view bytes, const UuidSource& newId) {
    if (auto one = json::decode<TrackballProfile>(bytes, newId)) return std::vector{std::move(*one)};
    if (auto list = json::decode<std::vector<TrackballProfile>>(bytes, newId)) return std::move(*list);
    return std::nullopt;
}

}  // namespace

std::string_view description(ProfileTransferError error) {
    switch (error) {
        case ProfileTransferError::invalidJSON:
            return "El archivo JSON no tiene un formato de perfil válido.";
        case ProfileTransferError::emptyImport:
            return "No hay perfiles para importar.";
    }
    return {};
}

std::optional<TransferError> ProfileManager::exportBackup(Files& files, const std::string& path,
                                                          std::optional<AppSettingsSnapshot> settings) const {
    BackupPackage package{
        .profiles = profiles, .activeProfileID = activeProfileID, .settings = std::move(settings)};
    for (auto& profile : package.profiles) profile = normalizeProfile(std::move(profile));
    const auto text = json::encode(package, indent);
    if (!text) return TransferError{.text = text.error().text(), .kind = std::nullopt};
    if (auto error = files.write(path, *text))
        return TransferError{.text = std::move(error->text), .kind = std::nullopt};
    logger_.info(InlineText("Backup exportado a JSON: ", path));
    return std::nullopt;
}

std::int64_t ProfileManager::replaceProfiles(Profiles incoming,
                                             const std::optional<Uuid>& preferredActiveID) {
    for (auto& profile : incoming) profile = normalizeProfile(std::move(profile));
    if (incoming.empty()) incoming.push_back(defaultProfile());
    std::set<Uuid> taken;
    for (auto& profile : incoming) {
        while (!taken.insert(profile.id).second) profile.id = newId_();
    }
    putProfiles(std::move(incoming));
    save();
    const bool isThere = preferredActiveID && indexOf(*preferredActiveID);
    const Uuid active = isThere ? *preferredActiveID : profiles->front().id;
    putActiveProfileID(active);
    defaults_.set(activeKey, active.text());
    logger_.info(InlineText("Backup importado. Perfiles reemplazados: ", profiles->size()));
    return static_cast<std::int64_t>(profiles->size());
}

std::variant<std::int64_t, TransferError> ProfileManager::importProfiles(Files& files,
                                                                         const std::string& path) {
    const auto content = files.read(path);
    if (const auto* error = std::get_if<FileError>(&content))
        return TransferError{.text = error->text, .kind = std::nullopt};
    return addProfiles(std::get<std::string>(content));
}

std::variant<std::int64_t, TransferError> ProfileManager::addProfiles(std::string_view bytes) {
    auto incoming = bareProfiles(bytes, newId_);
    if (!incoming) return failure(ProfileTransferError::invalidJSON);
    if (incoming->empty()) return failure(ProfileTransferError::emptyImport);
    Profiles all = profiles;
    for (auto& profile : *incoming) {
        profile = normalizeProfile(std::move(profile));
        if (trimmed(profile.name).empty()) profile.name = nameOfTheNameless;
        while (std::ranges::find(all, profile.id, &TrackballProfile::id) != all.end()) profile.id = newId_();
        all.push_back(std::move(profile));
    }
    putProfiles(std::move(all));
    save();
    logger_.info(InlineText("Perfiles importados desde JSON: ", incoming->size()));
    return static_cast<std::int64_t>(incoming->size());
}

std::variant<BackupImportResult, TransferError> ProfileManager::importBackup(Files& files,
                                                                             const std::string& path) {
    const auto content = files.read(path);
    if (const auto* error = std::get_if<FileError>(&content))
        return TransferError{.text = error->text, .kind = std::nullopt};
    const auto& bytes = std::get<std::string>(content);
    if (auto package = json::decode<BackupPackage>(bytes, newId_)) {
        const auto count = replaceProfiles(std::move(package->profiles), package->activeProfileID);
        return BackupImportResult{.profileCount = count, .settings = std::move(package->settings)};
    }
    const auto added = addProfiles(bytes);
    if (const auto* error = std::get_if<TransferError>(&added)) return *error;
    return BackupImportResult{.profileCount = std::get<std::int64_t>(added), .settings = std::nullopt};
}

}  // namespace trelvan
