#include "Core/ButtonMapper.hpp"

#include "Core/Model/ButtonNumbers.hpp"
#include "Utilities/Overloaded.hpp"

#include <array>
#include <utility>
#include <variant>

namespace trelvan {

namespace {

constexpr std::string_view missionControlPath = "/System/Applications/Mission Control.app";
constexpr std::array<std::string_view, 2> launchpadPaths{"/System/Applications/Launchpad.app",
                                                         "/Applications/Launchpad.app"};

// A media key goes down and up as system-defined events with these modifier flags, which stand in the low
// half of data1 as well.
constexpr EventFlags mediaKeyDown = 0xA00;
constexpr EventFlags mediaKeyUp = 0xB00;

}  // namespace

ButtonMapper::ButtonMapper(const Ports& ports, ProfileProvider profile,
                           std::weak_ptr<SmartButtonMenu> smartButtonMenu, Logger& logger)
    : ports_(ports),
      profile_(std::move(profile)),
      smartButtonMenu_(std::move(smartButtonMenu)),
      logger_(logger) {}

// Resolution

bool ButtonMapper::execute(std::int64_t buttonNumber, EventFlags eventFlags) {
    if (!ports_.session.isUsable()) return false;
    const EventFlags flags = ports_.input.flags(EventSourceState::combinedSession) | eventFlags;
    const auto profile = profile_();
    const auto group = profile->mappings(buttonNumber);
    if (group.empty()) {
        logger_.debug(InlineText("Botón ", buttonNumber, " sin mapeo registrado"));
        return false;
    }
    if (isScrollButton(buttonNumber)) return executeScroll(*profile, group, flags);

    const ButtonMapping& mapping = profile->mapping(group.front());
    if (isOwnClick(mapping)) return executeAlternate(mapping, flags);

    const auto [action, slot] = resolvedAction(mapping, flags);
    logger_.info(InlineText("Ejecutando '", rawValue(action),
                            action == mapping.action() ? "' para botón " : "' (alterna) para botón ",
                            buttonNumber));
    performAction(action, mapping, slot);
    return action != ButtonAction::none;
}

bool ButtonMapper::executeScroll(const ProfileSnapshot& profile, std::span<const std::uint32_t> group,
                                 EventFlags flags) {
    for (const auto index : group) {
        const ButtonMapping& mapping = profile.mapping(index);
        const auto [action, slot] = resolvedAction(mapping, flags);
        if (action == ButtonAction::none) continue;
        logger_.info(
            InlineText("Ejecutando '", rawValue(action), "' para scroll '", mapping.buttonLabel, "'"));
        performAction(action, mapping, slot);
        return true;
    }
    return false;
}

/// The primary function is the button's own click, which is let through and never synthesised.
bool ButtonMapper::executeAlternate(const ButtonMapping& mapping, EventFlags flags) {
    const auto resolved = resolvedAlternateAction(mapping, flags);
    if (!resolved) return false;
    logger_.info(InlineText("Ejecutando '", rawValue(resolved->action), "' (adicional) para botón ",
                            mapping.buttonNumber));
    performAction(resolved->action, mapping, resolved->slot);
    return true;
}

bool ButtonMapper::perform(const ButtonMapping& mapping, FunctionSlot slot) {
    if (!ports_.session.isUsable()) return false;
    const ButtonAction action = mapping.function(slot).action;
    logger_.info(InlineText("Probando '", rawValue(action), "' del botón ", mapping.buttonNumber));
    performAction(action, mapping, slot);
    return true;
}

void ButtonMapper::performAction(ButtonAction action, const ButtonMapping& mapping, FunctionSlot slot) {
    const ActionCall call{*this, mapping, slot};
    std::visit(Overloaded{
                   [](const does::Nothing&) {},
                   [&](const does::Keys& keys) { sendKeys(action, keys); },
                   [&](const does::View& view) { view.run(call); },
                   [&](const does::Tool& tool) { sendTool(tool); },
                   [&](const does::Media& media) { sendMediaKey(media.key); },
                   [&](const does::Click& click) { simulateMouseClick(click.button); },
                   [&](const does::Note& note) { createNewNote(note); },
                   [&](const does::Own& own) { own.run(call); },
               },
               rowOf(action).effect);
}

// Keys and clicks

void ButtonMapper::simulateKey(const Ports& ports, KeyCode keyCode, EventFlags flags) {
    ports.background.async([sequence = keyWithModifiers(keyCode, flags), &queue = ports.background,
                            &poster = ports.poster, &session = ports.session]() mutable {
        if (session.isUsable()) InputSequence::perform(std::move(sequence), queue, poster);
    });
}

void ButtonMapper::simulateKey(const Ports& ports, KeyChord chord) {
    if (chord.character == 0) return simulateKey(ports, chord.keyCode, chord.flags);
    ports.background.async(
        [chord, &queue = ports.background, &poster = ports.poster, &session = ports.session] {
            if (!session.isUsable()) return;
            const auto typing = poster.keyTyping(chord.character);
            auto sequence = typing ? keyWithModifiers(typing->keyCode, chord.flags | typing->flags)
                                   : keyWithModifiers(chord.keyCode, chord.flags);
            InputSequence::perform(std::move(sequence), queue, poster);
        });
}

KeyChord ButtonMapper::chordOf(const Combination& combination) const {
    return combination.by(ports_.shortcuts.convention);
}

void ButtonMapper::sendKeys(ButtonAction action, const does::Keys& keys) {
    const auto* const terminal =
        keys.inTerminal != TerminalUse::same
            ? terminalOf(ports_.shortcuts.terminals, ports_.screens.frontmostApplication())
            : nullptr;
    if (terminal != nullptr) return sendToTerminal(action, keys.inTerminal, *terminal);
    simulateKey(chordOf(keys.combination));
}

void ButtonMapper::sendToTerminal(ButtonAction action, TerminalUse use, const TerminalShortcuts& terminal) {
    if (const auto chord = shortcutInTerminal(use, terminal)) return simulateKey(*chord);
    logger_.info(InlineText(
        "'", rawValue(action), "' no envía nada a ", terminal.windowClass,
        use == TerminalUse::undo ? ": un terminal no deshace" : ": lo seleccionado ya está copiado"));
}

void ButtonMapper::sendTool(const does::Tool& tool) {
    const KeyChord chord = chordOf(tool.combination);
    const auto byKeys = [ports = ports_, hotKeys = tool.tool.hotKeys, chord] {
        if (!pressFirst(ports, hotKeys)) simulateKey(ports, chord);
        return true;
    };
    if (!ports_.views.show(tool.tool.view, byKeys)) simulateKey(chord);
}

void ButtonMapper::sendRecorded(const CustomShortcut& shortcut) {
    if (!shortcut.isEmpty()) simulateKey(shortcut.keyCode, shortcut.modifiersRawValue);
}

void ButtonMapper::sendMediaKey(MediaKey mediaKey) {
    ports_.background.async([mediaKey, &poster = ports_.poster] {
        const auto data1 = static_cast<std::int64_t>(mediaKey) << 16U;
        for (const EventFlags edge : {mediaKeyDown, mediaKeyUp}) {
            poster.post(
                MediaKeyEvent{.flags = edge, .data1 = data1 | static_cast<std::int64_t>(edge), .data2 = -1},
                TapLocation::session);
        }
    });
}

void ButtonMapper::simulateMouseClick(std::int64_t button) {
    // Where the pointer is at the press, however late the click is posted.
    const TopLeftPoint location = ports_.screens.eventLocation(ports_.screens.pointerLocation());
    auto down = EventType::otherMouseDown;
    auto up = EventType::otherMouseUp;
    if (button == 0) {
        down = EventType::leftMouseDown;
        up = EventType::leftMouseUp;
    } else if (button == 1) {
        down = EventType::rightMouseDown;
        up = EventType::rightMouseUp;
    }
    ports_.background.async([button, location, down, up, &poster = ports_.poster] {
        for (const auto type : {down, up}) {
            if (const auto event = poster.makeMouse(type, button, location))
                poster.post(*event, TapLocation::session);
        }
    });
}

// The desktop's own views

std::optional<KeyChord> ButtonMapper::resolveFirst(const Ports& ports, std::span<const int> ids) {
    for (const int id : ids) {
        if (const auto chord = combinationOf(ports.hotKeys.entry(id))) return chord;
    }
    return std::nullopt;
}

bool ButtonMapper::pressFirst(const Ports& ports, std::span<const int> ids) {
    const auto chord = resolveFirst(ports, ids);
    if (!chord) return false;
    ports.background.async([ports, chord = *chord] { simulateKey(ports, chord); });
    return true;
}

void ButtonMapper::triggerSystemHotKey(ButtonAction action, const std::function<void()>& fallback) {
    const DesktopTool& tool = *desktopTool(action);
    const auto byKeys = [ports = ports_, ids = tool.hotKeys] { return pressFirst(ports, ids); };
    if (!ports_.views.show(tool.view, byKeys) && !pressFirst(ports_, tool.hotKeys)) fallback();
}

void ButtonMapper::triggerMissionControl() {
    triggerSystemHotKey(ButtonAction::missionControl, [this] {
        simulateKey(key::f3, 0);
        openMissionControlApp();
    });
}

void ButtonMapper::triggerAppExpose() {
    triggerSystemHotKey(ButtonAction::appExpose, [this] { simulateKey(key::f10, 0); });
}

void ButtonMapper::triggerLaunchpad() {
    triggerSystemHotKey(ButtonAction::launchpad, [this] { openLaunchpadDirectly(); });
}

void ButtonMapper::triggerShowDesktop() {
    triggerSystemHotKey(ButtonAction::showDesktop, [this] {
        simulateKey(key::f11, 0);
        simulateKey(key::f12, 0);
    });
}

void ButtonMapper::openMissionControlApp() {
    if (ports_.workspace.exists(missionControlPath)) {
        ports_.workspace.openApplication(missionControlPath);
    } else {
        logger_.warning("Mission Control.app no encontrado en /System/Applications");
    }
}

void ButtonMapper::openLaunchpadDirectly() {
    if (const auto path = ports_.workspace.applicationPath("com.apple.launchpad.launcher")) {
        ports_.workspace.openApplication(*path);
        return;
    }
    for (const auto path : launchpadPaths) {
        if (!ports_.workspace.exists(path)) continue;
        ports_.workspace.openApplication(path);
        return;
    }
    logger_.warning("Launchpad no disponible por bundle ni por path");
}

void ButtonMapper::triggerMoveDesktop(KeyCode keyCode) {
    logger_.debug(InlineText("Intentando mover escritorio keyCode=", keyCode));
    ports_.background.async([ports = ports_, &logger = logger_, keyCode] {
        if (ports.session.isUsable()) moveDesktop(ports, logger, keyCode);
    });
}

void ButtonMapper::moveDesktop(const Ports& ports, Logger& logger, KeyCode keyCode) {
    const bool left = keyCode == key::leftArrow;
    const auto ids =
        desktopTool(left ? ButtonAction::moveDesktopLeft : ButtonAction::moveDesktopRight)->hotKeys;
    const auto byKeys = [ports, ids] { return pressFirst(ports, ids); };
    if (ports.views.moveDesktop(left ? DesktopDirection::left : DesktopDirection::right, byKeys)) return;
    if (const auto chord = resolveFirst(ports, ids)) return simulateKey(ports, *chord);
    InputSequence::perform(desktopMoveCascade(ports, logger, keyCode), ports.background, ports.poster);
}

/// Every known way to move, one after the other: posting gives no feedback on which of them worked.
InputSequence ButtonMapper::desktopMoveCascade(const Ports& ports, Logger& logger, KeyCode keyCode) {
    constexpr EventFlags controlArrow = flag::control | flag::numericPad;
    constexpr EventFlags controlOptionArrow = controlArrow | flag::option;
    const auto asynchronousKey = [ports, keyCode](EventFlags flags) {
        return [ports, keyCode, flags] { simulateKey(ports, keyCode, flags); };
    };
    const auto viaMissionControl = [keyCode] {
        return sessionShortcut(key::f3, 0)
            .pause(Seconds{0.110})
            .append(sessionShortcut(keyCode, flag::numericPad))
            .pause(Seconds{0.040})
            .append(sessionShortcut(key::returnKey, 0));
    };
    InputSequence sequence;
    sequence.then(asynchronousKey(controlArrow))
        .append(sessionShortcut(keyCode, controlArrow))
        .then(asynchronousKey(controlOptionArrow))
        .append(sessionShortcut(keyCode, controlOptionArrow))
        .expand([&poster = ports.poster, keyCode] { return desktopSwitch(keyCode, poster); })
        .pause(Seconds{0.090})
        .expand([ports, &logger, keyCode, viaMissionControl] {
            return triggerDesktopMoveViaAppleScript(ports, logger, keyCode) ? InputSequence{}
                                                                            : viaMissionControl();
        });
    return sequence;
}

bool ButtonMapper::triggerDesktopMoveViaAppleScript(const Ports& ports, Logger& logger, KeyCode keyCode) {
    const InlineText source("tell application \"System Events\"\n    key code ", keyCode,
                            " using control down\nend tell");
    const auto result = ports.scripts.run(source);
    if (result.status == ScriptResult::Status::failed)
        logger.warning(InlineText("AppleScript mover escritorio falló: ", result.error));
    return result.status == ScriptResult::Status::ran;
}

// Applications, folders, addresses

std::optional<std::string> ButtonMapper::findApp(std::string_view bundleID) const {
    auto path = ports_.workspace.applicationPath(bundleID);
    if (!path) logger_.warning(InlineText("App no encontrada: ", bundleID));
    return path;
}

void ButtonMapper::openApp(std::string_view bundleID) {
    if (const auto path = findApp(bundleID)) ports_.workspace.openApplication(*path);
}

void ButtonMapper::openFolder(const std::string& path) {
    const bool isThere = !path.empty() && ports_.workspace.exists(path);
    ports_.workspace.openFolder(isThere ? path : ports_.workspace.homeDirectory());
}

void ButtonMapper::openExploreAI() {
    ports_.workspace.openUrl(exploreAIAddress);
}

void ButtonMapper::revealHome() {
    ports_.workspace.reveal(ports_.workspace.homeDirectory());
}

void ButtonMapper::createNewNote(const does::Note& note) {
    const auto type = [ports = ports_, chord = chordOf(note.combination)] { simulateKey(ports, chord); };
    if (ports_.shortcuts.typesOnlyInFront) {
        if (const auto path = findApp(note.bundleID)) ports_.workspace.openInFront(*path, type);
        return;
    }
    openApp(note.bundleID);
    // The application needs a moment to take the focus.
    ports_.background.after(Seconds{0.25}, type);
}

void ButtonMapper::triggerDictation(const CustomShortcut& shortcut) {
    if (shortcut.isEmpty()) {
        logger_.warning("Dictado necesita un atajo configurado");
        return;
    }
    simulateKey(shortcut.keyCode, shortcut.modifiersRawValue);
}

void ButtonMapper::launchApp(const std::string& path) {
    if (path.empty()) return;
    ports_.workspace.openApplication(path);
    logger_.info(InlineText("Abriendo app: ", lastPathComponent(path)));
}

void ButtonMapper::showSmartButton() {
    ports_.mainQueue.async(lifetime_.whileAlive([this] {
        if (const auto menu = smartButtonMenu_.lock()) menu->show(profile_()->profile().smartButton);
    }));
}

}  // namespace trelvan
