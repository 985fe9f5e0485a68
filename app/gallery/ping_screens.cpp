// The screens of the ping monitor and the sweep.
#include "app/gallery/screens.h"

#include "app/clients/ping_monitor.h"
#include "app/clients/subnet_sweep.h"
#include "app/views/network/network_commands.h"
#include "app/views/tools/ping/ping_commands.h"
#include "app/views/tools/ping/ping_list.h"
#include "core/netconfig/ipv4.h"

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include <thread>

namespace corvane::gallery {
namespace {

using namespace Qt::StringLiterals;

constexpr QSize usual(1080, 720), small(900, 600);
constexpr int probe = 1000, wholeHistory = 31 * probe;

PingTarget host(const char* name, const char* address) {
    PingTarget target;
    target.id = Uuid::generate();
    target.name = name;
    target.host = address;
    return target;
}

PingGroup group(const char* name, std::vector<PingTarget> targets) {
    PingGroup made;
    made.id = Uuid::generate();
    made.name = name;
    made.targets = std::move(targets);
    return made;
}

PingGroup stageGroup() {
    return group("Stage", {host("House router", "10.0.10.1"), host("Console", "console.local"),
                           host("Media server A", "10.0.10.21"), host("Media server B", "10.0.10.22"),
                           host("Projector left", "10.0.10.31"), host("Projector right", "10.0.10.32"),
                           host("Recorder", "192.168.1.20"), host("Lighting desk", "2.0.0.10"),
                           host("Playback spare", "playback-2.local"), host("", "1.1.1.1")});
}

void withAnswers(Stage& stage) {
    stage.network([](simulated::State& state) {
        state.answering["10.0.10.21"] = 0.31;
        state.answering["10.0.10.22"] = 12.7;
        state.answering["10.0.10.31"] = 1.4;
        state.answering["10.0.10.32"] = 1.6;
    });
}

/// One after the other, as when cables are pulled and put back.
void silence(Stage& stage, const char* address, bool answers) {
    stage.network([&](simulated::State& state) {
        if (answers)
            state.answering[address] = 1.6;
        else
            state.answering.erase(address);
    });
}

void start(Stage& stage, std::vector<PingGroup> groups, QSize size = usual) {
    withAnswers(stage);
    PresetLibrary library = exampleLibrary();
    library.pingGroups = std::move(groups);
    stage.libraryFile(library.encoded());
    stage.start(size);
    if (!library.pingGroups.empty()) stage.model().setActivePingGroup(library.pingGroups.front().id);
}

void openPage(Stage& stage) {
    stage.model().select(SidebarItem::tool(Tool::ping));
    stage.settle();
}

/// Below the page of a service.
void openDocked(Stage& stage) {
    stage.model().select(SidebarItem::service("Ethernet"));
    stage.model().setShowPing(true);
    stage.settle();
}

/// With misses in the history, a host that has just gone and one that was never there.
void watch(Stage& stage, int milliseconds) {
    QElapsedTimer clock;
    clock.start();
    Stage::pass(milliseconds / 3);
    silence(stage, "10.0.10.31", false);
    Stage::pass(milliseconds / 6);
    silence(stage, "10.0.10.31", true);
    Stage::pass(milliseconds / 4);
    silence(stage, "10.0.10.32", false);
    Stage::pass(static_cast<int>(std::max<qint64>(0, milliseconds - clock.elapsed())));
}

QPixmap page(Stage& stage, int milliseconds, QSize size = usual) {
    start(stage, {stageGroup(), group("Lights", {})}, size);
    openPage(stage);
    watch(stage, milliseconds);
    auto* list = stage.window().findChild<PingList*>();
    list->setFocus();
    list->setCurrentIndex(list->rowModel().index(2));
    Stage::pass(60);
    return stage.picture();
}

QPixmap docked(Stage& stage, QSize size = usual) {
    start(stage, {stageGroup()}, size);
    openDocked(stage);
    watch(stage, 6 * probe);
    return stage.picture();
}

QPixmap paused(Stage& stage) {
    start(stage, {stageGroup()});
    openPage(stage);
    Stage::pass(2 * probe);
    stage.model().setPingPaused(true);
    Stage::pass(200);
    return stage.picture();
}

QPixmap waiting(Stage& stage) {
    start(stage, {stageGroup()});
    stage.network([](simulated::State& state) { state.delayScale = 8; });
    stage.model().select(SidebarItem::tool(Tool::ping));
    Stage::pass(150);
    return stage.picture();
}

QPixmap copied(Stage& stage) {
    start(stage, {stageGroup()});
    openPage(stage);
    Stage::pass(2 * probe);
    auto* list = stage.window().findChild<PingList*>();
    list->setFocus();
    list->setCurrentIndex(list->rowModel().index(3));
    list->copyHost(*list->currentKey());
    Stage::pass(60);
    return stage.picture();
}

QPixmap many(Stage& stage, bool below) {
    std::vector<PingTarget> hosts;
    for (int i = 1; i <= 200; ++i) {
        const std::string number = std::to_string(i);
        hosts.push_back(host(("Fixture " + number).c_str(), ("10.0.10." + number).c_str()));
    }
    stage.network([](simulated::State& state) {
        for (int i = 2; i <= 200; ++i) {
            if (i % 9 != 0) state.answering["10.0.10." + std::to_string(i)] = 0.2 + i * 0.017;
        }
    });
    start(stage, {group("Fixtures", std::move(hosts))});
    below ? openDocked(stage) : openPage(stage);
    Stage::pass(6 * probe);
    return stage.picture();
}

QPixmap hostile(Stage& stage) {
    start(
        stage,
        {group("Line one\nline two & <b>bold</b> \u202Ereversed",
               {host("<b>Markup</b> & \"quotes\"", "10.0.10.21"), host("Two\nlines\tand a tab", "10.0.10.22"),
                host("\u202Eright to left\u202C end", "10.0.10.31"), host("מקרן ימני", "10.0.10.32"),
                host("A name so long that no column in any window will ever be able to show all of it "
                     "without cutting it off somewhere",
                     "a-host-name-that-is-as-long-as-they-come.rack-seven.venue.example.org"),
                host("", ""), host("Nothing typed", "")})});
    openPage(stage);
    Stage::pass(2 * probe);
    return stage.picture();
}

QPixmap sheet(Stage& stage, const std::function<void(PingCommands&)>& open,
              const std::function<void(QDialog&)>& use = {}) {
    PingCommands commands(stage.model(), &stage.window());
    return stage.sheet([&](NetworkCommands&) { open(commands); }, use);
}

QPixmap hostsSheet(Stage& stage, const QString& text) {
    start(stage, {stageGroup()});
    openPage(stage);
    return sheet(
        stage, [](PingCommands& commands) { commands.addHosts(); },
        [&](QDialog& dialog) { dialog.findChild<QPlainTextEdit*>()->setPlainText(text); });
}

QPixmap editHost(Stage& stage) {
    start(stage, {stageGroup()});
    openPage(stage);
    const Uuid id = stage.model().library().pingGroups.front().targets[2].id;
    return sheet(stage, [&](PingCommands& commands) { commands.editHost(id); });
}

QPixmap newGroup(Stage& stage) {
    start(stage, {});
    openPage(stage);
    return sheet(stage, [](PingCommands& commands) { commands.newGroup(); });
}

void withLiveSubnet(simulated::State& state) {
    for (auto& [name, device] : state.devices) {
        if (name == "en5") device.lease = simulated::Lease{"10.8.1.57", "255.255.252.0", "10.8.0.1"};
    }
    for (int i = 3; i < 900; i += 67) {
        state.answering[IPv4::format(0x0a080000U + static_cast<std::uint32_t>(i))] = 0.2 + i * 0.004;
    }
}

/// What is sent stays behind a firewall.
class WalledSockets : public EchoSockets {
    class Socket : public EchoSocket {
        std::optional<std::uint16_t> identifier() const override { return {}; }
        Sent send(std::uint32_t, std::span<const std::uint8_t>) override { return Sent::no; }
        std::size_t receive(std::span<std::uint8_t>) override {
            std::this_thread::sleep_for(receiveWait);
            return 0;
        }
    };
    std::unique_ptr<EchoSocket> open(const std::string&) const override { return std::make_unique<Socket>(); }
};

class NoSockets : public EchoSockets {
  public:
    std::unique_ptr<EchoSocket> open(const std::string&) const override { return nullptr; }
};

QPixmap sweep(Stage& stage, const std::function<void(QDialog&)>& use) {
    stage.network(withLiveSubnet);
    start(stage, {group("Rack", {host("Switch", "10.8.0.70"), host("", "10.8.0.137")})});
    openPage(stage);
    return sheet(
        stage, [](PingCommands& commands) { commands.sweep(); },
        [&](QDialog& dialog) {
            auto* services = dialog.findChild<QComboBox*>(u"sweepServices"_s);
            services->setCurrentIndex(services->findText(u"Ethernet"_s, Qt::MatchStartsWith));
            emit services->activated(services->currentIndex());
            use(dialog);
        });
}

void begin(QDialog& dialog, int milliseconds) {
    dialog.findChild<QPushButton*>(u"start"_s)->click();
    Stage::pass(milliseconds);
}

QPixmap global(Stage& stage, bool gone, bool editing) {
    withAnswers(stage);
    PresetLibrary library = exampleLibrary();
    library.pingGroups = {stageGroup()};
    library.globals.front().pingGroup = gone ? Uuid::generate() : library.pingGroups.front().id;
    stage.libraryFile(library.encoded());
    stage.start(usual);
    stage.model().select(SidebarItem::global(library.globals.front().id));
    stage.settle();
    if (!editing) return stage.picture();
    return stage.sheet([&](NetworkCommands& commands) { commands.editGlobal(library.globals.front().id); });
}

} // namespace

std::vector<Screen> pingScreens() {
    return {
        {"ping", [](Stage& stage) { return page(stage, wholeHistory); }},
        {"ping-small", [](Stage& stage) { return page(stage, 8 * probe, small); }},
        {"ping-docked", [](Stage& stage) { return docked(stage); }},
        {"ping-docked-small", [](Stage& stage) { return docked(stage, small); }},
        {"ping-paused", paused},
        {"ping-waiting", waiting},
        {"ping-copied", copied},
        {"ping-200-hosts", [](Stage& stage) { return many(stage, false); }},
        {"ping-200-hosts-docked", [](Stage& stage) { return many(stage, true); }},
        {"ping-names", hostile},
        {"ping-no-group",
         [](Stage& stage) {
             start(stage, {});
             openPage(stage);
             return stage.picture();
         }},
        {"ping-no-group-docked",
         [](Stage& stage) {
             start(stage, {}, small);
             openDocked(stage);
             return stage.picture();
         }},
        {"ping-no-hosts",
         [](Stage& stage) {
             start(stage, {group("Lights", {})});
             openPage(stage);
             return stage.picture();
         }},
        {"ping-new-group", newGroup},
        {"ping-add-hosts",
         [](Stage& stage) {
             return hostsSheet(stage, u"10.0.10.41 Camera 1\nCamera 2, 10.0.10.42\nplayback-3.local\n"_s);
         }},
        {"ping-add-hosts-wrong",
         [](Stage& stage) {
             return hostsSheet(stage, u"10.0.10.41 Camera 1\n10.0.10.21 Media server A\n-f 10\n"_s);
         }},
        {"ping-edit-host", editHost},
        {"ping-sweep", [](Stage& stage) { return sweep(stage, [](QDialog&) {}); }},
        {"ping-sweep-running", [](Stage& stage) { return sweep(stage, [](QDialog& d) { begin(d, 1100); }); }},
        {"ping-sweep-done", [](Stage& stage) { return sweep(stage, [](QDialog& d) { begin(d, 4200); }); }},
        {"ping-sweep-too-large",
         [](Stage& stage) {
             return sweep(stage, [&](QDialog&) {
                 stage.network([](simulated::State& state) {
                     state.devices["en5"].lease = simulated::Lease{"10.8.1.57", "255.0.0.0", "10.8.0.1"};
                 });
                 stage.settle();
             });
         }},
        {"ping-sweep-sent-nothing",
         [](Stage& stage) {
             stage.prepareHost([](Host& host) { host.echoSockets = std::make_unique<WalledSockets>(); });
             return sweep(stage, [](QDialog& d) { begin(d, 4200); });
         }},
        {"ping-sweep-refused",
         [](Stage& stage) {
             stage.prepareHost([](Host& host) { host.echoSockets = std::make_unique<NoSockets>(); });
             return sweep(stage, [](QDialog& d) { begin(d, 600); });
         }},
        {"ping-global-page", [](Stage& stage) { return global(stage, false, false); }},
        {"ping-global-page-gone", [](Stage& stage) { return global(stage, true, false); }},
        {"ping-global-editor", [](Stage& stage) { return global(stage, false, true); }},
        {"ping-global-editor-gone", [](Stage& stage) { return global(stage, true, true); }},
    };
}

} // namespace corvane::gallery
