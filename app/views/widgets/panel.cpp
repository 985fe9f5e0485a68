#include "app/views/widgets/panel.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

namespace corvane {
namespace {

using namespace Qt::StringLiterals;

constexpr int signSize = 48, badgeSize = 22;
constexpr int textWidth = 380;
/// Texts taller than this scroll.
constexpr int tallest = 260;

/// As tall as its text, up to a limit; then it scrolls.
class TextScroll : public QScrollArea {
  public:
    explicit TextScroll(QLabel* text) {
        setWidget(text);
        setWidgetResizable(true);
        setFrameShape(QFrame::NoFrame);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setFocusPolicy(Qt::NoFocus);
        viewport()->setAutoFillBackground(false);
        text->setAutoFillBackground(false);
    }
    void fit() {
        const auto* text = static_cast<QLabel*>(widget());
        const int wanted = text->text().isEmpty() ? 0 : text->heightForWidth(textWidth);
        setFixedHeight(std::min(wanted, tallest));
        setFocusPolicy(wanted > tallest ? Qt::TabFocus : Qt::NoFocus);
        setVisible(wanted > 0);
    }
};

} // namespace

Panel::Panel(QWidget* parent)
    : QDialog(parent), sign_(new QLabel(this)), message_(new QLabel(this)), informative_(new QLabel),
      column_(new QVBoxLayout), buttons_(new QDialogButtonBox(this)) {
    setWindowTitle(u"Wendrel"_s);
    setModal(true);
    for (auto* label : {message_, informative_}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    }
    QFont strong = font();
    strong.setWeight(QFont::DemiBold);
    strong.setPointSizeF(strong.pointSizeF() * 1.1);
    message_->setFont(strong);
    message_->setFixedWidth(textWidth);
    informative_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* scroll = new TextScroll(informative_);
    scroll->setObjectName(u"informative"_s);
    scroll->setFixedWidth(textWidth);
    scroll->hide();

    column_->setSpacing(theme::s);
    column_->addWidget(message_);
    column_->addWidget(scroll);
    auto* across = new QHBoxLayout;
    across->setSpacing(theme::l);
    across->addWidget(sign_, 0, Qt::AlignTop);
    across->addLayout(column_, 1);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(theme::xl, theme::xl, theme::xl, theme::l);
    all->setSpacing(theme::l);
    all->addLayout(across);
    all->addWidget(buttons_);
    all->setSizeConstraint(QLayout::SetFixedSize);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    drawSign();
}

void Panel::setMessage(const QString& message) {
    message_->setText(message);
    setAccessibleName(message);
}

void Panel::setInformativeText(const QString& text) {
    informative_->setText(text);
    setAccessibleDescription(text);
    static_cast<TextScroll*>(findChild<QScrollArea*>(u"informative"_s))->fit();
}

void Panel::setBadge(symbols::Symbol symbol, theme::Tone tone) {
    badge_ = {symbol, tone};
    drawSign();
}

QString Panel::message() const {
    return message_->text();
}
QString Panel::informativeText() const {
    return informative_->text();
}
void Panel::addContent(QWidget* content) {
    column_->addWidget(content);
}

void Panel::drawSign() {
    const qreal ratio = devicePixelRatioF();
    QPixmap picture = QPixmap((QSizeF(signSize, signSize) * ratio).toSize());
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    symbols::application().paint(&painter, QRect(0, 0, signSize, signSize));
    if (badge_) {
        const QRectF corner(signSize - badgeSize, signSize - badgeSize, badgeSize, badgeSize);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette().color(QPalette::Window));
        painter.drawEllipse(corner);
        symbols::paint(painter, corner.adjusted(2.5, 2.5, -2.5, -2.5), badge_->first,
                       theme::tone(badge_->second, palette()));
    }
    painter.end();
    sign_->setPixmap(picture);
}

int Panel::execInFront() {
    if (auto* owner = parentWidget(); owner && owner->isVisible() && owner->isMinimized())
        owner->showNormal();
    show();
    raise();
    activateWindow();
    return exec();
}

} // namespace corvane
