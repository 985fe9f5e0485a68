// Service order, static routes and VLANs over a real NetworkManager, inside the lab: what the kernel does
// with a packet must be what the model says.
#include "tests/app/support/lab_model.h"

#include <QRegularExpression>

using namespace corvane;
using namespace corvane::testing;

class LabRoutingTest : public LabModel {
    Q_OBJECT

    /// The device by which a packet to the outside would leave.
    static QString wayOut() {
        const QString said = output("ip", {"-4", "route", "get", "203.0.113.7"});
        return QRegularExpression("\\bdev (\\S+)").match(said).captured(1);
    }
    /// Whether a host answers a real packet.
    static bool answers(const QString& host) {
        return QProcess::execute(QStringLiteral(WENDREL_NM_ROOT "/sbin/ping"),
                                 {"-n", "-c", "1", "-W", "1000", host}) == 0;
    }
    static QString kernelRoute(const QString& destination) {
        return QString::fromUtf8(output("ip", {"-4", "route", "show", destination})).simplified();
    }
    std::vector<std::string> order(const std::string& first, const std::string& second) const {
        std::vector<std::string> names = {first, second};
        for (const auto& name : model_->serviceOrder())
            if (name != first && name != second) names.push_back(name);
        return names;
    }
    bool told(const std::vector<StaticRoute>& routes) const {
        const auto read = model_->routes(five_);
        return read && StaticRoute::sameRoutes(*read, routes);
    }

  private slots:
    void initTestCase() {
        startModel();
        for (const auto& preset : {manualPreset("Rig A", five_, "10.5.0.41", "10.5.0.1"),
                                   manualPreset("Rig B", seven_, "10.7.0.41", "10.7.0.1")}) {
            authorize();
            QVERIFY(model_->apply(preset));
            QTRY_VERIFY_WITH_TIMEOUT(model_->isActive(preset), patience);
        }
    }
    void cleanup() { tellAlerts(); }
    void cleanupTestCase() { model_.reset(); }

    void theOrderDecidesWherePacketsLeave() {
        for (const auto& [first, second, device] :
             {std::tuple(seven_, five_, "en7"), std::tuple(five_, seven_, "en5"),
              std::tuple(seven_, five_, "en7")}) {
            authorize();
            QVERIFY(model_->applyServiceOrder(order(first, second)));
            QCOMPARE(banner(), QString("Service order updated — %1 is first.").arg(first.c_str()));
            QTRY_COMPARE_WITH_TIMEOUT(wayOut(), QString(device), patience);
            QTRY_COMPARE_WITH_TIMEOUT(model_->internetService(), std::optional(first), patience);
            QCOMPARE(model_->serviceOrder().front(), first);
            QVERIFY(answers("203.0.113.7"));
        }
    }

    void aStaticRouteCarriesARealPacket() {
        QVERIFY(!answers("10.50.0.20"));
        const std::vector<StaticRoute> wanted = {{Uuid::generate(), "10.50.0.0", "/24", "10.5.0.2"},
                                                 {Uuid::generate(), "198.51.100.7", "/32", "10.5.0.20"}};
        authorize();
        QVERIFY(model_->applyRoutes(wanted, five_));
        QCOMPARE(banner(), QString("Saved static routes on %1.").arg(five_.c_str()));
        QTRY_VERIFY_WITH_TIMEOUT(told(wanted), patience);
        QTRY_VERIFY_WITH_TIMEOUT(kernelRoute("10.50.0.0/24").startsWith("10.50.0.0/24 via 10.5.0.2 dev en5"),
                                 patience);
        QVERIFY(answers("10.50.0.20"));
        // The rest of the service stays as it was.
        QCOMPARE(kernelAddresses("en5"), QStringList{"10.5.0.41/24"});
        QVERIFY(kernelRoute("198.51.100.7").contains("via 10.5.0.20"));

        authorize();
        QVERIFY(model_->applyRoutes({}, five_));
        QCOMPARE(banner(), QString("Removed static routes on %1.").arg(five_.c_str()));
        QTRY_VERIFY_WITH_TIMEOUT(told({}), patience);
        QTRY_COMPARE_WITH_TIMEOUT(kernelRoute("10.50.0.0/24"), QString(), patience);
        QVERIFY(!answers("10.50.0.20"));
    }

    void whatTheKernelCannotMakeIsTold() {
        QCOMPARE(model_->vlanSupport(five_), AppModel::VLANSupport::supported);
        authorize();
        if (model_->createVLAN("Comms", "en5", 20)) {
            // A kernel that can: the VLAN comes and goes.
            QTRY_VERIFY_WITH_TIMEOUT(model_->vlan("Comms"), patience);
            const VLANInfo made = *model_->vlan("Comms");
            QVERIFY(QFile::exists("/sys/class/net/" + QString::fromStdString(made.device)));
            authorize();
            QVERIFY(model_->deleteVLAN(made, true));
        } else {
            QCOMPARE(alerts_.shown.size(), std::size_t(1));
            QCOMPARE(alerts_.shown[0].message, QString("Couldn't create VLAN “Comms”."));
            QVERIFY2(alerts_.shown[0].details.startsWith("** Error: "), qPrintable(alerts_.shown[0].details));
        }
        QTRY_VERIFY_WITH_TIMEOUT(!model_->service("Comms") && model_->vlans().empty(), patience);
        QVERIFY(!output("nmcli", {"-g", "NAME", "connection"}).contains("Comms"));
        QVERIFY(!QFile::exists("/sys/class/net/vlan0"));
    }
};

int main(int argc, char** argv) {
    return runInLab<LabRoutingTest>(argc, argv);
}
#include "lab_routing_test.moc"
