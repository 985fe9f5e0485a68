// The look in one place: palettes for light and dark, the state colours, sizes. Pure functions of a palette:
// no widget keeps colours of its own.
#pragma once

#include "core/netconfig/link_state.h"

#include <QColor>
#include <QFont>
#include <QPalette>

class QApplication;

namespace corvane::theme {

enum class Appearance { system, light, dark };

/// Sets style and palette. On a Mac the native style stands and follows the system by itself.
void apply(QApplication& application, Appearance appearance);
bool isDark(const QPalette& palette);

/// Colour only for state, and never alone: a shape or a word stands beside it.
enum class Tone { good, attention, bad, neutral, accent };
QColor tone(Tone tone, const QPalette& palette);
Tone toneOf(LinkState::Kind state);
/// Text that is secondary but still readable (at least 4.5:1).
QColor secondaryText(const QPalette& palette);
QColor hairline(const QPalette& palette);
QColor card(const QPalette& palette);

/// Tabular figures for numbers and addresses.
QFont tabular(QFont font);
QFont title(QFont font);
QFont caption(QFont font);

/// Distances in device-independent pixels: 4, 8, 12, 16, 24.
inline constexpr int xs = 4, s = 8, m = 12, l = 16, xl = 24;

} // namespace corvane::theme
