#pragma once

#include "Platform/EventPoster.hpp"
#include "Platform/RunLoop.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace trelvan {

/// Key events and the pauses between them, as a value: built anywhere, performed on the background queue.
class InputSequence {
  public:
    /// Adds a key event, made when its turn comes; one that cannot be made is left out.
    InputSequence& key(EventSourceState source, KeyCode keyCode, bool down, EventFlags flags, TapLocation at);
    /// Adds a key event that is made already.
    InputSequence& key(KeyEvent event, TapLocation at);
    InputSequence& pause(Seconds length);
    InputSequence& then(std::function<void()> job);
    /// Adds all the steps of another sequence.
    InputSequence& append(InputSequence other);
    /// Adds a sequence that is put together only when its turn comes.
    InputSequence& expand(std::function<InputSequence()> make);

    /// Performs the steps, the first ones before it returns; each pause lets go of the thread. The queue and
    /// the poster must outlive the sequence.
    static void perform(InputSequence sequence, BackgroundQueue& queue, EventPoster& poster);

  private:
    struct Key {
        EventSourceState source;
        KeyCode keyCode;
        bool down;
        EventFlags flags;
        TapLocation at;
    };
    struct MadeKey {
        KeyEvent event;
        TapLocation at;
    };
    struct Pause {
        Seconds length;
    };
    struct Then {
        std::function<void()> job;
    };
    struct Expand {
        std::function<InputSequence()> make;
    };
    using Step = std::variant<Key, MadeKey, Pause, Then, Expand>;
    class Run;

    std::vector<Step> steps_;
};

/// A whole shortcut with its modifier keys pressed around the key, at the HID tap. Arrow keys get the
/// numeric-pad flag that real ones carry.
[[nodiscard]] InputSequence keyWithModifiers(KeyCode keyCode, EventFlags flags);

/// Key down and up at the session tap, without modifier keys.
[[nodiscard]] InputSequence sessionShortcut(KeyCode keyCode, EventFlags flags);

/// The key with Control held, at each of the three tap levels; empty when one of its events cannot be made.
[[nodiscard]] InputSequence desktopSwitch(KeyCode keyCode, EventPoster& poster);

}  // namespace trelvan
