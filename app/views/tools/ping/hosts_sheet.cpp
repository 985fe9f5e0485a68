#include "app/views/tools/ping/hosts_sheet.h"

#include "app/model/app_model.h"
#include "app/views/network/form.h"
#include "app/views/tools/ping/ping_row.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/theme.h"
#include "core/support/text.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <set>

namespace corvane {

namespace {

constexpr int mostNameCharacters = 120;
/// Enough for every host that is taken at once; keeps a mistaken paste from holding up the window.
constexpr int mostCharacters = 64 * 1024;
/// Sentences about wrong lines that are shown.
constexpr std::size_t mostSentences = 3;

class LinesEdit : public QPlainTextEdit {
  public:
    LinesEdit() {
        setTabChangesFocus(true);
        setLineWrapMode(NoWrap);
        setFont(theme::tabular(font()));
        setPlaceholderText(HostsSheet::tr("10.0.0.5 Desk\n10.0.0.6 Media server\nprojector-3.local"));
    }

  protected:
    void insertFromMimeData(const QMimeData* source) override {
        const auto room = mostCharacters - document()->characterCount();
        if (source->hasText() && room > 0) insertPlainText(source->text().left(room));
    }
};

} // namespace

HostsSheet::HostsSheet(const AppModel& model, const std::optional<Uuid>& group, QWidget* parent)
    : QDialog(parent), model_(model), group_(group), text_(new LinesEdit),
      words_(new NoticeLines(NoticeLines::Room::oneLineAtLeast, this)),
      notices_(new NoticeLines(NoticeLines::Room::oneLineAtLeast, this)) {
    setWindowTitle(group ? tr("Add Hosts") : tr("New Ping Group"));
    build();
    judge();
    connect(&model_, &AppModel::libraryChanged, this, &HostsSheet::judge);
    (name_ ? static_cast<QWidget*>(name_) : text_)->setFocus();
}

HostsSheet::~HostsSheet() {
    hide(); // a field that loses the focus still finds what it reports to
}

void HostsSheet::build() {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(theme::xl, theme::l, theme::xl, theme::l);
    layout->setSpacing(theme::s);
    if (!group_) {
        name_ = new QLineEdit;
        name_->setMaxLength(mostNameCharacters);
        name_->setPlaceholderText(tr("New group"));
        auto* form = new Form(this);
        form->addPlainRow(tr("&Name"), name_);
        layout->addWidget(form);
    }
    auto* caption = new QLabel(tr("&Hosts, one a line: an address or a name, then what to call it"), this);
    caption->setBuddy(text_);
    text_->setAccessibleName(tr("Hosts, one a line"));
    layout->addWidget(caption);
    layout->addWidget(text_, 1);
    layout->addWidget(words_);
    notices_->setMinimumHeight(static_cast<int>(mostSentences) * (notices_->fontMetrics().height() + 3));
    layout->addWidget(notices_);
    auto* buttons = new QDialogButtonBox(this);
    add_ = buttons->addButton(QString(), QDialogButtonBox::AcceptRole);
    add_->setDefault(true);
    buttons->addButton(QDialogButtonBox::Cancel);
    layout->addWidget(buttons);
    resize(460, name_ ? 400 : 360);

    connect(text_, &QPlainTextEdit::textChanged, this, &HostsSheet::judge);
    connect(buttons, &QDialogButtonBox::accepted, this, &HostsSheet::finish);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* shortcut = new QShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(key)), this);
        connect(shortcut, &QShortcut::activated, this, &HostsSheet::finish);
    }
}

void HostsSheet::judge() {
    HostLines lines = HostLines::read(text_->toPlainText().toStdString());
    const PingGroup* group = group_ ? model_.pingGroup(*group_) : nullptr;
    std::set<std::string> known;
    if (group) {
        for (const PingTarget& target : group->targets) known.insert(text::lowered(text::trim(target.host)));
    }
    const std::size_t before = lines.hosts.size();
    std::erase_if(lines.hosts,
                  [&](const auto& host) { return !known.insert(text::lowered(host.host)).second; });
    const std::size_t doubled = before - lines.hosts.size();
    hosts_ = std::move(lines.hosts);

    const QString counted = hosts_.size() == 1 ? tr("1 host") : tr("%1 hosts").arg(hosts_.size());
    const QString where = group ? tr("to “%1”").arg(pingGroupTitle(*group)) : tr("to a new group");
    words_->setNotices({{Notice::Kind::hint, hosts_.empty() ? tr("Each is pinged once a second.")
                                                            : tr("Adds %1 %2.").arg(counted, where)}});
    std::vector<Notice> notices;
    if (doubled > 0) {
        notices.push_back({Notice::Kind::advice,
                           doubled == 1 ? tr("One host is there already and is left out.")
                                        : tr("%1 hosts are there already and are left out.").arg(doubled)});
    }
    for (const std::string& error : lines.errors) {
        if (notices.size() + 1 == mostSentences && lines.errors.size() > mostSentences) {
            notices.push_back({Notice::Kind::error, tr("More lines can't be used.")});
            break;
        }
        notices.push_back({Notice::Kind::error, oneLine(error)});
    }
    notices_->setNotices(std::move(notices));

    add_->setText(name_                ? tr("&Create Group")
                  : hosts_.empty()     ? tr("&Add Hosts")
                  : hosts_.size() == 1 ? tr("&Add 1 Host")
                                       : tr("&Add %1 Hosts").arg(hosts_.size()));
    const QString whyNot = name_ || !hosts_.empty() ? QString() : tr("Write down a host first.");
    add_->setEnabled(whyNot.isEmpty());
    add_->setToolTip(whyNot);
    add_->setAccessibleDescription(whyNot);
}

void HostsSheet::finish() {
    judge();
    if (!add_->isEnabled()) return;
    std::vector<PingTarget> targets;
    for (const auto& host : hosts_) {
        PingTarget target;
        target.id = Uuid::generate();
        target.name = host.name;
        target.host = host.host;
        targets.push_back(std::move(target));
    }
    if (group_) {
        emit hostsAsked(*group_, targets);
    } else {
        const QString name = name_->text().trimmed();
        emit groupAsked((name.isEmpty() ? name_->placeholderText() : name).toStdString(), targets);
    }
    accept();
}

} // namespace corvane
