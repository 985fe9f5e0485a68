#include "app/views/network/service_page.h"

#include "app/model/app_model.h"
#include "app/views/network/current_settings.h"
#include "app/views/network/form.h"
#include "app/views/network/network_commands.h"
#include "app/views/network/preset_list.h"
#include "app/views/network/routes_pane.h"
#include "app/views/network/temporary_address_sheet.h"
#include "app/views/network/temporary_addresses.h"
#include "app/views/network/vlan_presentation.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/draft_bar.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/segmented_control.h"
#include "app/views/widgets/state_dot.h"
#include "app/views/widgets/theme.h"

#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <map>
#include <utility>

namespace corvane {

namespace {

enum Section { presetsSection, routesSection };

/// A refresh comes every 4 s; older than two and a half of them, what is shown says its age.
constexpr qint64 staleSeconds = 10;

void offer(QPushButton* button, const QString& whyNot, const QString& what) {
    button->setEnabled(whyNot.isEmpty());
    button->setToolTip(plainTip(whyNot.isEmpty() ? what : whyNot));
    button->setAccessibleDescription(whyNot);
}

QString age(qint64 seconds) {
    if (seconds < 120) return QObject::tr("read %1 s ago").arg(seconds);
    if (seconds < 7200) return QObject::tr("read %1 min ago").arg(seconds / 60);
    return QObject::tr("read %1 h ago").arg(seconds / 3600);
}

} // namespace

struct ServicePage::Private {
    Private(ServicePage* page, AppModel& m, NetworkCommands& c)
        : q(page), model(m), commands(c), dot(new StateDot(18, page)), title(new ElidedLabel),
          subtitle(new ElidedLabel(ElidedLabel::Weight::secondary)), staleness(new QLabel(page)),
          settings(new CurrentSettings(page)), temporary(new TemporaryAddresses(c, page)),
          create(new QPushButton(tr("New Preset…"), page)),
          fromCurrent(new QPushButton(tr("From Current Settings…"), page)),
          addTemporary(new QPushButton(tr("Temporary Address…"), page)),
          newVLAN(new QPushButton(tr("New VLAN…"), page)), editVLAN(new QPushButton(tr("Edit VLAN…"), page)),
          deleteVLAN(new QPushButton(tr("Delete VLAN…"), page)),
          section(new SegmentedControl(tr("Section"), {tr("Presets"), tr("Static Routes")}, page)),
          sections(new QStackedWidget(page)), presets(new PresetList(m, c)), routes(new RoutesPane(m, c)) {}

    void refresh();
    void refreshAge();
    void refreshVLAN(const ServiceInfo* info);
    void showSection(int shown);
    /// What the menu commands act on: the chosen preset, or the draft of the routes.
    void hand();

    ServicePage* q;
    AppModel& model;
    NetworkCommands& commands;
    std::string service;
    std::map<std::string, Uuid> chosen;
    StateDot* dot;
    ElidedLabel* title;
    ElidedLabel* subtitle;
    QLabel* staleness;
    CurrentSettings* settings;
    TemporaryAddresses* temporary;
    QPushButton* create;
    QPushButton* fromCurrent;
    QPushButton* addTemporary;
    QPushButton* newVLAN;
    QPushButton* editVLAN;
    QPushButton* deleteVLAN;
    SegmentedControl* section;
    QStackedWidget* sections;
    PresetList* presets;
    RoutesPane* routes;
    QTimer folded, clock;
};

ServicePage::ServicePage(AppModel& model, NetworkCommands& commands, QWidget* parent)
    : QWidget(parent), d(std::make_unique<Private>(this, model, commands)) {
    d->title->setFont(theme::title(font()));
    d->staleness->setFont(theme::caption(font()));
    d->staleness->setForegroundRole(QPalette::PlaceholderText);

    auto* names = new QVBoxLayout;
    names->setSpacing(1);
    names->addWidget(d->title);
    names->addWidget(d->subtitle);
    auto* header = new QHBoxLayout;
    header->setSpacing(theme::m);
    header->addWidget(d->dot);
    header->addLayout(names, 1);
    header->addWidget(d->staleness, 0, Qt::AlignRight | Qt::AlignTop);
    auto* about = new QHBoxLayout;
    about->setSpacing(theme::s);
    for (QPushButton* button : {d->addTemporary, d->newVLAN, d->editVLAN, d->deleteVLAN}) {
        about->addWidget(button);
    }
    header->addLayout(about);
    header->setAlignment(about, Qt::AlignTop);

    auto* actions = new QHBoxLayout;
    actions->setSpacing(theme::s);
    actions->addWidget(d->section);
    actions->addStretch();
    for (QPushButton* button :
         {d->create, d->fromCurrent, d->routes->addButton(), d->routes->removeButton()}) {
        actions->addWidget(button);
    }
    d->sections->addWidget(d->presets);
    d->sections->addWidget(d->routes);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::m);
    layout->addLayout(header);
    layout->addWidget(d->settings);
    layout->addWidget(d->temporary);
    layout->addLayout(actions);
    layout->addWidget(d->sections, 1);
    QWidget* before = d->section;
    for (QPushButton* button :
         {d->create, d->fromCurrent, d->routes->addButton(), d->routes->removeButton()}) {
        setTabOrder(std::exchange(before, button), button);
    }

    connect(d->create, &QPushButton::clicked, this, [this] { d->commands.newPreset(d->service); });
    connect(d->fromCurrent, &QPushButton::clicked, this,
            [this] { d->commands.newPresetFromCurrent(d->service); });
    connect(d->addTemporary, &QPushButton::clicked, this,
            [this] { d->commands.addTemporaryAddress(d->service); });
    connect(d->newVLAN, &QPushButton::clicked, this, [this] { d->commands.newVLAN(d->service); });
    connect(d->editVLAN, &QPushButton::clicked, this, [this] { d->commands.editVLAN(d->service); });
    connect(d->deleteVLAN, &QPushButton::clicked, this, [this] { d->commands.deleteVLAN(d->service); });
    connect(d->section, &SegmentedControl::chosen, this, [this](int shown) { d->showSection(shown); });
    connect(d->presets, &PresetList::chosenChanged, this, [this] {
        const auto chosen = d->presets->chosen();
        if (chosen) d->chosen[d->service] = *chosen;
        if (isVisible()) d->hand();
    });
    connect(&commands, &NetworkCommands::currentPresetChanged, this, [this] {
        const auto wanted = d->commands.currentPreset();
        if (!wanted || d->presets->chosen() == wanted) return;
        const NetworkPreset* preset = d->model.preset(*wanted);
        if (!preset || preset->service != d->service) return;
        d->refresh(); // the preset may be a new one
        d->presets->choose(*wanted);
        d->showSection(presetsSection);
    });

    d->folded.setSingleShot(true);
    d->folded.setInterval(0);
    connect(&d->folded, &QTimer::timeout, this, [this] { d->refresh(); });
    const auto later = [this] { d->folded.start(); };
    connect(&model, &AppModel::servicesChanged, this, later);
    connect(&model, &AppModel::libraryChanged, this, later);
    connect(&model, &AppModel::tempAliasesChanged, this, later);
    connect(&model, &AppModel::vlansChanged, this, later);
    connect(&model, &AppModel::refreshed, this, [this] { d->refreshAge(); });
    d->clock.setInterval(1000);
    connect(&d->clock, &QTimer::timeout, this, [this] { d->refreshAge(); });
    d->showSection(presetsSection);
    d->refresh();
}

ServicePage::~ServicePage() = default;

const std::string& ServicePage::service() const {
    return d->service;
}

void ServicePage::setService(const std::string& name) {
    if (name == d->service) return;
    d->service = name;
    const auto chosen = d->chosen.find(name);
    d->presets->setService(name, chosen == d->chosen.end() ? std::nullopt : std::optional(chosen->second));
    d->routes->setService(name);
    d->refresh();
}

void ServicePage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    d->clock.start();
    d->refreshAge();
    d->hand();
}

void ServicePage::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    d->clock.stop();
    d->commands.setCurrentPreset(std::nullopt);
    d->commands.setCurrentDraft(nullptr);
}

void ServicePage::Private::refresh() {
    const ServiceInfo* info = model.service(service);
    const QString name = oneLine(service);
    title->setText(name);
    q->setAccessibleName(name);
    dot->setState(info ? info->state() : LinkState::adapterMissing());
    dot->setVisible(info);
    const auto carrier = model.internetService();
    QStringList parts;
    if (info) {
        parts << oneLine(info->state().title());
        if (info->hardwarePort && *info->hardwarePort != info->name) parts << oneLine(*info->hardwarePort);
        if (const VLANInfo* vlan = model.vlan(service)) {
            parts << tr("VLAN %1 on %2").arg(vlan->tag).arg(adapterName(model, vlan->parentDevice));
        }
        if (info->device) parts << oneLine(*info->device);
        if (carrier == service) parts << tr("carries internet");
    } else {
        parts << (model.lastRefresh().isValid() ? tr("This machine no longer has this service")
                                                : tr("Reading the current settings…"));
    }
    subtitle->setText(parts.join(QStringLiteral(" · ")));
    const bool hasRouter = info && info->config && info->config->router;
    settings->setService(info, carrier == service ? tr("Through this service")
                               : hasRouter        ? tr("Has a router but doesn't carry internet")
                                                  : QString());
    refreshVLAN(info);

    std::vector<AppModel::TempAlias> aliases;
    for (const AppModel::TempAlias& alias : model.tempAliases()) {
        if (alias.service == service) aliases.push_back(alias);
    }
    temporary->setAliases(aliases);

    offer(create, service.empty() ? tr("Choose a service first.") : QString(),
          tr("A new preset for %1").arg(name));
    offer(fromCurrent, commands.currentSettingsRefusal(service),
          tr("A new preset that holds what %1 is set to now").arg(name));
    offer(addTemporary, TemporaryAddressSheet::refusal(info),
          tr("A second address on %1, to reach equipment outside its subnet").arg(name));
    presets->refresh();
    refreshAge();
}

void ServicePage::Private::refreshVLAN(const ServiceInfo* info) {
    const bool isVLAN = model.vlan(service);
    const auto support = model.vlanSupport(service);
    newVLAN->setVisible(info && !isVLAN && support != AppModel::VLANSupport::notApplicable);
    offer(newVLAN, vlanSupportSentence(support), tr("A tagged VLAN on %1").arg(oneLine(service)));
    for (QPushButton* button : {editVLAN, deleteVLAN}) button->setVisible(isVLAN);
    editVLAN->setToolTip(tr("Its name, tag or adapter"));
}

void ServicePage::Private::showSection(int shown) {
    const bool toRoutes = shown == routesSection;
    section->setCurrent(shown);
    for (QPushButton* button : {create, fromCurrent}) button->setVisible(!toRoutes);
    for (QPushButton* button : {routes->addButton(), routes->removeButton()}) button->setVisible(toRoutes);
    sections->setCurrentIndex(shown);
    if (q->isVisible()) hand();
}

void ServicePage::Private::hand() {
    const bool toRoutes = section->current() == routesSection;
    commands.setCurrentPreset(toRoutes ? std::nullopt : presets->chosen());
    commands.setCurrentDraft(toRoutes ? routes->bar() : nullptr);
}

void ServicePage::Private::refreshAge() {
    const QDateTime read = model.lastRefresh();
    const qint64 seconds = read.isValid() ? read.secsTo(QDateTime::currentDateTime()) : 0;
    staleness->setText(seconds > staleSeconds ? age(seconds) : QString());
}

} // namespace corvane
