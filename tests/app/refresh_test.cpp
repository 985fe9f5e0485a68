// Readings of the network: never two at a time, never on the main thread, and good for any text a tool may
// print.
#include "tests/app/support/model_home.h"

#include "app/model/refresher.h"
#include "platform/posix/posix_shell.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace corvane;
using namespace corvane::testing;

namespace {

/// Nanoseconds that this thread has waited for a processor, or 0 where the system doesn't tell.
qint64 waitedForProcessor() {
    const QList<QByteArray> fields = readFile("/proc/thread-self/schedstat").simplified().split(' ');
    return fields.size() == 3 ? fields[1].toLongLong() : 0;
}

} // namespace

class RefreshTest : public QObject {
    Q_OBJECT

  private slots:
    void neverTwoAtATime() {
        FakeShell shell;
        shell.answer = [](const auto&, const auto&) {
            QThread::msleep(30);
            return std::string();
        };
        Refresher refresher(shell);
        QSignalSpy finished(&refresher, &Refresher::finished);
        // A reading without any service asks the tools for six listings.
        for (int n = 0; n < 5; ++n) refresher.refresh();
        QTRY_COMPARE(finished.size(), 1);
        QVERIFY(!refresher.isRefreshing());
        QCOMPARE(shell.calls.load(), 6);
        // One under way when something was changed may have missed it: another follows at once.
        refresher.refresh();
        refresher.refreshAfterChange();
        refresher.refresh();
        QTRY_COMPARE(finished.size(), 2);
        QVERIFY(refresher.isRefreshing());
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 3, 1500);
        QVERIFY(!refresher.isRefreshing());
        QCOMPARE(shell.calls.load(), 18);
        // The second one of a change comes two seconds after it.
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 4, 6000);
        QCOMPARE(shell.calls.load(), 24);
        QCOMPARE(shell.mostRunning.load(), 1);
    }

    void repeatsEveryFourSeconds() {
        FakeShell shell;
        Refresher refresher(shell);
        QSignalSpy finished(&refresher, &Refresher::finished);
        QElapsedTimer time;
        time.start();
        refresher.start();
        QTRY_COMPARE(finished.size(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 2, 6000);
        QVERIFY2(time.elapsed() > 3700 && time.elapsed() < 5500, qPrintable(QString::number(time.elapsed())));
    }

    void goneWhileReading() {
        FakeShell shell;
        int published = 0;
        shell.answer = [](const auto&, const auto&) {
            QThread::msleep(50);
            return std::string("An asterisk\nWi-Fi\nEthernet\n");
        };
        {
            Refresher refresher(shell);
            connect(&refresher, &Refresher::finished, [&] { ++published; });
            refresher.refresh();
            QTest::qWait(20);
        }
        // One tool was waited for; no other was started, and nothing arrives any more.
        QCOMPARE(shell.calls.load(), 1);
        QTest::qWait(100);
        QCOMPARE(published, 0);
        ModelHome home;
        home.begin();
        home.stop();
    }

    void tellsOnlyWhatDiffers() {
        ModelHome home;
        AppModel& model = home.start();
        QSignalSpy services(&model, &AppModel::servicesChanged);
        home.refreshed();
        QCOMPARE(services.size(), 0);
        home.change([](simulated::State& state) { state.devices["en5"].link = false; });
        home.refreshed();
        QCOMPARE(services.size(), 1);
        QCOMPARE(model.service("Ethernet")->state(), LinkState::noLink());
        QCOMPARE(model.service("USB 10/100 LAN")->state(), LinkState::adapterMissing());
        QCOMPARE(model.service("iPhone USB")->state(), LinkState::disabled());
        QVERIFY(model.service("Stage LAN")->state().kind() == LinkState::Kind::selfAssigned);
    }

    void selectsWhatWasWaitedFor() {
        ModelHome home;
        AppModel& model = home.start();
        QCOMPARE(model.selection(), std::optional(SidebarItem::service("Wi-Fi")));
        model.setPendingSelection("Lighting");
        home.refreshed();
        QCOMPARE(model.selection(), std::optional(SidebarItem::service("Wi-Fi")));
        home.change([](simulated::State& state) {
            auto added = state.services.front();
            added.name = "Lighting";
            state.services.push_back(added);
        });
        home.refreshed();
        QCOMPARE(model.selection(), std::optional(SidebarItem::service("Lighting")));
        QVERIFY(!model.pendingSelection());
        model.select(SidebarItem::service("Ethernet"));
        home.refreshed();
        QCOMPARE(model.selection(), std::optional(SidebarItem::service("Ethernet")));
    }

    void brokenTools_data() {
        QTest::addColumn<QByteArray>("script");
        QTest::newRow("missing") << QByteArray();
        QTest::newRow("not a program") << QByteArray("\x7f"
                                                     "ELF nonsense");
        QTest::newRow("silent") << QByteArray("#!/bin/sh\n");
        QTest::newRow("garbage") << QByteArray("#!/bin/sh\nhead -c 4096 /dev/urandom\n");
        QTest::newRow("a megabyte") << QByteArray("#!/bin/sh\nyes '(1) : x' | head -c 1000000\n");
        QTest::newRow("one line of a megabyte")
            << QByteArray("#!/bin/sh\nhead -c 1000000 /dev/zero | tr '\\0' '('\n");
        QTest::newRow("killed") << QByteArray("#!/bin/sh\necho header; echo Wi-Fi; kill -9 $$\n");
    }
    void brokenTools() {
        QFETCH(QByteArray, script);
        QTemporaryDir root;
        if (!script.isEmpty()) {
            for (const char* tool : {"usr/sbin/networksetup", "sbin/ifconfig", "sbin/route"}) {
                const QString path = root.filePath(tool);
                // A megabyte of services would be as many calls: there the list alone is that long.
                const bool list = QByteArray(tool).endsWith("networksetup") && script.size() > 20 &&
                                  script.contains("000000");
                writeFile(path, list ? QByteArray(script).replace("#!/bin/sh\n",
                                                                  "#!/bin/sh\ncase $1 in -listall*) printf "
                                                                  "'h\\nWi-Fi\\n'; exit;; esac\n")
                                     : script);
                QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            }
        }
        ModelHome home;
        ModelHome broken;
        broken.host->shell = std::make_unique<PosixShell>(root.path().toStdString());
        AppModel& model = broken.start();
        QVERIFY(model.lastRefresh().isValid());
        QVERIFY(broken.banners.isEmpty() && broken.alerts.shown.empty());
        for (const auto& info : model.services()) QVERIFY(!info.state().isConnected());
        broken.refreshed();
    }

    // The main thread's own part of a reading. Time in which the processor was given to others is left out:
    // it says how busy the machine is. A sanitizer's instrumentation makes everything some three times
    // slower.
    void neverHoldsTheMainThread() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        constexpr double limit = 48;
#else
        constexpr double limit = 16;
#endif
        ModelHome home;
        home.change([](simulated::State& state) {
            const auto one = state.services.front();
            for (int n = 0; n < 34; ++n) {
                state.services.push_back(one);
                state.services.back().name = "Service " + std::to_string(n);
            }
        });
        AppModel& model = home.start();
        for (int n = 0; n < 500; ++n)
            model.addPreset(
                manualPreset("Preset " + std::to_string(n), "Service " + std::to_string(n % 34), "10.0.0.5"));
        model.flush();
        QTimer beat;
        beat.setTimerType(Qt::PreciseTimer);
        QElapsedTimer clock;
        qint64 last = 0, lastWaited = 0;
        double longest = 0;
        int beats = 0;
        connect(&beat, &QTimer::timeout, [&] {
            const qint64 now = clock.nsecsElapsed(), waited = waitedForProcessor();
            if (beats++ > 0) longest = qMax(longest, double(now - last - (waited - lastWaited)) / 1e6);
            last = clock.nsecsElapsed();
            lastWaited = waitedForProcessor();
        });
        clock.start();
        beat.start(1);
        home.change([](simulated::State& state) { state.devices["en0"].link = false; });
        home.refreshed();
        beat.stop();
        qInfo("40 services: longest hold %.1f ms over %d beats", longest, beats);
        QVERIFY(beats > 20);
        QVERIFY2(longest <= limit, qPrintable(QString::number(longest)));
    }
};

QTEST_GUILESS_MAIN(RefreshTest)
#include "refresh_test.moc"
