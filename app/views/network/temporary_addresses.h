// The second addresses that the user put on a service's device, each to be taken off again.
#pragma once

#include "app/model/app_model.h"
#include "app/views/widgets/card.h"

class QVBoxLayout;

namespace corvane {

class NetworkCommands;

class TemporaryAddresses : public Card {
    Q_OBJECT

  public:
    TemporaryAddresses(NetworkCommands& commands, QWidget* parent = nullptr);
    /// Hidden while there are none.
    void setAliases(const std::vector<AppModel::TempAlias>& aliases);

  private:
    NetworkCommands& commands_;
    std::vector<AppModel::TempAlias> aliases_;
    QVBoxLayout* rows_;
};

} // namespace corvane
