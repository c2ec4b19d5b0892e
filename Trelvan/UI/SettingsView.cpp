#include "UI/SettingsView.hpp"

#include "UI/Components/Banner.hpp"
#include "UI/Components/EmptyState.hpp"
#include "UI/Components/SymbolIcon.hpp"
#include "UI/Components/Tags.hpp"
#include "UI/Components/Toast.hpp"
#include "UI/Models/MenuBarModel.hpp"
#include "UI/ProfileBar.hpp"
#include "UI/TabBar.hpp"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QScrollArea>
#include <QStackedWidget>
#include <algorithm>
#include <ctime>
#include <utility>

namespace trelvan {

namespace {

constexpr TextPair monitorActive{"Monitor active", "Monitor activo"};
constexpr TextPair monitorStopped{"Monitor stopped", "Monitor detenido"};
constexpr TextPair missingPermission{"Accessibility permission is missing", "Falta permiso de Accesibilidad"};
constexpr TextPair openSettings{"Open settings", "Abrir ajustes"};
constexpr TextPair pinName{"Keep this window open", "Mantener abierta esta ventana"};
constexpr TextPair missingPage{
    "This page is not part of this version yet. Its settings can be changed in the settings file.",
    "Esta página aún no forma parte de esta versión. Sus ajustes se pueden cambiar en el archivo de "
    "ajustes."};

constexpr int logoSide = 26;

/// A tab's page: one column in the middle, which scrolls.
class Page final : public QScrollArea {
  public:
    explicit Page(std::unique_ptr<QWidget> panel) {
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setFocusPolicy(Qt::NoFocus);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        viewport()->setAutoFillBackground(false);
        auto* content = new QWidget;
        content->setAutoFillBackground(false);
        auto* row = new QHBoxLayout(content);
        row->setContentsMargins(space::large, 0, space::large, space::large);
        panel->setMaximumWidth(space::columnWidth);
        row->addStretch(1);
        // The column takes what there is before the stretches do.
        row->addWidget(panel.release(), 1000);
        row->addStretch(1);
        setWidget(content);
        content->setAutoFillBackground(false);
    }
};

/// A local time of day, "14:05".
QString timeOfDay(std::chrono::system_clock::time_point moment) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
    char text[8]{};
    const std::tm* local = std::localtime(&seconds);
    if (local != nullptr) std::strftime(text, sizeof text, "%H:%M", local);
    return QString::fromLatin1(text);
}

}  // namespace

SettingsView::SettingsView(const SettingsServices& services, SettingsViewState& state, PanelFactories panels,
                           bool canBePinned, QWidget* parent)
    : QWidget(parent), services_(services), state_(state), panels_(std::move(panels)) {
    applyThemeAppearance();
    build(canBePinned);
    observe();
    refresh();
}

SettingsView::~SettingsView() {
    // Before the look that they follow.
    qDeleteAll(findChildren<QWidget*>(Qt::FindDirectChildrenOnly));
}

// The parts

void SettingsView::build(bool canBePinned) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    addHeader(*column, canBePinned);
    addBanner(*column);
    addPages(*column);
    auto* foot = new QHBoxLayout;
    foot->setContentsMargins(space::large, 0, space::large, space::medium);
    toast_ = new Toast(look_, services_.timers);
    toast_->setMaximumWidth(space::columnWidth);
    foot->addStretch(1);
    foot->addWidget(toast_, 1000);
    foot->addStretch(1);
    column->addLayout(foot);
}

void SettingsView::addHeader(QVBoxLayout& column, bool canBePinned) {
    auto* header = new QHBoxLayout;
    header->setContentsMargins(space::large, space::medium, space::medium, space::small);
    header->setSpacing(space::small);
    header->addWidget(new SymbolIcon(look_, "computermouse.fill", logoSide, ColorRole::accent));
    title_ = new Label(look_, UiText::same("Trelvan v" + qtText(appVersion())), TypeRole::header);
    header->addWidget(title_);
    header->addSpacing(space::large);
    monitorState_ = new Badge(look_, monitorStopped, "circle.fill");
    header->addWidget(monitorState_);
    header->addStretch(1);
    profileBar_ = new ProfileBar(*this);
    header->addWidget(profileBar_);
    if (canBePinned) {
        pin_ = new IconButton(look_, pinName, "pin");
        pin_->setCheckable(true);
        pin_->onClick = [this] { setPinned(pin_->isChecked()); };
        header->addWidget(pin_);
        setPinned(state_.isPinned);
    }
    column.addLayout(header);
}

void SettingsView::addBanner(QVBoxLayout& column) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(space::large, 0, space::large, 0);
    banner_ = new Banner(look_, "exclamationmark.shield.fill", missingPermission, openSettings,
                         [this] { openAccessibilitySettings(); });
    row->addWidget(banner_);
    column.addLayout(row);
}

void SettingsView::addPages(QVBoxLayout& column) {
    auto* row = new QHBoxLayout;
    row->setContentsMargins(space::large, space::small, space::large, 0);
    tabs_ = new TabBar(look_);
    tabs_->onSelect = [this](SettingsTab tab) { selectTab(tab); };
    row->addWidget(tabs_);
    column.addLayout(row);
    column.addSpacing(qRound(tabSectionSpacing));
    pages_ = new QStackedWidget;
    column.addWidget(pages_, 1);
}

QWidget* SettingsView::makePage(SettingsTab tab) {
    const auto factory = panels_.find(tab);
    std::unique_ptr<QWidget> panel =
        factory != panels_.end()
            ? factory->second(*this)
            : std::make_unique<EmptyState>(look_, std::string(iconName(tab)), missingPage);
    return new Page(std::move(panel));
}

// What it shows

void SettingsView::observe() {
    refreshTask_ = services_.mainQueue.makeCoalescedTask([this] { refresh(); });
    // Observers are told before the change.
    const auto soon = [this](const auto& /*newValue*/) { refreshTask_->request(); };
    subscriptions_.push_back(services_.monitor.isRunning.observe(soon));
    subscriptions_.push_back(services_.monitor.debugMode.observe(soon));
    subscriptions_.push_back(services_.monitorSwitch.isOff.observe(soon));
    subscriptions_.push_back(services_.profiles.profiles.observe(soon));
    subscriptions_.push_back(services_.profiles.activeProfileID.observe(soon));
    subscriptions_.push_back(services_.permissions.accessibilityGranted.observe([this](bool granted) {
        // Told every two seconds, whether it changes or not.
        if (granted == banner_->isVisibleTo(this)) refreshTask_->request();
    }));
    subscriptions_.push_back(services_.settings.observe([this] { applyThemeAppearance(); }));
    subscriptions_.push_back(services_.appearance.observe([this] { applyThemeAppearance(); }));
    subscriptions_.push_back(services_.smartButton.openSmartButtonSettings.observe(
        [this](std::uint64_t /*requests*/) { selectTab(SettingsTab::smartButton); }));
    qApp->installEventFilter(this);
}

void SettingsView::refresh() {
    banner_->setVisible(!services_.permissions.accessibilityGranted);
    profileBar_->refresh();
    refreshState();
    const auto tabs = availableTabs();
    tabs_->setTabs(tabs);
    if (std::ranges::find(tabs, state_.selectedTab) == tabs.end()) state_.selectedTab = firstTab;
    tabs_->select(state_.selectedTab);
    showPage();
}

void SettingsView::refreshState() {
    const bool isRunning = services_.monitor.isRunning;
    const auto pause = services_.monitorSwitch.pausedUntil();
    UiText text = isRunning ? UiText(monitorActive) : UiText(monitorStopped);
    if (!isRunning && pause)
        text = UiText("Paused until " + timeOfDay(*pause), "En pausa hasta las " + timeOfDay(*pause));
    monitorState_->setText(text);
    monitorState_->setColor(isRunning ? ColorRole::good : ColorRole::warning);
}

std::vector<SettingsTab> SettingsView::availableTabs() const {
    return trelvan::availableTabs(services_.monitor.debugMode);
}

std::string SettingsView::appVersion() const {
    return shortVersion(services_.bundle);
}

void SettingsView::selectTab(SettingsTab tab) {
    const auto tabs = availableTabs();
    if (std::ranges::find(tabs, tab) == tabs.end()) return;
    state_.selectedTab = tab;
    tabs_->select(tab);
    showPage();
}

void SettingsView::showPage() {
    QWidget*& page = pageOf_[state_.selectedTab];
    if (page == nullptr) {
        page = makePage(state_.selectedTab);
        pages_->addWidget(page);
    }
    pages_->setCurrentWidget(page);
}

void SettingsView::applyThemeAppearance() {
    if (std::exchange(isApplyingTheme_, true)) return;
    const AppTheme theme = services_.settings.theme();
    // First without a theme of ours, so that the desktop's own can be seen.
    if (theme == AppTheme::system) QApplication::setPalette(QPalette());
    const Theme colors = themeFor(rawValue(theme), services_.appearance);
    if (theme != AppTheme::system) QApplication::setPalette(colors.palette());
    setPalette(colors.palette());
    look_.set(colors, services_.settings.language(), movesWindows(services_.appearance));
    if (profileBar_ != nullptr) profileBar_->refresh();
    update();
    isApplyingTheme_ = false;
}

bool SettingsView::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && object == qApp) applyThemeAppearance();
    if (event->type() == QEvent::Resize && object == window() && isObservingResize_) rememberSize();
    return QWidget::eventFilter(object, event);
}

void SettingsView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    QLinearGradient ground(0, 0, 0, height());
    ground.setColorAt(0, look_.theme().windowTop);
    ground.setColorAt(1, look_.theme().windowBottom);
    painter.fillRect(rect(), ground);
}

void SettingsView::openAccessibilitySettings() {
    if (!services_.openAccessibilitySettings) return;
    if (auto advice = services_.openAccessibilitySettings()) tell(*std::move(advice));
}

// The window's frame

void SettingsView::configureWindowResizing() {
    QWidget* frame = window();
    const auto smallest = InterfaceSettings::smallestWindow;
    frame->setMinimumSize(qRound(smallest.width), qRound(smallest.height));
    if (frame->objectName() != windowAutosaveName) frame->setObjectName(windowAutosaveName);
    const WindowSize size = services_.settings.windowSize();
    givenSize_ = QSize(qRound(size.width), qRound(size.height));
    frame->resize(*givenSize_);
    isConfigured_ = true;
    isObservingResize_ = true;
}

void SettingsView::rememberSize() {
    QWidget* frame = window();
    // The size that the window was given above is no change of the user's.
    if (givenSize_ == frame->size()) return;
    givenSize_.reset();
    const QSize outer = frame->frameGeometry().size();
    services_.settings.setWindowSize(
        {static_cast<double>(outer.width()), static_cast<double>(outer.height())});
}

void SettingsView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!isConfigured_) configureWindowResizing();
    applyThemeAppearance();
}

void SettingsView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (window()->isVisible()) return;
    removeWindowResizeObserver();
    isConfigured_ = false;
    windowClosed();
}

void SettingsView::windowClosed() {
    if (menu_) menu_->close();
    if (sheet_) sheet_->close();
    closed_ = true;
}

void SettingsView::setPinned(bool isPinned) {
    state_.isPinned = isPinned;
    pin_->setChecked(isPinned);
    pin_->setSymbol(isPinned ? "pin.fill" : "pin");
}

// For the panels

void SettingsView::tell(UiText text, UiText action, std::function<void()> onAction) {
    toast_->tell(std::move(text), std::move(action), std::move(onAction));
}

Sheet& SettingsView::ask(Sheet::Content content) {
    if (sheet_) sheet_->close();
    auto* sheet = new Sheet(look_, this, std::move(content));
    sheet_ = sheet;
    sheetEscape_ = onEscape(EscapeLevel::sheet, [sheet] { sheet->close(); });
    sheetHold_ = keepOpen();
    sheet->onClosed = [this, sheet] {
        sheet_ = nullptr;
        sheetEscape_.reset();
        sheetHold_.reset();
        sheet->deleteLater();
    };
    sheet->open();
    return *sheet;
}

void SettingsView::openMenu(QWidget* anchor, UiText name, std::vector<Popover::Item> items) {
    if (menu_) menu_->close();
    auto* menu = new Popover(look_, this, anchor);
    menu_ = menu;
    menuEscape_ = onEscape(EscapeLevel::menu, [menu] { menu->close(); });
    menu->onClosed = [this, menu] {
        menu_ = nullptr;
        menuEscape_.reset();
        menu->deleteLater();
    };
    menu->open(std::move(name), std::move(items));
}

Subscription SettingsView::keepOpen() {
    ++*heldOpen_;
    return Subscription([held = heldOpen_] { --*held; });
}

Subscription SettingsView::onEscape(EscapeLevel level, std::function<void()> handler) {
    return escapes_.add(level, std::move(handler));
}

Subscription SettingsView::onClose(std::function<void()> handler) {
    return closed_.observe([handler = std::move(handler)](bool /*closed*/) { handler(); });
}

// Keys

void SettingsView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        if (!escapes_.handle()) window()->close();
        return;
    }
    if (!handleShortcut(*event)) QWidget::keyPressEvent(event);
}

bool SettingsView::handleShortcut(const QKeyEvent& event) {
    if (event.modifiers() != Qt::ControlModifier || escapes_.has(EscapeLevel::recorder)) return false;
    if (event.key() == Qt::Key_W) {
        window()->close();
        return true;
    }
    // Behind an open sheet nothing changes.
    if (sheet_) return false;
    const auto tabs = availableTabs();
    const int number = event.key() - Qt::Key_1;
    if (number >= 0 && number < static_cast<int>(tabs.size())) {
        selectTab(tabs[static_cast<std::size_t>(number)]);
        return true;
    }
    if (event.key() == Qt::Key_Z && toast_->isVisible()) {
        toast_->act();
        return true;
    }
    return false;
}

}  // namespace trelvan
