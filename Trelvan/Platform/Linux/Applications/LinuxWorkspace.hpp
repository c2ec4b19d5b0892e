#pragma once

#include "Platform/Linux/X11/FocusWait.hpp"
#include "Platform/RunLoop.hpp"
#include "Platform/Workspace.hpp"

namespace trelvan {

/// Applications by their desktop entries; folders and addresses through the desktop's own openers. Any
/// thread: what starts something is handed to the main thread.
class LinuxWorkspace : public Workspace {
  public:
    LinuxWorkspace(MainQueue& mainQueue, XEventPump& pump, Timers& timers)
        : mainQueue_(mainQueue), focus_(pump, timers) {}

    [[nodiscard]] std::string homeDirectory() const override;
    [[nodiscard]] bool exists(std::string_view path) const override;
    [[nodiscard]] std::optional<std::string> applicationPath(
        std::string_view bundleIdentifier) const override;
    [[nodiscard]] std::optional<std::string> applicationIcon(std::string_view path) const override;

    void openApplication(std::string_view path) override;
    void openInFront(std::string_view path, std::function<void()> inFront) override;
    void openFolder(std::string_view path) override;
    void openUrl(std::string_view url) override;
    void reveal(std::string_view folder) override;

  private:
    MainQueue& mainQueue_;
    FocusWait focus_;
    /// How many applications were started with an id.
    unsigned starts_ = 0;
};

}  // namespace trelvan
