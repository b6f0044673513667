#include "TestMain.h"
#include "Trees.h"

#include "core/NameOrder.h"
#include "core/Platform.h"
#include "explorer/NameKey.h"
#include "explorer/SpaceView.h"
#include "removal/CleanQueue.h"

#include <QFile>
#include <QRandomGenerator>
#include <QStandardPaths>

#include <algorithm>

namespace {

using Condition = ExplorerTile::Condition;

ExplorerEntry entry(const QString &name, qint64 size, Risk::Level level = Risk::Level::normal,
                    const QString &artifact = {}, std::optional<FileCategory> category = std::nullopt,
                    bool isDirectory = false)
{
    ExplorerEntry e;
    e.id = "/t/" + name.toUtf8();
    e.name = name;
    e.size = size;
    e.isDirectory = isDirectory;
    e.artifactKind = artifact;
    e.category = category;
    e.risk.level = level;
    return e;
}

template <class Tiles>
QList<Condition> conditions(const Tiles &tiles)
{
    QList<Condition> out;
    for (const ExplorerTile &t : tiles)
        out << t.condition;
    return out;
}

template <class Tiles>
QStringList names(const Tiles &tiles)
{
    QStringList out;
    for (const ExplorerTile &t : tiles)
        out << (t.entry() ? t.entry()->name : QString::fromLatin1(t.id()));
    return out;
}

constexpr qint64 GB = 1'000'000'000;

// Names where the name order is easy to get wrong: case, runs of digits with
// and without leading zeros, longer than any integer, beside characters that
// sort below and above the digits, letters beyond ASCII and outside the BMP.
QStringList awkwardNames()
{
    return {u""_qs,
            u"a"_qs,
            u"A"_qs,
            u"a1"_qs,
            u"a01"_qs,
            u"A001b"_qs,
            u"a10"_qs,
            u"a9"_qs,
            u"a-1"_qs,
            u"a 1"_qs,
            u"a.1"_qs,
            u"a_1"_qs,
            u"ab"_qs,
            u"aB1"_qs,
            u"file2"_qs,
            u"File10"_qs,
            u"x0"_qs,
            u"x00"_qs,
            u"x000a"_qs,
            u"0"_qs,
            u"00"_qs,
            u"007"_qs,
            u"7"_qs,
            u"12a"_qs,
            u"12"_qs,
            u"1.5"_qs,
            u"1.10"_qs,
            u"a1b2"_qs,
            u"a1b10"_qs,
            u"a01b2"_qs,
            u"0x"_qs,
            u"0a"_qs,
            u"~"_qs,
            u"!"_qs,
            u"["_qs,
            u"{"_qs,
            u"/"_qs,
            u":"_qs,
            u"Ä"_qs,
            u"ä"_qs,
            u"é"_qs,
            u"e"_qs,
            u"z"_qs,
            u"ß"_qs,
            u"ẞ"_qs,
            u"Ω"_qs,
            u"ω"_qs,
            u"İ"_qs,
            u"ǅ"_qs,
            u"😀"_qs,
            u"a😀"_qs,
            u"a😀1"_qs,
            u"a\uFFFF"_qs,
            u"99999999999999999999999"_qs,
            u"100000000000000000000000"_qs,
            u"photo (2)"_qs,
            u"photo (10)"_qs,
            u"Photo(3)"_qs};
}

int sign(int v) { return (v > 0) - (v < 0); }

} // namespace

Q_DECLARE_METATYPE(Risk::Level)
Q_DECLARE_METATYPE(ExplorerTile::Condition)
Q_DECLARE_METATYPE(ExplorerEntry)

class TestTiles : public QObject
{
    Q_OBJECT

private slots:
    // The welcome picture: placeholders (their pattern is checked with the
    // discovering tail), a few of them grimy.
    void welcomePicture()
    {
        const QList<ExplorerTile> tiles = SpaceView::welcomeTiles();
        int marked = 0;
        for (const ExplorerTile &t : tiles) {
            QVERIFY(t.isPlaceholder());
            marked += t.condition != Condition::clean;
        }
        QVERIFY(marked > 0 && marked < tiles.size() / 2);
    }

    void discoveringTail_data()
    {
        QTest::addColumn<int>("found");
        QTest::addColumn<int>("placeholders");
        QTest::newRow("none") << 0 << 24;
        QTest::newRow("19") << 19 << 5;
        QTest::newRow("20") << 20 << 4;
        QTest::newRow("1000") << 1000 << 4;
    }

    void discoveringTail()
    {
        QFETCH(int, found);
        QFETCH(int, placeholders);
        ScanProgress progress;
        for (int i = 0; i < found; ++i)
            progress.discovered.append(
                {"/scan/e" + QByteArray::number(i), "e" + QByteArray::number(i), 10, i % 2 == 0, {}, false});
        progress.bytesScanned = 10 * found;
        const QList<ExplorerTile> tiles = SpaceView::discoveringTiles(progress);
        QCOMPARE(tiles.size(), found + placeholders);
        QSet<QByteArray> ids;
        for (int i = 0; i < tiles.size(); ++i) {
            ids.insert(tiles[i].id());
            QCOMPARE(tiles[i].isPlaceholder(), i >= found);
            if (i >= found) {
                QCOMPARE(tiles[i].seed, i);
                QCOMPARE(tiles[i].condition, Condition::clean);
                QCOMPARE(tiles[i].placeholder(), Placeholders::pattern[size_t(i % 24)]);
            } else {
                QCOMPARE(tiles[i].entry()->id, progress.discovered[i].path); // order of discovery
            }
        }
        QCOMPARE(ids.size(), tiles.size());
    }

    void discoveredEntriesTakeOverFields()
    {
        ScanProgress progress;
        progress.discovered.append({"/s/Movie.MKV", "Movie.MKV", 5, false, {}, true});
        progress.discovered.append({"/s/node_modules", "node_modules", 7, true, QStringLiteral("node_modules"), false});
        const QList<ExplorerTile> tiles = SpaceView::discoveringTiles(progress);
        const ExplorerEntry &movie = *tiles[0].entry();
        QCOMPARE(movie.category, std::optional<FileCategory>(FileCategory::video));
        QVERIFY(movie.measuring);
        QVERIFY(!movie.node);
        const ExplorerEntry &modules = *tiles[1].entry();
        QVERIFY(!modules.category);
        QCOMPARE(modules.risk.level, Risk::Level::safe); // build output
        QCOMPARE(tiles[1].condition, Condition::stained);
    }

    void grimeAndHeavy_data()
    {
        QTest::addColumn<ExplorerEntry>("entry");
        QTest::addColumn<qint64>("total");
        QTest::addColumn<Condition>("expected");
        using L = Risk::Level;
        const auto row = [](const char *tag, ExplorerEntry e, qint64 total, Condition expected) {
            QTest::newRow(tag) << e << total << expected;
        };
        const auto disk = std::optional<FileCategory>(FileCategory::diskImage);
        row("safe is grime", entry("x", 10, L::safe), 100, Condition::stained);
        row("normal artefact", entry("target", 2 * GB, L::normal, "Rust"), 2 * GB, Condition::stained);
        row("caution artefact is not", entry("target", 10, L::caution, "Rust"), 100, Condition::clean);
        row("Caches in any case, 2 GB, is stained, not heavy", entry("Caches", 2 * GB), 2 * GB, Condition::stained);
        row("logs at caution", entry("logs", 10, L::caution), 100, Condition::clean);
        row("disk image caution", entry("a.dmg", 10, L::caution, {}, disk), 100, Condition::stained);
        row("disk image danger can be heavy", entry("a.dmg", 2 * GB, L::danger, {}, disk), 2 * GB, Condition::bloated);
        row("1 GB below 15 % as floats", entry("big", GB), 6'666'666'667, Condition::clean);
        row("1 GB at 15 % as floats", entry("big", GB), 6'666'666'666, Condition::bloated);
        row("total 0: the floor decides", entry("big", GB), 0, Condition::bloated);
        row("total 0: below the floor", entry("big", GB - 1), 0, Condition::clean);
        ExplorerEntry measuring = entry("big", 5 * GB);
        measuring.measuring = true;
        row("measuring is never heavy", measuring, 5 * GB, Condition::clean);
    }

    void grimeAndHeavy()
    {
        QFETCH(ExplorerEntry, entry);
        QFETCH(qint64, total);
        QFETCH(Condition, expected);
        const QList<ExplorerTile> tiles = SpaceView::mark({entry}, total);
        QCOMPARE(tiles.size(), 1);
        QCOMPARE(tiles[0].condition, expected);
        QVERIFY(tiles[0].seed >= 0 && tiles[0].seed < 997);
    }

    void atMostThreeHeavy()
    {
        // Four of 20 % each plus grime larger than all of them: grime takes no
        // place among the three, and the first three in size order win.
        QList<ExplorerEntry> entries{entry("a", 5 * GB), entry("b", 5 * GB), entry("cache", 9 * GB), entry("c", 5 * GB),
                                     entry("d", 5 * GB)};
        const QList<ExplorerTile> tiles = SpaceView::mark(entries, 25 * GB);
        QCOMPARE(conditions(tiles), (QList<Condition>{Condition::bloated, Condition::bloated, Condition::stained,
                                                      Condition::bloated, Condition::clean}));
        QCOMPARE(names(tiles), (QStringList{"a", "b", "cache", "c", "d"})); // input order kept
    }

    void resultsJoinFoldersAndFiles()
    {
        auto root = std::make_shared<DirNode>("/r");
        Trees::folder(root, "empty", 0, 0);
        Trees::folder(root, "same", 100);
        Trees::file(root, "same.txt", 100);
        Trees::folder(root, "big", 300);
        Trees::file(root, "huge.mov", 500);
        Trees::settle(root);
        CleanQueue queue;
        TileMemo memo;
        const TileList &tiles = SpaceView::resultTiles(root, 0, {}, {}, queue, memo);
        // Size descending, folders before files at equal size; empty folder left out.
        QCOMPARE(names(tiles), (QStringList{"huge.mov", "big", "same", "same.txt"}));
        QVERIFY(tiles[1].entry()->node);
        QVERIFY(tiles[0].entry()->file);
        QCOMPARE(tiles[1].entry()->fileCount, std::optional<qint64>(1));
    }

    void filtersAndSorts_data()
    {
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("sort");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char *tag, const char *search, const char *filter, const char *sort,
                            const QStringList &expected) {
            QTest::newRow(tag) << QString::fromUtf8(search) << QString::fromUtf8(filter) << QString::fromUtf8(sort)
                               << expected;
        };
        row("all by size", "", "all", "size",
            {"Backup 10.dmg", "photos", "node_modules", "a2.txt", "A10.txt", "cache", "notes.md"});
        row("folders", "", "folders", "size", {"photos", "node_modules", "cache"});
        row("files", "", "files", "size", {"Backup 10.dmg", "a2.txt", "A10.txt", "notes.md"});
        row("grime", "", "stained", "size", {"Backup 10.dmg", "node_modules", "cache"});
        row("heavy", "", "bloated", "size", {"photos"});
        row("selected, exactly", "", "selected", "size", {"photos"});
        row("name, numbers by value", "", "all", "name",
            {"a2.txt", "A10.txt", "Backup 10.dmg", "cache", "node_modules", "notes.md", "photos"});
        row("kind: folders first, then categories, ties by size", "", "all", "kind",
            {"photos", "node_modules", "cache", "Backup 10.dmg", "a2.txt", "A10.txt", "notes.md"});
        row("search a, kind", "a", "all", "kind", {"cache", "Backup 10.dmg", "a2.txt", "A10.txt"});
        row("search is case-insensitive and untrimmed", "NOTES ", "all", "size", {});
        row("search NOTES", "NOTES", "all", "size", {"notes.md"});
    }

    void filtersAndSorts()
    {
        QFETCH(QString, search);
        QFETCH(QString, filter);
        QFETCH(QString, sort);
        QFETCH(QStringList, expected);

        auto root = std::make_shared<DirNode>("/data");
        auto photos = Trees::folder(root, "photos", 3 * GB);
        Trees::folder(root, "node_modules", 200)->artifactKind = QStringLiteral("node_modules");
        Trees::folder(root, "cache", 50);
        Trees::file(root, "Backup 10.dmg", 4 * GB);
        Trees::file(root, "a2.txt", 100);
        Trees::file(root, "A10.txt", 100);
        Trees::file(root, "notes.md", 10);
        Trees::settle(root);

        CleanQueue queue;
        CleanItem item = ExplorerEntry::fromNode(photos).cleanItem();
        queue.add(item);
        CleanItem inside;
        inside.id = "/data/photos/x.jpg"; // covered, not shown here anyway
        queue.add(inside);

        ExplorerQuery query{search, *ExplorerFilter::fromRawValue(filter), *ExplorerSort::fromRawValue(sort)};
        TileMemo memo;
        QCOMPARE(names(SpaceView::resultTiles(root, 0, {}, query, queue, memo)), expected);
    }

    void selectedFilterIgnoresCoveredItems()
    {
        auto root = std::make_shared<DirNode>("/d");
        auto sub = Trees::folder(root, "sub", 10);
        Trees::file(sub, "f.txt", 10);
        Trees::settle(root);
        CleanQueue queue;
        queue.add(ExplorerEntry::fromNode(root).cleanItem()); // covers sub
        TileMemo memo;
        QVERIFY(SpaceView::resultTiles(root, 0, {}, {{}, ExplorerFilter::selected, {}}, queue, memo).isEmpty());
    }

    void memoKeysOnlyWhatTheListDependsOn()
    {
        auto root = std::make_shared<DirNode>("/m");
        auto a = Trees::folder(root, "a", 10);
        Trees::file(root, "b.txt", 5);
        Trees::settle(root);
        CleanQueue queue;
        TileMemo memo;
        ExplorerQuery query;

        SpaceView::resultTiles(root, 1, {}, query, queue, memo);
        QCOMPARE(memo.builds, 1);
        SpaceView::resultTiles(root, 1, {}, query, queue, memo);
        QCOMPARE(memo.builds, 1);

        // Ticking under "all" leaves the memo valid.
        queue.add(ExplorerEntry::fromNode(a).cleanItem());
        SpaceView::resultTiles(root, 1, {}, query, queue, memo);
        QCOMPARE(memo.builds, 1);

        // Under "selected" the selection is part of the key.
        query.filter = ExplorerFilter::selected;
        QCOMPARE(SpaceView::resultTiles(root, 1, {}, query, queue, memo).size(), 1);
        QCOMPARE(memo.builds, 2);
        queue.remove(a->path());
        QCOMPARE(SpaceView::resultTiles(root, 1, {}, query, queue, memo).size(), 0);
        QCOMPARE(memo.builds, 3);
        QCOMPARE(SpaceView::key(root.get(), 1, {{}, ExplorerFilter::all, {}}, queue, 0).selection, size_t(0));

        // Revision, folder identity and the count of small files each rebuild.
        query.filter = ExplorerFilter::all;
        SpaceView::resultTiles(root, 1, {}, query, queue, memo);
        QCOMPARE(memo.builds, 4);
        SpaceView::resultTiles(root, 2, {}, query, queue, memo);
        QCOMPARE(memo.builds, 5);
        const QList<ExplorerEntry> small{ExplorerEntry::smallFile("/m/tiny.iso", 4096)};
        const TileList &withSmall = SpaceView::resultTiles(root, 2, small, query, queue, memo);
        QCOMPARE(memo.builds, 6);
        QCOMPARE(names(withSmall), (QStringList{"tiny.iso", "a", "b.txt"})); // sorted with the rest
        QCOMPARE(withSmall[0].condition, Condition::stained);                // a disk image: grime, never heavy
        SpaceView::resultTiles(a, 2, {}, query, queue, memo);
        QCOMPARE(memo.builds, 7);
    }

    void placeholdersNeverMatchOrOrder()
    {
        const ExplorerTile p{PlaceholderKind(PlaceholderKind::app), Condition::clean, 3};
        CleanQueue queue;
        QVERIFY(!SpaceView::matches(p, {}, queue));
        const ExplorerTile t = SpaceView::mark({entry("x", 1)}, 1)[0];
        for (const ExplorerSort s : ExplorerSort::allCases) {
            QVERIFY(!s.order(p, t));
            QVERIFY(!s.order(t, p));
        }
    }

    void kindOrderPutsUncategorisedLast()
    {
        QList<ExplorerTile> tiles =
            SpaceView::mark({entry("loose", 1), entry("doc.pdf", 1, Risk::Level::normal, {}, FileCategory::document),
                             entry("dir", 1, Risk::Level::normal, {}, std::nullopt, true)},
                            0);
        ExplorerSort(ExplorerSort::kind).sortTiles(tiles);
        QCOMPARE(names(tiles), (QStringList{"dir", "doc.pdf", "loose"}));
    }

    // Printable ASCII names have keys that order as the collator does; any
    // other name has none (its folder sorts on the collator's own keys).
    void nameKeysOrderAsTheNamesDo()
    {
        QStringList names;
        for (const QString &name : awkwardNames()) {
            QByteArray key;
            if (NameKey::append(key, name))
                names << name;
            else
                QVERIFY2(std::any_of(name.begin(), name.end(), [](QChar c) { return c.unicode() >= 0x7F; }),
                         qPrintable(name));
        }
        // Random names over an alphabet of letters, digits (zeros leading and
        // not), blanks and every kind of punctuation.
        const QString alphabet = u"aAbBzZ0001239 -_.~!([{}])#$%&'*+,/:;<=>?@\\^`|\""_qs;
        QRandomGenerator random(7);
        for (int i = 0; i < 400; ++i) {
            QString name;
            for (int n = int(random.bounded(1, 7)); n > 0; --n)
                name += alphabet[int(random.bounded(qsizetype(alphabet.size())))];
            names << name;
        }
        QList<QByteArray> keys;
        for (const QString &name : names) {
            QByteArray key;
            QVERIFY2(NameKey::append(key, name), qPrintable(name));
            keys << key;
        }
        for (qsizetype i = 0; i < names.size(); ++i)
            for (qsizetype j = 0; j < names.size(); ++j)
                QVERIFY2(sign(keys[i].compare(keys[j])) == sign(NameOrder::compare(names[i], names[j])),
                         qPrintable(names[i] + u" | "_qs + names[j]));
        QByteArray key;
        QVERIFY(!NameKey::append(key, u"track ٣"_qs));
        QVERIFY(!NameKey::append(key, u"caf\u00e9"_qs));
    }

    // The locale's collation: numbers by value, case ignored, a decomposed
    // letter where its composed form stands, letters of one alphabet together.
    void collation_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("numbers by value") << QStringList{u"file10"_qs, u"file2"_qs, u"File1"_qs}
                                          << QStringList{u"File1"_qs, u"file2"_qs, u"file10"_qs};
        QTest::newRow("decomposed beside composed")
            << QStringList{u"cafe\u0301 2"_qs, u"caff"_qs, u"caf\u00e9 1"_qs, u"cafe"_qs}
            << QStringList{u"cafe"_qs, u"caf\u00e9 1"_qs, u"cafe\u0301 2"_qs, u"caff"_qs};
        QTest::newRow("accents by letter, not by code")
            << QStringList{u"zebra"_qs, u"\u00c9t\u00e9"_qs, u"eagle"_qs, u"fig"_qs}
            << QStringList{u"eagle"_qs, u"\u00c9t\u00e9"_qs, u"fig"_qs, u"zebra"_qs};
    }

    void collation()
    {
        QFETCH(QStringList, names);
        QFETCH(QStringList, expected);
        auto root = std::make_shared<DirNode>("/n");
        qint64 size = 100;
        for (const QString &name : names)
            Trees::file(root, name.toUtf8(), size--);
        Trees::settle(root);
        CleanQueue queue;
        TileMemo memo;
        const ExplorerQuery byName{{}, ExplorerFilter::all, ExplorerSort::name};
        QCOMPARE(::names(SpaceView::resultTiles(root, 0, {}, byName, queue, memo)), expected);
    }

    // Search finds canonical equivalents, whichever form the name or the
    // typed text is in, with case folded.
    void searchByCanonicalEquivalence_data()
    {
        QTest::addColumn<QString>("search");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("composed finds both")
            << u"caf\u00e9"_qs << QStringList{u"Caf\u00e9 menu"_qs, u"cafe\u0301 bill"_qs};
        QTest::newRow("decomposed finds both")
            << u"cafe\u0301"_qs << QStringList{u"Caf\u00e9 menu"_qs, u"cafe\u0301 bill"_qs};
        QTest::newRow("capital accented")
            << u"CAF\u00c9"_qs << QStringList{u"Caf\u00e9 menu"_qs, u"cafe\u0301 bill"_qs};
        QTest::newRow("plain e is another letter") << u"cafe "_qs << QStringList{u"cafe notes"_qs};
    }

    void searchByCanonicalEquivalence()
    {
        QFETCH(QString, search);
        QFETCH(QStringList, expected);
        auto root = std::make_shared<DirNode>("/n");
        Trees::file(root, u"Caf\u00e9 menu"_qs.toUtf8(), 300);
        Trees::file(root, u"cafe\u0301 bill"_qs.toUtf8(), 200);
        Trees::file(root, "cafe notes", 100);
        Trees::settle(root);
        CleanQueue queue;
        TileMemo memo;
        const ExplorerQuery query{search, ExplorerFilter::all, ExplorerSort::size};
        QCOMPARE(::names(SpaceView::resultTiles(root, 0, {}, query, queue, memo)), expected);
    }

    // The name order of a folder equals sorting its size order by the names
    // themselves, stably: with keys, and with a name that has none.
    void nameOrderOfAFolder_data()
    {
        QTest::addColumn<QString>("extra");
        QTest::newRow("keys") << QString();
        QTest::newRow("a name without a key") << u"٣ sketches"_qs;
    }

    void nameOrderOfAFolder()
    {
        QFETCH(QString, extra);
        QStringList names = awkwardNames();
        names.removeAll(QString());
        names.removeAll(u"/"_qs);
        if (!extra.isEmpty())
            names << extra;
        auto root = std::make_shared<DirNode>("/n");
        for (qsizetype i = 0; i < names.size(); ++i) {
            const qint64 size = 100 + (i * 7) % 5; // ties on name and on size
            if (i % 4 == 0)
                Trees::folder(root, names[i].toUtf8(), size);
            else
                Trees::file(root, names[i].toUtf8(), size);
        }
        Trees::settle(root);
        CleanQueue queue;
        TileMemo memo;
        QStringList expected = ::names(SpaceView::resultTiles(root, 0, {}, {}, queue, memo));
        std::stable_sort(expected.begin(), expected.end(),
                         [](const QString &a, const QString &b) { return NameOrder::compare(a, b) < 0; });
        const ExplorerQuery byName{{}, ExplorerFilter::all, ExplorerSort::name};
        QCOMPARE(::names(SpaceView::resultTiles(root, 0, {}, byName, queue, memo)), expected);
    }

    // macOS names its user folders for the reader; on Linux a user folder is
    // called what it is on disk (user-dirs.dirs names it in the user's
    // language), so ~/Videos never reads "Movies" and tile and breadcrumb agree.
    void homeFoldersGetTheirDesktopNames()
    {
        auto home = std::make_shared<DirNode>(TestMain::home());
        auto docs = Trees::folder(home, "Documents", 10);
        auto videos = Trees::folder(home, "Videos", 10);
        auto other = Trees::folder(home, "src", 10);
        const ExplorerEntry e = ExplorerEntry::fromNode(docs);
        if (Platform::current() == Platform::macOS) {
            QCOMPARE(e.name, QStandardPaths::displayName(QStandardPaths::DocumentsLocation));
        } else {
            QCOMPARE(QStandardPaths::writableLocation(QStandardPaths::MoviesLocation),
                     QFile::decodeName(videos->path()));
            QCOMPARE(e.name, QStringLiteral("Documents"));
            QCOMPARE(ExplorerEntry::fromNode(videos).name, QStringLiteral("Videos"));
        }
        QCOMPARE(ExplorerEntry::fromNode(other).name, QStringLiteral("src"));
        QCOMPARE(e.cleanItem().kind, CleanItem::Kind::folder);
    }
};

SORVEL_TEST(TestTiles);
#include "tst_tiles.moc"
