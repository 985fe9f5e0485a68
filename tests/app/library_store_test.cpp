// The library's file: whole, synced, told when it can't be written, and never lost.
#include "app/model/library_store.h"
#include "tests/app/support/model_home.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include <csignal>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace corvane;
using namespace corvane::testing;

namespace {

std::shared_ptr<const PresetLibrary> libraryOf(int count, std::size_t nameLength = 4) {
    auto library = std::make_shared<PresetLibrary>();
    for (int n = 0; n < count; ++n)
        library->presets.push_back(dhcpPreset(std::string(nameLength, 'n') + std::to_string(n), "Wi-Fi"));
    return library;
}

std::size_t storedPresets(const QString& file) {
    const auto decoded = PresetLibrary::decode(readFile(file).toStdString());
    return decoded.library ? decoded.library->presets.size() : std::size_t(-1);
}

} // namespace

class LibraryStoreTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> dir_;
    QString file_;
    QDateTime now_;
    std::unique_ptr<LibraryStore> store_;

    LibraryStore& open() {
        store_ = std::make_unique<LibraryStore>(file_, [this] { return now_; });
        store_->load();
        return *store_;
    }
    QStringList files() const {
        return QDir(dir_->path()).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
    }

  private slots:
    void initTestCase() {
        // So that a small file system can be mounted that nobody else sees and that goes with this process.
        if (geteuid() == 0 && unshare(CLONE_NEWNS) == 0)
            mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
    }
    void init() {
        now_ = QDateTime(QDate(2026, 11, 21), QTime(16, 5, 9));
        dir_ = std::make_unique<QTemporaryDir>();
        file_ = dir_->filePath("presets.json");
    }
    void cleanup() { store_.reset(); }

    void acknowledgesTheNewest() {
        // Nothing is written before the file was read.
        writeFile(file_, "[]");
        store_ = std::make_unique<LibraryStore>(file_, [this] { return now_; });
        store_->save(libraryOf(1));
        store_->flush();
        QCOMPARE(readFile(file_), QByteArray("[]"));

        LibraryStore& store = open();
        QVERIFY(store.loadProblem().isEmpty());
        QSignalSpy saved(&store, &LibraryStore::saved);
        quint64 last = 0;
        for (int count = 1; count <= 200; ++count) last = store.save(libraryOf(count));
        QTRY_VERIFY(!saved.isEmpty() && saved.last().first().toULongLong() == last);
        QVERIFY2(saved.size() < 100, "states that wait for the writer become one");
        QCOMPARE(storedPresets(file_), std::size_t(200));
        // An early file's bare list has become an object.
        QVERIFY(readFile(file_).startsWith('{'));
        // A state given just before the end is on the disk after it.
        store.save(libraryOf(201));
        store_.reset();
        QCOMPARE(storedPresets(file_), std::size_t(201));
    }

    void keepsTenDays() {
        const QStringList foreign{"presets 2026-01-01 mine.json", "presets 2026-13-41.json",
                                  "presets.json.backup", "Presets 2026-01-02.json",
                                  "presets 2026-01-03.json.txt"};
        for (const QString& name : foreign) writeFile(dir_->filePath(name), "mine");
        for (int day = 1; day <= 12; ++day)
            writeFile(
                dir_->filePath(QStringLiteral("presets 2026-10-%1.json").arg(day, 2, 10, QLatin1Char('0'))),
                "old");
        writeFile(file_, QByteArray::fromStdString(libraryOf(3)->encoded()));
        LibraryStore& store = open();
        for (int count = 4; count <= 6; ++count) {
            store.save(libraryOf(count));
            store.flush();
        }
        // The day's copy is what stood there before its first change.
        QCOMPARE(storedPresets(dir_->filePath("presets 2026-11-21.json")), std::size_t(3));
        now_ = now_.addDays(1);
        store.save(libraryOf(7));
        store.flush();
        QCOMPARE(storedPresets(dir_->filePath("presets 2026-11-22.json")), std::size_t(6));
        QStringList dated = files().filter(QRegularExpression("^presets 2026-1[01]-\\d\\d\\.json$"));
        QCOMPARE(dated.size(), 10);
        QCOMPARE(dated.first(), QString("presets 2026-10-05.json"));
        for (const QString& name : foreign) QCOMPARE(readFile(dir_->filePath(name)), QByteArray("mine"));
    }

    void unreadableIsKept_data() {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray good = QByteArray::fromStdString(libraryOf(3)->encoded());
        QTest::newRow("cut") << good.left(good.size() / 2);
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("not UTF-8") << QByteArray("{\"presets\": [\"\xff\xfe\"]}");
        QTest::newRow("nested a thousand deep") << QByteArray(1000, '[') + QByteArray(1000, ']');
        QTest::newRow("a newer version's mode") << QByteArray(good).replace("\"dhcp\"", "\"bonded\"");
    }
    void unreadableIsKept() {
        QFETCH(QByteArray, bytes);
        writeFile(file_, bytes);
        {
            LibraryStore& store = open();
            QVERIFY(store.loadProblem().startsWith("The preset library couldn't be read ("));
            store.flush();
        }
        store_.reset();
        QCOMPARE(readFile(file_), bytes);
        LibraryStore& store = open();
        // A second one within the same second gets a name of its own.
        writeFile(dir_->filePath("presets unreadable 2026-11-21 16.05.09.json"), "earlier");
        store.save(libraryOf(1));
        store.flush();
        QCOMPARE(readFile(dir_->filePath("presets unreadable 2026-11-21 16.05.09 2.json")), bytes);
        QVERIFY(
            store.loadProblem().contains("it is kept as “presets unreadable 2026-11-21 16.05.09 2.json”."));
        QCOMPARE(storedPresets(file_), std::size_t(1));
        store.save(libraryOf(2));
        store.flush();
        QCOMPARE(files().filter("unreadable").size(), 2);
    }

    void somethingElseInItsPlaceIsMovedAside() {
        QDir(dir_->path()).mkpath("presets.json/inside");
        LibraryStore& store = open();
        QVERIFY(store.loadProblem().contains("It isn't a regular file"));
        store.save(libraryOf(1));
        store.flush();
        QVERIFY(QFileInfo(dir_->filePath("presets unreadable 2026-11-21 16.05.09.json/inside")).isDir());
        QCOMPARE(storedPresets(file_), std::size_t(1));
    }

    void readOnlyFolder() {
        writeFile(file_, "not a library");
        QVERIFY(chmod(QFile::encodeName(dir_->path()).constData(), 0555) == 0);
        // Root writes everywhere.
        if (geteuid() == 0) QVERIFY(seteuid(65534) == 0);
        LibraryStore& store = open();
        QSignalSpy failed(&store, &LibraryStore::failed);
        store.save(libraryOf(1));
        QTRY_COMPARE(failed.size(), 1);
        if (getuid() == 0) QVERIFY(seteuid(0) == 0);
        // What couldn't be copied first wasn't written over.
        QCOMPARE(readFile(file_), QByteArray("not a library"));
        QCOMPARE(store.saveProblem(), failed.first().first().toString());
        QVERIFY2(store.saveProblem().startsWith(
                     "Couldn't save the preset library: the unreadable file couldn't be "
                     "copied first: "),
                 qPrintable(store.saveProblem()));
        QVERIFY(chmod(QFile::encodeName(dir_->path()).constData(), 0755) == 0);
        store.save(libraryOf(2));
        QTRY_VERIFY(store.saveProblem().isEmpty());
        QCOMPARE(storedPresets(file_), std::size_t(2));
    }

    void diskFull() {
        const bool mounted =
            mount("none", QFile::encodeName(dir_->path()).constData(), "tmpfs", 0, "size=256k") == 0;
        rlimit before{};
        getrlimit(RLIMIT_FSIZE, &before);
        const auto limit = [&before](bool full) {
            rlimit now = before;
            if (full) now.rlim_cur = 100'000;
            setrlimit(RLIMIT_FSIZE, &now);
        };
        if (!mounted) {
            qWarning("No small file system could be mounted; a limit on file sizes stands in for it.");
            std::signal(SIGXFSZ, SIG_IGN);
        }
        LibraryStore& store = open();
        store.save(libraryOf(10));
        store.flush();
        QCOMPARE(store.saveProblem(), QString());
        const QByteArray stored = readFile(file_);
        if (!mounted) limit(true);
        QSignalSpy failed(&store, &LibraryStore::failed);
        store.save(libraryOf(200, 2000));
        QTRY_COMPARE(failed.size(), 1);
        QVERIFY2(store.saveProblem().contains(mounted ? "No space left on device" : "File too large"),
                 qPrintable(store.saveProblem()));
        QCOMPARE(readFile(file_), stored);
        QVERIFY2(files().filter("presets.json.").isEmpty(), "no half-written file is left");
        if (!mounted) limit(false);
        // Tried again with the next change, and told when it went well.
        store.save(libraryOf(11));
        QTRY_VERIFY(store.saveProblem().isEmpty());
        QCOMPARE(storedPresets(file_), std::size_t(11));
        store_.reset();
        if (mounted) umount(QFile::encodeName(dir_->path()).constData());
    }

    void flushTriesOnceMore() {
        const QString folder = dir_->filePath("gone");
        writeFile(folder, "a file where the folder should be");
        file_ = folder + "/presets.json";
        LibraryStore& store = open();
        store.save(libraryOf(1));
        QTRY_VERIFY(!store.saveProblem().isEmpty());
        QFile::remove(folder);
        QDir().mkpath(folder);
        store.flush();
        QCOMPARE(store.saveProblem(), QString());
        QCOMPARE(storedPresets(file_), std::size_t(1));
    }
};

QTEST_GUILESS_MAIN(LibraryStoreTest)
#include "library_store_test.moc"
