#include "app/views/network/global_presentation.h"

#include "app/model/app_model.h"
#include "app/views/network/preset_presentation.h"
#include "app/views/tools/ping/ping_row.h"
#include "app/views/widgets/display_text.h"

#include <QCoreApplication>

#include <algorithm>

namespace corvane {

namespace {

/// More members than this are counted in words, not listed.
constexpr std::size_t mostListed = 3;

QString tr(const char* text) {
    return QCoreApplication::translate("GlobalPreset", text);
}

bool orderHolds(const AppModel& model, const std::string& service) {
    const auto& order = model.serviceOrder();
    return std::find(order.begin(), order.end(), service) != order.end();
}

/// Null when it names none, or one that is gone.
const PingGroup* pingGroupOf(const GlobalPreset& global, const AppModel& model) {
    return global.pingGroup ? model.pingGroup(*global.pingGroup) : nullptr;
}

QString counted(std::size_t count, const char* one, const char* several) {
    return count == 1 ? tr(one) : tr(several).arg(count);
}

} // namespace

QString inWords(const GlobalPreset& global, const AppModel& model) {
    const auto members = global.resolve(model.library().presets);
    QStringList steps;
    for (std::size_t i = 0; i < std::min(members.size(), mostListed); ++i) {
        steps << tr("%1 to %2").arg(oneLine(members[i].service), oneLine(members[i].summary()));
    }
    if (members.size() > mostListed) {
        steps << counted(members.size() - mostListed, "one more service", "%1 more services");
    }
    QString words = steps.isEmpty() ? QString() : tr("Sets ") + steps.join(tr(", then "));
    if (global.internetService) {
        const QString name = oneLine(*global.internetService);
        words += (words.isEmpty() ? tr("Moves %1") : tr(", then moves %1")).arg(name);
        words += tr(" to the top of the service order");
    }
    if (!words.isEmpty()) words += QLatin1Char('.');
    if (const PingGroup* group = pingGroupOf(global, model)) {
        if (!words.isEmpty()) words += QLatin1Char(' ');
        words += tr("Starts ping group “%1”.").arg(pingGroupTitle(*group));
    }
    return words.isEmpty() ? tr("Changes nothing yet.") : words;
}

std::vector<Row> globalRows(const GlobalPreset& global, const AppModel& model) {
    std::vector<Row> rows;
    for (const NetworkPreset& preset : global.resolve(model.library().presets)) {
        Row row = presetRow(preset, model);
        const ServiceInfo* service = model.service(preset.service);
        row.detail = row.title + QStringLiteral(" · ") + row.detail;
        row.title = oneLine(preset.service);
        if (service) row.state = service->state().kind();
        if (row.mark.isEmpty()) {
            if (!service) {
                row.notices.push_back({Notice::Kind::advice, tr("This machine has no such service now.")});
            } else {
                for (const std::string& sentence : preset.differences(service->config)) {
                    row.notices.push_back({Notice::Kind::hint, oneLine(sentence)});
                }
            }
        }
        rows.push_back(std::move(row));
    }
    if (global.internetService) {
        Row row;
        row.id = internetRowId;
        row.title = tr("Service order");
        row.detail = tr("%1 moves to the top and carries internet").arg(oneLine(*global.internetService));
        if (!orderHolds(model, *global.internetService)) {
            row.notices.push_back(
                {Notice::Kind::advice,
                 tr("%1 isn’t in this machine’s service order, which therefore stays as it is.")
                     .arg(oneLine(*global.internetService))});
        } else if (model.serviceOrder().front() == *global.internetService) {
            row.mark = tr("On top");
        } else {
            row.notices.push_back(
                {Notice::Kind::hint, tr("%1 is on top now.").arg(oneLine(model.serviceOrder().front()))});
        }
        rows.push_back(std::move(row));
    }
    if (const PingGroup* group = pingGroupOf(global, model)) {
        Row row;
        row.id = pingRowId;
        row.title = tr("Ping monitor");
        row.detail = tr("Starts ping group “%1” · %2")
                         .arg(pingGroupTitle(*group), counted(group->targets.size(), "1 host", "%1 hosts"));
        if (model.showPing() && !model.pingPaused() && model.activePingGroup() == group->id) {
            row.mark = tr("Watched now");
            row.markSign = symbols::Symbol::ping;
        } else if (group->targets.empty()) {
            row.notices.push_back({Notice::Kind::advice, tr("It has no hosts yet.")});
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<Notice> globalNotices(const GlobalPreset& global, const AppModel& model) {
    const auto& presets = model.library().presets;
    const auto members = global.resolve(presets);
    std::vector<Notice> notices;
    std::optional<std::vector<std::string>> order;
    if (global.internetService && orderHolds(model, *global.internetService)) order = model.serviceOrder();
    for (const std::string& error : ApplyPlan(global.name, members, order).errors()) {
        notices.push_back({Notice::Kind::error, oneLine(error)});
    }

    std::size_t missing = 0, doubled = 0;
    for (const Uuid& id : global.members) {
        const auto found = std::find_if(presets.begin(), presets.end(),
                                        [&](const NetworkPreset& preset) { return preset.id == id; });
        const bool applied = std::any_of(members.begin(), members.end(),
                                         [&](const NetworkPreset& preset) { return preset.id == id; });
        if (found == presets.end())
            ++missing;
        else if (!applied)
            ++doubled;
    }
    if (missing > 0) {
        notices.push_back({Notice::Kind::advice,
                           counted(missing, "One preset of this set no longer exists; it is passed over.",
                                   "%1 presets of this set no longer exist; they are passed over.")});
    }
    if (doubled > 0) {
        notices.push_back({Notice::Kind::advice,
                           counted(doubled, "One preset is passed over, as its service has one further up.",
                                   "%1 presets are passed over, as their services have one further up.")});
    }
    if (global.pingGroup && !model.pingGroup(*global.pingGroup)) {
        notices.push_back(
            {Notice::Kind::advice, tr("The ping group of this set no longer exists; none is started.")});
    }
    return notices;
}

} // namespace corvane
