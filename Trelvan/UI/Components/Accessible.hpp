#pragma once

#include <QAccessible>

namespace trelvan {

/// What a component is to a screen reader, where its toolkit class says something else. A base of the class
/// that first gives the component its accessible name.
class AccessibleAs {
  public:
    AccessibleAs(const AccessibleAs&) = delete;
    AccessibleAs& operator=(const AccessibleAs&) = delete;

    [[nodiscard]] virtual QAccessible::Role accessibleRole() const = 0;

  protected:
    /// Has the toolkit ask components for their roles from now on.
    AccessibleAs();
    virtual ~AccessibleAs() = default;
};

}  // namespace trelvan
