#include "app/views/network/global_page.h"

#include "app/model/app_model.h"
#include "app/views/network/form.h"
#include "app/views/network/global_presentation.h"
#include "app/views/network/network_commands.h"
#include "app/views/widgets/card.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/empty_state.h"
#include "app/views/widgets/row_list.h"
#include "app/views/widgets/symbols.h"

#include <QLabel>
#include <QPushButton>
#include <QStackedLayout>
#include <QTimer>
#include <QVBoxLayout>

namespace corvane {

struct GlobalPage::Private {
    Private(GlobalPage* page, AppModel& m, NetworkCommands& c)
        : q(page), model(m), commands(c), title(new ElidedLabel),
          words(new NoticeLines(NoticeLines::Room::oneLineAtLeast, page)), mark(new QLabel(page)),
          activeWord(new QLabel(page)), edit(new QPushButton(tr("Edit…"), page)),
          apply(new QPushButton(tr("Apply"), page)),
          notices(new NoticeLines(NoticeLines::Room::onlyWhatIsNeeded, page)), rows(new RowList),
          empty(new EmptyState) {}
    void refresh();

    GlobalPage* q;
    AppModel& model;
    NetworkCommands& commands;
    Uuid id;
    ElidedLabel* title;
    NoticeLines* words;
    QLabel* mark;
    QLabel* activeWord;
    QPushButton* edit;
    QPushButton* apply;
    NoticeLines* notices;
    RowList* rows;
    EmptyState* empty;
    QPushButton* chooseMembers = nullptr;
    QStackedLayout* stack = nullptr;
    QTimer folded;
};

GlobalPage::GlobalPage(AppModel& model, NetworkCommands& commands, QWidget* parent)
    : QWidget(parent), d(std::make_unique<Private>(this, model, commands)) {
    d->title->setFont(theme::title(font()));
    d->words->setFont(font());
    d->activeWord->setText(tr("Active"));
    d->rows->setObjectName(QStringLiteral("members"));
    d->rows->setAccessibleName(tr("What this global preset sets"));
    d->apply->setAccessibleName(tr("Apply this preset"));

    auto* names = new QVBoxLayout;
    names->setSpacing(2);
    names->addWidget(d->title);
    names->addWidget(d->words);
    auto* active = new QHBoxLayout;
    active->setSpacing(theme::xs);
    active->setContentsMargins(0, theme::xs, 0, 0);
    active->addWidget(d->mark);
    active->addWidget(d->activeWord);
    auto* header = new QHBoxLayout;
    header->setSpacing(theme::s);
    header->addLayout(names, 1);
    header->addLayout(active);
    header->addSpacing(theme::s);
    header->addWidget(d->edit);
    header->addWidget(d->apply);
    header->setAlignment(d->edit, Qt::AlignTop);
    header->setAlignment(d->apply, Qt::AlignTop);
    header->setAlignment(active, Qt::AlignTop);

    auto* card = new Card(this);
    d->stack = new QStackedLayout(card);
    d->stack->setContentsMargins(1, 1, 1, 1);
    d->stack->addWidget(d->rows);
    d->stack->addWidget(d->empty);
    d->chooseMembers = d->empty->addAction(tr("Choose Presets…"));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::m);
    layout->addLayout(header);
    layout->addWidget(d->notices);
    layout->addWidget(sectionTitle(tr("Applied in this order"), this));
    layout->addWidget(card, 1);

    const auto edit = [this] { d->commands.editGlobal(d->id); };
    connect(d->edit, &QPushButton::clicked, this, edit);
    connect(d->chooseMembers, &QPushButton::clicked, this, edit);
    connect(d->apply, &QPushButton::clicked, this, [this] { d->commands.applyGlobal(d->id); });
    connect(d->rows, &RowList::acted, this, [this] { d->commands.applyGlobal(d->id); });
    connect(d->rows, &RowList::opened, this, [this, edit](const QString& row) {
        const auto preset = Uuid::parse(row.toStdString());
        if (preset)
            d->commands.editPreset(*preset);
        else
            edit();
    });

    d->folded.setSingleShot(true);
    d->folded.setInterval(0);
    connect(&d->folded, &QTimer::timeout, this, [this] { d->refresh(); });
    const auto later = [this] { d->folded.start(); };
    connect(&model, &AppModel::servicesChanged, this, later);
    connect(&model, &AppModel::libraryChanged, this, later);
    connect(&model, &AppModel::pingChanged, this, later);
    d->refresh();
}

GlobalPage::~GlobalPage() = default;

void GlobalPage::setGlobal(const Uuid& id) {
    if (id == d->id) return;
    d->id = id;
    d->refresh();
    d->rows->scrollToTop();
}

void GlobalPage::Private::refresh() {
    const GlobalPreset* global = model.global(id);
    const QString name = global ? oneLine(global->name) : tr("Global preset");
    title->setText(name);
    q->setAccessibleName(name);
    const bool isActive = global && model.isActive(*global);
    const int side = activeWord->fontMetrics().height();
    const QColor good = theme::tone(theme::Tone::good, q->palette());
    mark->setPixmap(symbols::icon(symbols::Symbol::check, theme::Tone::good)
                        .pixmap(QSize(side - 2, side - 2), q->devicePixelRatioF()));
    QPalette tinted = activeWord->palette();
    tinted.setColor(QPalette::WindowText, good);
    if (tinted != activeWord->palette()) activeWord->setPalette(tinted);
    mark->setVisible(isActive);
    activeWord->setVisible(isActive);
    edit->setEnabled(global);
    apply->setEnabled(global);

    std::vector<Row> shown;
    if (global) {
        words->setNotices({{Notice::Kind::hint, inWords(*global, model)}});
        notices->setNotices(globalNotices(*global, model));
        shown = globalRows(*global, model);
        empty->setTexts(tr("%1 sets nothing yet").arg(name),
                        tr("A global preset switches several services at once. Choose which preset each "
                           "service gets, and which service carries internet."));
    } else {
        words->setNotices({{Notice::Kind::hint, tr("This global preset no longer exists.")}});
        notices->setNotices({});
        empty->setTexts(tr("This global preset no longer exists"),
                        tr("If it was deleted by mistake, Undo in the Edit menu brings it back."));
    }
    chooseMembers->setVisible(global);
    const QString tip = global ? tr("Apply “%1” now").arg(name) : tr("There is nothing to apply.");
    apply->setToolTip(plainTip(tip));
    rows->setRows(shown);
    stack->setCurrentWidget(shown.empty() ? static_cast<QWidget*>(empty) : rows);
}

} // namespace corvane
