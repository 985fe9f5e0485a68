#include "platform/simulated/simulated_host.h"

#include "core/netconfig/network_setup.h"
#include "hosttools/simulated/administrator.h"
#include "platform/shared/ini_defaults.h"
#include "scratch.h"

#include <gtest/gtest.h>

#include <future>

namespace corvane {

using tests::Scratch;
using tests::Stopwatch;

class SimulatedHost : public testing::Test {
  protected:
    SimulatedHost() {
        edit([](simulated::State& state) { state.delayScale = 0; });
        host = makeSimulatedHost({.toolRoot = SIMULATED_TOOL_ROOT,
                                  .stateFile = QString::fromStdString(stateFile),
                                  .applicationSupport = QString::fromStdString(scratch.path()),
                                  .settingsFile = {}});
    }
    void edit(const std::function<void(simulated::State&)>& change) {
        ASSERT_EQ(simulated::StateFile(stateFile).change(change), std::nullopt);
    }
    Scratch scratch;
    const std::string stateFile = scratch.path("made/network.json");
    std::unique_ptr<Host> host;
};

TEST_F(SimulatedHost, ListsAndChangesItsServicesWithTheRightPasswordOnly) {
    const auto listed =
        NetworkSetup::parseServices(host->shell->run(NetworkSetup::tool, {"-listallnetworkservices"}));
    EXPECT_EQ(listed.size(), 6U);
    const PrivilegedRequest request{
        .commands = {{NetworkSetup::tool, "-setmanual", "Ethernet", "10.9.8.7", "255.255.255.0", "10.9.8.1"}},
        .purpose = {},
        .script = {}};
    const auto address = [&] {
        return NetworkSetup::parseInfo(host->shell->run(NetworkSetup::tool, {"-getinfo", "Ethernet"})).ip;
    };
    const std::string user = host->userName.toStdString();

    const Stopwatch watch;
    for (const auto& [name, password] :
         {std::pair{user, "wrong"}, std::pair{std::string("nobody"), "rackside"}})
        EXPECT_EQ(host->privileged->run(request, Credentials{name, Secret(password)}).kind(),
                  ApplyResult::Kind::passwordRejected);
    EXPECT_GE(watch.ms(), 600) << "a refusal takes its moment";
    EXPECT_EQ(host->privileged->run(request, std::nullopt).kind(), ApplyResult::Kind::failed);
    EXPECT_NE(address(), "10.9.8.7");
    EXPECT_EQ(host->privileged->run(request, Credentials{user, Secret("rackside")}), ApplyResult::success());
    EXPECT_EQ(address(), "10.9.8.7");
}

TEST_F(SimulatedHost, AsksTheOwnerThatTheStateNames) {
    const auto ask = [&] {
        std::promise<bool> answer;
        host->ownerCheck->evaluate("apply", "Use Mac Password", 30,
                                   [&](bool proved) { answer.set_value(proved); });
        return answer.get_future().get();
    };
    EXPECT_TRUE(host->ownerCheck->available());
    EXPECT_TRUE(ask());
    edit([](simulated::State& state) { state.owner = "absent"; });
    EXPECT_TRUE(host->ownerCheck->available());
    EXPECT_FALSE(ask());
    edit([](simulated::State& state) { state.owner = "none"; });
    EXPECT_FALSE(host->ownerCheck->available());

    edit([](simulated::State& state) { state.owner = "present"; });
    std::promise<bool> late;
    host->ownerCheck->evaluate("apply", "", 30, [&](bool proved) { late.set_value(proved); });
    host.reset();
    EXPECT_FALSE(late.get_future().get()) << "an open question is answered when the host goes";
}

TEST_F(SimulatedHost, KeepsOnePasswordUntilItEnds) {
    Keychain& keychain = *host->keychain;
    EXPECT_FALSE(keychain.exists(Keychain::currentService));
    EXPECT_EQ(keychain.save({"operator", Secret("one")}), std::nullopt);
    EXPECT_EQ(keychain.save({"admin", Secret("two")}), std::nullopt);
    const auto kept = keychain.load(Keychain::currentService);
    ASSERT_TRUE(kept.has_value());
    EXPECT_EQ(kept->user, "admin");
    EXPECT_EQ(kept->password.reveal(), "two");
    keychain.remove(Keychain::currentService);
    EXPECT_FALSE(keychain.load(Keychain::currentService).has_value());
}

TEST(IniDefaults, KeepsEveryKindOfValueAcrossRestarts) {
    const Scratch scratch;
    const QString file = QString::fromStdString(scratch.path("new folder/app.ini"));
    const QStringList names{"Wi-Fi",        "a, \"b\"; c=\\d", "@Point", " blanks ",
                            "100% ü 🎛", "two\nlines",      ""};
    const QByteArray bytes("\0\xff\x01", 3);
    {
        IniDefaults defaults(file);
        EXPECT_FALSE(defaults.value("hiddenServices").isValid());
        defaults.setValue("hiddenServices", names);
        defaults.setValue("requireTouchID", true);
        defaults.setValue("windowGeometry", bytes);
        defaults.setValue("count", 42);
        defaults.setValue("winrelay.macId", "id");
        defaults.setValue("gone", 1);
        defaults.remove("gone");
    }
    IniDefaults again(file);
    EXPECT_EQ(again.value("hiddenServices").toStringList(), names);
    EXPECT_TRUE(again.value("requireTouchID").toBool());
    EXPECT_EQ(again.value("windowGeometry").toByteArray(), bytes);
    EXPECT_EQ(again.value("count").toInt(), 42);
    EXPECT_FALSE(again.value("gone").isValid());
    again.setValue("one", QStringList{"single"});
    EXPECT_EQ(again.value("one").toStringList(), QStringList{"single"});
}

TEST(IniDefaults, ReadsAnOlderDomainBesideItsOwn) {
    const Scratch scratch;
    {
        IniDefaults older(QString::fromStdString(scratch.path("net.brannoch.Corvane.ini")));
        older.setValue("requireTouchID", true);
        older.setValue("winrelay.relays", QByteArray("[]"));
    }
    const IniDefaults current(QString::fromStdString(scratch.path("app.halvorant.WendrelX.ini")));
    const QVariantMap domain = current.domain("net.brannoch.Corvane");
    EXPECT_EQ(domain.size(), 2);
    EXPECT_TRUE(domain.value("requireTouchID").toBool());
    EXPECT_TRUE(current.domain("net.unknown").isEmpty());
    EXPECT_TRUE(current.domain("../outside").isEmpty());
}

} // namespace corvane
