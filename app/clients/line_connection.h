// A TCP connection to a device that speaks in lines; it comes back by itself while it is wanted.
#pragma once

#include "app/clients/connection_status.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

class QTcpSocket;

namespace corvane {

/// Milliseconds. The program uses these; a test may take shorter ones.
struct LineTiming {
    /// From a failure to the next attempt.
    int retry = 3000;
    /// A device that hasn't taken the connection by then is reported as failed.
    int connect = 10'000;
};

/// idle → (connect) connecting → connected → (error, end of stream) failed → (3 s, while wanted) connecting
/// …; disconnect leads back to idle from anywhere. A report of a connection that was replaced is ignored.
/// A callback may call anything here, and may delete the object.
class LineConnection : public QObject {
    Q_OBJECT

  public:
    using Status = ConnectionStatus;

    static constexpr qint64 chunkBytes = 65'536;
    /// A device that sends this much without a line feed isn't one: the connection is dropped.
    static constexpr qsizetype maxLineBytes = 1 << 20;

    explicit LineConnection(QObject* parent = nullptr, LineTiming timing = {});
    ~LineConnection() override;

    /// Set by the owning client, whose members they use. A line comes as UTF-8, without its line feed; a
    /// carriage return stays.
    std::function<void(std::string_view line)> onLine;
    std::function<void(const Status&)> onStatus;
    /// Each time that the connection is ready.
    std::function<void()> onConnected;

    /// `host` is a name or an address; an IPv6 one may stand in brackets.
    void connect(const QString& host, std::uint16_t port);
    /// The text as it is, line ends included; dropped without a connection.
    void send(std::string_view text);
    void disconnect();

    const QString& host() const { return host_; }
    std::uint16_t port() const { return port_; }
    bool wanted() const { return wanted_; }
    /// Milliseconds since the device was last heard, or since it took the connection.
    qint64 silence() const { return heard_.isValid() ? heard_.elapsed() : 0; }
    /// Bytes of this connection.
    std::uint64_t received() const { return received_; }
    /// Ends the connection as if the device had failed, with that sentence; it is tried again while wanted.
    void dropped(const QString& message);

  private:
    void open();
    void forget();
    /// False when the callback deleted this or turned to another connection.
    bool report(const Status& status);
    void ready();
    void receive();
    void receiveLater();
    bool drain();
    void ended(const QString& error);

    const LineTiming timing_;
    QString host_;
    std::uint16_t port_ = 0;
    std::unique_ptr<QTcpSocket> conn_;
    /// Grows with every connection made or forgotten; a report of an earlier turn is void.
    std::uint64_t turn_ = 0;
    bool isReady_ = false;
    /// Received and not yet a line; no line feed stands before `searched_`.
    QByteArray buffer_;
    qsizetype searched_ = 0;
    /// A callback that lines must wait for is running.
    bool calling_ = false;
    std::uint64_t received_ = 0;
    bool wanted_ = false;
    QTimer retry_, patience_;
    QElapsedTimer heard_;
};

} // namespace corvane
