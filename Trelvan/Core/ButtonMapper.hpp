#pragma once

#include "Core/InputSequence.hpp"
#include "Core/MappingResolution.hpp"
#include "Core/Model/ActionCatalogue.hpp"
#include "Core/Model/ProfileSnapshot.hpp"
#include "Core/SmartButtonMenu.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/EventPoster.hpp"
#include "Platform/HotKeyTable.hpp"
#include "Platform/InputState.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/Screens.hpp"
#include "Platform/ScriptRunner.hpp"
#include "Platform/SessionState.hpp"
#include "Platform/SystemViews.hpp"
#include "Platform/Workspace.hpp"
#include "Utilities/LifetimeToken.hpp"
#include "Utilities/Logger.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace trelvan {

/// Turns one press of a mapped button into one action.
///
/// `execute` runs on the main thread inside the tap callback and only starts the action; all key sequences
/// with their pauses run on the background queue. What is still to be typed when the session is locked is not
/// typed to whoever locked it; a key sequence that has begun goes on to its end. The button handler owns the
/// mapper; what is put into the background queue refers to the ports alone.
class ButtonMapper {
  public:
    /// Tells the active profile at the moment it is asked; it is asked for each press.
    using ProfileProvider = std::function<std::shared_ptr<const ProfileSnapshot>()>;

    struct Ports {
        InputState& input;
        EventPoster& poster;
        BackgroundQueue& background;
        MainQueue& mainQueue;
        Screens& screens;
        Workspace& workspace;
        HotKeyTable& hotKeys;
        SystemViews& views;
        ScriptRunner& scripts;
        const ActionShortcuts& shortcuts;
        const SessionState& session;
    };

    /// The start page of a public AI chat service.
    static constexpr std::string_view exploreAIAddress = "https://duck.ai/";

    ButtonMapper(const Ports& ports, ProfileProvider profile, std::weak_ptr<SmartButtonMenu> smartButtonMenu,
                 Logger& logger);

    /// Whether the press was handled, so that the event is to be swallowed.
    bool execute(std::int64_t buttonNumber, EventFlags eventFlags);
    /// Performs one function without a press, as the press that fires it would. False, and nothing happens,
    /// while the session cannot be used.
    bool perform(const ButtonMapping& mapping, FunctionSlot slot);

  private:
    /// The catalogue, whose rows run these operations.
    friend struct ActionRows;

    bool executeScroll(const ProfileSnapshot& profile, std::span<const std::uint32_t> group,
                       EventFlags flags);
    bool executeAlternate(const ButtonMapping& mapping, EventFlags flags);
    void performAction(ButtonAction action, const ButtonMapping& mapping, FunctionSlot slot);

    // What takes the ports as an argument runs on any thread, whether or not the mapper is still there.

    static void simulateKey(const Ports& ports, KeyCode keyCode, EventFlags flags);
    static void simulateKey(const Ports& ports, KeyChord chord);
    void simulateKey(KeyCode keyCode, EventFlags flags) const { simulateKey(ports_, keyCode, flags); }
    void simulateKey(KeyChord chord) const { simulateKey(ports_, chord); }
    [[nodiscard]] KeyChord chordOf(const Combination& combination) const;
    void sendKeys(ButtonAction action, const does::Keys& keys);
    void sendToTerminal(ButtonAction action, TerminalUse use, const TerminalShortcuts& terminal);
    void sendTool(const does::Tool& tool);
    void sendRecorded(const CustomShortcut& shortcut);
    void sendMediaKey(MediaKey mediaKey);
    void simulateMouseClick(std::int64_t button);

    [[nodiscard]] static std::optional<KeyChord> resolveFirst(const Ports& ports, std::span<const int> ids);
    /// False when none of the hot keys resolves.
    static bool pressFirst(const Ports& ports, std::span<const int> ids);
    void triggerSystemHotKey(ButtonAction action, const std::function<void()>& fallback);
    void triggerMissionControl();
    void triggerAppExpose();
    void triggerLaunchpad();
    void triggerShowDesktop();
    void triggerMoveDesktop(KeyCode keyCode);
    static void moveDesktop(const Ports& ports, Logger& logger, KeyCode keyCode);
    [[nodiscard]] static InputSequence desktopMoveCascade(const Ports& ports, Logger& logger,
                                                          KeyCode keyCode);
    static bool triggerDesktopMoveViaAppleScript(const Ports& ports, Logger& logger, KeyCode keyCode);

    void openMissionControlApp();
    void openLaunchpadDirectly();
    /// Where the application is; none when it is nowhere, which the log says then.
    [[nodiscard]] std::optional<std::string> findApp(std::string_view bundleID) const;
    void openApp(std::string_view bundleID);
    void openFolder(const std::string& path);
    void openExploreAI();
    void revealHome();
    void createNewNote(const does::Note& note);
    void triggerDictation(const CustomShortcut& shortcut);
    void launchApp(const std::string& path);
    void showSmartButton();

    Ports ports_;
    ProfileProvider profile_;
    std::weak_ptr<SmartButtonMenu> smartButtonMenu_;
    Logger& logger_;
    /// Last, for what was put into the main queue.
    LifetimeToken lifetime_;
};

}  // namespace trelvan
