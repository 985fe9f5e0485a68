// Where the parts of a host's row stand; shared by the rows and the captions over them.
#pragma once

#include <QFont>
#include <QRect>

namespace corvane {

struct PingColumns {
    /// Empty where there is no room for the part.
    QRect sign, name, host, status, history, route;
    /// The route's warning in words; else only its sign, with the words in its tip.
    bool routeInWords = true;

    /// What gives way as a row gets narrower: first the words of the route's warning, then the route, the
    /// history and the address. Name and status always stand.
    static PingColumns fit(const QRect& row, const QFont& font);
    static constexpr int signSide = 12, routeSignSide = 12;
};

} // namespace corvane
