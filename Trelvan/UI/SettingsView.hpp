#pragma once

#include "UI/Components/Look.hpp"
#include "UI/Models/EscapeChain.hpp"
#include "UI/Models/SettingsTab.hpp"
#include "UI/Panels/PanelHost.hpp"

#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QScrollArea;
class QStackedWidget;
class QVBoxLayout;

namespace trelvan {

class Badge;
class Banner;
class IconButton;
class Label;
class ProfileBar;
class TabBar;
class Toast;

/// What of the view outlives its content, which is made anew after it was given back.
struct SettingsViewState {
    SettingsTab selectedTab = firstTab;
    bool isPinned = false;
};

/// The settings window's content: header with the profile bar, banner, tabs, the chosen tab's panel, toast.
/// It looks after the frame of whichever window it is in. Main thread.
class SettingsView final : public QWidget, public PanelHost {
  public:
    using Tab = SettingsTab;

    static constexpr const char* windowAutosaveName = "TrelvanSettingsWindowFrame";
    /// Between the tabs and the sections below them, in points.
    static constexpr double tabSectionSpacing = 8.0;

    /// `state` outlives the view. A window of its own can be pinned.
    SettingsView(const SettingsServices& services, SettingsViewState& state, PanelFactories panels,
                 bool canBePinned, QWidget* parent = nullptr);
    ~SettingsView() override;

    [[nodiscard]] Tab selectedTab() const { return state_.selectedTab; }
    [[nodiscard]] std::vector<Tab> availableTabs() const;
    [[nodiscard]] bool isEnglish() const { return look_.language() == AppLanguage::english; }
    [[nodiscard]] std::string appVersion() const;
    /// Whether something wants the window to stay open when another one is activated.
    [[nodiscard]] bool isHeldOpen() const { return state_.isPinned || holds_ > 0; }

    /// Gives the window its smallest size and the size it was left with, and begins to remember what the user
    /// makes of it. Once each time it is shown.
    void configureWindowResizing();
    void removeWindowResizeObserver() { isObservingResize_ = false; }
    /// Shows the theme that is set.
    void applyThemeAppearance();
    /// Closes what lies over the content, and tells the panels that the window is closed.
    void windowClosed();

    // PanelHost
    [[nodiscard]] Look& look() override { return look_; }
    [[nodiscard]] const SettingsServices& services() const override { return services_; }
    void tell(UiText text, UiText action = {}, std::function<void()> onAction = {}) override;
    Sheet& ask(Sheet::Content content) override;
    void openMenu(QWidget* anchor, UiText name, std::vector<Popover::Item> items) override;
    void selectTab(SettingsTab tab) override;
    [[nodiscard]] Subscription keepOpen() override;
    [[nodiscard]] Subscription onEscape(EscapeLevel level, std::function<void()> handler) override;
    [[nodiscard]] Subscription onClose(std::function<void()> handler) override;

    // For tests
    [[nodiscard]] TabBar& tabBar() { return *tabs_; }
    [[nodiscard]] ProfileBar& profileBar() { return *profileBar_; }
    [[nodiscard]] Banner& accessibilityBanner() { return *banner_; }
    [[nodiscard]] Toast& toast() { return *toast_; }
    /// The open sheet and the open menu; null for none.
    [[nodiscard]] Sheet* sheet() const { return sheet_; }
    [[nodiscard]] Popover* menu() const { return menu_; }

    bool eventFilter(QObject* object, QEvent* event) override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void build(bool canBePinned);
    void addHeader(QVBoxLayout& column, bool canBePinned);
    void addBanner(QVBoxLayout& column);
    void addPages(QVBoxLayout& column);
    void observe();
    void refresh();
    void refreshState();
    void showPage();
    [[nodiscard]] QWidget* makePage(SettingsTab tab);
    void openAccessibilitySettings();
    void rememberSize();
    void setPinned(bool isPinned);
    bool handleShortcut(const QKeyEvent& event);

    SettingsServices services_;
    SettingsViewState& state_;
    PanelFactories panels_;
    Look look_;
    EscapeChain escapes_;
    Published<bool> closed_{false};

    Label* title_ = nullptr;
    Badge* monitorState_ = nullptr;
    ProfileBar* profileBar_ = nullptr;
    IconButton* pin_ = nullptr;
    Banner* banner_ = nullptr;
    TabBar* tabs_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    Toast* toast_ = nullptr;
    QPointer<Sheet> sheet_;
    QPointer<Popover> menu_;
    std::map<SettingsTab, QWidget*> pageOf_;

    /// How many want the window to stay open; shared with their subscriptions.
    std::shared_ptr<int> heldOpen_ = std::make_shared<int>(0);
    int& holds_ = *heldOpen_;
    bool isObservingResize_ = false;
    bool isConfigured_ = false;
    /// The size given to the window; other sizes are the user's.
    std::optional<QSize> givenSize_;
    bool isApplyingTheme_ = false;
    std::unique_ptr<MainQueue::CoalescedTask> refreshTask_;
    std::vector<Subscription> subscriptions_;
    Subscription sheetEscape_;
    Subscription sheetHold_;
    Subscription menuEscape_;
};

}  // namespace trelvan
