#include "TestMain.h"

#include "ItemRowRules.h"
#include "RowClick.h"

#include <QSignalSpy>

namespace {

using Kind = CleanItem::Kind;

CleanItem item(const QByteArray &id, Kind kind, CleanItem::Source source = CleanItem::Source::space)
{
    CleanItem i;
    i.id = id;
    i.name = QString::fromUtf8(id.mid(id.lastIndexOf('/') + 1));
    i.size = 10;
    i.kind = kind;
    i.source = source;
    return i;
}

struct Spies {
    explicit Spies(RowClick &click)
        : toggle(&click, &RowClick::toggleRequested), leaveOut(&click, &RowClick::leaveOutRequested),
          open(&click, &RowClick::openRequested)
    {}
    QSignalSpy toggle;
    QSignalSpy leaveOut;
    QSignalSpy open;
};

} // namespace

class TestItemRow : public QObject
{
    Q_OBJECT

private slots:
    // Selected through a folder: a single click waits one interval and then
    // leaves the row out; nothing happens before.
    void delayedLeaveOut()
    {
        RowClick click;
        click.setInterval(300);
        Spies s(click);
        QElapsedTimer timer;
        timer.start();
        click.click(false, true, false);
        QVERIFY(click.hasPendingLeaveOut());
        QTest::qWait(150);
        QCOMPARE(s.leaveOut.size(), 0);
        QTRY_COMPARE(s.leaveOut.size(), 1);
        QVERIFY(timer.elapsed() >= 290);
        QCOMPARE(s.toggle.size(), 0);
        QCOMPARE(s.open.size(), 0);
    }

    // A plain row: each click of a double click toggles, so the selection ends
    // as it began; a third quick click is a first one again.
    void clickSequences_data()
    {
        QTest::addColumn<int>("clicks");
        QTest::addColumn<int>("toggles");
        QTest::addColumn<int>("opens");
        QTest::newRow("double") << 2 << 2 << 1;
        QTest::newRow("triple") << 3 << 3 << 1;
        QTest::newRow("quadruple") << 4 << 4 << 2;
    }

    void clickSequences()
    {
        QFETCH(int, clicks);
        QFETCH(int, toggles);
        QFETCH(int, opens);
        RowClick click;
        click.setInterval(10'000);
        Spies s(click);
        for (int i = 0; i < clicks; ++i)
            click.click(false, i % 2 == 1, i % 2 == 1); // selected itself after each odd toggle
        QCOMPARE(s.toggle.size(), toggles);
        QCOMPARE(s.open.size(), opens);
        QCOMPARE(s.leaveOut.size(), 0);
    }

    // With the queue behind it: a double click on a plain row leaves the
    // selection unchanged.
    void doubleClickKeepsSelection()
    {
        CleanQueue queue;
        const CleanItem file = item("/d/file", Kind::file);
        RowClick click;
        click.setInterval(10'000);
        connect(&click, &RowClick::toggleRequested, &queue, [&] {
            if (queue.contains(file.id))
                queue.remove(file.id);
            else
                queue.add(file);
        });
        QSignalSpy open(&click, &RowClick::openRequested);
        for (int i = 0; i < 2; ++i)
            click.click(false, queue.includes(file.id), queue.contains(file.id));
        QVERIFY(queue.isEmpty());
        QCOMPARE(open.size(), 1);
        // A slow second click is a first click.
        click.setInterval(0);
        click.click(false, queue.includes(file.id), queue.contains(file.id));
        QVERIFY(queue.contains(file.id));
    }

    void disabledTakesNoClick()
    {
        RowClick click;
        Spies s(click);
        click.click(true, false, false);
        click.click(true, true, false);
        QVERIFY(!click.hasPendingLeaveOut());
        QCOMPARE(s.toggle.size() + s.open.size() + s.leaveOut.size(), 0);
    }

    void helpText()
    {
        CleanQueue queue;
        const CleanItem folder = item("/d/photos", Kind::folder);
        const CleanItem inside = item("/d/photos/a.jpg", Kind::file);
        const auto none = [](const CleanItem &) { return Risk(); };
        const auto danger = [](const CleanItem &) {
            return Risk{Risk::Level::danger, QStringLiteral("Keys"), QStringLiteral("Lost for good")};
        };
        QCOMPARE(ItemRowRules::helpText(folder, queue, false, none),
                 QStringLiteral("photos\nClick to select for cleaning"));
        QCOMPARE(ItemRowRules::helpText(folder, queue, true, danger), QStringLiteral("photos\nKeys: Lost for good"));
        queue.add(folder);
        QCOMPARE(ItemRowRules::helpText(folder, queue, false, none), QStringLiteral("photos\nClick to deselect"));
        QCOMPARE(
            ItemRowRules::helpText(inside, queue, false, none),
            QStringLiteral("a.jpg\nIncluded because \u201cphotos\u201d is selected. Click to leave just this out"));
        // A junk item gets no risk line, even when its verdict is a danger.
        CleanItem junk = item("junk:/d/photos/x", Kind::junk);
        QCOMPARE(ItemRowRules::helpText(junk, queue, false, danger), QStringLiteral("x\nClick to select for cleaning"));
        QCOMPARE(ItemRowRules::accessibleLabel(true), QStringLiteral("Selected for cleaning. Activate to deselect."));
    }

    void selectionBarLine()
    {
        CleanQueue queue;
        QCOMPARE(ItemRowRules::sourcesLine(queue.bySource()), QString());
        queue.add(item("/a", Kind::file, CleanItem::Source::deepClean));
        queue.add(item("/b", Kind::file, CleanItem::Source::space));
        queue.add(item("/c", Kind::file, CleanItem::Source::space));
        QCOMPARE(ItemRowRules::sourcesLine(queue.bySource()), QStringLiteral("Space 2 · Deep Clean 1"));
        const double seed = ItemRowRules::evaporationSeed("/a");
        QVERIFY(seed >= 0 && seed < 1);
        QCOMPARE(ItemRowRules::evaporationSeed("/a"), seed);
    }
};

SORVEL_TEST(TestItemRow);
#include "tst_itemrow.moc"
