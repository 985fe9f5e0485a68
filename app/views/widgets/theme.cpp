#include "app/views/widgets/theme.h"

#include "app/views/system/appearance.h"
#include "app/views/widgets/symbols.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QProxyStyle>
#include <QStyle>
#include <QStyleFactory>
#include <QStyleOption>

#include <algorithm>

namespace corvane::theme {
namespace {

QColor mixed(const QColor& a, const QColor& b, qreal partOfB) {
    const auto blend = [partOfB](int x, int y) { return qRound(x + (y - x) * partOfB); };
    return QColor(blend(a.red(), b.red()), blend(a.green(), b.green()), blend(a.blue(), b.blue()));
}

struct Shades {
    QRgb window, base, alternate, button, text, faint, accent, onAccent, link, tip;
};

constexpr Shades lightShades{0xfff3f4f6, 0xffffffff, 0xfff8f9fa, 0xfffbfbfc, 0xff1a1d21,
                             0xff626973, 0xff2160b8, 0xffffffff, 0xff1d57a8, 0xffffffff};
constexpr Shades darkShades{0xff1b1d20, 0xff151719, 0xff1f2225, 0xff2a2d32, 0xffe3e6ea,
                            0xff98a0ab, 0xff2b66bd, 0xffffffff, 0xff82b4f7, 0xff2a2d32};

QPalette paletteFrom(const Shades& s) {
    QPalette palette;
    const QColor window(s.window), text(s.text), button(s.button);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, QColor(s.base));
    palette.setColor(QPalette::AlternateBase, QColor(s.alternate));
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, button);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::BrightText, QColor(s.onAccent));
    palette.setColor(QPalette::PlaceholderText, QColor(s.faint));
    palette.setColor(QPalette::Highlight, QColor(s.accent));
    palette.setColor(QPalette::HighlightedText, QColor(s.onAccent));
    palette.setColor(QPalette::Link, QColor(s.link));
    palette.setColor(QPalette::LinkVisited, QColor(s.link));
    palette.setColor(QPalette::ToolTipBase, QColor(s.tip));
    palette.setColor(QPalette::ToolTipText, text);
    palette.setColor(QPalette::Light, mixed(button, Qt::white, 0.15));
    palette.setColor(QPalette::Midlight, mixed(button, window, 0.5));
    palette.setColor(QPalette::Mid, mixed(window, text, 0.22));
    palette.setColor(QPalette::Dark, mixed(window, text, 0.38));
    palette.setColor(QPalette::Shadow, Qt::black);
    const QColor disabled = mixed(text, window, 0.5);
    for (const auto role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, mixed(window, text, 0.2));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, disabled);
    return palette;
}

/// Fusion with quieter lines between panes.
class QuietStyle : public QProxyStyle {
  public:
    QuietStyle() : QProxyStyle(QStyleFactory::create(QStringLiteral("Fusion"))) {}

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        if (element == CE_Splitter) {
            const bool upright = option->state & State_Horizontal;
            QRect line = option->rect;
            if (upright)
                line.setWidth(1);
            else
                line.setHeight(1);
            painter->fillRect(line, hairline(option->palette));
            return;
        }
        const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        const bool separates = item && item->menuItemType == QStyleOptionMenuItem::Separator;
        if (element == CE_MenuItem && separates && item->text.isEmpty()) {
            const int middle = option->rect.center().y();
            painter->fillRect(option->rect.left() + s, middle, option->rect.width() - 2 * s, 1,
                              hairline(option->palette));
            return;
        }
        QProxyStyle::drawControl(element, option, painter, widget);
    }

    /// Fusion takes its outlines from a darkened window colour, which vanishes on a dark ground.
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (element != PE_FrameLineEdit && element != PE_IndicatorCheckBox) {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
            return;
        }
        const bool checkBox = element == PE_IndicatorCheckBox;
        const bool focused = (option->state & State_HasFocus) && (option->state & State_Enabled);
        const QColor line = focused ? theme::tone(Tone::accent, option->palette)
                                    : mixed(option->palette.color(QPalette::Window),
                                            option->palette.color(QPalette::WindowText), 0.34);
        const qreal width = focused ? 1.6 : 1.0;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(line, width));
        painter->setBrush(checkBox ? option->palette.brush(QPalette::Base) : QBrush(Qt::NoBrush));
        QRectF box(option->rect);
        if (checkBox) {
            const qreal side = std::min(box.width(), box.height());
            box = QRectF(box.center().x() - side / 2, box.center().y() - side / 2, side, side);
        }
        painter->drawRoundedRect(box.adjusted(width / 2, width / 2, -width / 2, -width / 2), 3, 3);
        if (checkBox && (option->state & State_On)) {
            symbols::paint(*painter, box.adjusted(1, 1, -1, -1), symbols::Symbol::check,
                           option->palette.color(QPalette::Text));
        }
        painter->restore();
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        QSize wanted = QProxyStyle::sizeFromContents(type, option, size, widget);
        if (type == CT_PushButton) wanted.rwidth() += s;
        return wanted;
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        switch (metric) {
        case PM_SplitterWidth:
            return 5;
        case PM_LayoutLeftMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutBottomMargin:
            return m;
        default:
            return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* result) const override {
        if (hint == SH_EtchDisabledText || hint == SH_DitherDisabledText) return 0;
        return QProxyStyle::styleHint(hint, option, widget, result);
    }
};

bool isNative() {
    return QGuiApplication::platformName() == QStringLiteral("cocoa");
}

void setDark(QApplication& application, bool dark) {
    application.setPalette(paletteFrom(dark ? darkShades : lightShades));
}

} // namespace

void apply(QApplication& application, Appearance appearance) {
    if (isNative()) return;
    const bool desktopIsDark =
        isDark(application.palette()) || isDark(application.style()->standardPalette());
    application.setStyle(new QuietStyle);
    setDark(application, appearance == Appearance::system ? desktopIsDark : appearance == Appearance::dark);
    if (appearance == Appearance::system) {
        followDesktopAppearance(&application, [&application](bool dark) { setDark(application, dark); });
    }
}

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightnessF() < palette.color(QPalette::WindowText).lightnessF();
}

QColor tone(Tone tone, const QPalette& palette) {
    const bool dark = isDark(palette);
    switch (tone) {
    case Tone::good:
        return QColor(dark ? 0xff52c47f : 0xff1c7a44);
    case Tone::attention:
        return QColor(dark ? 0xffe2a840 : 0xff8f5c06);
    case Tone::bad:
        return QColor(dark ? 0xffff7a70 : 0xffbf2d28);
    case Tone::neutral:
        return QColor(dark ? 0xff939ca7 : 0xff666e78);
    case Tone::accent:
        return QColor(dark ? 0xff82b4f7 : 0xff2160b8);
    }
    return palette.color(QPalette::WindowText);
}

Tone toneOf(LinkState::Kind state) {
    switch (state) {
    case LinkState::Kind::connected:
        return Tone::good;
    case LinkState::Kind::selfAssigned:
    case LinkState::Kind::noAddress:
        return Tone::attention;
    case LinkState::Kind::noLink:
    case LinkState::Kind::inactive:
    case LinkState::Kind::adapterMissing:
    case LinkState::Kind::disabled:
        return Tone::neutral;
    }
    return Tone::neutral;
}

QColor secondaryText(const QPalette& palette) {
    return mixed(palette.color(QPalette::WindowText), palette.color(QPalette::Window),
                 isDark(palette) ? 0.34 : 0.32);
}

QColor hairline(const QPalette& palette) {
    return mixed(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.13);
}

QColor card(const QPalette& palette) {
    return isDark(palette) ? mixed(palette.color(QPalette::Window), Qt::white, 0.045)
                           : palette.color(QPalette::Base);
}

QFont tabular(QFont font) {
    // Many interface fonts have figures of one width; where they don't, the system's fixed font stands in.
    static QHash<QString, bool> known;
    const QString key = font.toString();
    auto found = known.constFind(key);
    if (found == known.constEnd()) {
        const QFontMetricsF metrics(font);
        bool even = true;
        for (char16_t figure = u'1'; figure <= u'9'; ++figure) {
            even = even &&
                   qAbs(metrics.horizontalAdvance(QChar(figure)) - metrics.horizontalAdvance(u'0')) < 0.01;
        }
        found = known.insert(key, even);
    }
    if (*found) return font;
    font.setFamilies(QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
    return font;
}

namespace {

QFont scaled(QFont font, qreal factor) {
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * factor);
    else
        font.setPixelSize(qRound(font.pixelSize() * factor));
    return font;
}

} // namespace

QFont title(QFont font) {
    font = scaled(font, 1.5);
    font.setWeight(QFont::DemiBold);
    return font;
}

QFont caption(QFont font) {
    return scaled(font, 0.88);
}

} // namespace corvane::theme
