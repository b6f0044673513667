#include "TestMain.h"
#include "Trees.h"

#include "Unprivileged.h"

#include "core/Fmt.h"
#include "core/Paths.h"
#include "core/Prefs.h"
#include "demo/Demo.h"
#include "explorer/SpaceModel.h"
#include "scan/DiskScanner.h"
#include "state/AppState.h"

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <cerrno>
#include <cstdio>
#include <functional>
#include <memory>

#include <sys/stat.h>

namespace {

constexpr qint64 GB = 1'000'000'000;

// The state holding `result` as a finished scan of `root`, and the model over
// it with a clock the test moves.
struct Fixture {
    AppState state;
    SpaceModel model;
    double clock = 100.0;
    std::unique_ptr<QAbstractItemModelTester> tester;

    explicit Fixture(const ScanResultPtr &result)
    {
        state.setScanFunction([result](const QByteArray &, const ScanOptions &, qint64, const CancelTokenPtr &,
                                       const std::function<void(const ScanProgress &)> &) { return result; });
        model.setClock([this] { return clock; });
        tester =
            std::make_unique<QAbstractItemModelTester>(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setState(&state);
        QSignalSpy done(&state, &AppState::resultChanged);
        state.scan(result->root->path());
        done.wait(5000);
    }

    QString name(int row) const { return model.data(model.index(row), SpaceModel::NameRole).toString(); }
    QStringList names() const
    {
        QStringList out;
        for (int i = 0; i < model.rowCount(); ++i)
            out << name(i);
        return out;
    }
    int row(const QString &name) const { return int(names().indexOf(name)); }
};

// A scan's tree as lines, so that what an unprivileged child scanned can be
// looked at here: "D depth size files small error partly below name" for a
// folder, then "F size name" for each of its listed files (names in hex).
QByteArray flatten(const ScanResultPtr &result)
{
    if (!result)
        return "none";
    QByteArray out;
    const std::function<void(const DirNodePtr &, int)> walk = [&](const DirNodePtr &node, int depth) {
        out += "D " +
               QByteArrayList{QByteArray::number(depth),
                              QByteArray::number(node->size),
                              QByteArray::number(node->fileCount),
                              QByteArray::number(node->smallFilesSize),
                              QByteArray::number(node->readError),
                              QByteArray::number(node->partlyRead),
                              QByteArray::number(node->unreadableBelow),
                              node->name.toHex()}
                   .join(' ') +
               '\n';
        for (const FileItem &file : node->files)
            out += "F " + QByteArray::number(file.size) + ' ' + file.name.toHex() + '\n';
        for (const DirNodePtr &child : node->children)
            walk(child, depth + 1);
    };
    walk(result->root, 0);
    return out;
}

ScanResultPtr rebuild(const QByteArray &lines)
{
    std::vector<DirNodePtr> open;
    for (const QByteArray &line : lines.split('\n')) {
        const QByteArrayList p = line.split(' ');
        if (p.value(0) == "D" && p.size() == 9) {
            open.resize(size_t(p[1].toInt()));
            auto node = std::make_shared<DirNode>(QByteArray::fromHex(p[8]), open.empty() ? nullptr : open.back());
            if (!open.empty())
                open.back()->children.push_back(node);
            node->size = p[2].toLongLong();
            node->fileCount = p[3].toLongLong();
            node->smallFilesSize = p[4].toLongLong();
            node->readError = qint16(p[5].toInt());
            node->partlyRead = p[6] == "1";
            node->unreadableBelow = p[7].toInt();
            open.push_back(node);
        } else if (p.value(0) == "F" && p.size() == 3 && !open.empty()) {
            Trees::file(open.back(), QByteArray::fromHex(p[2]), p[1].toLongLong());
        }
    }
    return open.empty() ? nullptr : Trees::result(open.front());
}

ScanResultPtr sampleTree()
{
    auto root = std::make_shared<DirNode>("/sample");
    auto photos = Trees::folder(root, "photos", 0);
    Trees::file(photos, "a.jpg", 3 * GB);
    auto deeper = Trees::folder(photos, "deeper", 0);
    Trees::file(deeper, "b.jpg", 10);
    Trees::folder(root, "music", 2 * GB);
    Trees::file(root, "notes.txt", 100);
    Trees::settle(root);
    return Trees::result(root);
}

} // namespace

class TestSpaceModel : public QObject
{
    Q_OBJECT

    QTemporaryDir m_prefsDir;

private slots:
    void initTestCase() { Prefs::registerDefaults(); }
    void init()
    {
        Prefs::useFile(
            m_prefsDir.filePath(QStringLiteral("prefs-%1.ini").arg(QString::fromLatin1(QTest::currentTestFunction()))));
    }
    void cleanupTestCase() { Prefs::useFile({}); }

    // The welcome picture itself is TestTiles' business.
    void welcomeBeforeAnyScan()
    {
        AppState state;
        SpaceModel model;
        model.setState(&state);
        QCOMPARE(model.mode(), SpaceView::Mode::welcome);
        QVERIFY(model.data(model.index(2), SpaceModel::IsPlaceholderRole).toBool());
        QVERIFY(!model.emptyVisible() && !model.smallRowVisible());
    }

    void plainClickEntersDoubleClickOnlyOnce()
    {
        Fixture f(sampleTree());
        QCOMPARE(f.model.mode(), SpaceView::Mode::results);
        QCOMPARE(f.names(), (QStringList{"photos", "music", "notes.txt"}));
        QCOMPARE(f.model.subtitle(), u"Scanned /sample in 3s"_qs);

        QSignalSpy reset(&f.model, &QAbstractItemModel::modelReset);
        f.model.tap(f.row(u"photos"_qs), Qt::NoModifier, 1, true);
        QCOMPARE(f.model.crumbs(), (QStringList{"sample", "photos"}));
        QCOMPARE(reset.size(), 1); // a new folder starts at the top
        // The second click of the double-click lands on "a.jpg" or "deeper":
        // dropped.
        f.clock += 0.5;
        f.model.tap(f.row(u"deeper"_qs), Qt::NoModifier, 2, true);
        QCOMPARE(f.model.stack().size(), size_t(1));

        // A click just after another navigation is held back.
        f.model.goBack(1, false);
        QVERIFY(f.model.stack().empty());
        f.clock += 0.05;
        f.model.tap(f.row(u"photos"_qs), Qt::NoModifier, 1, true); // a key counts as navigation too
        QVERIFY(f.model.stack().empty());
        f.clock += 0.4;
        f.model.tap(f.row(u"photos"_qs), Qt::NoModifier, 1, true);
        QCOMPARE(f.model.stack().size(), size_t(1));
        f.clock += 0.4; // the timings themselves are NavigationGuard's, in TestTileText
        f.model.tap(f.row(u"deeper"_qs), Qt::NoModifier, 1, true);
        QCOMPARE(f.model.stack().size(), size_t(2));

        // Back by mouse is held back too; the breadcrumb is not.
        f.model.goBack(1, true);
        QCOMPARE(f.model.stack().size(), size_t(2));
        f.model.goToCrumb(-1);
        QVERIFY(f.model.stack().empty());
        QVERIFY(!f.model.canGoBack());
    }

    // A saved scan took no time here: its root says what it is, and the header
    // follows when one replaces a walk and a walk replaces it again.
    void savedScanHeader()
    {
        Fixture f(sampleTree());
        const QByteArray saved = TestMain::home() + "/projects.json";
        QFile file(QFile::decodeName(saved));
        QVERIFY(file.open(QIODevice::WriteOnly));
        // ncdu's format, written with single quotes for legibility.
        const QByteArray json = "[1,2,{'progname':'test','progver':'1','timestamp':1700000000},[{'name':'" +
                                TestMain::home() +
                                "/Projects'},[{'name':'web'},{'name':'app.js','asize':2000,'dsize':4096}]]]";
        file.write(QByteArray(json).replace('\'', '"'));
        file.close();

        QSignalSpy folder(&f.model, &SpaceModel::folderChanged);
        f.state.openSavedScan(saved);
        QTRY_VERIFY(f.state.isSavedScan() && !f.state.isScanning());
        QVERIFY(!folder.isEmpty());
        QCOMPARE(f.model.subtitle(), u"Saved scan of ~/Projects"_qs);
        f.model.tap(f.row(u"web"_qs), Qt::NoModifier, 1, true);
        QCOMPARE(f.model.subtitle(), u"~/Projects/web"_qs);

        folder.clear();
        QSignalSpy walked(&f.state, &AppState::resultChanged);
        f.state.scan("/sample");
        QVERIFY(walked.wait(5000));
        QVERIFY(!folder.isEmpty());
        QCOMPARE(f.model.subtitle(), u"Scanned /sample in 3s"_qs);
    }

    void modifiedClickSelectsWithoutEntering()
    {
        Fixture f(sampleTree());
        f.model.tap(f.row(u"photos"_qs), Qt::ControlModifier, 1, true);
        QVERIFY(f.model.stack().empty());
        QVERIFY(f.state.queue()->contains("/sample/photos"));
        QCOMPARE(f.state.queue()->items().first().kind, CleanItem::Kind::folder);
        QVERIFY(f.model.data(f.model.index(f.row(u"photos"_qs)), SpaceModel::IncludesRole).toBool());
        QVERIFY(f.model.waterLevel() > 0.5);
        // A repeat does not toggle back.
        f.model.tap(f.row(u"photos"_qs), Qt::ShiftModifier, 2, true);
        QVERIFY(f.state.queue()->contains("/sample/photos"));
        f.model.tap(f.row(u"photos"_qs), Qt::ShiftModifier, 1, true);
        QVERIFY(f.state.queue()->isEmpty());
        QCOMPARE(f.model.waterLevel(), 0.12);

        // Inside a selected folder the tiles read as inherited.
        f.model.toggle(f.row(u"photos"_qs));
        f.model.tap(f.row(u"photos"_qs), Qt::NoModifier);
        QVERIFY(f.model.data(f.model.index(0), SpaceModel::InheritedRole).toBool());
        QVERIFY(f.model.data(f.model.index(0), SpaceModel::HelpRole).toString().contains(u"“photos” is selected"_qs));
    }

    void plainClickOnAFilePreviews()
    {
        Fixture f(sampleTree());
        QSignalSpy previews(&f.model, &SpaceModel::previewRequested);
        f.model.tap(f.row(u"notes.txt"_qs), Qt::NoModifier, 1, true);
        QCOMPARE(previews.size(), 1);
        QCOMPARE(previews.first().first().toMap().value(u"name"_qs).toString(), u"notes.txt"_qs);
    }

    void protectedItemsStay()
    {
        auto root = std::make_shared<DirNode>("/");
        Trees::folder(root, "usr", 10);
        Trees::settle(root);
        Fixture f(Trees::result(root));
        QSignalSpy toasts(&f.state, &AppState::toastChanged);
        f.model.toggle(0);
        QCOMPARE(toasts.size(), 1);
        QVERIFY(f.state.toast()->message.startsWith(u"“usr” stays: "_qs));
        QVERIFY(f.state.queue()->isEmpty());
        QVERIFY(f.model.data(f.model.index(0), SpaceModel::LockedRole).toBool());
        // Space on the focused tile goes to the queue directly; hovering
        // gives no tile to it.
        f.model.hover(0, true);
        QVERIFY(!f.model.spaceKey());
        f.model.focusTile(0);
        QVERIFY(f.model.spaceKey());
        QCOMPARE(toasts.size(), 1);
    }

    // The keys on the focused tile, and where the focus goes when the folder
    // or the rows change.
    void keyboardFocus()
    {
        Fixture f(sampleTree());
        QSignalSpy moved(&f.model, &SpaceModel::focusRowChanged);
        QCOMPARE(f.model.focusRow(), -1);
        QVERIFY(!f.model.keyPress(0, Qt::Key_Escape, Qt::NoModifier, 4)); // at the root: not ours
        QVERIFY(f.model.keyPress(0, Qt::Key_Right, Qt::NoModifier, 4));
        QCOMPARE(f.name(f.model.focusRow()), u"music"_qs);
        QVERIFY(f.model.keyPress(1, Qt::Key_End, Qt::NoModifier, 4));
        QCOMPARE(f.name(f.model.focusRow()), u"notes.txt"_qs);
        QCOMPARE(moved.size(), 2);

        // Space selects the focused tile, whatever the pointer is over.
        f.model.hover(f.row(u"photos"_qs), true);
        QVERIFY(f.model.keyPress(f.model.focusRow(), Qt::Key_Space, Qt::NoModifier, 4));
        QVERIFY(f.state.queue()->contains("/sample/notes.txt"));
        QVERIFY(!f.state.queue()->contains("/sample/photos"));

        // The focused tile keeps the focus when the rows are sorted anew.
        f.model.setSortText(u"name"_qs);
        QCOMPARE(f.names(), (QStringList{"music", "notes.txt", "photos"}));
        QCOMPARE(f.name(f.model.focusRow()), u"notes.txt"_qs);
        // Filtered away: the tile now in its place has it.
        f.model.setFilterText(u"folders"_qs);
        QCOMPARE(f.name(f.model.focusRow()), u"photos"_qs);
        f.model.setFilterText(u"all"_qs);
        QCOMPARE(f.name(f.model.focusRow()), u"photos"_qs);

        // Return opens a folder at once (keys are not held back) and the focus
        // goes to its first tile; back, to the tile of the folder left.
        QVERIFY(f.model.keyPress(f.row(u"photos"_qs), Qt::Key_Return, Qt::NoModifier, 4));
        QCOMPARE(f.model.crumbs(), (QStringList{"sample", "photos"}));
        QCOMPARE(f.model.focusRow(), 0);
        QVERIFY(f.model.keyPress(0, Qt::Key_Right, Qt::NoModifier, 4));
        QVERIFY(f.model.keyPress(f.model.focusRow(), Qt::Key_Return, Qt::NoModifier, 4));
        QCOMPARE(f.model.crumbs(), (QStringList{"sample", "photos", "deeper"}));
        QVERIFY(f.model.keyPress(0, Qt::Key_Backspace, Qt::NoModifier, 4));
        QCOMPARE(f.name(f.model.focusRow()), u"deeper"_qs);
        // Up from two levels by the breadcrumb: the tile that leads back down.
        QVERIFY(f.model.keyPress(f.model.focusRow(), Qt::Key_Return, Qt::NoModifier, 4));
        f.model.goToCrumb(-1);
        QCOMPARE(f.name(f.model.focusRow()), u"photos"_qs);

        // The tile's name for screen readers carries its share of the folder.
        const QString spoken =
            f.model.data(f.model.index(f.row(u"music"_qs)), SpaceModel::AccessibleNameRole).toString();
        QVERIFY2(spoken.startsWith(u"music, "_qs) && spoken.contains(u"40% of this folder"_qs), qPrintable(spoken));
    }

    void hoverBookkeeping()
    {
        Fixture f(sampleTree());
        const int builds = f.model.memo().builds;
        f.model.hover(0, true);
        f.model.hover(1, true); // entered the next before leaving the last
        f.model.hover(0, false);
        QCOMPARE(f.model.hoveredText(), u"/sample/music"_qs);
        f.model.hover(1, false);
        QVERIFY(f.model.hoveredText().isEmpty());
        QCOMPARE(f.model.memo().builds, builds); // hover never rebuilds
    }

    void pagingAndFilters()
    {
        auto root = std::make_shared<DirNode>("/big");
        for (int i = 0; i < 1000; ++i)
            Trees::file(root, "f" + QByteArray::number(i) + ".txt", 1000 + i);
        Trees::settle(root);
        Fixture f(Trees::result(root));
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        const int builds = f.model.memo().builds;
        QCOMPARE(f.model.rowCount(), 120);
        QCOMPARE(f.model.showingText(), u"Showing 120 of 1,000 · more load as you scroll"_qs);
        f.model.loadMore();
        f.model.loadMore();
        QCOMPARE(f.model.rowCount(), 360);
        QCOMPARE(f.model.memo().builds, builds); // paging never rebuilds
        f.model.setFilterText(u"files"_qs);
        QCOMPARE(f.model.shown(), 120);
        QCOMPARE(f.model.rowCount(), 120);
        for (int i = 0; i < 9; ++i)
            f.model.loadMore();
        QCOMPARE(f.model.rowCount(), 1000);
        QVERIFY(f.model.showingText().isEmpty());
        f.model.chooseFilter(u"files"_qs); // the chip that is on: back to all
        QCOMPARE(f.model.filter(), ExplorerFilter(ExplorerFilter::all));

        f.model.setFilterText(u"selected"_qs);
        QVERIFY(f.model.emptyVisible());
        QCOMPARE(f.model.emptyText(), u"No selected in this folder."_qs);
        f.model.setSearch(u"zzz"_qs);
        QCOMPARE(f.model.emptyText(), u"Nothing here is named like “zzz”."_qs);
        f.model.showEverything();
        QCOMPARE(f.model.rowCount(), 120);
        QVERIFY(f.model.search().isEmpty());
    }

    void layoutPersists()
    {
        SpaceModel().setLayoutText(u"list"_qs);
        SpaceModel again;
        QCOMPARE(again.layout(), ExplorerLayout(ExplorerLayout::list));
        Prefs::setValue(Prefs::spaceLayout, u"garbage"_qs);
        SpaceModel fallback;
        QCOMPARE(fallback.layout(), ExplorerLayout(ExplorerLayout::icons));
    }

    void looseSmallFiles()
    {
        QTemporaryDir dir;
        const QByteArray path = QFile::encodeName(dir.path());
        auto write = [&](const char *name, int bytes) {
            QFile file(dir.filePath(QString::fromLatin1(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(bytes, 'x'));
        };
        write("big.bin", 9000);
        write("tiny.txt", 10);
        write(".hidden", 10);
        QVERIFY(QFile::link(dir.filePath(u"tiny.txt"_qs), dir.filePath(u"link"_qs)));
        QVERIFY(QDir(dir.path()).mkdir(u"sub"_qs));

        // What a scan would have summed for the loose files: the link's own
        // blocks and the tiny file's, the hidden one left out.
        const auto allocated = [&](const char *name) {
            struct stat st;
            return ::lstat((path + '/' + name).constData(), &st) == 0 ? qint64(st.st_blocks) * 512 : -1;
        };
        auto root = std::make_shared<DirNode>(path);
        Trees::folder(root, "sub", 4096);
        Trees::file(root, "big.bin", 12288);
        root->smallFilesSize = allocated("tiny.txt") + allocated("link");
        QVERIFY(root->smallFilesSize > 0);
        Trees::settle(root);
        Fixture f(Trees::result(root));
        QVERIFY(f.model.smallRowVisible());
        QVERIFY(f.model.smallRowText().startsWith(u"Scroll to load "_qs));

        // Not under the folders filter.
        f.model.setFilterText(u"folders"_qs);
        QVERIFY(!f.model.smallRowVisible());
        f.model.setFilterText(u"all"_qs);

        Prefs::setValue(Prefs::skipHiddenFiles, true);
        QSignalSpy loaded(&f.model, &SpaceModel::smallFilesLoaded);
        f.model.loadSmallFiles();
        QVERIFY(f.model.smallLoading());
        QVERIFY(f.model.smallRowText().startsWith(u"Loading "_qs));
        f.model.loadSmallFiles(); // already under way
        QVERIFY(loaded.wait(5000));
        QCOMPARE(loaded.size(), 1);
        QVERIFY(!f.model.smallRowVisible());
        QStringList names = f.names();
        names.sort();
        QCOMPARE(names, (QStringList{"big.bin", "link", "sub", "tiny.txt"}));
        const int tiny = f.row(u"tiny.txt"_qs);
        QVERIFY(!f.model.data(f.model.index(tiny), SpaceModel::CanOpenRole).toBool());
        QVERIFY(f.model.data(f.model.index(tiny), SpaceModel::CanPreviewRole).toBool());
        f.model.toggle(tiny);
        QCOMPARE(f.state.queue()->items().first().kind, CleanItem::Kind::file);

        // A folder whose loose files are gone: their sum stays, as a row that
        // no longer offers to list them, so the folder's figure adds up.
        auto sub = f.state.result()->root->children.front();
        sub->smallFilesSize = 4096;
        f.model.tap(f.row(u"sub"_qs), Qt::NoModifier, 1, false);
        QVERIFY(f.model.smallRowVisible());
        QVERIFY(f.model.smallRowLoadable());
        f.model.loadSmallFiles();
        QVERIFY(loaded.wait(5000));
        QVERIFY(f.model.smallFiles().contains(sub->path()));
        QVERIFY(f.model.smallFiles().value(sub->path()).isEmpty());
        QVERIFY(f.model.smallRowVisible());
        QVERIFY(!f.model.smallRowLoadable());
        QCOMPARE(f.model.smallRowText(), TileText::smallFilesRestLine(4096));
        QVERIFY(!f.model.emptyVisible());
        f.model.loadSmallFiles(); // nothing more to list
        QVERIFY(!f.model.smallLoading());
    }

    // Folders the scanning user may not read, scanned by an unprivileged child
    // (CI runs as root, who reads everything) and shown here.
    void unreadableFolders()
    {
        QTemporaryDir tmp;
        const QByteArray root = QFile::encodeName(tmp.path());
        const auto write = [](const QByteArray &path) {
            QDir().mkpath(QFile::decodeName(Paths::parentOf(path)));
            QFile file(QFile::decodeName(path));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(QByteArray(9000, 'x'));
        };
        for (const char *path :
             {"/readable/a.bin", "/locked/secret.bin", "/outer/b.bin", "/outer/inner/c.bin", "/blind/d.bin"})
            write(root + path);
        const QByteArrayList closed = {root + "/locked", root + "/outer/inner", root + "/blind"};
        ::chmod(root.constData(), 0755);
        ::chmod(closed[0].constData(), 0);
        ::chmod(closed[1].constData(), 0);
        ::chmod(closed[2].constData(), 0444); // listed, but nothing in it can be examined
        openPathForOthers(root);
        const ChildOutcome child = runUnprivileged([root] {
            ScanOptions options;
            options.minTrackedSize = 1;
            const auto scan = [&](const QByteArray &at) {
                return flatten(DiskScanner::scan(at, options, 0, makeCancelToken(), {}));
            };
            return scan(root) + "=\n" + scan(root + "/locked");
        });
        for (const QByteArray &path : closed)
            ::chmod(path.constData(), 0755);
        QCOMPARE(child.status, 0);
        const QList<QByteArray> parts = child.output.split('=');
        QCOMPARE(parts.size(), 2);

        const QString denied = DirNode::errorText(EACCES);
        {
            Fixture f(rebuild(parts[0]));
            const auto role = [&](const char *name, int which) {
                return f.model.data(f.model.index(f.row(QString::fromLatin1(name))), which);
            };
            // The folder that couldn't be listed stands as a tile whose size is
            // unknown, not zero.
            QVERIFY(f.row(u"locked"_qs) >= 0);
            QVERIFY(role("locked", SpaceModel::UnreadableRole).toBool());
            QCOMPARE(role("locked", SpaceModel::SizeTextRole).toString(), u"Couldn't be read"_qs);
            QCOMPARE(role("locked", SpaceModel::KindLineRole).toString(), u"Couldn't be read · "_qs + denied);
            QVERIFY(role("locked", SpaceModel::HelpRole).toString().contains(denied));
            QCOMPARE(role("locked", SpaceModel::UnreadableCountRole).toInt(), 1);
            // A folder that holds one counts it; a partly read one is marked,
            // and shows what it read.
            QVERIFY(!role("outer", SpaceModel::UnreadableRole).toBool());
            QCOMPARE(role("outer", SpaceModel::UnreadableCountRole).toInt(), 1);
            QVERIFY(
                role("outer", SpaceModel::KindLineRole).toString().endsWith(u" · "_qs + TileText::unreadableCount(1)));
            QVERIFY(role("outer", SpaceModel::HelpRole).toString().contains(u"folders inside couldn't be read"_qs) ||
                    role("outer", SpaceModel::HelpRole).toString().contains(u"folder inside couldn't be read"_qs));
            QVERIFY(!role("blind", SpaceModel::UnreadableRole).toBool());
            QCOMPARE(role("blind", SpaceModel::UnreadableCountRole).toInt(), 1);
            QVERIFY(role("blind", SpaceModel::HelpRole).toString().contains(u"Only partly read: "_qs + denied));
            QCOMPARE(role("readable", SpaceModel::UnreadableCountRole).toInt(), 0);

            // The header counts them all and lists them with the reason.
            QCOMPARE(f.model.unreadableNotice(), u"3 folders couldn't be read"_qs);
            QStringList listed;
            for (const QVariant &v : f.model.unreadableFolders()) {
                const QVariantMap m = v.toMap();
                listed << m.value(u"path"_qs).toString().mid(tmp.path().size()) + u": "_qs +
                              m.value(u"reason"_qs).toString();
            }
            listed.sort();
            QCOMPARE(listed, (QStringList{u"/blind: Partly read: "_qs + denied, u"/locked: "_qs + denied,
                                          u"/outer/inner: "_qs + denied}));

            // Inside, the count is of what lies there.
            f.model.tap(f.row(u"outer"_qs), Qt::NoModifier, 1, false);
            QCOMPARE(f.model.unreadableFolders().size(), 1);
            QVERIFY(role("inner", SpaceModel::UnreadableRole).toBool());
            f.model.goBack(1, false);

            // Removing the folder takes it off the counts.
            const QByteArray locked = root + "/locked";
            f.model.toggle(f.row(u"locked"_qs), 1, false);
            QVERIFY(f.state.queue()->contains(locked));
            f.state.applyRemoval({locked}, {{locked, 0}});
            QCOMPARE(f.row(u"locked"_qs), -1);
            QCOMPARE(f.model.unreadableNotice(), u"2 folders couldn't be read"_qs);
            QCOMPARE(f.model.unreadableFolders().size(), 2);
        }
        {
            // Scanned directly, an unreadable folder says so, with the reason;
            // it isn't called empty, nor zero in size.
            const ScanResultPtr result = rebuild(parts[1]);
            QVERIFY(result);
            QVERIFY(result->root->isUnreadable());
            Fixture f(result);
            QCOMPARE(f.model.mode(), SpaceView::Mode::results);
            QVERIFY(f.model.emptyVisible());
            QCOMPARE(f.model.emptyTitle(), u"Couldn't read this folder"_qs);
            QVERIFY(f.model.emptyText().contains(denied));
            QVERIFY(!f.model.emptyText().contains(u"empty"_qs));
            QVERIFY(!f.model.emptyCanReset());
            QCOMPARE(f.model.currentSizeText(), u"Couldn't be read"_qs);
            QCOMPARE(f.model.currentFilesText(), denied);
            QCOMPARE(f.model.unreadableNotice(), TileText::unreadableNotice(1));
            // A search that finds nothing is still told as such.
            f.model.setSearch(u"x"_qs);
            QCOMPARE(f.model.emptyTitle(), u"Nothing matches"_qs);
            QVERIFY(f.model.emptyCanReset());
        }
    }

    // A page more adds its rows after the ones held, which stay as they are
    // unless a heavier row changes what they weigh.
    void pagingAppendsTheNextRows()
    {
        auto root = std::make_shared<DirNode>("/paged");
        for (int i = 0; i < 300; ++i)
            Trees::file(root, "f" + QByteArray::number(i) + ".txt", 1000 + (i * 37) % 300);
        Trees::settle(root);
        Fixture f(Trees::result(root));
        f.model.setSortText(u"name"_qs);
        const TileList &all = f.model.allTiles();
        qint64 heaviestHeld = 0;
        qint64 heaviestNext = 0;
        for (int i = 0; i < 120; ++i)
            heaviestHeld = std::max(heaviestHeld, all.bytes(i));
        for (int i = 120; i < 240; ++i)
            heaviestNext = std::max(heaviestNext, all.bytes(i));
        QSignalSpy inserted(&f.model, &QAbstractItemModel::rowsInserted);
        QSignalSpy changed(&f.model, &QAbstractItemModel::dataChanged);
        const int builds = f.model.memo().builds;
        f.model.loadMore();
        QCOMPARE(inserted.size(), 1);
        QCOMPARE(inserted[0][1].toInt(), 120);
        QCOMPARE(inserted[0][2].toInt(), 239);
        QCOMPARE(changed.isEmpty(), heaviestNext <= heaviestHeld);
        QCOMPARE(f.model.memo().builds, builds);
        QCOMPARE(f.model.rowCount(), 240);
        for (int i = 0; i < 240; ++i) {
            QCOMPARE(f.name(i), all[i].entry()->name);
            QCOMPARE(f.model.rowOf(all.id(i)), i);
        }
        QCOMPARE(f.name(0), u"f0.txt"_qs);
        QCOMPARE(f.name(2), u"f2.txt"_qs);
    }

    // In the demo every folder's figure is its tiles plus its small files,
    // which stand as a row of their own: they are not on disk to be listed.
    void demoFolderFiguresAddUp()
    {
        Fixture f(Demo::scanResult(0));
        f.state.setArguments({"sorvel-cleaner", "-demo"});
        QVERIFY(f.state.isDemo());
        std::vector<DirNodePtr> folders{f.state.result()->root};
        int withSmallFiles = 0;
        while (!folders.empty()) {
            const DirNodePtr node = folders.back();
            folders.pop_back();
            folders.insert(folders.end(), node->children.begin(), node->children.end());
            f.model.focus(node->path());
            QCOMPARE(f.model.currentNode(), node);
            qint64 shown = 0;
            for (const ExplorerTile &tile : f.model.allTiles())
                shown += tile.size();
            f.model.loadSmallFiles(); // nothing to read
            QVERIFY(!f.model.smallLoading());
            QCOMPARE(f.model.smallRowVisible(), node->smallFilesSize > 0);
            if (node->smallFilesSize > 0) {
                ++withSmallFiles;
                QVERIFY(!f.model.smallRowLoadable());
                QCOMPARE(f.model.smallRowText(), TileText::smallFilesRestLine(node->smallFilesSize));
            }
            QVERIFY2(shown + node->smallFilesSize == node->size, node->path().constData());
            QCOMPARE(f.model.currentSizeText(), Fmt::bytes(node->size));
        }
        QVERIFY(withSmallFiles > 10);
    }

    // Names that would fool the eye, on disk and scanned for real: each tile
    // reads on one line, in its own order, with its odd bytes shown, and a
    // click still selects the exact bytes.
    void oddNamesShowSafely()
    {
        QTemporaryDir dir;
        const QByteArray root = QFile::encodeName(dir.path());
        const QByteArray newline = "line\nbreak.txt";
        const QByteArray override = "photo\xe2\x80\xae"
                                    "gnp.exe"; // RLO: would read "photo" + "exe.png"
        const QByteArray invalid = "bad\xff\xfe.bin";
        const QByteArray hebrew = "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d"; // a right-to-left folder name
        for (const QByteArray &name : {newline, override, invalid}) {
            const QByteArray path = root + '/' + name;
            FILE *out = std::fopen(path.constData(), "wb");
            QVERIFY2(out, path.constData());
            std::fputs("contents", out);
            std::fclose(out);
        }
        QVERIFY(::mkdir((root + '/' + hebrew).constData(), 0755) == 0);
        FILE *inside = std::fopen((root + '/' + hebrew + "/x.txt").constData(), "wb");
        QVERIFY(inside);
        std::fputs("x", inside);
        std::fclose(inside);

        ScanOptions options;
        options.minTrackedSize = 1;
        const ScanResultPtr result = DiskScanner::scan(root, options, 1, makeCancelToken(), {});
        QVERIFY(result);
        Fixture f(result);
        QStringList names = f.names();
        names.sort();
        QStringList expected{u"bad\\xFF\\xFE.bin"_qs, u"line\\nbreak.txt"_qs, u"photo\\u202Egnp.exe"_qs,
                             QStringLiteral("\u2068\u05e9\u05dc\u05d5\u05dd\u2069")};
        expected.sort();
        QCOMPARE(names, expected);
        for (int row = 0; row < f.model.rowCount(); ++row) {
            const QModelIndex index = f.model.index(row);
            const QString help = f.model.data(index, SpaceModel::HelpRole).toString();
            QVERIFY2(!help.contains(QChar(0x202E)) && !help.contains(u"line\nbreak"_qs), qPrintable(help));
        }
        // The tooltip names the place as the tile does.
        const QString help =
            f.model.data(f.model.index(f.row(u"line\\nbreak.txt"_qs)), SpaceModel::HelpRole).toString();
        QVERIFY2(help.contains(u"line\\nbreak.txt"_qs), qPrintable(help));

        // Selecting by the shown name reaches the exact bytes.
        for (const QByteArray &name : {newline, override, invalid}) {
            f.model.toggle(f.row(Paths::toDisplay(name)));
            QVERIFY2(f.state.queue()->contains(root + '/' + name), name.constData());
        }
        f.model.toggle(f.row(Paths::toDisplay(hebrew)));
        QVERIFY(f.state.queue()->contains(root + '/' + hebrew));
    }

    void folderFocusOpensThePath()
    {
        Fixture f(sampleTree());
        f.state.setFolderFocus("/sample/photos/deeper");
        QVERIFY(f.state.folderFocus().isEmpty());
        QCOMPARE(f.model.crumbs(), (QStringList{"sample", "photos", "deeper"}));
        f.state.setFolderFocus("/sample/nowhere");
        QCOMPARE(f.model.stack().size(), size_t(2));
        f.state.setFolderFocus("/sample");
        QVERIFY(f.model.stack().empty());
    }

    void searchClearsWhenTheDepthChanges()
    {
        Fixture f(sampleTree());
        f.model.setFilterText(u"folders"_qs);
        f.model.setSearch(u"ph"_qs);
        QCOMPARE(f.names(), (QStringList{"photos"}));
        f.model.tap(0, Qt::NoModifier, 1, false);
        QVERIFY(f.model.search().isEmpty());
        QCOMPARE(f.model.filter(), ExplorerFilter(ExplorerFilter::folders));
        QCOMPARE(f.names(), (QStringList{"deeper"}));
    }
};

SORVEL_TEST(TestSpaceModel);
#include "tst_spacemodel.moc"
