// The administrator's password is seen in no process's arguments or environment, and in no file.
#include "hosttools/simulated/administrator.h"
#include "tests/app/support/model_home.h"

#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QTest>

#include <thread>

using namespace corvane;
using namespace corvane::testing;

namespace {

/// Looks at every process again and again, until it is told to stop.
class Lookout {
  public:
    explicit Lookout(const QByteArray& secret)
        : thread_([this, secret] {
              while (!stop_) look(secret);
          }) {}
    ~Lookout() { end(); }
    void end() {
        stop_ = true;
        if (thread_.joinable()) thread_.join();
    }
    std::atomic<int> rounds = 0, found = 0, scripts = 0;

  private:
    void look(const QByteArray& secret) {
        for (const QString& process : QDir("/proc").entryList(QDir::Dirs)) {
            if (process.toInt() == 0) continue;
            const QByteArray arguments = readFile("/proc/" + process + "/cmdline");
            if (arguments.contains("-setmanual")) ++scripts;
            if (arguments.contains(secret) || readFile("/proc/" + process + "/environ").contains(secret))
                ++found;
        }
        ++rounds;
    }
    std::atomic<bool> stop_ = false;
    std::thread thread_;
};

QStringList* messages = nullptr;

} // namespace

class SecrecyTest : public QObject {
    Q_OBJECT

  private slots:
    void theLookoutSees() {
        const QByteArray marker = QByteArray::fromStdString(Uuid::generate().text());
        Lookout lookout(marker);
        QProcess process;
        process.start("/bin/sleep", {"20", "--", marker.constData()});
        process.waitForFinished(0);
        QProcess other;
        QProcessEnvironment environment;
        environment.insert("MARKER", marker);
        other.setProcessEnvironment(environment);
        other.start("/bin/sleep", {"20"});
        QTRY_VERIFY(lookout.found >= 1);
        other.kill();
        other.waitForFinished();
        process.kill();
        process.waitForFinished();
    }

    void thePasswordStaysSecret() {
        const std::string password = "pass" + Uuid::generate().text();
        const QByteArray secret = QByteArray::fromStdString(password);
        QStringList heard;
        messages = &heard;
        const auto before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { messages->append(text); });
        ModelHome home;
        home.change([&](simulated::State& state) {
            state.administrator = simulated::makeAdministrator(state.administrator.user, password);
        });
        {
            AppModel& model = home.start();
            // Slow enough to be looked at many times.
            home.change([](simulated::State& state) { state.delayScale = 4; });
            Lookout lookout(secret);
            home.prompt.willType(home.user(), password + "x");
            home.prompt.willType(home.user(), password, true);
            QVERIFY(model.apply(manualPreset("Stage", "Ethernet", "10.0.5.20", "10.0.5.1")));
            QVERIFY(model.apply(manualPreset("Stage 2", "Ethernet", "10.0.5.21")));
            QCOMPARE(home.prompt.calls.size(), std::size_t(2));
            model.flush();
            lookout.end();
            QVERIFY2(lookout.rounds >= 5 && lookout.scripts > 0, "the scripts were looked at while they ran");
            QCOMPARE(lookout.found.load(), 0);
            home.stop();
        }
        qInstallMessageHandler(before);
        QVERIFY(heard.filter(QString::fromStdString(password)).isEmpty());
        int files = 0;
        QDirIterator all(home.path({}), QDir::Files | QDir::Hidden | QDir::System,
                         QDirIterator::Subdirectories);
        while (all.hasNext()) {
            ++files;
            QVERIFY2(!readFile(all.next()).contains(secret), qPrintable(all.filePath()));
        }
        QVERIFY(files > 0);
    }
};

QTEST_GUILESS_MAIN(SecrecyTest)
#include "secrecy_test.moc"
