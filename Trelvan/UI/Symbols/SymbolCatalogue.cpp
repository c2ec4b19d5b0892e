#include "UI/Symbols/SymbolCatalogue.hpp"

#include <QPainter>
#include <QPainterPathStroker>
#include <QTransform>
#include <functional>
#include <initializer_list>
#include <map>
#include <numbers>
#include <string>

namespace trelvan::symbols {

namespace {

/// Shapes are drawn in a square of this side.
constexpr double side = 24;
constexpr double penWidth = 1.8;

/// Puts a symbol together from strokes of one width and filled parts.
class Drawing {
  public:
    Drawing& line(std::initializer_list<QPointF> points) {
        auto at = points.begin();
        QPainterPath path(*at);
        while (++at != points.end()) path.lineTo(*at);
        return stroke(path);
    }
    Drawing& closed(std::initializer_list<QPointF> points) {
        auto at = points.begin();
        QPainterPath path(*at);
        while (++at != points.end()) path.lineTo(*at);
        path.closeSubpath();
        return stroke(path);
    }
    Drawing& box(double x, double y, double width, double height, double corner) {
        QPainterPath path;
        path.addRoundedRect(x, y, width, height, corner, corner);
        return stroke(path);
    }
    Drawing& circle(double x, double y, double r) {
        QPainterPath path;
        path.addEllipse(QPointF(x, y), r, r);
        return stroke(path);
    }
    /// Counterclockwise from three o'clock, in degrees.
    Drawing& arc(double x, double y, double r, double start, double length) {
        QPainterPath path;
        const QRectF frame(x - r, y - r, 2 * r, 2 * r);
        path.arcMoveTo(frame, start);
        path.arcTo(frame, start, length);
        return stroke(path);
    }
    Drawing& curve(const QPainterPath& path) { return stroke(path); }
    Drawing& dot(double x, double y, double r) {
        QPainterPath path;
        path.addEllipse(QPointF(x, y), r, r);
        return fill(path);
    }
    Drawing& fill(const QPainterPath& path) {
        shape_ = shape_.united(path);
        return *this;
    }
    /// Leaves free what is drawn next.
    Drawing& cut(const QPainterPath& path) {
        shape_ = shape_.subtracted(path);
        return *this;
    }
    [[nodiscard]] QPainterPath shape() const { return shape_; }

    static QPainterPath outline(const QPainterPath& path, double width = penWidth) {
        QPainterPathStroker pen;
        pen.setWidth(width);
        pen.setCapStyle(Qt::RoundCap);
        pen.setJoinStyle(Qt::RoundJoin);
        pen.setCurveThreshold(0.02);
        QPainterPath outline = pen.createStroke(path);
        outline.setFillRule(Qt::WindingFill);
        return outline;
    }

  private:
    Drawing& stroke(const QPainterPath& path) { return fill(outline(path)); }

    QPainterPath shape_;
};

QPainterPath disc(double x, double y, double r) {
    QPainterPath path;
    path.addEllipse(QPointF(x, y), r, r);
    return path;
}

QPainterPath polyline(std::initializer_list<QPointF> points) {
    auto at = points.begin();
    QPainterPath path(*at);
    while (++at != points.end()) path.lineTo(*at);
    return path;
}

QPainterPath mouseBody() {
    QPainterPath path;
    path.addRoundedRect(6.2, 2.6, 11.6, 18.8, 5.8, 5.8);
    return path;
}

QPainterPath computerMouse(bool isFilled) {
    const QPainterPath wheel = polyline({{12, 6.6}, {12, 9.8}});
    if (!isFilled) return Drawing().curve(mouseBody()).curve(wheel).shape();
    return Drawing().curve(mouseBody()).fill(mouseBody()).cut(Drawing::outline(wheel, 2.2)).shape();
}

QPainterPath shield() {
    QPainterPath path(QPointF(12, 2.8));
    path.lineTo(19.6, 5.6);
    path.lineTo(19.6, 11.4);
    path.cubicTo(19.6, 16.4, 16.4, 19.6, 12, 21.4);
    path.cubicTo(7.6, 19.6, 4.4, 16.4, 4.4, 11.4);
    path.lineTo(4.4, 5.6);
    path.closeSubpath();
    return path;
}

QPainterPath exclamation(double x, double top, double bottom, double point) {
    return Drawing::outline(polyline({{x, top}, {x, bottom}}), 2.1).united(disc(x, point, 1.25));
}

QPainterPath filledShield() {
    return Drawing().curve(shield()).fill(shield()).cut(exclamation(12, 7.6, 12.6, 16.4)).shape();
}

QPainterPath bell(bool hasBadge) {
    QPainterPath body(QPointF(4.6, 17.2));
    body.cubicTo(6.6, 15.2, 6.4, 13, 6.4, 10.2);
    body.cubicTo(6.4, 6.6, 8.8, 4.2, 12, 4.2);
    body.cubicTo(15.2, 4.2, 17.6, 6.6, 17.6, 10.2);
    body.cubicTo(17.6, 13, 17.4, 15.2, 19.4, 17.2);
    body.closeSubpath();
    Drawing drawing;
    drawing.curve(body).arc(12, 18.4, 2.6, 200, 140);
    if (hasBadge) drawing.cut(disc(17.8, 5.8, 4.9)).dot(17.8, 5.8, 3.3);
    return drawing.shape();
}

QPainterPath waving() {
    QPainterPath body(QPointF(7.2, 10));
    body.cubicTo(9, 12, 10.4, 12.2, 12, 12.2);
    body.cubicTo(13.6, 12.2, 15, 11.4, 16.6, 8.6);
    return Drawing()
        .circle(12, 12, 10)
        .dot(12, 7.6, 2)
        .curve(body)
        .line({{12, 12.4}, {12, 14.6}, {9.6, 18.4}})
        .line({{12, 14.6}, {14.4, 18.4}})
        .shape();
}

QPainterPath dots() {
    Drawing drawing;
    for (const double y : {5.0, 12.0, 19.0}) {
        for (const double x : {5.0, 12.0, 19.0}) drawing.dot(x, y, 2.6);
    }
    return drawing.shape();
}

QPainterPath bug(bool isRound) {
    Drawing drawing;
    QPainterPath body;
    body.addRoundedRect(isRound ? 6 : 7.6, 8, isRound ? 12 : 8.8, 13, 6, 6);
    drawing.curve(body);
    for (const double y : {11.0, 14.6, 18.0}) {
        drawing.line({{isRound ? 5.6 : 7.2, y}, {2.6, y + (y - 14.6) * 0.5}});
        drawing.line({{isRound ? 18.4 : 16.8, y}, {21.4, y + (y - 14.6) * 0.5}});
    }
    drawing.line({{9, 8.4}, {9.4, 6}, {7.6, 3}}).line({{15, 8.4}, {14.6, 6}, {16.4, 3}});
    if (isRound) drawing.line({{12, 9}, {12, 20.4}});
    return drawing.shape();
}

QPainterPath sliders() {
    Drawing drawing;
    const std::pair<double, double> rows[]{{5.4, 15.6}, {12, 8}, {18.6, 13.6}};
    for (const auto& [y, knob] : rows) drawing.line({{3, y}, {21, y}});
    for (const auto& [y, knob] : rows) drawing.cut(disc(knob, y, 3.4)).circle(knob, y, 2.2);
    return drawing.shape();
}

QPainterPath drive() {
    return Drawing()
        .box(3, 8, 18, 10, 2.6)
        .line({{6.6, 14.6}, {11, 14.6}})
        .cut(disc(18, 16.6, 5.6))
        .dot(18, 16.6, 4.6)
        .cut(Drawing::outline(polyline({{15.9, 16.8}, {17.4, 18.3}, {20.1, 15}}), 1.5))
        .shape();
}

QPainterPath hand() {
    QPainterPath palm(QPointF(18.4, 8));
    palm.lineTo(18.4, 14.6);
    palm.cubicTo(18.4, 18.8, 15.8, 21.2, 12.4, 21.2);
    palm.cubicTo(9.6, 21.2, 8, 20, 6.6, 17.6);
    palm.lineTo(3.8, 12.9);
    palm.cubicTo(3.3, 11.4, 5.2, 10.4, 6.3, 11.8);
    palm.lineTo(7.8, 13.8);
    palm.lineTo(7.8, 5.6);
    return Drawing()
        .curve(palm)
        .arc(9.55, 5.6, 1.75, 0, 180)
        .line({{11.3, 5.6}, {11.3, 11}})
        .arc(13.05, 4.6, 1.75, 0, 180)
        .line({{14.8, 4.6}, {14.8, 11}})
        .line({{11.3, 4.6}, {11.3, 6}})
        .arc(16.6, 7.4, 1.8, 0, 180)
        .shape();
}

QPainterPath share() {
    return Drawing()
        .line({{8, 9.4}, {5, 9.4}, {5, 20.6}, {19, 20.6}, {19, 9.4}, {16, 9.4}})
        .line({{12, 15}, {12, 3.2}})
        .line({{8.2, 6.8}, {12, 3}, {15.8, 6.8}})
        .shape();
}

QPainterPath palette() {
    QPainterPath edge(QPointF(12, 3));
    edge.cubicTo(17, 3, 21, 6.4, 21, 11);
    edge.cubicTo(21, 14.2, 18.6, 15.6, 16.2, 15.6);
    edge.lineTo(14.4, 15.6);
    edge.cubicTo(12.4, 15.6, 12.2, 17.2, 13, 18.4);
    edge.cubicTo(13.8, 19.6, 13.2, 21, 11.6, 21);
    edge.cubicTo(6.6, 21, 3, 17, 3, 12);
    edge.cubicTo(3, 7, 7, 3, 12, 3);
    return Drawing()
        .curve(edge)
        .dot(7.4, 12.4, 1.4)
        .dot(8.8, 8, 1.4)
        .dot(13, 6.6, 1.4)
        .dot(17, 9.4, 1.4)
        .shape();
}

QPainterPath pin(bool isFilled) {
    QPainterPath head(QPointF(8, 3));
    head.lineTo(16, 3);
    head.lineTo(15, 9.4);
    head.lineTo(18, 13);
    head.lineTo(6, 13);
    head.lineTo(9, 9.4);
    head.closeSubpath();
    Drawing drawing;
    drawing.curve(head).line({{12, 13.4}, {12, 21}});
    if (isFilled) drawing.fill(head);
    return drawing.shape();
}

QPainterPath trash() {
    return Drawing()
        .line({{4, 6.4}, {20, 6.4}})
        .line({{9, 6}, {9.6, 3.2}, {14.4, 3.2}, {15, 6}})
        .line({{6, 6.8}, {7, 20.8}, {17, 20.8}, {18, 6.8}})
        .line({{10, 10.4}, {10.3, 17}})
        .line({{14, 10.4}, {13.7, 17}})
        .shape();
}

QPainterPath copies() {
    return Drawing()
        .box(3.4, 3.4, 11.6, 13.4, 2.4)
        .line({{18.4, 7.4}, {20.6, 7.4}, {20.6, 20.6}, {9, 20.6}, {9, 19.6}})
        .shape();
}

QPainterPath power() {
    return Drawing().arc(12, 13, 8, -240, 300).line({{12, 3}, {12, 12}}).shape();
}

QPainterPath info() {
    return Drawing().circle(12, 12, 9.4).line({{12, 11.2}, {12, 16.4}}).dot(12, 7.8, 1.3).shape();
}

QPainterPath triangle() {
    return Drawing().closed({{12, 3.6}, {21.4, 20}, {2.6, 20}}).fill(exclamation(12, 9.6, 13.6, 17)).shape();
}

QPainterPath padlock(bool isFilled) {
    Drawing drawing;
    drawing.box(5, 10.4, 14, 10.4, 2.4)
        .line({{8, 10}, {8, 7.6}})
        .line({{16, 10}, {16, 7.6}})
        .arc(12, 7.6, 4, 0, 180);
    if (isFilled) {
        QPainterPath body;
        body.addRoundedRect(5, 10.4, 14, 10.4, 2.4, 2.4);
        drawing.fill(body);
    }
    return drawing.shape();
}

QPainterPath gauge() {
    return Drawing().arc(12, 14, 9, -25, 230).line({{12, 14}, {16.4, 9.4}}).dot(12, 14, 1.7).shape();
}

QPainterPath cursor(bool isDouble) {
    QPainterPath arrow(QPointF(9, 9));
    for (const QPointF& point : {QPointF(20.4, 13.4), QPointF(15.4, 15.2), QPointF(13.4, 20.4)})
        arrow.lineTo(point);
    arrow.closeSubpath();
    Drawing drawing;
    drawing.curve(arrow).arc(9, 9, 5.4, 60, 150);
    if (isDouble) drawing.arc(9, 9, 8, 70, 130);
    return drawing.shape();
}

QPainterPath digit(int number) {
    Drawing drawing;
    drawing.circle(12, 12, 9.4);
    if (number == 1) return drawing.line({{10, 9.2}, {12.4, 7.4}, {12.4, 16.6}}).shape();
    QPainterPath two(QPointF(9.2, 9.8));
    two.cubicTo(9.4, 6.6, 14.8, 6.6, 14.8, 9.8);
    two.cubicTo(14.8, 12.2, 9.6, 14, 9.2, 16.6);
    two.lineTo(15, 16.6);
    return drawing.curve(two).shape();
}

QPainterPath globe() {
    QPainterPath meridian;
    meridian.addEllipse(QPointF(12, 12), 4.2, 9.4);
    return Drawing().circle(12, 12, 9.4).curve(meridian).line({{2.8, 12}, {21.2, 12}}).shape();
}

QPainterPath undo() {
    return Drawing().arc(12.4, 13, 7.4, -150, 290).line({{3.8, 4.6}, {5.2, 9.8}, {10.4, 8.4}}).shape();
}

QPainterPath switches() {
    return Drawing()
        .box(3, 3.6, 18, 7, 3.5)
        .dot(17.5, 7.1, 2)
        .box(3, 13.4, 18, 7, 3.5)
        .dot(6.5, 16.9, 2)
        .shape();
}

QPainterPath clock() {
    return Drawing().circle(12, 12, 9.4).line({{12, 6.8}, {12, 12.2}, {15.6, 14.4}}).shape();
}

QPainterPath magnifier() {
    return Drawing().circle(10.4, 10.4, 6.8).line({{15.6, 15.6}, {20.8, 20.8}}).shape();
}

QPainterPath pencil() {
    return Drawing()
        .closed({{4, 20}, {5, 15.4}, {16, 4.4}, {19.6, 8}, {8.6, 19}})
        .line({{13.4, 7}, {17, 10.6}})
        .shape();
}

QPainterPath upDown() {
    return Drawing()
        .circle(12, 12, 9.6)
        .line({{9, 16.4}, {9, 7.8}})
        .line({{6.8, 9.8}, {9, 7.6}, {11.2, 9.8}})
        .line({{15, 7.6}, {15, 16.2}})
        .line({{12.8, 14.2}, {15, 16.4}, {17.2, 14.2}})
        .shape();
}

using Make = QPainterPath (*)();

const std::map<std::string_view, Make>& makers() {
    static const std::map<std::string_view, Make> all{
        {"1.circle", [] { return digit(1); }},
        {"2.circle", [] { return digit(2); }},
        {"ant", [] { return bug(false); }},
        {"ant.circle", [] { return bug(false); }},
        {"arrow.uturn.backward", &undo},
        {"arrow.up.arrow.down.circle", &upDown},
        {"bell.badge", [] { return bell(true); }},
        {"checkmark",
         [] {
             return Drawing().line({{4.6, 12.8}, {9.6, 17.8}, {19.6, 6.4}}).shape();
         }},
        {"chevron.down",
         [] {
             return Drawing().line({{5.6, 9}, {12, 15.4}, {18.4, 9}}).shape();
         }},
        {"chevron.right",
         [] {
             return Drawing().line({{9, 5.6}, {15.4, 12}, {9, 18.4}}).shape();
         }},
        {"chevron.up",
         [] {
             return Drawing().line({{5.6, 15}, {12, 8.6}, {18.4, 15}}).shape();
         }},
        {"circle", [] { return Drawing().circle(12, 12, 9.4).shape(); }},
        {"circle.circle", [] { return Drawing().circle(12, 12, 9.4).circle(12, 12, 4).shape(); }},
        {"circle.fill", [] { return disc(12, 12, 10); }},
        {"circle.grid.3x3.fill", &dots},
        {"clock", &clock},
        {"computermouse", [] { return computerMouse(false); }},
        {"computermouse.fill", [] { return computerMouse(true); }},
        {"cursorarrow.click", [] { return cursor(false); }},
        {"cursorarrow.click.2", [] { return cursor(true); }},
        {"doc.on.doc", &copies},
        {"ellipsis", [] { return Drawing().dot(5, 12, 1.9).dot(12, 12, 1.9).dot(19, 12, 1.9).shape(); }},
        {"exclamationmark.shield.fill", &filledShield},
        {"exclamationmark.triangle", &triangle},
        {"externaldrive.badge.checkmark", &drive},
        {"figure.wave.circle", &waving},
        {"globe", &globe},
        {"hand.raised", &hand},
        {"info.circle", &info},
        {"ladybug", [] { return bug(true); }},
        {"lock.fill", [] { return padlock(true); }},
        {"lock.shield",
         [] {
             return Drawing().curve(shield()).dot(12, 10.4, 1.9).line({{12, 11}, {12, 15.4}}).shape();
         }},
        {"magnifyingglass", &magnifier},
        {"paintpalette", &palette},
        {"pencil", &pencil},
        {"pin", [] { return pin(false); }},
        {"pin.fill", [] { return pin(true); }},
        {"plus",
         [] {
             return Drawing().line({{12, 4.6}, {12, 19.4}}).line({{4.6, 12}, {19.4, 12}}).shape();
         }},
        {"power", &power},
        {"slider.horizontal.3", &sliders},
        {"speedometer", &gauge},
        {"square.and.arrow.up", &share},
        {"switch.2", &switches},
        {"trash", &trash},
        {"xmark",
         [] {
             return Drawing().line({{5.6, 5.6}, {18.4, 18.4}}).line({{18.4, 5.6}, {5.6, 18.4}}).shape();
         }},
    };
    return all;
}

}  // namespace

bool isKnown(std::string_view name) {
    return makers().contains(name);
}

const QPainterPath& named(std::string_view name) {
    static std::map<std::string, QPainterPath, std::less<>> made;
    if (const auto found = made.find(name); found != made.end()) return found->second;
    const auto maker = makers().find(name);
    const QPainterPath drawn = maker != makers().end() ? maker->second() : makers().at("circle")();
    return made.emplace(std::string(name), QTransform::fromScale(1 / side, 1 / side).map(drawn))
        .first->second;
}

void draw(QPainter& painter, std::string_view name, const QRectF& frame, const QColor& color) {
    const double size = qMin(frame.width(), frame.height());
    QTransform transform;
    transform.translate(frame.center().x() - size / 2, frame.center().y() - size / 2);
    transform.scale(size, size);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(transform.map(named(name)), color);
    painter.restore();
}

}  // namespace trelvan::symbols
