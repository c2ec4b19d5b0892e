#include "Tools/Explain/Explain.hpp"

#include "Core/MappingExplanation.hpp"
#include "Core/Model/RecordCoding.hpp"
#include "Core/ProfileManager.hpp"
#include "Core/Settings/LanguageSetting.hpp"
#include "Platform/SettingsSnapshot.hpp"
#include "Tools/Simulate/JsonLine.hpp"
#include "Utilities/Logger.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <cstdio>
#include <map>
#include <string_view>

namespace trelvan {

namespace {

int complain(std::string_view what) {
    std::fprintf(stderr, "trelvan: %s\n", visible(what).c_str());
    return exitStatus::badUsage;
}

void print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

/// Why the stored profiles do not decode; none when they do. The program would go on with the default
/// profile, which explains nothing to somebody who wants to know about their own.
std::optional<std::string> unreadableProfiles(const UserDefaults& settings) {
    const auto stored = settings.object(ProfileManager::storageKey);
    if (!stored) return std::nullopt;
    const auto* data = std::get_if<Data>(&*stored);
    if (data == nullptr) return std::string(ProfileManager::storageKey) + ": not data";
    if (data->bytes.empty()) return std::nullopt;
    const auto decoded = decodeProfiles(data->bytes, &Uuid::random);
    return decoded ? std::nullopt : std::optional(decoded.error().text());
}

void printJson(const MappingExplanation& explanation) {
    JsonLine line;
    line.begin();
    line.add("button", explanation.buttonNumber)
        .add("slot", nameOf(explanation.function.slot))
        .add("action", rawValue(explanation.function.action))
        .add("handled", explanation.handled)
        .addRaw("why", jsonTexts(explanation.why));
    print(line.end());
}

void printText(const MappingExplanation& explanation) {
    std::size_t number = 0;
    for (const auto& step : explanation.why) print(std::to_string(++number) + ". " + step + "\n");
}

}  // namespace

int explain(const command::Explain& request, const ActionShortcuts& shortcuts, const ReadHotKeys& hotKeys,
            AppLanguage errorLanguage) {
    auto read = readSettings(request.configDirectory);
    if (const auto* failure = std::get_if<PlatformFailure>(&read))
        return complain(localized(errorLanguage, failure->english, failure->spanish));
    SettingsSnapshot settings(std::get<SettingsSnapshot::Values>(std::move(read)));
    const AppLanguage language = request.language.value_or(languageFromSetting(languageSetting(settings)));

    if (const auto problem = unreadableProfiles(settings)) {
        return complain(std::string(localized(language, "the stored profiles cannot be read: ",
                                              "no se pueden leer los perfiles guardados: ")) +
                        *problem);
    }
    Logger silent;
    const ProfileManager profiles(settings, silent);
    auto snapshot = profiles.activeSnapshot();
    if (request.profile) {
        const auto& all = profiles.profiles.get();
        const auto found = std::ranges::find(all, *request.profile, &TrackballProfile::name);
        if (found == all.end())
            return complain(
                std::string(localized(language, "no profile is called '", "ningún perfil se llama '")) +
                *request.profile + "'");
        snapshot = std::make_shared<const ProfileSnapshot>(*found);
    }
    const auto known = shortcuts.desktopGoesFirst ? hotKeys() : std::map<int, NamedHotKey>{};
    const auto hotKey = [&known](int id) {
        const auto found = known.find(id);
        return found != known.end() ? std::optional(found->second) : std::nullopt;
    };
    const auto explanation =
        explainPress(*snapshot, request.buttonNumber, request.modifiers, shortcuts, language, hotKey);
    if (request.json) {
        printJson(explanation);
    } else {
        printText(explanation);
    }
    return exitStatus::ok;
}

}  // namespace trelvan
