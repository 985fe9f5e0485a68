#include "app/views/tools/router/router_presentation.h"

#include "app/views/tools/router/router_requests.h"
#include "app/views/widgets/display_text.h"

#include <QCoreApplication>

#include <algorithm>

namespace corvane {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("RouterPage", text);
}

QString labelOf(const std::map<int, std::string>& labels, int index) {
    const auto found = labels.find(index);
    return found == labels.end() ? QString() : oneLine(found->second);
}

} // namespace

std::optional<RouterMessage> routerMessage(const ConnectionStatus& status, const Videohub::State& state) {
    using Kind = ConnectionStatus::Kind;
    if (status.kind() == Kind::idle) {
        return RouterMessage{tr("Enter the router's IP address and connect."),
                             tr("Its outputs then stand here with what they show, and any source can be "
                                "routed to them.")};
    }
    if (!status.isConnected()) {
        // The same for every attempt, so that it stands still while they come and go.
        return RouterMessage{tr("No connection to the router yet."),
                             tr("The outputs and sources appear as soon as it answers.")};
    }
    if (state.present == "false") {
        return RouterMessage{tr("The Videohub Server has no router connected."),
                             tr("The outputs and sources appear as soon as the server finds one.")};
    }
    if (state.present && state.present != "true") {
        return RouterMessage{
            tr("The router needs a firmware update (%1).").arg(oneLine(*state.present)),
            tr("The maker’s setup program installs it. Until then the router can’t be controlled.")};
    }
    if (state.outputs().empty()) {
        return RouterMessage{state.present ? tr("The router names no outputs.")
                                           : tr("Waiting for the router’s state…"),
                             tr("The outputs and sources appear as soon as it tells of them.")};
    }
    return std::nullopt;
}

QString lockText(Videohub::Lock lock) {
    switch (lock) {
    case Videohub::Lock::unlocked:
        return {};
    case Videohub::Lock::owned:
        return tr("Locked by this Mac");
    case Videohub::Lock::lockedByOther:
        return tr("Locked by another client");
    }
    return {};
}

QString troubleText(const Videohub::State& state, const RouterRequests& requests) {
    using Trouble = RouterRequests::Trouble;
    switch (requests.trouble()) {
    case Trouble::unsent:
        return tr("Not sent: there was no connection.");
    case Trouble::unanswered:
        return tr("The router hasn’t answered the last request.");
    case Trouble::refused:
    case Trouble::none:
        break;
    }
    const bool refused = requests.trouble() == Trouble::refused || state.lastReply == "NAK";
    return refused ? tr("The router refused the last request (NAK).") : QString();
}

QString routerDetail(const Videohub::State& state) {
    const QString size = QStringLiteral("%1 × %2").arg(state.inputs().size()).arg(state.outputs().size());
    const QString model = oneLine(state.model);
    if (state.outputs().empty()) return model;
    return model.isEmpty() ? size : size + QStringLiteral(" · ") + model;
}

QString chosenText(const std::vector<OutputRow>& chosen) {
    return chosen.size() == 1 ? chosen.front().title() : tr("%1 outputs").arg(chosen.size());
}

QString planText(const std::vector<OutputRow>& chosen, const SourceRow* source, bool takes) {
    if (chosen.empty()) return tr("Choose an output, then a source.");
    const auto isLocked = [](const OutputRow& row) { return row.lock != Videohub::Lock::unlocked; };
    const auto locked = std::count_if(chosen.begin(), chosen.end(), isLocked);
    // First, since the end may be cut off.
    const QString held = locked == 0          ? QString()
                         : chosen.size() == 1 ? lockText(chosen.front().lock)
                                              : tr("%1 of them locked").arg(locked);
    QString plan;
    if (takes && source)
        plan = QStringLiteral("%1 ← %2").arg(chosenText(chosen), source->title());
    else if (chosen.size() == 1)
        plan = tr("%1 shows %2").arg(chosenText(chosen), source ? source->title() : absent);
    else
        plan = tr("%1 show %2").arg(chosenText(chosen), source ? source->title() : tr("several sources"));
    return held.isEmpty() ? plan : held + QStringLiteral(" · ") + plan;
}

std::vector<OutputRow> outputRows(const Videohub::State& state, const RouterRequests& requests) {
    std::vector<OutputRow> rows;
    for (const int output : state.outputs()) {
        OutputRow row;
        row.index = output;
        row.name = oneLine(state.outputName(output));
        row.label = labelOf(state.outputLabels, output);
        row.namePending = requests.outputNamePending(output);
        if (const auto route = state.routing.find(output); route != state.routing.end()) {
            row.source = route->second;
            row.sourceName = oneLine(state.inputName(route->second));
        }
        if (const auto lock = state.locks.find(output); lock != state.locks.end()) row.lock = lock->second;
        row.sourcePending = requests.routePending(output);
        if (row.sourcePending) {
            row.sourcePendingName = QStringLiteral("%1 %2")
                                        .arg(*row.sourcePending + 1)
                                        .arg(oneLine(state.inputName(*row.sourcePending)));
        }
        row.lockPending = requests.lockPending(output);
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<SourceRow> sourceRows(const Videohub::State& state, const RouterRequests& requests,
                                  const std::vector<int>& chosen, std::optional<int> preselected) {
    std::vector<SourceRow> rows;
    for (const int input : state.inputs()) {
        SourceRow row;
        row.index = input;
        row.name = oneLine(state.inputName(input));
        row.label = labelOf(state.inputLabels, input);
        row.namePending = requests.inputNamePending(input);
        row.isPreselected = preselected == input;
        rows.push_back(std::move(row));
    }
    for (const auto& [output, input] : state.routing) {
        if (input >= static_cast<int>(rows.size())) continue;
        SourceRow& row = rows[static_cast<std::size_t>(input)];
        row.shownOn << QStringLiteral("%1 %2").arg(output + 1).arg(oneLine(state.outputName(output)));
        row.isCurrent = row.isCurrent || std::binary_search(chosen.begin(), chosen.end(), output);
    }
    return rows;
}

} // namespace corvane
