#include "TestMain.h"

#include "explorer/RowDiff.h"
#include "explorer/SteamClean.h"

#include <QSignalSpy>

// What a removal does to the rows, and where the steamer goes.
class TestSteamClean : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Rows a removal takes go one run at a time; the others stay (the view
    // keeps their delegates and moves them into the gaps). A reordering
    // replaces everything past the first difference, as before.
    void rowsThatWentLeaveGaps()
    {
        const QList<QByteArray> before{"a", "b", "c", "d", "e", "f"};
        const QList<size_t> sigs(6, 1);
        RowDiff diff = RowDiff::between(before, sigs, {"a", "c", "f", "g"}, {1, 2, 1, 1}, false);
        QCOMPARE(diff.removed, (QList<std::pair<int, int>>{{1, 1}, {3, 4}}));
        QCOMPARE(diff.same, 3);                                       // a, c, f stay; g is inserted after them
        QCOMPARE(diff.changed, (QList<std::pair<int, int>>{{1, 1}})); // c shows something new

        diff = RowDiff::between(before, sigs, {"a", "c", "b"}, {1, 1, 1}, false);
        QCOMPARE(diff.removed, (QList<std::pair<int, int>>{{1, 5}}));
        QCOMPARE(diff.same, 1);
    }

    // Only tiles in view are visited, in reading order; the aim is the icon
    // (or 55 % along a row) and the steamer comes home when the grid's size
    // changes, but not while it works.
    void targetsAndHome()
    {
        SteamClean::Grid grid;
        grid.cellWidth = 100;
        grid.cellHeight = 140;
        grid.columns = 4;
        grid.contentY = 140; // the first row of tiles is scrolled away
        grid.viewport = QSizeF(400, 250);
        QList<QByteArray> ids;
        for (int i = 0; i < 16; ++i)
            ids << QByteArray::number(i);
        const QList<SteamClean::Target> targets = SteamClean::targets(ids, {"1", "6", "5", "9", "13", "14"}, grid);
        QList<QByteArray> visited;
        for (const SteamClean::Target &target : targets)
            visited << target.id;
        QCOMPARE(visited, (QList<QByteArray>{"5", "6", "9"}));
        QCOMPARE(targets.first().rect, QRectF(100, 0, 92, 132));
        QCOMPARE(SteamClean::aim(targets.first().rect, false), QPointF(146, 44));
        QCOMPARE(SteamClean::aim(QRectF(0, 100, 400, 48), true), QPointF(220, 124));
    }

    // A run visits every target, jets each, lets it go, then parks; the end
    // of the removal cuts it short and brings back what was not yet taken.
    void runAndEnd()
    {
        SteamClean steamer;
        steamer.park(QSizeF(800, 600));
        QCOMPARE(steamer.position(), QPointF(800 - 73.6, 600 - 58.4));
        const QList<SteamClean::Target> targets{{"a", QRectF(0, 0, 100, 130)}, {"b", QRectF(100, 0, 100, 130)}};
        steamer.start(targets, false);
        QVERIFY(steamer.cleaning());
        QCOMPARE(steamer.position(), SteamClean::aim(targets[0].rect, false) + SteamClean::fromAim);
        steamer.park(QSizeF(400, 300)); // busy: stays over the tile
        QCOMPARE(steamer.position(), SteamClean::aim(targets[0].rect, false) + SteamClean::fromAim);
        QTRY_VERIFY(steamer.jetting());
        QTRY_VERIFY(steamer.steamed().contains("a"));
        QTRY_VERIFY(steamer.steamed().contains("b"));
        QTRY_VERIFY(!steamer.cleaning());
        QVERIFY(!steamer.jetting());
        QCOMPARE(steamer.position(), SteamClean::home(QSizeF(400, 300)));

        steamer.end();
        QVERIFY(steamer.steamed().isEmpty());
        steamer.start(targets, false);
        QTRY_VERIFY(steamer.steamed().contains("a"));
        QSignalSpy cleaning(&steamer, &SteamClean::cleaningChanged);
        steamer.end();
        QVERIFY(steamer.steamed().isEmpty());
        QVERIFY(!steamer.cleaning());
        QTest::qWait(SteamClean::settle + SteamClean::aimJet + SteamClean::linger + 50);
        QVERIFY2(!steamer.steamed().contains("b"), "a visit went on after the removal ended");
    }
};

SORVEL_TEST(TestSteamClean);
#include "tst_steamclean.moc"
