// Presets applied to the simulated Mac through its real tools: exact words, marks, refusals, tool errors.
#include "tests/app/support/model_home.h"

#include <QSignalSpy>
#include <QTest>

using namespace corvane;
using namespace corvane::testing;

class ApplyTest : public QObject {
    Q_OBJECT

  private slots:
    void manualThenDHCP() {
        ModelHome home;
        AppModel& model = home.start();
        const auto stage =
            manualPreset("Stage “A”", "Ethernet", "10.0.5.20", "10.0.5.1", {"10.0.5.2", "1.1.1.1"});
        const auto office = dhcpPreset("Office", "Ethernet");
        model.addPreset(stage);
        model.addPreset(office);
        QVERIFY(model.isActive(office) && !model.isActive(stage));
        QSignalSpy busy(&model, &AppModel::busyChanged);
        home.willAuthorize();
        QVERIFY(model.apply(stage));
        QCOMPARE(busy.size(), 2);
        QCOMPARE(home.prompt.calls[0].purpose, QString("apply “Stage “A”” to Ethernet"));
        QCOMPARE(home.banners, QStringList{"Applied “Stage “A”” to Ethernet."});
        // By the readings that follow by themselves.
        QTRY_VERIFY_WITH_TIMEOUT(model.isActive(stage), 20000);
        QVERIFY(!model.isActive(office));
        const CurrentConfig& config = *model.service("Ethernet")->config;
        QCOMPARE(config.ip, std::optional<std::string>("10.0.5.20"));
        QCOMPARE(config.router, std::optional<std::string>("10.0.5.1"));
        QCOMPARE(config.dns, (std::vector<std::string>{"10.0.5.2", "1.1.1.1"}));
        const auto current = model.presetFromCurrent("Ethernet");
        QCOMPARE(current.name, std::string("Ethernet"));
        QVERIFY(model.isActive(current));
        QVERIFY(current.id != stage.id);

        home.willAuthorize();
        QVERIFY(model.apply(office));
        QTRY_VERIFY_WITH_TIMEOUT(model.isActive(office) && !model.isActive(stage), 20000);
        QVERIFY(model.service("Ethernet")->config->dns.empty());
        // Without a mask of its own a preset from now on gets the usual one.
        QCOMPARE(model.presetFromCurrent("USB unknown").subnet, std::string("255.255.255.0"));
    }

    void globalReordersAndMarks() {
        ModelHome home;
        AppModel& model = home.start();
        const auto wifi = manualPreset("House", "Wi-Fi", "192.168.1.77", "192.168.1.1");
        const auto wired = manualPreset("Rig", "Ethernet", "10.0.10.9");
        const auto second = dhcpPreset("Never reached", "Ethernet");
        for (const auto& preset : {wifi, wired, second}) model.addPreset(preset);
        auto show = globalPreset("Show");
        show.members = {wifi.id, Uuid::generate(), wired.id, second.id};
        show.internetService = "Ethernet";
        model.addGlobal(show);
        QVERIFY(!model.isActive(show));
        home.willAuthorize();
        QVERIFY(model.apply(show));
        QCOMPARE(home.banners.last(), QString("Applied “Show” to 2 interfaces."));
        home.refreshed();
        QVERIFY(model.isActive(show));
        QCOMPARE(model.serviceOrder().size(), std::size_t(6));
        QCOMPARE(model.serviceOrder()[0], std::string("Ethernet"));
        QCOMPARE(model.serviceOrder()[1], std::string("Wi-Fi"));

        // A service that isn't there moves nothing, and an order alone is a plan too.
        show.internetService = "Gone";
        home.willAuthorize();
        QVERIFY(model.apply(show));
        auto order = globalPreset("Internet by Wi-Fi", {}, "Wi-Fi");
        home.willAuthorize();
        QVERIFY(model.apply(order));
        QCOMPARE(home.banners.last(), QString("Applied “Internet by Wi-Fi” to the service order."));
        home.refreshed();
        QCOMPARE(model.serviceOrder()[0], std::string("Wi-Fi"));
        QVERIFY(!model.isActive(order));
        order.internetService.reset();
        QVERIFY(!model.apply(order));
        QCOMPARE(home.alerts.shown.back().message,
                 QString("“Internet by Wi-Fi” can't be applied:\n\nChoose at least one interface preset."));
    }

    void whatIsInvalidOrRemoteNeverRuns() {
        ModelHome home;
        AppModel& model = home.start();
        auto bad = manualPreset("Bad", "Wi-Fi", "10.0.0.999", "x");
        QVERIFY(!model.apply(bad));
        QCOMPARE(home.alerts.shown.size(), std::size_t(1));
        QCOMPARE(home.alerts.shown[0].kind, Alerts::Kind::informational);
        QCOMPARE(home.alerts.shown[0].message,
                 QString("“Bad” can't be applied:\n\nIP address isn't a valid IPv4 "
                         "address.\nRouter isn't a valid IPv4 address."));
        const auto far = dhcpPreset("Far", "win:PC:Ethernet"), here = dhcpPreset("Here", "Stage LAN");
        const QString sentence = "“Far” belongs to a remote PC; remote PCs can't be reached yet.";
        QVERIFY(!model.apply(far));
        QCOMPARE(home.alerts.shown.back().message, sentence);
        model.addPreset(far);
        model.addPreset(here);
        auto both = globalPreset("Both", {far.id});
        QVERIFY(!model.apply(both));
        QVERIFY(home.prompt.calls.empty() && home.banners.isEmpty());
        // The local ones are applied, and the others named.
        both.members.push_back(here.id);
        home.willAuthorize();
        home.alerts.shown.clear();
        QVERIFY(model.apply(both));
        QCOMPARE(home.banners.last(), QString("Applied “Both” to Stage LAN."));
        QCOMPARE(home.alerts.shown.size(), std::size_t(1));
        QCOMPARE(home.alerts.shown[0].message, sentence);
    }

    void aToolsPrintedErrorIsTheAlert() {
        ModelHome home;
        AppModel& model = home.start();
        home.change([](simulated::State& state) {
            state.failNext = {{"-setdnsservers", "** Error: The parameters were not valid.\n", 0}};
        });
        home.willAuthorize();
        QVERIFY(!model.apply(dhcpPreset("Office", "Ethernet")));
        QCOMPARE(home.alerts.shown.size(), std::size_t(1));
        QCOMPARE(home.alerts.shown[0].message, QString("Couldn't apply “Office”."));
        QCOMPARE(home.alerts.shown[0].details, QString("** Error: The parameters were not valid."));
        // The tool itself says so of a service that it doesn't know; the name is nothing but a name.
        for (const char* name :
             {"No $(touch x) 'such' \"service\"", "-ordernetworkservices", "emoji 🎛\nline"}) {
            home.willAuthorize();
            QVERIFY(!model.apply(dhcpPreset("Odd", name)));
            QVERIFY2(home.alerts.shown.back().details.contains("is not a recognized network service"),
                     qPrintable(home.alerts.shown.back().details));
        }
        QVERIFY(home.banners.isEmpty());
    }

    void wrongPasswordAsksAgainAndIsForgotten() {
        ModelHome home;
        AppModel& model = home.start();
        const auto office = dhcpPreset("Office", "Ethernet");
        home.prompt.willType(home.user(), "wrong");
        home.willAuthorize(true);
        QVERIFY(model.apply(office));
        QCOMPARE(home.prompt.calls.size(), std::size_t(2));
        QVERIFY(model.hasSavedPassword());
        // From now on nobody is asked, unless it is the owner, who isn't there.
        QVERIFY(model.apply(office));
        QCOMPARE(home.prompt.calls.size(), std::size_t(2));
        model.setRequireTouchID(true);
        home.change([](simulated::State& state) { state.owner = "absent"; });
        QVERIFY(model.touchIDAvailable());
        home.banners.clear();
        QVERIFY(!model.apply(office));
        QVERIFY(home.banners.isEmpty() && home.alerts.shown.empty());
        model.forgetSavedPassword();
        QTRY_COMPARE(home.banners, QStringList{"Saved password removed from the keychain."});
        QVERIFY(!model.hasSavedPassword());
        QVERIFY(!model.apply(office));
        QCOMPARE(home.prompt.calls.size(), std::size_t(3));
        QCOMPARE(home.banners.size(), 1);
    }

    void temporaryAddress() {
        ModelHome home;
        AppModel& model = home.start();
        QVERIFY(!model.addTempAlias("Ethernet", "en5", "10.0.0", "24"));
        QCOMPARE(home.alerts.shown.size(), std::size_t(1));
        QVERIFY(home.prompt.calls.empty());
        home.willAuthorize();
        QVERIFY(model.addTempAlias("Ethernet", "en5", "172.16.0.9", "/24"));
        QCOMPARE(home.prompt.calls[0].purpose, QString("add the temporary address 172.16.0.9"));
        QCOMPARE(home.banners.last(),
                 QString("Added 172.16.0.9 to Ethernet until the next restart or network change."));
        QCOMPARE(model.tempAliases(),
                 (std::vector<AppModel::TempAlias>{{"Ethernet", "en5", "172.16.0.9", "255.255.255.0"}}));
        home.refreshed();
        QCOMPARE(model.service("Ethernet")->hardware->addresses.back(), std::string("172.16.0.9"));
        QCOMPARE(model.tempAliases().size(), std::size_t(1));
        home.willAuthorize();
        QVERIFY(model.removeTempAlias(model.tempAliases()[0]));
        QCOMPARE(home.banners.last(), QString("Removed 172.16.0.9 from Ethernet"));
        QVERIFY(model.tempAliases().empty());
        home.willAuthorize();
        QVERIFY(!model.addTempAlias("Gone", "en99", "172.16.0.9", "24"));
        QCOMPARE(home.alerts.shown.back().message, QString("Couldn't add the temporary address 172.16.0.9."));
        QVERIFY(home.alerts.shown.back().details.contains("en99"));
        QVERIFY(model.tempAliases().empty());
    }
};

QTEST_GUILESS_MAIN(ApplyTest)
#include "apply_test.moc"
