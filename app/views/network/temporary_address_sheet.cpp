#include "app/views/network/temporary_address_sheet.h"

#include "app/model/app_model.h"
#include "app/views/network/form.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/theme.h"
#include "core/netconfig/preset_advice.h"
#include "core/netconfig/temporary_address.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace corvane {

QString TemporaryAddressSheet::refusal(const ServiceInfo* service) {
    if (!service) return tr("This machine has no such service now.");
    const QString name = oneLine(service->name);
    if (!service->enabled) return tr("%1 is disabled.").arg(name);
    if (!service->device) return tr("%1 has no device to put an address on.").arg(name);
    if (service->hardware && !service->hardware->present)
        return tr("%1’s adapter isn’t plugged in.").arg(name);
    return {};
}

TemporaryAddressSheet::TemporaryAddressSheet(const AppModel& model, const ServiceInfo& service,
                                             QWidget* parent)
    : QDialog(parent), model_(model), service_(service.name), device_(service.device.value_or("")),
      ip_(new QLineEdit), mask_(new QLineEdit) {
    setWindowTitle(tr("Temporary Address"));
    const auto& config = service.config;
    mask_->setText(config && config->subnet ? oneLine(*config->subnet) : QStringLiteral("255.255.255.0"));
    mask_->setPlaceholderText(tr("255.255.255.0 or /24"));

    auto* purpose =
        new QLabel(tr("A second address on %1 (%2), to reach equipment outside its subnet. It stays "
                      "until the next restart or network change.")
                       .arg(oneLine(service_), oneLine(device_)));
    purpose->setTextFormat(Qt::PlainText);
    purpose->setWordWrap(true);
    auto* form = new Form(this);
    ipNotices_ = form->addRow(tr("IP &address"), ip_);
    maskNotices_ = form->addRow(tr("Subnet &mask"), mask_);
    auto* buttons = new QDialogButtonBox(this);
    add_ = buttons->addButton(tr("A&dd"), QDialogButtonBox::AcceptRole);
    add_->setDefault(true);
    buttons->addButton(QDialogButtonBox::Cancel);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::m);
    layout->addWidget(purpose);
    layout->addWidget(form);
    layout->addWidget(buttons);
    setMinimumWidth(400);

    for (QLineEdit* field : {ip_, mask_}) {
        field->setFont(theme::tabular(field->font()));
        field->setMaxLength(64);
        connect(field, &QLineEdit::textChanged, this, &TemporaryAddressSheet::judge);
    }
    connect(ip_, &QLineEdit::editingFinished, this, [this] {
        typed_ = typed_ || !ip_->text().isEmpty();
        judge();
    });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        typed_ = true;
        judge();
        const std::string ip = ip_->text().trimmed().toStdString();
        const std::string mask = mask_->text().trimmed().toStdString();
        if (!TemporaryAddress::errors(ip, mask).empty()) return;
        emit asked(service_, device_, ip, mask);
        accept();
    });
    judge();
    ip_->setFocus();
}

TemporaryAddressSheet::~TemporaryAddressSheet() {
    hide(); // a field that loses the focus still finds what it reports to
}

void TemporaryAddressSheet::judge() {
    const std::string ip = ip_->text().trimmed().toStdString();
    const std::string mask = mask_->text().trimmed().toStdString();
    std::vector<Notice> forIp, forMask;
    for (const std::string& error : TemporaryAddress::errors(ip, mask)) {
        const bool aboutMask = error.rfind("Subnet mask", 0) == 0;
        if (aboutMask || typed_)
            (aboutMask ? forMask : forIp).push_back({Notice::Kind::error, oneLine(error)});
    }
    NetworkPreset wanted;
    wanted.service = service_;
    wanted.mode = NetworkPreset::Mode::manual;
    wanted.ip = ip;
    if (const auto advice = PresetAdvice::addressInUse(wanted, model_.services())) {
        forIp.push_back({Notice::Kind::advice, oneLine(*advice)});
    }
    ipNotices_->setNotices(std::move(forIp));
    maskNotices_->setNotices(std::move(forMask));
}

} // namespace corvane
