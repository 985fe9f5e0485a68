#include "app/views/widgets/connection_bar.h"

#include "app/views/widgets/display_text.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/widgets/notice.h"
#include "app/views/widgets/symbols.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>

namespace corvane {

namespace {

using Kind = ConnectionStatus::Kind;

/// The longest host name that DNS allows.
constexpr int mostCharacters = 253;
/// Room for an IPv4 address and a little more.
constexpr int hostCharacters = 22, markSide = 12;

QString word(Kind kind) {
    switch (kind) {
    case Kind::idle:
        return ConnectionBar::tr("Not connected");
    case Kind::connecting:
        return ConnectionBar::tr("Connecting…");
    case Kind::connected:
        return ConnectionBar::tr("Connected");
    case Kind::failed:
        return ConnectionBar::tr("Failed");
    }
    return {};
}

} // namespace

/// A disc when connected, half of one on the way there, an octagon after a failure, a small ring without.
class ConnectionBar::Mark : public QWidget {
  public:
    explicit Mark(QWidget* parent) : QWidget(parent) { setFixedSize(markSide, markSide); }
    void setKind(Kind kind) {
        kind_ = kind;
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const auto paint = [&](LinkState::Kind shape, theme::Tone tone) {
            symbols::paintState(painter, rect(), shape, theme::tone(tone, palette()));
        };
        switch (kind_) {
        case Kind::idle:
            return paint(LinkState::Kind::inactive, theme::Tone::neutral);
        case Kind::connecting:
            return paint(LinkState::Kind::noAddress, theme::Tone::accent);
        case Kind::connected:
            return paint(LinkState::Kind::connected, theme::Tone::good);
        case Kind::failed:
            symbols::paint(painter, rect(), symbols::Symbol::error, theme::tone(theme::Tone::bad, palette()));
        }
    }

  private:
    Kind kind_ = Kind::idle;
};

ConnectionBar::ConnectionBar(const QString& title, const QString& caption, QWidget* parent)
    : QWidget(parent), host_(new QLineEdit(this)), button_(new QPushButton(this)), mark_(new Mark(this)),
      words_(new ElidedLabel(ElidedLabel::Weight::primary, this)),
      notices_(new NoticeLines(NoticeLines::Room::oneLineAtLeast, this)) {
    auto* name = new ElidedLabel(ElidedLabel::Weight::primary, this);
    name->setFont(theme::title(font()));
    name->setText(title);
    auto* about = new ElidedLabel(ElidedLabel::Weight::secondary, this);
    about->setText(caption);
    about->setContentsMargins(2, 0, 0, 0);

    host_->setObjectName(QStringLiteral("host"));
    host_->setAccessibleName(tr("%1: host").arg(title));
    host_->setPlaceholderText(tr("IP address or name"));
    host_->setToolTip(tr("The device’s IP address or name"));
    host_->setMaxLength(mostCharacters);
    host_->setFont(theme::tabular(host_->font()));
    host_->setFixedWidth(host_->fontMetrics().averageCharWidth() * hostCharacters + theme::xl);
    host_->installEventFilter(this);
    button_->setObjectName(QStringLiteral("connect"));
    button_->setAutoDefault(false);
    // Both words fit, so that nothing moves when one takes the other's place.
    int widest = 0;
    for (const QString& text : {tr("Connect"), tr("Disconnect")}) {
        button_->setText(text);
        widest = std::max(widest, button_->sizeHint().width());
    }
    button_->setFixedWidth(widest);

    auto* state = new QHBoxLayout;
    state->setContentsMargins(1, 0, 0, 0);
    state->setSpacing(theme::xs + 2);
    state->addWidget(mark_);
    state->addWidget(words_, 1);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(theme::s);
    grid->setVerticalSpacing(theme::xs);
    grid->addWidget(name, 0, 0);
    grid->addWidget(host_, 0, 1);
    grid->addWidget(button_, 0, 2);
    grid->addLayout(state, 1, 0);
    grid->addWidget(about, 1, 1, 1, 2);
    grid->addWidget(notices_, 2, 0, 1, 3);
    grid->setColumnStretch(0, 1);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    connect(host_, &QLineEdit::textEdited, this, &ConnectionBar::refresh);
    connect(host_, &QLineEdit::returnPressed, this, [this] {
        if (offersConnect()) act();
    });
    connect(button_, &QPushButton::clicked, this, &ConnectionBar::act);
    refresh();
}

void ConnectionBar::setHost(const QString& host) {
    given_ = host;
    if (host_->isModified() || host == host_->text()) return;
    const QSignalBlocker quiet(host_);
    host_->setText(host);
    refresh();
}

QString ConnectionBar::host() const {
    return host_->text().trimmed();
}

void ConnectionBar::setStatus(const ConnectionStatus& status, const QString& connectedTo) {
    if (status == status_ && connectedTo == connectedTo_) return;
    // While the next attempt runs, why the last one failed stays readable.
    if (status.isFailed())
        failure_ = status.message();
    else if (status.kind() != Kind::connecting || connectedTo != connectedTo_)
        failure_.clear();
    status_ = status;
    connectedTo_ = status.kind() == Kind::idle ? QString() : connectedTo;
    refresh();
}

void ConnectionBar::setDetail(const QString& detail) {
    if (detail == detail_) return;
    detail_ = detail;
    refresh();
}

QString ConnectionBar::statusText() const {
    return words_->text();
}

bool ConnectionBar::offersConnect() const {
    return status_.kind() == Kind::idle || (!host().isEmpty() && host() != connectedTo_);
}

void ConnectionBar::act() {
    if (!offersConnect()) {
        emit disconnectAsked();
        return;
    }
    const QString wanted = host();
    if (wanted.isEmpty()) return;
    given_ = wanted;
    host_->setText(wanted);
    host_->setModified(false);
    emit connectAsked(wanted);
}

void ConnectionBar::refresh() {
    const bool connects = offersConnect(), nowhere = connects && host().isEmpty();
    button_->setText(connects ? tr("Connect") : tr("Disconnect"));
    button_->setEnabled(!nowhere);
    button_->setToolTip(plainTip(nowhere    ? tr("Enter the device’s address first.")
                                 : connects ? tr("Connects to %1 (Return in the field)").arg(host())
                                            : tr("Ends the connection to %1").arg(connectedTo_)));
    const bool connected = status_.isConnected() && !detail_.isEmpty();
    words_->setText(word(status_.kind()) +
                    (connected ? QStringLiteral(" · ") + oneLine(detail_) : QString()));
    words_->setAccessibleName(words_->text());
    mark_->setKind(status_.kind());
    std::vector<Notice> said;
    if (!failure_.isEmpty()) {
        said.push_back({Notice::Kind::error,
                        oneLine(failure_) + QStringLiteral(" · ") + tr("Retrying every few seconds.")});
    }
    notices_->setNotices(std::move(said));
}

bool ConnectionBar::eventFilter(QObject* watched, QEvent* event) {
    // Escape takes back what was written.
    if (watched == host_ && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && host_->isModified()) {
        host_->setText(given_);
        host_->setModified(false);
        refresh();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace corvane
