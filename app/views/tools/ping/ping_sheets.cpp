#include "app/views/tools/ping/ping_sheets.h"

#include "app/model/app_model.h"
#include "app/views/network/form.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/theme.h"
#include "core/diagnostics/host_lines.h"
#include "core/diagnostics/host_text.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace corvane {

namespace {

constexpr int mostNameCharacters = 120;

QDialogButtonBox* buttonsOf(QDialog* sheet, QPushButton** save) {
    auto* buttons = new QDialogButtonBox(sheet);
    auto* button = buttons->addButton(QDialog::tr("&Save"), QDialogButtonBox::AcceptRole);
    button->setDefault(true);
    buttons->addButton(QDialogButtonBox::Cancel);
    QObject::connect(buttons, &QDialogButtonBox::rejected, sheet, &QDialog::reject);
    if (save) *save = button;
    return buttons;
}

void layOut(QDialog* sheet, Form* form, QDialogButtonBox* buttons) {
    auto* layout = new QVBoxLayout(sheet);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::m);
    layout->addWidget(form);
    layout->addWidget(buttons);
    sheet->setMinimumWidth(400);
}

/// What the user hasn't typed in follows.
void follow(QLineEdit* field, const std::string& text) {
    if (field->isModified()) return;
    const QSignalBlocker blocker(field);
    if (const QString line = oneLine(text); field->text() != line) field->setText(line);
}

} // namespace

GroupNameSheet::GroupNameSheet(const AppModel& model, const PingGroup& group, QWidget* parent)
    : QDialog(parent), model_(model), group_(group.id), name_(new QLineEdit) {
    setWindowTitle(tr("Rename Ping Group"));
    name_->setMaxLength(mostNameCharacters);
    name_->setPlaceholderText(tr("What these hosts have in common"));
    auto* form = new Form(this);
    form->addPlainRow(tr("&Name"), name_);
    auto* buttons = buttonsOf(this, nullptr);
    layOut(this, form, buttons);
    follow(name_, group.name);
    connect(&model_, &AppModel::libraryChanged, this, [this] {
        if (const PingGroup* current = model_.pingGroup(group_)) follow(name_, current->name);
    });
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        // A name that only stood there isn't written back: it may hold what one line can't show.
        if (name_->isModified()) emit renamed(group_, name_->text().trimmed().toStdString());
        accept();
    });
    name_->setFocus();
    name_->selectAll();
}

GroupNameSheet::~GroupNameSheet() {
    hide(); // a field that loses the focus still finds what it reports to
}

HostSheet::HostSheet(const AppModel& model, const Uuid& group, const PingTarget& target, QWidget* parent)
    : QDialog(parent), model_(model), group_(group), target_(target), name_(new QLineEdit),
      host_(new QLineEdit) {
    setWindowTitle(tr("Edit Host"));
    name_->setMaxLength(mostNameCharacters);
    name_->setPlaceholderText(tr("What it is called; may stay empty"));
    host_->setMaxLength(static_cast<int>(HostLines::mostHostBytes));
    host_->setFont(theme::tabular(host_->font()));
    host_->setPlaceholderText(tr("IPv4 address or host name"));
    auto* form = new Form(this);
    form->addPlainRow(tr("&Name"), name_);
    hostNotices_ = form->addRow(tr("&Address"), host_);
    auto* buttons = buttonsOf(this, &save_);
    layOut(this, form, buttons);
    follow();
    connect(&model_, &AppModel::libraryChanged, this, &HostSheet::follow);
    connect(host_, &QLineEdit::textChanged, this, &HostSheet::judge);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] {
        if (!save_->isEnabled()) return;
        if (name_->isModified()) target_.name = name_->text().trimmed().toStdString();
        if (host_->isModified()) target_.host = std::string(HostText::trim(host_->text().toStdString()));
        emit saved(group_, target_);
        accept();
    });
    name_->setFocus();
    name_->selectAll();
}

HostSheet::~HostSheet() {
    hide(); // a field that loses the focus still finds what it reports to
}

void HostSheet::follow() {
    if (const PingGroup* group = model_.pingGroup(group_)) {
        const auto found = std::find_if(group->targets.begin(), group->targets.end(),
                                        [this](const auto& each) { return each.id == target_.id; });
        if (found != group->targets.end()) target_ = *found;
    }
    corvane::follow(name_, target_.name);
    corvane::follow(host_, target_.host);
    judge();
}

void HostSheet::judge() {
    const QString wrong =
        QString::fromStdString(HostLines::hostError(HostText::trim(host_->text().toStdString())));
    hostNotices_->setNotices(wrong.isEmpty() || !host_->isModified()
                                 ? std::vector<Notice>()
                                 : std::vector<Notice>{{Notice::Kind::error, wrong}});
    const bool fine = wrong.isEmpty() || !host_->isModified();
    save_->setEnabled(fine);
    save_->setToolTip(plainTip(fine ? QString() : wrong));
    save_->setAccessibleDescription(fine ? QString() : wrong);
}

} // namespace corvane
