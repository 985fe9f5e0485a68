// Where the parts of a host's row stand; shared by the rows and the captions over them.
#pragma once

#include <QFont>
#include <QRect>

namespace corvane {

struct PingColumns {
    /// Empty where there is no room for the part.
    QRect sign, name, host, status, history, route;
    /// How much of the route there is room for: all of it, the interface's name but only the sign of the
    /// warning, or nothing but that sign.
    enum class RouteForm { words, name, sign };
    RouteForm routeForm = RouteForm::words;

    /// What gives way as a row gets narrower: first the words of the route, then its sign, the history and
    /// the address. Name and status always stand.
    static PingColumns fit(const QRect& row, const QFont& font);
    static constexpr int signSide = 12, routeSignSide = 12;
};

} // namespace corvane
