// A Videohub router: its state as it reports it, and requests to change it.
#pragma once

#include "app/clients/line_connection.h"
#include "core/devices/videohub.h"

#include <QObject>
#include <QTimer>

namespace corvane {

/// The status is its line's. Every fresh connection forgets the whole state; the router then sends all of it.
/// A change shows when the router has reported it, never before.
class VideohubClient : public QObject {
    Q_OBJECT

  public:
    explicit VideohubClient(QObject* parent = nullptr);
    ~VideohubClient() override;

    const LineConnection::Status& status() const { return status_; }
    const Videohub::State& state() const { return state_; }
    /// The host connected to, or last tried; empty at first.
    const QString& host() const { return line_.host(); }

    void connect(const QString& host);
    void disconnect();

    void route(int output, int input);
    /// For this computer.
    void lock(int output);
    void unlock(int output);
    /// Also when another client holds it.
    void forceUnlock(int output);
    void renameInput(int input, const QString& name);
    void renameOutput(int output, const QString& name);

  signals:
    void statusChanged();
    /// Once a block that changed something.
    void stateChanged();

  private:
    LineConnection::Status status_ = LineConnection::Status::idle();
    Videohub::State state_;
    LineConnection line_;
    Videohub::Parser parser_;
};

} // namespace corvane
