#pragma once

#include <QColor>

namespace trelvan {

/// The colours of the radial menu.
struct RadialTheme {
    /// Over the whole screen, so that the menu stands out from what is behind it.
    QColor scrim;
    /// Lets nothing through: what lies under it would be read with it.
    QColor ring;
    QColor ringEdge;
    QColor shadow;
    /// The plate behind an icon, as it is, under the pointer, and pressed.
    QColor plate;
    QColor plateHovered;
    QColor plateEdge;
    QColor text;
    QColor secondaryText;
    QColor accent;
    /// The key's number and the disc it stands on.
    QColor badge;
    QColor badgeText;
    QColor warning;

    [[nodiscard]] static RadialTheme light() {
        return {.scrim = QColor(0, 0, 0, 46),
                .ring = QColor(246, 247, 249),
                .ringEdge = QColor(255, 255, 255, 220),
                .shadow = QColor(0, 0, 0, 70),
                .plate = QColor(255, 255, 255, 255),
                .plateHovered = QColor(222, 235, 255, 255),
                .plateEdge = QColor(0, 0, 0, 28),
                .text = QColor(28, 30, 34),
                .secondaryText = QColor(92, 98, 108),
                .accent = QColor(28, 100, 230),
                .badge = QColor(70, 76, 86),
                .badgeText = QColor(255, 255, 255),
                .warning = QColor(176, 84, 0)};
    }
    [[nodiscard]] static RadialTheme dark() {
        return {.scrim = QColor(0, 0, 0, 96),
                .ring = QColor(34, 36, 41),
                .ringEdge = QColor(255, 255, 255, 34),
                .shadow = QColor(0, 0, 0, 130),
                .plate = QColor(66, 70, 79, 255),
                .plateHovered = QColor(48, 68, 106, 255),
                .plateEdge = QColor(255, 255, 255, 24),
                .text = QColor(240, 241, 244),
                .secondaryText = QColor(176, 181, 191),
                .accent = QColor(108, 164, 255),
                .badge = QColor(214, 218, 226),
                .badgeText = QColor(28, 30, 34),
                .warning = QColor(255, 180, 84)};
    }
};

}  // namespace trelvan
