#include "app/views/widgets/symbols.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

#include <functional>

namespace corvane::symbols {
namespace {

/// All signs are drawn in a square of 16 units.
constexpr qreal unit = 16;

class Canvas {
  public:
    Canvas(QPainter& painter, const QRectF& box) : painter_(painter) {
        const qreal side = std::min(box.width(), box.height());
        painter_.save();
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.translate(box.center().x() - side / 2, box.center().y() - side / 2);
        painter_.scale(side / unit, side / unit);
    }
    ~Canvas() { painter_.restore(); }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    void stroke(const QColor& colour, qreal width = 1.6) {
        painter_.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter_.setBrush(Qt::NoBrush);
    }
    void fill(const QColor& colour) {
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(colour);
    }

  private:
    QPainter& painter_;
};

QPainterPath polyline(std::initializer_list<QPointF> points) {
    QPainterPath path(*points.begin());
    for (auto point = points.begin() + 1; point != points.end(); ++point) path.lineTo(*point);
    return path;
}

QPainterPath triangle() {
    QPainterPath path = polyline({{8, 2.2}, {14.6, 13.6}, {1.4, 13.6}});
    path.closeSubpath();
    return path;
}

QPainterPath octagon() {
    QPainterPath path = polyline({{5.2, 1.4},
                                  {10.8, 1.4},
                                  {14.6, 5.2},
                                  {14.6, 10.8},
                                  {10.8, 14.6},
                                  {5.2, 14.6},
                                  {1.4, 10.8},
                                  {1.4, 5.2}});
    path.closeSubpath();
    return path;
}

/// The stem and the dot of an exclamation mark, for cutting out of a filled shape.
QPainterPath exclamation(qreal top, qreal bottom) {
    QPainterPath path;
    path.addRoundedRect(QRectF(7.15, top, 1.7, bottom - top), 0.85, 0.85);
    path.addEllipse(QPointF(8, bottom + 1.9), 1, 1);
    return path;
}

/// Of a padlock; open, its shackle stands beside the body.
QPainterPath shackle(bool open) {
    QPainterPath path(QPointF(4.8, 8));
    path.lineTo(4.8, 5.6);
    path.arcTo(QRectF(4.8, 2.2, 6.4, 6.4), 180, open ? -150 : -180);
    if (!open) path.lineTo(11.2, 8);
    return path;
}

class PathEngine : public QIconEngine {
  public:
    using Draw = std::function<void(QPainter&, const QRectF&, QIcon::Mode)>;
    explicit PathEngine(Draw draw) : draw_(std::move(draw)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        draw_(*painter, rect, mode);
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }
    QIconEngine* clone() const override { return new PathEngine(draw_); }

  private:
    Draw draw_;
};

QColor iconColour(QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::WindowText);
    case QIcon::Selected:
        return palette.color(QPalette::HighlightedText);
    default:
        return palette.color(QPalette::WindowText);
    }
}

/// Two lanes with a marker at opposite ends: a switch between two settings.
void paintMark(QPainter& painter, const QColor& lane, const QColor& on, const QColor& off) {
    painter.setPen(QPen(lane, 1.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(3.9, 5.7), QPointF(12.1, 5.7));
    painter.drawLine(QPointF(3.9, 10.3), QPointF(12.1, 10.3));
    painter.setPen(Qt::NoPen);
    painter.setBrush(on);
    painter.drawEllipse(QPointF(10.9, 5.7), 1.9, 1.9);
    painter.setBrush(off);
    painter.drawEllipse(QPointF(5.1, 10.3), 1.9, 1.9);
}

} // namespace

void paint(QPainter& painter, const QRectF& box, Symbol symbol, const QColor& colour) {
    Canvas canvas(painter, box);
    switch (symbol) {
    case Symbol::check:
        canvas.stroke(colour, 2);
        painter.drawPath(polyline({{3, 8.6}, {6.4, 12}, {13, 4.4}}));
        break;
    case Symbol::chevronRight:
        canvas.stroke(colour, 1.8);
        painter.drawPath(polyline({{6, 3.5}, {10.5, 8}, {6, 12.5}}));
        break;
    case Symbol::chevronDown:
        canvas.stroke(colour, 1.8);
        painter.drawPath(polyline({{3.5, 6}, {8, 10.5}, {12.5, 6}}));
        break;
    case Symbol::globe:
        canvas.stroke(colour, 1.3);
        painter.drawEllipse(QPointF(8, 8), 6.2, 6.2);
        painter.drawEllipse(QPointF(8, 8), 2.8, 6.2);
        painter.drawLine(QPointF(1.8, 8), QPointF(14.2, 8));
        break;
    case Symbol::warning:
        canvas.fill(colour);
        painter.drawPath(triangle().subtracted(exclamation(5.6, 9.6)));
        break;
    case Symbol::error:
        canvas.fill(colour);
        painter.drawPath(octagon().subtracted(exclamation(4.2, 9)));
        break;
    case Symbol::info: {
        QPainterPath disc;
        disc.addEllipse(QPointF(8, 8), 6.8, 6.8);
        QPainterPath letter;
        letter.addEllipse(QPointF(8, 4.9), 1, 1);
        letter.addRoundedRect(QRectF(7.15, 6.8, 1.7, 5.2), 0.85, 0.85);
        canvas.fill(colour);
        painter.drawPath(disc.subtracted(letter));
        break;
    }
    case Symbol::plus:
        canvas.stroke(colour, 1.8);
        painter.drawLine(QPointF(8, 3), QPointF(8, 13));
        painter.drawLine(QPointF(3, 8), QPointF(13, 8));
        break;
    case Symbol::globalPreset:
        canvas.stroke(colour, 1.4);
        painter.drawRoundedRect(QRectF(2, 5.5, 8.5, 8.5), 1.6, 1.6);
        painter.drawPath(polyline({{5.5, 2.5}, {12, 2.5}, {13.5, 4}, {13.5, 10.5}}));
        break;
    case Symbol::vlan:
        canvas.stroke(colour, 1.4);
        painter.drawPath(polyline({{2, 5}, {2, 2.4}, {8, 2.4}, {13.6, 8}, {8, 13.6}, {2, 8}, {2, 5}}));
        painter.drawEllipse(QPointF(5, 5.4), 0.8, 0.8);
        break;
    case Symbol::order:
        canvas.stroke(colour, 1.5);
        painter.drawPath(polyline({{4.5, 13}, {4.5, 3}, {2, 5.5}, {4.5, 3}, {7, 5.5}}));
        painter.drawPath(polyline({{11.5, 3}, {11.5, 13}, {9, 10.5}, {11.5, 13}, {14, 10.5}}));
        break;
    case Symbol::pencil:
        canvas.stroke(colour, 1.4);
        painter.drawPath(
            polyline({{2.6, 13.4}, {3.4, 10}, {10.8, 2.6}, {13.4, 5.2}, {6, 12.6}, {2.6, 13.4}}));
        painter.drawLine(QPointF(8.9, 4.5), QPointF(11.5, 7.1));
        break;
    case Symbol::ping:
        canvas.stroke(colour, 1.5);
        painter.drawPath(polyline({{1.5, 8.5}, {4.6, 8.5}, {6.4, 3.4}, {9.2, 12.8}, {11, 8.5}, {14.5, 8.5}}));
        break;
    case Symbol::router:
        canvas.stroke(colour, 1.4);
        for (const qreal at : {4.0, 8.0, 12.0}) {
            painter.drawLine(QPointF(2, at), QPointF(14, at));
            painter.drawLine(QPointF(at, 2), QPointF(at, 14));
        }
        canvas.fill(colour);
        painter.drawEllipse(QPointF(8, 4), 1.9, 1.9);
        painter.drawEllipse(QPointF(12, 8), 1.9, 1.9);
        painter.drawEllipse(QPointF(4, 12), 1.9, 1.9);
        break;
    case Symbol::lock:
    case Symbol::lockOpen:
        canvas.stroke(colour, 1.7);
        painter.drawPath(shackle(symbol == Symbol::lockOpen));
        if (symbol == Symbol::lock) painter.setBrush(colour);
        painter.drawRoundedRect(QRectF(3, 7.6, 10, 6.2), 1.2, 1.2);
        break;
    case Symbol::lockBarred: {
        QPainterPath body, bar;
        body.addRoundedRect(QRectF(2.4, 7, 11.2, 7.4), 1.4, 1.4);
        bar.addRoundedRect(QRectF(4.8, 9.8, 6.4, 1.8), 0.9, 0.9);
        canvas.stroke(colour, 1.7);
        painter.drawPath(shackle(false));
        canvas.fill(colour);
        painter.drawPath(body.subtracted(bar));
        break;
    }
    case Symbol::more:
        canvas.fill(colour);
        for (const qreal at : {3.2, 8.0, 12.8}) painter.drawEllipse(QPointF(at, 8), 1.35, 1.35);
        break;
    case Symbol::close:
        canvas.stroke(colour, 1.6);
        painter.drawLine(QPointF(4, 4), QPointF(12, 12));
        painter.drawLine(QPointF(12, 4), QPointF(4, 12));
        break;
    case Symbol::service:
        canvas.stroke(colour, 1.4);
        painter.drawRoundedRect(QRectF(2, 3, 12, 10), 1.6, 1.6);
        painter.drawPath(
            polyline({{5, 13}, {5, 9.6}, {6.4, 9.6}, {6.4, 8}, {9.6, 8}, {9.6, 9.6}, {11, 9.6}, {11, 13}}));
        break;
    }
}

void paintState(QPainter& painter, const QRectF& box, LinkState::Kind state, const QColor& colour) {
    Canvas canvas(painter, box);
    const QRectF ring(2.6, 2.6, 10.8, 10.8);
    switch (state) {
    case LinkState::Kind::connected:
        canvas.fill(colour);
        painter.drawEllipse(QPointF(8, 8), 6.2, 6.2);
        break;
    case LinkState::Kind::selfAssigned:
        canvas.fill(colour);
        painter.drawPath(triangle().subtracted(exclamation(5.6, 9.6)));
        break;
    case LinkState::Kind::noAddress:
        canvas.fill(colour);
        painter.drawPie(ring, 90 * 16, 180 * 16);
        canvas.stroke(colour, 1.8);
        painter.drawEllipse(ring);
        break;
    case LinkState::Kind::noLink:
        canvas.stroke(colour, 1.8);
        painter.drawEllipse(ring);
        break;
    case LinkState::Kind::inactive:
        canvas.stroke(colour, 1.8);
        painter.drawEllipse(QPointF(8, 8), 3.2, 3.2);
        break;
    case LinkState::Kind::adapterMissing:
        canvas.stroke(colour, 1.8);
        for (int quarter = 0; quarter < 4; ++quarter)
            painter.drawArc(ring, (quarter * 90 + 20) * 16, 50 * 16);
        break;
    case LinkState::Kind::disabled:
        canvas.stroke(colour, 1.8);
        painter.drawEllipse(ring);
        painter.drawLine(QPointF(4.4, 11.6), QPointF(11.6, 4.4));
        break;
    }
}

void paintState(QPainter& painter, const QRectF& box, LinkState::Kind state, const QPalette& palette) {
    paintState(painter, box, state, theme::tone(theme::toneOf(state), palette));
}

QIcon icon(Symbol symbol) {
    return QIcon(new PathEngine([symbol](QPainter& painter, const QRectF& box, QIcon::Mode mode) {
        paint(painter, box, symbol, iconColour(mode));
    }));
}

QIcon icon(Symbol symbol, theme::Tone tone) {
    return QIcon(new PathEngine([symbol, tone](QPainter& painter, const QRectF& box, QIcon::Mode mode) {
        const bool plain = mode == QIcon::Normal || mode == QIcon::Active;
        paint(painter, box, symbol, plain ? theme::tone(tone, QGuiApplication::palette()) : iconColour(mode));
    }));
}

QIcon stateIcon(LinkState::Kind state) {
    return QIcon(new PathEngine([state](QPainter& painter, const QRectF& box, QIcon::Mode) {
        const QRectF inset =
            box.adjusted(box.width() / 8, box.height() / 8, -box.width() / 8, -box.height() / 8);
        paintState(painter, inset, state, QGuiApplication::palette());
    }));
}

QIcon application() {
    return QIcon(new PathEngine([](QPainter& painter, const QRectF& box, QIcon::Mode) {
        Canvas canvas(painter, box);
        QLinearGradient ground(0, 1, 0, 15);
        ground.setColorAt(0, QColor(0xff2d4a73));
        ground.setColorAt(1, QColor(0xff14233b));
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawRoundedRect(QRectF(1, 1, 14, 14), 3.3, 3.3);
        paintMark(painter, QColor::fromRgba(0x66ffffff), QColor(0xff5fd394), QColor(0xfff2f5f9));
    }));
}

QIcon tray() {
    if (QGuiApplication::platformName() != QStringLiteral("cocoa")) return application();
    QIcon mask(new PathEngine([](QPainter& painter, const QRectF& box, QIcon::Mode) {
        Canvas canvas(painter, box);
        paintMark(painter, Qt::black, Qt::black, Qt::black);
    }));
    mask.setIsMask(true);
    return mask;
}

} // namespace corvane::symbols
