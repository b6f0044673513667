#include "TestMain.h"

#include "FakeScanner.h"

#include "core/Desktop.h"
#include "core/Paths.h"
#include "core/Prefs.h"
#include "demo/Demo.h"
#include "state/AppState.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <atomic>

namespace {

ScanResultPtr makeResult(const QByteArray &root, qint64 lastID, qint64 unreadable = 0)
{
    auto result = std::make_shared<ScanResult>();
    result->root = std::make_shared<DirNode>(root);
    result->lastID = lastID;
    result->unreadableCount = unreadable;
    return result;
}

VolumeInfo volumeAt(const char *path, const char *name, bool root)
{
    VolumeInfo v;
    v.url = path;
    v.name = QString::fromLatin1(name);
    v.total = 1000;
    v.available = 100;
    v.isRoot = root;
    return v;
}

class FakeDesktop : public Desktop
{
public:
    QByteArray answer; // empty: the user cancels
    QByteArray startIn;
    int asked = 0;

    void chooseFolder(const QString &, const QString &, const QByteArray &s, FolderChosen done) override
    {
        ++asked;
        startIn = s;
        done(answer);
    }
    void copyText(const QString &) override {}
    void reveal(const QByteArrayList &) override {}
    void openFullDiskAccessSettings() override {}
};

// The state with a steerable scanner and a volume listing that counts its calls.
// The scanner is declared after the state, so it lets every worker go before the
// state waits for them.
struct Fixture {
    AppState state;
    FakeScanner scanner;
    std::shared_ptr<std::atomic<int>> volumeCalls = std::make_shared<std::atomic<int>>(0);

    explicit Fixture(const QByteArrayList &arguments = {"sorvel-cleaner"})
    {
        state.setArguments(arguments);
        state.setScanFunction(scanner.function());
        // The demo lists its own volume.
        if (state.isDemo())
            return;
        state.setVolumesFunction([calls = volumeCalls] {
            ++*calls;
            return QList<VolumeInfo>{volumeAt("/media/b", "Backup", false), volumeAt("/", "System", true)};
        });
    }

    // Starts a scan of `root` and waits for its run to begin.
    bool start(const QByteArray &root)
    {
        const int runs = scanner.runCount();
        state.scan(root);
        return scanner.waitForRuns(runs + 1);
    }

    // Runs a scan of `root` to its end with a result of its own; returns it.
    ScanResultPtr settle(const QByteArray &root, qint64 lastID = 1)
    {
        QSignalSpy landed(&state, &AppState::resultChanged);
        const int index = scanner.runCount();
        if (!start(root))
            return {};
        const auto result = makeResult(root, lastID);
        scanner.release(index, result);
        return landed.wait() ? result : nullptr;
    }
};

} // namespace

class TestAppState : public QObject
{
    Q_OBJECT

    QTemporaryDir m_prefsDir;
    int m_store = 0;
    QByteArray m_home;

private slots:
    void initTestCase()
    {
        QVERIFY(m_prefsDir.isValid());
        Prefs::registerDefaults();
        m_home = TestMain::home();
    }

    // Every test starts with an empty preference store of its own.
    void init() { Prefs::useFile(m_prefsDir.filePath(QStringLiteral("prefs-%1.ini").arg(++m_store))); }

    void cleanupTestCase() { Prefs::useFile({}); }

    void sectionRemembersItsArea()
    {
        Fixture f;
        QSignalSpy spy(&f.state, &AppState::sectionChanged);
        f.state.setSection(SidebarItem::old);
        f.state.setSection(SidebarItem::cleanup);
        f.state.setSection(SidebarItem::cleanup);
        f.state.setSection(std::nullopt);
        QCOMPARE(spy.count(), 3);
        QCOMPARE(f.state.lastInArea(Area::files), std::optional<SidebarItem>(SidebarItem::old));
        QCOMPARE(f.state.lastInArea(Area::steam), std::optional<SidebarItem>(SidebarItem::cleanup));
        QCOMPARE(f.state.lastInArea(Area::space), std::nullopt);
        // As QML writes them: by text (an unknown one changes nothing), told
        // once per change.
        f.state.setSectionText(QStringLiteral("duplicates"));
        f.state.setSectionText(QStringLiteral("no such item"));
        QCOMPARE(f.state.section(), std::optional<SidebarItem>(SidebarItem::duplicates));
        f.state.setSectionText(QString());
        QCOMPARE(f.state.section(), std::nullopt);
        QSignalSpy focus(&f.state, &AppState::folderFocusChanged);
        f.state.setFolderFocusText(QStringLiteral("/scratch/a"));
        f.state.setFolderFocusText(QStringLiteral("/scratch/a"));
        QCOMPARE(focus.count(), 1);
        QCOMPARE(f.state.folderFocus(), QByteArray("/scratch/a"));
    }

    void launchArguments_data()
    {
        QTest::addColumn<QByteArrayList>("arguments");
        QTest::addColumn<QByteArray>("scanned"); // below the temporary home, or absolute; empty: no scan
        QTest::addColumn<QString>("section");
        const QByteArray app = "sorvel-cleaner";
        QTest::newRow("-scan ~/x") << QByteArrayList{app, "-scan", "~/x"} << QByteArray("~/x") << u"overview"_qs;
        QTest::newRow("-scan last") << QByteArrayList{app, "-section", "old", "-scan"} << QByteArray() << u"old"_qs;
        QTest::newRow("first -scan only")
            << QByteArrayList{app, "-scan", "/a/../b/", "-scan", "/c"} << QByteArray("/b") << u"overview"_qs;
        QTest::newRow("-section unknown")
            << QByteArrayList{app, "-section", "Largest"} << QByteArray() << u"overview"_qs;
        QTest::newRow("both") << QByteArrayList{app, "-section", "duplicates", "-scan", "/scratch/q"}
                              << QByteArray("/scratch/q") << u"duplicates"_qs;
        QTest::newRow("raw bytes") << QByteArrayList{app, "-scan", "/scratch/caf\xe9"} << QByteArray("/scratch/caf\xe9")
                                   << u"overview"_qs;
    }

    void launchArguments()
    {
        QFETCH(QByteArrayList, arguments);
        QFETCH(QByteArray, scanned);
        QFETCH(QString, section);
        Fixture f(arguments);
        // An unknown section is said on standard error, with the known ones.
        if (QByteArray(QTest::currentDataTag()) == "-section unknown")
            QTest::ignoreMessage(QtWarningMsg, "Unknown section \"Largest\" after -section; the sections are "
                                               "overview, largest, old, duplicates, cleanup.");
        f.state.onLaunch();
        QCOMPARE(f.state.sectionText(), section);
        if (scanned.isEmpty()) {
            QVERIFY(!f.state.isScanning());
            QCOMPARE(f.scanner.runCount(), 0);
            return;
        }
        const QByteArray expected = scanned.startsWith('~') ? m_home + scanned.mid(1) : scanned;
        QVERIFY(f.scanner.waitForRuns(1));
        QCOMPARE(f.scanner.run(0)->root, expected);
        QCOMPARE(f.state.scanTarget(), expected);
        QVERIFY(f.state.isScanning());
    }

    void launchRunsOnce()
    {
        {
            // A real launch measures Deep Clean on a worker.
            Fixture measuring;
            QSignalSpy measured(measuring.state.cleanup(), &CleanupModel::measured);
            measuring.state.onLaunch();
            QVERIFY(measuring.state.cleanup()->isMeasuring());
            QVERIFY(measured.wait(10000));
        }
        Fixture f({"sorvel-cleaner", "-scan", "/scratch/x"});
        QSignalSpy volumes(&f.state, &AppState::volumesChanged);
        f.state.onLaunch();
        f.state.onLaunch();
        QVERIFY(f.state.didLaunch());
        QVERIFY(volumes.wait());
        QCOMPARE(f.scanner.runCount(), 1);
        QCOMPARE(f.volumeCalls->load(), 1);
        // The root volume is found wherever it stands in the list.
        QCOMPARE(f.state.rootVolume()->url, QByteArray("/"));
    }

    void scanEndsWithResult()
    {
        Fixture f;
        QSignalSpy result(&f.state, &AppState::resultChanged);
        QSignalSpy revision(&f.state, &AppState::revisionChanged);
        f.state.setLargestCategory(FileCategory::video);
        f.state.setFolderFocus("/scratch/x/y");
        QVERIFY(f.start("/scratch/x/"));
        QCOMPARE(f.state.scanTarget(), QByteArray("/scratch/x"));
        QVERIFY(f.state.isScanning());
        QVERIFY(f.state.scanToken());
        QCOMPARE(f.scanner.run(0)->firstID, 0);

        const auto first = makeResult("/scratch/x", 120);
        f.scanner.release(0, first);
        QVERIFY(result.wait());
        QCOMPARE(f.state.result(), first);
        QCOMPARE(revision.count(), 1);
        QVERIFY(!f.state.isScanning());
        QVERIFY(!f.state.scanToken());
        QCOMPARE(f.state.nextFileID(), 120);
        QCOMPARE(f.state.largestCategory(), std::nullopt);
        QVERIFY(f.state.folderFocus().isEmpty());
        QTRY_COMPARE(f.volumeCalls->load(), 1); // volumes are refreshed after a scan

        // The next scan's ids continue where the last left off.
        QVERIFY(f.start("/scratch/x"));
        QCOMPARE(f.scanner.run(1)->firstID, 120);
    }

    void progressOfTheCurrentScanOnly()
    {
        Fixture f;
        QSignalSpy progress(&f.state, &AppState::progressChanged);
        QVERIFY(f.start("/scratch/a"));
        const auto first = f.scanner.run(0);
        ScanProgress record;
        record.filesScanned = 10;
        record.currentPath = "/scratch/a/b";
        first->progress(record); // as the worker would, from another thread
        QVERIFY(progress.wait());
        QCOMPARE(f.state.progress(), record);

        QVERIFY(f.start("/scratch/b"));
        QCOMPARE(f.state.progress(), ScanProgress{}); // a new scan starts from nothing
        const int before = progress.count();
        ScanProgress late = record;
        late.filesScanned = 99;
        first->progress(late);
        QTest::qWait(50);
        QCOMPARE(progress.count(), before);
        QCOMPARE(f.state.progress(), ScanProgress{});
    }

    // The replaced scan ends before or after the one that replaced it: either
    // way its result never shows.
    void secondScanReplacesFirst_data()
    {
        QTest::addColumn<bool>("firstEndsLast");
        QTest::newRow("first ends right after the second starts") << false;
        QTest::newRow("first ends after the second") << true;
    }

    void secondScanReplacesFirst()
    {
        QFETCH(bool, firstEndsLast);
        Fixture f;
        QSignalSpy result(&f.state, &AppState::resultChanged);
        QSignalSpy scanning(&f.state, &AppState::isScanningChanged);
        QVERIFY(f.start("/scratch/one"));
        QVERIFY(f.start("/scratch/two"));
        QVERIFY(f.scanner.run(0)->token->isCancelled());
        QVERIFY(!f.scanner.run(1)->token->isCancelled());
        QVERIFY(f.state.isScanning());
        QCOMPARE(f.state.scanTarget(), QByteArray("/scratch/two"));

        const auto one = makeResult("/scratch/one", 5);
        const auto two = makeResult("/scratch/two", 9);
        if (!firstEndsLast) {
            f.scanner.release(0, one);
            QTest::qWait(50);
            QCOMPARE(result.count(), 0);
            QVERIFY(f.state.isScanning());
        }
        f.scanner.release(1, two);
        QVERIFY(result.wait());
        if (firstEndsLast) {
            f.scanner.release(0, one);
            QTest::qWait(50);
        }
        QCOMPARE(result.count(), 1);
        QCOMPARE(f.state.result(), two);
        QCOMPARE(f.state.revision(), 1);
        QVERIFY(!f.state.isScanning());
    }

    void cancelKeepsPreviousResult()
    {
        Fixture f;
        const auto old = f.settle("/scratch/old", 3);
        QVERIFY(old);

        QVERIFY(f.start("/scratch/new"));
        f.state.cancelScan();
        QVERIFY(!f.state.isScanning());
        QVERIFY(!f.state.scanToken());
        QVERIFY(f.scanner.run(1)->token->isCancelled());
        // A cancelled walk returns nothing; it must not count as a failure.
        f.scanner.release(1, nullptr);
        QTest::qWait(50);
        QCOMPARE(f.state.result(), old);
        QCOMPARE(f.state.scanTarget(), QByteArray("/scratch/new"));
        QCOMPARE(f.state.revision(), 1);
        QVERIFY(f.state.errorMessage().isNull());
        f.state.cancelScan(); // nothing running: harmless
        QVERIFY(!f.state.isScanning());
    }

    // The wording of a folder below the home shows with the real scanner below.
    void failedScanSaysSo()
    {
        Fixture f;
        const auto kept = f.settle("/scratch/fine");
        QVERIFY(kept);
        QSignalSpy result(&f.state, &AppState::resultChanged);
        QSignalSpy error(&f.state, &AppState::errorMessageChanged);

        QVERIFY(f.start("/nonexistent/x"));
        f.scanner.release(1, nullptr);
        QVERIFY(error.wait());
        QCOMPARE(f.state.errorMessage(), u"Couldn't scan /nonexistent/x: No such file or directory"_qs);
        QCOMPARE(f.state.scanTarget(), QByteArray("/scratch/fine"));
        QVERIFY(!f.state.recents().contains("/nonexistent/x"));
        QCOMPARE(f.state.result(), kept);
        QCOMPARE(result.count(), 0);
        QVERIFY(!f.state.isScanning());
    }

    void recentTargets()
    {
        {
            Fixture f;
            for (int i = 1; i <= 7; ++i) {
                QVERIFY(f.start("/scratch/t" + QByteArray::number(i)));
                f.scanner.release(i - 1, nullptr);
            }
            const QByteArrayList newest = {"/scratch/t7", "/scratch/t6", "/scratch/t5",
                                           "/scratch/t4", "/scratch/t3", "/scratch/t2"};
            QCOMPARE(f.state.recents(), newest);
            QSignalSpy spy(&f.state, &AppState::recentsChanged);
            f.state.addRecent("/scratch/t7");
            QCOMPARE(spy.count(), 0);
            f.state.addRecent("/scratch/t4");
            QCOMPARE(f.state.recents(), (QByteArrayList{"/scratch/t4", "/scratch/t7", "/scratch/t6", "/scratch/t5",
                                                        "/scratch/t3", "/scratch/t2"}));
            // Canonically equivalent spellings are one entry.
            f.state.addRecent("/scratch/e\xcc\x81");
            f.state.addRecent("/scratch/\xc3\xa9");
            QCOMPARE(f.state.recents().first(), QByteArray("/scratch/\xc3\xa9"));
            QCOMPARE(f.state.recents().count("/scratch/e\xcc\x81"), 0);
            f.state.addRecent("/scratch/caf\xe9"); // not UTF-8: stored losslessly
        }
        // Stored and read back by the next state.
        AppState next;
        QCOMPARE(next.recents(), (QByteArrayList{"/scratch/caf\xe9", "/scratch/\xc3\xa9", "/scratch/t4", "/scratch/t7",
                                                 "/scratch/t6", "/scratch/t5"}));
        QCOMPARE(Prefs::list(Prefs::recentTargets).size(), 6);
    }

    void optionsAreFixedAtTheStart()
    {
        Fixture f;
        Prefs::setValue(Prefs::minTrackedSize, 5000);
        Prefs::setList(Prefs::excludedPaths, {u"/scratch/skip"_qs});
        QVERIFY(f.start("/scratch/a"));
        Prefs::setValue(Prefs::minTrackedSize, 7000);
        Prefs::setValue(Prefs::skipHiddenFiles, true);
        QCOMPARE(f.scanner.run(0)->options.minTrackedSize, 5000);
        QCOMPARE(f.scanner.run(0)->options.excludedPaths, QByteArrayList{"/scratch/skip"});
        QVERIFY(!f.scanner.run(0)->options.skipHiddenFiles);
        f.scanner.release(0, makeResult("/scratch/a", 1));
        QTRY_VERIFY(!f.state.isScanning());

        QVERIFY(f.start("/scratch/a"));
        QCOMPARE(f.scanner.run(1)->options.minTrackedSize, 7000);
        QVERIFY(f.scanner.run(1)->options.skipHiddenFiles);
    }

    void chooseFolderAndScan()
    {
        Fixture f;
        f.state.chooseFolderAndScan(); // without a desktop nothing happens
        FakeDesktop desktop;
        f.state.setDesktop(&desktop);
        f.state.chooseFolderAndScan(); // the user cancels
        QCOMPARE(desktop.asked, 1);
        QCOMPARE(desktop.startIn, m_home);
        QVERIFY(!f.state.isScanning());

        desktop.answer = "/scratch/picked";
        f.state.chooseFolderAndScan();
        QVERIFY(f.scanner.waitForRuns(1));
        QCOMPARE(f.scanner.run(0)->root, desktop.answer);
    }

    void demoLaunch()
    {
        Fixture f({"sorvel-cleaner", "-section", "cleanup", "-scan", "/scratch/x", "-demo"});
        QVERIFY(f.state.isDemo());
        QSignalSpy revision(&f.state, &AppState::revisionChanged);
        f.state.onLaunch();
        QCOMPARE(f.state.volumes(), QList<VolumeInfo>{Demo::volume()});
        QVERIFY(f.state.result());
        QCOMPARE(f.state.scanTarget(), f.state.result()->root->name);
        QCOMPARE(revision.count(), 1);
        QCOMPARE(f.state.section(), std::optional<SidebarItem>(SidebarItem::cleanup));
        QCOMPARE(f.state.nextFileID(), f.state.result()->lastID);
        f.state.checkFullDiskAccess();
        QVERIFY(f.state.hasFullDiskAccess());
        // Deep Clean holds the demo figures, nothing ticked, and stays still.
        QVERIFY(f.state.cleanup()->hasMeasured());
        QVERIFY(f.state.cleanup()->selected().isEmpty());
        QCOMPARE(f.state.cleanup()->measurements().size(), Demo::measurements().size());
        f.state.cleanup()->measure();
        QVERIFY(!f.state.cleanup()->isMeasuring());
        // Nothing else runs: no listing, no scan of "-scan".
        QTest::qWait(50);
        QCOMPARE(f.volumeCalls->load(), 0);
        QCOMPARE(f.scanner.runCount(), 0);
        QVERIFY(!f.state.isScanning());

        // A scan chosen in demo mode is real, and refreshes no volumes.
        QVERIFY(f.start("/scratch/real"));
        QCOMPARE(f.scanner.run(0)->firstID, f.state.nextFileID());
        f.scanner.release(0, makeResult("/scratch/real", f.state.nextFileID() + 1));
        QTRY_VERIFY(!f.state.isScanning());
        QTest::qWait(50);
        QCOMPARE(f.volumeCalls->load(), 0);
        QCOMPARE(f.state.volumes(), QList<VolumeInfo>{Demo::volume()});
    }

    // The whole road with the real scanner on a real folder: the result lands,
    // progress shows, and a folder that isn't there is reported.
    void realScanner()
    {
        QTemporaryDir dir(QFile::decodeName(m_home) + QStringLiteral("/real-XXXXXX"));
        QVERIFY(dir.isValid());
        const QByteArray root = QFile::encodeName(dir.path());
        QVERIFY(QDir().mkpath(dir.filePath(u"a/b"_qs)));
        QFile big(dir.filePath(u"a/b/big.bin"_qs));
        QVERIFY(big.open(QIODevice::WriteOnly));
        QVERIFY(big.write(QByteArray(3000000, 'x')) == 3000000);
        big.close();

        AppState state;
        state.setArguments({"sorvel-cleaner"});
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
        QSignalSpy result(&state, &AppState::resultChanged);
        QSignalSpy progress(&state, &AppState::progressChanged);
        state.scan(root + "/./a/..");
        QCOMPARE(state.scanTarget(), root);
        QVERIFY(result.wait(20000));
        QVERIFY(!state.isScanning());
        const ScanResultPtr first = state.result();
        QVERIFY(first && first->root);
        QCOMPARE(first->root->name, root);
        QCOMPARE(first->files.size(), size_t(1));
        QCOMPARE(first->files.front().path, root + "/a/b/big.bin");
        QCOMPARE(state.nextFileID(), first->lastID);
        QVERIFY(progress.count() >= 1);
        QVERIFY(state.errorMessage().isNull());

        QSignalSpy error(&state, &AppState::errorMessageChanged);
        const QByteArray missing = root + "/missing";
        state.scan(missing);
        QVERIFY(error.wait(20000));
        QCOMPARE(state.errorMessage(), u"Couldn't scan ~%1/missing: No such file or directory"_qs.arg(
                                           Paths::toDisplay(root.mid(m_home.size()))));
        QCOMPARE(state.result(), first);
        // Nothing offers to scan the missing folder again.
        QCOMPARE(state.scanTarget(), root);
        QCOMPARE(state.recents().first(), root);
    }

    void stateEndsWhileScanning()
    {
        // The destructor cancels the scan and waits for its worker.
        auto f = std::make_unique<Fixture>();
        QVERIFY(f->start("/scratch/a"));
        const CancelTokenPtr token = f->scanner.run(0)->token;
        f.reset();
        QVERIFY(token->isCancelled());
    }
};

SORVEL_TEST(TestAppState);
#include "tst_appstate.moc"
