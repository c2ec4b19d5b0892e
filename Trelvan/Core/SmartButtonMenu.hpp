#pragma once

#include "Core/Model/SmartButton.hpp"

namespace trelvan {

/// What the Smart Button action opens. Main thread.
class SmartButtonMenu {
  public:
    virtual ~SmartButtonMenu() = default;

    /// The button was pressed: opens the menu at the pointer with the configuration's entries, or closes the
    /// one that is open.
    virtual void toggle(const SmartButtonConfiguration& configuration) = 0;
};

}  // namespace trelvan
