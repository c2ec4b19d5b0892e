#pragma once

#include "UI/Components/Look.hpp"
#include "UI/Models/SettingsTab.hpp"

#include <QWidget>
#include <functional>
#include <vector>

class QHBoxLayout;

namespace trelvan {

class ComponentButton;

/// The row of tabs: a symbol with its title below. Where not all titles fit, only the chosen tab keeps its
/// own; the others have it as their tooltip.
class TabBar final : public QWidget {
  public:
    explicit TabBar(Look& look, QWidget* parent = nullptr);

    /// Told of what the user chooses, not of `select`.
    std::function<void(SettingsTab tab)> onSelect;

    /// Shows these tabs in this order.
    void setTabs(const std::vector<SettingsTab>& tabs);
    void select(SettingsTab tab);
    [[nodiscard]] const std::vector<SettingsTab>& tabs() const { return tabs_; }
    [[nodiscard]] ComponentButton* button(SettingsTab tab) const;
    /// Whether all tabs show their titles.
    [[nodiscard]] bool showsTitles() const { return showsTitles_; }

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    class Tab;

    void fit();

    Look& look_;
    QHBoxLayout* row_;
    std::vector<SettingsTab> tabs_;
    std::vector<Tab*> buttons_;
    bool showsTitles_ = true;
    bool isShowing_ = false;
    Subscription follows_;
};

}  // namespace trelvan
