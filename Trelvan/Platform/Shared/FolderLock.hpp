#pragma once

#include "Platform/Shared/Descriptor.hpp"

#include <string>

namespace trelvan {

/// Keeps other writers of the same kind out of a folder for the length of a block. They are waited for a
/// moment only: who holds it longer was stopped in the middle. A folder that cannot be locked (some network
/// file systems) counts as free.
class FolderLock {
  public:
    explicit FolderLock(const std::string& folder);

    [[nodiscard]] bool isHeldByAnother() const { return heldByAnother_; }

  private:
    Descriptor folder_;
    bool heldByAnother_ = false;
};

}  // namespace trelvan
