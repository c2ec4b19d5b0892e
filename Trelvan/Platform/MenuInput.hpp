#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace trelvan {

/// A key that a menu understands, wherever the keyboard has it.
enum class MenuKey : std::uint8_t {
    entry1 = 1,
    entry2,
    entry3,
    entry4,
    entry5,
    entry6,
    entry7,
    entry8,
    left,
    right,
    up,
    down,
    next,
    choose,
    leave,
};

/// The entry that the key chooses, from 0; none for the other keys.
[[nodiscard]] constexpr std::optional<std::size_t> entryOf(MenuKey key) {
    if (key < MenuKey::entry1 || key > MenuKey::entry8) return std::nullopt;
    return static_cast<std::size_t>(key) - static_cast<std::size_t>(MenuKey::entry1);
}

/// Input for a menu whose window takes the focus from nobody. Main thread.
///
/// Only the menu's own keys come here, pressed without modifiers (the locks are none) on a keyboard; all
/// others, and those that the program posts, go to the application in front. Nothing is held that another
/// program could wait for: a screen locker gets keyboard and pointer while the menu is open.
class MenuInput {
  public:
    /// A handler may let go of its session; none is called after that.
    struct Handlers {
        /// A held key repeats itself by releases and presses, one right after the other.
        std::function<void(MenuKey key)> keyDown;
        std::function<void(MenuKey key)> keyUp;
        /// The menu is to close: a click beside its window, or the window was taken away because the program
        /// had hung.
        std::function<void()> leave;
    };

    /// An open menu; letting go of it gives the keys back, and has done so when the call returns.
    class Session {
      public:
        virtual ~Session() = default;
    };

    virtual ~MenuInput() = default;

    /// `window`: the system's identifier of the menu's window, which is shown. `entries`: how many of the
    /// entries' keys the menu has, 0 to 8. A menu that is open already gets nothing more.
    [[nodiscard]] virtual std::unique_ptr<Session> open(std::uintptr_t window, std::size_t entries,
                                                        Handlers handlers) = 0;
};

}  // namespace trelvan
