#include "app/views/window/window_place.h"

#include <algorithm>

namespace corvane {
namespace {

/// Room for a title bar above the inner rectangle.
constexpr int titleBar = 32;
constexpr int smallest = 100, largest = 32000;

} // namespace

QByteArray WindowPlace::text() const {
    QByteArray text;
    for (const int number : {normal.x(), normal.y(), normal.width(), normal.height(), maximized ? 1 : 0}) {
        if (!text.isEmpty()) text += ' ';
        text += QByteArray::number(number);
    }
    return text;
}

std::optional<WindowPlace> WindowPlace::parse(const QByteArray& text) {
    const auto pieces = text.split(' ');
    if (pieces.size() != 5) return std::nullopt;
    int numbers[5] = {};
    for (int i = 0; i < 5; ++i) {
        bool fine = false;
        numbers[i] = pieces[i].toInt(&fine);
        if (!fine || std::abs(numbers[i]) > largest) return std::nullopt;
    }
    if (numbers[2] < smallest || numbers[3] < smallest) return std::nullopt;
    return WindowPlace{QRect(numbers[0], numbers[1], numbers[2], numbers[3]), numbers[4] == 1};
}

QRect movedOnScreen(QRect window, const QList<QRect>& screens) {
    if (screens.isEmpty()) return window;
    const auto overlap = [&](const QRect& screen) {
        const QRect common = screen.intersected(window);
        return common.isEmpty() ? 0 : qint64(common.width()) * common.height();
    };
    const QRect screen =
        *std::max_element(screens.begin(), screens.end(),
                          [&](const QRect& a, const QRect& b) { return overlap(a) < overlap(b); });
    const QRect room = screen.adjusted(0, titleBar, 0, 0);
    window.setSize(window.size().boundedTo(room.size()));
    window.moveLeft(std::clamp(window.left(), room.left(), room.right() + 1 - window.width()));
    window.moveTop(std::clamp(window.top(), room.top(), room.bottom() + 1 - window.height()));
    return window;
}

} // namespace corvane
