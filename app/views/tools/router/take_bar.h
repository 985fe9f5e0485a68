// The foot of the router's desk: what the next take does, whether the last request was refused, and the
// buttons.
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace corvane {

class ElidedLabel;
class NoticeLines;
class RouterActions;

class TakeBar : public QWidget {
    Q_OBJECT

  public:
    explicit TakeBar(const RouterActions& actions, QWidget* parent = nullptr);
    /// With a sign of warning in front if `warns`.
    void setPlan(const QString& text, bool warns);
    /// Of the last request; quietly as a mere note.
    void setTrouble(const QString& text, bool quietly);
    /// The next press on the force button is meant.
    void setArmed(bool armed);

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void drawSign();
    QLabel* sign_;
    ElidedLabel* plan_;
    NoticeLines* refusal_;
    QPushButton* force_;
};

} // namespace corvane
