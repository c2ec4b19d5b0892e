#include "UI/MenuBarItem.hpp"

#include "UI/Components/Look.hpp"
#include "UI/Symbols/SymbolCatalogue.hpp"

#include <QActionGroup>
#include <QCursor>
#include <QIcon>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <optional>
#include <utility>

namespace trelvan {

QIcon menuBarIcon(std::string_view symbol) {
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48}) {
        QPixmap picture(side, side);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        const double inset = side / 16.0;
        QTransform place;
        place.translate(inset, inset);
        place.scale(side - 2 * inset, side - 2 * inset);
        const QPainterPath shape = place.map(symbols::named(symbol));
        painter.strokePath(
            shape, QPen(QColor(20, 22, 27, 190), inset * 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.fillPath(shape, QColor(246, 247, 250));
        icon.addPixmap(picture);
    }
    return icon;
}

struct MenuBarItem::Parts {
    QMenu menu;
    /// Within the menu, which does not delete it when it is cleared.
    std::unique_ptr<QMenu> profiles;
    QSystemTrayIcon tray;
    std::optional<MenuBarLabel> label;
    std::vector<MenuEntry> entries;
};

MenuBarItem::MenuBarItem() : parts_(std::make_unique<Parts>()) {
    parts_->tray.setContextMenu(&parts_->menu);
    QObject::connect(&parts_->tray, &QSystemTrayIcon::activated, &parts_->menu,
                     [this](QSystemTrayIcon::ActivationReason reason) {
                         if (reason != QSystemTrayIcon::Trigger || !onClick) return;
                         const QRect place = parts_->tray.geometry();
                         onClick(place.isValid() ? place : QRect(QCursor::pos(), QSize(1, 1)));
                     });
}

MenuBarItem::~MenuBarItem() = default;

void MenuBarItem::show(const MenuBarLabel& label) {
    if (parts_->label == label) return;
    parts_->label = label;
    parts_->tray.setIcon(menuBarIcon(label.symbol));
    // No desktop shows a text beside an item made this way.
    parts_->tray.setToolTip("Trelvan " + qtText(label.text));
    parts_->tray.show();
}

void MenuBarItem::setMenu(const std::vector<MenuEntry>& entries, AppLanguage language) {
    if (parts_->entries == entries) return;
    parts_->entries = entries;
    QMenu& menu = parts_->menu;
    menu.clear();
    parts_->profiles.reset();
    for (const MenuEntry& entry : entries) {
        if (entry.beginsGroup) menu.addSeparator();
        const bool isProfile = entry.command == MenuCommand::profile;
        if (isProfile && !parts_->profiles) {
            parts_->profiles = std::make_unique<QMenu>(qtText(localized(language, profilesTitle)));
            menu.addMenu(parts_->profiles.get());
        }
        QString text = qtText(entry.text);
        // In a menu this sign would underline the next letter.
        text.replace('&', "&&");
        QAction* action = (isProfile ? parts_->profiles.get() : &menu)->addAction(text);
        action->setCheckable(entry.isOn.has_value());
        action->setChecked(entry.isOn.value_or(false));
        QObject::connect(action, &QAction::triggered, &menu, [this, entry] {
            if (onChoose) onChoose(entry);
        });
    }
}

void MenuBarItem::closeMenu() {
    parts_->menu.close();
}

}  // namespace trelvan
