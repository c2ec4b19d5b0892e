#pragma once

#include "Core/InputSequence.hpp"
#include "Core/MappingResolution.hpp"
#include "Core/Model/ProfileSnapshot.hpp"
#include "Core/SmartButtonMenu.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/EventPoster.hpp"
#include "Platform/HotKeyTable.hpp"
#include "Platform/InputState.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/Screens.hpp"
#include "Platform/ScriptRunner.hpp"
#include "Platform/SystemViews.hpp"
#include "Platform/Workspace.hpp"
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
/// with their pauses run on the background queue. Made with `std::make_shared`; the button handler owns it.
class ButtonMapper : public std::enable_shared_from_this<ButtonMapper> {
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
    };

    /// The start page of a public AI chat service.
    static constexpr std::string_view exploreAIAddress = "https://duck.ai/";

    ButtonMapper(const Ports& ports, ProfileProvider profile, std::weak_ptr<SmartButtonMenu> smartButtonMenu,
                 Logger& logger);

    /// Whether the press was handled, so that the event is to be swallowed.
    bool execute(std::int64_t buttonNumber, EventFlags eventFlags);

  private:
    bool executeScroll(const ProfileSnapshot& profile, std::span<const std::uint32_t> group,
                       EventFlags flags);
    bool executeAlternate(const ButtonMapping& mapping, EventFlags flags);
    void performAction(ButtonAction action, const ButtonMapping& mapping, FunctionSlot slot);

    void simulateKey(KeyCode keyCode, EventFlags flags);
    void simulateKey(KeyChord chord);
    void sendCatalogueShortcut(ButtonAction action, KeyChord chord);
    void sendMediaKey(MediaKey mediaKey);
    void simulateMouseClick(std::int64_t button);

    [[nodiscard]] std::optional<KeyChord> resolveFirst(std::span<const int> ids) const;
    /// False when none of the hot keys resolves.
    bool pressFirst(std::span<const int> ids);
    void triggerSystemHotKey(ButtonAction action, const std::function<void()>& fallback);
    void triggerMissionControl();
    void triggerAppExpose();
    void triggerLaunchpad();
    void triggerShowDesktop();
    void triggerMoveDesktop(KeyCode keyCode);
    [[nodiscard]] InputSequence desktopMoveCascade(KeyCode keyCode);
    bool triggerDesktopMoveViaAppleScript(KeyCode keyCode);

    void openMissionControlApp();
    void openLaunchpadDirectly();
    void openApp(std::string_view bundleID);
    void openFolder(const std::string& path);
    void openExploreAI();
    void createNewNote();
    void triggerDictation(const CustomShortcut& shortcut);
    void launchApp(const std::string& path);
    void toggleSmartButton();

    Ports ports_;
    ProfileProvider profile_;
    std::weak_ptr<SmartButtonMenu> smartButtonMenu_;
    Logger& logger_;
};

}  // namespace trelvan
