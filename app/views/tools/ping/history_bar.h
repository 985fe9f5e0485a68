// The last results of a host as a row of small bars, oldest at the left; it fills from the right.
#pragma once

#include <QPainter>
#include <QPalette>
#include <QString>

#include <vector>

namespace corvane::HistoryBar {

/// Of one slot, in points.
inline constexpr int slotWidth = 3, slotHeight = 10, slotGap = 1;

QSize size();
/// At its own size, at the left of the box and in the middle of its height.
void paint(QPainter& painter, const QRect& box, const std::vector<bool>& history, const QPalette& palette);
/// "28 of last 30 pings answered".
QString help(const std::vector<bool>& history);

} // namespace corvane::HistoryBar
