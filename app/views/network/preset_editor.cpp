#include "app/views/network/preset_editor.h"

#include "app/model/app_model.h"
#include "app/views/network/form.h"
#include "app/views/network/preset_presentation.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/segmented_control.h"
#include "app/views/widgets/symbols.h"
#include "core/netconfig/ipv4.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace corvane {

namespace {

/// Longer than any sensible name or list of servers; keeps a mistaken paste out of the library.
constexpr int mostCharacters = 500;

bool isManual(const NetworkPreset& preset) {
    return preset.mode == NetworkPreset::Mode::manual;
}

void setTextUnlessSame(QLineEdit* field, const std::string& text) {
    const QString wanted = oneLine(text);
    const QSignalBlocker blocker(field);
    if (field->text() != wanted) field->setText(wanted);
}

} // namespace

PresetEditor::PresetEditor(const AppModel& model, const NetworkPreset& preset, bool isNew, QWidget* parent)
    : QDialog(parent), model_(model), preset_(preset), isNew_(isNew), name_(new QLineEdit),
      service_(new QComboBox), mode_(new SegmentedControl(tr("Configuration"), {tr("DHCP"), tr("Manual")})),
      ip_(new QLineEdit), subnet_(new QLineEdit), router_(new QLineEdit), dns_(new QLineEdit) {
    setWindowTitle(isNew ? tr("New Preset") : tr("Edit Preset"));
    build();
    fill();
    connect(&model, &AppModel::libraryChanged, this, &PresetEditor::modelChanged);
    connect(&model, &AppModel::servicesChanged, this, [this] {
        fillServices();
        judge();
    });
    name_->setFocus();
    name_->end(false);
    name_->home(true); // all of it chosen, its beginning in view
}

PresetEditor::~PresetEditor() {
    hide(); // a field that loses the focus still finds its buffer
}

void PresetEditor::build() {
    auto* form = new Form(this);
    form->addPlainRow(tr("&Name"), name_);
    serviceNotices_ = form->addRow(tr("&Interface"), service_);
    form->addPlainRow(tr("Con&figuration"), mode_);
    ipNotices_ = form->addRow(tr("IP &address"), ip_);
    subnetNotices_ = form->addRow(tr("Subnet &mask"), subnet_);
    routerNotices_ = form->addRow(tr("&Router"), router_);
    dnsNotices_ = form->addRow(tr("&DNS servers"), dns_);
    service_->setPlaceholderText(tr("Choose an interface"));
    for (QLineEdit* field : {ip_, subnet_, router_, dns_}) field->setFont(theme::tabular(field->font()));
    summary_ = new NoticeLines(NoticeLines::Room::oneLineAtLeast, this);

    auto* buttons = new QDialogButtonBox(this);
    auto* save = buttons->addButton(tr("&Save"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel);
    saveAndApply_ = buttons->addButton(tr("Save and A&pply"), QDialogButtonBox::ActionRole);
    save->setDefault(true);
    saveAndApply_->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { this->save(false); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(saveAndApply_, &QPushButton::clicked, this, [this] { this->save(true); });
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* shortcut = new QShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(key)), this);
        connect(shortcut, &QShortcut::activated, saveAndApply_, [this] { saveAndApply_->click(); });
    }

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::m);
    layout->addWidget(form);
    layout->addStretch();
    layout->addWidget(summary_);
    layout->addWidget(buttons);
    setMinimumWidth(460);

    for (QLineEdit* field : {name_, ip_, subnet_, router_, dns_}) {
        field->setMaxLength(mostCharacters);
        connect(field, &QLineEdit::textEdited, this, [this, field] { take(field); });
        connect(field, &QLineEdit::editingFinished, this, [this, field] {
            if (field->isModified()) visited_.insert(field);
            judge();
        });
    }
    connect(service_, &QComboBox::activated, this, [this] { take(service_); });
    connect(mode_, &SegmentedControl::chosen, this, [this] { take(mode_); });
}

void PresetEditor::fillServices() {
    if (service_->view()->isVisible()) return; // nothing moves under an open list
    const QSignalBlocker blocker(service_);
    service_->clear();
    for (const ServiceInfo& service : model_.services()) {
        QString text = oneLine(service.name);
        if (service.device) text += QStringLiteral(" · ") + oneLine(*service.device);
        service_->addItem(symbols::stateIcon(service.state().kind()), text,
                          QString::fromStdString(service.name));
    }
    const QString own = QString::fromStdString(preset_.service);
    if (!own.isEmpty() && service_->findData(own) < 0) {
        service_->addItem(tr("%1 (not on this machine now)").arg(oneLine(preset_.service)), own);
    }
    service_->setCurrentIndex(own.isEmpty() ? -1 : service_->findData(own));
}

void PresetEditor::fill() {
    fillServices();
    setTextUnlessSame(name_, preset_.name);
    setTextUnlessSame(ip_, preset_.ip);
    setTextUnlessSame(subnet_, preset_.subnet);
    setTextUnlessSame(router_, preset_.router);
    const QSignalBlocker blocker(dns_);
    dns_->setText(joined(preset_.dns, QStringLiteral(", ")));
    mode_->setCurrent(isManual(preset_) ? 1 : 0);
    judge();
}

void PresetEditor::take(QWidget* field) {
    touched_ = true;
    if (field == mode_) {
        preset_.mode = mode_->current() == 1 ? NetworkPreset::Mode::manual : NetworkPreset::Mode::dhcp;
    } else if (field == service_) {
        preset_.service = service_->currentData().toString().toStdString();
    } else if (field == name_) {
        preset_.name = name_->text().trimmed().toStdString();
    } else if (field == dns_) {
        preset_.dns = parseDNSList(dns_->text().toStdString());
    } else {
        auto& text = field == ip_ ? preset_.ip : field == subnet_ ? preset_.subnet : preset_.router;
        text = static_cast<QLineEdit*>(field)->text().trimmed().toStdString();
    }
    // A text still being typed is judged once it could be meant to be whole.
    if (field != ip_ || IPv4::isValid(preset_.ip)) visited_.insert(field);
    judge();
}

void PresetEditor::judge() {
    const bool manual = isManual(preset_);
    FieldNotices notices = fieldNotices(preset_, model_.services());
    const auto say = [&](NoticeLines* lines, const QWidget* field, std::vector<Notice> found,
                         const QString& hint) {
        const bool spares = isNew_ && !visited_.contains(field);
        if (spares) std::erase_if(found, [](const Notice& n) { return n.kind == Notice::Kind::error; });
        if (found.empty() && !hint.isEmpty()) found.push_back({Notice::Kind::hint, hint});
        lines->setNotices(std::move(found));
    };
    const QString given = manual ? QString() : tr("Given by the DHCP server.");
    say(serviceNotices_, service_, std::move(notices.service), {});
    say(ipNotices_, ip_, std::move(notices.ip), given);
    say(subnetNotices_, subnet_, std::move(notices.subnet), given);
    say(routerNotices_, router_, std::move(notices.router), manual ? tr("May stay empty.") : given);
    say(dnsNotices_, dns_, std::move(notices.dns),
        manual ? tr("Several with commas between. May stay empty.")
               : tr("Leave empty to use the servers that DHCP gives."));
    for (QLineEdit* field : {ip_, subnet_, router_}) {
        if (field->hasFocus() && !manual) mode_->setFocus();
        field->setEnabled(manual);
    }
    subnet_->setPlaceholderText(manual ? tr("255.255.255.0 or /24") : QString());
    const bool named = !manual || IPv4::isValid(preset_.ip);
    name_->setPlaceholderText(!named ? tr("New preset")
                                     : presetTitle(NetworkPreset{preset_.id,
                                                                 {},
                                                                 preset_.service,
                                                                 preset_.mode,
                                                                 preset_.ip,
                                                                 preset_.subnet,
                                                                 preset_.router,
                                                                 preset_.dns,
                                                                 {}}));

    const bool valid = preset_.isValid();
    summary_->setNotices({{Notice::Kind::hint,
                           valid ? tr("Sets %1 to %2.").arg(oneLine(preset_.service), presetDetail(preset_))
                                 : tr("Can be saved as it is, but not applied before every "
                                      "field above is right.")}});
    const QString whyNot = valid ? QString() : joined(preset_.errors(), QStringLiteral("\n"));
    saveAndApply_->setEnabled(valid);
    saveAndApply_->setToolTip(
        plainTip(valid ? tr("Saves the preset and puts it on the service now") : whyNot));
    saveAndApply_->setAccessibleDescription(whyNot);
}

void PresetEditor::save(bool applyNow) {
    NetworkPreset preset = preset_;
    if (preset.name.empty()) preset.name = name_->placeholderText().toStdString();
    emit saved(preset, applyNow && preset.isValid());
    accept();
}

void PresetEditor::modelChanged() {
    if (isNew_ || touched_) return;
    const NetworkPreset* current = model_.preset(preset_.id);
    if (!current || *current == preset_) return;
    preset_ = *current;
    fill();
}

} // namespace corvane
