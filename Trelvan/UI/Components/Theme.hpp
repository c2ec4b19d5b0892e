#pragma once

#include "Platform/Appearance.hpp"

#include <QColor>
#include <QFont>
#include <QPalette>
#include <optional>
#include <string_view>

namespace trelvan {

/// What a colour is for. A component names the role, never the colour.
enum class ColorRole { text, secondaryText, disabledText, accent, good, warning, danger, onAccent };

/// What a text is in the window; its size and weight follow.
enum class TypeRole { header, cardTitle, body, caption };

/// Distances, in points; all lie on a grid of 4.
namespace space {
inline constexpr int small = 8;
inline constexpr int medium = 12;
inline constexpr int large = 16;
inline constexpr int huge = 24;
inline constexpr int rowHeight = 36;
/// The smallest side of anything that can be clicked.
inline constexpr int target = 28;
inline constexpr int columnWidth = 760;
}  // namespace space

/// Radii of corners, in points.
namespace radius {
inline constexpr double card = 12;
inline constexpr double control = 8;
/// Larger than half of anything: round ends.
inline constexpr double pill = 999;
}  // namespace radius

/// How long something moves, where the desktop wants motion at all.
inline constexpr int motionMilliseconds = 150;

/// The colours of the settings window. Those of text and controls stand out from every ground they are drawn
/// on: 4.5 to 1 for text that is not disabled, 3 to 1 for controls.
struct Theme {
    bool isDark = false;
    /// The window's ground, a gradient from top to bottom.
    QColor windowTop;
    QColor windowBottom;
    /// Translucent, over the window.
    QColor card;
    QColor cardEdge;
    QColor text;
    QColor secondaryText;
    QColor disabledText;
    /// Fills, rings and marks.
    QColor accent;
    /// The accent where it is text.
    QColor accentText;
    /// Text on the accent.
    QColor onAccent;
    QColor good;
    QColor warning;
    QColor danger;
    /// The ground of buttons and fields, and their outline.
    QColor control;
    QColor controlEdge;
    /// Laid over what the pointer is on.
    QColor hover;
    /// The ground of sheets and menus, opaque.
    QColor sheet;
    /// Over the window while a sheet is open.
    QColor scrim;

    /// `desktopAccent` is adapted until it can be seen and read.
    [[nodiscard]] static Theme light(std::optional<QColor> desktopAccent = {});
    [[nodiscard]] static Theme dark(std::optional<QColor> desktopAccent = {});

    [[nodiscard]] QColor color(ColorRole role) const;
    /// For the toolkit's own widgets, such as text fields and menus.
    [[nodiscard]] QPalette palette() const;
};

/// How two opaque colours differ in luminance, 1 to 21.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);
/// What is seen of a colour, translucent or not, on an opaque one.
[[nodiscard]] QColor over(const QColor& front, const QColor& ground);

[[nodiscard]] QFont fontOf(TypeRole role);

/// Whether windows are dark under the stored theme; any but "Light" and "Dark" follows the desktop.
[[nodiscard]] bool isDarkTheme(std::string_view storedTheme, const Appearance& appearance);
/// Whether windows may move, as the desktop wants it.
[[nodiscard]] bool movesWindows(const Appearance& appearance);
[[nodiscard]] Theme themeFor(std::string_view storedTheme, const Appearance& appearance);

}  // namespace trelvan
