#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/Model/ButtonAction.hpp"
#include "Core/Model/MappingFunction.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/Quartz.hpp"
#include "Platform/SystemViews.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <variant>

/// Everything there is to know about each action, in one row. What is said, checked, recorded and done
/// follows the row; nothing else tells the actions apart. Any thread; it never changes.
namespace trelvan {

class ButtonMapper;
struct ButtonMapping;

/// What a list of actions can be filtered by.
enum class ActionSection : std::uint8_t {
    editing,
    windowsAndDesktops,
    screenshots,
    soundAndMedia,
    applicationsAndFolders,
    tools,
    clicks,
    custom,
};

[[nodiscard]] TextPair label(ActionSection section);

/// The key combination by which applications and desktops know an action.
struct Combination {
    KeyChord onMac;
    KeyChord onLinux;

    [[nodiscard]] constexpr KeyChord by(ShortcutConvention convention) const {
        return convention == ShortcutConvention::macOS ? onMac : onLinux;
    }
};

/// What stands in for a combination in a terminal, where it may mean something else.
enum class TerminalUse : std::uint8_t {
    /// Nothing: it is sent as everywhere.
    same,
    copy,
    paste,
    /// No terminal undoes; nothing is sent.
    undo,
};

/// A view or a tool that the desktop may have.
struct DesktopTool {
    SystemView view = SystemView::missionControl;
    /// Its symbolic hot keys, in the order in which they are tried; at least one.
    std::span<const int> hotKeys;
};

/// A press that runs an action.
struct ActionCall {
    ButtonMapper& mapper;
    const ButtonMapping& mapping;
    FunctionSlot slot;
};
using ActionFunction = void (*)(const ActionCall& call);

/// The kinds of what an action does.
namespace does {

struct Nothing {};
/// Sends a combination.
struct Keys {
    Combination combination;
    TerminalUse inTerminal = TerminalUse::same;
};
/// Asks the desktop for a view, else sends its hot key; the function knows what is left then.
struct View {
    DesktopTool tool;
    ActionFunction run;
};
/// Asks the desktop for a tool where the platform's desktop goes first, else sends the combination.
struct Tool {
    DesktopTool tool;
    Combination combination;
};
struct Media {
    MediaKey key;
};
/// Clicks at the pointer.
struct Click {
    std::int64_t button;
    TextPair description;
};
/// Opens an application and sends it the combination for something new.
struct Note {
    std::string_view bundleID;
    Combination combination;
};
/// Whatever its function does.
struct Own {
    ActionFunction run;
    TextPair description;
    /// What the description ends with, in every language.
    std::string_view object = {};
};

}  // namespace does

using ActionEffect = std::variant<does::Nothing, does::Keys, does::View, does::Tool, does::Media, does::Click,
                                  does::Note, does::Own>;

/// What of the mapping, or of its profile, an action works with.
enum class ActionInput : std::uint8_t {
    nothing,
    /// The function's own shortcut; without it nothing is sent.
    shortcut,
    /// The mapping's shortcut for dictation; without it nothing is sent.
    dictationShortcut,
    /// The mapping's application; without it nothing is opened.
    application,
    /// The mapping's folder; without it the home folder serves.
    folder,
    /// The entries of the profile's radial menu.
    menu,
};

struct ActionRow {
    ButtonAction action;
    /// What is stored, for good, and at once the Spanish label. Those in English are meant so.
    std::string_view rawValue;
    std::string_view englishLabel;
    /// None for an action that every filter leaves out.
    std::optional<ActionSection> section;
    ActionEffect effect;
    ActionInput input = ActionInput::nothing;
};

/// All rows in the catalogue's order.
[[nodiscard]] std::span<const ActionRow, actionCount> actionCatalogue();
[[nodiscard]] const ActionRow& rowOf(ButtonAction action);

/// The view or tool that the desktop may have for the action; none for one that it has no part in.
[[nodiscard]] const DesktopTool* desktopTool(ButtonAction action);
/// The combination that the action sends, or that is left where the desktop has no tool for it; none for an
/// action that has none of its own.
[[nodiscard]] const Combination* catalogueCombination(ButtonAction action);
/// What is sent to a terminal; none when nothing is. Not for `same`.
[[nodiscard]] std::optional<KeyChord> shortcutInTerminal(TerminalUse use, const TerminalShortcuts& terminal);

}  // namespace trelvan
