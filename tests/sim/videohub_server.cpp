#include "tests/sim/videohub_server.h"

#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace corvane::sim {

namespace {

constexpr int maxClients = 64;
constexpr qint64 maxLineBytes = 4096;
constexpr std::size_t maxBlockLines = 4096;
/// Held for a client that doesn't read.
constexpr qint64 maxUnreadBytes = 4 << 20;
constexpr qint64 endlessPiece = 65'536;

} // namespace

/// A client's socket, its half-read block and what it is still to be sent.
class VideohubServer::Client : public QObject {
  public:
    Client(VideohubServer& server, QTcpSocket* socket, int number)
        : QObject(&server), server_(server), socket_(socket),
          name_(QStringLiteral("%1:%2").arg(socket->peerAddress().toString()).arg(socket->peerPort())),
          holder_(server.options_.locksByConnection ? "connection " + std::to_string(number)
                                                    : socket->peerAddress().toString().toStdString()),
          endless_(server.options_.endless) {
        socket_->setParent(this);
        socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
        socket_->setReadBufferSize(endlessPiece);
        pace_.setSingleShot(true);
        QObject::connect(&pace_, &QTimer::timeout, this, [this] { sendSegment(); });
        QObject::connect(socket_, &QTcpSocket::readyRead, this, [this] { read(); });
        QObject::connect(socket_, &QTcpSocket::bytesWritten, this, [this] { sendEndless(); });
        QObject::connect(socket_, &QTcpSocket::disconnected, this,
                         [this] { server_.remove(*this, QStringLiteral("left")); });
    }

    const QString& name() const { return name_; }
    const std::string& holder() const { return holder_; }
    /// Ends the connection without another word; the object lives on until its last signal has returned.
    void cut() {
        socket_->disconnect(this);
        pace_.stop();
        socket_->abort();
        block_.clear();
    }

    void send(const std::string& text) {
        auto bytes = QByteArray::fromStdString(text);
        if (server_.options_.crlf) bytes.replace("\n", "\r\n");
        sendRaw(bytes);
    }
    void sendRaw(const QByteArray& bytes) {
        const auto& options = server_.options_;
        if (options.mute || server_.frozen_ || !socket_->isOpen()) return;
        if (socket_->bytesToWrite() + waiting_.size() > maxUnreadBytes) {
            server_.remove(*this, QStringLiteral("is cut off: it doesn't read"));
        } else if (options.delay > 0 || options.splitEvery > 0) {
            waiting_ += bytes;
            if (!pace_.isActive()) pace_.start(options.delay);
        } else {
            socket_->write(bytes);
        }
    }
    /// Goes on as fast as the client reads.
    void sendEndless() {
        if (endless_ == 0 || socket_->bytesToWrite() > 0 || !waiting_.isEmpty()) return;
        const auto size = endless_ < 0 ? endlessPiece : std::min(endless_, endlessPiece);
        if (endless_ > 0) endless_ -= size;
        socket_->write(QByteArray(size, 'x'));
    }

    void read() {
        if (server_.options_.mute) {
            socket_->readAll();
            return;
        }
        while (!server_.frozen_ && socket_->canReadLine()) {
            auto line = socket_->readLine(maxLineBytes);
            if (!line.endsWith('\n')) break;
            while (line.endsWith('\n') || line.endsWith('\r')) line.chop(1);
            if (!line.isEmpty()) {
                block_.push_back(line.toStdString());
            } else if (!block_.empty()) {
                const auto header = block_.front();
                block_.erase(block_.begin());
                server_.take(*this, header, std::exchange(block_, {}));
            }
            if (block_.size() > maxBlockLines)
                return server_.remove(*this, QStringLiteral("is cut off: endless block"));
        }
        if (!server_.frozen_ && socket_->bytesAvailable() >= maxLineBytes)
            server_.remove(*this, QStringLiteral("is cut off: endless line"));
    }

  private:
    void sendSegment() {
        const auto size = server_.options_.splitEvery > 0 ? server_.options_.splitEvery : waiting_.size();
        socket_->write(waiting_.left(size));
        socket_->flush();
        waiting_.remove(0, size);
        if (!waiting_.isEmpty()) pace_.start(server_.options_.delay);
    }

    VideohubServer& server_;
    QTcpSocket* socket_;
    const QString name_;
    const std::string holder_;
    std::vector<std::string> block_;
    QByteArray waiting_;
    qint64 endless_;
    QTimer pace_;
};

VideohubServer::VideohubServer(Options options, QObject* parent)
    : QObject(parent), options_(std::move(options)), router_(options_.router) {
    QObject::connect(&server_, &QTcpServer::newConnection, this, [this] { accept(); });
}

VideohubServer::~VideohubServer() {
    for (const auto& client : clients_) client->cut();
}

bool VideohubServer::listen(quint16 port, const QHostAddress& address) {
    return server_.listen(address, port);
}

void VideohubServer::stop() {
    server_.close();
    while (!clients_.empty()) remove(*clients_.back(), QStringLiteral("is cut off: the server stops"));
}

void VideohubServer::freeze(bool frozen) {
    frozen_ = frozen;
    if (frozen) return;
    for (const auto& client : everyone()) {
        if (client) client->read();
    }
}

void VideohubServer::setPresent(const std::string& value) {
    router_.setPresent(value);
    emit said(QStringLiteral("device present: ") + QString::fromStdString(value));
    for (const auto& client : everyone()) client->send(router_.everything(client->holder()));
}

void VideohubServer::sendRaw(const QByteArray& bytes) {
    for (const auto& client : everyone()) client->sendRaw(bytes);
}

std::vector<QPointer<VideohubServer::Client>> VideohubServer::everyone() const {
    return {clients_.begin(), clients_.end()};
}

void VideohubServer::accept() {
    while (auto* socket = server_.nextPendingConnection()) {
        if (clientCount() >= maxClients) {
            delete socket;
            continue;
        }
        auto* client = new Client(*this, socket, ++accepted_);
        clients_.push_back(client);
        emit said(client->name() + QStringLiteral(" connects (%1 now)").arg(clientCount()));
        client->send(router_.prelude(client->holder()));
        client->sendEndless();
    }
}

void VideohubServer::remove(Client& client, const QString& why) {
    client.cut();
    std::erase(clients_, &client);
    emit said(client.name() + QLatin1Char(' ') + why + QStringLiteral(" (%1 now)").arg(clientCount()));
    // It may be what is calling.
    client.deleteLater();
}

void VideohubServer::take(Client& client, const std::string& header, const std::vector<std::string>& lines) {
    using Kind = VideohubRouter::Outcome::Kind;
    ++requests_;
    auto outcome = router_.take(header, lines, client.holder());
    if (header == "PING:") {
        ++pings_;
        if (options_.pings == Pings::ignored) return;
        if (options_.pings == Pings::refused) outcome = {.kind = Kind::refused, .note = "no pings here"};
    }
    const auto note = QString::fromStdString(outcome.note);
    if (outcome.kind == Kind::ignored) return;
    if (outcome.kind == Kind::refused) {
        emit said(client.name() + QStringLiteral(" NAK: ") + note);
        return client.send("NAK\n\n");
    }
    if (!note.isEmpty()) emit said(client.name() + QLatin1Char(' ') + note);
    client.send("ACK\n\n");
    if (outcome.kind == Kind::whole) client.send(router_.block(outcome.section, client.holder()));
    if (outcome.kind != Kind::changed) return;
    for (const auto& other : everyone())
        other->send(router_.block(outcome.section, outcome.entries, other->holder()));
}

} // namespace corvane::sim
