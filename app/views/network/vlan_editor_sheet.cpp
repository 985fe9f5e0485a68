#include "app/views/network/vlan_editor_sheet.h"

#include "app/model/app_model.h"
#include "app/views/network/form.h"
#include "app/views/network/vlan_presentation.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/theme.h"
#include "core/netconfig/vlan.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace corvane {

namespace {

/// Longer than any sensible name; keeps a mistaken paste out of the system.
constexpr int mostCharacters = 120;

} // namespace

VLANEditorSheet::VLANEditorSheet(const AppModel& model, const Mode& mode, QWidget* parent)
    : QDialog(parent), model_(model), mode_(mode), parent_(mode.parentDevice()),
      nameEdited_(mode.edited().has_value()), adapter_(new QComboBox), tag_(new QLineEdit),
      name_(new QLineEdit), message_(new NoticeLines(NoticeLines::Room::oneLineAtLeast, this)),
      words_(new NoticeLines(NoticeLines::Room::oneLineAtLeast, this)) {
    setWindowTitle(mode_.edited() ? tr("Edit VLAN") : tr("New VLAN"));
    if (const auto& vlan = mode_.edited()) {
        parent_ = vlan->parentDevice;
        tag_->setText(QString::number(vlan->tag));
        name_->setText(oneLine(vlan->name));
    } else if (!parent_ && model_.vlanCapable().size() == 1) {
        parent_ = *model_.vlanCapable().begin();
    }
    build();
    fillAdapters(*adapter_, model_, parent_);
    proposeName();
    judge();
    const auto follow = [this] {
        fillAdapters(*adapter_, model_, parent_);
        proposeName();
        judge();
    };
    connect(&model_, &AppModel::servicesChanged, this, follow);
    connect(&model_, &AppModel::vlansChanged, this, follow);
    connect(&model_, &AppModel::libraryChanged, this, [this] { judge(); });
    (parent_ ? static_cast<QWidget*>(tag_) : adapter_)->setFocus();
    tag_->selectAll();
}

VLANEditorSheet::~VLANEditorSheet() {
    hide(); // a field that loses the focus still finds what it reports to
}

void VLANEditorSheet::build() {
    tag_->setFont(theme::tabular(tag_->font()));
    tag_->setMaxLength(16);
    tag_->setPlaceholderText(tr("1 to 4094"));
    name_->setMaxLength(mostCharacters);
    filledName_ = name_->text();
    auto* form = new Form(this);
    form->addPlainRow(tr("&Adapter"), adapter_);
    form->addPlainRow(tr("&Tag"), tag_);
    form->addPlainRow(tr("&Name"), name_);
    // Room for the longest of the sentences, so that choosing to plan moves nothing.
    words_->setMinimumHeight(2 * words_->fontMetrics().height() + 2);

    if (!mode_.edited()) plan_ = new QCheckBox(vlanTexts::keepAsPlan, this);
    auto* buttons = new QDialogButtonBox(this);
    accept_ = buttons->addButton(tr("&Create VLAN"), QDialogButtonBox::AcceptRole);
    accept_->setObjectName(QStringLiteral("accept"));
    accept_->setDefault(true);
    buttons->addButton(QDialogButtonBox::Cancel);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::m);
    layout->addWidget(form);
    layout->addWidget(message_);
    if (plan_) {
        layout->addWidget(plan_);
        connect(plan_, &QCheckBox::toggled, this, [this] { judge(); });
    }
    layout->addWidget(words_);
    layout->addStretch();
    layout->addWidget(buttons);
    setMinimumWidth(460);

    connect(adapter_, &QComboBox::activated, this, [this] {
        parent_ = chosenAdapter(*adapter_);
        proposeName();
        judge();
    });
    connect(tag_, &QLineEdit::textEdited, this, [this] {
        touched_ = true;
        proposeName();
        judge();
    });
    connect(name_, &QLineEdit::textEdited, this, [this] {
        touched_ = nameEdited_ = true;
        judge();
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &VLANEditorSheet::finish);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

bool VLANEditorSheet::plans() const {
    return plan_ && plan_->isChecked();
}

void VLANEditorSheet::proposeName() {
    if (nameEdited_) return;
    QString name = parent_ ? tr("%1 VLAN").arg(adapterName(model_, *parent_)) : tr("VLAN");
    if (const auto tag = VLAN::parseTag(tag_->text().toStdString())) name += QStringLiteral(" %1").arg(*tag);
    name_->setText(name);
}

std::string VLANEditorSheet::name() const {
    const auto& old = mode_.edited();
    return old && name_->text() == filledName_ ? old->name : name_->text().trimmed().toStdString();
}

std::optional<QString> VLANEditorSheet::message() const {
    const std::string name = this->name(), tag = tag_->text().toStdString();
    const auto services = serviceNames(model_);
    std::optional<std::string> found;
    if (const auto& old = mode_.edited())
        found = VLAN::validateEdit(*old, name, tag, parent_, model_.vlans(), services);
    else if (plans())
        found = VLAN::validatePlan(Uuid(), name, tag, parent_, model_.vlans(), services,
                                   model_.library().plannedVLANs);
    else
        found = VLAN::validate(name, tag, parent_, model_.vlans(), services);
    if (found) return oneLine(*found);
    if (plans()) return std::nullopt;
    if (!parent_) return tr("Choose an adapter, or keep the VLAN as a plan.");
    return adapterRefusal(model_, *parent_);
}

void VLANEditorSheet::judge() {
    const auto wrong = message();
    message_->setNotices(
        wrong ? std::vector<Notice>{{touched_ ? Notice::Kind::error : Notice::Kind::hint, *wrong}}
              : std::vector<Notice>());
    const auto& old = mode_.edited();
    const bool same = old && !wrong && name() == old->name && parent_ == old->parentDevice &&
                      VLAN::parseTag(tag_->text().toStdString()) == old->tag;
    words_->setNotices({{Notice::Kind::hint, old       ? vlanTexts::recreates
                                             : plans() ? vlanTexts::presetsBefore
                                                       : vlanTexts::creates}});
    accept_->setText(old ? tr("&Change VLAN") : plans() ? tr("&Keep as Plan") : tr("&Create VLAN"));
    const QString whyNot = wrong ? *wrong : same ? tr("Nothing differs from the VLAN as it is.") : QString();
    accept_->setEnabled(whyNot.isEmpty());
    accept_->setToolTip(plainTip(whyNot));
    accept_->setAccessibleDescription(whyNot);
}

void VLANEditorSheet::finish() {
    touched_ = true;
    judge();
    const auto tag = VLAN::parseTag(tag_->text().toStdString());
    if (!accept_->isEnabled() || !tag) return;
    const std::string name = this->name();
    if (const auto& old = mode_.edited()) {
        emit editAsked(*old, name, *parent_, *tag);
    } else if (plans()) {
        PlannedVLAN plan;
        plan.id = Uuid::generate();
        plan.name = name;
        plan.tag = *tag;
        plan.parentDevice = parent_;
        emit planAsked(plan);
    } else {
        emit createAsked(name, *parent_, *tag);
    }
    accept();
}

} // namespace corvane
