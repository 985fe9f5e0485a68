// The page of one global preset: what it changes on which service, and whether each part is in force.
#pragma once

#include "core/support/uuid.h"

#include <QWidget>

#include <memory>

namespace corvane {

class AppModel;
class NetworkCommands;

class GlobalPage : public QWidget {
    Q_OBJECT

  public:
    GlobalPage(AppModel& model, NetworkCommands& commands, QWidget* parent = nullptr);
    ~GlobalPage() override;
    void setGlobal(const Uuid& id);

  private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace corvane
