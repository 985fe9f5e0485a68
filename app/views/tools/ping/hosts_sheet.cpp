#include "app/views/tools/ping/hosts_sheet.h"

#include "app/model/app_model.h"
#include "app/views/network/form.h"
#include "app/views/tools/ping/ping_row.h"
#include "app/views/widgets/display_text.h"
#include "app/views/widgets/theme.h"
#include "core/diagnostics/host_text.h"
#include "core/support/text.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>
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
    /// `pasted` hears of each paste whether its end was cut off.
    explicit LinesEdit(std::function<void(bool cut)> pasted) : pasted_(std::move(pasted)) {
        setTabChangesFocus(true);
        setLineWrapMode(NoWrap);
        setFont(theme::tabular(font()));
        setPlaceholderText(HostsSheet::tr("10.0.0.5 Desk\n10.0.0.6 Media server\nprojector-3.local"));
    }

  protected:
    void insertFromMimeData(const QMimeData* source) override {
        if (!source->hasText()) return;
        const auto room = std::max<qsizetype>(0, mostCharacters - document()->characterCount() +
                                                     textCursor().selectedText().size());
        QString text = source->text();
        const bool cut = text.size() > room;
        if (cut) {
            // Half a line would name another host.
            text.truncate(room);
            text.truncate(std::max(text.lastIndexOf(u'\n'), text.lastIndexOf(u'\r')) + 1);
        }
        if (!text.isEmpty()) insertPlainText(text);
        pasted_(cut);
    }

  private:
    std::function<void(bool cut)> pasted_;
};

} // namespace

HostsSheet::HostsSheet(const AppModel& model, const std::optional<Uuid>& group, QWidget* parent)
    : QDialog(parent), model_(model), group_(group), text_(new LinesEdit([this](bool cut) {
          cut_ = cut;
          judge();
      })),
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
        nameForm_ = new Form(this);
        nameForm_->addPlainRow(tr("&Name"), name_);
        layout->addWidget(nameForm_);
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
    const QString text = text_->toPlainText();
    if (text.isEmpty()) cut_ = false;
    HostLines lines = HostLines::read(text.toStdString());
    const PingGroup* group = group_ ? model_.pingGroup(*group_) : nullptr;
    std::set<std::string> known;
    if (group) {
        for (const PingTarget& target : group->targets)
            known.insert(text::lowered(HostText::trim(target.host)));
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
    if (cut_)
        notices.push_back({Notice::Kind::advice, tr("The text was too long; its last lines are left out.")});
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

    add_->setText(!group_              ? tr("&Create Group")
                  : hosts_.empty()     ? tr("&Add Hosts")
                  : hosts_.size() == 1 ? tr("&Add 1 Host")
                                       : tr("&Add %1 Hosts").arg(hosts_.size()));
    unused_ = std::move(lines.unused);
    const bool mayStayEmpty = !group_ && unused_.empty();
    const QString whyNot = mayStayEmpty || !hosts_.empty() ? QString()
                           : unused_.empty()               ? tr("Write down a host first.")
                                                           : tr("Correct these lines first.");
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
    // What can't be used stays for correction, as hosts to be added to the same group.
    QStringList unused;
    for (const std::string& line : unused_) unused << QString::fromStdString(line);
    if (group_) {
        emit hostsAsked(*group_, targets);
    } else {
        const QString name = name_->text().trimmed();
        PingGroup group;
        group.id = Uuid::generate();
        group.name = (name.isEmpty() ? name_->placeholderText() : name).toStdString();
        group.targets = std::move(targets);
        group_ = group.id;
        emit groupAsked(group);
    }
    if (unused.isEmpty()) return accept();
    setWindowTitle(tr("Add Hosts"));
    if (nameForm_) nameForm_->hide();
    cut_ = false;
    text_->setPlainText(unused.join(u'\n'));
    text_->setFocus();
}

} // namespace corvane
