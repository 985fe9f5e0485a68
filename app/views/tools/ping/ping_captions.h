// What the columns of the watched hosts are, over them.
#pragma once

#include <QWidget>

namespace corvane {

class PingList;

class PingCaptions : public QWidget {
    Q_OBJECT

  public:
    /// Follows the columns of that list.
    PingCaptions(const PingList& list, QWidget* parent = nullptr);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    const PingList& list_;
};

} // namespace corvane
