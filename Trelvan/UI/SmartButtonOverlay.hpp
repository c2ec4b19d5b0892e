#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/SmartButtonPanels.hpp"
#include "UI/RadialButtons.hpp"

#include <QPixmap>
#include <QWidget>
#include <functional>
#include <vector>

class QScreen;
class QVariantAnimation;

namespace trelvan {

/// The overlay of the radial menu: a window over a whole screen that takes the focus from nobody. It holds
/// the keyboard while it is shown, so that the menu can be used with keys all the same. Main thread.
class SmartButtonOverlay final : public QWidget {
  public:
    struct Look {
        RadialTheme theme;
        AppLanguage language = AppLanguage::english;
        /// Whether the menu fades in.
        bool isAnimated = true;
        /// Whether the window can be translucent; if not, it shows a picture of what it covers.
        bool isComposited = true;
        /// The icon of an entry; a null one for the drawn symbol.
        std::function<QIcon(const SmartButtonApp&)> icon;
    };

    /// Shows nothing yet. `layout` is in this window's points.
    SmartButtonOverlay(SmartButtonRadialView view, const RadialLayout& layout, QScreen* screen, Look look);
    ~SmartButtonOverlay() override;

    /// Puts the window over its screen, ahead of the others, and takes the keyboard.
    void appear();
    /// Takes the window away at once and gives the keyboard back; no function of the view is called after it.
    void vanish();

    [[nodiscard]] const std::vector<RadialEntryButton*>& entries() const { return entries_; }
    [[nodiscard]] const std::vector<RadialControl*>& controls() const { return controls_; }
    /// The entry that Return chooses; none before a key was used.
    [[nodiscard]] int currentEntry() const { return current_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    class Ring;

    void addEntries();
    void addControls();
    void fadeIn();
    void choose(std::size_t index);
    void setCurrent(int index);
    /// Calls a function of the view, which may take this window away.
    void call(const std::function<void()>& function);
    /// Gives the keyboard back and waits until the server has done so: what is typed next is for others.
    void giveKeyboardBack();
    [[nodiscard]] QString text(std::string_view english, std::string_view spanish) const;

    SmartButtonRadialView view_;
    RadialLayout layout_;
    Look look_;
    QPixmap behind_;
    Ring* ring_;
    std::vector<RadialEntryButton*> entries_;
    std::vector<RadialControl*> controls_;
    int current_ = -1;
    bool isPressed_ = false;
    bool isGone_ = false;
};

}  // namespace trelvan
