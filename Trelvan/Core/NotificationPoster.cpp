#include "Core/NotificationPoster.hpp"

#include "Core/Model/AppLanguage.hpp"
#include "Core/ProgramTitle.hpp"
#include "Core/Settings/LanguageSetting.hpp"

#include <utility>

namespace trelvan {

namespace {

constexpr std::uint32_t wantedOptions = authorizationOption::alert | authorizationOption::sound;

}  // namespace

NotificationPoster::NotificationPoster(const Ports& ports, UuidSource uuids)
    : ports_(ports), uuids_(std::move(uuids)) {}

void NotificationPoster::requestAuthorization() {
    ports_.center.requestAuthorization(wantedOptions);
}

void NotificationPoster::announce(std::string_view kind, std::string_view english, std::string_view spanish) {
    // The answer may come on any thread and after this object; both ports outlive it.
    ports_.center.getAuthorization(
        [&center = ports_.center, &mainQueue = ports_.mainQueue](Notifications::Authorization state) {
            if (state != Notifications::Authorization::notDetermined) return;
            mainQueue.async([&center] { center.requestAuthorization(wantedOptions); });
        });
    const AppLanguage language = spanishUnlessEnglish(languageSetting(ports_.defaults));
    post(kind, programName(ports_.bundle) + " " + versionLabel(ports_.bundle),
         std::string(localized(language, english, spanish)));
}

void NotificationPoster::post(std::string_view kind, std::string title, std::string body) {
    ports_.center.add({.identifier = uuids_().text(),
                       .kind = std::string(kind),
                       .title = std::move(title),
                       .body = std::move(body),
                       .level = InterruptionLevel::timeSensitive});
}

}  // namespace trelvan
