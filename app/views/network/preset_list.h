// The presets of one service: chosen, applied, edited, ordered.
#pragma once

#include "app/views/widgets/card.h"
#include "core/support/uuid.h"

#include <optional>
#include <string>

class QPushButton;
class QStackedLayout;

namespace corvane {

class AppModel;
class EmptyState;
class NetworkCommands;
class RowList;

class PresetList : public Card {
    Q_OBJECT

  public:
    /// With `later`, for a service that doesn't exist yet: its presets can't be applied now, and this says
    /// so.
    PresetList(AppModel& model, NetworkCommands& commands, QWidget* parent = nullptr,
               const QString& later = {});
    /// Shows that service's presets, with this one chosen if it is among them.
    void setService(const std::string& service, const std::optional<Uuid>& chosen);
    void refresh();
    void choose(const Uuid& preset);
    std::optional<Uuid> chosen() const;

  signals:
    void chosenChanged();

  private:
    void showMenu(const QString& id, const QPoint& place);
    AppModel& model_;
    NetworkCommands& commands_;
    std::string service_;
    QString later_;
    RowList* rows_;
    EmptyState* empty_;
    QPushButton* fromCurrent_ = nullptr;
    QStackedLayout* stack_;
    /// While another service's rows come in, changes of the current row are nobody's choice.
    bool switching_ = false;
};

} // namespace corvane
