// The sidebar's groups and rows as an item model of two levels, changed row by row.
#pragma once

#include "app/views/widgets/row_sync.h"
#include "app/views/window/sidebar_rows.h"

#include <QAbstractItemModel>

namespace corvane {

class SidebarModel : public QAbstractItemModel {
    Q_OBJECT

  public:
    using QAbstractItemModel::QAbstractItemModel;

    void setGroups(std::vector<SidebarGroup> groups);
    /// Of one group alone; nothing when it isn't shown.
    void setRows(SidebarGroup::Id group, std::vector<SidebarRow> rows);
    /// Null for a group's heading.
    const SidebarRow* row(const QModelIndex& index) const;
    /// Null for a row.
    const SidebarGroup* heading(const QModelIndex& index) const;
    const SidebarGroup* groupOf(const QModelIndex& index) const;
    QModelIndex indexOf(const SidebarItem& item) const;
    QModelIndex indexOf(SidebarGroup::Id group) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex&) const override { return 1; }
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

  private:
    RowChanges changesUnder(const QModelIndex& parent);
    std::vector<SidebarGroup> groups_;
};

} // namespace corvane
