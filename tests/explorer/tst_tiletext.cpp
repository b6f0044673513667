#include "TestMain.h"

#include "explorer/NavigationGuard.h"
#include "explorer/TileKeys.h"
#include "explorer/TileText.h"

namespace {

ExplorerEntry entry(const QByteArray &path, bool isDirectory)
{
    ExplorerEntry e;
    e.id = path;
    e.name = QString::fromUtf8(path.mid(path.lastIndexOf('/') + 1));
    e.isDirectory = isDirectory;
    return e;
}

} // namespace

class TestTileText : public QObject
{
    Q_OBJECT

private slots:
    void kindLine_data()
    {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<bool>("isDirectory");
        QTest::addColumn<QString>("tweak");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char *tag, const char *path, bool isDirectory, const char *tweak, const char *text) {
            QTest::newRow(tag) << QByteArray(path) << isDirectory << QString::fromUtf8(tweak)
                               << QString::fromUtf8(text);
        };
        row("measuring beats all", "/x/a", true, "measuring,danger", "Measuring…");
        row("caution shows the title", "/x/a", true, "caution,artifact", "Look first");
        row("artefact", "/x/target", true, "artifact", "Rust · safe to sorvelise");
        row("folder with count", "/x/a", true, "count", "Folder · 1,234 files");
        row("folder with one file", "/x/a", true, "one", "Folder · 1 file");
        row("package folder", "/x/Foo.app", true, "", "App or bundle");
        row("category", "/x/a.mp3", false, "audio", "Audio");
        row("plain file", "/x/a.zzz", false, "", "File");
    }

    void kindLine()
    {
        QFETCH(QByteArray, path);
        QFETCH(bool, isDirectory);
        QFETCH(QString, tweak);
        QFETCH(QString, expected);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        ExplorerEntry e = entry(path, isDirectory);
        const QStringList tweaks = tweak.split(QLatin1Char(','));
        e.measuring = tweaks.contains(u"measuring"_qs);
        if (tweaks.contains(u"danger"_qs))
            e.risk = {Risk::Level::danger, u"Irreplaceable"_qs, u"Photos"_qs};
        if (tweaks.contains(u"caution"_qs))
            e.risk = {Risk::Level::caution, u"Look first"_qs, u"Why"_qs};
        if (tweaks.contains(u"artifact"_qs))
            e.artifactKind = u"Rust"_qs;
        if (tweaks.contains(u"count"_qs))
            e.fileCount = 1234;
        if (tweaks.contains(u"one"_qs))
            e.fileCount = 1;
        if (tweaks.contains(u"audio"_qs))
            e.category = FileCategory::audio;
        QCOMPARE(TileText::kindLine(e), expected);
    }

    void helpLines_data()
    {
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("file in icons") << "file"
                                       << QStringList{"~/f.txt", "Click to preview",
                                                      "Circle, ⌘-click or Space to select for cleaning"};
        QTest::newRow("folder with node in list, included")
            << "node,list,includes,inQueue"
            << QStringList{"~/f.txt", "Click to open", "Checkbox, ⌘-click or Space to deselect"};
        QTest::newRow("protected: lock, no circle")
            << "file,protected" << QStringList{"~/f.txt", "[lock.fill] Kept for a reason", "Click to preview"};
        QTest::newRow("contents only") << "node,protected,contentsOnly"
                                       << QStringList{
                                              "~/f.txt",
                                              "Selecting it sorvelises everything inside; the folder itself stays",
                                              "Click to open", "Circle, ⌘-click or Space to select for cleaning"};
        QTest::newRow("danger, heavy, covered")
            << "file,danger,bloated,covered,includes"
            << QStringList{"~/f.txt",
                           "[exclamationmark.triangle.fill] Irreplaceable: Photos",
                           "One of the heaviest things here",
                           "Click to preview",
                           "Included because “Pics” is selected. Untick to leave just this out",
                           "Circle, ⌘-click or Space to deselect"};
    }

    void helpLines()
    {
        QFETCH(QString, setup);
        QFETCH(QStringList, expected);
        const QStringList s = setup.split(QLatin1Char(','));
        ExplorerEntry e = entry(TestMain::home() + "/f.txt", !s.contains(u"file"_qs));
        if (s.contains(u"node"_qs))
            e.node = std::make_shared<DirNode>("f.txt");
        if (s.contains(u"danger"_qs))
            e.risk = {Risk::Level::danger, u"Irreplaceable"_qs, u"Photos"_qs};
        if (s.contains(u"caution"_qs))
            e.risk = {Risk::Level::caution, u"Look first"_qs, u"Why"_qs};
        if (s.contains(u"artifact"_qs))
            e.artifactKind = u"Rust"_qs;
        HelpFacts facts;
        facts.layout = s.contains(u"list"_qs) ? ExplorerLayout::list : ExplorerLayout::icons;
        facts.condition = s.contains(u"bloated"_qs) ? ExplorerTile::Condition::bloated : ExplorerTile::Condition::clean;
        facts.isProtected = s.contains(u"protected"_qs);
        facts.isContentsOnly = s.contains(u"contentsOnly"_qs);
        facts.protectedReason = u"Kept for a reason"_qs;
        facts.includes = s.contains(u"includes"_qs);
        facts.inQueue = s.contains(u"inQueue"_qs);
        if (s.contains(u"covered"_qs))
            facts.coveringName = u"Pics"_qs;
        const QList<HelpLine> lines = TileText::helpLines(e, facts);
        QStringList shown;
        for (const HelpLine &line : lines)
            shown << (line.symbol.isEmpty() ? line.text : u"["_qs + line.symbol + u"] "_qs + line.text);
        QCOMPARE(shown, expected);
        // No line leans on an emoji font.
        for (const QChar c : TileText::helpText(lines))
            QVERIFY(c.unicode() < 0x2190 || c.unicode() == 0x2318 || c == u'“' || c == u'”');
    }

    // In place of an empty grid: the search, else the filter's own word, "All"
    // among them.
    void emptyLines()
    {
        const auto line = [](const QString &search, ExplorerFilter::Value filter) {
            return TileText::emptyLine({search, filter, ExplorerSort::size});
        };
        QCOMPARE(line({}, ExplorerFilter::all), u"No all in this folder."_qs);
        QCOMPARE(line({}, ExplorerFilter::stained), u"No grime in this folder."_qs);
        QCOMPARE(line(u"cafe\u0301"_qs, ExplorerFilter::all), u"Nothing here is named like “cafe\u0301”."_qs);
    }

    void waterLevel()
    {
        QCOMPARE(TileText::waterLevel(0), 0.12);
        QCOMPARE(TileText::waterLevel(-5), 0.12);
        QVERIFY(TileText::waterLevel(1) > 0.12 && TileText::waterLevel(1'000'000'000) < 0.95);
        QCOMPARE(TileText::waterLevel(100'000'000'000), 0.95);
        QCOMPARE(TileText::waterLevel(std::numeric_limits<qint64>::max()), 0.95);
    }

    void compositionStrip()
    {
        // 99.9 % in one category: the others still get 2 points.
        const QList<double> widths = TileText::segmentWidths({999'000, 500, 500}, 1006);
        QCOMPARE(widths.size(), 3);
        QVERIFY(qAbs(widths[0] - 999'000.0 * 1000 / 1'000'000) < 1e-9);
        QCOMPARE(widths[1], 2.0);
        QCOMPARE(widths[2], 2.0);
        QVERIFY(TileText::segmentWidths({}, 500).isEmpty());

        // The legend: 6, else 4, 3 or 2 entries, the most that fit.
        const QList<double> entries{50, 50, 50, 50, 50, 50, 50, 50};
        QCOMPARE(TileText::legendCount(entries, 1000, 10), 6);
        QCOMPARE(TileText::legendCount(entries, 340, 10), 4); // six need 350
        QCOMPARE(TileText::legendCount(entries, 200, 10), 3);
        QCOMPARE(TileText::legendCount(entries, 100, 10), 2);
        QCOMPARE(TileText::legendCount({50, 50, 50}, 1000, 10), 3);
        QCOMPARE(TileText::legendCount({}, 1000, 10), 0);
    }

    void accessibleName()
    {
        ExplorerEntry photos = entry("/srv/data/Photos", true);
        photos.size = 120;
        QCOMPARE(TileText::accessibleName(photos, 1000), u"Photos, 120 bytes, 12% of this folder, Normal"_qs);
        // A verdict with a title says both; an unknown total leaves the share out.
        photos.risk = {Risk::Level::danger, u"Git repository"_qs, u"History"_qs};
        QCOMPARE(TileText::accessibleName(photos, 0), u"Photos, 120 bytes, Danger: Git repository"_qs);
        // A share never reads above the whole, even while the total lags behind.
        QVERIFY(TileText::accessibleName(photos, 60).contains(u", 100% of this folder,"_qs));
        photos.size = 0;
        photos.measuring = true;
        QVERIFY(TileText::accessibleName(photos, 60).startsWith(u"Photos, Measuring…, 0% of this folder"_qs));
    }

    // Ten tiles four to a line:  0 1 2 3 / 4 5 6 7 / 8 9.
    void tileKeys_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("action");
        QTest::addColumn<int>("to");
        using A = TileKeys::Action;
        const int none = int(Qt::NoModifier);
        QTest::newRow("right") << int(Qt::Key_Right) << none << 3 << 4 << int(A::move) << 4;
        QTest::newRow("right at the end") << int(Qt::Key_Right) << none << 9 << 4 << int(A::move) << 9;
        QTest::newRow("left at the start") << int(Qt::Key_Left) << none << 0 << 4 << int(A::move) << 0;
        QTest::newRow("down a line") << int(Qt::Key_Down) << none << 2 << 4 << int(A::move) << 6;
        QTest::newRow("down to a short line") << int(Qt::Key_Down) << none << 6 << 4 << int(A::move) << 9;
        QTest::newRow("down on the last line") << int(Qt::Key_Down) << none << 8 << 4 << int(A::move) << 8;
        QTest::newRow("up a line") << int(Qt::Key_Up) << none << 9 << 4 << int(A::move) << 5;
        QTest::newRow("up on the first line") << int(Qt::Key_Up) << none << 2 << 4 << int(A::move) << 2;
        QTest::newRow("list: down is next") << int(Qt::Key_Down) << none << 2 << 1 << int(A::move) << 3;
        QTest::newRow("list: up is previous") << int(Qt::Key_Up) << none << 2 << 1 << int(A::move) << 1;
        QTest::newRow("home") << int(Qt::Key_Home) << none << 6 << 4 << int(A::move) << 0;
        QTest::newRow("end") << int(Qt::Key_End) << none << 1 << 4 << int(A::move) << 9;
        QTest::newRow("return") << int(Qt::Key_Return) << none << 5 << 4 << int(A::open) << 5;
        QTest::newRow("keypad enter") << int(Qt::Key_Enter) << int(Qt::KeypadModifier) << 5 << 4 << int(A::open) << 5;
        QTest::newRow("space") << int(Qt::Key_Space) << none << 5 << 4 << int(A::toggle) << 5;
        QTest::newRow("escape") << int(Qt::Key_Escape) << none << 5 << 4 << int(A::back) << 5;
        QTest::newRow("backspace") << int(Qt::Key_Backspace) << none << 5 << 4 << int(A::back) << 5;
        QTest::newRow("alt+left") << int(Qt::Key_Left) << int(Qt::AltModifier) << 5 << 4 << int(A::back) << 5;
        // Chords are the window's shortcuts (Ctrl+Backspace reviews).
        QTest::newRow("ctrl+backspace") << int(Qt::Key_Backspace) << int(Qt::ControlModifier) << 5 << 4 << int(A::none)
                                        << -1;
        QTest::newRow("ctrl+right") << int(Qt::Key_Right) << int(Qt::ControlModifier) << 5 << 4 << int(A::none) << -1;
        QTest::newRow("a letter") << int(Qt::Key_A) << none << 5 << 4 << int(A::none) << -1;
        QTest::newRow("no such row") << int(Qt::Key_Right) << none << 10 << 4 << int(A::none) << -1;
    }

    void tileKeys()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(int, row);
        QFETCH(int, columns);
        QFETCH(int, action);
        QFETCH(int, to);
        const TileKeys::Outcome out = TileKeys::press(key, Qt::KeyboardModifiers(modifiers), row, 10, columns);
        QCOMPARE(int(out.action), action);
        QCOMPARE(out.row, to);
    }

    void repeatsAndTheNavigationGuard()
    {
        // The second click of a double-click never counts.
        QVERIFY(NavigationGuard::isRepeat(true, 2) && NavigationGuard::isRepeat(true, 3));
        QVERIFY(!NavigationGuard::isRepeat(true, 1) && !NavigationGuard::isRepeat(false, 2));

        NavigationGuard rules;
        QVERIFY(rules.acceptNavigation(10.0, true, 1));
        QVERIFY(!rules.acceptNavigation(10.2, true, 1));  // 0.2 s later by mouse: held back
        QVERIFY(!rules.acceptNavigation(10.3, true, 2));  // a repeat
        QVERIFY(rules.acceptNavigation(10.25, false, 1)); // keys are not held back
        QVERIFY(rules.acceptNavigation(10.61, true, 1));  // 0.36 s after the key
        QVERIFY(!rules.acceptNavigation(10.95, true, 1));
        QVERIFY(rules.acceptNavigation(11.0, true, 1));
    }
};

SORVEL_TEST(TestTileText);
#include "tst_tiletext.moc"
