#include "app/views/tools/ping/ping_row.h"

#include "app/views/tools/ping/history_bar.h"
#include "app/views/widgets/display_text.h"
#include "core/diagnostics/host_text.h"
#include "core/netconfig/ipv4.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace corvane {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("PingRow", text);
}

} // namespace

PingRow::Route PingRow::Route::of(const std::string& host,
                                  const std::vector<Ping::LocalInterface>& interfaces) {
    const auto trimmed = HostText::trim(host);
    if (!IPv4::isValid(trimmed)) return unknown();
    const auto name = Ping::localInterface(trimmed, interfaces);
    return name ? local(*name) : noLocalSubnet();
}

QString PingRow::Route::label() const {
    switch (kind_) {
    case Kind::local:
        return tr("via %1").arg(oneLine(name_));
    case Kind::noLocalSubnet:
        return tr("No matching subnet");
    case Kind::unknown:
        break;
    }
    return {};
}

QString PingRow::Route::help() const {
    if (kind_ != Kind::noLocalSubnet) return {};
    return tr("None of your interfaces has an address in this device's subnet. Apply a preset on the right "
              "network (or it may be reachable through a router).");
}

QString PingRow::milliseconds(double ms) {
    // Half a hundredth goes up, as the tool's decimals have it: 0.045 is a little less than that as a double.
    if (ms < 1) return QString::asprintf("%.2f ms", std::round(ms * 100) / 100);
    // The C library's, which rounds halves to even; without decimals no locale has a say in it.
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "%.0f ms", ms);
    return QString::fromLatin1(text.data());
}

PingRow::Sign PingRow::signOf(const PingMonitor::State* state, bool paused) {
    if (paused) return Sign::paused;
    if (!state || !state->outcome) return Sign::waiting;
    switch (state->outcome->kind()) {
    case PingOutcome::Kind::reply:
        return Sign::reply;
    case PingOutcome::Kind::timeout:
        return Sign::timeout;
    case PingOutcome::Kind::unresolved:
        return Sign::unresolved;
    }
    return Sign::waiting;
}

QString PingRow::statusText(const PingMonitor::State* state, bool paused, const QDateTime& now) {
    switch (signOf(state, paused)) {
    case Sign::paused:
        return tr("Paused");
    case Sign::waiting:
        return QStringLiteral("…");
    case Sign::reply:
        return milliseconds(state->outcome->ms());
    case Sign::unresolved:
        return tr("Unknown host");
    case Sign::timeout:
        break;
    }
    if (!state->lastReply) return tr("No reply");
    // The clock may have been set back since.
    const qint64 seconds = std::max<qint64>(0, state->lastReply->msecsTo(now) / 1000);
    return tr("No reply · last %1s ago").arg(seconds);
}

PingRow PingRow::of(const PingTarget& target, const std::vector<Ping::LocalInterface>& interfaces,
                    const PingMonitor::State* state, bool paused, const QDateTime& now) {
    PingRow row;
    row.key = target.id;
    row.name = oneLine(target.name).trimmed();
    row.host = oneLine(HostText::trim(target.host)).trimmed();
    row.route = Route::of(target.host, interfaces);
    row.setState(state, paused, now);
    return row;
}

void PingRow::setState(const PingMonitor::State* state, bool paused, const QDateTime& now) {
    sign = signOf(state, paused);
    status = statusText(state, paused, now);
    if (state && !paused)
        history = state->history;
    else
        history.clear();
}

QString PingRow::spoken() const {
    QStringList parts;
    if (!name.isEmpty()) parts << name;
    parts << (host.isEmpty() ? tr("no address") : host) << (sign == Sign::waiting ? tr("waiting") : status);
    if (!history.empty()) parts << HistoryBar::help(history);
    if (const QString label = route.label(); !label.isEmpty()) parts << label;
    return parts.join(QStringLiteral(", "));
}

PingSummary PingSummary::of(const std::vector<PingRow>& rows) {
    PingSummary summary;
    for (const PingRow& row : rows)
        if (!row.host.isEmpty()) summary.count(row.sign);
    return summary;
}

PingSummary PingSummary::of(const PingGroup& group, const std::map<Uuid, PingMonitor::State>& states,
                            bool paused) {
    PingSummary summary;
    for (const PingTarget& target : group.targets) {
        if (HostText::trim(target.host).empty()) continue;
        const auto state = states.find(target.id);
        summary.count(PingRow::signOf(state == states.end() ? nullptr : &state->second, paused));
    }
    return summary;
}

void PingSummary::count(PingRow::Sign sign) {
    switch (sign) {
    case PingRow::Sign::reply:
        ++answering;
        break;
    case PingRow::Sign::timeout:
        ++silent;
        break;
    case PingRow::Sign::unresolved:
        ++unresolved;
        break;
    case PingRow::Sign::paused:
        paused = true;
        [[fallthrough]];
    case PingRow::Sign::waiting:
        ++waiting;
        break;
    }
}

QString PingSummary::text() const {
    if (total() == 0) return tr("No hosts");
    if (paused) return total() == 1 ? tr("Paused · 1 host") : tr("Paused · %1 hosts").arg(total());
    if (waiting == total()) return tr("Waiting for the first replies…");
    QStringList parts{answering == total() && total() > 1
                          ? tr("All %1 answer").arg(total())
                          : tr("%1 of %2 answer").arg(answering).arg(total())};
    if (silent > 0) parts << tr("%1 no reply").arg(silent);
    if (unresolved > 0) parts << tr("%1 unknown").arg(unresolved);
    if (waiting > 0) parts << tr("%1 waiting").arg(waiting);
    return parts.join(QStringLiteral(" · "));
}

PingRow::Sign PingSummary::sign() const {
    if (paused) return PingRow::Sign::paused;
    if (silent > 0) return PingRow::Sign::timeout;
    if (unresolved > 0) return PingRow::Sign::unresolved;
    return answering > 0 ? PingRow::Sign::reply : PingRow::Sign::waiting;
}

QString pingGroupTitle(const PingGroup& group) {
    const QString name = oneLine(group.name).trimmed();
    return name.isEmpty() ? tr("Untitled group") : name;
}

QString pingTargetTitle(const PingTarget& target) {
    const QString name = oneLine(target.name).trimmed();
    return name.isEmpty() ? oneLine(target.host).trimmed() : name;
}

} // namespace corvane
