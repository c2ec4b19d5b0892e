#pragma once

#include "Platform/Linux/Guard/Guard.hpp"

#include <QObject>

class QWindow;

namespace trelvan {

/// Enters the program's windows that no window manager knows into the held page while they are shown: the
/// radial menu over a whole screen, and the toolkit's pop-ups, such as the menu of the item in the tray,
/// which grab keyboard and pointer. The guard takes them away together with the devices. Main thread, with a
/// Qt application.
class CoveringWindows final : public QObject {
  public:
    explicit CoveringWindows(Guard& guard);

    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void note(QWindow& window, bool isShown);

    Guard& guard_;
};

}  // namespace trelvan
