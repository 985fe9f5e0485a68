#include "app/views/tools/ping/sweep_sheet.h"

#include "app/model/app_model.h"
#include "app/views/network/form.h"
#include "app/views/tools/ping/found_model.h"
#include "app/views/tools/ping/ping_row.h"
#include "app/views/widgets/card.h"
#include "app/views/widgets/copy_label.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/list_closing.h"
#include "app/views/window/conventions.h"
#include "core/diagnostics/host_lines.h"
#include "core/diagnostics/host_text.h"
#include "core/diagnostics/subnet_hosts.h"
#include "core/netconfig/ipv4.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>

namespace corvane {

namespace {

/// Rows with some air.
class AiryDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return QStyledItemDelegate::sizeHint(option, index).grownBy({0, 3, 0, 4});
    }
};

} // namespace

SweepSheet::SweepSheet(AppModel& model, const std::optional<Uuid>& group, QWidget* parent)
    : QDialog(parent), model_(model), group_(group), found_(new FoundModel(this)), services_(new QComboBox),
      groups_(new QComboBox), subnet_(new ElidedLabel), start_(new QPushButton), add_(new QPushButton),
      bar_(new QProgressBar), words_(new QLabel),
      notices_(new NoticeLines(NoticeLines::Room::onlyWhatIsNeeded, this)),
      remedy_(new CopyLabel(tr("Command"), this)), list_(new QTreeView), all_(new QCheckBox(tr("&All"))) {
    setWindowTitle(tr("Sweep a Subnet"));
    found_->setNote([this](const std::string& address) {
        const auto found = notes_.find(address);
        return found == notes_.end() ? QString() : found->second;
    });
    build();
    fill();
    readNotes();
    const auto refill = [this] {
        fill();
        readNotes();
    };
    connect(&model_, &AppModel::servicesChanged, this, refill);
    connect(&model_, &AppModel::tempAliasesChanged, this, refill);
    connect(&model_, &AppModel::libraryChanged, this, [this] {
        fillGroups();
        readNotes();
        judge();
    });
    const auto follow = [this] {
        if (swept_) found_->setFound(model_.sweep().found());
        judge();
    };
    connect(&model_.sweep(), &SubnetSweep::progressed, this, follow);
    connect(&model_.sweep(), &SubnetSweep::runningChanged, this, [this, follow] {
        follow();
        fill(); // the subnets of now, which a sweep holds up
    });
    connect(found_, &FoundModel::chosenChanged, this, &SweepSheet::judge);
    (start_->isEnabled() ? static_cast<QWidget*>(start_) : services_)->setFocus();
}

SweepSheet::~SweepSheet() {
    if (swept_ && model_.sweep().isRunning()) {
        disconnect(&model_.sweep(), nullptr, this, nullptr);
        model_.sweep().cancel();
    }
    hide();
}

void SweepSheet::done(int result) {
    if (swept_ && model_.sweep().isRunning()) model_.sweep().cancel();
    QDialog::done(result);
}

QWidget* SweepSheet::buildFound() {
    list_->setModel(found_);
    list_->setItemDelegate(new AiryDelegate(list_));
    list_->setObjectName(QStringLiteral("found"));
    list_->setAccessibleName(tr("Hosts that answer"));
    list_->setFrameShape(QFrame::NoFrame);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->setAllColumnsShowFocus(true);
    list_->setFont(theme::tabular(list_->font()));
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->viewport()->setAutoFillBackground(false);
    list_->header()->setSectionsMovable(false);
    list_->header()->setStretchLastSection(true);
    list_->header()->resizeSection(FoundModel::address, 190);
    list_->header()->resizeSection(FoundModel::roundTrip, 100);
    auto* card = new Card(this);
    auto* layout = new QVBoxLayout(card);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->addWidget(list_);
    return card;
}

void SweepSheet::build() {
    services_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    services_->setMinimumContentsLength(24);
    services_->setObjectName(QStringLiteral("sweepServices"));
    groups_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    groups_->setMinimumContentsLength(18);
    groups_->setObjectName(QStringLiteral("sweepGroups"));
    groups_->setAccessibleName(tr("Add to"));
    subnet_->setFont(theme::tabular(subnet_->font()));
    bar_->setTextVisible(false);
    bar_->setAccessibleName(tr("Progress of the sweep"));
    words_->setTextFormat(Qt::PlainText);
    words_->setFont(theme::tabular(words_->font()));
    remedy_->hide();

    auto* form = new Form(this);
    form->addPlainRow(tr("S&ervice"), services_);
    form->addPlainRow(tr("Subnet"), subnet_);
    auto* progress = new QHBoxLayout;
    progress->setSpacing(theme::m);
    progress->addWidget(bar_, 1);
    progress->addWidget(start_);
    auto* target = new QHBoxLayout;
    target->setSpacing(theme::s);
    auto* caption = new QLabel(tr("Add &to"), this);
    caption->setBuddy(groups_);
    target->addWidget(all_);
    target->addStretch();
    target->addWidget(caption);
    target->addWidget(groups_);

    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(add_, QDialogButtonBox::AcceptRole);
    auto* close = buttons->addButton(QDialogButtonBox::Close);
    for (QPushButton* button : {start_, add_, close}) button->setAutoDefault(false);
    start_->setMinimumWidth(90);
    start_->setObjectName(QStringLiteral("start"));
    add_->setObjectName(QStringLiteral("add"));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::s);
    layout->addWidget(form);
    layout->addLayout(progress);
    layout->addWidget(words_);
    layout->addWidget(notices_);
    layout->addWidget(remedy_);
    layout->addWidget(buildFound(), 1);
    layout->addLayout(target);
    layout->addSpacing(theme::xs);
    layout->addWidget(buttons);
    resize(520, 520);

    connect(services_, &QComboBox::activated, this, &SweepSheet::judge);
    connect(groups_, &QComboBox::activated, this, [this] {
        group_ = Uuid::parse(groups_->currentData().toString().toStdString());
        readNotes();
        judge();
    });
    for (QComboBox* box : {services_, groups_}) whenListCloses(*box, this, [this] { fill(); });
    connect(start_, &QPushButton::clicked, this, &SweepSheet::startOrStop);
    connect(all_, &QCheckBox::clicked, this, [this] {
        found_->choose(static_cast<int>(found_->chosen().size()) < found_->choosable());
        judge();
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &SweepSheet::add);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

QString SweepSheet::subnetName(const std::string& address, const std::string& mask) {
    const auto inside = IPv4::parse(address);
    const auto dotted = IPv4::normalizeMask(mask);
    const auto prefix = dotted ? IPv4::prefixLength(*dotted) : std::nullopt;
    if (!inside || !prefix) return {};
    return QStringLiteral("%1/%2")
        .arg(QString::fromStdString(IPv4::format(*inside & IPv4::maskValue(*prefix))))
        .arg(*prefix);
}

std::vector<SweepSheet::Subnet> SweepSheet::subnetsNow() const {
    std::vector<Subnet> subnets;
    const auto add = [&](const QString& name, const std::string& device, const std::string& ip,
                         const std::string& mask) {
        const auto hosts = SubnetHosts::count(ip, mask);
        subnets.push_back({QStringLiteral("%1 · %2 (%3)").arg(name, oneLine(ip), oneLine(device)), device, ip,
                           mask, hosts.addresses, oneLine(hosts.error)});
    };
    const auto& interfaces = model_.localInterfaces();
    for (const ServiceInfo& service : model_.services()) {
        if (!service.device || !service.config || !service.config->ip || !service.config->subnet) continue;
        const Ping::LocalInterface own{*service.device, *service.config->ip, *service.config->subnet};
        if (std::find(interfaces.begin(), interfaces.end(), own) != interfaces.end())
            add(oneLine(service.name), own.name, own.address, own.mask);
    }
    for (const AppModel::TempAlias& alias : model_.tempAliases())
        add(tr("%1, temporary").arg(oneLine(alias.service)), alias.device, alias.ip, alias.mask);
    return subnets;
}

void SweepSheet::fill() {
    fillGroups();
    const bool runs = swept_ && model_.sweep().isRunning();
    auto now = subnetsNow();
    if (now != subnets_ && !runs && !services_->view()->isVisible()) {
        const int before = services_->currentIndex();
        const auto chosen = before >= 0 && before < static_cast<int>(subnets_.size())
                                ? std::optional(subnets_[static_cast<std::size_t>(before)])
                                : std::nullopt;
        subnets_ = std::move(now);
        const QSignalBlocker blocker(services_);
        services_->clear();
        for (const Subnet& subnet : subnets_) services_->addItem(subnet.title);
        const auto same = std::find_if(subnets_.begin(), subnets_.end(), [&](const Subnet& each) {
            return chosen && each.device == chosen->device && each.address == chosen->address;
        });
        if (!subnets_.empty())
            services_->setCurrentIndex(same == subnets_.end() ? 0
                                                              : static_cast<int>(same - subnets_.begin()));
    }
    judge();
}

void SweepSheet::fillGroups() {
    if (groups_->view()->isVisible()) return;
    const QSignalBlocker blocker(groups_);
    groups_->clear();
    for (const PingGroup& group : model_.library().pingGroups)
        groups_->addItem(pingGroupTitle(group), QString::fromStdString(group.id.text()));
    groups_->addItem(tr("A new group"));
    if (group_ && !model_.pingGroup(*group_)) group_.reset();
    const int at = group_ ? groups_->findData(QString::fromStdString(group_->text())) : -1;
    groups_->setCurrentIndex(at < 0 ? groups_->count() - 1 : at);
}

void SweepSheet::readNotes() {
    notes_.clear();
    for (const auto& own : model_.localInterfaces()) notes_.emplace(own.address, tr("This computer"));
    if (const PingGroup* group = group_ ? model_.pingGroup(*group_) : nullptr) {
        for (const PingTarget& target : group->targets) {
            const QString name = oneLine(target.name).trimmed();
            notes_.emplace(HostText::trim(target.host),
                           name.isEmpty() ? tr("In the group already") : tr("In the group: %1").arg(name));
        }
    }
    found_->refreshNotes();
}

QString SweepSheet::stateWords() const {
    const SubnetSweep& sweep = model_.sweep();
    if (!swept_ || sweep.refused() || sweep.sentNothing())
        return tr("Asks every address once, and lists those that answer.");
    const auto answers = sweep.found().size();
    const QString count = answers == 0   ? tr("none answers")
                          : answers == 1 ? tr("1 answers")
                                         : tr("%1 answer").arg(answers);
    const QString asked = tr("%1 of %2").arg(sweep.handled()).arg(sweep.total());
    if (sweep.isRunning()) {
        if (sweep.handled() >= sweep.total()) return tr("All asked, late replies may come · %1").arg(count);
        return tr("Asked %1 · %2").arg(asked, count);
    }
    return stopped_ ? tr("Stopped after %1 · %2").arg(asked, count)
                    : tr("Asked all %1 · %2").arg(sweep.total()).arg(count);
}

void SweepSheet::judge() {
    SubnetSweep& sweep = model_.sweep();
    const bool runs = swept_ && sweep.isRunning();
    const int at = services_->currentIndex();
    const Subnet* subnet = at >= 0 ? &subnets_[static_cast<std::size_t>(at)] : nullptr;
    std::vector<Notice> notices;
    QString whyNot;
    QString shown = absent;
    if (!subnet) {
        whyNot = tr("No service has an IPv4 address now. Apply a preset or plug in a cable first.");
    } else {
        shown = subnetName(subnet->address, subnet->mask);
        if (!subnet->refusal.isEmpty())
            whyNot = subnet->refusal;
        else
            shown += subnet->count == 1 ? tr(" · 1 address") : tr(" · %1 addresses").arg(subnet->count);
    }
    if (!runs && sweep.isRunning()) whyNot = tr("Another sweep is under way.");
    if (!whyNot.isEmpty()) notices.push_back({Notice::Kind::error, whyNot});
    const bool refused = swept_ && sweep.refused();
    if (refused) {
        notices.push_back(
            {Notice::Kind::error,
             conventions::isMac()
                 ? tr("The system let no ping out. Allow Wendrel in the firewall or the security "
                      "software of this Mac, then start again.")
                 : tr("The system lets this user send no pings. An administrator allows it with "
                      "the command below; then start again.")});
    }
    const bool sentNothing = swept_ && sweep.sentNothing();
    if (sentNothing) {
        notices.push_back({Notice::Kind::error,
                           tr("The system let none of these pings out. Look for a firewall or security "
                              "software that stops them, and for the cable; then start again.")});
    }
    const auto chosen = found_->chosen().size();
    const QString tooMany = chosen <= HostLines::mostHosts
                                ? QString()
                                : tr("At most %1 hosts can be added at once.").arg(HostLines::mostHosts);
    if (!tooMany.isEmpty()) notices.push_back({Notice::Kind::advice, tooMany});
    remedy_->setVisible(refused && !conventions::isMac());
    remedy_->setValue(QStringLiteral("sudo sysctl -w net.ipv4.ping_group_range=\"0 2147483647\""));
    notices_->setNotices(std::move(notices));

    subnet_->setText(shown.isEmpty() ? absent : shown);
    services_->setEnabled(!runs && !subnets_.empty());
    start_->setText(runs ? tr("&Stop") : tr("&Start"));
    start_->setEnabled(runs || whyNot.isEmpty());
    start_->setToolTip(plainTip(runs ? QString() : whyNot));
    start_->setAccessibleDescription(runs ? QString() : whyNot);
    const bool progresses = swept_ && !refused && !sentNothing;
    bar_->setRange(0, progresses ? std::max(1, sweep.total()) : 1);
    bar_->setValue(progresses ? sweep.handled() : 0);
    words_->setText(stateWords());

    all_->setEnabled(found_->choosable() > 0);
    all_->setCheckState(chosen == 0                                      ? Qt::Unchecked
                        : static_cast<int>(chosen) < found_->choosable() ? Qt::PartiallyChecked
                                                                         : Qt::Checked);
    add_->setText(chosen == 0   ? tr("Add &Hosts")
                  : chosen == 1 ? tr("Add 1 &Host")
                                : tr("Add %1 &Hosts").arg(chosen));
    const QString whyNotAdd = chosen == 0 ? tr("Choose the hosts to add first.") : tooMany;
    add_->setEnabled(whyNotAdd.isEmpty());
    add_->setToolTip(whyNotAdd);
    add_->setAccessibleDescription(whyNotAdd);
    // Return starts, and adds once there is something to add; while a sweep runs it does neither.
    const bool adds = !runs && swept_ && chosen > 0;
    add_->setDefault(adds);
    start_->setDefault(!runs && !adds);
}

void SweepSheet::startOrStop() {
    SubnetSweep& sweep = model_.sweep();
    if (swept_ && sweep.isRunning()) {
        stopped_ = true;
        sweep.cancel();
        return judge();
    }
    const int at = services_->currentIndex();
    if (at < 0 || sweep.isRunning()) return;
    const Subnet subnet = subnets_[static_cast<std::size_t>(at)];
    SubnetHosts hosts = SubnetHosts::of(subnet.address, subnet.mask);
    if (!hosts.error.empty()) return judge();
    stopped_ = false;
    swept_ = subnet;
    found_->clear();
    sweep.start(std::move(hosts.addresses), subnet.device);
    judge();
}

void SweepSheet::add() {
    std::vector<PingTarget> targets;
    for (const std::string& address : found_->chosen()) {
        PingTarget target;
        target.id = Uuid::generate();
        target.host = address;
        targets.push_back(std::move(target));
    }
    if (targets.empty() || !swept_) return;
    if (group_)
        emit hostsAsked(*group_, targets);
    else
        emit groupAsked(subnetName(swept_->address, swept_->mask).toStdString(), targets);
    accept();
}

} // namespace corvane
