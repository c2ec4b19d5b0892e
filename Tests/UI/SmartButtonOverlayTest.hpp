#pragma once

#include "Platform/Simulated/SimulatedInput.hpp"
#include "Platform/Simulated/VirtualTime.hpp"
#include "UI/SmartButtonOverlay.hpp"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace trelvan::test {

/// An overlay on the toolkit's screen without a display, and what it told.
class SmartButtonOverlayTest : public testing::Test {
  protected:
    void open(const std::vector<std::string>& names, AppLanguage language = AppLanguage::english) {
        SmartButtonRadialView view;
        for (const auto& name : names) view.apps.emplace_back().name = name;
        view.onLaunch = [this](const SmartButtonApp& app) {
            launched.push_back(app.name);
            if (onLaunch) onLaunch();
        };
        view.onEdit = [this] { ++edits; };
        view.onOpenApplications = [this] { ++folders; };
        view.onDismiss = [this] { ++dismissals; };
        QScreen* screen = QGuiApplication::primaryScreen();
        const QRect frame = screen->geometry();
        const BottomLeftRect area{0, 0, static_cast<double>(frame.width()),
                                  static_cast<double>(frame.height())};
        layout = RadialLayout::make({area.width / 2, area.height / 2}, area, names.size());
        overlay = std::make_unique<SmartButtonOverlay>(std::move(view), layout, screen,
                                                       SmartButtonOverlay::Look{.timers = time,
                                                                                .input = input,
                                                                                .theme = RadialTheme::light(),
                                                                                .language = language,
                                                                                .isAnimated = false,
                                                                                .isComposited = true,
                                                                                .isMissing = isMissing,
                                                                                .loadIcon = loadIcon});
        overlay->appear();
    }
    /// Down and up again.
    void press(MenuKey key) {
        input.keyDown(key);
        input.keyUp(key);
        time.runFor(releaseTime);
    }
    void enter(RadialButton* button) {
        QEnterEvent event({1, 1}, {1, 1}, {1, 1});
        QCoreApplication::sendEvent(button, &event);
    }
    void click(QWidget* widget, Qt::MouseButton button = Qt::LeftButton) {
        const QPointF place = QRectF(widget->rect()).center();
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, place, widget->mapToGlobal(place), button,
                              type == QEvent::MouseButtonPress ? button : Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(widget, &event);
        }
    }

    std::function<void(const SmartButtonApp&, int, qreal, std::function<void(QPixmap)>)> loadIcon =
        [](const SmartButtonApp&, int, qreal, const std::function<void(QPixmap)>& done) { done({}); };
    std::function<bool(const SmartButtonApp&)> isMissing;
    static constexpr Seconds releaseTime = SmartButtonOverlay::releaseTime;

    VirtualTime time;
    SimulatedMenuInput input;
    RadialLayout layout;
    std::unique_ptr<SmartButtonOverlay> overlay;
    std::vector<std::string> launched;
    std::function<void()> onLaunch;
    int edits = 0;
    int folders = 0;
    int dismissals = 0;
};

using Names = std::vector<std::string>;

inline Names numbered(int count) {
    Names names;
    for (int index = 1; index <= count; ++index) names.push_back("Entry " + std::to_string(index));
    return names;
}

}  // namespace trelvan::test
