// The banner: one text at a time, gone 3 seconds after it was last shown.
#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

#include <deque>
#include <optional>

namespace corvane {

struct Banner {
    QString text;
    bool isError = false;
    friend bool operator==(const Banner&, const Banner&) = default;
};

class BannerState : public QObject {
    Q_OBJECT

  public:
    explicit BannerState(QObject* parent = nullptr);
    const std::optional<Banner>& current() const { return current_; }
    /// Replaces what is shown; its own 3 seconds begin.
    void show(const Banner& banner);
    /// Shows it when what is shown now has had its time, at once when nothing is.
    void showAfterwards(const Banner& banner);

  signals:
    void changed();

  private:
    void clear();

    std::optional<Banner> current_;
    std::deque<Banner> next_;
    QTimer timer_;
};

} // namespace corvane
