#include "app/views/widgets/state_dot.h"

#include "app/views/widgets/display_text.h"
#include "app/views/widgets/symbols.h"

#include <QPainter>

namespace corvane {

StateDot::StateDot(int size, QWidget* parent) : QWidget(parent) {
    setFixedSize(size, size);
    setState(LinkState::inactive());
}

void StateDot::setState(const LinkState& state) {
    state_ = state.kind();
    const QString title = oneLine(state.title());
    setAccessibleName(title);
    setToolTip(plainTip(title));
    update();
}

void StateDot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    symbols::paintState(painter, rect(), state_, palette());
}

} // namespace corvane
