// The rows of a table of static routes, edited cell by cell.
#pragma once

#include "app/views/widgets/notice.h"
#include "core/netconfig/static_route.h"

#include <QAbstractTableModel>

#include <set>

namespace corvane {

class RouteTableModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    enum Column { destination, mask, gateway, columns };
    using QAbstractTableModel::QAbstractTableModel;

    /// Changes nothing when these are the routes that it holds.
    void setRoutes(const std::vector<StaticRoute>& routes);
    const std::vector<StaticRoute>& routes() const { return routes_; }
    /// An empty row at the end.
    void add();
    void remove(int row);
    /// What is wrong or odd with a row. In a row that is being filled in for the first time, a field that is
    /// still empty isn't wrong yet.
    std::vector<Notice> notices(int row) const;
    /// Whether the text of a cell is one of the things that are wrong with its row.
    bool isWrong(const QModelIndex& index) const;
    /// The user has left the rows that were being filled in.
    void endEntry(int exceptRow = -1);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

  signals:
    /// By the user.
    void edited();

  private:
    void rowChanged(int row);
    std::vector<StaticRoute> routes_;
    std::set<Uuid> entering_;
};

} // namespace corvane
