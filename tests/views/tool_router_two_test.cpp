// Two whole programs and one router: what one routes shows in the other, and both come back after the router.
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <memory>

namespace {

QString ownAddress() {
    const qint64 id = QCoreApplication::applicationPid();
    return QString("127.%1.%2.%3").arg(128 + (id >> 16) % 64).arg((id >> 8) % 256).arg(1 + id % 254);
}

} // namespace

class ToolRouterTwoTest : public QObject {
    Q_OBJECT

    struct Program {
        QProcess process;
        /// What its page showed last.
        QString page;
        explicit Program(const QString& path, const QStringList& arguments) {
            process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            QObject::connect(&process, &QProcess::readyReadStandardOutput, &process, [this] {
                while (process.canReadLine()) page = QString::fromUtf8(process.readLine()).trimmed();
            });
            process.start(path, arguments);
        }
        ~Program() {
            process.kill();
            process.waitForFinished();
        }
        bool shows(int output, int input) const {
            return page.startsWith("Connected") &&
                   page.contains(
                       QString("| Output %1, Monitor %1, shows input %2, Camera %2").arg(output).arg(input));
        }
    };
    std::unique_ptr<Program> server() {
        return std::make_unique<Program>(VIDEOHUB_SERVER, QStringList{"--address", ownAddress()});
    }

  private slots:
    void aRouteShowsInTheOtherAndBothComeBack() {
        auto router = server();
        Program one(ROUTER_INSTANCE, {ownAddress()}), two(ROUTER_INSTANCE, {ownAddress()});
        QTRY_VERIFY_WITH_TIMEOUT(one.shows(4, 4) && two.shows(4, 4), 40000);
        one.process.write("route 4 8\n");
        QTRY_VERIFY2_WITH_TIMEOUT(two.shows(4, 8), qPrintable(two.page), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(one.shows(4, 8), 10000);
        two.process.write("route 12 1\n");
        QTRY_VERIFY2_WITH_TIMEOUT(one.shows(12, 1), qPrintable(one.page), 10000);

        router.reset();
        QTRY_VERIFY_WITH_TIMEOUT(one.page.startsWith("Failed") && two.page.startsWith("Failed"), 10000);
        QElapsedTimer away;
        away.start();
        router = server();
        // The new router routes straight through again; nothing of the old one is left.
        QTRY_VERIFY_WITH_TIMEOUT(one.shows(4, 4) && one.shows(12, 12) && two.shows(4, 4) && two.shows(12, 12),
                                 20000);
        QVERIFY2(away.elapsed() > 2500, qPrintable(QString::number(away.elapsed())));
        one.process.write("route 2 3\n");
        QTRY_VERIFY_WITH_TIMEOUT(two.shows(2, 3), 10000);
    }
};

QTEST_GUILESS_MAIN(ToolRouterTwoTest)
#include "tool_router_two_test.moc"
