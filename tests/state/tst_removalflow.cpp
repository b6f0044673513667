#include "RemovalFixtures.h"
#include "TestMain.h"

#include "core/Desktop.h"
#include "core/Fmt.h"
#include "core/Paths.h"
#include "core/Prefs.h"
#include "safety/SafetyGuard.h"
#include "scan/DiskScanner.h"
#include "state/AppState.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace RemovalFixtures;

namespace {

class FakeDesktop : public Desktop
{
public:
    QStringList copied;
    void chooseFolder(const QString &, const QString &, const QByteArray &, FolderChosen done) override { done({}); }
    void copyText(const QString &text) override { copied << text; }
    void reveal(const QByteArrayList &) override {}
    void openFullDiskAccessSettings() override {}
};

CleanItem pathItem(const QByteArray &path, qint64 size, CleanItem::Kind kind = CleanItem::Kind::file,
                   CleanItem::Source source = CleanItem::Source::space)
{
    CleanItem item;
    item.id = path;
    item.name = Paths::toDisplay(Paths::lastComponent(path));
    item.size = size;
    item.kind = kind;
    item.source = source;
    return item;
}

CleanItem junkItem(const char *location, qint64 size = 100)
{
    CleanItem item;
    item.id = QByteArray(CleanItem::junkPrefix.toByteArray()) + location;
    item.name = QString::fromLatin1(location);
    item.size = size;
    item.kind = CleanItem::Kind::junk;
    item.heat = 1;
    item.source = CleanItem::Source::deepClean;
    return item;
}

QString toastText(const AppState &state) { return state.toast() ? state.toast()->message : QString(); }

// A state that removes through a watched seam and does not wait to show it.
struct Fixture {
    std::shared_ptr<RecordingOperations> operations = std::make_shared<RecordingOperations>();
    FakeDesktop desktop;
    AppState state;

    explicit Fixture(const QByteArrayList &arguments = {"sorvel-cleaner"})
    {
        state.setArguments(arguments);
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
        state.setFileOperations(operations);
        state.setShowTimeScale(0);
        state.setDesktop(&desktop);
    }

    // Runs the removal of these ids to its end.
    bool sorvelise(const QSet<QByteArray> &ids, bool permanently)
    {
        QSignalSpy applied(state.removal(), &RemovalSession::removalApplied);
        state.removal()->sorvelise(ids, permanently);
        return applied.wait(5000);
    }

    // Loads a real scan of `root`, every file listed from `threshold` bytes.
    bool scan(const QByteArray &root, qint64 threshold = 1)
    {
        state.setScanFunction([threshold](const QByteArray &r, const ScanOptions &, qint64 firstID,
                                          const CancelTokenPtr &token, const DiskScanner::ProgressCallback &) {
            ScanOptions options;
            options.minTrackedSize = threshold;
            return DiskScanner::scan(r, options, firstID, token, {});
        });
        QSignalSpy done(&state, &AppState::resultChanged);
        state.scan(root);
        return done.wait(5000);
    }
};

} // namespace

class TestRemovalFlow : public QObject
{
    Q_OBJECT

    QTemporaryDir m_prefsDir;
    int m_store = 0;
    std::unique_ptr<QTemporaryDir> m_dir; // a fresh folder for each test

    // `name` in this test's folder.
    QByteArray at(const QByteArray &name) const { return bytes(*m_dir) + '/' + name; }

private slots:
    void initTestCase()
    {
        QVERIFY(m_prefsDir.isValid());
        Prefs::registerDefaults();
    }

    void init()
    {
        Prefs::useFile(m_prefsDir.filePath(QStringLiteral("prefs-%1.ini").arg(++m_store)));
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
    }

    void cleanup() { m_dir.reset(); }

    void openingTheReview()
    {
        Fixture f;
        f.state.removal()->sorvelise();
        QVERIFY(!f.state.removal()->isReviewing());
        f.state.queue()->add(pathItem("/nowhere/x", 1));
        f.state.removal()->sorvelise();
        QVERIFY(f.state.removal()->isReviewing());
        // Ids that match nothing close the review, and nothing else happens.
        f.state.removal()->sorvelise({"/elsewhere"}, false);
        QVERIFY(!f.state.removal()->isReviewing());
        QVERIFY(!f.state.toast());
        QVERIFY(!f.state.removal()->isDeleting());
        QCOMPARE(f.state.queue()->count(), 1);

        // An empty contents-only folder leaves nothing to do, and says so.
        const QByteArray cache = TestMain::home() + "/.cache";
        QVERIFY(makeDirs(cache));
        f.state.queue()->add(pathItem(cache, 0, CleanItem::Kind::folder));
        f.state.removal()->sorvelise({cache}, false);
        QCOMPARE(toastText(f.state), QStringLiteral("Nothing left to sorvelise"));
        QCOMPARE(f.state.queue()->count(), 2);
        QVERIFY(f.operations->calls().isEmpty());
    }

    // Junk locations, a contents-only folder and plain items expand into one
    // flat list without repeats; the first item to name a path wins.
    void expansion()
    {
        const QByteArray home = TestMain::home();
        const QByteArray cache = home + "/.cache";
        QVERIFY(makeDirs(cache + "/app"));
        QVERIFY(makeDirs(cache + "/thumbnails/large"));
        QVERIFY(makeFile(cache + "/com.apple.kept", 10));
        const QByteArray plain = at("plain.bin");
        QVERIFY(makeFile(plain, 10));

        Fixture f;
        f.state.queue()->add(junkItem("thumbnails", 300));
        f.state.queue()->add(pathItem(cache, 1000, CleanItem::Kind::folder, CleanItem::Source::files));
        f.state.queue()->add(pathItem(plain, 10));
        f.state.queue()->add(pathItem(at("picked"), 20, CleanItem::Kind::artifact, CleanItem::Source::deepClean));
        f.state.queue()->add(junkItem("nonesuch", 5));
        const QSet<QByteArray> ids = {"junk:thumbnails", cache, plain, at("picked"), "junk:nonesuch"};
        const std::optional<DeletionRequest> request = f.state.removal()->deletionRequest(ids);
        QVERIFY(request);

        QList<DeletionItem> expected = {
            {cache + "/thumbnails/large", std::nullopt, true},
            {cache + "/app", std::nullopt, true},
            {cache + "/thumbnails", std::nullopt, true},
            {plain, 10, false},
            {at("picked"), 20, true},
        };
        // The contents-only folder lists in directory order.
        QList<DeletionItem> got = request->items;
        std::sort(got.begin() + 1, got.begin() + 3,
                  [](const DeletionItem &a, const DeletionItem &b) { return a.path < b.path; });
        QCOMPARE(got, expected);
        QCOMPARE(request->estimatedSize, 300 + 1000 + 10 + 20 + 5);
        QCOMPARE(request->queueIDs, ids);
        QVERIFY(QDir().rmpath(QFile::decodeName(cache + "/app")));
        QVERIFY(QDir().rmpath(QFile::decodeName(cache + "/thumbnails/large")));
        QVERIFY(QFile::remove(QFile::decodeName(cache + "/com.apple.kept")));
    }

    // A protected path never reaches a file operation, whatever put it in the
    // request; it is reported with the guard's sentence and leaves the queue.
    void protectedPathsNeverReachTheDisk()
    {
        const QByteArray home = TestMain::home();
        const QByteArray documents = home + "/Documents";
        QVERIFY(makeDirs(documents));
        QVERIFY(makeFile(documents + "/canary", 10));
        const QByteArray plain = at("plain");
        QVERIFY(makeFile(plain, 10));

        Fixture f;
        f.state.queue()->add(pathItem(documents, 10, CleanItem::Kind::folder));
        f.state.queue()->add(pathItem(home + "/./", 10, CleanItem::Kind::folder));
        f.state.queue()->add(pathItem(plain, 10));
        const QSet<QByteArray> ids = {documents, home + "/./", plain};
        QCOMPARE(f.state.removal()->deletionRequest(ids)->protectedCount(), 2);
        QVERIFY(f.sorvelise(ids, true));

        QCOMPARE(f.operations->calls(), QByteArrayList{plain});
        QVERIFY(exists(documents + "/canary"));
        QVERIFY(!exists(plain));
        const QList<DeletionFailure> failures = f.state.removal()->deletionFailures().value();
        QCOMPARE(failures.size(), 2);
        for (const DeletionFailure &failure : failures) {
            QCOMPARE(failure.reason, DeletionFailure::Reason::safetyGuard);
            QCOMPARE(failure.detail, SafetyGuard::reason(Paths::normalize(failure.path)));
        }
        // Nothing of it can ever go, so nothing of it stays selected.
        QVERIFY(f.state.queue()->isEmpty());
    }

    // The closing steps in their order, the toast's wording, what stays queued.
    void closingSteps_data()
    {
        QTest::addColumn<bool>("permanently");
        QTest::addColumn<int>("files");
        QTest::addColumn<QString>("words");
        QTest::newRow("one to the Trash") << false << 1 << "1 item in the Trash";
        QTest::newRow("three for good") << true << 3 << "3 items gone for good";
    }

    void closingSteps()
    {
        QFETCH(bool, permanently);
        QFETCH(int, files);
        QFETCH(QString, words);
        QSet<QByteArray> ids;
        qint64 total = 0;
        Fixture f;
        // Names no text survives: a newline, a byte that is no UTF-8, a
        // right-to-left override. The operations get them byte for byte.
        QByteArrayList paths;
        for (int i = 0; i < files; ++i) {
            const QByteArray path = at("f" + QByteArray::number(i) + "\nodd\xff\xe2\x80\xae.txt");
            paths << path;
            QVERIFY(makeFile(path, 5000));
            total += allocated(path);
            f.state.queue()->add(pathItem(path, allocated(path)));
            ids.insert(path);
        }
        const QByteArray busy = at("busy");
        QVERIFY(makeFile(busy, 10));
        f.state.queue()->add(pathItem(busy, 10));
        ids.insert(busy);
        f.operations->refuse = [](const QByteArray &path) { return path.endsWith("/busy") ? EBUSY : 0; };

        QStringList events;
        QObject::connect(f.state.removal(), &RemovalSession::isDeletingChanged,
                         [&] { events << QString::fromLatin1(f.state.removal()->isDeleting() ? "deleting" : "done"); });
        QObject::connect(&f.state, &AppState::revisionChanged, [&] { events << "applied"; });
        QObject::connect(f.state.removal(), &RemovalSession::vanishingPathsChanged, [&] {
            events << QString::fromLatin1(f.state.removal()->vanishingPaths().isEmpty() ? "emptied" : "vanishing");
        });
        QObject::connect(f.state.removal(), &RemovalSession::sessionFreedChanged, [&] { events << "counted"; });
        QObject::connect(f.state.removal(), &RemovalSession::sessionTrashedChanged, [&] { events << "counted"; });
        QObject::connect(&f.state, &AppState::toastChanged, [&] { events << "toast"; });
        QObject::connect(f.state.removal(), &RemovalSession::deletionFailuresChanged, [&] { events << "failures"; });
        QObject::connect(f.state.queue(), &CleanQueue::itemsChanged, [&] { events << "queue"; });

        const int revision = f.state.revision();
        QVERIFY(f.sorvelise(ids, permanently));
        QCOMPARE(events, QStringList({"vanishing", "deleting", "done", "applied", "emptied", "counted", "toast",
                                      "failures", "queue"}));
        QCOMPARE(f.state.revision(), revision + 1);
        // Moved to the Trash, the bytes wait there; removed for good, they count
        // as the volume measured them (or as expected, where it can't tell).
        const RemovalSession &session = *f.state.removal();
        const qint64 shown = permanently ? session.sessionFreed() : session.sessionTrashed();
        QCOMPARE(permanently ? session.sessionTrashed() : session.sessionFreed(), 0);
        if (permanently)
            QVERIFY2(shown > 0 && shown < 2 * total, qPrintable(QString::number(shown)));
        else
            QCOMPARE(shown, total);
        QCOMPARE(toastText(f.state), QStringLiteral("Sorvelised %1 · %2").arg(Fmt::bytes(shown), words));
        // What failed stays selected for another try.
        QCOMPARE(f.state.queue()->count(), 1);
        QCOMPARE(f.state.queue()->items().first().id, busy);
        QCOMPARE(f.state.removal()->deletionFailures()->first().reason, DeletionFailure::Reason::inUse);
        QCOMPARE(f.state.removal()->lastRemoval().size(), files);
        QVERIFY(f.state.removal()->sorvelisingIDs().isEmpty());
        const QByteArrayList calls = f.operations->calls();
        for (const QByteArray &path : paths) {
            QVERIFY2(calls.contains(path), path.constData());
            struct stat st;
            QCOMPARE(::lstat(path.constData(), &st), -1);
        }
    }

    // Everything failed: no success toast, the model still gets its (empty)
    // correction, onComplete still runs.
    void everythingFailed()
    {
        const QByteArray busy = at("busy");
        QVERIFY(makeFile(busy, 10));
        Fixture f;
        f.operations->refuse = [](const QByteArray &) { return EBUSY; };
        bool completed = false;
        DeletionRequest request;
        request.items = {{busy, 10, false}};
        request.onComplete = [&](const QByteArrayList &removed) {
            completed = true;
            QVERIFY(removed.isEmpty());
            QVERIFY(f.state.removal()->deletionFailures());
        };
        const int revision = f.state.revision();
        QSignalSpy applied(f.state.removal(), &RemovalSession::removalApplied);
        f.state.removal()->performDeletion(request, false);
        QVERIFY(f.state.removal()->isDeleting());
        QVERIFY(applied.wait(5000));
        QVERIFY(completed);
        QVERIFY(!f.state.toast());
        QCOMPARE(f.state.revision(), revision + 1);
        QCOMPARE(f.state.removal()->sessionFreed(), 0);
    }

    // A fast worker still leaves the removal on screen for the minimum time.
    void minimumShowTime()
    {
        const QByteArray path = at("f");
        QVERIFY(makeFile(path, 10));
        Fixture f;
        f.state.setShowTimeScale(0.1); // 20 items: 8 s scaled to 0.8 s
        DeletionRequest request;
        request.items = {{path, 10, false}};
        for (int i = 0; i < 20; ++i)
            request.queueIDs.insert("id" + QByteArray::number(i));
        QSignalSpy applied(f.state.removal(), &RemovalSession::removalApplied);
        QElapsedTimer timer;
        timer.start();
        f.state.removal()->performDeletion(request, true);
        QCOMPARE(f.state.removal()->sorvelisingIDs(), request.queueIDs);
        QCOMPARE(f.state.removal()->vanishingPathsText(), QStringList{Paths::toText(path)});
        QVERIFY(applied.wait(5000));
        QVERIFY2(timer.elapsed() >= 790, QByteArray::number(timer.elapsed()).constData());
    }

    // Demo mode applies the removal to the model only.
    void pretendRemoval()
    {
        const QByteArray real = at("real");
        QVERIFY(makeFile(real, 10));
        Fixture f({"sorvel-cleaner", "-demo"});
        f.state.onLaunch();
        const ScanResultPtr result = f.state.result();
        QVERIFY(result && !result->files.empty());
        const FileItem biggest = result->files.front();
        const qint64 rootSize = result->root->size;
        f.state.queue()->add(pathItem(biggest.path, biggest.size));
        f.state.queue()->add(pathItem(real, 4096));

        QVERIFY(f.sorvelise({biggest.path, real}, true));
        QVERIFY(f.operations->calls().isEmpty());
        QVERIFY(exists(real));
        QCOMPARE(result->root->size, rootSize - biggest.size);
        QCOMPARE(toastText(f.state),
                 QStringLiteral("Sorvelised %1 · demo mode, nothing was deleted").arg(Fmt::bytes(biggest.size + 4096)));
        QCOMPARE(f.state.removal()->sessionFreed(), 0);
        QVERIFY(f.state.queue()->isEmpty());
        QVERIFY(!f.state.removal()->isDeleting());
        QVERIFY(f.state.removal()->vanishingPaths().isEmpty());
    }

    // A click inside a selected folder opens it: the siblings up the path come
    // in, the clicked thing and the small files do not.
    void toggleInsideSelectedFolder()
    {
        const QByteArray root = at("t");
        QVERIFY(makeDirs(root + "/top/mid/node_modules"));
        QVERIFY(makeDirs(root + "/top/side"));
        QVERIFY(makeFile(root + "/top/side/s.bin", 20000));
        QVERIFY(makeFile(root + "/top/big.bin", 20000));
        QVERIFY(makeFile(root + "/top/tiny", 10));
        const QByteArray pick = root + "/top/mid/pick\n\xff\xe2\x80\xae"
                                       "gnp.exe";
        QVERIFY(makeFile(pick, 20000));
        QVERIFY(makeFile(root + "/top/mid/other.bin", 20000));
        QVERIFY(makeFile(root + "/top/mid/node_modules/x.js", 20000));
        QVERIFY(makeFile(root + "/top/mid/small", 10));
        Fixture f;
        QVERIFY(f.scan(root, 8192));
        const CleanItem top = pathItem(root + "/top", 1, CleanItem::Kind::folder, CleanItem::Source::files);
        f.state.toggleSelection(top);
        QVERIFY(f.state.queue()->contains(root + "/top"));

        f.state.toggleSelection(pathItem(pick, 1));
        QByteArrayList ids;
        for (const CleanItem &item : f.state.queue()->items()) {
            ids << item.id;
            QCOMPARE(item.source, CleanItem::Source::files);
            if (item.id.endsWith("node_modules"))
                QCOMPARE(item.kind, CleanItem::Kind::artifact);
        }
        std::sort(ids.begin(), ids.end());
        QCOMPARE(ids, QByteArrayList({root + "/top/big.bin", root + "/top/mid/node_modules",
                                      root + "/top/mid/other.bin", root + "/top/side"}));
        const qint64 loose = allocated(root + "/top/tiny") + allocated(root + "/top/mid/small");
        // The name in the toast shows its newline, its odd byte and its
        // override as escapes: one line, in reading order.
        QCOMPARE(toastText(f.state), QStringLiteral("Left out “pick\\n\\xFF\\u202Egnp.exe” · the rest of “top” stays "
                                                    "selected (%1 of loose small files are kept too)")
                                         .arg(Fmt::bytes(loose)));

        // A junk item never opens anything; a second click takes it out.
        const CleanItem junk = junkItem("caches");
        f.state.toggleSelection(junk);
        f.state.toggleSelection(junk);
        QVERIFY(!f.state.queue()->contains(junk.id));
    }

    void deselectInsideWithoutScan()
    {
        Fixture f;
        f.state.queue()->add(pathItem("/x/folder", 1, CleanItem::Kind::folder));
        f.state.deselectInside("/x/folder/inner");
        QCOMPARE(f.state.queue()->count(), 1);
        QCOMPARE(toastText(f.state),
                 QStringLiteral("“folder” is selected as a whole. Deselect it to choose inside it"));
    }

    void copyPaths()
    {
        Fixture f;
        f.state.copyPaths({"/a/b c"});
        QCOMPARE(toastText(f.state), u"Copied b c"_qs);
        f.state.copyPaths({"/a", "/b"});
        QCOMPARE(toastText(f.state), u"Copied 2 paths"_qs);
        QCOMPARE(f.desktop.copied, (QStringList{u"/a/b c"_qs, u"/a\n/b"_qs}));
        // The toast shows a right-to-left name with an override safely; the
        // clipboard gets the path itself.
        f.state.copyPaths({"/a/\xd7\xa9\xd7\x9c\xe2\x80\xae.txt"});
        QCOMPARE(toastText(f.state), u"Copied \u2068\u05e9\u05dc\\u202E.txt\u2069"_qs);
        QCOMPARE(f.desktop.copied.last(), u"/a/\u05e9\u05dc\u202E.txt"_qs);
    }
};

SORVEL_TEST(TestRemovalFlow);
#include "tst_removalflow.moc"
