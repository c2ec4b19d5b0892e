#pragma once

#include "Platform/Linux/X11/XEventPump.hpp"
#include "Platform/RunLoop.hpp"

#include <functional>
#include <memory>
#include <vector>

namespace trelvan {

/// Sees by what X shows that the screen is locked, for lockers that tell nobody (i3lock, slock, xsecurelock,
/// the classic xlock). Main thread.
///
/// The rule: a window that no window manager handles covers the whole X screen, nothing of another client is
/// seen above it, and another client holds the keyboard. A window of the window manager, or of a client that
/// also has ordinary windows (a game in its own kind of full screen), is no locker; neither are the server's
/// window for compositing and this program's own. A menu, a drag or a message on the screen covers too
/// little, a full-screen window of the window manager's is managed, a wallpaper lies below whatever holds the
/// keyboard. A tool that covers the screen and takes the keyboard to select a part of it looks the same, and
/// is treated as a locker while it does: keys that were sent meanwhile would reach only it. XScreenSaver,
/// whose windows may each cover one monitor, says on the root window that it is on, which counts while the
/// keyboard is held.
///
/// Once seen, a locker counts until its window goes or the keyboard is free: a notification may come in front
/// of it for a moment.
///
/// Whether the keyboard is held is asked by a grab onto a window that is not on the screen: the server
/// answers "already grabbed" where somebody has it and refuses otherwise, so nothing is ever taken from a
/// locker that is about to grab. It is asked only while a window as above is there: when that or the focus
/// changes, and a few times in the seconds after.
class LockerWindow final : public XEventHandler {
  public:
    /// `changed` is called each time `isLocked` has changed. The connection is this object's alone: it hears
    /// of every window that comes and goes, which nobody else needs to.
    LockerWindow(std::unique_ptr<XConnection> connection, Timers& timers, std::function<void()> changed);
    LockerWindow(const LockerWindow&) = delete;
    LockerWindow& operator=(const LockerWindow&) = delete;
    ~LockerWindow() override;

    [[nodiscard]] bool isLocked() const { return locker_ != 0 || saverLocks_; }

    void handle(_XEvent& event) override;

  private:
    void readWindows();
    void readSaver();
    /// Whether the event, which tells of a window's place and size, may concern a locker.
    bool noteSize(const _XEvent& event);
    void consider(unsigned long window);
    void forget(unsigned long window);
    /// Looks now, and again a little later while there is a window that may become a locker's.
    void look();
    void lookAgain(std::size_t time);
    void decide();
    [[nodiscard]] bool mayBecomeLocked() const { return (!covering_.empty() || isSaverOn_) && !isLocked(); }
    [[nodiscard]] bool isCovering(unsigned long window) const;
    /// Whether it is the server's or the window manager's.
    [[nodiscard]] bool isManagers(unsigned long window) const;
    [[nodiscard]] bool hasManagedWindows(unsigned long client) const;
    [[nodiscard]] bool isOnTop(unsigned long window) const;
    [[nodiscard]] bool isKeyboardHeld() const;
    [[nodiscard]] unsigned long clientOf(unsigned long window) const { return window & ~idMask_; }

    std::unique_ptr<XConnection> connection_;
    Timers& timers_;
    std::function<void()> changed_;
    std::unique_ptr<XEventPump> pump_;
    /// The bits of an identifier that a client chooses; the others say whose it is.
    unsigned long idMask_;
    int width_ = 0;
    int height_ = 0;
    /// Never on the screen.
    unsigned long probe_ = 0;
    /// Windows that no window manager handles, on the screen, and as large as it.
    std::vector<unsigned long> covering_;
    /// 0: none.
    unsigned long locker_ = 0;
    /// Whether XScreenSaver says on the root window that it covers the screen, and whether it holds the
    /// keyboard too.
    bool isSaverOn_ = false;
    bool saverLocks_ = false;
    bool wasLocked_ = false;
    std::unique_ptr<Timers::Timer> again_;
};

}  // namespace trelvan
