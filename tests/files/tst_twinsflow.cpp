#include "RemovalFixtures.h"
#include "TestMain.h"

#include "BiggestShelves.h"
#include "FileShelfModel.h"
#include "TwinShelfModel.h"

#include "core/Paths.h"
#include "core/Prefs.h"
#include "removal/CleanQueue.h"
#include "scan/DiskScanner.h"
#include "scan/NcduWriter.h"
#include "state/AppState.h"
#include "state/RemovalSession.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <sys/time.h>

using namespace RemovalFixtures;

namespace {

// A file with this content, last changed `ago` seconds before now.
void writeAged(const QByteArray &path, const QByteArray &content, int ago)
{
    QVERIFY(makeDirs(Paths::parentOf(path)));
    QFile file(QFile::decodeName(path));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
    file.close();
    struct timeval times[2];
    ::gettimeofday(&times[0], nullptr);
    times[0].tv_sec -= ago;
    times[1] = times[0];
    QCOMPARE(::utimes(path.constData(), times), 0);
}

} // namespace

// From a real scan through the Twins shelf and the review to the Trash, with
// every figure following without a rescan.
class TwinsFlowTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_prefs;

private Q_SLOTS:
    void initTestCase()
    {
        Prefs::registerDefaults();
        Prefs::useFile(m_prefs.filePath(QStringLiteral("prefs.ini")));
    }

    void extrasGoToTheTrash()
    {
        QTemporaryDir dir;
        const QByteArray root = bytes(dir);
        const QByteArray report(200'000, 'r');
        const QByteArray photo(120'000, 'p');
        writeAged(root + "/old/report.pdf", report, 90 * 86400);
        writeAged(root + "/new/report.pdf", report, 3600);
        writeAged(root + "/a/photo.jpg", photo, 7200);
        writeAged(root + "/b/photo.jpg", photo, 7200);
        writeAged(root + "/b/photo (copy).jpg", photo, 7200);
        writeAged(root + "/solo.bin", QByteArray(150'000, 's'), 60);
        // Same size, other content: no twin of anything.
        writeAged(root + "/lookalike.pdf", QByteArray(200'000, 'l'), 60);

        AppState state;
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
        state.setShowTimeScale(0);
        state.setScanFunction([](const QByteArray &r, const ScanOptions &, qint64 firstID, const CancelTokenPtr &token,
                                 const DiskScanner::ProgressCallback &) {
            ScanOptions options;
            options.minTrackedSize = 1;
            return DiskScanner::scan(r, options, firstID, token, {});
        });
        QSignalSpy scanned(&state, &AppState::resultChanged);
        state.scan(root);
        QVERIFY(scanned.wait(5000));

        FileShelfModel biggest;
        biggest.setState(&state);
        QTRY_COMPARE(biggest.count(), 7);
        const qint64 before = state.result()->root->size;

        TwinShelfModel twins;
        twins.setState(&state);
        twins.setMinSize(0);
        twins.find();
        QTRY_COMPARE(twins.content(), QStringLiteral("list"));
        QCOMPARE(state.duplicates()->groupCount(), 2);

        twins.selectAllExtras();
        QCOMPARE(state.queue()->count(), 3);
        QSet<QByteArray> ids;
        for (const CleanItem &item : state.queue()->items())
            ids.insert(item.id);
        QVERIFY(ids.contains(root + "/old/report.pdf"));
        QVERIFY(!ids.contains(root + "/new/report.pdf"));

        QSignalSpy applied(state.removal(), &RemovalSession::removalApplied);
        state.removal()->sorvelise(ids, false);
        QVERIFY(applied.wait(10000));

        // What was selected is in the Trash; the newest report and one photo stay.
        QVERIFY(!state.removal()->hasDeletionFailures());
        for (const QByteArray &id : ids)
            QVERIFY2(!QFile::exists(QFile::decodeName(id)), id.constData());
        QVERIFY(QFile::exists(QFile::decodeName(root + "/new/report.pdf")));
        const QString trash = QFile::decodeName(TestMain::home()) + QStringLiteral("/.local/share/Trash/files");
        QCOMPARE(QDir(trash).entryList(QDir::Files).size(), 3);
        int photos = 0;
        for (const char *name : {"/a/photo.jpg", "/b/photo.jpg", "/b/photo (copy).jpg"})
            photos += QFile::exists(QFile::decodeName(root + name)) ? 1 : 0;
        QCOMPARE(photos, 1);

        // Groups of one are gone, and the shelves and totals follow.
        QCOMPARE(twins.content(), QStringLiteral("noTwins"));
        QCOMPARE(state.queue()->count(), 0);
        QTRY_COMPARE(biggest.count(), 4);
        QVERIFY(state.result()->root->size < before);
        qint64 listed = 0;
        for (const FileItem &file : state.result()->files)
            listed += file.size;
        QCOMPARE(biggest.subtitle(), BiggestShelves::subtitle(4, listed));
    }

    // On a saved scan the search reads this computer's files at the saved
    // paths: the shelf says so before and after, counts the saved files that
    // are gone, and offers nothing to select.
    void savedScanReadsThisComputer()
    {
        QTemporaryDir dir;
        const QByteArray root = bytes(dir) + "/Projects";
        const QByteArray video(1'500'000, 'v');
        for (const char *name : {"/a/clip.mov", "/b/clip.mov", "/c/clip.mov"})
            writeAged(root + name, video, 60);
        const QString saved = dir.filePath(QStringLiteral("projects.json"));
        {
            QFile out(saved);
            QVERIFY(out.open(QIODevice::WriteOnly));
            const CancelTokenPtr token = makeCancelToken();
            NcduWriter writer(out, QStringLiteral("test"), token);
            QVERIFY(DiskScanner::scan(root, ScanOptions(), 0, token, {}, DiskScanner::Walking::automatic, &writer));
            QVERIFY(writer.finish());
        }
        QVERIFY(QFile::remove(QFile::decodeName(root + "/c/clip.mov")));

        AppState state;
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
        TwinShelfModel twins;
        twins.setState(&state);
        twins.setMinSize(0);
        // What the page last announced, as its QML reads it.
        QString told;
        connect(&twins, &TwinShelfModel::pageChanged, this, [&] { told = twins.savedScanText(); });
        state.openSavedScan(QFile::encodeName(saved));
        QTRY_VERIFY(state.isSavedScan() && !state.isScanning());
        QCOMPARE(twins.content(), QStringLiteral("neverRun"));
        QVERIFY(told.contains(QStringLiteral("on this computer")));
        QVERIFY(!twins.canSelect());

        twins.find();
        QTRY_COMPARE(twins.content(), QStringLiteral("list"));
        QCOMPARE(state.duplicates()->groupCount(), 1);
        QCOMPARE(twins.unreadableText(),
                 QStringLiteral("1 file to compare isn't on this computer or couldn't be read"));
        QVERIFY(!twins.canSelectAll());
        twins.selectExtras(0);
        QVERIFY(state.queue()->isEmpty());
    }
};

SORVEL_TEST(TwinsFlowTest);

#include "tst_twinsflow.moc"
