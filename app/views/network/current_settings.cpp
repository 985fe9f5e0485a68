#include "app/views/network/current_settings.h"

#include "app/views/widgets/address_row.h"
#include "app/views/widgets/copy_label.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/notice.h"
#include "app/views/widgets/theme.h"
#include "core/netconfig/ipv4.h"

#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace corvane {

namespace {

QString text(const std::optional<std::string>& value) {
    return value ? oneLine(*value) : QString();
}
QString orAbsent(const QString& value) {
    return value.isEmpty() ? absent : value;
}

QString linkText(const ServiceInfo& service) {
    if (!service.hardware) return {};
    if (!service.hardware->present) return QObject::tr("Adapter not present");
    if (!service.linkActive()) return {};
    return *service.linkActive() ? QObject::tr("Up") : QObject::tr("Down");
}

} // namespace

CurrentSettings::CurrentSettings(QWidget* parent)
    : Card(parent), mode_(new ElidedLabel), ip_(new CopyLabel(tr("IP address"))),
      subnet_(new CopyLabel(tr("Subnet mask"))), router_(new CopyLabel(tr("Router"))), link_(new ElidedLabel),
      speed_(new ElidedLabel), mac_(new CopyLabel(tr("MAC address"))), device_(new CopyLabel(tr("Device"))),
      internet_(new ElidedLabel), dns_(new AddressRow(tr("DNS server"))),
      addresses_(new AddressRow(tr("Address"))),
      notices_(new NoticeLines(NoticeLines::Room::onlyWhatIsNeeded)) {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(theme::s);
    grid->setVerticalSpacing(1);
    addValue(grid, 0, 0, tr("Configuration"), mode_);
    addValue(grid, 1, 0, tr("IP address"), ip_);
    addValue(grid, 2, 0, tr("Subnet mask"), subnet_);
    addValue(grid, 3, 0, tr("Router"), router_);
    addValue(grid, 0, 2, tr("Link"), link_);
    addValue(grid, 1, 2, tr("Speed"), speed_);
    addValue(grid, 2, 2, tr("MAC address"), mac_);
    addValue(grid, 3, 2, tr("Device"), device_);
    addValue(grid, 4, 0, tr("DNS servers"), dns_);
    addValue(grid, 5, 0, tr("All addresses"), addresses_);
    addValue(grid, 6, 0, tr("Internet"), internet_);
    grid->setColumnStretch(1, 11);
    grid->setColumnStretch(3, 9);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::l, theme::m, theme::m, theme::m);
    layout->setSpacing(theme::s);
    layout->addLayout(grid);
    layout->addWidget(notices_);
    setService(nullptr);
}

void CurrentSettings::addValue(QGridLayout* grid, int row, int column, const QString& caption,
                               QWidget* value) {
    auto* label = new QLabel(caption, this);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(tr("All addresses")) + theme::xs);
    grid->addWidget(label, row, column);
    if (qobject_cast<ElidedLabel*>(value)) {
        value->setContentsMargins(CopyLabel::padX, CopyLabel::padY, 0, CopyLabel::padY);
    }
    const bool wide = row >= 4;
    grid->addWidget(value, row, column + 1, 1, wide ? 3 : 1);
}

void CurrentSettings::setService(const ServiceInfo* service, const QString& internet) {
    static const CurrentConfig none;
    static const IfconfigInfo noHardware;
    const CurrentConfig& config = service && service->config ? *service->config : none;
    const IfconfigInfo& hardware = service && service->hardware ? *service->hardware : noHardware;

    const bool known = service && service->config;
    mode_->setText(known ? oneLine(config.modeLabel()) : absent);
    ip_->setValue(text(config.ip));
    subnet_->setValue(text(config.subnet));
    const auto prefix = config.subnet ? IPv4::prefixLength(*config.subnet) : std::nullopt;
    if (prefix) {
        const QString both = QStringLiteral("%1 (/%2)").arg(text(config.subnet)).arg(*prefix);
        subnet_->setDisplay(both, both);
    }
    router_->setValue(text(config.router));
    link_->setText(service ? orAbsent(linkText(*service)) : absent);
    QString speed = text(hardware.speedLabel());
    if (hardware.isHalfDuplex())
        speed += (speed.isEmpty() ? QString() : QStringLiteral(" · ")) + tr("half duplex");
    speed_->setText(orAbsent(speed));
    mac_->setValue(text(hardware.mac));
    device_->setValue(service ? text(service->device) : QString());

    internet_->setText(orAbsent(internet));

    QStringList dns, addresses;
    for (const std::string& server : config.dns) dns << oneLine(server);
    for (const std::string& address : hardware.addresses) addresses << oneLine(address);
    dns_->setValues(dns);
    addresses_->setValues(addresses);

    std::vector<Notice> notices;
    if (hardware.isHalfDuplex()) {
        notices.push_back(
            {Notice::Kind::warning,
             tr("The link runs at half duplex: check the cable and the other end’s settings.")});
    }
    notices_->setNotices(std::move(notices));
}

} // namespace corvane
