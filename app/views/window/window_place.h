// Where the window stood when it was last used, brought back onto a screen that is there now.
#pragma once

#include <QByteArray>
#include <QList>
#include <QRect>

#include <optional>

namespace corvane {

struct WindowPlace {
    /// The window's inner rectangle while it is neither maximised nor full screen.
    QRect normal;
    bool maximized = false;

    /// "x y width height maximized" as plain text.
    QByteArray text() const;
    /// Nothing when the text is none, or its sizes are absurd.
    static std::optional<WindowPlace> parse(const QByteArray& text);
    friend bool operator==(const WindowPlace&, const WindowPlace&) = default;
};

/// The rectangle moved and, where it must be, made smaller so that all of it and its title bar lie on the
/// screen that it overlaps most; on the first of `screens` when it overlaps none. `screens` are the usable
/// areas.
QRect movedOnScreen(QRect window, const QList<QRect>& screens);

} // namespace corvane
