// One line of text which is cut with an ellipsis where there is no room; the tool tip then holds all of it.
#pragma once

#include <QWidget>

namespace corvane {

class ElidedLabel : public QWidget {
    Q_OBJECT

  public:
    enum class Weight { primary, secondary };
    explicit ElidedLabel(Weight weight = Weight::primary, QWidget* parent = nullptr);
    /// Shown as it is; line breaks become blanks.
    void setText(const QString& text);
    const QString& text() const { return text_; }
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void describe();
    QString text_;
    Weight weight_;
};

} // namespace corvane
