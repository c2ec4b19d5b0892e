#pragma once

#include "Platform/ScriptRunner.hpp"
#include "Platform/SystemViews.hpp"

namespace trelvan {

/// Understands the one script that has a meaning on Linux, the move between desktops; there is no script
/// language to run any other. Any thread.
class DesktopMoveScript : public ScriptRunner {
  public:
    explicit DesktopMoveScript(SystemViews& views) : views_(views) {}

    [[nodiscard]] ScriptResult run(std::string_view source) override;

  private:
    SystemViews& views_;
};

}  // namespace trelvan
