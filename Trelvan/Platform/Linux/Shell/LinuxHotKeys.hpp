#pragma once

#include "Platform/HotKeyTable.hpp"
#include "Platform/Linux/Shell/DesktopShortcuts.hpp"
#include "Platform/RunLoop.hpp"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace trelvan {

/// The running desktop's own shortcut settings as the symbolic hot-key table; empty where no desktop is
/// known.
///
/// They are read when this is made and again when their files change: KDE's and XFCE's from the files, those
/// of GNOME, Cinnamon and MATE through the program gsettings, which knows the values in force and is not
/// waited for. Made and destroyed on the main thread.
class LinuxHotKeys : public HotKeyTable {
  public:
    /// Finds the key that types a keysym in the keyboard layout in use. Any thread.
    using KeyFor = std::function<std::optional<KeyChord>(unsigned long keysym)>;

    LinuxHotKeys(DesktopKind desktop, Timers& timers, KeyFor keyFor);
    LinuxHotKeys(const LinuxHotKeys&) = delete;
    LinuxHotKeys& operator=(const LinuxHotKeys&) = delete;
    ~LinuxHotKeys() override;

    [[nodiscard]] std::optional<HotKeyEntry> entry(int id) const override;

  private:
    struct Reading;

    void watch();
    void read();
    void readSettings();
    void take(ShortcutTable table);

    DesktopKind desktop_;
    Timers& timers_;
    KeyFor keyFor_;
    std::vector<std::string> files_;
    std::unique_ptr<Reading> reading_;
    mutable std::mutex mutex_;
    ShortcutTable table_;
};

/// The desktop's shortcuts, read now: waits for the program gsettings where that is asked. Main thread of a
/// program without a platform.
[[nodiscard]] ShortcutTable readShortcutsNow(DesktopKind desktop);

}  // namespace trelvan
