#include "app/views/tools/tool_presentation.h"

#include "app/clients/ping_monitor.h"
#include "app/clients/videohub_client.h"
#include "app/model/app_model.h"
#include "app/views/tools/ping/ping_row.h"
#include "app/views/widgets/display_text.h"

namespace corvane {
namespace {

using namespace Qt::StringLiterals;

QString pingDetail(AppModel& model) {
    const auto id = model.activePingGroup();
    const PingGroup* group = id && model.showPing() ? model.pingGroup(*id) : nullptr;
    if (!group) return toolPurpose(Tool::ping);
    const QString name = pingGroupTitle(*group);
    if (model.pingPaused()) return u"Paused · "_s + name;
    const auto summary = PingSummary::of(*group, model.pinger().states(), false);
    if (summary.waiting == summary.total()) return u"%1 · %2"_s.arg(summary.text(), name);
    return u"%1 of %2 answer · %3"_s.arg(summary.answering).arg(summary.total()).arg(name);
}

QString routerDetail(AppModel& model) {
    const auto& client = model.videohub();
    switch (client.status().kind()) {
    case ConnectionStatus::Kind::idle:
        return toolPurpose(Tool::videohub);
    case ConnectionStatus::Kind::connecting:
        return u"Connecting · "_s + oneLine(client.host());
    case ConnectionStatus::Kind::connected:
        return u"Connected · "_s + oneLine(client.host());
    case ConnectionStatus::Kind::failed:
        return u"No connection · "_s + oneLine(client.host());
    }
    return {};
}

} // namespace

QString toolTitle(Tool tool) {
    switch (tool) {
    case Tool::ping:
        return u"Ping Monitor"_s;
    case Tool::videohub:
        return u"Video Router"_s;
    }
    return {};
}

QString toolPurpose(Tool tool) {
    switch (tool) {
    case Tool::ping:
        return u"Does the gear answer?"_s;
    case Tool::videohub:
        return u"Blackmagic Videohub"_s;
    }
    return {};
}

symbols::Symbol toolSign(Tool tool) {
    switch (tool) {
    case Tool::ping:
        return symbols::Symbol::ping;
    case Tool::videohub:
        return symbols::Symbol::router;
    }
    return symbols::Symbol::info;
}

QString toolDetail(AppModel& model, Tool tool) {
    return tool == Tool::ping ? pingDetail(model) : routerDetail(model);
}

} // namespace corvane
