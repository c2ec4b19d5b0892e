#pragma once

#include "MenuBarScene.hpp"
#include "Support/FakePanels.hpp"
#include "Support/TestDesktop.hpp"
#include "TrelvanApp.hpp"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QTest>
#include <memory>
#include <string>
#include <vector>

namespace trelvan::test {

/// The whole program on the simulated desktop, with its real window on the toolkit's offscreen platform.
class WindowTest : public testing::Test {
  protected:
    ~WindowTest() override { QApplication::setPalette(QPalette()); }

    /// Starts the program; what a test wants to find is set before.
    void start() {
        app = std::make_unique<TrelvanApp>(desktop, panels, desktop.logger);
        scene = std::make_unique<MenuBarScene>(*app, desktop, [this] { ++quits; });
        reach = scene->start();
        settle();
    }
    void openWindow() {
        if (!scene) start();
        scene->showWindow();
        settle();
    }
    /// Lets what is due happen, of the program and of the toolkit.
    void settle() {
        desktop.time.runDue();
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        desktop.time.runDue();
    }

    [[nodiscard]] SettingsWindow& window() { return scene->window(); }
    [[nodiscard]] SettingsView& view() { return *scene->window().view(); }
    void store(std::string_view key, std::string text) { desktop.userDefaults().set(key, std::move(text)); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* target = QApplication::focusWidget();
        QTest::keyClick(target != nullptr ? target : &view(), key, modifiers);
        settle();
    }
    void type(const QString& text) {
        QTest::keyClicks(QApplication::focusWidget(), text);
        settle();
    }
    void click(QWidget& widget) {
        QTest::mouseClick(&widget, Qt::LeftButton);
        settle();
    }
    /// Every text that can be seen now.
    [[nodiscard]] std::vector<std::string> visibleTexts() {
        std::vector<std::string> texts;
        for (const QWidget* widget : view().findChildren<QWidget*>()) {
            if (!widget->isVisible()) continue;
            if (const auto* label = qobject_cast<const QLabel*>(widget))
                texts.push_back(label->text().toStdString());
            if (qobject_cast<const QAbstractButton*>(widget) != nullptr)
                texts.push_back(widget->accessibleName().toStdString());
        }
        return texts;
    }
    [[nodiscard]] std::vector<std::string> profileNames() {
        std::vector<std::string> names;
        for (const auto& profile : app->profileManager.profiles.get()) names.push_back(profile.name);
        return names;
    }

    TestDesktop desktop;
    FakePanels panels;
    std::unique_ptr<TrelvanApp> app;
    std::unique_ptr<MenuBarScene> scene;
    SingleInstance::Reach reach = SingleInstance::Reach::noBus;
    int quits = 0;
};

}  // namespace trelvan::test
