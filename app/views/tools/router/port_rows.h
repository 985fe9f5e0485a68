// The outputs and inputs of a router as rows, changed row by row, and a filter over them.
#pragma once

#include "core/devices/videohub.h"

#include <QAbstractListModel>
#include <QSortFilterProxyModel>

#include <functional>
#include <optional>
#include <vector>

namespace corvane {

/// A row's place is its port's index on the wire; people count from 1.
struct PortRow {
    int index = 0;
    /// The label, or "Input 1" and the like in its place.
    QString name, label;
    /// A new name that the router hasn't reported yet.
    std::optional<QString> namePending;

    int number() const { return index + 1; }
    /// "3 Cam 3".
    QString title() const;
    friend bool operator==(const PortRow&, const PortRow&) = default;
};

struct OutputRow : PortRow {
    /// What it shows; nothing before the router has said.
    std::optional<int> source;
    QString sourceName;
    Videohub::Lock lock = Videohub::Lock::unlocked;
    /// Asked for and not reported yet.
    std::optional<int> sourcePending;
    /// With its number.
    QString sourcePendingName;
    bool lockPending = false;

    /// All of it as it is read aloud, and what the row alone doesn't say.
    QString spoken() const;
    QString tip() const;
    friend bool operator==(const OutputRow&, const OutputRow&) = default;
};

struct SourceRow : PortRow {
    /// A chosen output shows it.
    bool isCurrent = false;
    /// The chosen outputs get it with the next take.
    bool isPreselected = false;
    /// Outputs that show it, by name.
    QStringList shownOn;

    QString spoken() const;
    QString tip() const;
    friend bool operator==(const SourceRow&, const SourceRow&) = default;
};

enum PortRole { portRole = Qt::UserRole };

class PortModel : public QAbstractListModel {
    Q_OBJECT

  public:
    using QAbstractListModel::QAbstractListModel;
    virtual const PortRow& port(int row) const = 0;
    /// Changes nothing but asks for the new name.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

  signals:
    void renameAsked(int port, const QString& name);
};

template <typename Row>
class PortRows : public PortModel {
  public:
    using PortModel::PortModel;

    const std::vector<Row>& rows() const { return rows_; }
    const Row& row(int port) const { return rows_[static_cast<std::size_t>(port)]; }
    const PortRow& port(int row) const override { return this->row(row); }
    bool has(int port) const { return port >= 0 && port < rowCount(); }

    void setRows(std::vector<Row> rows) {
        const auto wanted = static_cast<int>(rows.size());
        if (rowCount() > wanted) {
            beginRemoveRows({}, wanted, rowCount() - 1);
            rows_.resize(rows.size());
            endRemoveRows();
        }
        const int kept = rowCount();
        int first = -1;
        for (int i = 0; i <= kept; ++i) {
            const auto at = static_cast<std::size_t>(i);
            if (i < kept && rows_[at] != rows[at]) {
                rows_[at] = std::move(rows[at]);
                if (first < 0) first = i;
            } else if (first >= 0) {
                emit dataChanged(index(first), index(i - 1));
                first = -1;
            }
        }
        if (wanted == kept) return;
        beginInsertRows({}, kept, wanted - 1);
        rows_.insert(rows_.end(), std::make_move_iterator(rows.begin() + kept),
                     std::make_move_iterator(rows.end()));
        endInsertRows();
    }

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    QVariant data(const QModelIndex& index, int role) const override;

  private:
    std::vector<Row> rows_;
};

using OutputRows = PortRows<OutputRow>;
using SourceRows = PortRows<SourceRow>;

/// Rows whose number or name holds what is searched for, and which the owner wants to see.
class PortFilter : public QSortFilterProxyModel {
    Q_OBJECT

  public:
    using Keep = std::function<bool(int port)>;
    explicit PortFilter(PortModel& ports, QObject* parent = nullptr);

    void setText(const QString& text);
    /// Asked again for a row when it changes.
    void setKeep(Keep keep);
    /// The row that has exactly the number that is searched for, else the first one; invalid without any.
    QModelIndex best() const;
    /// Invalid while it is filtered out.
    QModelIndex indexOf(int port) const;

  protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

  private:
    PortModel& ports_;
    QString text_;
    Keep keep_;
};

} // namespace corvane
