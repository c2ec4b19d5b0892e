#pragma once

#include "Core/ActionDescription.hpp"
#include "Core/EventMonitor.hpp"
#include "Core/ProfileManager.hpp"
#include "UI/Models/FunctionTrial.hpp"
#include "UI/Models/KeyRecorder.hpp"
#include "UI/Models/MappingRows.hpp"
#include "UI/Models/PointerSpeedSafety.hpp"
#include "UI/Models/PressLights.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace trelvan {

/// What the editor needs of the rest of the program.
struct ButtonsScrollServices {
    ProfileManager& profiles;
    EventMonitor& monitor;
    Clock& clock;
    Timers& timers;
    MainQueue& mainQueue;
    KeyMonitors& keyMonitors;
    const InputState& input;
    const Screens& screens;
    const HotKeyTable& hotKeys;
    const ActionShortcuts& shortcuts;
    Logger& logger;
    FunctionTrial::Perform perform;
    /// The modifiers that a keyboard can report here.
    EventFlags reportedModifiers = combinationModifiers;
};

/// The Buttons & Scroll editor without its widgets: the rows of the active profile's mappings and every way
/// to change them. Main thread. Lives as long as the panel is shown; what is under way ends with it.
class ButtonsScrollModel {
  public:
    explicit ButtonsScrollModel(ButtonsScrollServices services);
    ButtonsScrollModel(const ButtonsScrollModel&) = delete;
    ButtonsScrollModel& operator=(const ButtonsScrollModel&) = delete;
    ~ButtonsScrollModel();

    /// Told in the main queue when the rows are other ones.
    std::function<void()> onRows;
    /// Told when the row should be brought into view: it was added, detected, or brought back.
    std::function<void(const Uuid& mapping)> onReveal;

    [[nodiscard]] const ButtonsScrollServices& services() const { return services_; }

    PressLights lights;
    PointerSpeedSafety speed;
    FunctionTrial trial;
    ActiveRecorderID activeRecorderID;

    // The rows

    [[nodiscard]] ButtonsSubTab subTab() const { return subTab_; }
    void setSubTab(ButtonsSubTab part);
    /// Those of the part that is chosen, in the store's order.
    [[nodiscard]] std::vector<MappingRow> rows(AppLanguage language) const;
    /// The mappings of both parts, for the pills.
    [[nodiscard]] const std::vector<ButtonMapping>& mappings() const;
    [[nodiscard]] const ButtonMapping* find(const Uuid& mapping) const;
    void toggleExpanded(const Uuid& mapping);
    [[nodiscard]] bool isExpanded(const Uuid& mapping) const { return expanded_.contains(mapping); }
    /// The row of the button, or of the wheel's direction, comes into view.
    void reveal(const Uuid& mapping);

    // Rows added, removed and moved

    void addButton();
    void addScroll();
    void remove(const Uuid& mapping);
    void move(const Uuid& mapping, MoveDirection direction);
    /// To a place among the rows of its part, counted without it.
    void moveTo(const Uuid& mapping, std::size_t place);

    // One mapping

    void setAction(const Uuid& mapping, FunctionSlot slot, ButtonAction action);
    /// `place` is 0 or 1.
    void setTrigger(const Uuid& mapping, FunctionSlot slot, std::size_t place, ButtonModifierTrigger trigger);
    void addFunction(const Uuid& mapping);
    void removeFunction(const Uuid& mapping, FunctionSlot slot);
    /// None takes it away.
    void setShortcut(const Uuid& mapping, FunctionSlot slot, const std::optional<CustomShortcut>& shortcut);
    void setShortcutName(const Uuid& mapping, FunctionSlot slot, const std::string& name);
    void setDictationShortcut(const Uuid& mapping, const std::optional<CustomShortcut>& shortcut);
    void setApplication(const Uuid& mapping, const std::string& path);
    void setFolder(const Uuid& mapping, const std::string& path);

    // What was removed and can be brought back

    /// What the toast says; empty when there is nothing to undo.
    [[nodiscard]] std::string undoText(AppLanguage language) const;
    void undo();
    void forgetUndo();

    // Detecting

    /// Told when detecting begins or ends.
    Published<bool> isDetecting{false};
    /// Detecting needs a tap that runs.
    [[nodiscard]] bool canDetect() const { return services_.monitor.isRunning; }
    void detect();
    void cancelDetecting();

    // Why

    /// The steps of the last press of the open row's button; empty before there is one.
    [[nodiscard]] std::vector<std::string> why(const Uuid& mapping, AppLanguage language) const;

    /// Recording, counting down or detecting: nothing that the window may be closed on by a click elsewhere.
    [[nodiscard]] bool isBusy() const;
    /// The window closes: what is under way ends, an unconfirmed speed is taken back.
    void close();

  private:
    struct Undo {
        TrackballProfile before;
        Uuid mapping;
        std::string english;
        std::string spanish;
    };
    struct Press {
        std::int64_t buttonNumber = 0;
        EventFlags flags = 0;
        std::shared_ptr<const ProfileSnapshot> profile;
    };

    template <typename Change>
    void change(const Uuid& mapping, Change&& change);
    void goTo(std::int64_t buttonNumber);
    void detected(std::int64_t buttonNumber);
    void notePress(const ObservedPress& press);
    void rowsChanged() { rowsTask_->request(); }

    ButtonsScrollServices services_;
    /// What waits in the main queue asks this before it touches the model.
    std::shared_ptr<int> alive_ = std::make_shared<int>(0);
    ButtonsSubTab subTab_ = ButtonsSubTab::buttons;
    std::set<Uuid> expanded_;
    std::optional<Undo> undo_;
    std::optional<Press> lastPress_;
    std::unique_ptr<MainQueue::CoalescedTask> rowsTask_;
    Subscription profilesObserver_;
    Subscription activeObserver_;
    Subscription pressObserver_;
    Subscription runningObserver_;
};

}  // namespace trelvan
