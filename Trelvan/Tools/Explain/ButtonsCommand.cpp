#include "Tools/Explain/ButtonsCommand.hpp"

#include "Core/ProfileManager.hpp"
#include "Core/Settings/LanguageSetting.hpp"
#include "Platform/SettingsSnapshot.hpp"
#include "Tools/Simulate/InputLine.hpp"
#include "Utilities/Logger.hpp"

#include <cstdio>
#include <memory>
#include <utility>
#include <variant>

namespace trelvan {

namespace {

void print(std::FILE* stream, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

struct Present {
    std::shared_ptr<const ProfileSnapshot> profile;
    AppLanguage language = AppLanguage::english;
};

Present readPresent(const command::Buttons& request, AppLanguage terminal) {
    auto read = readSettings(request.configDirectory);
    const bool isRead = std::holds_alternative<SettingsSnapshot::Values>(read);
    SettingsSnapshot settings(isRead ? std::get<SettingsSnapshot::Values>(std::move(read))
                                     : SettingsSnapshot::Values{});
    Logger silent;
    return {.profile = ProfileManager(settings, silent).activeSnapshot(),
            .language = request.language.value_or(chosenLanguage(settings).value_or(terminal))};
}

}  // namespace

int showButtons(const command::Buttons& request, const ActionShortcuts& shortcuts,
                const NamedHotKeys& hotKeys, AppLanguage terminal) {
    print(stderr, localized(readPresent(request, terminal).language,
                            "Press the buttons and turn the wheel; Control+C ends it.\n",
                            "Pulsa los botones y gira la rueda; Control+C termina.\n"));
    const auto failure = watchButtons([&](const SeenInput& input) {
        const Present present = readPresent(request, terminal);
        print(stdout, inputLine(input, *present.profile, shortcuts, present.language, hotKeys));
    });
    if (!failure) return exitStatus::ok;
    const auto reason = localized(terminal, failure->english, failure->spanish);
    print(stderr, "trelvan: " + std::string(reason) + "\n");
    return exitStatus::unavailable;
}

}  // namespace trelvan
