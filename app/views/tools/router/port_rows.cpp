#include "app/views/tools/router/port_rows.h"

#include "app/views/tools/router/router_presentation.h"
#include "app/views/widgets/display_text.h"

namespace corvane {

namespace {

/// Longer lists say how many more there are.
constexpr int mostNamed = 8;

QString named(const QStringList& names) {
    if (names.size() <= mostNamed) return names.join(QStringLiteral(", "));
    return PortModel::tr("%1 and %2 more")
        .arg(names.mid(0, mostNamed - 1).join(QStringLiteral(", ")))
        .arg(names.size() - mostNamed + 1);
}

QString renaming(const PortRow& row) {
    return row.namePending ? PortModel::tr("New name asked for, not confirmed: %1").arg(*row.namePending)
                           : QString();
}

QString joinedTip(QStringList lines) {
    lines.removeAll({});
    return plainTip(lines.join(QLatin1Char('\n')));
}

} // namespace

QString PortRow::title() const {
    return QStringLiteral("%1 %2").arg(number()).arg(name);
}

QString OutputRow::spoken() const {
    QStringList parts{PortModel::tr("Output %1, %2").arg(number()).arg(name)};
    parts << (source ? PortModel::tr("shows input %1, %2").arg(*source + 1).arg(sourceName)
                     : PortModel::tr("source unknown"));
    if (lock != Videohub::Lock::unlocked) parts << lockText(lock);
    if (sourcePending) parts << PortModel::tr("input %1 asked for, not confirmed").arg(*sourcePending + 1);
    if (lockPending) parts << PortModel::tr("change of the lock not confirmed");
    if (namePending) parts << renaming(*this);
    return parts.join(QStringLiteral(", "));
}

QString OutputRow::tip() const {
    QStringList lines{title()};
    lines << (source ? PortModel::tr("Shows %1 %2").arg(*source + 1).arg(sourceName) : QString());
    lines << lockText(lock);
    if (sourcePending) {
        lines << PortModel::tr("Asked for, not confirmed: %1").arg(sourcePendingName);
    }
    if (lockPending) lines << PortModel::tr("The router hasn’t confirmed the change of the lock.");
    lines << renaming(*this);
    return joinedTip(lines);
}

QString SourceRow::spoken() const {
    QStringList parts{PortModel::tr("Input %1, %2").arg(number()).arg(name)};
    if (isCurrent) parts << PortModel::tr("shown on the chosen output");
    if (isPreselected) parts << PortModel::tr("ready to take");
    if (namePending) parts << renaming(*this);
    return parts.join(QStringLiteral(", "));
}

QString SourceRow::tip() const {
    return joinedTip({title(),
                      shownOn.isEmpty() ? PortModel::tr("Shown on no output")
                                        : PortModel::tr("Shown on %1").arg(named(shownOn)),
                      renaming(*this)});
}

bool PortModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || role != Qt::EditRole) return false;
    const QString name = oneLine(value.toString());
    if (name != port(index.row()).label) emit renameAsked(index.row(), name);
    return true;
}

Qt::ItemFlags PortModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsEditable | Qt::ItemNeverHasChildren;
}

template <typename Row>
QVariant PortRows<Row>::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Row& row = this->row(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return row.title();
    case Qt::EditRole:
        return row.label;
    case Qt::ToolTipRole:
        return row.tip();
    case Qt::AccessibleTextRole:
        return row.spoken();
    case portRole:
        return row.index;
    default:
        return {};
    }
}

template class PortRows<OutputRow>;
template class PortRows<SourceRow>;

PortFilter::PortFilter(PortModel& ports, QObject* parent) : QSortFilterProxyModel(parent), ports_(ports) {
    setSourceModel(&ports_);
}

void PortFilter::setText(const QString& text) {
    const QString wanted = text.simplified();
    if (wanted == text_) return;
    text_ = wanted;
    invalidateFilter();
}

void PortFilter::setKeep(Keep keep) {
    keep_ = std::move(keep);
    invalidateFilter();
}

bool PortFilter::filterAcceptsRow(int row, const QModelIndex&) const {
    if (keep_ && !keep_(row)) return false;
    if (text_.isEmpty()) return true;
    const PortRow& port = ports_.port(row);
    return QString::number(port.number()).startsWith(text_) ||
           port.name.contains(text_, Qt::CaseInsensitive) || port.title().startsWith(text_);
}

QModelIndex PortFilter::best() const {
    bool isNumber = false;
    const int number = text_.toInt(&isNumber);
    const QModelIndex exact = isNumber ? indexOf(number - 1) : QModelIndex();
    return exact.isValid() ? exact : index(0, 0);
}

QModelIndex PortFilter::indexOf(int port) const {
    return port < 0 || port >= ports_.rowCount() ? QModelIndex() : mapFromSource(ports_.index(port));
}

} // namespace corvane
