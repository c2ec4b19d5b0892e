#pragma once

#include "Platform/EventPoster.hpp"
#include "Platform/EventTap.hpp"
#include "Platform/InputState.hpp"
#include "Platform/MenuInput.hpp"
#include "Platform/RunLoop.hpp"

#include <array>
#include <memory>
#include <vector>

namespace trelvan {

class SimulatedDesktop;

/// Modifiers as the world says; idle time since the last event that was sent or, where the world counts them,
/// posted.
class SimulatedInputState final : public InputState {
  public:
    explicit SimulatedInputState(SimulatedDesktop& desktop) : desktop_(desktop) {}

    [[nodiscard]] EventFlags flags(EventSourceState source) const override;
    [[nodiscard]] double secondsSinceLast(EventType type) const override;
    void note(EventType type);

  private:
    SimulatedDesktop& desktop_;
    /// By event number; types that were never seen count from the start.
    std::array<Seconds, 32> last_{};
};

/// The one tap of the simulated desktop. Copies that the program posts at its place come back through it one
/// turn of the main loop later, as they do on a real system.
class SimulatedTap final : public EventTap {
  public:
    explicit SimulatedTap(SimulatedDesktop& desktop);

    [[nodiscard]] bool create(std::uint64_t mask, Callback callback, void* userInfo) override;
    void enable(bool on) override { enabled_ = callback_ != nullptr && on; }
    [[nodiscard]] bool releasesFollowPresses() const override;
    void remove() override;

    /// `marked`: the event is a copy that the program posted and marked.
    TapAnswer send(TapEvent& event, bool marked = false);
    void disable(EventType why);
    void sendLater(const TapEvent& event);

    [[nodiscard]] bool exists() const { return callback_ != nullptr; }
    [[nodiscard]] bool enabled() const { return enabled_; }
    [[nodiscard]] int created() const { return created_; }

  private:
    void sendReturning();

    SimulatedDesktop& desktop_;
    std::uint64_t mask_ = 0;
    Callback callback_ = nullptr;
    void* userInfo_ = nullptr;
    bool enabled_ = false;
    int created_ = 0;
    std::vector<TapEvent> returning_;
    std::vector<TapEvent> sending_;
    std::unique_ptr<MainQueue::CoalescedTask> task_;
};

/// Tells the trace what is posted.
class SimulatedPoster final : public EventPoster {
  public:
    SimulatedPoster(SimulatedDesktop& desktop, SimulatedTap& tap, SimulatedInputState& input)
        : desktop_(desktop), tap_(tap), input_(input) {}

    [[nodiscard]] std::optional<KeyEvent> makeKey(EventSourceState source, KeyCode keyCode, bool down,
                                                  EventFlags flags) override;
    [[nodiscard]] std::optional<MouseEvent> makeMouse(EventType type, std::int64_t buttonNumber,
                                                      TopLeftPoint location) override;
    [[nodiscard]] std::optional<KeyChord> keyTyping(char32_t character) override;
    void post(const KeyEvent& event, TapLocation at) override;
    void post(const MouseEvent& event, TapLocation at) override;
    void post(const MediaKeyEvent& event, TapLocation at) override;
    [[nodiscard]] bool postCopy(const TapEvent& changed, TapLocation at) override;

  private:
    SimulatedDesktop& desktop_;
    SimulatedTap& tap_;
    SimulatedInputState& input_;
};

/// The input of an open menu, which the test gives it.
class SimulatedMenuInput final : public MenuInput {
  public:
    [[nodiscard]] std::unique_ptr<Session> open(std::uintptr_t window, std::size_t entries,
                                                Handlers handlers) override;

    /// A key of the menu on some keyboard; nothing where no menu is open or it has no such key.
    void keyDown(MenuKey key);
    void keyUp(MenuKey key);
    void clickElsewhere();

    [[nodiscard]] bool isOpen() const { return opened_ != nullptr; }

  private:
    class Opened;

    [[nodiscard]] bool has(MenuKey key) const;

    Opened* opened_ = nullptr;
};

}  // namespace trelvan
