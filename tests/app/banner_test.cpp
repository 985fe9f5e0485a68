// The banner and the temporary addresses' memory: what they show, and for how long.
#include "app/model/banner_state.h"
#include "app/model/temp_addresses.h"

#include <QElapsedTimer>
#include <QTest>

using namespace corvane;

class BannerTest : public QObject {
    Q_OBJECT

  private slots:
    void aNewerOneIsNotCutShort() {
        BannerState banner;
        QElapsedTimer time;
        banner.show({"first", false});
        QTest::qWait(1500);
        time.start();
        banner.show({"second", true});
        banner.showAfterwards({"third", true});
        QTest::qWait(2000);
        QCOMPARE(banner.current(), std::optional(Banner{"second", true}));
        QTRY_COMPARE(banner.current(), std::optional(Banner{"third", true}));
        QVERIFY2(time.elapsed() >= 2990, qPrintable(QString::number(time.elapsed())));
        QTRY_VERIFY(!banner.current());
        QVERIFY2(time.elapsed() >= 5980, qPrintable(QString::number(time.elapsed())));
    }

    void aTemporaryAddressIsForgottenWhenItIsGone() {
        auto now = std::chrono::steady_clock::time_point(std::chrono::hours(1));
        TempAddresses addresses([&now] { return now; });
        const TempAlias seen{"Ethernet", "en5", "10.0.0.9", "255.255.255.0"};
        const TempAlias never{"Ethernet", "en5", "10.0.0.10", "255.255.255.0"};
        ServiceInfo info;
        info.name = "Ethernet";
        info.device = "en5";
        info.hardware.emplace().present = true;
        addresses.add(seen);
        addresses.add(never);
        QVERIFY(!addresses.compare({info}));
        info.hardware->addresses = {"10.0.0.9"};
        QVERIFY(!addresses.compare({info}) && !addresses.compare({}));
        info.hardware->addresses.clear();
        QVERIFY(addresses.compare({info}));
        QCOMPARE(addresses.all(), std::vector{never});
        now += TempAddresses::patience;
        QVERIFY(addresses.compare({info}));
        QVERIFY(addresses.all().empty());
    }
};

QTEST_GUILESS_MAIN(BannerTest)
#include "banner_test.moc"
