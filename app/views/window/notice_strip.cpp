#include "app/views/window/notice_strip.h"

#include "app/model/app_model.h"
#include "app/views/widgets/symbols.h"

#include <QAccessible>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace corvane {

using namespace Qt::StringLiterals;

/// One lasting line: a sign, the words, a ground in the sign's tone.
class NoticeRow : public QWidget {
  public:
    NoticeRow(theme::Tone tone, symbols::Symbol symbol, QWidget* parent)
        : QWidget(parent), tone_(tone), symbol_(symbol), words_(new QLabel(this)) {
        words_->setWordWrap(true);
        words_->setTextFormat(Qt::PlainText);
        words_->setTextInteractionFlags(Qt::TextSelectableByMouse);
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(theme::m + 14 + theme::s, 5, theme::m, 5);
        layout->addWidget(words_);
        hide();
    }
    void setText(const QString& text) {
        if (text == words_->text()) return;
        words_->setText(text);
        words_->setAccessibleName(text);
        setVisible(!text.isEmpty());
        if (text.isEmpty()) return;
        QAccessibleEvent alert(words_, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
    QString text() const { return words_->text(); }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QColor colour = theme::tone(tone_, palette());
        QColor tint = colour;
        tint.setAlphaF(0.13F);
        painter.fillRect(rect(), tint);
        painter.fillRect(QRect(0, 0, width(), 1), theme::hairline(palette()));
        const QRectF sign(theme::m, words_->y() + (words_->fontMetrics().height() - 14) / 2.0, 14, 14);
        symbols::paint(painter, sign, symbol_, colour);
    }

  private:
    theme::Tone tone_;
    symbols::Symbol symbol_;
    QLabel* words_;
};

NoticeStrip::NoticeStrip(AppModel& model, QWidget* parent)
    : QWidget(parent), model_(model), layout_(new QVBoxLayout(this)) {
    setObjectName(u"notices"_s);
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setSpacing(0);
    const auto add = [this](theme::Tone tone, symbols::Symbol symbol) {
        rows_.push_back(new NoticeRow(tone, symbol, this));
        layout_->addWidget(rows_.back());
    };
    add(theme::Tone::bad, symbols::Symbol::error);
    add(theme::Tone::bad, symbols::Symbol::error);
    add(theme::Tone::attention, symbols::Symbol::info);
    connect(&model_, &AppModel::storeStateChanged, this, &NoticeStrip::refresh);
    refresh();
}

QStringList NoticeStrip::lines() const {
    QStringList lines;
    for (const auto* row : rows_) {
        if (!row->text().isEmpty()) lines << row->text();
    }
    return lines;
}

void NoticeStrip::refresh() {
    rows_[0]->setText(model_.loadProblem());
    rows_[1]->setText(model_.saveProblem());
    rows_[2]->setText(model_.host().notice);
}

} // namespace corvane
