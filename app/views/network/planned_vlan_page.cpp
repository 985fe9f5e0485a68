#include "app/views/network/planned_vlan_page.h"

#include "app/model/app_model.h"
#include "app/views/network/form.h"
#include "app/views/network/network_commands.h"
#include "app/views/network/preset_list.h"
#include "app/views/network/vlan_presentation.h"
#include "app/views/widgets/card.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/empty_state.h"
#include "app/views/widgets/symbols.h"
#include "core/netconfig/vlan.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedLayout>
#include <QTimer>
#include <QVBoxLayout>

#include <utility>

namespace corvane {

namespace {

/// Longer than any sensible name; keeps a mistaken paste out of the library.
constexpr int mostCharacters = 120;
constexpr int signSize = 20;

} // namespace

struct PlannedVLANPage::Private {
    Private(PlannedVLANPage* page, AppModel& m, NetworkCommands& c)
        : q(page), model(m), commands(c), gone(new EmptyState), content(new QWidget), sign(new QLabel),
          title(new ElidedLabel), subtitle(new ElidedLabel(ElidedLabel::Weight::secondary)),
          remove(new QPushButton(tr("Delete Plan"))), setUp(new QPushButton(vlanTexts::setUp)),
          name(new QLineEdit), tag(new QLineEdit), adapter(new QComboBox),
          message(new NoticeLines(NoticeLines::Room::oneLineAtLeast)),
          words(new NoticeLines(NoticeLines::Room::oneLineAtLeast)),
          create(new QPushButton(tr("New Preset…"))),
          presets(new PresetList(m, c, nullptr, vlanTexts::presetsBefore)) {}
    void build();
    void refresh();
    void fill(const PlannedVLAN& plan);
    void list(const std::string& service, const std::optional<Uuid>& chosen);
    void judge();
    /// What the fields say; the tag as it was where it reads as none.
    PlannedVLAN buffer() const;
    /// Puts the fields into the library when they are right.
    void commit();

    PlannedVLANPage* q;
    AppModel& model;
    NetworkCommands& commands;
    Uuid id;
    /// As the fields were last filled; they differ from it only by what the user typed.
    PlannedVLAN shown;
    /// As the field took it, which may be less than the whole of a name from elsewhere.
    QString filledName;
    std::optional<std::string> parent;
    /// Whose presets are listed.
    std::string listed;
    QString whyNotSetUp;
    EmptyState* gone;
    QWidget* content;
    QLabel* sign;
    ElidedLabel* title;
    ElidedLabel* subtitle;
    QPushButton* remove;
    QPushButton* setUp;
    QLineEdit* name;
    QLineEdit* tag;
    QComboBox* adapter;
    NoticeLines* message;
    NoticeLines* words;
    QPushButton* create;
    PresetList* presets;
    QStackedLayout* stack = nullptr;
    QTimer folded;
};

PlannedVLANPage::PlannedVLANPage(AppModel& model, NetworkCommands& commands, QWidget* parent)
    : QWidget(parent), d(std::make_unique<Private>(this, model, commands)) {
    d->build();
    for (QLineEdit* field : {d->name, d->tag}) {
        connect(field, &QLineEdit::textEdited, this, [this] { d->judge(); });
        connect(field, &QLineEdit::editingFinished, this, [this] { d->commit(); });
    }
    connect(d->adapter, &QComboBox::activated, this, [this] {
        d->parent = chosenAdapter(*d->adapter);
        d->commit();
        d->judge();
    });
    connect(d->setUp, &QPushButton::clicked, this, [this] { d->commands.setUpPlannedVLAN(d->id); });
    connect(d->remove, &QPushButton::clicked, this, [this] { d->commands.deletePlannedVLAN(d->id); });
    connect(d->create, &QPushButton::clicked, this, [this] { d->commands.newPreset(d->shown.name); });
    connect(d->presets, &PresetList::chosenChanged, this, [this] {
        if (isVisible()) d->commands.setCurrentPreset(d->presets->chosen());
    });
    connect(&commands, &NetworkCommands::currentPresetChanged, this, [this] {
        const auto wanted = d->commands.currentPreset();
        if (!isVisible() || !wanted || d->presets->chosen() == wanted) return;
        d->refresh(); // the preset may be a new one
        d->presets->choose(*wanted);
    });
    d->folded.setSingleShot(true);
    d->folded.setInterval(0);
    connect(&d->folded, &QTimer::timeout, this, [this] { d->refresh(); });
    for (auto signal : {&AppModel::libraryChanged, &AppModel::servicesChanged, &AppModel::vlansChanged,
                        &AppModel::busyChanged}) {
        connect(&model, signal, &d->folded, qOverload<>(&QTimer::start));
    }
}

PlannedVLANPage::~PlannedVLANPage() {
    hide(); // a field that loses the focus still finds what it reports to
}

void PlannedVLANPage::Private::build() {
    title->setFont(theme::title(q->font()));
    name->setMaxLength(mostCharacters);
    tag->setMaxLength(16);
    tag->setFont(theme::tabular(tag->font()));
    tag->setPlaceholderText(tr("1 to 4094"));
    setUp->setObjectName(QStringLiteral("setUp"));
    remove->setToolTip(plainTip(vlanTexts::nothingChanges));
    remove->setAccessibleDescription(vlanTexts::nothingChanges);
    create->setToolTip(plainTip(vlanTexts::presetsBefore));

    auto* names = new QVBoxLayout;
    names->setSpacing(1);
    names->addWidget(title);
    names->addWidget(subtitle);
    auto* header = new QHBoxLayout;
    header->setSpacing(theme::m);
    header->addWidget(sign);
    header->addLayout(names, 1);
    header->addWidget(remove, 0, Qt::AlignTop);
    header->addWidget(setUp, 0, Qt::AlignTop);

    auto* card = new Card;
    auto* form = new Form;
    form->addPlainRow(tr("Name"), name);
    form->addPlainRow(tr("Tag"), tag);
    form->addPlainRow(tr("Adapter"), adapter);
    form->setMaximumWidth(480);
    auto* inside = new QVBoxLayout(card);
    inside->setContentsMargins(theme::l, theme::m, theme::l, theme::m);
    inside->setSpacing(theme::xs);
    inside->addWidget(form);
    inside->addWidget(message);
    inside->addWidget(words);
    words->setNotices({{Notice::Kind::hint, vlanTexts::creates}});

    auto* actions = new QHBoxLayout;
    actions->setSpacing(theme::s);
    actions->addWidget(sectionTitle(tr("Presets"), q));
    actions->addStretch();
    actions->addWidget(create);
    auto* later = new NoticeLines(NoticeLines::Room::oneLineAtLeast);
    later->setNotices({{Notice::Kind::hint, vlanTexts::presetsBefore}});

    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::m);
    layout->addLayout(header);
    layout->addWidget(card);
    layout->addLayout(actions);
    layout->addWidget(presets, 1);
    layout->addWidget(later);

    stack = new QStackedLayout(q);
    stack->addWidget(content);
    stack->addWidget(gone);
}

void PlannedVLANPage::setPlan(const Uuid& id) {
    if (id == d->id) return d->refresh();
    d->id = id;
    if (const PlannedVLAN* plan = d->model.plannedVLAN(id)) {
        d->fill(*plan);
        d->list(plan->name, std::nullopt);
    }
    d->refresh();
}

void PlannedVLANPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    d->commands.setCurrentPreset(d->presets->chosen());
    d->commands.setPlanPage(this);
}

void PlannedVLANPage::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    d->commands.setCurrentPreset(std::nullopt);
    d->commands.setPlanPage(nullptr);
}

const Uuid& PlannedVLANPage::plan() const {
    return d->id;
}
const QString& PlannedVLANPage::setUpRefusal() const {
    return d->whyNotSetUp;
}
void PlannedVLANPage::commit() {
    d->commit();
}

void PlannedVLANPage::Private::fill(const PlannedVLAN& plan) {
    shown = plan;
    parent = plan.parentDevice;
    const QString newName = oneLine(plan.name), newTag = QString::number(plan.tag);
    if (name->text() != newName) name->setText(newName);
    filledName = name->text();
    if (tag->text() != newTag) tag->setText(newTag);
}

void PlannedVLANPage::Private::list(const std::string& service, const std::optional<Uuid>& chosen) {
    listed = service;
    presets->setService(service, chosen);
}

PlannedVLAN PlannedVLANPage::Private::buffer() const {
    PlannedVLAN plan = shown;
    if (name->text() != filledName) plan.name = name->text().trimmed().toStdString();
    plan.tag = VLAN::parseTag(tag->text().toStdString()).value_or(shown.tag);
    plan.parentDevice = parent;
    return plan;
}

void PlannedVLANPage::Private::refresh() {
    const PlannedVLAN* plan = model.plannedVLAN(id);
    stack->setCurrentWidget(plan ? content : static_cast<QWidget*>(gone));
    if (!plan) {
        // While the service that it has become is on its way, its own page isn't far.
        const bool becoming = model.pendingSelection() == shown.name;
        gone->setTexts(becoming ? tr("%1 has been set up").arg(oneLine(shown.name))
                                : tr("This planned VLAN no longer exists"),
                       becoming ? tr("Its page opens as soon as the system lists it.")
                                : tr("It was set up, or deleted; a deleted plan comes back by Undo in the "
                                     "Edit menu."));
        return;
    }
    const auto typed = VLAN::parseTag(tag->text().toStdString());
    const bool untouched = buffer() == shown && typed == shown.tag;
    const bool caughtUp = buffer() == *plan && typed == plan->tag;
    if (untouched || caughtUp) fill(*plan);
    if (plan->name != listed) list(plan->name, presets->chosen());
    title->setText(oneLine(plan->name));
    q->setAccessibleName(oneLine(plan->name));
    subtitle->setText(tr("Planned VLAN %1 · not created yet").arg(plan->tag));
    sign->setPixmap(symbols::icon(symbols::Symbol::vlan, theme::Tone::neutral)
                        .pixmap(QSize(signSize, signSize), q->devicePixelRatioF()));
    fillAdapters(*adapter, model, parent);
    presets->refresh();
    judge();
}

void PlannedVLANPage::Private::judge() {
    const PlannedVLAN now = buffer();
    const auto wrong = planMessage(model, now, tag->text());
    std::vector<Notice> said;
    QString whyNot = model.busy() ? tr("Another change is being applied.") : QString();
    if (wrong) {
        said.push_back({Notice::Kind::error, *wrong});
    } else if (!now.parentDevice) {
        said.push_back({Notice::Kind::hint, tr("Choose an adapter to set the VLAN up.")});
    } else if (const auto reason = adapterRefusal(model, *now.parentDevice)) {
        said.push_back({Notice::Kind::hint, *reason});
    }
    if (!said.empty()) whyNot = said.front().text;
    setUp->setEnabled(whyNot.isEmpty());
    setUp->setToolTip(plainTip(whyNot));
    setUp->setAccessibleDescription(whyNot);
    message->setNotices(std::move(said));
    if (std::exchange(whyNotSetUp, whyNot) != whyNot) emit q->setUpRefusalChanged();
}

void PlannedVLANPage::Private::commit() {
    const PlannedVLAN wanted = buffer();
    if (!model.plannedVLAN(id) || wanted == shown || planMessage(model, wanted, tag->text())) return judge();
    shown = wanted;
    filledName = name->text();
    model.updatePlannedVLAN(wanted);
    judge();
}

} // namespace corvane
