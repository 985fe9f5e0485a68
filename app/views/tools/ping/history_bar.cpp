#include "app/views/tools/ping/history_bar.h"

#include "app/clients/ping_monitor.h"
#include "app/views/widgets/theme.h"

#include <QCoreApplication>

#include <algorithm>

namespace corvane::HistoryBar {

static constexpr int slotCount = static_cast<int>(PingMonitor::State::historyLimit);
/// A miss is cut in the middle, so that it differs by more than its colour.
static constexpr int cutHeight = 2;

QSize size() {
    return {slotCount * (slotWidth + slotGap) - slotGap, slotHeight};
}

void paint(QPainter& painter, const QRect& box, const std::vector<bool>& history, const QPalette& palette) {
    QColor empty = theme::tone(theme::Tone::neutral, palette);
    empty.setAlphaF(0.15F);
    const QColor reply = theme::tone(theme::Tone::good, palette),
                 miss = theme::tone(theme::Tone::bad, palette);
    const int filled = std::min(static_cast<int>(history.size()), slotCount);
    const auto first = history.end() - filled;
    const int top = box.top() + (box.height() - slotHeight) / 2;
    for (int i = 0; i < slotCount; ++i) {
        const int past = i - (slotCount - filled);
        const QColor& colour = past < 0 ? empty : *(first + past) ? reply : miss;
        const int left = box.left() + i * (slotWidth + slotGap);
        if (past < 0 || *(first + past)) {
            painter.fillRect(left, top, slotWidth, slotHeight, colour);
            continue;
        }
        const int half = (slotHeight - cutHeight) / 2;
        painter.fillRect(left, top, slotWidth, half, colour);
        painter.fillRect(left, top + slotHeight - half, slotWidth, half, colour);
    }
}

QString help(const std::vector<bool>& history) {
    const auto answered = std::count(history.begin(), history.end(), true);
    return QCoreApplication::translate("HistoryBar", "%1 of last %2 pings answered")
        .arg(answered)
        .arg(history.size());
}

} // namespace corvane::HistoryBar
