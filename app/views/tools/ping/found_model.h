// The hosts that a sweep found, each to be chosen or not.
#pragma once

#include "app/clients/subnet_sweep.h"

#include <QAbstractTableModel>

#include <functional>
#include <string>
#include <vector>

namespace corvane {

class FoundModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    enum Column { address, roundTrip, note, columns };
    /// What is to be said about an address; one that something is said about isn't chosen by itself.
    using Note = std::function<QString(const std::string& address)>;

    using QAbstractTableModel::QAbstractTableModel;
    void setNote(Note tell);
    /// When what the notes tell of has changed.
    void refreshNotes();
    void clear();
    /// Addresses come in between those that stand; what was chosen stays so.
    void setFound(const std::vector<SubnetSweep::Found>& found);
    /// In order of address.
    std::vector<std::string> chosen() const;
    /// All of which nothing is said, or none.
    void choose(bool all);
    int choosable() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : columns; }
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

  signals:
    void chosenChanged();

  private:
    struct Line {
        std::string address;
        double ms;
        QString note;
        bool chosen;
        /// By the user, one way or the other; else it is chosen while nothing is said about it.
        bool touched;
    };
    std::vector<Line> lines_;
    Note tell_;
};

} // namespace corvane
