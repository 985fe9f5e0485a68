// Ping groups in the library, and the monitor that a global preset starts: on the simulated Mac's real ping.
#include "app/clients/ping_monitor.h"
#include "tests/app/support/model_home.h"

#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>

using namespace corvane;
using namespace corvane::testing;

namespace {

PingTarget target(const std::string& name, const std::string& host) {
    return {Uuid::generate(), name, host, {}};
}

PingGroup group(const std::string& name, std::vector<PingTarget> targets = {}) {
    return {Uuid::generate(), name, std::move(targets), {}};
}

} // namespace

class PingTest : public QObject {
    Q_OBJECT

  private slots:
    void everyEditIsOneStep() {
        ModelHome home;
        AppModel& model = home.start();
        auto desk = target("Desk", "10.0.0.9"), screen = target("", "10.0.0.10"), amp = target("Amp", "amp");
        auto rig = group("Rig", {desk}), hall = group("Hall");
        auto renamed = desk;
        renamed.name = "FOH desk";
        const std::vector<std::pair<QString, std::function<void()>>> edits{
            {"Add Ping Group “Rig”", [&] { model.addPingGroup(rig); }},
            {"Add Ping Group “Hall”", [&] { model.addPingGroup(hall); }},
            {"Rename Ping Group “Main Hall”", [&] { model.renamePingGroup(hall.id, "Main Hall"); }},
            {"Move Ping Group “Main Hall”", [&] { model.movePingGroup(hall.id, rig.id); }},
            {"Add Host “10.0.0.10”", [&] { model.addPingTargets(rig.id, {screen}); }},
            {"Add 2 Hosts",
             [&] {
                 model.addPingTargets(rig.id, {amp, amp});
             }},
            {"Edit Host “FOH desk”", [&] { model.updatePingTarget(rig.id, renamed); }},
            {"Move Host “Amp”", [&] { model.movePingTarget(rig.id, amp.id, desk.id); }},
            {"Delete Host “10.0.0.10”", [&] { model.deletePingTarget(rig.id, screen.id); }},
            {"Duplicate Ping Group “Rig”", [&] { model.duplicatePingGroup(rig.id); }},
            {"Delete Ping Group “Main Hall”", [&] { model.deletePingGroup(hall.id); }},
        };
        std::vector<PresetLibrary> states{model.library()};
        for (const auto& [text, edit] : edits) {
            edit();
            QCOMPARE(model.undoStack().undoText(), text);
            states.push_back(model.library());
        }
        QCOMPARE(model.undoStack().count(), int(edits.size()));
        const auto& groups = model.library().pingGroups;
        QCOMPARE(groups.size(), std::size_t(2));
        QStringList hosts;
        for (const auto& each : groups[0].targets) hosts << QString::fromStdString(each.host);
        QCOMPARE(hosts, (QStringList{"amp", "10.0.0.9", "amp"}));
        QVERIFY(groups[0].targets[0].id != groups[0].targets[2].id);
        QCOMPARE(groups[1].name, std::string("Rig copy"));
        QVERIFY(groups[1].targets[0].id != groups[0].targets[0].id);
        // Nothing at all happens to a group that isn't there.
        model.addPingTargets(hall.id, {desk});
        QVERIFY(model.duplicatePingGroup(hall.id).isNil());
        QCOMPARE(model.undoStack().count(), int(edits.size()));
        for (auto state = states.rbegin() + 1; state != states.rend(); ++state) {
            model.undoStack().undo();
            QCOMPARE(model.library(), *state);
        }
    }

    void runsWhileShownAndNotPaused() {
        ModelHome home;
        home.change([](simulated::State& state) { state.answering["192.168.1.44"] = 0.5; });
        AppModel& model = home.start();
        auto rig = group("Rig", {target("Up", "192.168.1.44"), target("Down", "192.168.1.45"),
                                 target("Nobody", "no-such-host"), target("Empty", "  ")});
        model.addPingGroup(rig);
        const auto& states = model.pinger().states();
        const auto kind = [&](std::size_t index) -> std::optional<PingOutcome::Kind> {
            const auto state = states.find(rig.targets[index].id);
            if (state == states.end() || !state->second.outcome) return std::nullopt;
            return state->second.outcome->kind();
        };
        QVERIFY(!model.pinger().isRunning());
        // The first group is watched when none was chosen.
        model.setShowPing(true);
        QCOMPARE(model.activePingGroup(), std::optional(rig.id));
        QTRY_COMPARE(kind(0), std::optional(PingOutcome::Kind::reply));
        QTRY_COMPARE(kind(1), std::optional(PingOutcome::Kind::timeout));
        QTRY_COMPARE(kind(2), std::optional(PingOutcome::Kind::unresolved));
        QCOMPARE(states.size(), std::size_t(3));
        model.setPingPaused(true);
        QVERIFY(states.empty() && !model.pinger().isRunning());
        model.setPingPaused(false);
        QTRY_COMPARE(kind(0), std::optional(PingOutcome::Kind::reply));
        // The group goes, and comes back by undo.
        model.deletePingGroup(rig.id);
        QVERIFY(!model.activePingGroup() && !model.pinger().isRunning());
        model.undoStack().undo();
        QCOMPARE(model.activePingGroup(), std::optional(rig.id));
        QVERIFY(model.pinger().isRunning());
        model.setShowPing(false);
        QVERIFY(!model.pinger().isRunning());
        // The next start knows it, though nobody chose it.
        model.flush();
        home.stop();
        QCOMPARE(home.start().activePingGroup(), std::optional(rig.id));
    }

    void aGlobalPresetStartsItsGroup() {
        ModelHome home;
        AppModel& model = home.start();
        const auto other = group("Other", {target("", "10.0.5.1")}),
                   rig = group("Rig", {target("", "10.0.5.20")});
        const auto stage = manualPreset("Stage", "Ethernet", "10.0.5.20");
        model.addPingGroup(other);
        model.addPingGroup(rig);
        model.addPreset(stage);
        auto show = globalPreset("Show", {stage.id});
        show.pingGroup = rig.id;
        model.setActivePingGroup(other.id);
        model.setPingPaused(true);
        // Cancelled: nothing was applied, so nothing starts.
        QVERIFY(!model.apply(show));
        QVERIFY(!model.showPing() && model.activePingGroup() == other.id);
        home.willAuthorize();
        QVERIFY(model.apply(show));
        QVERIFY(model.showPing() && !model.pingPaused());
        QCOMPARE(model.activePingGroup(), std::optional(rig.id));
        QTRY_VERIFY_WITH_TIMEOUT(model.pinger().states().contains(rig.targets[0].id) &&
                                     model.pinger().states().at(rig.targets[0].id).outcome->isReply(),
                                 10000);
        QTRY_COMPARE(model.localInterfaces().size() > 1, true);
        QTRY_COMPARE(Ping::localInterface("10.0.5.99", model.localInterfaces()),
                     model.service("Ethernet")->device);

        // A group that is gone is left alone.
        show.pingGroup = Uuid::generate();
        home.willAuthorize();
        QVERIFY(model.apply(show));
        QCOMPARE(model.activePingGroup(), std::optional(rig.id));
        model.flush();

        // The next start knows the group, and doesn't ping before it is asked to.
        home.stop();
        AppModel& again = home.start();
        QCOMPARE(again.activePingGroup(), std::optional(rig.id));
        QVERIFY(!again.showPing() && !again.pinger().isRunning());
        again.deletePingGroup(rig.id);
        again.flush();
        home.stop();
        QVERIFY(!home.start().activePingGroup());
    }
};

QTEST_GUILESS_MAIN(PingTest)
#include "ping_test.moc"
