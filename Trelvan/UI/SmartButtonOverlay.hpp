#pragma once

#include "Core/Model/AppLanguage.hpp"
#include "Core/SmartButtonPanels.hpp"
#include "Platform/MenuInput.hpp"
#include "Platform/RunLoop.hpp"
#include "UI/RadialButtons.hpp"
#include "UI/RadialNavigation.hpp"

#include <QPixmap>
#include <QWidget>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QScreen;

namespace trelvan {

/// The overlay of the radial menu: a window over a whole screen that takes the focus from nobody and grabs
/// nothing. Its keys and the clicks beside it come from the platform. What a key or a button chooses happens
/// when it is released, so that neither its release nor its repetition reaches the application in front. Main
/// thread.
class SmartButtonOverlay final : public QWidget {
  public:
    struct Look {
        Timers& timers;
        MenuInput& input;
        RadialTheme theme;
        AppLanguage language = AppLanguage::english;
        /// Whether the menu fades in.
        bool isAnimated = true;
        /// Whether the window can be translucent; if not, it shows a picture of what it covers.
        bool isComposited = true;
        /// Whether what an entry opens is not there; none: everything is.
        std::function<bool(const SmartButtonApp& app)> isMissing = {};
        /// Brings the icon of an entry at a side in points and a ratio of pixels to points, a null one for
        /// the drawn symbol; at once or later.
        std::function<void(const SmartButtonApp& app, int side, qreal ratio,
                           std::function<void(QPixmap icon)> done)>
            loadIcon;
    };

    /// How long icons may hold up the first painting, or anything else after it, at a time.
    static constexpr std::chrono::milliseconds iconTimeout{10};

    /// After so long a key that was released stays so. The server repeats a held key by releases and presses,
    /// one right after the other.
    static constexpr Seconds releaseTime{0.025};

    /// Shows nothing yet. `layout` is in this window's points.
    SmartButtonOverlay(SmartButtonRadialView view, const RadialLayout& layout, QScreen* screen, Look look);
    ~SmartButtonOverlay() override;

    /// Puts the window over its screen, ahead of the others, and takes the menu's keys.
    void appear();
    /// Gives the keys back and takes the window away at once; no function of the view is called after it.
    void vanish();
    /// Whether it is in the middle of calling a function of the view, and so must not be deleted.
    [[nodiscard]] bool isCalling() const { return calls_ > 0; }

    [[nodiscard]] const std::vector<RadialEntryButton*>& entries() const { return entries_; }
    [[nodiscard]] const std::vector<RadialControl*>& controls() const { return controls_; }
    /// Entries and controls in the order in which Tab goes through them.
    [[nodiscard]] const std::vector<RadialButton*>& buttons() const { return buttons_; }
    /// The one of `buttons` that Return presses; none before a key was used.
    [[nodiscard]] std::optional<std::size_t> current() const { return current_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    class Ring;

    void addEntries();
    void addControls();
    void addButton(RadialButton* button);
    void loadIcons(std::size_t from);
    void fadeIn();
    void watchScreen(const QScreen* screen);
    void keyDown(MenuKey key);
    void keyUp(MenuKey key);
    /// The key that was held is up: does what it chooses.
    void finishKey();
    /// What the key chooses at its release; none when it is no key that chooses.
    [[nodiscard]] std::optional<std::size_t> buttonOf(MenuKey key) const;
    void moveBy(Arrow arrow);
    void stepOn();
    void setCurrent(std::optional<std::size_t> index);
    void choose(std::size_t entry);
    /// Calls a function of the view, which may take this window away.
    void call(const std::function<void()>& function);
    [[nodiscard]] QString text(std::string_view english, std::string_view spanish) const;

    SmartButtonRadialView view_;
    RadialLayout layout_;
    Look look_;
    QPixmap behind_;
    Ring* ring_;
    std::vector<RadialEntryButton*> entries_;
    std::vector<RadialControl*> controls_;
    std::vector<RadialButton*> buttons_;
    std::optional<std::size_t> current_;
    /// Has the menu's keys while it is shown.
    std::unique_ptr<MenuInput::Session> input_;
    /// The key that was pressed here and not yet released.
    std::optional<MenuKey> heldKey_;
    /// Runs from the held key's release until it counts.
    std::unique_ptr<Timers::Timer> released_;
    bool isPressed_ = false;
    bool isGone_ = false;
    int calls_ = 0;
};

}  // namespace trelvan
