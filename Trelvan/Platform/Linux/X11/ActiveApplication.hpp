#pragma once

#include "Platform/Linux/X11/RootProperties.hpp"
#include "Platform/Linux/X11/XEventPump.hpp"

#include <string>
#include <string_view>

namespace trelvan {

/// The class of the application whose window is active, kept up to date. Main thread.
class ActiveApplication : public XEventHandler {
  public:
    explicit ActiveApplication(XEventPump& pump);
    ~ActiveApplication() override;

    [[nodiscard]] std::string_view name() const { return name_; }

    void handle(_XEvent& event) override;

  private:
    void read();

    XEventPump& pump_;
    RootProperties properties_;
    unsigned long activeWindowAtom_;
    std::string name_;
};

}  // namespace trelvan
