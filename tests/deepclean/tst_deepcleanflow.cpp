#include "Fixture.h"
#include "TestMain.h"

#include "SteamModel.h"

#include "core/DirNode.h"
#include "core/Fmt.h"
#include "core/Xdg.h"
#include "removal/FileOperations.h"
#include "scan/DiskScanner.h"
#include "state/AppState.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QSignalSpy>

namespace {

QByteArray write(const QByteArray &path, qint64 bytes, char fill = 'x')
{
    QDir().mkpath(QFile::decodeName(path.first(path.lastIndexOf('/'))));
    QFile file(QFile::decodeName(path));
    if (file.open(QIODevice::WriteOnly))
        file.write(QByteArray(bytes, fill));
    return path;
}

QByteArray checksum(const QByteArray &path)
{
    QFile file(QFile::decodeName(path));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(&file);
    return hash.result();
}

QStringList entriesOf(const QByteArray &folder)
{
    return QDir(QFile::decodeName(folder))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QStringList paths(const QVariantList &rows)
{
    QStringList out;
    for (const QVariant &row : rows)
        out << row.toMap().value(QStringLiteral("path")).toString();
    return out;
}

// Refuses every removal, as a file the user may not delete would.
class RefusingOperations : public FileOperations
{
public:
    int moveToTrash(const RealPlace &, TrashedItem *) override { return EACCES; }
    int removePermanently(const RealPlace &) override { return EACCES; }
};

qint64 locationSize(const AppState &state, const char *id)
{
    return state.cleanup()->measurements().value(QString::fromLatin1(id)).size;
}

} // namespace

// The Deep Clean area on a real home: what it measures and lays out, "Select
// everything safe", the removal to the Trash, and emptying the Trash.
class TestDeepCleanFlow : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void selectSafeSorveliseAndEmptyTheTrash()
    {
        const QByteArray home = TestMain::home();
        const QByteArray cache = Xdg::cacheHome(home);
        const QByteArray trash = Xdg::dataHome(home) + "/Trash";
        const QByteArray projects = home + "/projects";
        write(cache + "/app/blob", 2'000'000);
        write(cache + "/thumbnails/large/a.png", 300'000);
        write(projects + "/web/package.json", 10);
        write(projects + "/web/node_modules/left-pad/index.js", 1'500'000);
        write(projects + "/rs/Cargo.toml", 10);
        write(projects + "/rs/target/debug/app", 3'000'000);
        write(projects + "/py/.venv/pyvenv.cfg", 10);
        write(projects + "/py/.venv/lib/site.py", 1'200'000);
        // Build output under the 1 MB line stays out of the area.
        write(projects + "/small/node_modules/x.js", 500'000);
        write(projects + "/small/package.json", 10);
        // Canaries: a project's own sources, a file beside the Trash, one in a
        // skipped cache.
        const QByteArrayList canaries = {write(projects + "/rs/src/main.rs", 4000, 'r'),
                                         write(Xdg::dataHome(home) + "/notes.txt", 100, 'n'),
                                         write(cache + "/keepassxc/vault.kdbx", 2000, 'k')};
        QHash<QByteArray, QByteArray> sums;
        for (const QByteArray &canary : canaries)
            sums.insert(canary, checksum(canary));

        AppState state;
        state.setArguments({"sorvel-cleaner"});
        Environment environment = Environment::system();
        environment.volumes = [] { return QList<VolumeInfo>(); };
        // Only this home's Trash: the test's volumes are not its to empty.
        environment.trashFolders = [trash] { return QByteArrayList{trash}; };
        state.setEnvironment(environment);
        state.setShowTimeScale(0);

        QSignalSpy scanned(&state, &AppState::resultChanged);
        state.setScanFunction([](const QByteArray &root, const ScanOptions &, qint64 firstID,
                                 const CancelTokenPtr &token, const DiskScanner::ProgressCallback &) {
            return DiskScanner::scan(root, ScanOptions{}, firstID, token, {});
        });
        state.scan(projects);
        QVERIFY(scanned.wait(10000));
        const qint64 scannedTotal = state.result()->root->size;

        // Showing the area measures it, once.
        SteamModel steam;
        QSignalSpy measured(state.cleanup(), &CleanupModel::measured);
        steam.setState(&state);
        QVERIFY(steam.firstMeasure());
        QVERIFY(measured.wait(10000));
        QVERIFY(!steam.firstMeasure());
        QVERIFY(locationSize(state, "caches") >= 2'000'000);
        QCOMPARE(paths(steam.artifacts()).size(), 3);
        QVERIFY(!paths(steam.artifacts()).contains(QFile::decodeName(projects + "/small/node_modules")));

        // Everything safe, whatever the filter and search show.
        steam.setFilterText(QStringLiteral("caution"));
        steam.setSearch(QStringLiteral("nothing like this"));
        QVERIFY(steam.nothingMatches());
        steam.selectEverythingSafe();
        QVERIFY(state.queue()->contains("junk:caches"));
        QVERIFY(state.queue()->contains("junk:thumbnails"));
        QVERIFY(state.queue()->contains(projects + "/rs/target"));
        QCOMPARE(state.queue()->count(), 5);

        // The review lists what a location holds.
        const JunkLocation *caches = nullptr;
        for (const JunkLocation &location : state.cleanup()->locations())
            if (location.id == QStringLiteral("caches"))
                caches = &location;
        QVERIFY(caches);
        QSignalSpy listed(state.cleanup(), &CleanupModel::contentsChanged);
        state.cleanup()->loadContents(false, *caches);
        QTRY_VERIFY(state.cleanup()->contents().contains(QStringLiteral("caches")));
        QCOMPARE(state.cleanup()->contents().value(QStringLiteral("caches")).first().path, cache + "/app");

        // To the Trash; the locations are measured again, the artefacts leave
        // and the scan's totals follow without a rescan.
        QSignalSpy applied(state.removal(), &RemovalSession::removalApplied);
        const QList<CleanItem> items = state.queue()->items();
        QSet<QByteArray> ids;
        for (const CleanItem &item : items)
            ids.insert(item.id);
        state.removal()->sorvelise(ids, false);
        QVERIFY(applied.wait(10000));
        QVERIFY(measured.wait(10000));
        QVERIFY(!QFile::exists(QFile::decodeName(cache + "/app")));
        QVERIFY(locationSize(state, "caches") < 100'000);
        QVERIFY(steam.artifacts().isEmpty());
        QVERIFY(state.result()->root->size <= scannedTotal - 5'700'000);
        QCOMPARE(state.queue()->count(), 0);
        QVERIFY(entriesOf(trash + "/files").size() >= 5);
        const qint64 inTrash = state.cleanup()->trash()->size;
        QVERIFY(inTrash >= 8'000'000);
        QCOMPARE(steam.trashValue(), Fmt::bytes(inTrash));

        // "Empty Trash" asks first; yes deletes the Trash's contents and
        // nothing else.
        steam.emptyTrash();
        QVERIFY(state.removal()->confirm());
        QCOMPARE(state.removal()->confirm()->title, QStringLiteral("Empty the Trash?"));
        const qint64 freedBefore = state.removal()->sessionFreed();
        const ConfirmRequest yes = *state.removal()->confirm();
        state.removal()->setConfirm(std::nullopt);
        yes.perform();
        QVERIFY(measured.wait(10000));
        QVERIFY(entriesOf(trash + "/files").isEmpty());
        QVERIFY(entriesOf(trash + "/info").isEmpty());
        QCOMPARE(state.cleanup()->trash()->size, 0);
        QVERIFY(state.toast());
        QCOMPARE(state.toast()->message, QStringLiteral("Trash emptied · %1 sorvelised")
                                             .arg(Fmt::bytes(state.removal()->sessionFreed() - freedBefore)));
        QVERIFY(state.removal()->sessionFreed() - freedBefore >= inTrash - 100'000);
        for (const QByteArray &canary : canaries)
            QCOMPARE(checksum(canary), sums.value(canary));

        // What cannot be deleted stays, is counted and said, and frees nothing.
        const QByteArray stuck = write(trash + "/files/stuck.bin", 50'000);
        state.setFileOperations(std::make_shared<RefusingOperations>());
        state.setToast(std::nullopt);
        const qint64 freedSoFar = state.removal()->sessionFreed();
        state.emptyTrash();
        QVERIFY(measured.wait(10000));
        QVERIFY(QFile::exists(QFile::decodeName(stuck)));
        QVERIFY(!state.toast());
        QCOMPARE(state.errorMessage(), QStringLiteral("Couldn't empty the Trash. Items that stayed in it: 1.\n") +
                                           FileOperations::describe(EACCES));
        QCOMPARE(state.removal()->sessionFreed(), freedSoFar);
    }
};

SORVEL_TEST(TestDeepCleanFlow);
#include "tst_deepcleanflow.moc"
