#include "app/views/network/form.h"

#include "app/views/widgets/theme.h"

#include <QGridLayout>
#include <QLabel>

namespace corvane {

Form::Form(QWidget* parent) : QWidget(parent), grid_(new QGridLayout(this)) {
    grid_->setContentsMargins(0, 0, 0, 0);
    grid_->setHorizontalSpacing(theme::m);
    grid_->setVerticalSpacing(0);
    grid_->setColumnStretch(1, 1);
}

QLabel* Form::addLabel(const QString& label, QWidget* field) {
    auto* text = new QLabel(label, this);
    text->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    if (field->focusPolicy() != Qt::NoFocus) text->setBuddy(field);
    if (field->accessibleName().isEmpty()) field->setAccessibleName(QString(label).remove(QLatin1Char('&')));
    return text;
}

NoticeLines* Form::addRow(const QString& label, QWidget* field) {
    const int row = grid_->rowCount();
    auto* notices = new NoticeLines(NoticeLines::Room::oneLineAtLeast, this);
    grid_->addWidget(addLabel(label, field), row, 0);
    grid_->addWidget(field, row, 1);
    notices->setContentsMargins(0, 0, 0, 0);
    grid_->setRowMinimumHeight(row + 1, 3);
    grid_->addWidget(notices, row + 2, 1);
    grid_->setRowMinimumHeight(row + 3, 6);
    return notices;
}

void Form::addPlainRow(const QString& label, QWidget* field) {
    const int row = grid_->rowCount();
    grid_->addWidget(addLabel(label, field), row, 0);
    grid_->addWidget(field, row, 1);
    grid_->setRowMinimumHeight(row + 1, theme::s);
}

QLabel* sectionTitle(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setWeight(QFont::DemiBold);
    label->setFont(font);
    return label;
}

} // namespace corvane
