// The router's client against a simulated router on a real socket.
#include "app/clients/videohub_client.h"
#include "tests/sim/videohub_server.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace corvane;
using sim::VideohubServer;
using Videohub::Lock;

namespace {

const QString local = QStringLiteral("127.0.0.1");
/// Silence is noticed after 150 ms and counts as a failure 100 ms later.
constexpr VideohubTiming quick{.line = {.retry = 50, .connect = 1000}, .quiet = 150, .answer = 100};

VideohubServer::Options small(int inputs = 4, int outputs = 3) {
    VideohubServer::Options options;
    options.router.inputs = inputs;
    options.router.outputs = outputs;
    options.router.model = "Test 4x3";
    return options;
}

/// What the client says of its requests: refused or not, in order.
struct Answers {
    std::vector<std::pair<std::uint64_t, bool>> list;
    explicit Answers(VideohubClient& client) {
        QObject::connect(
            &client, &VideohubClient::answered, &client,
            [this](std::uint64_t request, bool accepted) { list.emplace_back(request, accepted); });
    }
};

/// The routes are the last block of the dump that the client reads.
bool isWhole(const VideohubClient& client, int outputs = 3) {
    return client.status().isConnected() &&
           client.state().routing.size() == static_cast<std::size_t>(outputs);
}

} // namespace

class VideohubTest : public QObject {
    Q_OBJECT

  private slots:
    void readsTheDumpHoweverItComes_data() {
        QTest::addColumn<bool>("crlf");
        QTest::addColumn<int>("splitEvery");
        QTest::newRow("LF, whole") << false << 0;
        QTest::newRow("CR LF, whole") << true << 0;
        QTest::newRow("LF, cut at every byte") << false << 1;
        QTest::newRow("CR LF, cut at every byte") << true << 1;
        QTest::newRow("CR LF, cut at every seventh") << true << 7;
    }
    void readsTheDumpHoweverItComes() {
        QFETCH(const bool, crlf);
        QFETCH(const int, splitEvery);
        auto options = small();
        options.crlf = crlf;
        options.splitEvery = splitEvery;
        VideohubServer server(options);
        QVERIFY(server.listen());
        VideohubClient client;
        QSignalSpy changes(&client, &VideohubClient::stateChanged);
        client.connect(local, server.port());
        QTRY_VERIFY(isWhole(client));
        // Device, two blocks of labels, locks, routes.
        QTRY_COMPARE(changes.size(), 5);
        Videohub::State expected;
        expected.model = "Test 4x3";
        expected.present = "true";
        expected.inputCount = 4;
        expected.outputCount = 3;
        for (int i = 0; i < 4; ++i) expected.inputLabels[i] = "Camera " + std::to_string(i + 1);
        for (int i = 0; i < 3; ++i) {
            expected.outputLabels[i] = "Monitor " + std::to_string(i + 1);
            expected.routing[i] = i;
            expected.locks[i] = Lock::unlocked;
        }
        QVERIFY(client.state() == expected);
        client.route(2, 3);
        QTRY_COMPARE(client.state().routing.at(2), 3);
        QCOMPARE(client.state().lastReply, "ACK");
    }

    void twoClientsSeeEachOther() {
        auto options = small();
        options.locksByConnection = true;
        VideohubServer server(options);
        QVERIFY(server.listen());
        VideohubClient one, two;
        one.connect(local, server.port());
        two.connect(local, server.port());
        QTRY_VERIFY(isWhole(one) && isWhole(two));
        QSignalSpy seen(&two, &VideohubClient::stateChanged);

        one.route(0, 3);
        QTRY_COMPARE(two.state().routing.at(0), 3);
        one.renameInput(3, QStringLiteral("Bühne\nlinks"));
        one.renameOutput(0, QStringLiteral("Programme"));
        QTRY_COMPARE(two.state().outputName(0), "Programme");
        QCOMPARE(two.state().inputName(3), "Bühne links");
        QCOMPARE(seen.size(), 3);
        QCOMPARE(two.state().lastReply, std::nullopt);

        one.lock(1);
        QTRY_COMPARE(two.state().locks.at(1), Lock::lockedByOther);
        QTRY_COMPARE(one.state().locks.at(1), Lock::owned);
        two.route(1, 0);
        QTRY_COMPARE(two.state().lastReply, "NAK");
        two.unlock(1);
        two.route(2, 0);
        QTRY_COMPARE(two.state().lastReply, "ACK");
        QCOMPARE(two.state().locks.at(1), Lock::lockedByOther);
        QCOMPARE(two.state().routing.at(1), 1);
        two.route(0, 4000);
        QTRY_COMPARE(two.state().lastReply, "NAK");
        two.forceUnlock(1);
        QTRY_COMPARE(one.state().locks.at(1), Lock::unlocked);
        two.route(1, 0);
        QTRY_COMPARE(one.state().routing.at(1), 0);
        one.lock(1);
        QTRY_COMPARE(one.state().locks.at(1), Lock::owned);
        one.unlock(1);
        QTRY_COMPARE(two.state().locks.at(1), Lock::unlocked);
    }

    void tellsOfAMissingRouter() {
        auto options = small();
        options.router.present = "false";
        VideohubServer server(options);
        QVERIFY(server.listen());
        VideohubClient client;
        client.connect(local, server.port());
        QTRY_COMPARE(client.state().present, "false");
        server.setPresent("needs_update");
        QTRY_COMPARE(client.state().present, "needs_update");
        server.setPresent("true");
        QTRY_VERIFY(isWhole(client));
        QCOMPARE(client.state().present, "true");
    }

    /// With the program's own times.
    void comesBackToAFreshState() {
        auto server = std::make_unique<VideohubServer>(small(4, 3));
        QVERIFY(server->listen());
        const auto port = server->port();
        VideohubClient client;
        client.connect(local, port);
        QTRY_VERIFY(isWhole(client));
        client.route(0, 9);
        QTRY_COMPARE(client.state().lastReply, "NAK");
        QElapsedTimer gone;
        server.reset();
        QTRY_COMPARE(client.status(),
                     ConnectionStatus::failed(QStringLiteral("Connection closed by 127.0.0.1")));
        gone.start();
        // What was known stays in sight until the router is back.
        QCOMPARE(client.state().outputCount, 3);
        server = std::make_unique<VideohubServer>(small(2, 1));
        QVERIFY(server->listen(port));
        QTRY_VERIFY_WITH_TIMEOUT(isWhole(client, 1), 6000);
        QVERIFY2(gone.elapsed() > 2900 && gone.elapsed() < 3900, qPrintable(QString::number(gone.elapsed())));
        QCOMPARE(client.state().inputs().size(), 2U);
        QCOMPARE(client.state().outputLabels.size(), 1U);
        QCOMPARE(client.state().lastReply, std::nullopt);
        client.disconnect();
        QCOMPARE(client.status(), ConnectionStatus::idle());
        QTRY_COMPARE(server->clientCount(), 0);
    }

    void pingsKeepAQuietLineAlive() {
        VideohubServer server(small());
        QVERIFY(server.listen());
        VideohubClient client(nullptr, quick);
        QSignalSpy statuses(&client, &VideohubClient::statusChanged);
        client.connect(local, server.port());
        QTRY_VERIFY(isWhole(client));
        // Before it is known that pings are answered, both answers are heard.
        server.freeze(true);
        QTest::qWait(quick.quiet + quick.answer / 2); // the ping is out, its answer isn't here
        client.route(0, 99);
        server.freeze(false);
        QTRY_COMPARE(client.state().lastReply, "NAK");
        QSignalSpy changes(&client, &VideohubClient::stateChanged);
        QTRY_VERIFY(server.pings() >= 3);
        QCOMPARE(client.state().lastReply, "NAK");
        QCOMPARE(changes.size(), 0);
        QCOMPARE(statuses.size(), 2);
        // Requests right before and after a ping get their own answers, each one.
        Answers answers(client);
        decltype(answers.list) expected;
        for (int i = 0; i < 3; ++i) {
            server.freeze(true);
            QTest::qWait(quick.quiet + quick.answer / 2);
            expected.emplace_back(client.route(0, 99), false);
            expected.emplace_back(client.route(0, 1 + i), true);
            expected.emplace_back(client.route(0, 99), false);
            expected.emplace_back(client.route(0, 99), false);
            server.freeze(false);
            QTRY_COMPARE(answers.list.size(), expected.size());
            QCOMPARE(answers.list, expected);
            QCOMPARE(client.state().lastReply, "NAK");
            QCOMPARE(client.state().routing.at(0), 1 + i);
        }
        QCOMPARE(statuses.size(), 2);
        // No pings where nobody listens.
        client.disconnect();
        QTRY_COMPARE(server.clientCount(), 0);
        const int pings = server.pings();
        QTest::qWait(2 * quick.quiet);
        QCOMPARE(server.pings(), pings);
    }

    void aPulledCableIsNoticed() {
        VideohubServer server(small());
        QVERIFY(server.listen());
        VideohubClient client(nullptr, quick);
        client.connect(local, server.port());
        QTRY_VERIFY(isWhole(client));
        QTRY_VERIFY(server.pings() > 0);
        server.freeze(true);
        QElapsedTimer frozen;
        frozen.start();
        QTRY_COMPARE(client.status(),
                     ConnectionStatus::failed(QStringLiteral("127.0.0.1 stopped answering")));
        QVERIFY2(frozen.elapsed() < 4 * (quick.quiet + quick.answer),
                 qPrintable(QString::number(frozen.elapsed())));
        server.freeze(false);
        QTRY_VERIFY(isWhole(client));
    }

    /// A main thread that was held up finds the answer in the socket, and doesn't take it for silence.
    void aHeldUpProgramDropsNobody() {
        VideohubServer server(small());
        QVERIFY(server.listen());
        VideohubClient client(nullptr, quick);
        QSignalSpy statuses(&client, &VideohubClient::statusChanged);
        client.connect(local, server.port());
        QTRY_VERIFY(isWhole(client));
        for (int i = 0; i < 3; ++i) {
            const int pings = server.pings();
            QTRY_VERIFY(server.pings() > pings);
            QTest::qSleep(quick.quiet + 3 * quick.answer);
        }
        QTest::qWait(2 * quick.quiet);
        QCOMPARE(statuses.size(), 2);
    }

    void routersThatKnowNoPing_data() {
        QTest::addColumn<int>("pings");
        QTest::newRow("refused") << static_cast<int>(VideohubServer::Pings::refused);
        QTest::newRow("ignored") << static_cast<int>(VideohubServer::Pings::ignored);
    }
    void routersThatKnowNoPing() {
        QFETCH(const int, pings);
        auto options = small();
        options.pings = static_cast<VideohubServer::Pings>(pings);
        VideohubServer server(options);
        QVERIFY(server.listen());
        VideohubClient client(nullptr, quick);
        client.connect(local, server.port());
        QTRY_VERIFY(isWhole(client));
        // Its answer to a request right after the first ping proves nothing, and is heard.
        QTRY_COMPARE(server.pings(), 1);
        client.route(0, 99);
        QTRY_COMPARE(client.state().lastReply, "NAK");
        client.route(0, 1);
        QTRY_COMPARE(client.state().routing.at(0), 1);
        const int patience = 6 * (quick.quiet + quick.answer + quick.line.retry);
        QTest::qWait(patience);
        // One that answers nothing is asked on two connections and then left alone.
        QVERIFY(isWhole(client));
        QSignalSpy statuses(&client, &VideohubClient::statusChanged);
        const int asked = server.pings();
        QTest::qWait(patience);
        QCOMPARE(statuses.size(), 0);
        QVERIFY2(server.pings() > asked, "the watch never ends for good");
        client.route(0, 99);
        QTRY_COMPARE(client.state().lastReply, "NAK");
        client.route(0, 3);
        QTRY_COMPARE(client.state().lastReply, "ACK");
    }

    /// Cut before any ping was answered, again and again: that is no router without pings.
    void aYoungConnectionThatIsCutIsStillWatched() {
        VideohubServer server(small());
        QVERIFY(server.listen());
        VideohubClient client(nullptr, quick);
        client.connect(local, server.port());
        for (int i = 0; i < 2; ++i) {
            QTRY_VERIFY(isWhole(client));
            server.freeze(true);
            QTRY_VERIFY(client.status().isFailed());
            server.freeze(false);
        }
        QTRY_VERIFY(isWhole(client));
        const int pings = server.pings();
        QTRY_VERIFY(server.pings() > pings + 1);
        server.freeze(true);
        QTRY_VERIFY(client.status().isFailed());
    }

    void aHostThatNeverSpeaksIsNoRouter() {
        auto options = small();
        options.mute = true;
        VideohubServer server(options);
        QVERIFY(server.listen());
        VideohubClient client(nullptr, quick);
        QStringList failures;
        QObject::connect(&client, &VideohubClient::statusChanged, this, [&] {
            if (client.status().isFailed()) failures.append(client.status().message());
        });
        client.connect(local, server.port());
        QTRY_COMPARE(failures, QStringList(4, QStringLiteral("127.0.0.1 doesn't answer")));
    }

    void anyByteIsASignOfLife() {
        auto options = small();
        options.pings = VideohubServer::Pings::ignored;
        VideohubServer server(options);
        QVERIFY(server.listen());
        VideohubClient client(nullptr, quick);
        client.connect(local, server.port());
        QTRY_VERIFY(isWhole(client));
        QSignalSpy statuses(&client, &VideohubClient::statusChanged);
        // Half a line, unasked, whenever a ping is out.
        for (int i = 0; i < 5; ++i) {
            const int pings = server.pings();
            QTRY_VERIFY(server.pings() > pings);
            server.sendRaw(i == 0 ? "X" : "x");
        }
        QCOMPARE(statuses.size(), 0);
        server.sendRaw(":\n\nNAK\n\nVIDEO OUTPUT ROUTING:\n0 2\n\n");
        QTRY_COMPARE(client.state().routing.at(0), 2);
    }

    void survivesWhatIsNoRouter() {
        auto options = small();
        options.endless = -1;
        VideohubServer server(options);
        QVERIFY(server.listen());
        VideohubClient client(nullptr, quick);
        client.connect(local, server.port());
        QTRY_COMPARE(client.status(), ConnectionStatus::failed(QStringLiteral(
                                          "127.0.0.1 sent more than 1 MB without a line break")));
        client.disconnect();
        QTRY_COMPARE(server.clientCount(), 0);
    }

    void mayBeDeletedWhenItSpeaks() {
        VideohubServer server(small());
        QVERIFY(server.listen());
        for (const bool atStatus : {false, true}) {
            auto client = std::make_unique<VideohubClient>();
            QPointer watched(client.get());
            if (atStatus) {
                QObject::connect(client.get(), &VideohubClient::statusChanged, this, [&] {
                    if (client->status().isConnected()) client.reset();
                });
            } else {
                QObject::connect(client.get(), &VideohubClient::stateChanged, this, [&] { client.reset(); });
            }
            client->connect(local, server.port());
            QTRY_VERIFY(!watched);
            QTRY_COMPARE(server.clientCount(), 0);
        }
    }
};

QTEST_MAIN(VideohubTest)
#include "videohub_test.moc"
