#pragma once

#include <memory>

namespace trelvan {

/// Keeps the desktop from blanking, locking and sleeping. Main thread; returns at once.
class IdleInhibitor {
  public:
    /// An inhibition in force; letting go of it ends it. It ends with the process too, whatever the way.
    class Hold {
      public:
        virtual ~Hold() = default;
    };

    virtual ~IdleInhibitor() = default;

    /// Never null. A desktop without an inhibitor is no failure.
    [[nodiscard]] virtual std::unique_ptr<Hold> hold() = 0;
};

}  // namespace trelvan
