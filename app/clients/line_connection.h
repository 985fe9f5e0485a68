// A TCP connection to a device that speaks in lines; it comes back by itself while it is wanted.
#pragma once

#include "app/clients/connection_status.h"

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

class QTcpSocket;

namespace corvane {

/// idle → (connect) connecting → connected → (error, end of stream) failed → (3 s, while wanted) connecting
/// …; disconnect leads back to idle from anywhere. A report of a connection that was replaced is ignored.
class LineConnection : public QObject {
    Q_OBJECT

  public:
    using Status = ConnectionStatus;

    static constexpr int retryMs = 3000;
    static constexpr qint64 chunkBytes = 65'536;
    /// A device that sends this much without a line feed isn't one: the connection is dropped.
    static constexpr qsizetype maxLineBytes = 1 << 20;

    explicit LineConnection(QObject* parent = nullptr);
    ~LineConnection() override;

    /// Set by the owning client, whose members they use.
    std::function<void(std::string_view line)> onLine;
    std::function<void(const Status&)> onStatus;
    /// Each time that the connection is ready.
    std::function<void()> onConnected;

    void connect(const QString& host, std::uint16_t port);
    /// The text as it is, line ends included; dropped without a connection.
    void send(std::string_view text);
    void disconnect();

    const QString& host() const { return host_; }
    std::uint16_t port() const { return port_; }
    bool wanted() const { return wanted_; }
    /// Ends the connection as if the device had failed, with that sentence; it is tried again while wanted.
    void dropped(const QString& message);

  private:
    void open();
    void receive();
    void drain();

    QString host_;
    std::uint16_t port_ = 0;
    QTcpSocket* conn_ = nullptr;
    QByteArray buffer_;
    bool wanted_ = false;
    QTimer retry_;
};

} // namespace corvane
