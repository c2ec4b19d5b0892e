#pragma once

#include "Core/MappingColumns.hpp"
#include "Core/Model/Backup.hpp"
#include "Core/Model/CodingError.hpp"
#include "Core/Model/ProfileSnapshot.hpp"
#include "Core/Model/TrackballProfile.hpp"
#include "Core/Settings/SettingsCatalogue.hpp"
#include "Platform/Files.hpp"
#include "Platform/UserDefaults.hpp"
#include "Utilities/Logger.hpp"
#include "Utilities/PublishedBy.hpp"
#include "Utilities/Uuid.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace trelvan {

/// Which neighbour a mapping changes places with.
enum class MoveDirection { towardsStart, towardsEnd };

/// Why a file of profiles was not taken.
enum class ProfileTransferError { invalidJSON, emptyImport };

/// For the user, in Spanish.
[[nodiscard]] std::string_view description(ProfileTransferError error);

/// An export or an import that failed, for the user; `kind` where the file could be read and was no good.
struct TransferError {
    std::string text;
    std::optional<ProfileTransferError> kind;
};

/// Owns the list of profiles and the choice of the active one, and keeps both in the user defaults.
///
/// Main thread. Operations on what does not exist, and refused ones, change and store nothing.
class ProfileManager {
  public:
    using Profiles = std::vector<TrackballProfile>;

    /// The settings key of the profile list.
    static constexpr std::string_view storageKey = setting::row("profiles").key;
    /// The settings key of the active profile's identifier.
    static constexpr std::string_view activeKey = setting::row("activeProfileID").key;

    /// Loads what is stored. The defaults and the logger must outlive the manager.
    ProfileManager(UserDefaults& defaults, Logger& logger, UuidSource newId = Uuid::random);
    ProfileManager(const ProfileManager&) = delete;
    ProfileManager& operator=(const ProfileManager&) = delete;
    ~ProfileManager();

    /// In order of creation; never empty.
    PublishedBy<Profiles, ProfileManager> profiles;
    PublishedBy<std::optional<Uuid>, ProfileManager> activeProfileID;
    /// Why the stored profiles could not be read, and where where that is known; the default profile or,
    /// while the program runs, those that were in force are used instead. None when they could.
    PublishedBy<std::optional<SettingsProblem>, ProfileManager> problem;

    /// Reads the stored profiles and the stored choice again, in place of those in memory.
    void load();
    /// Stores all profiles; they are encoded at the latest when they are read or written to disk. Profiles
    /// that could not be read at load are copied aside before they are overwritten; as long as that fails
    /// nothing is stored.
    void save();

    /// The profile with the active identifier, otherwise the first one. Valid until the next change.
    [[nodiscard]] const TrackballProfile& activeProfile() const;
    /// The active profile, unchanging and indexed by button. Allocates only after a change.
    [[nodiscard]] std::shared_ptr<const ProfileSnapshot> activeSnapshot() const;
    /// Replaces the profile that has the same identifier.
    void setActiveProfile(TrackballProfile profile);

    void setActive(const TrackballProfile& profile);
    /// Adds a profile with the left and right buttons only; it does not become active.
    TrackballProfile createProfile(std::string name);
    void rename(const Uuid& profileID, std::string_view newName);
    /// Adds a copy under a name of its own; it does not become active.
    TrackballProfile duplicate(const TrackballProfile& profile);
    /// The last profile stays.
    void deleteProfile(const Uuid& profileID);

    /// Replaces the mapping that has the same identifier.
    void updateMapping(ButtonMapping mapping, const Uuid& profileID);
    /// To the active profile, unless it maps the button already; 2 and up.
    void addExtraButtonMapping(std::int64_t buttonNumber);
    /// Adds one mapping to the active profile, for the scroll directions by turns.
    void addScrollMappings();
    /// Buttons of 2 and up and scroll mappings only.
    void removeExtraButtonMapping(const Uuid& mappingID, const Uuid& profileID);
    void moveMapping(const Uuid& mappingID, const Uuid& profileID, MoveDirection direction);

    /// Writes all profiles, the choice of the active one and the settings to a file, as indented JSON with
    /// its keys in alphabetical order.
    [[nodiscard]] std::optional<TransferError> exportBackup(
        Files& files, const std::string& path, std::optional<AppSettingsSnapshot> settings) const;
    /// Puts other profiles in the place of all there are, the default one for none; one whose identifier is
    /// taken gets a new one. The preferred profile becomes active, else the first. How many there are now.
    std::int64_t replaceProfiles(Profiles incoming, const std::optional<Uuid>& preferredActiveID);
    /// Adds the one profile or the list of profiles of a file; how many. Nothing is added where it fails.
    [[nodiscard]] std::variant<std::int64_t, TransferError> importProfiles(Files& files,
                                                                           const std::string& path);
    /// Takes a file over: a backup replaces all profiles, anything else is added.
    [[nodiscard]] std::variant<BackupImportResult, TransferError> importBackup(Files& files,
                                                                               const std::string& path);

  private:
    [[nodiscard]] std::variant<std::int64_t, TransferError> addProfiles(std::string_view bytes);
    /// `instead` says what is used in place of unreadable ones, in the words of the log.
    [[nodiscard]] std::optional<Profiles> storedProfiles(std::string_view instead);
    void takeIn(Profiles stored);
    void loadActive();
    void followOutsideChange(const UserDefaults::Keys& keys);
    void keepUnreadable(const DefaultsValue& stored, const CodingError& error, std::string_view instead);
    [[nodiscard]] bool putUnreadableAside();
    [[nodiscard]] std::optional<std::size_t> indexOf(const Uuid& profileID) const;
    [[nodiscard]] std::optional<std::size_t> mappingIndex(std::size_t profile, const Uuid& mappingID) const;
    [[nodiscard]] std::size_t activeIndex() const;
    void appendToActive(std::int64_t buttonNumber, std::string label);
    [[nodiscard]] const TrackballProfile& defaultProfile() const;
    [[nodiscard]] const TrackballProfile& minimalProfile() const;
    [[nodiscard]] const MappingColumns& columns(std::size_t profile) const;
    void putProfiles(Profiles changed);
    void putActiveProfileID(std::optional<Uuid> changed);
    template <typename Change>
    void changeProfile(std::size_t index, Change&& change);
    template <typename Change, typename FollowInColumns, typename FollowInSnapshot>
    void changeMappings(std::size_t index, Change&& change, FollowInColumns&& followInColumns,
                        FollowInSnapshot&& followInSnapshot);
    [[nodiscard]] std::optional<std::string> encoded() const;

    UserDefaults& defaults_;
    Logger& logger_;
    UuidSource newId_;
    Subscription outsideChange_;
    /// Stored bytes that the next save would lose.
    std::optional<Data> unreadable_;
    /// The templates, made when first needed and then kept: profiles made from one share its mapping
    /// identifiers.
    mutable std::optional<TrackballProfile> defaultProfile_;
    mutable std::optional<TrackballProfile> minimalProfile_;
    /// None after a change.
    mutable std::shared_ptr<ProfileSnapshot> snapshot_;
    /// Those of the profile that was looked at last; none after a change that they do not follow.
    mutable std::optional<MappingColumns> columns_;
    /// Whether the defaults may still ask for what was stored.
    bool storedLazily_ = false;
};

}  // namespace trelvan
