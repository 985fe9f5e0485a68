// VLANs on the simulated Mac: their whole life, what a failure half-way leaves behind, and plans.
#include "tests/app/support/model_home.h"

#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>

using namespace corvane;
using namespace corvane::testing;

class VLANTest : public QObject {
    Q_OBJECT

    static const PlannedVLAN& onlyPlan(const AppModel& model) {
        if (model.library().plannedVLANs.size() != 1) qFatal("not one plan");
        return model.library().plannedVLANs.front();
    }
    static bool holds(const AppModel& model, const VLANInfo& wanted) {
        const VLANInfo* found = model.vlan(wanted.name);
        return found && found->parentDevice == wanted.parentDevice && found->tag == wanted.tag;
    }
    static std::optional<SidebarItem> service(const char* name) { return SidebarItem::service(name); }
    /// A VLAN “Lights”, tag 20 on en5, with a manual address and a selected page.
    static VLANInfo makeLights(ModelHome& home, AppModel& model) {
        home.willAuthorize();
        if (!model.createVLAN("Lights", "en5", 20)) qFatal("no VLAN");
        home.willAuthorize();
        if (!model.apply(manualPreset("Fixed", "Lights", "10.9.0.5", "10.9.0.1", {"10.9.0.2"})))
            qFatal("not applied");
        home.refreshed();
        home.banners.clear();
        home.prompt.calls.clear();
        return *model.vlan("Lights");
    }

  private slots:
    void isCreatedAndSelectedOnceItAppears() {
        ModelHome home;
        AppModel& model = home.start();
        QSignalSpy changed(&model, &AppModel::vlansChanged);
        const auto selectedBefore = model.selection();
        home.willAuthorize();
        QVERIFY(model.createVLAN(" Stage ", "en5", 4094));
        QCOMPARE(home.prompt.calls[0].purpose, QString("create the VLAN “Stage”"));
        QCOMPARE(home.banners, QStringList{"Created VLAN “Stage”."});
        QCOMPARE(model.pendingSelection(), std::optional<std::string>("Stage"));
        QVERIFY(model.selection() == selectedBefore);
        QTRY_VERIFY_WITH_TIMEOUT(model.selection() == service("Stage"), 20000);
        QVERIFY(!model.pendingSelection() && changed.size() == 1);
        QVERIFY(holds(model, {"Stage", "en5", "", 4094}));
        QVERIFY(model.service("Stage")->config->mode.isDHCP());
        QVERIFY(!model.vlan("Ethernet"));
    }

    void whatIsInvalidNeverRuns() {
        ModelHome home;
        AppModel& model = home.start();
        const VLANInfo lights = makeLights(home, model);
        const auto message = [&] {
            const QString text = home.alerts.shown.empty() ? QString() : home.alerts.shown.back().message;
            home.alerts.shown.clear();
            return text;
        };
        QVERIFY(!model.createVLAN(" ", "en5", 1));
        QCOMPARE(message(), QString("Give the VLAN a name."));
        QVERIFY(!model.createVLAN("A", "en5", 4095));
        QCOMPARE(message(), QString("Tag must be a number from 1 to 4094."));
        QVERIFY(!model.createVLAN("A", "en5", 20));
        QCOMPARE(message(), QString("This port already has a VLAN with tag 20."));
        QVERIFY(!model.createVLAN("Ethernet", "en5", 21));
        QCOMPARE(message(), QString("An interface named “Ethernet” already exists."));
        QVERIFY(!model.createVLAN("A", "", 21));
        QCOMPARE(message(), QString("Choose an adapter for the VLAN."));
        QVERIFY(!model.createVLAN("win:PC:Ethernet", "en5", 21) && !message().isEmpty());
        QVERIFY(!model.editVLAN(lights, "win:PC:Ethernet", "en5", 21) && !message().isEmpty());
        QVERIFY(!model.editVLAN(lights, "Wi-Fi", "en5", 20));
        QCOMPARE(message(), QString("An interface named “Wi-Fi” already exists."));
        // Nothing to change: a VLAN that works stays up.
        QVERIFY(model.editVLAN(lights, "Lights", "en5", 20));
        QVERIFY(home.prompt.calls.empty() && home.banners.isEmpty());
        // A cancelled question is silent and looks at nothing.
        QVERIFY(!model.editVLAN(lights, "Lamps", "en5", 20));
        QVERIFY(home.prompt.calls.size() == 1 && home.alerts.shown.empty());
        QVERIFY(model.library().plannedVLANs.empty());
    }

    void aChangeRestoresTheAddressingAndMovesThePresets() {
        ModelHome home;
        AppModel& model = home.start();
        const VLANInfo lights = makeLights(home, model);
        model.addPreset(dhcpPreset("House", "Lights"));
        model.addPreset(dhcpPreset("Other", "Ethernet"));
        model.addGlobal(globalPreset("Show", {model.library().presets[0].id}, "Lights"));
        model.setHidden("Lights", true);
        model.loadRoutes("Lights");
        QTRY_VERIFY(model.routes("Lights"));
        const int steps = model.undoStack().count();
        home.willAuthorize();
        QVERIFY(model.editVLAN(lights, "Lamps", "en8", 21));
        QCOMPARE(home.prompt.calls[0].purpose, QString("change the VLAN “Lights”"));
        QCOMPARE(home.banners, QStringList{"Updated VLAN “Lamps”."});
        QCOMPARE(model.undoStack().count(), steps + 1);
        QCOMPARE(model.library().presets[0].service, std::string("Lamps"));
        QCOMPARE(model.library().presets[1].service, std::string("Ethernet"));
        QCOMPARE(model.library().globals[0].internetService, std::optional<std::string>("Lamps"));
        QVERIFY(model.isHidden("Lamps") && !model.isHidden("Lights") && !model.routes("Lights"));
        QTRY_VERIFY_WITH_TIMEOUT(model.selection() == service("Lamps"), 20000);
        QVERIFY(holds(model, {"Lamps", "en8", "", 21}) && !model.service("Lights"));
        QVERIFY(model.isActive(manualPreset("Fixed", "Lamps", "10.9.0.5", "10.9.0.1", {"10.9.0.2"})));
        model.undoStack().undo();
        QCOMPARE(model.library().presets[0].service, std::string("Lights"));
        QCOMPARE(model.library().globals[0].internetService, std::optional<std::string>("Lights"));
    }

    void aFailureHalfWayLosesNothing_data() {
        QTest::addColumn<QString>("verb");
        QTest::addColumn<QString>("left");
        QTest::newRow("not deleted") << "-deleteVLAN"
                                     << "old";
        QTest::newRow("not created") << "-createVLAN"
                                     << "none";
        QTest::newRow("not addressed") << "-setmanual"
                                       << "new";
    }
    void aFailureHalfWayLosesNothing() {
        QFETCH(QString, verb);
        QFETCH(QString, left);
        ModelHome home;
        AppModel& model = home.start();
        const VLANInfo lights = makeLights(home, model);
        model.addPreset(dhcpPreset("House", "Lights"));
        home.change([&](simulated::State& state) {
            state.failNext = {{verb.toStdString(), "** Error: The parameters were not valid.", 14}};
        });
        home.willAuthorize();
        QSignalSpy refreshed(&model, &AppModel::refreshed);
        QVERIFY(!model.editVLAN(lights, "Lamps", "en5", 21));
        QCOMPARE(home.alerts.shown[0].message, QString("Couldn't change VLAN “Lights”."));
        QCOMPARE(home.alerts.shown[0].details, QString("** Error: The parameters were not valid."));
        QCOMPARE(home.alerts.shown.size(), std::size_t(left == "old" ? 1 : 2));
        QVERIFY(home.banners.isEmpty());
        // By itself, and not by the timer: that one ticks every 4 s.
        QTRY_VERIFY_WITH_TIMEOUT(!refreshed.isEmpty(), 3000);
        home.refreshed();
        QCOMPARE(model.vlans().size(), std::size_t(left == "none" ? 0 : 1));
        QCOMPARE(model.library().plannedVLANs.size(), std::size_t(left == "none" ? 1 : 0));
        QCOMPARE(model.library().presets[0].service, std::string(left == "old" ? "Lights" : "Lamps"));
        if (left == "old") return;
        const auto& told = home.alerts.shown[1];
        QCOMPARE(told.details,
                 QString("IP settings before the change: 10.9.0.5/24 · gw 10.9.0.1 · DNS 10.9.0.2."));
        if (left == "new") {
            QCOMPARE(told.message,
                     QString("VLAN “Lamps” was re-created, but its IP settings couldn't be restored."));
            QVERIFY(holds(model, {"Lamps", "en5", "", 21}));
            return;
        }
        QCOMPARE(told.message,
                 QString("VLAN “Lights” no longer exists on this computer. Its new settings are "
                         "kept as the planned VLAN “Lamps”, which can be set up again."));
        const PlannedVLAN plan = onlyPlan(model);
        QVERIFY(plan.name == "Lamps" && plan.tag == 21 && plan.parentDevice == "en5");
        QVERIFY(model.selection() == SidebarItem::plannedVLAN(plan.id));
        // It is on disk, and it can be set up.
        model.flush();
        QVERIFY(readFile(home.libraryFile()).contains("\"Lamps\""));
        home.willAuthorize();
        QVERIFY(model.setUpPlannedVLAN(plan.id, "en5"));
        QTRY_VERIFY_WITH_TIMEOUT(holds(model, {"Lamps", "en5", "", 21}), 20000);
    }

    void whatCannotBeLookedAtIsKept() {
        ModelHome home;
        AppModel& model = home.start();
        const VLANInfo lights = makeLights(home, model);
        home.prompt.whileAsking = [&] {
            home.change([](simulated::State& state) {
                state.failNext.assign(30, {"-listallnetworkservices", "** Error: Busy.", 8});
                state.failNext.insert(state.failNext.end(), 30, {"-listVLANs", "** Error: Busy.", 8});
                state.failNext.push_back({"-createVLAN", "** Error: The parameters were not valid.", 14});
            });
        };
        home.willAuthorize();
        QVERIFY(!model.editVLAN(lights, "Lights", "en5", 22));
        QVERIFY(home.alerts.shown.back().message.startsWith(
            "It isn't known whether VLAN “Lights” still exists on this computer."));
        QCOMPARE(onlyPlan(model).tag, 22L);
    }

    void theAddressingIsReadAtTheMomentOfTheChange() {
        ModelHome home;
        AppModel& model = home.start();
        const VLANInfo lights = makeLights(home, model);
        const auto fail = [&](const char* verb) {
            home.change([&](simulated::State& state) {
                // The readings of the refresh ask as well.
                state.failNext.assign(30, {verb, "** Error: Busy.", 8});
            });
        };
        const auto works = [&] { home.change([](simulated::State& state) { state.failNext.clear(); }); };
        for (const char* verb : {"-getinfo", "-getdnsservers", "-getadditionalroutes"}) {
            fail(verb);
            QVERIFY(!model.editVLAN(lights, "Lights", "en5", 21));
            works();
            QCOMPARE(home.alerts.shown.back().message,
                     QString("VLAN “Lights” wasn't changed: its settings couldn't be read. Try again in a "
                             "moment."));
        }
        const auto lightsService = [](simulated::State& state) -> simulated::Service& {
            return *std::find_if(state.services.begin(), state.services.end(),
                                 [](const auto& service) { return service.name == "Lights"; });
        };
        home.change([&](simulated::State& state) { lightsService(state).enabled = false; });
        QVERIFY(!model.editVLAN(lights, "Lights", "en5", 21));
        QVERIFY(home.alerts.shown.back().message.contains("it is disabled"));
        QVERIFY(home.prompt.calls.empty());
        // The last refresh failed, and the routes were never looked at: all is put back nevertheless.
        home.change([&](simulated::State& state) {
            lightsService(state).enabled = true;
            lightsService(state).routes = {{"10.50.0.0", "255.255.0.0", "10.9.0.1"}};
        });
        fail("-getinfo");
        home.refreshed();
        works();
        QVERIFY(!model.service("Lights")->config->mode.isManual());
        home.willAuthorize();
        QVERIFY(model.editVLAN(lights, "Lamps", "en5", 22));
        QTRY_VERIFY_WITH_TIMEOUT(holds(model, {"Lamps", "en5", "", 22}), 20000);
        const auto fixed = manualPreset("Fixed", "Lamps", "10.9.0.5", "10.9.0.1", {"10.9.0.2"});
        QTRY_VERIFY_WITH_TIMEOUT(model.isActive(fixed), 20000);
        model.loadRoutes("Lamps");
        QTRY_VERIFY_WITH_TIMEOUT(model.routes("Lamps"), 20000);
        QCOMPARE(model.routes("Lamps")->size(), std::size_t(1));
        QCOMPARE(model.routes("Lamps")->front().summary(), std::string("10.50.0.0/16 via 10.9.0.1"));
    }

    void isDeletedWithOrWithoutItsPresets() {
        ModelHome home;
        AppModel& model = home.start();
        for (const bool presetsToo : {false, true}) {
            const VLANInfo lights = makeLights(home, model);
            if (!presetsToo) model.addPreset(dhcpPreset("House", "Lights"));
            const int steps = model.undoStack().count();
            QVERIFY(model.selection() == service("Lights"));
            home.change([](simulated::State& state) {
                state.failNext = {{"-deleteVLAN", "** Error: The parameters were not valid.", 14}};
            });
            home.willAuthorize();
            QVERIFY(!model.deleteVLAN(lights, true));
            QCOMPARE(home.alerts.shown.back().message, QString("Couldn't delete VLAN “Lights”."));
            QCOMPARE(model.library().presets.size(), std::size_t(1));
            model.setHidden("Lights", true);
            home.willAuthorize();
            QVERIFY(model.deleteVLAN(lights, presetsToo));
            QVERIFY(!model.isHidden("Lights"));
            QCOMPARE(home.prompt.calls.back().purpose, QString("delete the VLAN “Lights”"));
            QCOMPARE(home.banners.last(), QString("Deleted VLAN “Lights”."));
            QCOMPARE(model.library().presets.size(), std::size_t(presetsToo ? 0 : 1));
            QCOMPARE(model.undoStack().count(), steps + (presetsToo ? 1 : 0));
            QTRY_VERIFY_WITH_TIMEOUT(!model.service("Lights") && model.vlans().empty(), 20000);
            QVERIFY(model.selection() == service("Ethernet"));
        }
        model.undoStack().undo();
        QCOMPARE(model.library().presets.size(), std::size_t(1));
    }

    void aPlanIsKeptChangedAndSetUp() {
        ModelHome home;
        AppModel& model = home.start();
        PlannedVLAN plan;
        plan.id = Uuid::generate();
        plan.name = " Audio ";
        plan.tag = 30;
        model.addPlannedVLAN(plan);
        QCOMPARE(onlyPlan(model).name, std::string("Audio"));
        model.addPreset(dhcpPreset("Desk", "Audio"));
        PlannedVLAN second = plan;
        second.id = Uuid::generate();
        model.addPlannedVLAN(second);
        QCOMPARE(home.alerts.shown.back().message, QString("An interface named “Audio” already exists."));
        plan.name = "Sound";
        plan.parentDevice = "en7";
        model.updatePlannedVLAN(plan);
        QVERIFY(onlyPlan(model) == plan && model.plannedVLAN(plan.id));
        QCOMPARE(model.library().presets[0].service, std::string("Sound"));
        model.deletePlannedVLAN(plan.id);
        QVERIFY(!model.plannedVLAN(plan.id));
        model.undoStack().undo();
        QVERIFY(onlyPlan(model) == plan && home.prompt.calls.empty());

        home.stop();
        AppModel& later = home.start();
        QVERIFY(onlyPlan(later) == plan);
        later.select(SidebarItem::plannedVLAN(plan.id));
        QVERIFY(!later.setUpPlannedVLAN(plan.id, ""));
        // Cancelled: the plan stays.
        QVERIFY(!later.setUpPlannedVLAN(plan.id, "en5") && later.plannedVLAN(plan.id));
        home.willAuthorize();
        QVERIFY(later.setUpPlannedVLAN(plan.id, "en5"));
        QCOMPARE(home.banners.last(), QString("Created VLAN “Sound”."));
        QVERIFY(later.library().plannedVLANs.empty());
        QTRY_VERIFY_WITH_TIMEOUT(later.selection() == service("Sound"), 20000);
        QVERIFY(holds(later, {"Sound", "en5", "", 30}));
        QVERIFY(later.isActive(later.library().presets[0]));
    }

    void saysWhichAdaptersCarryThem() {
        ModelHome home;
        AppModel& model = home.start();
        makeLights(home, model);
        using Support = AppModel::VLANSupport;
        const std::map<std::string, Support> expected = {{"Ethernet", Support::supported},
                                                         {"Stage LAN", Support::supported},
                                                         {"USB 10/100 LAN", Support::adapterMissing},
                                                         {"iPhone USB", Support::unsupported},
                                                         {"Wi-Fi", Support::notApplicable},
                                                         {"Thunderbolt Bridge", Support::notApplicable},
                                                         {"Lights", Support::notApplicable},
                                                         {"Nothing", Support::notApplicable}};
        for (const auto& [name, support] : expected)
            QVERIFY2(model.vlanSupport(name) == support, name.c_str());
        QVERIFY(model.vlanCapable().contains("en5") && !model.vlanCapable().contains("en0"));
        QCOMPARE(vlanSupportSentence(Support::adapterMissing), QString("Plug in the adapter to add VLANs."));
        QCOMPARE(vlanSupportSentence(Support::unsupported),
                 QString("macOS reports this adapter can't carry VLANs."));
    }
};

QTEST_GUILESS_MAIN(VLANTest)
#include "vlan_test.moc"
