#include "app/views/window/password_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace corvane {
namespace {

using namespace Qt::StringLiterals;

constexpr int fieldWidth = 260;
constexpr int stackHeight = 84;

/// Overwrites the characters where they lie, in every copy that shares them: a line edit hands out its own
/// buffer.
void overwrite(const QString& text) {
    // A literal lies in memory that can't be written; it is no secret either.
    if (text.capacity() == 0) return;
    auto* characters = const_cast<QChar*>(text.constData());
    volatile char16_t* place = reinterpret_cast<char16_t*>(characters);
    for (qsizetype i = 0; i < text.size(); ++i) place[i] = u' ';
}

} // namespace

PasswordPanel::PasswordPanel(const QString& purpose, bool retry, const QString& userName, const QString& help,
                             QWidget* parent)
    : Panel(parent) {
    setObjectName(u"passwordDialog"_s);
    setMessage(retry ? u"Password incorrect — try again"_s : u"Administrator password"_s);
    if (retry) setBadge(symbols::Symbol::warning, theme::Tone::attention);
    setInformativeText(u"Wendrel needs an administrator password to "_s + purpose);
    if (!help.isEmpty()) {
        auto* line = new QLabel(help, this);
        line->setTextFormat(Qt::PlainText);
        line->setWordWrap(true);
        QPalette quiet = line->palette();
        quiet.setColor(QPalette::WindowText, theme::secondaryText(quiet));
        line->setPalette(quiet);
        line->setObjectName(u"help"_s);
        addContent(line);
    }

    auto* stack = new QWidget(this);
    stack->setFixedWidth(fieldWidth);
    stack->setMinimumHeight(stackHeight);
    auto* layout = new QVBoxLayout(stack);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(theme::s);
    user_ = new QLineEdit(userName, stack);
    user_->setObjectName(u"userName"_s);
    user_->setPlaceholderText(u"User name"_s);
    user_->setAccessibleName(u"User name"_s);
    password_ = new QLineEdit(stack);
    password_->setObjectName(u"password"_s);
    password_->setPlaceholderText(u"Password"_s);
    password_->setAccessibleName(u"Password"_s);
    password_->setEchoMode(QLineEdit::Password);
    password_->setContextMenuPolicy(Qt::NoContextMenu);
    remember_ = new QCheckBox(u"Remember in Keychain"_s, stack);
    remember_->setChecked(true);
    for (QWidget* field :
         {static_cast<QWidget*>(user_), static_cast<QWidget*>(password_), static_cast<QWidget*>(remember_)}) {
        layout->addWidget(field);
    }
    addContent(stack);

    auto* apply = buttons().addButton(u"Apply"_s, QDialogButtonBox::AcceptRole);
    auto* cancel = buttons().addButton(u"Cancel"_s, QDialogButtonBox::RejectRole);
    apply->setDefault(true);
    QWidget::setTabOrder(user_, password_);
    QWidget::setTabOrder(password_, remember_);
    QWidget::setTabOrder(remember_, apply);
    QWidget::setTabOrder(apply, cancel);
    password_->setFocus();
}

PasswordPanel::~PasswordPanel() {
    wipeField();
}

void PasswordPanel::wipeField() {
    {
        const QString text = password_->text();
        overwrite(text);
    }
    // Setting a text also drops the field's undo history.
    password_->setText({});
}

std::optional<PasswordPrompt::Answer> PasswordPanel::takeAnswer() {
    PasswordPrompt::Answer answer;
    {
        QByteArray bytes = password_->text().toUtf8();
        answer.credentials.password =
            Secret(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
        volatile char* place = bytes.data();
        for (qsizetype i = 0; i < bytes.size(); ++i) place[i] = 0;
    }
    wipeField();
    answer.credentials.user = user_->text().toStdString();
    answer.remember = remember_->isChecked();
    if (answer.credentials.password.empty()) return std::nullopt;
    return answer;
}

std::optional<PasswordPrompt::Answer> PasswordDialog::ask(const QString& purpose, bool retry) {
    PasswordPanel panel(purpose, retry, userName_, help_,
                        window_ && window_->isVisible() ? window_.data() : nullptr);
    if (panel.execInFront() != QDialog::Accepted) return std::nullopt;
    return panel.takeAnswer();
}

} // namespace corvane
