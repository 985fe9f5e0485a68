#include "app/views/window/vlan_page.h"

#include "app/model/app_model.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/theme.h"

#include <QLabel>
#include <QVBoxLayout>

namespace corvane {

using namespace Qt::StringLiterals;

VlanPage::VlanPage(AppModel& model, QWidget* parent)
    : QWidget(parent), model_(model), name_(new QLabel(this)), facts_(new QLabel(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::xl, theme::xl, theme::xl);
    for (auto* label : {name_, facts_}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        layout->addWidget(label);
    }
    name_->setFont(theme::title(font()));
    layout->addStretch();
    connect(&model_, &AppModel::libraryChanged, this, &VlanPage::refresh);
}

void VlanPage::setVlan(const Uuid& id) {
    id_ = id;
    refresh();
}

void VlanPage::refresh() {
    for (const auto& vlan : model_.library().plannedVLANs) {
        if (vlan.id != id_) continue;
        const QString parent =
            vlan.parentDevice ? u"on %1"_s.arg(oneLine(*vlan.parentDevice)) : u"no adapter chosen yet"_s;
        name_->setText(oneLine(vlan.name));
        facts_->setText(
            u"VLAN %1 · %2\nPlanned, not created on this computer yet."_s.arg(vlan.tag).arg(parent));
        return;
    }
}

} // namespace corvane
