#include "UI/TabBar.hpp"

#include "UI/Components/Buttons.hpp"
#include "UI/Components/Painting.hpp"
#include "UI/Symbols/SymbolCatalogue.hpp"

#include <QHBoxLayout>
#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

constexpr int tabHeight = 52;
constexpr int symbolSide = 20;
constexpr int symbolTop = 7;
constexpr int titleTop = 30;
constexpr int titleHeight = 16;
constexpr int titlePixels = 12;
constexpr int inset = 8;
constexpr int gap = 2;
constexpr int narrowTab = 44;

}  // namespace

class TabBar::Tab final : public ComponentButton {
  public:
    Tab(Look& look, SettingsTab which, QWidget* parent)
        : ComponentButton(look, tabTitle(which), std::string(iconName(which)), parent), tab(which) {
        setCheckable(true);
        setAutoExclusive(true);
        setFixedHeight(tabHeight);
        apply();
    }

    const SettingsTab tab;

    [[nodiscard]] QAccessible::Role accessibleRole() const override { return QAccessible::PageTab; }

    void setTitled(bool isTitled) {
        isTitled_ = isTitled;
        setToolTip(isTitled ? QString() : shownText());
        setFixedWidth(isTitled ? titledWidth() : narrowTab);
        update();
    }
    [[nodiscard]] int titledWidth() const {
        return qMax(narrowTab, fontMetrics().horizontalAdvance(shownText()) + 2 * inset);
    }

  protected:
    void apply() override {
        QFont font = fontOf(TypeRole::body);
        font.setPixelSize(titlePixels);
        setFont(font);
        ComponentButton::apply();
        setTitled(isTitled_);
    }

    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        const QColor color = isChecked() ? theme().accentText : theme().secondaryText;
        if (isChecked())
            drawBox(painter, rect(), radius::control, theme().card, theme().cardEdge);
        else if (isHovered())
            drawBox(painter, rect(), radius::control, theme().hover, QColor(Qt::transparent));
        const double top = isTitled_ ? symbolTop : (height() - symbolSide) / 2.0;
        symbols::draw(painter, symbol(), QRectF((width() - symbolSide) / 2.0, top, symbolSide, symbolSide),
                      color);
        if (isTitled_) {
            painter.setPen(isChecked() ? theme().accentText : theme().text);
            painter.drawText(QRect(0, titleTop, width(), titleHeight), Qt::AlignCenter, shownText());
        }
        if (isRinged()) drawFocusRing(painter, rect(), radius::control, theme());
    }

  private:
    bool isTitled_ = true;
};

TabBar::TabBar(Look& look, QWidget* parent) : QWidget(parent), look_(look) {
    row_ = new QHBoxLayout(this);
    row_->setContentsMargins(0, 0, 0, 0);
    row_->setSpacing(gap);
    row_->addStretch(1);
    row_->addStretch(1);
    setFixedHeight(tabHeight);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    follows_ = look_.follow([this] { fit(); });
}

void TabBar::setTabs(const std::vector<SettingsTab>& tabs) {
    if (tabs == tabs_) return;
    isShowing_ = true;
    std::vector<Tab*> kept;
    for (const SettingsTab tab : tabs) {
        const auto found = std::ranges::find(buttons_, tab, &Tab::tab);
        kept.push_back(found != buttons_.end() ? *found : nullptr);
        if (kept.back() != nullptr) continue;
        auto* made = new Tab(look_, tab, this);
        QObject::connect(made, &QPushButton::toggled, this, [this, made](bool isOn) {
            fit();
            if (isOn && !isShowing_ && onSelect) onSelect(made->tab);
        });
        kept.back() = made;
    }
    for (Tab* former : buttons_) {
        row_->removeWidget(former);
        if (std::ranges::find(kept, former) == kept.end()) former->deleteLater();
        if (std::ranges::find(kept, former) == kept.end()) former->hide();
    }
    buttons_ = kept;
    tabs_ = tabs;
    // Between the two stretches.
    int place = 1;
    for (Tab* tab : buttons_) {
        row_->insertWidget(place++, tab);
        tab->show();
    }
    for (std::size_t index = 1; index < buttons_.size(); ++index)
        setTabOrder(buttons_[index - 1], buttons_[index]);
    isShowing_ = false;
    fit();
}

void TabBar::select(SettingsTab tab) {
    isShowing_ = true;
    if (auto* found = button(tab)) found->setChecked(true);
    isShowing_ = false;
    fit();
}

ComponentButton* TabBar::button(SettingsTab tab) const {
    const auto found = std::ranges::find(buttons_, tab, &Tab::tab);
    return found != buttons_.end() ? *found : nullptr;
}

void TabBar::fit() {
    int needed = -gap;
    for (const Tab* tab : buttons_) needed += tab->titledWidth() + gap;
    showsTitles_ = needed <= width();
    for (Tab* tab : buttons_) tab->setTitled(showsTitles_ || tab->isChecked());
}

void TabBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fit();
}

}  // namespace trelvan
