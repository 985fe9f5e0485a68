#include "app/views/network/service_page.h"

#include "app/model/app_model.h"
#include "app/views/network/current_settings.h"
#include "app/views/network/form.h"
#include "app/views/network/network_commands.h"
#include "app/views/network/preset_list.h"
#include "app/views/network/preset_presentation.h"
#include "app/views/network/temporary_address_sheet.h"
#include "app/views/network/temporary_addresses.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/state_dot.h"
#include "app/views/widgets/theme.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include <map>

namespace corvane {

namespace {

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
          presets(new PresetList(m, c, page)) {}

    void refresh();
    void refreshAge();

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
    PresetList* presets;
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

    auto* actions = new QHBoxLayout;
    actions->setSpacing(theme::s);
    actions->addWidget(sectionTitle(tr("Presets"), this));
    actions->addStretch();
    for (QPushButton* button : {d->create, d->fromCurrent, d->addTemporary}) actions->addWidget(button);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::m);
    layout->addLayout(header);
    layout->addWidget(d->settings);
    layout->addWidget(d->temporary);
    layout->addLayout(actions);
    layout->addWidget(d->presets, 1);

    connect(d->create, &QPushButton::clicked, this, [this] { d->commands.newPreset(d->service); });
    connect(d->fromCurrent, &QPushButton::clicked, this,
            [this] { d->commands.newPresetFromCurrent(d->service); });
    connect(d->addTemporary, &QPushButton::clicked, this,
            [this] { d->commands.addTemporaryAddress(d->service); });
    connect(d->presets, &PresetList::chosenChanged, this, [this] {
        const auto chosen = d->presets->chosen();
        if (chosen) d->chosen[d->service] = *chosen;
        if (isVisible()) d->commands.setCurrentPreset(chosen);
    });
    connect(&commands, &NetworkCommands::currentPresetChanged, this, [this] {
        const auto& wanted = d->commands.currentPreset();
        if (!wanted || d->presets->chosen() == wanted) return;
        const NetworkPreset* preset = d->model.preset(*wanted);
        if (!preset || preset->service != d->service) return;
        d->refresh(); // the preset may be a new one
        d->presets->choose(*wanted);
    });

    d->folded.setSingleShot(true);
    d->folded.setInterval(0);
    connect(&d->folded, &QTimer::timeout, this, [this] { d->refresh(); });
    const auto later = [this] { d->folded.start(); };
    connect(&model, &AppModel::servicesChanged, this, later);
    connect(&model, &AppModel::libraryChanged, this, later);
    connect(&model, &AppModel::tempAliasesChanged, this, later);
    connect(&model, &AppModel::refreshed, this, [this] { d->refreshAge(); });
    d->clock.setInterval(1000);
    connect(&d->clock, &QTimer::timeout, this, [this] { d->refreshAge(); });
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
    d->refresh();
}

void ServicePage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    d->clock.start();
    d->refreshAge();
    d->commands.setCurrentPreset(d->presets->chosen());
}

void ServicePage::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    d->clock.stop();
    d->commands.setCurrentPreset(std::nullopt);
}

void ServicePage::Private::refresh() {
    const ServiceInfo* info = model.service(service);
    const QString name = oneLine(service);
    title->setText(name);
    q->setAccessibleName(name);
    dot->setState(info ? info->state() : LinkState::adapterMissing());
    dot->setVisible(info);
    QStringList parts;
    if (info) {
        parts << oneLine(info->state().title());
        if (info->hardwarePort && *info->hardwarePort != info->name) parts << oneLine(*info->hardwarePort);
        if (info->device) parts << oneLine(*info->device);
        if (info->device && model.internetDevice() == info->device) parts << tr("carries internet");
    } else {
        parts << (model.lastRefresh().isValid() ? tr("This machine no longer has this service")
                                                : tr("Reading the current settings…"));
    }
    subtitle->setText(parts.join(QStringLiteral(" · ")));
    settings->setService(info);

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

void ServicePage::Private::refreshAge() {
    const QDateTime read = model.lastRefresh();
    const qint64 seconds = read.isValid() ? read.secsTo(QDateTime::currentDateTime()) : 0;
    staleness->setText(seconds > staleSeconds ? age(seconds) : QString());
}

} // namespace corvane
