// Labels, fields and what is to be said about each field beneath it.
#pragma once

#include "app/views/widgets/notice.h"

#include <QWidget>

class QGridLayout;
class QLabel;

namespace corvane {

class Form : public QWidget {
    Q_OBJECT

  public:
    explicit Form(QWidget* parent = nullptr);
    /// `label` may hold a mnemonic; it also names the field when it is read aloud.
    NoticeLines* addRow(const QString& label, QWidget* field);
    /// Without room for notices.
    void addPlainRow(const QString& label, QWidget* field);

  private:
    QLabel* addLabel(const QString& label, QWidget* field);
    QGridLayout* grid_;
};

/// A small heading over a pane.
QLabel* sectionTitle(const QString& text, QWidget* parent);

} // namespace corvane
