#pragma once

#include "Platform/Linux/X11/ModifierMap.hpp"
#include "Platform/Linux/X11/XEventPump.hpp"

#include <functional>

namespace trelvan {

/// The modifiers that are held, kept up to date by the server's own notices. Main thread.
class ModifierState : public XEventHandler {
  public:
    explicit ModifierState(XEventPump& pump);
    ~ModifierState() override;

    [[nodiscard]] EventFlags flags() const { return flags_; }
    /// The flags of the modifiers in an X event's state.
    [[nodiscard]] EventFlags flagsOf(unsigned modifiers) const { return map_.flags(modifiers); }

    void handle(_XEvent& event) override;

  private:
    void read();

    XEventPump& pump_;
    ModifierMap map_;
    unsigned modifiers_ = 0;
    EventFlags flags_ = 0;
};

}  // namespace trelvan
