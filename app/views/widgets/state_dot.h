// The mark of a service's link state, as a widget.
#pragma once

#include "core/netconfig/link_state.h"

#include <QWidget>

namespace corvane {

class StateDot : public QWidget {
    Q_OBJECT

  public:
    explicit StateDot(int size, QWidget* parent = nullptr);
    void setState(const LinkState& state);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    LinkState::Kind state_ = LinkState::Kind::inactive;
};

} // namespace corvane
