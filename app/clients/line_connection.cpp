#include "app/clients/line_connection.h"

#include "core/support/text.h"

#include <QNetworkProxy>
#include <QPointer>
#include <QTcpSocket>

#include <utility>

namespace corvane {

namespace {

/// As the socket wants it: a bracketed IPv6 address without its brackets.
QString bareHost(const QString& host) {
    return host.startsWith(QLatin1Char('[')) && host.endsWith(QLatin1Char(']')) ? host.mid(1, host.size() - 2)
                                                                                : host;
}

} // namespace

LineConnection::LineConnection(QObject* parent, LineTiming timing) : QObject(parent), timing_(timing) {
    retry_.setSingleShot(true);
    retry_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&retry_, &QTimer::timeout, this, &LineConnection::open);
    patience_.setSingleShot(true);
    QObject::connect(&patience_, &QTimer::timeout, this,
                     [this] { ended(QStringLiteral("Connection timed out")); });
}

LineConnection::~LineConnection() = default;

void LineConnection::connect(const QString& host, std::uint16_t port) {
    const QPointer self(this);
    disconnect();
    if (!self) return;
    host_ = host;
    port_ = port;
    wanted_ = true;
    open();
}

void LineConnection::disconnect() {
    wanted_ = false;
    retry_.stop();
    forget();
    report(Status::idle());
}

void LineConnection::send(std::string_view text) {
    if (conn_) conn_->write(text.data(), static_cast<qint64>(text.size()));
}

void LineConnection::open() {
    if (!wanted_) return;
    retry_.stop();
    forget();
    if (!report(Status::connecting())) return;
    conn_ = std::make_unique<QTcpSocket>();
    conn_->setProxy(QNetworkProxy::NoProxy);
    // What the device sends faster than it is read stays with the system, which slows the device down.
    conn_->setReadBufferSize(chunkBytes);
    // By queue: the socket may then be deleted whatever it is reporting.
    const auto whileCurrent = [this](auto act) {
        return [this, turn = turn_, act] {
            if (turn == turn_) act();
        };
    };
    auto* socket = conn_.get();
    QObject::connect(socket, &QTcpSocket::connected, this, whileCurrent([this] { ready(); }),
                     Qt::QueuedConnection);
    QObject::connect(socket, &QTcpSocket::readyRead, this, whileCurrent([this] { receive(); }),
                     Qt::QueuedConnection);
    QObject::connect(socket, &QTcpSocket::errorOccurred, this,
                     whileCurrent([this] { ended(conn_->errorString()); }), Qt::QueuedConnection);
    patience_.start(timing_.connect);
    conn_->connectToHost(bareHost(host_), port_);
}

void LineConnection::forget() {
    ++turn_;
    patience_.stop();
    conn_.reset();
    isReady_ = false;
    buffer_.clear();
    searched_ = 0;
    heard_.invalidate();
    received_ = 0;
}

bool LineConnection::report(const Status& status) {
    const QPointer self(this);
    const auto turn = turn_;
    // A copy, since the callback may end the object that holds it.
    if (const auto callback = onStatus) callback(status);
    return self && turn == turn_;
}

void LineConnection::ready() {
    patience_.stop();
    isReady_ = true;
    heard_.start();
    // A callback may run an event loop of its own: no line comes before both have returned.
    const QPointer self(this);
    const bool within = std::exchange(calling_, true);
    if (report(Status::connected())) {
        if (const auto callback = onConnected) callback();
    }
    if (!self) return;
    calling_ = within;
    receiveLater();
}

void LineConnection::receive() {
    // A callback that runs an event loop of its own gets no further line before it returns.
    if (calling_ || !conn_) return;
    const auto held = buffer_.size();
    buffer_.resize(held + chunkBytes);
    const auto count = conn_->read(buffer_.data() + held, chunkBytes);
    buffer_.resize(held + std::max<qint64>(count, 0));
    if (count <= 0) return;
    heard_.start();
    received_ += static_cast<std::uint64_t>(count);
    if (!drain()) return;
    if (buffer_.size() > maxLineBytes) {
        dropped(host_ + QStringLiteral(" sent more than 1 MB without a line break"));
    } else if (conn_->bytesAvailable() > 0) {
        receiveLater();
    }
}

void LineConnection::receiveLater() {
    QMetaObject::invokeMethod(
        this,
        [this, turn = turn_] {
            if (turn == turn_) receive();
        },
        Qt::QueuedConnection);
}

bool LineConnection::drain() {
    const QPointer self(this);
    const auto turn = turn_;
    const auto callback = onLine;
    // Callbacks may empty the buffer or end this object: the lines are handed on from here.
    QByteArray data = std::exchange(buffer_, {});
    qsizetype start = 0;
    calling_ = true;
    for (auto end = data.indexOf('\n', searched_); end >= 0; end = data.indexOf('\n', start)) {
        const std::string_view line(data.constData() + start, static_cast<std::size_t>(end - start));
        start = end + 1;
        if (!callback) continue;
        const bool sound = text::validUtf8Prefix(line) == line.size();
        callback(sound ? line : std::string_view(text::validUtf8(line)));
        if (!self) return false;
        if (turn != turn_) break;
    }
    calling_ = false;
    if (turn != turn_) {
        // Another connection may have been heard meanwhile.
        receiveLater();
        return false;
    }
    data.remove(0, start);
    buffer_ = std::move(data);
    searched_ = buffer_.size();
    return true;
}

void LineConnection::ended(const QString& error) {
    if (!isReady_) {
        dropped(host_ + QStringLiteral(":%1 — ").arg(port_) + error);
        return;
    }
    // What came before the end is still to be handed on.
    const QPointer self(this);
    const auto turn = turn_;
    for (qint64 left = conn_->bytesAvailable(), before = left + 1; left > 0 && left < before && !calling_;) {
        receive();
        if (!self || turn != turn_) return;
        before = std::exchange(left, conn_->bytesAvailable());
    }
    dropped(QStringLiteral("Connection closed by ") + host_);
}

void LineConnection::dropped(const QString& message) {
    forget();
    const QPointer self(this);
    if (!report(Status::failed(message))) return;
    if (wanted_) retry_.start(timing_.retry);
}

} // namespace corvane
