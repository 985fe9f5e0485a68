#include "app/views/tools/ping/ping_columns.h"

#include "app/views/tools/ping/history_bar.h"
#include "app/views/tools/ping/ping_row.h"
#include "app/views/widgets/theme.h"

#include <QFontMetrics>

namespace corvane {

static constexpr int padX = theme::m, gap = theme::m;

PingColumns PingColumns::fit(const QRect& row, const QFont& font) {
    const QFontMetrics metrics(font), tabular(theme::tabular(font)), caption(theme::caption(font));
    const auto wide = [](const QFontMetrics& of, const QString& text) { return of.horizontalAdvance(text); };
    const int address = wide(tabular, QStringLiteral("255.255.255.255")) + 2 * theme::xs;
    const int status = wide(tabular, QStringLiteral("No reply · last 9999s ago")) + 2;
    const int history = HistoryBar::size().width();
    const int words = routeSignSide + theme::xs + wide(caption, PingRow::Route::noLocalSubnet().label()) + 2;
    const int via = wide(caption, PingRow::Route::local("vlan0000").label());
    const int smallestName = metrics.averageCharWidth() * 14;

    const int inner = row.width() - 2 * padX - signSide - theme::s;
    // The widths of name, address, status, history and route, narrower one after the other.
    const int base = smallestName + gap + status;
    const bool showsHost = inner >= base + gap + address;
    const bool showsHistory = inner >= base + 2 * gap + address + history;
    const int before = base + 3 * gap + address + history;
    const bool showsRoute = inner >= before + routeSignSide;
    PingColumns columns;
    columns.routeForm = inner >= before + words ? RouteForm::words
                        : inner >= before + via ? RouteForm::name
                                                : RouteForm::sign;
    const int routeWidth = columns.routeForm == RouteForm::words  ? words
                           : columns.routeForm == RouteForm::name ? via
                                                                  : routeSignSide;

    int right = row.right() + 1 - padX;
    const auto fromRight = [&](bool shown, int width) {
        if (!shown) return QRect();
        right -= width;
        const QRect made(right, row.top(), width, row.height());
        right -= gap;
        return made;
    };
    columns.route = fromRight(showsRoute, routeWidth);
    columns.history = fromRight(showsHistory, history);
    columns.status = fromRight(true, std::min(status, std::max(0, inner - smallestName - gap)));
    const int left = row.left() + padX + signSide + theme::s;
    // Long names of hosts get a part of what is left over.
    const int rest = right - left - smallestName - gap;
    columns.host = fromRight(showsHost, std::clamp(rest * 2 / 5, address, address * 2));
    columns.sign = QRect(row.left() + padX, row.top() + (row.height() - signSide) / 2, signSide, signSide);
    columns.name = QRect(left, row.top(), std::max(0, right - left), row.height());
    return columns;
}

} // namespace corvane
