#include "Core/InputSequence.hpp"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace trelvan {

namespace {

// What applications need between two events to see them as a person's.
constexpr Seconds modifierPause{0.0025};
constexpr Seconds keyPause{0.009};

struct ModifierKey {
    EventFlags mask;
    KeyCode keyCode;
};

/// The modifier keys pressed around a shortcut, in order; both sides, as some programs look at one only.
constexpr std::array<ModifierKey, 9> modifierKeys{{
    {flag::control, key::control},
    {flag::control, key::rightControl},
    {flag::option, key::option},
    {flag::option, key::rightOption},
    {flag::shift, key::shift},
    {flag::shift, key::rightShift},
    {flag::command, key::command},
    {flag::command, key::rightCommand},
    {flag::function, key::function},
}};

EventFlags withArrowFlag(KeyCode keyCode, EventFlags flags) {
    return keyCode >= key::leftArrow && keyCode <= key::upArrow ? flags | flag::numericPad : flags;
}

}  // namespace

InputSequence& InputSequence::key(EventSourceState source, KeyCode keyCode, bool down, EventFlags flags,
                                  TapLocation at) {
    steps_.emplace_back(Key{source, keyCode, down, flags, at});
    return *this;
}

InputSequence& InputSequence::key(KeyEvent event, TapLocation at) {
    steps_.emplace_back(MadeKey{std::move(event), at});
    return *this;
}

InputSequence& InputSequence::pause(Seconds length) {
    steps_.emplace_back(Pause{length});
    return *this;
}

InputSequence& InputSequence::then(std::function<void()> job) {
    steps_.emplace_back(Then{std::move(job)});
    return *this;
}

InputSequence& InputSequence::append(InputSequence other) {
    std::ranges::move(other.steps_, std::back_inserter(steps_));
    return *this;
}

InputSequence& InputSequence::expand(std::function<InputSequence()> make) {
    steps_.emplace_back(Expand{std::move(make)});
    return *this;
}

/// A sequence on its way; handed from one background job to the next.
class InputSequence::Run {
  public:
    Run(InputSequence sequence, BackgroundQueue& queue, EventPoster& poster)
        : steps_(std::move(sequence.steps_)), queue_(queue), poster_(poster) {}

    /// Performs steps up to the next pause, after which a background job goes on with the run.
    static void advance(const std::shared_ptr<Run>& run) {
        while (run->next_ < run->steps_.size()) {
            Step step = std::move(run->steps_[run->next_++]);
            if (const auto* pause = std::get_if<Pause>(&step)) {
                run->queue_.after(pause->length, [run] { advance(run); });
                return;
            }
            run->perform(step);
        }
    }

  private:
    void perform(const Step& step) {
        if (const auto* key = std::get_if<Key>(&step)) {
            if (const auto event = poster_.makeKey(key->source, key->keyCode, key->down, key->flags))
                poster_.post(*event, key->at);
        } else if (const auto* made = std::get_if<MadeKey>(&step)) {
            poster_.post(made->event, made->at);
        } else if (const auto* then = std::get_if<Then>(&step)) {
            then->job();
        } else if (const auto* expand = std::get_if<Expand>(&step)) {
            auto more = expand->make();
            steps_.insert(steps_.begin() + static_cast<std::ptrdiff_t>(next_),
                          std::make_move_iterator(more.steps_.begin()),
                          std::make_move_iterator(more.steps_.end()));
        }
    }

    std::vector<Step> steps_;
    std::size_t next_ = 0;
    BackgroundQueue& queue_;
    EventPoster& poster_;
};

void InputSequence::perform(InputSequence sequence, BackgroundQueue& queue, EventPoster& poster) {
    Run::advance(std::make_shared<Run>(std::move(sequence), queue, poster));
}

InputSequence keyWithModifiers(KeyCode keyCode, EventFlags flags) {
    const EventFlags all = withArrowFlag(keyCode, flags);
    const auto isHeld = [all](const ModifierKey& modifier) { return (all & modifier.mask) == modifier.mask; };
    constexpr auto source = EventSourceState::hidSystem;
    InputSequence sequence;
    for (const auto& modifier : modifierKeys) {
        if (isHeld(modifier))
            sequence.key(source, modifier.keyCode, true, all, TapLocation::hid).pause(modifierPause);
    }
    sequence.key(source, keyCode, true, all, TapLocation::hid)
        .pause(keyPause)
        .key(source, keyCode, false, all, TapLocation::hid);
    for (auto modifier = modifierKeys.rbegin(); modifier != modifierKeys.rend(); ++modifier) {
        if (isHeld(*modifier))
            sequence.pause(modifierPause).key(source, modifier->keyCode, false, 0, TapLocation::hid);
    }
    return sequence;
}

InputSequence sessionShortcut(KeyCode keyCode, EventFlags flags) {
    constexpr auto source = EventSourceState::combinedSession;
    InputSequence sequence;
    sequence.key(source, keyCode, true, flags, TapLocation::session)
        .pause(keyPause)
        .key(source, keyCode, false, flags, TapLocation::session);
    return sequence;
}

InputSequence desktopSwitch(KeyCode keyCode, EventPoster& poster) {
    constexpr auto source = EventSourceState::hidSystem;
    constexpr EventFlags controlArrow = flag::control | flag::numericPad;
    const auto controlDown = poster.makeKey(source, key::control, true, flag::control);
    const auto keyDown = poster.makeKey(source, keyCode, true, controlArrow);
    const auto keyUp = poster.makeKey(source, keyCode, false, controlArrow);
    const auto controlUp = poster.makeKey(source, key::control, false, 0);
    InputSequence sequence;
    if (!controlDown || !keyDown || !keyUp || !controlUp) return sequence;
    for (const auto at : {TapLocation::hid, TapLocation::session, TapLocation::annotatedSession}) {
        sequence.key(*controlDown, at)
            .pause(Seconds{0.004})
            .key(*keyDown, at)
            .pause(Seconds{0.012})
            .key(*keyUp, at)
            .pause(Seconds{0.004})
            .key(*controlUp, at)
            .pause(Seconds{0.006});
    }
    return sequence;
}

}  // namespace trelvan
