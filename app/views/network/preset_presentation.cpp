#include "app/views/network/preset_presentation.h"

#include "app/model/app_model.h"
#include "app/views/widgets/display_text.h"
#include "core/netconfig/preset_advice.h"

namespace corvane {

namespace {

void add(std::vector<Notice>& notices, Notice::Kind kind, const std::string& sentence) {
    notices.push_back({kind, oneLine(sentence)});
}

} // namespace

QString presetId(const Uuid& id) {
    return QString::fromStdString(id.text());
}

QString presetTitle(const NetworkPreset& preset) {
    const QString name = oneLine(preset.name);
    return name.trimmed().isEmpty() ? oneLine(preset.summary()) : name;
}

QString presetDetail(const NetworkPreset& preset) {
    QString detail = oneLine(preset.summary());
    if (!preset.dns.empty()) {
        detail += QStringLiteral(" · DNS ") + joined(preset.dns, QStringLiteral(", "));
    }
    return detail;
}

Row presetRow(const NetworkPreset& preset, const AppModel& model) {
    Row row;
    row.id = presetId(preset.id);
    row.title = presetTitle(preset);
    row.detail = presetDetail(preset);
    for (const std::string& warning : preset.warnings()) add(row.notices, Notice::Kind::warning, warning);
    for (const std::string& error : preset.errors()) add(row.notices, Notice::Kind::error, error);
    if (const auto advice = PresetAdvice::addressInUse(preset, model.services())) {
        add(row.notices, Notice::Kind::advice, *advice);
    }
    if (model.isActive(preset)) {
        row.mark = QObject::tr("Active");
        row.tip = QObject::tr("The service’s current settings are those of this preset.");
        return row;
    }
    const ServiceInfo* service = model.service(preset.service);
    const auto config = service ? service->config : std::nullopt;
    row.tip = QObject::tr("Not active:") + QLatin1Char('\n') +
              joined(preset.differences(config), QStringLiteral("\n"));
    return row;
}

FieldNotices fieldNotices(const NetworkPreset& preset, const std::vector<ServiceInfo>& services) {
    FieldNotices notices;
    for (const std::string& error : preset.errors()) {
        // The sentences name their field first.
        const auto about = [&](const char* field) { return error.rfind(field, 0) == 0; };
        auto& field = about("IP address")    ? notices.ip
                      : about("Subnet mask") ? notices.subnet
                      : about("Router")      ? notices.router
                      : about("DNS server")  ? notices.dns
                                             : notices.service;
        add(field, Notice::Kind::error, error);
    }
    // An unfinished address or mask would only repeat its own error as a router that doesn't fit.
    if (notices.ip.empty() && notices.subnet.empty() && notices.router.empty()) {
        for (const std::string& warning : preset.warnings())
            add(notices.router, Notice::Kind::warning, warning);
    }
    if (const auto advice = PresetAdvice::addressInUse(preset, services)) {
        add(notices.ip, Notice::Kind::advice, *advice);
    }
    return notices;
}

} // namespace corvane
