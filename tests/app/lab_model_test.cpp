// The model over a real NetworkManager, inside the lab (tests/lab/lab.sh). After each change the kernel's
// addresses and routes and NetworkManager's own listing must say what the model says.
#include "tests/app/support/lab_model.h"

using namespace corvane;
using namespace corvane::testing;

class LabModelTest : public LabModel {
    Q_OBJECT

  private slots:
    void initTestCase() { startModel(); }
    void cleanup() { tellAlerts(); }
    void cleanupTestCase() { model_.reset(); }

    void manual() {
        auto preset = manualPreset("Stage", five_, "10.5.0.40", "10.5.0.1", {"10.5.0.1", "1.1.1.1"});
        model_->addPreset(preset);
        if (asks()) {
            QVERIFY(!model_->apply(preset));
            QVERIFY(prompt_.calls.size() == 1 && alerts_.shown.empty() && !model_->banner());
            prompt_.willType(qEnvironmentVariable("LAB_USER"), "not it");
        }
        authorize();
        QVERIFY(model_->apply(preset));
        if (asks()) {
            QCOMPARE(prompt_.calls.size(), std::size_t(3));
            QVERIFY(prompt_.calls.back().retry);
        }
        QCOMPARE(banner(), QStringLiteral("Applied “Stage” to %1.").arg(QString::fromStdString(five_)));
        QTRY_VERIFY_WITH_TIMEOUT(model_->isActive(preset), patience);
        QCOMPARE(kernelAddresses("en5"), QStringList{"10.5.0.40/24"});
        QCOMPARE(kernelRouter(), QString("10.5.0.1 en5"));
        QCOMPARE(managerSays("IP4.ADDRESS", "en5"), QStringList{"10.5.0.40/24"});
        QCOMPARE(managerSays("IP4.DNS", "en5"), (QStringList{"10.5.0.1", "1.1.1.1"}));
        QCOMPARE(model_->service(five_)->state(), LinkState::connected("10.5.0.40"));
    }

    void dhcp() {
        const auto preset = dhcpPreset("House", five_);
        model_->addPreset(preset);
        authorize();
        QVERIFY(model_->apply(preset));
        QCOMPARE(banner(), QStringLiteral("Applied “House” to %1.").arg(QString::fromStdString(five_)));
        QTRY_VERIFY_WITH_TIMEOUT(model_->isActive(preset) && model_->service(five_)->state().isConnected(),
                                 patience);
        const QStringList addresses = kernelAddresses("en5");
        QCOMPARE(addresses.size(), 1);
        const int host = addresses[0].section('.', 3).section('/', 0, 0).toInt();
        QVERIFY2(addresses[0].startsWith("10.5.0.") && host >= 100 && host <= 150, qPrintable(addresses[0]));
        QCOMPARE(managerSays("IP4.ADDRESS", "en5"), addresses);
        QCOMPARE(model_->service(five_)->config->ip,
                 std::optional(addresses[0].section('/', 0, 0).toStdString()));
        QVERIFY(model_->service(five_)->config->dns.empty());
    }

    void globalOverTwoServices() {
        const auto a = manualPreset("Rig A", five_, "10.5.0.41", "10.5.0.1");
        const auto b = manualPreset("Rig B", seven_, "10.7.0.41", "10.7.0.1", {"10.7.0.1"});
        model_->addPreset(a);
        model_->addPreset(b);
        for (const auto& [top, router] :
             {std::pair(seven_, "10.7.0.1 en7"), std::pair(five_, "10.5.0.1 en5")}) {
            const auto show = globalPreset("Show", {a.id, b.id}, top);
            authorize();
            QVERIFY(model_->apply(show));
            QCOMPARE(banner(), QString("Applied “Show” to 2 interfaces."));
            QTRY_VERIFY_WITH_TIMEOUT(model_->isActive(show) && model_->serviceOrder().front() == top,
                                     patience);
            QCOMPARE(kernelAddresses("en5"), QStringList{"10.5.0.41/24"});
            QCOMPARE(kernelAddresses("en7"), QStringList{"10.7.0.41/24"});
            QTRY_COMPARE_WITH_TIMEOUT(kernelRouter(), QString(router), patience);
            QCOMPARE(managerSays("IP4.ADDRESS", "en7"), QStringList{"10.7.0.41/24"});
            QCOMPARE(managerSays("IP4.GATEWAY", "en7"), QStringList{"10.7.0.1"});
            QTRY_COMPARE_WITH_TIMEOUT(model_->internetDevice(),
                                      std::optional(QString(router).section(' ', 1).toStdString()), patience);
        }
    }

    void aToolsErrorIsTheAlert() {
        authorize();
        QVERIFY(!model_->apply(dhcpPreset("Nowhere", "No such service")));
        QCOMPARE(alerts_.shown.size(), std::size_t(1));
        QCOMPARE(alerts_.shown[0].message, QString("Couldn't apply “Nowhere”."));
        QVERIFY(alerts_.shown[0].details.contains("is not a recognized network service"));
    }
};

int main(int argc, char** argv) {
    return runInLab<LabModelTest>(argc, argv);
}
#include "lab_model_test.moc"
