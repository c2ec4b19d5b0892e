#pragma once

#include "Core/ActionDescription.hpp"
#include "Core/MappingResolution.hpp"
#include "Core/Model/AppLanguage.hpp"
#include "Core/ProfileManager.hpp"
#include "Platform/ActionShortcuts.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/Screens.hpp"
#include "Utilities/Published.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace trelvan {

/// Performs a function once, two seconds after it was asked for, so that the pointer and the focus can be put
/// where it matters. Main thread.
class FunctionTrial {
  public:
    static constexpr Seconds delay{2.0};

    /// Performs a function now; false where that is not possible.
    using Perform = std::function<bool(const ButtonMapping& mapping, FunctionSlot slot)>;
    struct Services {
        ProfileManager& profiles;
        Timers& timers;
        MainQueue& mainQueue;
        const Screens& screens;
        const HotKeyTable& hotKeys;
        const ActionShortcuts& shortcuts;
        Perform perform;
    };
    struct State {
        Uuid mapping = {};
        FunctionSlot slot = FunctionSlot::primary;
        /// 0 once it is done.
        int secondsLeft = 0;
        /// What was performed, as it was then.
        std::optional<ButtonMapping> performed = {};
        /// What a terminal in front was sent instead of the usual combination.
        const TerminalShortcuts* terminal = nullptr;
        /// The session could not be used.
        bool failed = false;
    };

    explicit FunctionTrial(Services services);
    FunctionTrial(const FunctionTrial&) = delete;
    FunctionTrial& operator=(const FunctionTrial&) = delete;

    /// The trial that runs or the last one; none before the first and after a cancellation.
    Published<std::optional<State>> state;
    [[nodiscard]] bool isCountingDown() const;

    /// Starts the countdown; the same function again, while it counts, cancels it.
    void toggle(const Uuid& mapping, FunctionSlot slot);
    void cancel();

    /// What is said of the state: the countdown, then in a sentence what was sent.
    [[nodiscard]] std::string sentence(AppLanguage language) const;

  private:
    void countDown();
    void performNow();

    Services services_;
    std::unique_ptr<Timers::Timer> timer_;
    std::unique_ptr<MainQueue::CoalescedTask> performTask_;
};

}  // namespace trelvan
