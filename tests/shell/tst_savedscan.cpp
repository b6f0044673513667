#include "MainWindow.h"
#include "TestMain.h"

#include "../state/FakeScanner.h"

#include "AppStateForeign.h"
#include "Shell.h"

#include "core/Prefs.h"
#include "removal/CleanQueue.h"
#include "scan/DiskScanner.h"
#include "scan/NcduWriter.h"
#include "state/AppState.h"
#include "state/RemovalSession.h"

#include <QDir>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScopeGuard>
#include <QTemporaryDir>

namespace {

void write(const QString &path, qint64 size)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    QVERIFY(f.write(QByteArray(size, 'x')) == size);
}

// A small project folder saved the way `sorvel scan --export-ncdu` saves it.
QByteArray saveScanOf(const QString &root, const QString &saved)
{
    write(root + u"/Videos/holiday.mov"_qs, 3'000'000);
    write(root + u"/Videos/trailer.mp4"_qs, 1'500'000);
    write(root + u"/web/package.json"_qs, 300);
    write(root + u"/web/node_modules/left/index.js"_qs, 800'000);
    write(root + u"/Documents/report.pdf"_qs, 400'000);
    QFile out(saved);
    if (!out.open(QIODevice::WriteOnly))
        return {};
    const CancelTokenPtr token = makeCancelToken();
    NcduWriter writer(out, u"test"_qs, token);
    ScanOptions options;
    options.minTrackedSize = 100'000;
    const bool done =
        DiskScanner::scan(QFile::encodeName(root), options, 0, token, {}, DiskScanner::Walking::automatic, &writer) &&
        writer.finish();
    return done ? QFile::encodeName(saved) : QByteArray();
}

// Whether an item on screen shows `text`, whole or as part of a longer one.
bool showsText(QQuickWindow *window, const QString &text, bool whole)
{
    for (QQuickItem *item : window->findChildren<QQuickItem *>()) {
        const QString shown = item->property("text").toString();
        if (item->isVisible() && (whole ? shown == text : shown.contains(text)))
            return true;
    }
    return false;
}

struct Fixture {
    Fixture()
    {
        Prefs::registerDefaults();
        state.setArguments({"sorvel-cleaner"});
        state.setScanFunction(scanner.function());
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
    }
    AppState state;
    FakeScanner scanner;
};

} // namespace

class TestSavedScan : public QObject
{
    Q_OBJECT

private slots:
    // A saved scan is shown read-only: nothing taken from it reaches a review,
    // the header says whose scan it is and offers to scan its folder again
    // while that folder is here; a file that is no saved scan leaves the shown
    // result as it was and says why.
    void shownReadOnly()
    {
        QTemporaryDir dir;
        const QString root = dir.filePath(u"Projects"_qs);
        const QByteArray saved = saveScanOf(root, dir.filePath(u"projects.json"_qs));
        QVERIFY(!saved.isEmpty());

        Fixture f;
        f.state.openSavedScan(saved);
        QTRY_VERIFY(f.state.result() && !f.state.isScanning());
        QVERIFY(f.state.isSavedScan());
        QCOMPARE(f.state.result()->root->name, QFile::encodeName(root));
        QVERIFY(f.state.savedScanText().contains(u"projects.json"_qs));
        QVERIFY(f.state.canRescanSavedScan());

        const FileItem &movie = f.state.result()->files.front();
        QCOMPARE(movie.name, QByteArray("holiday.mov"));
        CleanItem item;
        item.id = movie.path;
        item.name = QString::fromUtf8(movie.name);
        item.size = movie.size;
        f.state.queue()->add(item);
        f.state.removal()->sorvelise();
        QVERIFY(!f.state.removal()->isReviewing());
        QVERIFY(f.state.toast().has_value());
        f.state.removal()->sorvelise({movie.path}, true);
        QVERIFY(QFile::exists(root + u"/Videos/holiday.mov"_qs));

        QFile bad(dir.filePath(u"bad.json"_qs));
        QVERIFY(bad.open(QIODevice::WriteOnly) && bad.write("[1,2,{},[{\"name\":\"/x\"}") > 0);
        bad.close();
        const ScanResultPtr shown = f.state.result();
        f.state.openSavedScan(QFile::encodeName(bad.fileName()));
        QTRY_VERIFY(!f.state.isScanning());
        QCOMPARE(f.state.result(), shown);
        QVERIFY2(f.state.errorMessage().contains(u"line 1, column"_qs), qPrintable(f.state.errorMessage()));

        QVERIFY(QDir(root).removeRecursively());
        QVERIFY(!f.state.canRescanSavedScan());
    }

    // The window with a saved scan, in both appearances: the folder header and
    // the Twins shelf say what it is. With SORVEL_SCREENSHOT_DIR set it saves
    // them.
    void window_data() { addAppearanceRows(); }

    void window()
    {
        QFETCH(QByteArray, appearance);
        const ShownIn shown(appearance);
        QTemporaryDir dir;
        // In the test's home, shown as ~/Projects, as a user's would be.
        const QString root = QFile::decodeName(TestMain::home()) + u"/Projects"_qs;
        const auto removeRoot = qScopeGuard([&root] { QDir(root).removeRecursively(); });
        const QByteArray saved = saveScanOf(root, dir.filePath(u"server-projects.json"_qs));
        QVERIFY(!saved.isEmpty());

        Fixture f;
        AppStateForeign::setInstance(&f.state);
        MainWindow main;
        QVERIFY(main.load());
        f.state.openSavedScan(saved);
        QTRY_VERIFY(f.state.result() && !f.state.isScanning());
        QObject *banner = nullptr;
        for (QObject *object : main.window()->findChildren<QObject *>())
            if (QByteArray(object->metaObject()->className()).startsWith("SavedScanBanner"))
                banner = object;
        QVERIFY(banner);
        QTRY_VERIFY(banner->property("visible").toBool());
        QTRY_VERIFY(showsText(main.window(), u"Saved scan of ~/Projects"_qs, true));
        QVERIFY(main.shoot(QStringLiteral("saved-scan-%1.png").arg(QLatin1String(appearance))));

        f.state.setSection(SidebarItem::duplicates);
        QTRY_VERIFY(showsText(main.window(), u"on this computer, not the saved scan"_qs, false));
        QVERIFY(main.shoot(QStringLiteral("saved-scan-twins-%1.png").arg(QLatin1String(appearance))));
        QVERIFY2(main.warnings().isEmpty(), qPrintable(main.warningText()));
        AppStateForeign::setInstance(nullptr);
    }
};

SORVEL_TEST(TestSavedScan);
#include "tst_savedscan.moc"
