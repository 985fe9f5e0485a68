// Reads the network's state every 4 seconds on a thread of low priority, one reading at a time.
#pragma once

#include "app/model/background.h"
#include "app/model/network_reader.h"

#include <QObject>
#include <QTimer>

#include <atomic>

namespace corvane {

class Refresher : public QObject {
    Q_OBJECT

  public:
    /// The shell outlives this object, which at its end waits for the one tool that is running.
    explicit Refresher(const Shell& shell, QObject* parent = nullptr);
    ~Refresher() override;

    /// The first reading at once, then one a tick.
    void start();
    /// Nothing while a reading is under way.
    void refresh();
    /// Now, or as soon as the reading under way has ended, and again when the system has had time to settle.
    void refreshAfterChange();
    bool isRefreshing() const { return refreshing_; }

  signals:
    void finished(const corvane::NetworkSnapshot& snapshot);

  private:
    const Shell& shell_;
    QTimer timer_;
    bool refreshing_ = false;
    /// The reading under way began before a change.
    bool outdated_ = false;
    std::atomic<bool> ending_ = false;
    Background reader_{QThread::LowPriority};
};

} // namespace corvane
