#pragma once

#include "Core/Model/SmartButton.hpp"

namespace trelvan {

/// Shows the radial menu. Main thread.
class SmartButtonController {
  public:
    virtual ~SmartButtonController() = default;

    /// Opens the menu at the pointer with the configuration's entries.
    virtual void show(const SmartButtonConfiguration& configuration) = 0;
};

}  // namespace trelvan
