// A value that copies itself when it is clicked, or with Return or the copy shortcut while it has the focus.
#pragma once

#include <QAbstractButton>
#include <QTimer>

namespace corvane {

class CopyLabel : public QAbstractButton {
    Q_OBJECT

  public:
    /// `caption` names the value when it is read aloud: "Router".
    explicit CopyLabel(const QString& caption, QWidget* parent = nullptr);
    /// An empty value shows "–" and can't be copied.
    void setValue(const QString& value);
    const QString& value() const { return value_; }
    /// Shown and read in place of the value, which is still what is copied: "+2".
    void setDisplay(const QString& display, const QString& tip);
    void copy();
    /// While the sign that the value was copied stands.
    bool showsCopied() const { return copied_.isActive(); }

    /// Around the text, left and right, and above and below.
    static constexpr int padX = 3, padY = 2;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool hitButton(const QPoint& point) const override;

  private:
    bool copyable() const { return !value_.isEmpty(); }
    void describe();
    QString caption_, value_, display_, tip_;
    QTimer copied_;
};

} // namespace corvane
