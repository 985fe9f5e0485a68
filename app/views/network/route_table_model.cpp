#include "app/views/network/route_table_model.h"

#include "app/views/widgets/display_text.h"

#include <algorithm>

namespace corvane {

namespace {

const std::string& field(const StaticRoute& route, int column) {
    return column == RouteTableModel::destination ? route.destination
           : column == RouteTableModel::mask      ? route.mask
                                                  : route.gateway;
}

/// The core's sentences name their field first.
int columnOf(const std::string& error) {
    if (error.starts_with("Destination")) return RouteTableModel::destination;
    return error.starts_with("Mask") ? RouteTableModel::mask : RouteTableModel::gateway;
}

} // namespace

void RouteTableModel::setRoutes(const std::vector<StaticRoute>& routes) {
    if (routes == routes_) return;
    beginResetModel();
    routes_ = routes;
    std::erase_if(entering_, [&](const Uuid& id) {
        return std::none_of(routes_.begin(), routes_.end(),
                            [&](const auto& route) { return route.id == id; });
    });
    endResetModel();
}

void RouteTableModel::add() {
    const int row = rowCount();
    StaticRoute route;
    route.id = Uuid::generate();
    beginInsertRows({}, row, row);
    entering_.insert(route.id);
    routes_.push_back(std::move(route));
    endInsertRows();
    emit edited();
}

void RouteTableModel::remove(int row) {
    if (row < 0 || row >= rowCount()) return;
    beginRemoveRows({}, row, row);
    entering_.erase(routes_[static_cast<std::size_t>(row)].id);
    routes_.erase(routes_.begin() + row);
    endRemoveRows();
    emit edited();
}

std::vector<Notice> RouteTableModel::notices(int row) const {
    const StaticRoute& route = routes_[static_cast<std::size_t>(row)];
    const bool entering = entering_.contains(route.id);
    std::vector<Notice> notices;
    for (const std::string& error : route.errors()) {
        if (entering && field(route, columnOf(error)).empty()) continue;
        notices.push_back({Notice::Kind::error, oneLine(error)});
    }
    for (const std::string& warning : route.warnings())
        notices.push_back({Notice::Kind::warning, oneLine(warning)});
    return notices;
}

bool RouteTableModel::isWrong(const QModelIndex& index) const {
    const StaticRoute& route = routes_[static_cast<std::size_t>(index.row())];
    if (entering_.contains(route.id) && field(route, index.column()).empty()) return false;
    const auto errors = route.errors();
    return std::any_of(errors.begin(), errors.end(),
                       [&](const std::string& error) { return columnOf(error) == index.column(); });
}

void RouteTableModel::endEntry(int exceptRow) {
    for (int row = 0; row < rowCount(); ++row) {
        const Uuid id = routes_[static_cast<std::size_t>(row)].id;
        if (row == exceptRow || !entering_.contains(id)) continue;
        entering_.erase(id);
        rowChanged(row);
    }
}

void RouteTableModel::rowChanged(int row) {
    emit dataChanged(index(row, 0), index(row, columns - 1));
}

int RouteTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(routes_.size());
}

int RouteTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columns;
}

QVariant RouteTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const QString text = oneLine(field(routes_[static_cast<std::size_t>(index.row())], index.column()));
    QStringList spoken;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return text;
    case Qt::AccessibleTextRole:
        spoken << headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString()
               << (text.isEmpty() ? tr("empty") : text);
        for (const Notice& notice : notices(index.row())) spoken << notice.spoken();
        return spoken.join(QStringLiteral(", "));
    case Qt::ToolTipRole:
        for (const Notice& notice : notices(index.row())) spoken << notice.text;
        return plainTip(spoken.join(QLatin1Char('\n')));
    default:
        return {};
    }
}

bool RouteTableModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || role != Qt::EditRole) return false;
    StaticRoute& route = routes_[static_cast<std::size_t>(index.row())];
    std::string& text = index.column() == destination ? route.destination
                        : index.column() == mask      ? route.mask
                                                      : route.gateway;
    const std::string wanted = value.toString().trimmed().toStdString();
    if (wanted == text) return true;
    text = wanted;
    rowChanged(index.row());
    emit edited();
    return true;
}

QVariant RouteTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    return section == destination ? tr("Destination") : section == mask ? tr("Mask") : tr("Gateway");
}

Qt::ItemFlags RouteTableModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable | Qt::ItemNeverHasChildren;
}

} // namespace corvane
