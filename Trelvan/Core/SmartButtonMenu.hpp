#pragma once

#include "Core/Model/SmartButton.hpp"

namespace trelvan {

/// What the Smart Button action opens. Main thread.
class SmartButtonMenu {
  public:
    virtual ~SmartButtonMenu() = default;

    /// Opens the menu at the pointer with the configuration's entries, in the place of one that is open.
    virtual void show(const SmartButtonConfiguration& configuration) = 0;
};

}  // namespace trelvan
