// A quiet pane with rounded corners that holds what belongs together.
#pragma once

#include <QWidget>

namespace corvane {

class Card : public QWidget {
    Q_OBJECT

  public:
    explicit Card(QWidget* parent = nullptr) : QWidget(parent) {}
    static constexpr qreal radius = 8;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace corvane
