#include "TestMain.h"

#include "BiggestShelves.h"
#include "FileShelfModel.h"
#include "ForgottenShelves.h"
#include "TwinShelfModel.h"
#include "TwinShelves.h"

#include "core/Prefs.h"
#include "removal/CleanQueue.h"
#include "state/AppState.h"

#include <QDateTime>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>

namespace {

constexpr double day = 86400;
// A fixed clock: 15 March 2026, noon UTC (the tests run in UTC).
const double now = double(QDateTime(QDate(2026, 3, 15), QTime(12, 0), Qt::UTC).toSecsSinceEpoch());

FileItem file(qint64 id, const char *path, qint64 size, double modifiedAgo = 400 * day, double accessedAgo = -1,
              FileCategory category = FileCategory::other, bool isPackage = false)
{
    FileItem f;
    f.id = id;
    f.path = path;
    f.name = f.path.mid(f.path.lastIndexOf('/') + 1);
    f.size = size;
    f.logicalSize = size;
    f.modified = now - modifiedAgo;
    f.accessed = now - (accessedAgo < 0 ? modifiedAgo : accessedAgo);
    f.category = category;
    f.isPackage = isPackage;
    return f;
}

QList<qint64> ids(const std::vector<FileItem> &files)
{
    QList<qint64> out;
    for (const FileItem &f : files)
        out << f.id;
    return out;
}

// A scan result holding exactly `files`, shown by a state that scans nothing.
ScanResultPtr resultOf(std::vector<FileItem> files)
{
    auto result = std::make_shared<ScanResult>();
    result->root = std::make_shared<DirNode>("/srv/ada");
    result->files = std::move(files);
    return result;
}

DuplicateGroup group(const char *id, std::vector<FileItem> files)
{
    DuplicateGroup g;
    g.id = QString::fromLatin1(id);
    g.size = files.empty() ? 0 : files.front().size;
    g.files = std::move(files);
    return g;
}

} // namespace

// The lists, orders and words of the shelves, and their models over a live state.
class ShelvesTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_prefs;

private Q_SLOTS:
    void initTestCase()
    {
        Prefs::registerDefaults();
        Prefs::useFile(m_prefs.filePath(QStringLiteral("prefs.ini")));
    }

    // The floor is inclusive, and a file changed recently is in use whatever
    // its access time says; the cutoff counts calendar months.
    void forgottenRules()
    {
        const std::vector<FileItem> files = {
            file(1, "/h/exact.mov", 10'000'000),
            file(2, "/h/below.mov", 9'999'999),
            file(3, "/h/edited-yesterday.mov", 50'000'000, 1 * day, 900 * day),
            file(4, "/h/read-yesterday.mov", 50'000'000, 900 * day, 1 * day),
            file(5, "/h/never-dated.mov", 20'000'000, now, now),
        };
        QCOMPARE(ids(ForgottenShelves::matches(files, 12, now, {}, FileSort::size)), (QList<qint64>{5, 1}));
        const double march31 = double(QDateTime(QDate(2026, 3, 31), QTime(12, 0), Qt::UTC).toSecsSinceEpoch());
        QCOMPARE(QDateTime::fromSecsSinceEpoch(qint64(ForgottenShelves::cutoff(1, march31)), Qt::UTC).date(),
                 QDate(2026, 2, 28));
        QCOMPARE(ForgottenShelves::detail(6), QStringLiteral("untouched for 6+ mo"));
        QCOMPARE(ForgottenShelves::detail(12), QStringLiteral("untouched for 1+ yr"));
        QCOMPARE(ForgottenShelves::detail(24), QStringLiteral("untouched for 2+ yr"));
    }

    // Every order is stable; names sort as people read numbers; "Last opened"
    // goes by the later of the two dates.
    void sortsAreStable()
    {
        std::vector<FileItem> files = {
            file(1, "/h/File10.txt", 5, 10 * day, 300 * day),
            file(2, "/h/file2.txt", 5, 200 * day, 2 * day),
            file(3, "/h/b.txt", 7, 50 * day),
            file(4, "/h/a.txt", 5, 50 * day),
        };
        FileSort(FileSort::size).sort(files);
        QCOMPARE(ids(files), (QList<qint64>{3, 1, 2, 4}));
        FileSort(FileSort::name).sort(files);
        QCOMPARE(ids(files), (QList<qint64>{4, 3, 2, 1}));
        FileSort(FileSort::opened).sort(files);
        QCOMPARE(ids(files), (QList<qint64>{4, 3, 1, 2}));
        FileSort(FileSort::modified).sort(files);
        QCOMPARE(ids(files), (QList<qint64>{2, 4, 3, 1}));
    }

    // Category, packages and a search over the whole path, in any case.
    void biggestFilters()
    {
        const std::vector<FileItem> files = {
            file(1, "/h/Movies/trip.mov", 9, 1, 1, FileCategory::video),
            file(2, "/h/Movies/Edit.app", 8, 1, 1, FileCategory::application, true),
            file(3, "/h/Docs/movies-list.txt", 7, 1, 1, FileCategory::document),
            file(4, "/h/Docs/cut.mov", 6, 1, 1, FileCategory::video),
        };
        BiggestShelves::Filters filters;
        filters.search = QStringLiteral("movies");
        QCOMPARE(ids(BiggestShelves::matches(files, filters)), (QList<qint64>{1, 2, 3}));
        filters.hidePackages = true;
        QCOMPARE(ids(BiggestShelves::matches(files, filters)), (QList<qint64>{1, 3}));
        filters.search.clear();
        filters.category = FileCategory::video;
        QCOMPARE(ids(BiggestShelves::matches(files, filters)), (QList<qint64>{1, 4}));
    }

    // Paging by 48 and when it starts over; chips that clear themselves; a
    // removal that leaves the rows in place.
    void pagingOnALiveState()
    {
        AppState state;
        std::vector<FileItem> files;
        for (int i = 0; i < 100; ++i)
            files.push_back(file(i + 1, QByteArray("/srv/ada/f" + QByteArray::number(i) + ".mov").constData(), 1000 - i,
                                 400 * day, -1, i % 2 ? FileCategory::video : FileCategory::audio));
        state.showResult("/srv/ada", resultOf(files));

        FileShelfModel shelf;
        shelf.setState(&state);
        QTRY_COMPARE(shelf.count(), 100);
        QCOMPARE(shelf.rowCount(), 48);
        QCOMPARE(shelf.moreText(), QStringLiteral("Show 48 more"));
        shelf.showMore();
        QCOMPARE(shelf.moreText(), QStringLiteral("Show 4 more"));
        shelf.showMore();
        QCOMPARE(shelf.rowCount(), 100);
        QVERIFY(shelf.moreText().isEmpty());
        QCOMPARE(shelf.data(shelf.index(0), FileShelfModel::WeightRole).toDouble(), 1.0);

        // Hiding packages keeps the count shown; a category brings it back to 48.
        shelf.showMore();
        shelf.setHidePackages(true);
        QCOMPARE(shelf.shown(), 144);
        shelf.chooseCategory(QStringLiteral("video"));
        QCOMPARE(shelf.shown(), 48);
        QTRY_COMPARE(shelf.count(), 50);
        QCOMPARE(state.largestCategory(), FileCategory(FileCategory::video));
        shelf.chooseCategory(QStringLiteral("video"));
        QCOMPARE(state.largestCategory(), std::nullopt);
        shelf.chooseCategory(QStringLiteral("audio"));
        shelf.chooseCategory(QString());
        QCOMPARE(state.largestCategory(), std::nullopt);
        QTRY_COMPARE(shelf.count(), 100);

        // Two files go: their rows leave and the others keep their place.
        QSignalSpy removed(&shelf, &QAbstractItemModel::rowsRemoved);
        QSignalSpy reset(&shelf, &QAbstractItemModel::modelReset);
        state.applyRemoval({"/srv/ada/f0.mov", "/srv/ada/f5.mov"}, {{"/srv/ada/f0.mov", 1000}});
        QTRY_COMPARE(shelf.count(), 98);
        QCOMPARE(removed.count(), 2);
        QCOMPARE(reset.count(), 0);
        QCOMPARE(shelf.rowCount(), 48);
        QCOMPARE(shelf.data(shelf.index(0), FileShelfModel::PathRole).toString(), QStringLiteral("/srv/ada/f1.mov"));
    }

    // Typing fast: each keystroke derives anew, and only the last list shows.
    void lateListsAreDropped()
    {
        AppState state;
        std::vector<FileItem> files;
        for (int i = 0; i < 20000; ++i)
            files.push_back(file(i + 1, QByteArray("/srv/ada/n" + QByteArray::number(i)).constData(), i));
        state.showResult("/srv/ada", resultOf(files));
        FileShelfModel shelf;
        shelf.setState(&state);
        for (const char *typed : {"n1", "n19", "n199", "n1999", "n19999"})
            shelf.setSearch(QString::fromLatin1(typed));
        QTRY_VERIFY(!shelf.deriving());
        QTest::qWait(50);
        QCOMPARE(shelf.count(), 1);
        QCOMPARE(shelf.subtitle(), QStringLiteral("1 file · 20 kB"));
    }

    // The forgotten shelf ignores the category and uses its own clock.
    void forgottenShelfModel()
    {
        AppState state;
        state.showResult("/srv/ada", resultOf({file(1, "/srv/ada/old.iso", 20'000'000, 200 * day),
                                               file(2, "/srv/ada/new.iso", 30'000'000, 20 * day)}));
        state.setLargestCategory(FileCategory::video);
        FileShelfModel shelf;
        shelf.setNow(now);
        shelf.setShelf(QStringLiteral("old"));
        shelf.setState(&state);
        QTRY_COMPARE(shelf.count(), 0);
        shelf.setMonths(6);
        QTRY_COMPARE(shelf.count(), 1);
        QCOMPARE(shelf.shelfDetail(), QStringLiteral("untouched for 6+ mo"));
        QCOMPARE(shelf.data(shelf.index(0), FileShelfModel::LineRole).toString(),
                 QStringLiteral("opened 6 months ago"));
        QCOMPARE(shelf.data(shelf.index(0), FileShelfModel::ItemRole).toMap().value(QStringLiteral("heat")).toDouble(),
                 0.35);
    }

    // The copy kept is the newest; of equally new ones the first; extras go by id.
    void extras()
    {
        const DuplicateGroup tie =
            group("a", {file(1, "/h/one.psd", 50, 10 * day), file(2, "/h/two.psd", 50, 10 * day)});
        QCOMPARE(TwinShelves::keptIndex(tie), 0);
        const QList<CleanItem> items = TwinShelves::extras(tie);
        QCOMPARE(items.size(), 1);
        QCOMPARE(items[0].id, QByteArray("/h/two.psd"));
        QCOMPARE(items[0].source, CleanItem::Source::files);
        QCOMPARE(items[0].heat, 0.55);

        // The same path twice under two ids: only the other id is extra.
        DuplicateGroup same = group("b", {file(3, "/h/x", 5, 9 * day), file(4, "/h/x", 5, 1 * day)});
        QCOMPARE(TwinShelves::keptIndex(same), 1);
        QCOMPARE(TwinShelves::extras(same).size(), 1);
        QVERIFY(TwinShelves::extras(group("c", {})).isEmpty());
    }

    // Whole groups pass the search; "Most copies" ranks equal counts by waste.
    void twinGroups()
    {
        const std::vector<DuplicateGroup> groups = {
            group("small", {file(1, "/h/Movies/a", 10), file(2, "/h/b", 10), file(3, "/h/c", 10)}),
            group("big", {file(4, "/h/d", 90), file(5, "/h/e", 90), file(6, "/h/f", 90)}),
            group("pair", {file(7, "/h/Zed", 500), file(8, "/h/Movies/g", 500)}),
        };
        const auto named = [](const std::vector<const DuplicateGroup *> &list) {
            QStringList out;
            for (const DuplicateGroup *g : list)
                out << g->id;
            return out;
        };
        QCOMPARE(named(TwinShelves::groups(groups, {}, TwinSort::extra)), (QStringList{"pair", "big", "small"}));
        QCOMPARE(named(TwinShelves::groups(groups, {}, TwinSort::copies)), (QStringList{"big", "small", "pair"}));
        QCOMPARE(named(TwinShelves::groups(groups, {}, TwinSort::name)), (QStringList{"small", "big", "pair"}));
        const auto found = TwinShelves::groups(groups, QStringLiteral("movies"), TwinSort::extra);
        QCOMPARE(named(found), (QStringList{"pair", "small"}));
        QCOMPARE(found[1]->files.size(), size_t(3));
    }

    // The page's states in order, "Select every extra copy" under a search,
    // and a search with no scan that ends in "No twins".
    void twinShelfModel()
    {
        AppState state;
        TwinShelfModel twins;
        twins.setState(&state);
        QCOMPARE(twins.content(), QStringLiteral("neverRun"));
        QVERIFY(twins.canFind());
        twins.find();
        QTRY_COMPARE(twins.content(), QStringLiteral("noTwins"));
        QCOMPARE(twins.noTwinsText(), QStringLiteral("No identical files at or above 10 MB"));

        // Groups as a finished search leaves them.
        state.duplicates()->setSearch([](const std::vector<FileItem> &, const CancelTokenPtr &,
                                         const DuplicateEngine::ProgressCallback &, DuplicateEngine::Unreadable *) {
            return std::vector<DuplicateGroup>{
                group("one", {file(1, "/h/Movies/a", 9, 5 * day), file(2, "/h/b", 9, 1 * day)}),
                group("two", {file(3, "/h/c", 8, 5 * day), file(4, "/h/d", 8, 5 * day)}),
            };
        });
        twins.find();
        QTRY_COMPARE(twins.content(), QStringLiteral("list"));
        QCOMPARE(twins.rowCount(), 6);
        QCOMPARE(twins.subtitle(), QStringLiteral("2 sets of identical files · 17 bytes in extra copies"));
        QVERIFY(!twins.data(twins.index(1), TwinShelfModel::IsNewestRole).toBool());
        QVERIFY(twins.data(twins.index(2), TwinShelfModel::IsNewestRole).toBool());
        QCOMPARE(twins.data(twins.index(0), TwinShelfModel::TitleRole).toString(), QStringLiteral("b"));

        twins.setSearch(QStringLiteral("movies"));
        QSignalSpy added(state.queue(), &CleanQueue::itemsChanged);
        twins.selectAllExtras();
        QCOMPARE(added.count(), 1);
        QCOMPARE(state.queue()->count(), 1);
        QCOMPARE(state.queue()->items().first().id, QByteArray("/h/Movies/a"));
        twins.selectAllExtras();
        QCOMPARE(state.queue()->count(), 1);
        twins.setSearch({});
        twins.selectExtras(1);
        QCOMPARE(state.queue()->items().last().id, QByteArray("/h/d"));
    }

    // A run in progress shows its loader over old groups; "Stop" brings them back.
    void stopKeepsTheLastGroups()
    {
        AppState state;
        TwinShelfModel twins;
        twins.setState(&state);
        auto gate = std::make_shared<QSemaphore>();
        state.duplicates()->setSearch(
            [gate](const std::vector<FileItem> &, const CancelTokenPtr &token,
                   const DuplicateEngine::ProgressCallback &,
                   DuplicateEngine::Unreadable *) -> std::optional<std::vector<DuplicateGroup>> {
                if (gate->tryAcquire(1, 0))
                    return std::vector<DuplicateGroup>{group("one", {file(1, "/h/a", 9), file(2, "/h/b", 9)})};
                while (!token->isCancelled())
                    QThread::msleep(5);
                return std::nullopt;
            });
        gate->release();
        twins.find();
        QTRY_COMPARE(twins.content(), QStringLiteral("list"));
        twins.find();
        QCOMPARE(twins.content(), QStringLiteral("running"));
        QVERIFY(!twins.canSelectAll());
        twins.stop();
        QCOMPARE(twins.content(), QStringLiteral("list"));
        QCOMPARE(twins.rowCount(), 3);
    }
};

SORVEL_TEST(ShelvesTest);

#include "tst_shelves.moc"
