// Shows the model's alerts.
#pragma once

#include "app/model/dialogs.h"
#include "app/views/widgets/panel.h"

#include <QPointer>

namespace corvane {

/// One alert, titled "Wendrel".
class AlertPanel : public Panel {
    Q_OBJECT

  public:
    AlertPanel(Alerts::Kind kind, const QString& message, const QString& details, QWidget* parent = nullptr);
};

class AlertBox : public Alerts {
  public:
    /// Alerts are shown over this window while it is in sight.
    void setWindow(QWidget* window) { window_ = window; }
    void show(Kind kind, const QString& message, const QString& details) override;

  private:
    QPointer<QWidget> window_;
};

} // namespace corvane
