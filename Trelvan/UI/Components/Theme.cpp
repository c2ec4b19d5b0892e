#include "UI/Components/Theme.hpp"

#include <QApplication>
#include <QStyle>
#include <algorithm>
#include <cmath>

namespace trelvan {

namespace {

constexpr double readable = 4.5;
constexpr double visible = 3.0;

double linear(double channel) {
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor translucent(int grey, double share) {
    QColor color(grey, grey, grey);
    color.setAlphaF(static_cast<float>(share));
    return color;
}

/// The ground on which a colour of the theme stands out least.
double worstContrast(const Theme& theme, const QColor& color) {
    double worst = 21;
    for (const QColor& window : {theme.windowTop, theme.windowBottom}) {
        for (const QColor& ground :
             {window, over(theme.card, window), over(theme.hover, window), theme.sheet, theme.control}) {
            worst = std::min(worst, contrast(color, ground));
        }
    }
    return worst;
}

/// The colour, made darker in a light theme and lighter in a dark one until it stands out that much.
QColor standingOut(QColor color, const Theme& theme, double least) {
    const QColor end = theme.isDark ? QColor(255, 255, 255) : QColor(0, 0, 0);
    constexpr int steps = 20;
    const QColor start = color;
    for (int step = 1; step <= steps && worstContrast(theme, color) < least; ++step) {
        QColor veil = end;
        veil.setAlphaF(static_cast<float>(step) / steps);
        color = over(veil, start);
    }
    return color;
}

void setAccent(Theme& theme, QColor accent) {
    accent.setAlpha(255);
    theme.accent = standingOut(accent, theme, visible);
    theme.accentText = standingOut(accent, theme, readable);
    const QColor white(255, 255, 255);
    theme.onAccent = contrast(white, theme.accent) >= readable ? white : QColor(0, 0, 0);
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QColor over(const QColor& front, const QColor& ground) {
    const auto share = front.alphaF();
    const auto mix = [share](float top, float below) { return top * share + below * (1 - share); };
    return QColor::fromRgbF(mix(front.redF(), ground.redF()), mix(front.greenF(), ground.greenF()),
                            mix(front.blueF(), ground.blueF()));
}

Theme Theme::light(std::optional<QColor> desktopAccent) {
    Theme theme{.isDark = false,
                .windowTop = QColor("#F3F4F7"),
                .windowBottom = QColor("#E9EBF1"),
                .card = translucent(255, 0.82),
                .cardEdge = translucent(0, 0.06),
                .text = QColor("#16181D"),
                .secondaryText = QColor("#5B6270"),
                .disabledText = QColor("#9AA1AE"),
                .accent = {},
                .accentText = {},
                .onAccent = {},
                .good = QColor("#14743F"),
                .warning = QColor("#8A5A00"),
                .danger = QColor("#BE2F2F"),
                .control = QColor("#FFFFFF"),
                .controlEdge = QColor("#79808D"),
                .hover = translucent(0, 0.03),
                .sheet = QColor("#FBFBFD"),
                .scrim = translucent(20, 0.28)};
    setAccent(theme, desktopAccent.value_or(QColor("#1F5AD6")));
    return theme;
}

Theme Theme::dark(std::optional<QColor> desktopAccent) {
    Theme theme{.isDark = true,
                .windowTop = QColor("#1B1D22"),
                .windowBottom = QColor("#15171B"),
                .card = translucent(255, 0.06),
                .cardEdge = translucent(255, 0.08),
                .text = QColor("#F2F4F8"),
                .secondaryText = QColor("#A5ADBA"),
                .disabledText = QColor("#666E7C"),
                .accent = {},
                .accentText = {},
                .onAccent = {},
                .good = QColor("#4CC38A"),
                .warning = QColor("#E0B252"),
                .danger = QColor("#FF7B7B"),
                .control = QColor("#2F323A"),
                .controlEdge = QColor("#858D9B"),
                .hover = translucent(255, 0.07),
                .sheet = QColor("#262930"),
                .scrim = translucent(0, 0.5)};
    setAccent(theme, desktopAccent.value_or(QColor("#7FAEFF")));
    return theme;
}

QColor Theme::color(ColorRole role) const {
    switch (role) {
        case ColorRole::text:
            return text;
        case ColorRole::secondaryText:
            return secondaryText;
        case ColorRole::disabledText:
            return disabledText;
        case ColorRole::accent:
            return accentText;
        case ColorRole::good:
            return good;
        case ColorRole::warning:
            return warning;
        case ColorRole::danger:
            return danger;
        case ColorRole::onAccent:
            return onAccent;
    }
    return text;
}

QPalette Theme::palette() const {
    QPalette palette;
    palette.setColor(QPalette::Window, windowTop);
    palette.setColor(QPalette::Base, control);
    palette.setColor(QPalette::AlternateBase, sheet);
    palette.setColor(QPalette::Button, control);
    palette.setColor(QPalette::ToolTipBase, sheet);
    palette.setColor(QPalette::Highlight, accent);
    palette.setColor(QPalette::HighlightedText, onAccent);
    palette.setColor(QPalette::Link, accentText);
    palette.setColor(QPalette::PlaceholderText, secondaryText);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, text);
        palette.setColor(QPalette::Disabled, role, disabledText);
    }
    return palette;
}

QFont fontOf(TypeRole role) {
    QFont font = QApplication::font();
    switch (role) {
        case TypeRole::header:
            font.setPixelSize(20);
            font.setWeight(QFont::DemiBold);
            break;
        case TypeRole::cardTitle:
            font.setPixelSize(15);
            font.setWeight(QFont::DemiBold);
            break;
        case TypeRole::body:
            font.setPixelSize(13);
            break;
        case TypeRole::caption:
            font.setPixelSize(11);
            break;
    }
    return font;
}

bool isDarkTheme(std::string_view storedTheme, const Appearance& appearance) {
    if (storedTheme == "Light") return false;
    if (storedTheme == "Dark") return true;
    constexpr int middle = 128;
    return appearance.prefersDark() || QApplication::palette().window().color().lightness() < middle;
}

bool movesWindows(const Appearance& appearance) {
    // Toolkit styles of desktops without animations give their length as nothing.
    return !appearance.reducesMotion() &&
           QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0;
}

Theme themeFor(std::string_view storedTheme, const Appearance& appearance) {
    std::optional<QColor> accent;
    if (const auto told = appearance.accentColor())
        accent = QColor::fromRgbF(static_cast<float>(told->red), static_cast<float>(told->green),
                                  static_cast<float>(told->blue));
    return isDarkTheme(storedTheme, appearance) ? Theme::dark(accent) : Theme::light(accent);
}

}  // namespace trelvan
