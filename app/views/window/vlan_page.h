// The page of a planned VLAN: what has been written down about it.
#pragma once

#include "core/support/uuid.h"

#include <QWidget>

class QLabel;

namespace corvane {

class AppModel;

class VlanPage : public QWidget {
    Q_OBJECT

  public:
    explicit VlanPage(AppModel& model, QWidget* parent = nullptr);
    void setVlan(const Uuid& id);

  private:
    void refresh();

    AppModel& model_;
    Uuid id_;
    QLabel* name_;
    QLabel* facts_;
};

} // namespace corvane
