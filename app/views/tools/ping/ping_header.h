// Over the watched hosts: which group it is and what can be done with it, how many answer, and the monitor's
// own controls.
#pragma once

#include "app/views/tools/ping/ping_row.h"

#include <QWidget>

class QComboBox;
class QLabel;
class QMenu;
class QPushButton;
class QToolButton;

namespace corvane {

class AppModel;
class ElidedLabel;
class PingCommands;

class PingHeader : public QWidget {
    Q_OBJECT

  public:
    PingHeader(AppModel& model, PingCommands& commands, QWidget* parent = nullptr);
    void setDocked(bool docked);
    /// From the model.
    void refresh(const PingSummary& summary);
    void setSummary(const PingSummary& summary);
    /// Everything that concerns groups.
    void fillMenu(QMenu& menu);
    QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void fillGroups();
    void drawSign();
    /// What there is room for.
    void fit();

    AppModel& model_;
    PingCommands& commands_;
    PingSummary summary_;
    QComboBox* groups_;
    QToolButton *more_, *close_;
    QLabel* sign_;
    ElidedLabel* words_;
    QPushButton *pause_, *add_, *sweep_;
};

} // namespace corvane
