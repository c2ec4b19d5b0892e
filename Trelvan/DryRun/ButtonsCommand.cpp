#include "DryRun/ButtonsCommand.hpp"

#include "Core/Model/ButtonNumbers.hpp"
#include "Core/ModifierNames.hpp"
#include "Core/ProfileManager.hpp"
#include "Platform/SettingsSnapshot.hpp"
#include "Utilities/Logger.hpp"

#include <algorithm>
#include <cstdio>
#include <optional>

namespace trelvan {

namespace {

void print(std::FILE* stream, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

/// The number by which a mapping names the input; none for what no mapping can name.
std::optional<std::int64_t> numberOf(const SeenInput& input) {
    switch (input.kind) {
        case SeenInput::Kind::button:
            return input.buttonNumber;
        case SeenInput::Kind::wheelUp:
            return scrollUpButtonNumber;
        case SeenInput::Kind::wheelDown:
            return scrollDownButtonNumber;
        default:
            return std::nullopt;
    }
}

TextPair nameOf(SeenInput::Kind kind) {
    switch (kind) {
        case SeenInput::Kind::button:
            return {"button ", "botón "};
        case SeenInput::Kind::wheelUp:
            return {"wheel up ", "rueda arriba "};
        case SeenInput::Kind::wheelDown:
            return {"wheel down ", "rueda abajo "};
        case SeenInput::Kind::wheelLeft:
            return {"wheel left", "rueda izquierda"};
        case SeenInput::Kind::wheelRight:
            return {"wheel right", "rueda derecha"};
    }
    return {};
}

/// What the last steps of the explanation say: that it runs something and what that sends, or that it passes.
std::string verdict(const MappingExplanation& explanation, AppLanguage language) {
    if (!explanation.handled) return std::string(localized(language, "passes as it is", "pasa tal cual"));
    const auto name = label(explanation.function.action, rawValue(language));
    std::string text = std::string(localized(language, "runs '", "ejecuta '")) + std::string(name) + "'";
    // The steps behind the verdict tell what is sent.
    const std::string quoted = "'" + std::string(name) + "'";
    auto step = std::find_if(explanation.why.rbegin(), explanation.why.rend(), [&](const std::string& each) {
                    return each.find(quoted) != std::string::npos;
                }).base();
    for (; step != explanation.why.end(); ++step) text += ". " + *step;
    return text;
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
    const auto stored = asText(settings.object(languageKey));
    Logger silent;
    return {.profile = ProfileManager(settings, silent).activeSnapshot(),
            .language = request.language.value_or(stored ? languageFromSetting(*stored) : terminal)};
}

}  // namespace

std::string inputLine(const SeenInput& input, const ProfileSnapshot& profile,
                      const ActionShortcuts& shortcuts, AppLanguage language, const NamedHotKeys& hotKeys) {
    std::string line(localized(language, nameOf(input.kind)));
    const auto number = numberOf(input);
    if (number)
        line += input.kind == SeenInput::Kind::button ? std::to_string(*number)
                                                      : "(" + std::to_string(*number) + ")";
    line += "  " + input.device;
    if (const auto held = namesOf(input.flags); !held.empty()) line += "  " + held;
    line += ": ";
    if (!input.isServed) {
        line += localized(language, "left alone: no mouse or trackball",
                          "no se toca: no es un ratón ni un trackball");
    } else if (!number) {
        line += localized(language, "passes; it cannot be mapped", "pasa; no se puede asignar");
    } else {
        line += verdict(explainPress(profile, *number, input.flags, shortcuts, language, hotKeys), language);
    }
    return line + "\n";
}

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
