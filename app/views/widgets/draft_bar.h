// The foot of a page that edits a part of the system as a whole: says whether what stands above is in force,
// puts it there or takes the system's back.
#pragma once

#include "app/views/widgets/symbols.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace corvane {

class DraftBar : public QWidget {
    Q_OBJECT

  public:
    /// `what` names the part in menus: "Service Order".
    explicit DraftBar(const QString& what, QWidget* parent = nullptr);
    enum class State { reading, inForce, differs, applied };
    /// `whyNot` keeps a draft from being applied, in words.
    void setState(State state, const QString& whyNot = {});
    State state() const { return state_; }
    const QString& what() const { return what_; }
    /// Why there is nothing to apply now; empty when there is.
    const QString& whyNotApply() const { return whyNotApply_; }
    const QString& whyNotRevert() const { return whyNotRevert_; }
    QString text() const;

  signals:
    void applyAsked();
    void revertAsked();
    void stateChanged();

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void drawSign();
    QString what_, whyNotApply_, whyNotRevert_;
    State state_ = State::reading;
    QLabel *sign_, *words_;
    QPushButton *revert_, *apply_;
};

} // namespace corvane
