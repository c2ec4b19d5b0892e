#include "Core/ProfileManager.hpp"

#include "Core/Model/ButtonNumbers.hpp"
#include "Core/Model/ProfileNormalization.hpp"
#include "Core/Model/RecordCoding.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <iterator>
#include <limits>
#include <type_traits>
#include <utility>
#include <variant>

namespace trelvan {

namespace {

/// What a stored value of any kind would lose if it were overwritten.
Data bytesOf(const DefaultsValue& value) {
    return std::visit(
        [](const auto& content) -> Data {
            using Content = std::remove_cvref_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, Data>) {
                return content;
            } else if constexpr (std::is_same_v<Content, std::string>) {
                return {content};
            } else if constexpr (std::is_same_v<Content, bool>) {
                return {content ? "true" : "false"};
            } else {
                return {std::to_string(content)};
            }
        },
        value);
}

/// Where the stored profiles stop being readable, in the words of the log.
std::string placeOf(const CodingError& error) {
    if (error.position) {
        return "no es JSON válido en la línea " + std::to_string(error.position->line) + ", columna " +
               std::to_string(error.position->column);
    }
    if (error.path.empty()) return "no es una lista de perfiles legible";
    return "dato no válido en '" + error.path + "'";
}

}  // namespace

ProfileManager::ProfileManager(UserDefaults& defaults, Logger& logger, UuidSource newId)
    : defaults_(defaults), logger_(logger), newId_(std::move(newId)) {
    load();
    outsideChange_ = defaults_.onOutsideChange([this](const auto& keys) { followOutsideChange(keys); });
}

ProfileManager::~ProfileManager() {
    if (storedLazily_) (void)defaults_.object(storageKey);
}

void ProfileManager::load() {
    takeIn(storedProfiles("Se usa el perfil por defecto").value_or(Profiles()));
    loadActive();
}

void ProfileManager::takeIn(Profiles stored) {
    for (auto& profile : stored) profile = normalizeProfile(std::move(profile));
    if (stored.empty()) stored.push_back(defaultProfile());
    putProfiles(std::move(stored));
}

void ProfileManager::followOutsideChange(const UserDefaults::Keys& keys) {
    if (contains(keys, storageKey)) {
        auto stored = storedProfiles("Siguen en uso los anteriores");
        // What somebody left unreadable does not take the profiles away that are in use.
        if (!unreadable_) takeIn(std::move(stored).value_or(Profiles()));
    } else if (!contains(keys, activeKey)) {
        return;
    }
    loadActive();
}

void ProfileManager::loadActive() {
    std::optional<Uuid> active;
    if (const auto text = asText(defaults_.object(activeKey))) active = Uuid::parse(*text);
    if (!active || !indexOf(*active)) active = profiles->front().id;
    putActiveProfileID(active);
    logger_.info(
        InlineText("Perfiles cargados: ", profiles->size(), ". Activo: '", activeProfile().name, "'"));
}

std::optional<ProfileManager::Profiles> ProfileManager::storedProfiles(std::string_view instead) {
    unreadable_.reset();
    problem = std::nullopt;
    const auto stored = defaults_.object(storageKey);
    if (!stored) return std::nullopt;
    const auto* data = std::get_if<Data>(&*stored);
    if (data == nullptr) {
        keepUnreadable(*stored, {"", "not a list of profiles"}, instead);
        return std::nullopt;
    }
    if (data->bytes.empty()) return std::nullopt;
    auto decoded = decodeProfiles(data->bytes, newId_);
    if (!decoded) {
        keepUnreadable(*stored, decoded.error(), instead);
        return std::nullopt;
    }
    return std::move(*decoded);
}

void ProfileManager::keepUnreadable(const DefaultsValue& stored, const CodingError& error,
                                    std::string_view instead) {
    unreadable_ = bytesOf(stored);
    const std::string reason =
        std::holds_alternative<Data>(stored) ? placeOf(error) : "el valor no es de tipo datos";
    logger_.warning(InlineText("No se pudieron leer los perfiles guardados: ", reason, ". ", instead,
                               " y se conservan los datos"));
    const auto place = defaults_.locate(storageKey, error.path);
    problem =
        SettingsProblem{place.value_or(SettingsPlace{std::string(storageKey), {.line = 0, .column = 0}}),
                        error.text(), reason};
}

bool ProfileManager::putUnreadableAside() {
    if (!unreadable_) return true;
    const auto place = defaults_.putAside(storageKey, *unreadable_);
    if (!place) {
        logger_.error("No se pudieron copiar los perfiles ilegibles; no se guardan los cambios");
        return false;
    }
    logger_.warning(InlineText("Los perfiles ilegibles se han copiado en '", *place, "'"));
    unreadable_.reset();
    return true;
}

void ProfileManager::save() {
    if (unreadable_ && !encoded()) return;
    if (!putUnreadableAside()) return;
    storedLazily_ = true;
    // Every change of the profiles comes here, so what is encoded later is what was last stored.
    defaults_.setLazily(storageKey, [this]() -> std::optional<DefaultsValue> {
        if (auto bytes = encoded()) return Data{std::move(*bytes)};
        return std::nullopt;
    });
    if (problem.get()) problem = std::nullopt;
}

std::optional<std::string> ProfileManager::encoded() const {
    auto bytes = encodeProfiles(profiles);
    return bytes ? std::optional(std::move(*bytes)) : std::nullopt;
}

const TrackballProfile& ProfileManager::activeProfile() const {
    return profiles->empty() ? defaultProfile() : profiles.get()[activeIndex()];
}

std::shared_ptr<const ProfileSnapshot> ProfileManager::activeSnapshot() const {
    if (!snapshot_) snapshot_ = std::make_shared<ProfileSnapshot>(activeProfile());
    return snapshot_;
}

void ProfileManager::setActiveProfile(TrackballProfile profile) {
    const auto index = indexOf(profile.id);
    if (!index) return;
    changeProfile(*index, [&](TrackballProfile& old) { old = std::move(profile); });
    save();
}

void ProfileManager::setActive(const TrackballProfile& profile) {
    // The argument may be an element of what observers of the change are about to replace.
    const std::string name = profile.name;
    const Uuid id = profile.id;
    putActiveProfileID(id);
    defaults_.set(activeKey, id.text());
    logger_.info(InlineText("Perfil activo: '", name, "'"));
}

TrackballProfile ProfileManager::createProfile(std::string name) {
    TrackballProfile created = minimalProfile();
    created.id = newId_();
    created.name = std::move(name);
    profiles.update([&](Profiles& all) { all.push_back(created); });
    save();
    logger_.info(InlineText("Perfil creado: '", created.name, "'"));
    return created;
}

void ProfileManager::rename(const Uuid& profileID, std::string_view newName) {
    const std::string name(trimmed(newName));
    const auto index = indexOf(profileID);
    if (name.empty() || !index) return;
    changeProfile(*index, [&](TrackballProfile& profile) { profile.name = name; });
    save();
    logger_.info(InlineText("Perfil renombrado: '", name, "'"));
}

TrackballProfile ProfileManager::duplicate(const TrackballProfile& profile) {
    TrackballProfile copy = profile;
    copy.id = newId_();
    copy.name += " (copia)";
    copy = normalizeProfile(std::move(copy));
    profiles.update([&](Profiles& all) { all.push_back(copy); });
    save();
    return copy;
}

void ProfileManager::deleteProfile(const Uuid& profileID) {
    if (profiles->size() < 2) {
        logger_.warning("No se puede eliminar el único perfil");
        return;
    }
    const auto index = indexOf(profileID);
    if (!index) return;
    // The argument may be the identifier inside the profile that goes.
    const Uuid removed = profileID;
    Profiles changed = profiles;
    const std::string name = std::move(changed[*index].name);
    changed.erase(std::next(changed.begin(), static_cast<std::ptrdiff_t>(*index)));
    putProfiles(std::move(changed));
    if (activeProfileID.get() == removed) putActiveProfileID(profiles->front().id);
    save();
    logger_.info(InlineText("Perfil eliminado: '", name, "'"));
}

void ProfileManager::updateMapping(ButtonMapping mapping, const Uuid& profileID) {
    const auto profile = indexOf(profileID);
    if (!profile) return;
    const auto place = mappingIndex(*profile, mapping.id);
    if (!place) return;
    const ButtonMapping changed = normalizeMapping(std::move(mapping));
    const bool sameButton = columns(*profile).numbers()[*place] == changed.buttonNumber;
    changeMappings(
        *profile, [&](auto& mappings) { mappings[*place] = changed; },
        [&](MappingColumns& columns) { columns.replace(*place, changed); },
        [&](ProfileSnapshot& snapshot) {
            if (sameButton) snapshot.replace(*place, changed);
            return sameButton;
        });
    save();
}

void ProfileManager::addExtraButtonMapping(std::int64_t buttonNumber) {
    if (buttonNumber < firstExtraButtonNumber) return;
    if (profiles->empty()) return;
    const auto& numbers = columns(activeIndex()).numbers();
    if (std::ranges::find(numbers, buttonNumber) != numbers.end()) return;
    appendToActive(buttonNumber, std::string(InlineText("Botón extra ", buttonNumber - 1).view()));
}

void ProfileManager::addScrollMappings() {
    if (profiles->empty()) return;
    const auto& numbers = columns(activeIndex()).numbers();
    std::int64_t lowest = scrollUpButtonNumber + 1;
    for (const auto each : numbers) lowest = std::min(lowest, each);
    if (lowest == std::numeric_limits<std::int64_t>::min()) return;
    const std::int64_t number = lowest - 1;
    const auto sameDirection = std::ranges::count_if(numbers, [&](std::int64_t each) {
        return isScrollButton(each) && isEvenButton(each) == isEvenButton(number);
    });
    const std::string_view direction = isEvenButton(number) ? "Scroll Up " : "Scroll Down ";
    appendToActive(number, std::string(InlineText(direction, sameDirection + 1).view()));
}

void ProfileManager::appendToActive(std::int64_t buttonNumber, std::string label) {
    const auto profile = activeIndex();
    const auto added = ButtonMapping::unassigned(newId_(), buttonNumber, std::move(label));
    changeMappings(
        profile, [&](auto& mappings) { mappings.push_back(added); },
        [&](MappingColumns& columns) { columns.append(added); },
        [&](ProfileSnapshot& snapshot) {
            snapshot.append(added);
            return true;
        });
    save();
}

void ProfileManager::removeExtraButtonMapping(const Uuid& mappingID, const Uuid& profileID) {
    const auto profile = indexOf(profileID);
    if (!profile) return;
    const auto place = mappingIndex(*profile, mappingID);
    if (!place) return;
    const auto number = columns(*profile).numbers()[*place];
    if (number < firstExtraButtonNumber && !isScrollButton(number)) return;
    changeMappings(
        *profile,
        [&](auto& mappings) {
            mappings.erase(std::next(mappings.begin(), static_cast<std::ptrdiff_t>(*place)));
        },
        [&](MappingColumns& columns) { columns.remove(*place); },
        [](ProfileSnapshot& /*snapshot*/) { return false; });
    save();
}

void ProfileManager::moveMapping(const Uuid& mappingID, const Uuid& profileID, MoveDirection direction) {
    const auto profile = indexOf(profileID);
    if (!profile) return;
    const auto place = mappingIndex(*profile, mappingID);
    if (!place) return;
    const bool towardsStart = direction == MoveDirection::towardsStart;
    const std::size_t end = towardsStart ? 0 : profiles.get()[*profile].mappings.size() - 1;
    if (*place == end) return;
    const std::size_t neighbour = towardsStart ? *place - 1 : *place + 1;
    changeMappings(
        *profile, [&](auto& mappings) { std::swap(mappings[*place], mappings[neighbour]); },
        [&](MappingColumns& columns) { columns.swap(*place, neighbour); },
        [](ProfileSnapshot& /*snapshot*/) { return false; });
    save();
}

std::optional<std::size_t> ProfileManager::indexOf(const Uuid& profileID) const {
    const auto found = std::ranges::find(profiles.get(), profileID, &TrackballProfile::id);
    if (found == profiles->end()) return std::nullopt;
    return static_cast<std::size_t>(found - profiles->begin());
}

std::optional<std::size_t> ProfileManager::mappingIndex(std::size_t profile, const Uuid& mappingID) const {
    return columns(profile).find(mappingID);
}

const MappingColumns& ProfileManager::columns(std::size_t profile) const {
    const auto& mappings = profiles.get()[profile].mappings;
    // An observer that changes the profiles itself leaves them behind.
    if (!columns_ || columns_->profile() != profile || columns_->numbers().size() != mappings.size())
        columns_.emplace(profile, mappings);
    return *columns_;
}

std::size_t ProfileManager::activeIndex() const {
    const auto& id = activeProfileID.get();
    return id ? indexOf(*id).value_or(0) : 0;
}

const TrackballProfile& ProfileManager::defaultProfile() const {
    if (!defaultProfile_) defaultProfile_ = TrackballProfile::defaultProfile(newId_);
    return *defaultProfile_;
}

const TrackballProfile& ProfileManager::minimalProfile() const {
    if (!minimalProfile_) minimalProfile_ = TrackballProfile::minimalProfile(newId_);
    return *minimalProfile_;
}

void ProfileManager::putProfiles(Profiles changed) {
    profiles = std::move(changed);
    columns_.reset();
    // Only now: an observer that asked for the snapshot was told before the change and got the old one.
    snapshot_.reset();
}

void ProfileManager::putActiveProfileID(std::optional<Uuid> changed) {
    activeProfileID = changed;
    snapshot_.reset();
}

template <typename Change>
void ProfileManager::changeProfile(std::size_t index, Change&& change) {
    profiles.update([&](Profiles& all) { std::forward<Change>(change)(all[index]); });
    columns_.reset();
    snapshot_.reset();
}

/// What is kept of the mappings follows the change where it can, and is made anew where it cannot.
template <typename Change, typename FollowInColumns, typename FollowInSnapshot>
void ProfileManager::changeMappings(std::size_t index, Change&& change, FollowInColumns&& followInColumns,
                                    FollowInSnapshot&& followInSnapshot) {
    const auto before = profiles.get()[index].mappings.size();
    profiles.update([&](Profiles& all) { std::forward<Change>(change)(all[index].mappings); });
    // An observer may have changed the profiles itself meanwhile.
    if (columns_ && columns_->profile() == index && columns_->numbers().size() == before) {
        std::forward<FollowInColumns>(followInColumns)(*columns_);
    } else {
        columns_.reset();
    }
    const bool follows = snapshot_ && snapshot_.use_count() == 1 && index == activeIndex() &&
                         snapshot_->profile().mappings.size() == before &&
                         std::forward<FollowInSnapshot>(followInSnapshot)(*snapshot_);
    if (!follows) snapshot_.reset();
}

}  // namespace trelvan
