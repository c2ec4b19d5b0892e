#pragma once

#include "Platform/Linux/XTest/PressedStateFile.hpp"

#include <optional>

namespace trelvan {

/// The program's guard: a small process of its own, since a thread cannot run in a process that was stopped.
///
/// It asks the main loop twice a second, while devices are in use, whether it still runs, and takes the
/// devices, the windows over the screen and the menu's keys away from it when it does not answer within half
/// a second. When the program ends in whatever way it releases what the held page says. It holds no grab
/// itself, so that a guard that hangs hurts nobody; it never wakes while nothing moves, and ends with the
/// program.
///
/// Main thread.
class Guard {
  public:
    /// Claims a held page and starts the process. Before the first thread, X connection and Qt object of this
    /// process: the other one begins as its copy.
    Guard();
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    /// Lets the process go.
    ~Guard();

    [[nodiscard]] PressedState& page() { return file_.page(); }
    /// What programs that were killed together with their guards left behind.
    [[nodiscard]] const PendingReleases& leftOver() const { return file_.leftOver(); }
    /// Becomes readable when the process has ended; -1 when there is none.
    [[nodiscard]] int descriptor() const { return descriptor_; }
    /// The process has ended before the program.
    void noteEnd();
    /// Starts the process anew in the place of one that has ended, at any time; false when it cannot be.
    ///
    /// A copy of this process will not do any more: of its threads only one would be in it, with whatever the
    /// others had locked, and its connections would outlive this process in the server's eyes. So it is this
    /// program, executed again.
    [[nodiscard]] bool restart();
    /// Windows over the screen or the menu's keys have changed on the page.
    void wake() const;
    /// The server is gone, and all that was held with it.
    void forgetPage() { file_.remove(); }

    /// Where this program was executed as a guard: its whole life, and its exit status.
    [[nodiscard]] static std::optional<int> runIfAsked(int argc, char** argv);

  private:
    PressedStateFile file_;
    int process_ = -1;
    int descriptor_ = -1;
};

}  // namespace trelvan
