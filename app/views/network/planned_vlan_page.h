// The page of a planned VLAN: what has been written down about it, its presets, and setting it up.
#pragma once

#include "core/support/uuid.h"

#include <QWidget>

#include <memory>

namespace corvane {

class AppModel;
class NetworkCommands;

class PlannedVLANPage : public QWidget {
    Q_OBJECT

  public:
    PlannedVLANPage(AppModel& model, NetworkCommands& commands, QWidget* parent = nullptr);
    ~PlannedVLANPage() override;
    void setPlan(const Uuid& id);
    const Uuid& plan() const;
    /// Puts what the fields say into the library where it is right.
    void commit();
    /// Why the plan can't be set up as the fields describe it; empty when it can.
    const QString& setUpRefusal() const;

  signals:
    void setUpRefusalChanged();

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace corvane
