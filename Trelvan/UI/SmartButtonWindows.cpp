#include "UI/SmartButtonWindows.hpp"

#include "Core/SettingsCatalogue.hpp"
#include "UI/Components/Theme.hpp"

#include <QApplication>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace trelvan {

namespace {

constexpr QSize editorSize{900, 960};
constexpr QSize smallestEditor{780, 860};

bool isDark(const UserDefaults& defaults, const Appearance& appearance) {
    return isDarkTheme(asText(defaults.object(setting::theme.key)).value_or(""), appearance);
}

class OverlayPanel final : public SmartButtonPanels::Panel {
  public:
    explicit OverlayPanel(std::unique_ptr<SmartButtonOverlay> overlay) : overlay_(std::move(overlay)) {}
    OverlayPanel(const OverlayPanel&) = delete;
    OverlayPanel& operator=(const OverlayPanel&) = delete;
    ~OverlayPanel() override {
        overlay_->vanish();
        // One of its own buttons may just be telling of a click.
        if (overlay_->isCalling()) overlay_.release()->deleteLater();
    }

  private:
    std::unique_ptr<SmartButtonOverlay> overlay_;
};

class EditorWindow final : public SmartButtonPanels::Editor {
  public:
    EditorWindow() {
        window_.setWindowTitle(QString::fromUtf8("Trelvan — Smart Button"));
        window_.setMinimumSize(smallestEditor);
        window_.resize(editorSize);
        window_.setLayout(new QVBoxLayout);
        window_.layout()->setContentsMargins(0, 0, 0, 0);
    }

    void setContent(std::unique_ptr<SmartButtonPanels::Content> content) override {
        while (const auto* former = window_.layout()->takeAt(0)) {
            delete former->widget();
            delete former;
        }
        auto* widget = dynamic_cast<SmartButtonWindows::WidgetContent*>(content.get());
        if (widget != nullptr && widget->widget) window_.layout()->addWidget(widget->widget.release());
    }

    void show() override {
        const QRect available = window_.screen()->availableGeometry();
        const QRect frame(QPoint(), window_.size());
        const QPoint middle = available.center() - frame.center();
        // On a screen smaller than the window the title bar stays in reach.
        window_.move(qMax(middle.x(), available.left()), qMax(middle.y(), available.top()));
        window_.show();
        window_.raise();
        window_.activateWindow();
    }

  private:
    QWidget window_;
};

}  // namespace

std::unique_ptr<SmartButtonPanels::Panel> SmartButtonWindows::showOverlay(SmartButtonRadialView view) {
    QScreen* screen = screenOf(view.screenFrame);
    if (screen == nullptr) return nullptr;
    // The frame may count pixels where the toolkit counts points.
    const double scale = view.screenFrame.width / screen->geometry().width();
    const BottomLeftPoint pointer{(view.pointerLocation.x - view.screenFrame.x) / scale,
                                  (view.pointerLocation.y - view.screenFrame.y) / scale};
    const BottomLeftRect overlayFrame{0, 0, view.screenFrame.width / scale, view.screenFrame.height / scale};
    const auto layout =
        RadialLayout::make(pointer, overlayFrame, view.apps.size(), view.radius, view.outerRingRadius);
    // Those of a menu that is gone.
    icons_.forget();
    auto overlay = std::make_unique<SmartButtonOverlay>(std::move(view), layout, screen, look());
    overlay->appear();
    return std::make_unique<OverlayPanel>(std::move(overlay));
}

QScreen* SmartButtonWindows::screenOf(const BottomLeftRect& frame) const {
    // The main screen comes first in the port's list, the others as the toolkit lists them.
    QList<QScreen*> screens = QGuiApplication::screens();
    QScreen* primary = QGuiApplication::primaryScreen();
    screens.removeOne(primary);
    if (primary != nullptr) screens.prepend(primary);
    const auto frames = ports_.screens.frames();
    const auto place = std::ranges::find(frames, frame) - frames.begin();
    return place < screens.size() ? screens[place] : primary;
}

SmartButtonOverlay::Look SmartButtonWindows::look() {
    return {.timers = ports_.timers,
            .input = ports_.input,
            .theme = isDark(ports_.defaults, ports_.appearance) ? RadialTheme::dark() : RadialTheme::light(),
            .language = languageFromSetting(languageSetting(ports_.defaults)),
            .isAnimated = movesWindows(ports_.appearance),
            .isComposited = ports_.appearance.composites(),
            .isMissing =
                [this](const SmartButtonApp& app) {
                    return app.kind == SmartButtonItemKind::application && !ports_.workspace.exists(app.path);
                },
            .loadIcon = [this](const SmartButtonApp& app, int side, qreal ratio,
                               EntryIcons::Done done) { icons_.load(app, side, ratio, std::move(done)); }};
}

void SmartButtonWindows::activate() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible() || window->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus)) continue;
        window->raise();
        window->activateWindow();
    }
}

std::unique_ptr<SmartButtonPanels::Editor> SmartButtonWindows::makeEditor() {
    return std::make_unique<EditorWindow>();
}

}  // namespace trelvan
