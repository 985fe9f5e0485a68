#include "app/views/network/network_commands.h"

#include "app/views/network/global_editor.h"
#include "app/views/network/preset_editor.h"
#include "app/views/network/preset_presentation.h"
#include "app/views/network/temporary_address_sheet.h"
#include "app/views/widgets/display_text.h"

#include <QDialog>
#include <QFileDialog>
#include <QStandardPaths>

namespace corvane {

namespace {

QString filesFilter() {
    return NetworkCommands::tr("Preset libraries (*.json)");
}

QString filesFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

} // namespace

NetworkCommands::NetworkCommands(AppModel& model, QWidget* window)
    : QObject(window), model_(model), window_(window) {}

void NetworkCommands::setCurrentPreset(const std::optional<Uuid>& preset) {
    if (preset == currentPreset_) return;
    currentPreset_ = preset;
    emit currentPresetChanged();
}

bool NetworkCommands::free() {
    if (model_.busy()) model_.flash(tr("Another change is being made. Try again when it has ended."));
    return !model_.busy();
}

void NetworkCommands::openSheet(QDialog* sheet) {
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->setWindowModality(Qt::WindowModal);
    sheet->open();
}

void NetworkCommands::soon(std::function<void()> act) {
    QMetaObject::invokeMethod(this, std::move(act), Qt::QueuedConnection);
}

void NetworkCommands::newPreset(const std::string& service) {
    NetworkPreset preset;
    preset.id = Uuid::generate();
    preset.service = service;
    preset.mode = NetworkPreset::Mode::manual;
    preset.subnet = "255.255.255.0";
    editPreset(preset, true);
}

QString NetworkCommands::currentSettingsRefusal(const std::string& name) const {
    const ServiceInfo* service = model_.service(name);
    if (service && service->config) return {};
    return tr("%1 has no current settings to take over.").arg(oneLine(name));
}

void NetworkCommands::newPresetFromCurrent(const std::string& service) {
    const QString refusal = currentSettingsRefusal(service);
    if (!refusal.isEmpty()) return model_.flashError(refusal);
    editPreset(model_.presetFromCurrent(service), true);
}

void NetworkCommands::editPreset(const Uuid& id) {
    if (const NetworkPreset* preset = model_.preset(id)) editPreset(*preset, false);
}

void NetworkCommands::editPreset(const NetworkPreset& preset, bool isNew) {
    auto* editor = new PresetEditor(model_, preset, isNew, window_);
    connect(editor, &PresetEditor::saved, this, [this](const NetworkPreset& saved, bool applyNow) {
        // It may have been deleted, or its making undone, while the editor stood open.
        if (model_.preset(saved.id))
            model_.updatePreset(saved);
        else
            model_.addPreset(saved);
        setCurrentPreset(saved.id);
        if (!applyNow) return;
        const Uuid id = saved.id;
        soon([this, id] { applyPreset(id); });
    });
    openSheet(editor);
}

void NetworkCommands::duplicatePreset(const Uuid& id) {
    const Uuid copy = model_.duplicatePreset(id);
    if (!copy.isNil()) setCurrentPreset(copy);
}

void NetworkCommands::deletePreset(const Uuid& id) {
    const NetworkPreset* preset = model_.preset(id);
    if (!preset) return;
    const QString name = presetTitle(*preset);
    model_.deletePreset(id);
    model_.flash(tr("Deleted “%1”. Undo brings it back.").arg(name));
}

void NetworkCommands::applyPreset(const Uuid& id) {
    const NetworkPreset* preset = model_.preset(id);
    if (preset && free()) model_.apply(NetworkPreset(*preset));
}

void NetworkCommands::newGlobal() {
    GlobalPreset global;
    global.id = Uuid::generate();
    editGlobal(global, true);
}

void NetworkCommands::editGlobal(const Uuid& id) {
    if (const GlobalPreset* global = model_.global(id)) editGlobal(*global, false);
}

void NetworkCommands::editGlobal(const GlobalPreset& global, bool isNew) {
    auto* editor = new GlobalEditor(model_, global, isNew, window_);
    connect(editor, &GlobalEditor::saved, this, [this](const GlobalPreset& saved, bool applyNow) {
        const Uuid id = saved.id;
        if (model_.global(id))
            model_.updateGlobal(saved);
        else
            model_.addGlobal(saved);
        model_.select(SidebarItem::global(id));
        if (applyNow) soon([this, id] { applyGlobal(id); });
    });
    openSheet(editor);
}

void NetworkCommands::duplicateGlobal(const Uuid& id) {
    const Uuid copy = model_.duplicateGlobal(id);
    if (!copy.isNil()) model_.select(SidebarItem::global(copy));
}

void NetworkCommands::deleteGlobal(const Uuid& id) {
    const GlobalPreset* global = model_.global(id);
    if (!global) return;
    const QString name = oneLine(global->name);
    const bool shown = model_.selection() == SidebarItem::global(id);
    model_.deleteGlobal(id);
    if (shown && model_.selection() == SidebarItem::global(id)) model_.select(model_.defaultService());
    model_.flash(tr("Deleted “%1”. Undo brings it back.").arg(name));
}

void NetworkCommands::applyGlobal(const Uuid& id) {
    const GlobalPreset* global = model_.global(id);
    if (global && free()) model_.apply(GlobalPreset(*global));
}

void NetworkCommands::addTemporaryAddress(const std::string& name) {
    const ServiceInfo* service = model_.service(name);
    const QString refusal = TemporaryAddressSheet::refusal(service);
    if (!refusal.isEmpty()) return model_.flashError(refusal);
    auto* sheet = new TemporaryAddressSheet(model_, *service, window_);
    connect(sheet, &TemporaryAddressSheet::asked, this,
            [this](const std::string& to, const std::string& device, const std::string& ip,
                   const std::string& mask) {
                soon([this, to, device, ip, mask] {
                    if (free()) model_.addTempAlias(to, device, ip, mask);
                });
            });
    openSheet(sheet);
}

void NetworkCommands::removeTemporaryAddress(const AppModel::TempAlias& alias) {
    if (free()) model_.removeTempAlias(AppModel::TempAlias(alias));
}

void NetworkCommands::exportPresets() {
    auto* panel = new QFileDialog(window_, tr("Export Presets"), filesFolder(), filesFilter());
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setFileMode(QFileDialog::AnyFile);
    panel->setDefaultSuffix(QStringLiteral("json"));
    panel->selectFile(QStringLiteral("Wendrel Presets.json"));
    connect(panel, &QFileDialog::fileSelected, this,
            [this](const QString& file) { model_.exportPresets(file); });
    openSheet(panel);
}

void NetworkCommands::importPresets() {
    auto* panel = new QFileDialog(window_, tr("Import Presets"), filesFolder(), filesFilter());
    panel->setAcceptMode(QFileDialog::AcceptOpen);
    panel->setFileMode(QFileDialog::ExistingFile);
    connect(panel, &QFileDialog::fileSelected, this,
            [this](const QString& file) { model_.importPresets(file); });
    openSheet(panel);
}

} // namespace corvane
