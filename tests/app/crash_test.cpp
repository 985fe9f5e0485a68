// A program that is killed while it saves loses nothing that it said was saved.
#include "core/netconfig/preset_library.h"
#include "tests/app/support/model_home.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTest>

using namespace corvane;
using namespace corvane::testing;

class CrashTest : public QObject {
    Q_OBJECT

  private slots:
    void killedDuringFiveHundredSaves() {
        const QTemporaryDir dir;
        const QString file = dir.filePath("presets.json");
        int saves = 0, kills = 0;
        std::size_t acknowledged = 0;
        while (saves < 500) {
            QProcess writer;
            writer.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            writer.start(QStringLiteral(WENDREL_TEST_BIN "/crash_writer"), {file});
            QVERIFY(writer.waitForStarted());
            // Past the first save, then at any moment of the ones that follow.
            const int target = QRandomGenerator::global()->bounded(5, 40);
            int lines = 0;
            QByteArray said;
            const auto hear = [&] {
                said += writer.readAllStandardOutput();
                lines = int(said.count('\n'));
            };
            while (lines < target) {
                QVERIFY2(writer.waitForReadyRead(20000), "the writer stopped saving");
                hear();
            }
            QTest::qSleep(QRandomGenerator::global()->bounded(0, 15));
            writer.kill();
            QVERIFY(writer.waitForFinished());
            hear();
            QCOMPARE(writer.exitStatus(), QProcess::CrashExit);
            ++kills;
            saves += lines;
            const QList<QByteArray> whole = said.left(said.lastIndexOf('\n')).split('\n');
            acknowledged = whole.last().toULongLong();

            const auto decoded = PresetLibrary::decode(readFile(file).toStdString());
            QVERIFY2(decoded.library, decoded.error.c_str());
            const auto& presets = decoded.library->presets;
            QVERIFY2(presets.size() >= acknowledged,
                     qPrintable(QStringLiteral("%1 of %2").arg(presets.size()).arg(acknowledged)));
            for (std::size_t n = 0; n < presets.size(); ++n) QCOMPARE(presets[n].name, std::to_string(n + 1));
        }
        qInfo("%d saves acknowledged, %d kills, %zu presets kept", saves, kills, acknowledged);
        QVERIFY(kills >= 12);
    }
};

QTEST_GUILESS_MAIN(CrashTest)
#include "crash_test.moc"
