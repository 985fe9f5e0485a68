#include "app/views/network/preset_list.h"

#include "app/model/app_model.h"
#include "app/views/network/network_commands.h"
#include "app/views/network/preset_presentation.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/empty_state.h"
#include "app/views/widgets/row_list.h"

#include <QMenu>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QStackedLayout>

namespace corvane {

namespace {

std::optional<Uuid> uuidOf(const QString& id) {
    return Uuid::parse(id.toStdString());
}

} // namespace

PresetList::PresetList(AppModel& model, NetworkCommands& commands, QWidget* parent, const QString& later)
    : Card(parent), model_(model), commands_(commands), later_(later), rows_(new RowList(this)),
      empty_(new EmptyState(this)), stack_(new QStackedLayout(this)) {
    rows_->setObjectName(QStringLiteral("presets"));
    rows_->setAccessibleName(tr("Presets"));
    if (later_.isEmpty()) rows_->setRowButton(tr("Apply"), tr("Apply this preset"));
    rows_->setMovable(true);
    stack_->setContentsMargins(1, 1, 1, 1);
    stack_->addWidget(rows_);
    stack_->addWidget(empty_);

    connect(empty_->addAction(tr("New Preset…")), &QPushButton::clicked, this,
            [this] { commands_.newPreset(service_); });
    if (later_.isEmpty()) {
        connect(empty_->addAction(tr("From Current Settings…")), &QPushButton::clicked, this,
                [this] { commands_.newPresetFromCurrent(service_); });
    }
    connect(rows_, &RowList::opened, this, [this](const QString& id) {
        if (const auto preset = uuidOf(id)) commands_.editPreset(*preset);
    });
    connect(rows_, &RowList::acted, this, [this](const QString& id) {
        const auto preset = uuidOf(id);
        if (preset && later_.isEmpty()) commands_.applyPreset(*preset);
    });
    connect(rows_, &RowList::deleteAsked, this, [this](const QString& id) {
        if (const auto preset = uuidOf(id)) commands_.deletePreset(*preset);
    });
    connect(rows_, &RowList::moveAsked, this,
            [this](const QString& id, const std::optional<QString>& before) {
                const auto preset = uuidOf(id);
                if (preset) model_.movePreset(*preset, before ? uuidOf(*before) : std::nullopt);
            });
    connect(rows_, &RowList::menuAsked, this, &PresetList::showMenu);
    connect(rows_, &RowList::currentIdChanged, this, [this] {
        if (!switching_) emit chosenChanged();
    });
}

void PresetList::setService(const std::string& service, const std::optional<Uuid>& chosen) {
    {
        const QScopedValueRollback guard(switching_, true);
        service_ = service;
        refresh();
        rows_->setCurrentId(chosen ? presetId(*chosen) : QString());
        if (!chosen) rows_->scrollToTop();
    }
    emit chosenChanged();
}

void PresetList::refresh() {
    std::vector<Row> rows;
    for (const NetworkPreset& preset : model_.library().presets) {
        if (preset.service != service_) continue;
        rows.push_back(presetRow(preset, model_));
        if (!later_.isEmpty()) rows.back().tip.clear();
    }
    empty_->setTexts(
        tr("No presets for %1 yet").arg(oneLine(service_)),
        later_.isEmpty()
            ? tr("A preset keeps DHCP or an address with its mask, router and DNS servers under a name, "
                 "so that one click puts them on this service.")
            : later_);
    rows_->setRows(rows);
    stack_->setCurrentWidget(rows.empty() ? static_cast<QWidget*>(empty_) : rows_);
}

void PresetList::choose(const Uuid& preset) {
    rows_->setCurrentId(presetId(preset));
}

std::optional<Uuid> PresetList::chosen() const {
    return uuidOf(rows_->currentId());
}

void PresetList::showMenu(const QString& id, const QPoint& place) {
    QMenu menu(this);
    const auto preset = uuidOf(id);
    if (preset) {
        NetworkCommands& commands = commands_;
        if (later_.isEmpty()) {
            menu.addAction(tr("Apply Preset"), &commands,
                           [&commands, preset] { commands.applyPreset(*preset); });
            menu.addSeparator();
        }
        menu.addAction(tr("Edit Preset…"), &commands, [&commands, preset] { commands.editPreset(*preset); });
        menu.addAction(tr("Duplicate Preset"), &commands,
                       [&commands, preset] { commands.duplicatePreset(*preset); });
        const QModelIndex row = rows_->rowModel().indexOf(id);
        menu.addSeparator();
        QAction* up = menu.addAction(tr("Move Up"), rows_, [this] { rows_->moveCurrent(-1); });
        up->setEnabled(row.row() > 0);
        QAction* down = menu.addAction(tr("Move Down"), rows_, [this] { rows_->moveCurrent(1); });
        down->setEnabled(row.row() + 1 < rows_->rowModel().rowCount());
        menu.addSeparator();
        menu.addAction(tr("Delete Preset"), &commands,
                       [&commands, preset] { commands.deletePreset(*preset); });
    } else {
        menu.addAction(tr("New Preset…"), this, [this] { commands_.newPreset(service_); });
        if (later_.isEmpty()) {
            menu.addAction(tr("New Preset from Current Settings…"), this,
                           [this] { commands_.newPresetFromCurrent(service_); });
        }
    }
    menu.exec(place);
}

} // namespace corvane
