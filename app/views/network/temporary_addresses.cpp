#include "app/views/network/temporary_addresses.h"

#include "app/views/network/network_commands.h"
#include "app/views/widgets/copy_label.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace corvane {

TemporaryAddresses::TemporaryAddresses(NetworkCommands& commands, QWidget* parent)
    : Card(parent), commands_(commands), rows_(new QVBoxLayout(this)) {
    rows_->setContentsMargins(theme::l, theme::s, theme::m, theme::s);
    rows_->setSpacing(theme::xs);
    hide();
}

void TemporaryAddresses::setAliases(const std::vector<AppModel::TempAlias>& aliases) {
    if (aliases == aliases_) return;
    aliases_ = aliases;
    while (QLayoutItem* item = rows_->takeAt(0)) {
        if (item->widget()) item->widget()->deleteLater();
        delete item;
    }
    for (const AppModel::TempAlias& alias : aliases_) {
        auto* row = new QWidget(this);
        auto* layout = new QHBoxLayout(row);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(theme::s);
        auto* caption = new QLabel(tr("Temporary"), row);
        caption->setForegroundRole(QPalette::PlaceholderText);
        caption->setMinimumWidth(caption->fontMetrics().horizontalAdvance(tr("All addresses")) + theme::xs);
        auto* address = new CopyLabel(tr("Temporary address"), row);
        address->setValue(oneLine(alias.ip));
        auto* note = new ElidedLabel(ElidedLabel::Weight::secondary, row);
        note->setText(tr("mask %1 on %2, until the next restart or network change")
                          .arg(oneLine(alias.mask), oneLine(alias.device)));
        auto* remove = new QPushButton(tr("Remove"), row);
        remove->setAccessibleName(tr("Remove the temporary address %1").arg(oneLine(alias.ip)));
        remove->setToolTip(plainTip(remove->accessibleName()));
        connect(remove, &QPushButton::clicked, this,
                [this, alias] { commands_.removeTemporaryAddress(alias); });
        layout->addWidget(caption);
        layout->addWidget(address);
        layout->addWidget(note, 1);
        layout->addWidget(remove);
        rows_->addWidget(row);
    }
    setVisible(!aliases_.empty());
}

} // namespace corvane
