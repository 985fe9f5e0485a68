// What the sidebar shows and what is selected in it; hidden services, closed groups and the sort order are
// kept in the user's settings.
#pragma once

#include "app/model/network_reader.h"
#include "app/model/sidebar_item.h"
#include "platform/user_defaults.h"

#include <QObject>
#include <QSet>

namespace corvane {

class SidebarState : public QObject {
    Q_OBJECT

  public:
    explicit SidebarState(UserDefaults& defaults, QObject* parent = nullptr);
    /// Reads the kept settings.
    void load();

    const std::optional<SidebarItem>& selection() const { return selection_; }
    void select(const std::optional<SidebarItem>& item);
    const std::optional<std::string>& pendingSelection() const { return pendingSelection_; }
    void setPendingSelection(const std::optional<std::string>& service) { pendingSelection_ = service; }
    /// Makes the pending selection once its service is there, and the default one while nothing is selected.
    void settleSelection(const NetworkSnapshot& network);

    const QSet<QString>& hiddenServices() const { return hidden_; }
    bool isHidden(const std::string& service) const {
        return hidden_.contains(QString::fromStdString(service));
    }
    void setHidden(const std::string& service, bool hidden);
    /// Groups are open until they are closed.
    bool isExpanded(const QString& group) const { return !collapsed_.contains(group); }
    void setExpanded(const QString& group, bool expanded);
    bool sortsByState() const { return sortsByState_; }
    void setSortsByState(bool byState);

    std::vector<ServiceInfo> visibleServices(const NetworkSnapshot& network) const;
    std::optional<SidebarItem> defaultService(const NetworkSnapshot& network) const;

  signals:
    void selectionChanged();
    void changed();

  private:
    UserDefaults& defaults_;
    std::optional<SidebarItem> selection_;
    std::optional<std::string> pendingSelection_;
    QSet<QString> hidden_, collapsed_;
    bool sortsByState_ = true;
};

} // namespace corvane
