// A choice of a few words side by side, one of which always holds.
#pragma once

#include <QStringList>
#include <QWidget>

namespace corvane {

class SegmentedControl : public QWidget {
    Q_OBJECT

  public:
    /// `caption` names the choice when it is read aloud.
    SegmentedControl(const QString& caption, const QStringList& choices, QWidget* parent = nullptr);
    int current() const { return current_; }
    /// Not reported by `chosen`.
    void setCurrent(int index);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  signals:
    /// By the user.
    void chosen(int index);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void choose(int index);
    QRect segment(int index) const;
    QString caption_;
    QStringList choices_;
    int current_ = 0;
};

} // namespace corvane
