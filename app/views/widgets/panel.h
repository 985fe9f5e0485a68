// The shape of the program's own alerts: its sign at the left, a message, a text that explains it, more
// below, and buttons.
#pragma once

#include "app/views/widgets/symbols.h"

#include <QDialog>

class QDialogButtonBox;
class QLabel;
class QVBoxLayout;

namespace corvane {

class Panel : public QDialog {
    Q_OBJECT

  public:
    explicit Panel(QWidget* parent = nullptr);
    void setMessage(const QString& message);
    /// Long texts scroll; none of it is read as markup.
    void setInformativeText(const QString& text);
    /// A small sign beside the program's own.
    void setBadge(symbols::Symbol symbol, theme::Tone tone);
    QString message() const;
    QString informativeText() const;
    QDialogButtonBox& buttons() { return *buttons_; }
    /// Below the texts.
    void addContent(QWidget* content);
    /// Brings the program to the front, whatever stood there, and runs the panel until it is answered.
    int execInFront();

  private:
    void drawSign();

    QLabel *sign_, *message_, *informative_;
    QVBoxLayout* column_;
    QDialogButtonBox* buttons_;
    std::optional<std::pair<symbols::Symbol, theme::Tone>> badge_;
};

} // namespace corvane
