#include "Core/ActionDescription.hpp"

#include "Core/MappingResolution.hpp"
#include "Core/Model/ActionCatalogue.hpp"
#include "Core/ModifierNames.hpp"
#include "Utilities/Overloaded.hpp"
#include "Utilities/Text.hpp"

#include <algorithm>
#include <array>
#include <utility>
#include <variant>

namespace trelvan {

namespace {

struct KeyName {
    KeyCode keyCode;
    TextPair name;
};

/// The keys that the catalogue's shortcuts use.
constexpr std::array keyNames{
    KeyName{key::c, {"C", "C"}},
    KeyName{key::v, {"V", "V"}},
    KeyName{key::x, {"X", "X"}},
    KeyName{key::z, {"Z", "Z"}},
    KeyName{key::q, {"Q", "Q"}},
    KeyName{key::l, {"L", "L"}},
    KeyName{key::n, {"N", "N"}},
    KeyName{key::digit3, {"3", "3"}},
    KeyName{key::digit4, {"4", "4"}},
    KeyName{key::digit5, {"5", "5"}},
    KeyName{key::period, {".", "."}},
    KeyName{key::space, {"Space", "Espacio"}},
    KeyName{key::f13, {"Print Screen", "Impr Pant"}},
    KeyName{key::help, {"Insert", "Insertar"}},
    KeyName{key::leftArrow, {"Left", "Izquierda"}},
    KeyName{key::rightArrow, {"Right", "Derecha"}},
};

/// Puts sentences together in one language.
class Describer {
  public:
    Describer(const ActionShortcuts& shortcuts, AppLanguage language, const NamedHotKeys& hotKeys)
        : shortcuts_(shortcuts), language_(language), hotKeys_(hotKeys) {}

    std::vector<std::string> describe(ButtonAction action) {
        std::visit(Overloaded{
                       [this](const does::Nothing&) {
                           say({"Nothing", "Nada"});
                       },
                       [this](const does::Keys& keys) { describeKeys(keys); },
                       [this](const does::View& view) { describeTool(view.tool, std::nullopt); },
                       [this](const does::Tool& tool) {
                           const auto chord = chordOf(tool.combination);
                           if (shortcuts_.desktopGoesFirst) return describeTool(tool.tool, chord);
                           say(sent, describeChord(chord, language_));
                       },
                       [this](const does::Media&) {
                           say({"Sent: the media key", "Se envía: la tecla multimedia"});
                       },
                       [this](const does::Click& click) { say(click.description); },
                       [this](const does::Note& note) { describeNote(note); },
                       [this](const does::Own& own) { say(own.description, own.object); },
                   },
                   rowOf(action).effect);
        return std::move(sentences_);
    }

  private:
    void say(TextPair before, std::string_view middle = {}, TextPair after = {}) {
        sentences_.emplace_back(
            InlineText(localized(language_, before), middle, localized(language_, after)).view());
    }

    [[nodiscard]] KeyChord chordOf(const Combination& combination) const {
        return combination.by(shortcuts_.convention);
    }

    void describeKeys(const does::Keys& keys) {
        const auto text = describeChord(chordOf(keys.combination), language_);
        say(sent, text);
        if (keys.inTerminal != TerminalUse::same && !shortcuts_.terminals.empty())
            describeTerminals(keys.inTerminal, text);
    }

    /// Which terminal will be in front nobody knows here, so it is said for most of them.
    void describeTerminals(TerminalUse use, std::string_view usual) {
        if (const auto chord = shortcutInTerminal(use, terminal::usual({}))) {
            say({"In a terminal: ", "En un terminal: "}, describeChord(*chord, language_),
                {", or that terminal's own way", ", o la forma propia de ese terminal"});
        } else {
            say({"In a terminal nothing is sent: ", "En un terminal no se envía nada: "}, usual,
                {" would stop the program in it", " detendría el programa que hay en él"});
        }
    }

    /// The desktop comes first where it can be asked, then the hot key, then the catalogue's combination.
    void describeTool(const DesktopTool& tool, std::optional<KeyChord> chord) {
        const auto hotKey = hotKeyOf(tool);
        if (!shortcuts_.desktopGoesFirst) {
            if (!hotKey.empty()) return say({"Sent: its hot key ", "Se envía: su atajo "}, hotKey);
            return say({"It has no hot key: its usual keys or application are tried",
                        "No tiene atajo: se prueban sus teclas o su aplicación habituales"});
        }
        constexpr TextPair asked{"Asked of the desktop; where it has no way of its own, ",
                                 "Se pide al escritorio; si no tiene forma propia, "};
        std::string text(localized(language_, asked));
        if (!hotKey.empty()) {
            text.append(localized(language_, "sent: its hot key ", "se envía: su atajo ")).append(hotKey);
        } else if (chord) {
            text.append(localized(language_, "sent: ", "se envía: "))
                .append(describeChord(*chord, language_));
        } else {
            text.append(localized(language_, "nothing is sent: it has no hot key",
                                  "no se envía nada: no tiene atajo"));
        }
        sentences_.push_back(std::move(text));
    }

    /// The first hot key that the tool has; empty when it has none.
    [[nodiscard]] std::string hotKeyOf(const DesktopTool& tool) const {
        if (!hotKeys_) return {};
        for (const int id : tool.hotKeys) {
            const auto named = hotKeys_(id);
            if (!named) continue;
            std::string text = namesOf(named->flags);
            if (!text.empty()) text += '+';
            return text + named->key;
        }
        return {};
    }

    void describeNote(const does::Note& note) {
        const auto chord = describeChord(chordOf(note.combination), language_);
        if (shortcuts_.typesOnlyInFront)
            return say({"Opens the desktop's editor or a note taker and, once it has the focus, sends ",
                        "Abre el editor del escritorio o una aplicación de notas y, cuando tiene el foco, "
                        "envía "},
                       chord);
        say({"Opens Notes, then sends ", "Abre Notas y luego envía "}, chord);
    }

    static constexpr TextPair sent{"Sent: ", "Se envía: "};

    const ActionShortcuts& shortcuts_;
    AppLanguage language_;
    const NamedHotKeys& hotKeys_;
    std::vector<std::string> sentences_;
};

}  // namespace

std::string describeChord(KeyChord chord, AppLanguage language) {
    std::string text = namesOf(chord.flags);
    if (!text.empty()) text += '+';
    const auto* const known = std::ranges::find(keyNames, chord.keyCode, &KeyName::keyCode);
    if (known != keyNames.end()) return text.append(localized(language, known->name));
    return text.append(localized(language, "key ", "tecla ")).append(std::to_string(chord.keyCode));
}

std::vector<std::string> describeAction(ButtonAction action, const ActionShortcuts& shortcuts,
                                        AppLanguage language, const NamedHotKeys& hotKeys) {
    return Describer(shortcuts, language, hotKeys).describe(action);
}

NamedHotKeys namedHotKeys(const HotKeyTable& table) {
    return [&table](int id) -> std::optional<NamedHotKey> {
        const auto chord = combinationOf(table.entry(id));
        if (!chord) return std::nullopt;
        const auto* const known = std::ranges::find(keyNames, chord->keyCode, &KeyName::keyCode);
        return NamedHotKey{chord->flags, known != keyNames.end() ? std::string(known->name.english)
                                                                 : "key " + std::to_string(chord->keyCode)};
    };
}

}  // namespace trelvan
