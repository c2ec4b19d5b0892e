#pragma once

#include "Platform/Linux/ActiveApplication.hpp"
#include "Platform/Screens.hpp"

#include <QObject>
#include <vector>

namespace trelvan {

/// Screens and own windows as Qt reports them, gathered when they change and not when they are asked for.
/// Main thread.
class LinuxScreens : public QObject, public Screens {
  public:
    explicit LinuxScreens(XEventPump& pump);
    ~LinuxScreens() override;

    [[nodiscard]] std::span<const Rect> frames() const override { return frames_; }
    [[nodiscard]] std::span<const OwnWindow> ownWindows() const override { return windows_; }
    [[nodiscard]] Point pointerLocation() const override;
    [[nodiscard]] std::string_view frontmostApplication() const override { return active_.name(); }

    /// Sees the program's own windows change.
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void watchScreens();
    void readScreens();
    void readWindows();

    XEventPump& pump_;
    ActiveApplication active_;
    std::vector<Rect> frames_;
    std::vector<OwnWindow> windows_;
    bool readPending_ = false;
};

}  // namespace trelvan
