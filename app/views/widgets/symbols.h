// The program's signs, drawn as paths so that they are sharp at every scale and need no image plugin. All
// take their colours from the palette in use.
#pragma once

#include "app/views/widgets/theme.h"

#include <QIcon>

class QPainter;

namespace corvane::symbols {

enum class Symbol {
    check,
    chevronRight,
    chevronDown,
    globe,
    warning,
    error,
    info,
    plus,
    globalPreset,
    vlan,
    service,
    order,
    pencil,
    ping,
    router,
    more,
    close,
    lock,
    lockOpen,
    lockBarred
};

/// Fills the largest square in the middle of `box`.
void paint(QPainter& painter, const QRectF& box, Symbol symbol, const QColor& colour);
/// One shape a state, so that no two differ by colour alone: a disc when connected, a triangle for a
/// self-assigned address, a half disc for a link without one, a ring without a link, a small ring when not
/// connected, a broken ring without an adapter, a barred ring when disabled.
void paintState(QPainter& painter, const QRectF& box, LinkState::Kind state, const QColor& colour);
/// In the tone of the state.
void paintState(QPainter& painter, const QRectF& box, LinkState::Kind state, const QPalette& palette);

/// Drawn anew in the palette's text colour each time that it is painted.
QIcon icon(Symbol symbol);
QIcon icon(Symbol symbol, theme::Tone tone);
QIcon stateIcon(LinkState::Kind state);
QIcon application();
/// For the menu bar or tray; a mask that the system colours where it does so.
QIcon tray();

} // namespace corvane::symbols
