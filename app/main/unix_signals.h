// Turns the signals that ask a program to end into an orderly end.
#pragma once

#include <QObject>

#include <functional>

class QSocketNotifier;

namespace corvane {

/// One at a time. While it lives, SIGINT, SIGTERM and SIGHUP call back on the thread that made it.
class UnixSignals : public QObject {
    Q_OBJECT

  public:
    explicit UnixSignals(std::function<void()> asked, QObject* parent = nullptr);
    ~UnixSignals() override;

  private:
    QSocketNotifier* notifier_ = nullptr;
};

} // namespace corvane
