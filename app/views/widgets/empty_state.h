// What a list shows while it is empty: what it is for, and the first thing to do.
#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QPushButton;

namespace corvane {

class EmptyState : public QWidget {
    Q_OBJECT

  public:
    explicit EmptyState(QWidget* parent = nullptr);
    void setTexts(const QString& title, const QString& purpose);
    /// The first one added is the proposed one.
    QPushButton* addAction(const QString& text);

  private:
    QLabel* title_;
    QLabel* purpose_;
    QHBoxLayout* actions_;
};

} // namespace corvane
