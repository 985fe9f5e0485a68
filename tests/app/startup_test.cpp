// What happens when the model starts: older folder and settings, library, settings, password, first reading.
#include "app/model/settings_migration.h"
#include "tests/app/support/model_home.h"

#include "platform/shared/ini_defaults.h"

#include <QDir>
#include <QTest>

using namespace corvane;
using namespace corvane::testing;

namespace {

class LoggedDefaults : public UserDefaults {
  public:
    QVariantMap older, own;
    mutable QStringList log;
    QVariant value(const QString& key) const override {
        log.append("get " + key);
        return own.value(key);
    }
    void setValue(const QString& key, const QVariant& value) override {
        log.append("set " + key);
        own.insert(key, value);
    }
    void remove(const QString& key) override { own.remove(key); }
    QVariantMap domain(const QString& name) const override {
        log.append("domain " + name);
        return older;
    }
};

} // namespace

class StartupTest : public QObject {
    Q_OBJECT

  private slots:
    void startsInOrder() {
        ModelHome home;
        PresetLibrary library;
        library.presets = {dhcpPreset("Office", "Wi-Fi")};
        writeFile(home.path("Corvane/presets.json"), QByteArray::fromStdString(library.encoded()));
        auto defaults = std::make_unique<LoggedDefaults>();
        auto& log = *defaults;
        log.older = {{"hiddenServices", QStringList{"iPhone USB"}}, {"requireTouchID", true}};
        home.host->defaults = std::move(defaults);
        auto keychain = std::make_unique<FakeKeychain>();
        keychain->items[Keychain::olderService] = {"me", Secret(std::string_view("x"))};
        home.host->keychain = std::move(keychain);

        AppModel& model = home.begin();
        QCOMPARE(model.library(), library);
        QVERIFY(!QFileInfo::exists(home.path("Corvane")));
        QCOMPARE(model.storePath(), home.libraryFile());
        QVERIFY(model.isHidden("iPhone USB"));
        QVERIFY(model.requireTouchID());
        QVERIFY(model.services().empty() && !model.lastRefresh().isValid());
        const QStringList reads =
            log.log.filter(QRegularExpression("get (hidden|requireT)|domain|set migrated"));
        QCOMPARE(reads.mid(reads.size() - 3),
                 (QStringList{"set migratedFromCorvane", "get hiddenServices", "get requireTouchID"}));
        QVERIFY(reads.indexOf("domain net.brannoch.Corvane") < reads.indexOf("set migratedFromCorvane"));
        QTRY_VERIFY(model.hasSavedPassword());
        QTRY_COMPARE_WITH_TIMEOUT(model.services().size(), std::size_t(6), 20000);
        QCOMPARE(model.selection(), model.defaultService());
        QCOMPARE(model.internetDevice(), std::optional<std::string>("en0"));
        QCOMPARE(model.visibleServices().size(), std::size_t(5));
    }

    void copiesOlderSettingsOnce() {
        LoggedDefaults defaults;
        defaults.older = {
            {"hyperdeck.recent", QStringList{"10.0.0.9"}}, {"winrelay.macId", "older"}, {"other", 1}};
        defaults.own = {{"winrelay.macId", "newer"}};
        SettingsMigration::copyOlderDefaults(defaults);
        QCOMPARE(defaults.own, (QVariantMap{{"hyperdeck.recent", QStringList{"10.0.0.9"}},
                                            {"winrelay.macId", "newer"},
                                            {"migratedFromCorvane", true}}));
        defaults.own.remove("hyperdeck.recent");
        SettingsMigration::copyOlderDefaults(defaults);
        QVERIFY(!defaults.own.contains("hyperdeck.recent"));
    }

    void settlesTheFolder() {
        const QTemporaryDir dir;
        writeFile(dir.filePath("support/Corvane/presets.json"), "older");
        writeFile(dir.filePath("support/Wendrel/presets.json"), "newer");
        // The newer folder wins and the older one stays.
        QCOMPARE(SettingsMigration::settleFolder(dir.filePath("support")).path,
                 dir.filePath("support/Wendrel"));
        QCOMPARE(readFile(dir.filePath("support/Wendrel/presets.json")), QByteArray("newer"));
        QCOMPARE(readFile(dir.filePath("support/Corvane/presets.json")), QByteArray("older"));
        // Made with all that leads to it.
        QVERIFY(SettingsMigration::settleFolder(dir.filePath("a/b/c")).problem.isEmpty());
        QVERIFY(QFileInfo(dir.filePath("a/b/c/Wendrel")).isDir());
        // A file in the way is a sentence, and the program starts all the same.
        writeFile(dir.filePath("blocked"), "");
        QVERIFY(
            SettingsMigration::settleFolder(dir.filePath("blocked")).problem.endsWith("couldn't be made."));
        ModelHome home;
        home.host->applicationSupport = dir.filePath("blocked");
        AppModel& model = home.start();
        QVERIFY(model.loadProblem().contains("couldn't be made."));
        model.addPreset(dhcpPreset("Kept in memory", "Wi-Fi"));
        model.flush();
        QVERIFY(model.saveProblem().startsWith("Couldn't save the preset library: "));
        QCOMPARE(model.library().presets.size(), std::size_t(1));
    }

    void keepsTheSidebarsState() {
        ModelHome home;
        {
            AppModel& model = home.start();
            QVERIFY(model.sortsByState() && model.isExpanded("tools"));
            model.setSortsByState(false);
            model.setExpanded("tools", false);
            model.setHidden("Ethernet", true);
            home.stop();
        }
        AppModel& model = home.start();
        QVERIFY(!model.sortsByState() && !model.isExpanded("tools") && model.isHidden("Ethernet"));
        const auto names = [&model] {
            QStringList list;
            for (const auto& info : model.visibleServices()) list.append(QString::fromStdString(info.name));
            return list;
        };
        QCOMPARE(names(),
                 (QStringList{"Wi-Fi", "USB 10/100 LAN", "Thunderbolt Bridge", "iPhone USB", "Stage LAN"}));
        model.setSortsByState(true);
        QCOMPARE(names(),
                 (QStringList{"Wi-Fi", "Stage LAN", "Thunderbolt Bridge", "USB 10/100 LAN", "iPhone USB"}));
    }
};

QTEST_GUILESS_MAIN(StartupTest)
#include "startup_test.moc"
