// Every edit of the library is one step back and forth and on the disk each time; export and import.
#include "tests/app/support/model_home.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>

using namespace corvane;
using namespace corvane::testing;

namespace {

PresetLibrary stored(const ModelHome& home) {
    return PresetLibrary::decode(readFile(home.libraryFile()).toStdString())
        .library.value_or(PresetLibrary());
}

} // namespace

class LibraryEditTest : public QObject {
    Q_OBJECT

  private slots:
    void everyEditIsOneStep() {
        ModelHome home;
        // What this version doesn't know survives every edit.
        writeFile(home.libraryFile(),
                  R"({"presets": [], "consoleDevices": [{"id": "p", "n": 1.10}], "later": [1e2]})");
        AppModel& model = home.start();
        const auto a = manualPreset("A", "Wi-Fi", "10.0.0.5"), b = dhcpPreset("B", "Wi-Fi"),
                   c = dhcpPreset("C", "Wi-Fi");
        const auto other = dhcpPreset("Other", "Ethernet");
        auto show = globalPreset("Show", {a.id});
        auto tour = globalPreset("Tour");
        auto renamed = b;
        renamed.name = "B “2”\n$(x)";
        auto wider = show;
        wider.members.push_back(other.id);
        const std::vector<std::pair<QString, std::function<void()>>> edits{
            {"Add Preset “A”", [&] { model.addPreset(a); }},
            {"Add Preset “B”", [&] { model.addPreset(b); }},
            {"Add Preset “C”", [&] { model.addPreset(c); }},
            {"Add Preset “Other”", [&] { model.addPreset(other); }},
            {"Edit Preset “B “2” $(x)”", [&] { model.updatePreset(renamed); }},
            {"Move Preset “C”", [&] { model.movePreset(c.id, a.id); }},
            {"Move Preset “C”", [&] { model.movePreset(c.id, std::nullopt); }},
            {"Duplicate Preset “A”", [&] { model.duplicatePreset(a.id); }},
            {"Delete Preset “C”", [&] { model.deletePreset(c.id); }},
            {"Add Global Preset “Show”", [&] { model.addGlobal(show); }},
            {"Add Global Preset “Tour”", [&] { model.addGlobal(tour); }},
            {"Edit Global Preset “Show”", [&] { model.updateGlobal(wider); }},
            {"Move Global Preset “Tour”", [&] { model.moveGlobal(tour.id, show.id); }},
            {"Duplicate Global Preset “Tour”", [&] { model.duplicateGlobal(tour.id); }},
            {"Delete Global Preset “Tour”", [&] { model.deleteGlobal(tour.id); }},
        };
        std::vector<PresetLibrary> states{model.library()};
        for (const auto& [text, edit] : edits) {
            edit();
            QCOMPARE(model.undoStack().undoText(), text);
            QVERIFY(model.library() != states.back());
            states.push_back(model.library());
            model.flush();
            QCOMPARE(stored(home), model.library());
        }
        QCOMPARE(model.undoStack().count(), int(edits.size()));
        QStringList names;
        for (const auto& preset : model.library().presets) names.append(QString::fromStdString(preset.name));
        QCOMPARE(names, (QStringList{"A", "A copy", "B “2”\n$(x)", "Other"}));
        for (auto state = states.rbegin() + 1; state != states.rend(); ++state) {
            model.undoStack().undo();
            QCOMPARE(model.library(), *state);
            model.flush();
            QCOMPARE(stored(home), *state);
        }
        for (std::size_t n = 1; n < states.size(); ++n) {
            model.undoStack().redo();
            QCOMPARE(model.library(), states[n]);
        }
        const QByteArray text = readFile(home.libraryFile());
        QVERIFY(text.contains("1.10") && text.contains("1e2"));
    }

    void whatChangesNothingIsNoStep() {
        ModelHome home;
        AppModel& model = home.start();
        const auto a = dhcpPreset("A", "Wi-Fi");
        model.addPreset(a);
        QSignalSpy changed(&model, &AppModel::libraryChanged);
        model.updatePreset(a);
        model.movePreset(a.id, std::nullopt);
        model.deletePreset(Uuid::generate());
        model.updatePreset(dhcpPreset("unknown", "Wi-Fi"));
        QVERIFY(model.duplicateGlobal(Uuid::generate()).isNil());
        QCOMPARE(changed.size(), 0);
        QCOMPARE(model.undoStack().count(), 1);
        // An id is never taken twice.
        model.addPreset(a);
        QCOMPARE(model.library().presets.size(), std::size_t(2));
        QVERIFY(model.library().presets[0].id != model.library().presets[1].id);
        for (int n = 0; n < 150; ++n) model.duplicatePreset(a.id);
        QCOMPARE(model.undoStack().count(), 100);
    }

    void aSelectedGlobalThatGoesIsNotSelected() {
        ModelHome home;
        AppModel& model = home.start();
        const auto show = globalPreset("Show");
        model.addGlobal(show);
        model.select(SidebarItem::global(show.id));
        model.deleteGlobal(show.id);
        QCOMPARE(model.selection(), model.defaultService());
    }

    void exportsAndImports() {
        ModelHome home;
        const QString file = home.path("Wendrel Presets.json");
        {
            AppModel& model = home.start();
            const auto a = dhcpPreset("A", "Wi-Fi");
            model.addPreset(a);
            model.exportPresets(file);
            QTRY_COMPARE(home.banners, QStringList{"Exported 1 preset"});
            model.addPreset(dhcpPreset("B", "Ethernet"));
            model.addGlobal(globalPreset("Show", {a.id}));
            model.exportPresets(file);
            QTRY_COMPARE(home.banners.last(), QString("Exported 2 presets"));
            QCOMPARE(readFile(file).toStdString(), model.encodedLibrary());
            model.exportPresets(home.path("no/such/folder.json"));
            QTRY_VERIFY(home.banners.last().startsWith("! Couldn't export the presets: "));
        }
        ModelHome elsewhere;
        AppModel& model = elsewhere.start();
        model.importPresets(file);
        QTRY_COMPARE(elsewhere.banners.size(), 1);
        QCOMPARE(elsewhere.banners.last(), QString("Imported 2 presets and 1 global"));
        QCOMPARE(model.undoStack().undoText(), QString("Import Presets"));
        model.importPresets(file);
        QTRY_COMPARE(elsewhere.banners.last(), QString("Imported 2 presets and 1 global (nothing new)"));
        QCOMPARE(model.undoStack().count(), 1);
        model.undoStack().undo();
        QVERIFY(model.library().presets.empty());
    }

    void badFilesAreSentences_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("cut") << QByteArray("{\"presets\": [");
        QTest::newRow("another document") << QByteArray("{\"name\": 3}");
        QTest::newRow("binary") << QByteArray("\0\xff\x7f", 3);
        QTest::newRow("deep") << QByteArray(100'000, '[');
        QTest::newRow("missing") << QByteArray();
    }
    void badFilesAreSentences() {
        QFETCH(QByteArray, bytes);
        ModelHome home;
        AppModel& model = home.start();
        model.addPreset(dhcpPreset("Mine", "Wi-Fi"));
        const QString file = home.path("bad.json");
        if (!bytes.isNull()) writeFile(file, bytes);
        model.importPresets(file);
        QTRY_COMPARE(home.banners.size(), 1);
        QVERIFY2(home.banners.last().startsWith("! Couldn't import the presets: ") &&
                     home.banners.last().endsWith('.'),
                 qPrintable(home.banners.last()));
        QCOMPARE(model.library().presets.size(), std::size_t(1));
    }
};

QTEST_GUILESS_MAIN(LibraryEditTest)
#include "library_edit_test.moc"
