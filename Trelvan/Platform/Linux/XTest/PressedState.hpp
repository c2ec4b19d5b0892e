#pragma once

#include "Platform/Linux/XTest/SharedBits.hpp"
#include "Platform/Linux/XTest/SharedIds.hpp"

#include <atomic>
#include <cstdint>

namespace trelvan {

/// What is down through XTEST because of one sender: places of the XTEST pointer, and key codes.
struct Pressed {
    SharedBits buttons;
    SharedBits keys;
};

/// What the program would leave behind if it ended or hung at this moment.
///
/// Lies in memory that the program shares with its guard and in a file that outlives both, so that whoever
/// is left puts it right. A press is entered before it is sent and a release struck out after it was, so an
/// entry too many is possible and one too few is not. No pointers, no locks: a process may end anywhere.
struct PressedState {
    /// Changes with the layout: a page of another version is not read.
    static constexpr std::uint64_t currentVersion = 0x5452454C'0003U;

    std::atomic<std::uint64_t> version{currentVersion};
    Pressed byTap;
    Pressed byPoster;
    /// Keys that the user holds and that XTEST holds too; see `HeldModifiers`.
    SharedBits putBack;
    /// Places of the XTEST pointer that stand in for another button.
    SharedBits lent;
    /// The program's windows that no window manager knows: such a window over the screen, or a pop-up that
    /// grabs, stands between the user and everything else when the program hangs.
    SharedIds covering;
    /// A resource of the connection that has the menu's keys, 0 while it has none.
    std::atomic<std::uint32_t> menuKeys{0};
    /// The window that the device grabs are on, 0 when there are none.
    std::atomic<std::uint32_t> grabWindow{0};
    /// The guard's last question that the main loop has answered.
    std::atomic<std::uint32_t> answered{0};
    /// Counts the events that the main loop has handled; what a loop does that is only behind.
    std::atomic<std::uint32_t> handled{0};
    /// Not 0 once the guard took the devices away; the tap sets it back.
    std::atomic<std::uint32_t> freed{0};
};

/// A page's debts at one moment.
struct PendingReleases {
    CodeSet buttons;
    CodeSet keys;
    CodeSet lent;

    [[nodiscard]] bool any() const { return buttons.any() || keys.any() || lent.any(); }
};

[[nodiscard]] inline PendingReleases pendingReleasesIn(const PressedState& page) {
    return {.buttons = page.byTap.buttons.all() | page.byPoster.buttons.all(),
            .keys = page.byTap.keys.all() | page.byPoster.keys.all() | page.putBack.all(),
            .lent = page.lent.all()};
}

}  // namespace trelvan
