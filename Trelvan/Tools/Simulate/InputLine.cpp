#include "Tools/Simulate/InputLine.hpp"

#include "Core/Model/ButtonNumbers.hpp"
#include "Core/ModifierNames.hpp"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace trelvan {

namespace {

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

}  // namespace trelvan
