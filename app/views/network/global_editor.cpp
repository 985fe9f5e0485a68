#include "app/views/network/global_editor.h"

#include "app/model/app_model.h"
#include "app/views/network/form.h"
#include "app/views/network/global_presentation.h"
#include "app/views/network/preset_presentation.h"
#include "app/views/tools/ping/ping_row.h"
#include "app/views/widgets/card.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/list_closing.h"
#include "app/views/widgets/row_list.h"
#include "app/views/widgets/state_dot.h"
#include "app/views/widgets/theme.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace corvane {

namespace {

/// Longer than any sensible name; keeps a mistaken paste out of the library.
constexpr int mostCharacters = 500;

std::optional<Uuid> uuidOf(const QString& id) {
    return Uuid::parse(id.toStdString());
}

} // namespace

GlobalEditor::GlobalEditor(const AppModel& model, const GlobalPreset& global, bool isNew, QWidget* parent)
    : QDialog(parent), model_(model), global_(global), isNew_(isNew), name_(new QLineEdit),
      internet_(new QComboBox), ping_(new QComboBox) {
    setWindowTitle(isNew ? tr("New Global Preset") : tr("Edit Global Preset"));
    build();
    fill();
    connect(&model, &AppModel::servicesChanged, this, &GlobalEditor::fill);
    connect(&model, &AppModel::libraryChanged, this, [this] {
        const GlobalPreset* current = model_.global(global_.id);
        if (!touched_ && !isNew_ && current) global_ = *current;
        fill();
    });
    name_->setFocus();
    name_->end(false);
    name_->home(true); // all of it chosen, its beginning in view
}

GlobalEditor::~GlobalEditor() {
    hide(); // a field that loses the focus still finds its buffer
}

QWidget* GlobalEditor::buildServices() {
    auto* content = new QWidget;
    services_ = new QGridLayout(content);
    services_->setContentsMargins(theme::m, theme::s, theme::m, theme::s);
    services_->setHorizontalSpacing(theme::s);
    services_->setVerticalSpacing(theme::s);
    services_->setColumnStretch(1, 2);
    services_->setColumnStretch(2, 3);
    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(content);
    scroll->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    auto* card = new Card;
    auto* layout = new QVBoxLayout(card);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->addWidget(scroll);
    return card;
}

QWidget* GlobalEditor::buildOrder() {
    order_ = new RowList;
    order_->setObjectName(QStringLiteral("order"));
    order_->setAccessibleName(tr("Order of applying"));
    order_->setMovable(true);
    order_->setPlaceholder(tr("Services that get a preset stand here, in the order in which they are set."));
    connect(order_, &RowList::moveAsked, this,
            [this](const QString& id, const std::optional<QString>& before) {
                if (const auto member = uuidOf(id))
                    moveMember(*member, before ? uuidOf(*before) : std::nullopt);
            });
    connect(order_, &RowList::currentIdChanged, this, &GlobalEditor::judge);
    auto* card = new Card;
    auto* layout = new QVBoxLayout(card);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->addWidget(order_);
    return card;
}

void GlobalEditor::build() {
    name_->setMaxLength(mostCharacters);
    name_->setPlaceholderText(tr("Global preset"));
    auto* head = new Form(this);
    head->addPlainRow(tr("&Name"), name_);
    auto* foot = new Form(this);
    foot->addPlainRow(tr("&Internet through"), internet_);
    foot->addPlainRow(tr("Pin&g group"), ping_);
    ping_->setObjectName(QStringLiteral("pingGroup"));
    ping_->setToolTip(tr("The hosts that the ping monitor watches from then on"));

    up_ = new QPushButton(tr("Move &Up"));
    down_ = new QPushButton(tr("Move D&own"));
    for (QPushButton* button : {up_, down_}) button->setAutoDefault(false);

    auto* panes = new QGridLayout;
    panes->setHorizontalSpacing(theme::l);
    panes->setVerticalSpacing(theme::xs);
    panes->addWidget(sectionTitle(tr("Preset for each service"), this), 0, 0);
    panes->addWidget(buildServices(), 1, 0, 2, 1);
    panes->addWidget(sectionTitle(tr("Applied in this order"), this), 0, 1);
    panes->addWidget(buildOrder(), 1, 1);
    auto* moves = new QHBoxLayout;
    moves->setContentsMargins(0, theme::xs, 0, 0);
    moves->addWidget(up_);
    moves->addWidget(down_);
    moves->addStretch();
    panes->addLayout(moves, 2, 1);
    panes->setColumnStretch(0, 10);
    panes->setColumnStretch(1, 9);
    panes->setRowStretch(1, 1);
    connect(up_, &QPushButton::clicked, order_, [this] { order_->moveCurrent(-1); });
    connect(down_, &QPushButton::clicked, order_, [this] { order_->moveCurrent(1); });

    words_ = new NoticeLines(NoticeLines::Room::oneLineAtLeast, this);
    notices_ = new NoticeLines(NoticeLines::Room::oneLineAtLeast, this);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("&Save"), QDialogButtonBox::AcceptRole)->setDefault(true);
    buttons->addButton(QDialogButtonBox::Cancel);
    saveAndApply_ = buttons->addButton(tr("Save and A&pply"), QDialogButtonBox::ActionRole);
    saveAndApply_->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { save(false); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(saveAndApply_, &QPushButton::clicked, this, [this] { save(true); });
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* shortcut = new QShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(key)), this);
        connect(shortcut, &QShortcut::activated, saveAndApply_, [this] { saveAndApply_->click(); });
    }

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::m);
    layout->addWidget(head);
    layout->addLayout(panes, 1);
    layout->addWidget(foot);
    layout->addWidget(words_);
    layout->addWidget(notices_);
    layout->addWidget(buttons);
    resize(760, 540);

    connect(name_, &QLineEdit::textEdited, this, [this](const QString& text) {
        touched_ = true;
        global_.name = text.trimmed().toStdString();
    });
    whenListCloses(*internet_, this, [this] { fillInternet(); });
    whenListCloses(*ping_, this, [this] { fillPing(); });
    connect(internet_, &QComboBox::activated, this, [this] {
        touched_ = true;
        const QString service = internet_->currentData().toString();
        global_.internetService = service.isEmpty() ? std::nullopt : std::optional(service.toStdString());
        judge();
    });
    connect(ping_, &QComboBox::activated, this, [this] {
        touched_ = true;
        global_.pingGroup = uuidOf(ping_->currentData().toString());
        judge();
    });
}

std::vector<std::string> GlobalEditor::servicesToOffer() const {
    std::vector<std::string> names;
    const auto add = [&](const std::string& name) {
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    };
    for (const ServiceInfo& service : model_.services()) add(service.name);
    for (const NetworkPreset& preset : model_.library().presets) {
        if (!preset.service.empty()) add(preset.service);
    }
    return names;
}

void GlobalEditor::fill() {
    const QSignalBlocker blockName(name_);
    const QString name = oneLine(global_.name);
    if (name_->text().trimmed() != name) name_->setText(name);

    const auto names = servicesToOffer();
    const bool sameLines =
        std::equal(names.begin(), names.end(), lines_.begin(), lines_.end(),
                   [](const std::string& n, const ServiceLine& l) { return n == l.service; });
    if (!sameLines) {
        for (const ServiceLine& line : lines_) line.choice->disconnect(this);
        while (QLayoutItem* item = services_->takeAt(0)) {
            delete item->widget();
            delete item;
        }
        lines_.clear();
        for (const std::string& service : names) {
            const int row = static_cast<int>(lines_.size());
            ServiceLine line{service, new StateDot(12), new QComboBox};
            auto* label = new ElidedLabel;
            label->setText(oneLine(service));
            line.choice->setAccessibleName(tr("Preset for %1").arg(oneLine(service)));
            line.choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
            line.choice->setMinimumContentsLength(12);
            services_->addWidget(line.state, row, 0);
            services_->addWidget(label, row, 1);
            services_->addWidget(line.choice, row, 2);
            connect(line.choice, &QComboBox::activated, this, [this, service, choice = line.choice] {
                touched_ = true;
                global_.setMember(service, uuidOf(choice->currentData().toString()),
                                  model_.library().presets);
                judge();
            });
            lines_.push_back(line);
        }
        services_->setRowStretch(static_cast<int>(lines_.size()), 1);
    }
    for (const ServiceLine& line : lines_) {
        const ServiceInfo* info = model_.service(line.service);
        line.state->setState(info ? info->state() : LinkState::adapterMissing());
        if (line.choice->view()->isVisible()) continue; // nothing moves under an open list
        const QSignalBlocker blocker(line.choice);
        line.choice->clear();
        line.choice->addItem(tr("Leave as it is"));
        for (const NetworkPreset& preset : model_.library().presets) {
            if (preset.service != line.service) continue;
            const QString title = presetTitle(preset), summary = oneLine(preset.summary());
            line.choice->addItem(title == summary ? title : title + QStringLiteral(" · ") + summary,
                                 presetId(preset.id));
        }
        const auto chosen = global_.member(line.service, model_.library().presets);
        line.choice->setCurrentIndex(chosen ? std::max(0, line.choice->findData(presetId(chosen->id))) : 0);
    }
    fillInternet();
    fillPing();
    judge();
}

void GlobalEditor::fillInternet() {
    if (internet_->view()->isVisible()) return;
    const QSignalBlocker blocker(internet_);
    internet_->clear();
    internet_->addItem(tr("No change"));
    for (const std::string& service : model_.serviceOrder()) {
        internet_->addItem(oneLine(service), QString::fromStdString(service));
    }
    const QString own = QString::fromStdString(global_.internetService.value_or(""));
    if (!own.isEmpty() && internet_->findData(own) < 0) {
        internet_->addItem(tr("%1 (not on this machine now)").arg(oneLine(own)), own);
    }
    internet_->setCurrentIndex(own.isEmpty() ? 0 : internet_->findData(own));
    internet_->setToolTip(
        tr("The service that moves to the top of the service order, so that it carries internet"));
}

void GlobalEditor::fillPing() {
    if (ping_->view()->isVisible()) return;
    const QSignalBlocker blocker(ping_);
    ping_->clear();
    ping_->addItem(tr("None"));
    for (const PingGroup& group : model_.library().pingGroups)
        ping_->addItem(pingGroupTitle(group), QString::fromStdString(group.id.text()));
    const QString own = global_.pingGroup ? QString::fromStdString(global_.pingGroup->text()) : QString();
    if (!own.isEmpty() && ping_->findData(own) < 0) ping_->addItem(tr("A group that no longer exists"), own);
    ping_->setCurrentIndex(own.isEmpty() ? 0 : ping_->findData(own));
}

void GlobalEditor::judge() {
    std::vector<Row> rows;
    for (const NetworkPreset& preset : global_.resolve(model_.library().presets)) {
        Row row;
        row.id = presetId(preset.id);
        row.title = QStringLiteral("%1.  %2").arg(rows.size() + 1).arg(oneLine(preset.service));
        row.detail = presetTitle(preset) + QStringLiteral(" · ") + presetDetail(preset);
        rows.push_back(std::move(row));
    }
    order_->setRows(rows);
    const int current = order_->currentIndex().row();
    up_->setEnabled(current > 0);
    down_->setEnabled(current >= 0 && current + 1 < static_cast<int>(rows.size()));
    const QString why =
        rows.size() < 2 ? tr("There is nothing to put in order.") : tr("Choose a service first.");
    for (QPushButton* button : {up_, down_}) {
        button->setToolTip(button->isEnabled() || current >= 0 ? QString() : why);
    }

    words_->setNotices({{Notice::Kind::hint, inWords(global_, model_)}});
    std::vector<Notice> notices = globalNotices(global_, model_);
    const bool applicable = std::none_of(notices.begin(), notices.end(),
                                         [](const Notice& n) { return n.kind == Notice::Kind::error; });
    QStringList errors;
    for (const Notice& notice : notices) errors << notice.text;
    saveAndApply_->setEnabled(applicable);
    saveAndApply_->setToolTip(plainTip(applicable ? tr("Saves the global preset and applies it now")
                                                  : errors.join(QLatin1Char('\n'))));
    saveAndApply_->setAccessibleDescription(applicable ? QString() : errors.join(QLatin1Char(' ')));
    notices_->setNotices(std::move(notices));
}

void GlobalEditor::moveMember(const Uuid& id, const std::optional<Uuid>& before) {
    auto& members = global_.members;
    const auto from = std::find(members.begin(), members.end(), id);
    if (from == members.end()) return;
    members.erase(from);
    const auto to = before ? std::find(members.begin(), members.end(), *before) : members.end();
    members.insert(to, id);
    touched_ = true;
    judge();
}

void GlobalEditor::save(bool applyNow) {
    GlobalPreset global = global_;
    if (global.name.empty()) global.name = name_->placeholderText().toStdString();
    emit saved(global, applyNow && saveAndApply_->isEnabled());
    accept();
}

} // namespace corvane
