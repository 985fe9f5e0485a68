// The foot of the router's desk: what the next take does, whether the last request was refused, and the
// buttons.
#pragma once

#include <QWidget>

class QPushButton;

namespace corvane {

class ElidedLabel;
class NoticeLines;
class RouterActions;

class TakeBar : public QWidget {
    Q_OBJECT

  public:
    explicit TakeBar(const RouterActions& actions, QWidget* parent = nullptr);
    void setPlan(const QString& text);
    /// Has its place whether there is one or not.
    void setRefusal(const QString& text);
    /// The next press on the force button is meant.
    void setArmed(bool armed);

  private:
    ElidedLabel* plan_;
    NoticeLines* refusal_;
    QPushButton* force_;
};

} // namespace corvane
