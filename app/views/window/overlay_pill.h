// A sign that lies over the top of the page for a while, without moving anything below it.
#pragma once

#include "app/views/widgets/theme.h"

#include <QString>
#include <QWidget>

class QGraphicsOpacityEffect;
class QPropertyAnimation;

namespace corvane {

class OverlayPill : public QWidget {
    Q_OBJECT

  public:
    /// Stays over `ground`, in the middle of its top.
    explicit OverlayPill(QWidget* ground);

    /// Fades in; a screen reader is told the text.
    void show(const QString& text, theme::Tone tone);
    /// The same with a bar that runs until the pill goes.
    void showRunning(const QString& text);
    void fadeOut();

    const QString& text() const { return text_; }
    bool isError() const { return tone_ == theme::Tone::bad; }
    bool isRunning() const { return running_; }
    /// Shown and not about to go.
    bool isUp() const { return up_; }

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

  private:
    void present(const QString& text, theme::Tone tone, bool running);
    void fade(bool in);
    void place();

    QString text_;
    theme::Tone tone_ = theme::Tone::good;
    bool running_ = false;
    bool up_ = false;
    QGraphicsOpacityEffect* effect_;
    QPropertyAnimation* animation_;
    int ticker_ = 0;
    /// Where the running bar stands, in [0, 1).
    double phase_ = 0;
};

} // namespace corvane
