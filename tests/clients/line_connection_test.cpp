// The line connection against a peer that sends what a test says, when it says so.
#include "app/clients/line_connection.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>

using namespace corvane;

namespace {

constexpr LineTiming quick{.retry = 50, .connect = 300};

/// One client at a time; the next one replaces it.
class Peer {
  public:
    explicit Peer(const QHostAddress& address = QHostAddress::LocalHost) {
        listening_ = server_.listen(address);
    }

    bool isListening() const { return listening_; }
    quint16 port() const { return port_ ? port_ : port_ = server_.serverPort(); }
    /// Waits for the next client.
    bool accept() {
        const bool came = QTest::qWaitFor([&] { return server_.hasPendingConnections(); }, 5000);
        socket_.reset(server_.nextPendingConnection());
        if (socket_) socket_->setParent(nullptr);
        return came;
    }
    void send(const QByteArray& bytes) {
        socket_->write(bytes);
        socket_->flush();
    }
    void close() {
        socket_->disconnectFromHost();
        if (socket_->state() != QAbstractSocket::UnconnectedState) socket_->waitForDisconnected(1000);
    }
    void stopListening() {
        port();
        server_.close();
    }
    bool listenAgain() { return server_.listen(QHostAddress::LocalHost, port()); }
    QTcpSocket& socket() { return *socket_; }

  private:
    QTcpServer server_;
    std::unique_ptr<QTcpSocket> socket_;
    mutable quint16 port_ = 0;
    bool listening_ = false;
};

/// Writes down what a connection reports, in order.
struct Log {
    QStringList reports;
    std::vector<std::string> lines;
    explicit Log(LineConnection& line) {
        line.onStatus = [this](const LineConnection::Status& status) {
            static constexpr const char* names[] = {"failed", "idle", "connecting", "connected"};
            const QString name = QLatin1String(names[static_cast<int>(status.kind())]);
            reports.append(status.isFailed() ? name + QStringLiteral(": ") + status.message() : name);
        };
        line.onConnected = [this] { reports.append(QStringLiteral("ready")); };
        line.onLine = [this](std::string_view text) { lines.emplace_back(text); };
    }
    QStringList take() { return std::exchange(reports, {}); }
    /// Waits for exactly these reports, and forgets them.
    bool came(const QStringList& expected) {
        if (!QTest::qWaitFor([&] { return reports == expected; })) qInfo() << "reported:" << reports;
        return take() == expected;
    }
};

const QString local = QStringLiteral("127.0.0.1");
const QStringList connects = {QStringLiteral("idle"), QStringLiteral("connecting"),
                              QStringLiteral("connected"), QStringLiteral("ready")};

/// Bytes of memory in use, or 0 where the system doesn't tell.
qint64 memoryInUse() {
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) return 0;
    const auto fields = file.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toLongLong() * sysconf(_SC_PAGESIZE) : 0;
}

} // namespace

class LineConnectionTest : public QObject {
    Q_OBJECT

  private slots:
    void linesAreWholeWhereverTheyAreCut() {
        Peer peer;
        LineConnection line(nullptr, quick);
        Log log(line);
        line.connect(local, peer.port());
        QVERIFY(peer.accept());
        static constexpr char raw[] = "one\r\n\ntw\xC3\xBC\nb\xFF"
                                      "d\xE2\x82\n\0x\n";
        const QByteArray text(raw, sizeof raw - 1);
        const std::vector<std::string> expected = {"one\r", "", "twü", "b\uFFFDd\uFFFD\uFFFD",
                                                   std::string("\0x", 2)};
        for (int cut = 0; cut <= text.size(); ++cut) {
            log.lines.clear();
            peer.send(text.left(cut));
            QTest::qWait(2);
            peer.send(text.mid(cut));
            QTRY_COMPARE(log.lines.size(), expected.size());
            QCOMPARE(log.lines, expected);
        }
        QCOMPARE(log.take(), connects);
    }

    void everythingBeforeTheEndIsHandedOn() {
        Peer peer;
        LineConnection line;
        Log log(line);
        line.connect(local, peer.port());
        QVERIFY(peer.accept());
        QByteArray text;
        for (int i = 0; i < 50'000; ++i) text += "line " + QByteArray::number(i) + '\n';
        peer.send(text + "no line");
        peer.close();
        QTRY_VERIFY(log.reports.size() > 4);
        QCOMPARE(log.take(),
                 connects + QStringList{QStringLiteral("failed: Connection closed by 127.0.0.1")});
        QCOMPARE(log.lines.size(), 50'000U);
        QCOMPARE(log.lines.back(), "line 49999");
    }

    void saysWhyItCannotConnect() {
        Peer peer;
        peer.stopListening();
        LineConnection line(nullptr, quick);
        Log log(line);
        line.connect(local, peer.port());
        QTRY_COMPARE(log.reports.size(), 3);
        const auto where = QStringLiteral("failed: 127.0.0.1:%1 — ").arg(peer.port());
        QCOMPARE(log.reports.last(), where + QStringLiteral("Connection refused"));
        line.disconnect();

        // A listener whose queue is full doesn't answer at all.
        const int deaf = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        QCOMPARE(bind(deaf, reinterpret_cast<sockaddr*>(&address), size), 0);
        QCOMPARE(listen(deaf, 0), 0);
        getsockname(deaf, reinterpret_cast<sockaddr*>(&address), &size);
        const quint16 port = ntohs(address.sin_port);
        std::vector<std::unique_ptr<QTcpSocket>> queue(4);
        for (auto& waiting : queue) {
            waiting = std::make_unique<QTcpSocket>();
            waiting->connectToHost(local, port);
            QTest::qWait(20);
        }
        log.take();
        line.connect(local, port);
        QTRY_COMPARE(log.reports.size(), 5);
        QCOMPARE(log.reports[2], QStringLiteral("failed: 127.0.0.1:%1 — Connection timed out").arg(port));
        QCOMPARE(log.reports[3], QStringLiteral("connecting"));
        line.disconnect();
        close(deaf);
    }

    void namesAndBothAddressFamilies() {
        const auto reaches = [](const QHostAddress& address, const QString& host) {
            Peer peer(address);
            if (!peer.isListening()) return address.protocol() == QAbstractSocket::IPv6Protocol;
            LineConnection line(nullptr, quick);
            Log log(line);
            line.connect(host, peer.port());
            if (!peer.accept() || !log.came(connects)) return false;
            peer.close();
            return QTest::qWaitFor([&] { return !log.reports.isEmpty(); }) &&
                   log.reports[0] == QStringLiteral("failed: Connection closed by ") + host;
        };
        QVERIFY(reaches(QHostAddress::LocalHost, QStringLiteral("localhost")));
        QVERIFY(reaches(QHostAddress::LocalHostIPv6, QStringLiteral("::1")));
        QVERIFY(reaches(QHostAddress::LocalHostIPv6, QStringLiteral("[::1]")));
    }

    /// With the program's own times.
    void triesAgainEveryThreeSecondsWhileWanted() {
        Peer peer;
        LineConnection line;
        Log log(line);
        line.connect(local, peer.port());
        QVERIFY(peer.accept());
        QVERIFY(log.came(connects));
        peer.send("half a li");
        QTest::qWait(20);
        peer.stopListening();
        peer.close();
        for (int attempt = 0; attempt < 2; ++attempt) {
            QTRY_VERIFY(!log.reports.isEmpty());
            log.take();
            QElapsedTimer waited;
            waited.start();
            QTRY_VERIFY_WITH_TIMEOUT(!log.reports.isEmpty(), 6000);
            QCOMPARE(log.reports.first(), QStringLiteral("connecting"));
            QVERIFY2(waited.elapsed() > 2900 && waited.elapsed() < 3700,
                     qPrintable(QString::number(waited.elapsed())));
            QTRY_COMPARE(log.reports.size(), 2);
            log.reports.removeFirst();
        }
        QVERIFY(peer.listenAgain());
        QVERIFY(peer.accept());
        QTRY_VERIFY(log.reports.contains(QStringLiteral("ready")));
        // What the lost connection had begun is forgotten.
        peer.send("whole line\n");
        QTRY_COMPARE(log.lines, std::vector<std::string>{"whole line"});
    }

    void aPendingRetryEndsWithTheWish() {
        Peer peer;
        LineConnection line(nullptr, quick);
        Log log(line);
        line.send("into the void");
        line.connect(local, peer.port());
        QVERIFY(peer.accept());
        QVERIFY(log.came(connects));
        line.send("PING:\n\n");
        QTRY_COMPARE(peer.socket().peek(100), QByteArray("PING:\n\n"));
        peer.close();
        QTRY_COMPARE(log.reports.size(), 1);
        line.disconnect();
        QVERIFY(!line.wanted());
        log.take();
        QTest::qWait(4 * quick.retry);
        QCOMPARE(log.reports, QStringList());
        line.dropped(QStringLiteral("Unwanted"));
        QTest::qWait(4 * quick.retry);
        QCOMPARE(log.take(), QStringList{QStringLiteral("failed: Unwanted")});
    }

    void aReplacedConnectionIsSilent() {
        Peer first, second;
        LineConnection line(nullptr, quick);
        Log log(line);
        line.connect(local, first.port());
        QVERIFY(first.accept());
        QVERIFY(log.came(connects));
        line.onLine = [&, note = line.onLine](std::string_view text) {
            note(text);
            if (text != "go") return;
            // One turn of the loop: the end of the first has been seen by the socket and isn't reported yet.
            QCoreApplication::processEvents();
            line.connect(local, second.port());
        };
        // More lines and the end are under way when another host is chosen.
        first.send("go\nold\nold too");
        first.close();
        QVERIFY(second.accept());
        second.send("new\n");
        QTRY_VERIFY(log.lines.size() > 1);
        QTest::qWait(4 * quick.retry);
        QCOMPARE(log.lines, (std::vector<std::string>{"go", "new"}));
        QCOMPARE(log.take(), connects);
    }

    void noLineComesBeforeReadyHasReturned() {
        Peer peer;
        LineConnection line(nullptr, quick);
        Log log(line);
        bool isReady = false, wasReady = false;
        line.onConnected = [&] {
            QTest::qWait(50); // the peer's line is there by now
            isReady = true;
        };
        line.onLine = [&, note = line.onLine](std::string_view text) {
            wasReady = isReady;
            note(text);
        };
        line.connect(local, peer.port());
        QVERIFY(peer.accept());
        peer.send("early\n");
        QTRY_COMPARE(log.lines, std::vector<std::string>{"early"});
        QVERIFY(wasReady);
    }

    void aLineWithoutAnEndIsCutOff() {
        Peer peer;
        LineConnection line;
        Log log(line);
        line.connect(local, peer.port());
        QVERIFY(peer.accept());
        QVERIFY(log.came(connects));
        // A long line is none of that.
        peer.send(QByteArray(LineConnection::maxLineBytes - 1, 'y') + '\n');
        QTRY_COMPARE(log.lines.size(), 1U);
        QCOMPARE(log.lines[0].size(), static_cast<std::size_t>(LineConnection::maxLineBytes - 1));
        log.lines.clear();

        const QByteArray piece(1 << 20, 'x');
        const auto before = memoryInUse();
        qint64 most = 0;
        qint64 sent = 0;
        QObject::connect(&peer.socket(), &QTcpSocket::bytesWritten, &peer.socket(), [&](qint64 bytes) {
            sent += bytes;
            most = std::max(most, memoryInUse());
        });
        for (int i = 0; i < 10 && log.reports.isEmpty(); ++i) {
            peer.send(piece);
            QTest::qWait(20);
        }
        QVERIFY(log.came({QStringLiteral("failed: 127.0.0.1 sent more than 1 MB without a line break")}));
        QVERIFY(log.lines.empty());
        qInfo("sent %lld bytes, memory grew by %lld", static_cast<long long>(sent),
              static_cast<long long>(most - before));
        QVERIFY2(most - before < 16 << 20, qPrintable(QString::number(most - before)));
    }

    void mayBeDeletedInAnyCallback_data() {
        QTest::addColumn<int>("callback");
        QTest::newRow("line") << 0;
        QTest::newRow("ready") << 1;
        QTest::newRow("failed") << 2;
        QTest::newRow("idle") << 3;
        QTest::newRow("connecting") << 4;
        QTest::newRow("connected") << 5;
    }
    void mayBeDeletedInAnyCallback() {
        QFETCH(const int, callback);
        using Kind = LineConnection::Status::Kind;
        static constexpr Kind kinds[] = {Kind::failed, Kind::idle, Kind::connecting, Kind::connected};
        Peer peer;
        auto line = std::make_unique<LineConnection>(nullptr, quick);
        const QPointer watched(line.get());
        int calls = 0;
        const auto end = [&] {
            ++calls;
            line.reset();
        };
        if (callback == 0) line->onLine = [&](std::string_view) { end(); };
        if (callback == 1) line->onConnected = end;
        if (callback >= 2)
            line->onStatus = [&](const LineConnection::Status& status) {
                if (status.kind() == kinds[callback - 2]) end();
            };
        line->connect(local, peer.port());
        if (watched) {
            QVERIFY(peer.accept());
            peer.send("one\ntwo\n");
            peer.close();
        }
        QTRY_VERIFY(!watched);
        QTest::qWait(20);
        QCOMPARE(calls, 1);
    }

    void callbacksMayTurnElsewhere() {
        Peer first, second;
        LineConnection line(nullptr, quick);
        Log log(line);
        const auto keep = line.onLine;
        line.onLine = [&](std::string_view text) {
            keep(text);
            if (text == "go") line.connect(local, second.port());
            if (text == "stop") line.disconnect();
            if (text == "wait") {
                // A sheet that somebody answers later.
                QEventLoop loop;
                QTimer::singleShot(60, &loop, &QEventLoop::quit);
                loop.exec();
            }
        };
        line.connect(local, first.port());
        QVERIFY(first.accept());
        first.send("wait\none\n");
        QTest::qWait(10);
        first.send("two\ngo\nlost\n");
        QVERIFY(second.accept());
        second.send("three\nstop\nlost\n");
        QTRY_VERIFY(log.reports.size() > 8);
        QTest::qWait(4 * quick.retry);
        QCOMPARE(log.lines, (std::vector<std::string>{"wait", "one", "two", "go", "three", "stop"}));
        QCOMPARE(log.take(), connects + connects + QStringList{QStringLiteral("idle")});

        // A status leads to another wish: it is the last one that counts.
        const auto note = line.onStatus;
        line.onStatus = [&](const LineConnection::Status& status) {
            note(status);
            if (status.kind() == LineConnection::Status::Kind::connecting) line.disconnect();
        };
        line.connect(local, first.port());
        QTest::qWait(4 * quick.retry);
        QCOMPARE(log.take(),
                 (QStringList{QStringLiteral("idle"), QStringLiteral("connecting"), QStringLiteral("idle")}));
    }
};

QTEST_MAIN(LineConnectionTest)
#include "line_connection_test.moc"
