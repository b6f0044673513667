// Time to build a selection of many items one by one, as clicks and shelf
// selections do, and to ask it whether rows are included.
#include "removal/CleanQueue.h"

#include <QCoreApplication>
#include <QtTest>

namespace {

QList<CleanItem> makeItems(int folders, int filesPerFolder)
{
    QList<CleanItem> items;
    for (int d = 0; d < folders; ++d) {
        for (int f = 0; f < filesPerFolder; ++f) {
            CleanItem i;
            i.id = "/srv/projects/p" + QByteArray::number(d) + "/build/out/file" + QByteArray::number(f) + ".o";
            i.name = QStringLiteral("file");
            i.size = 1000 + f;
            i.kind = CleanItem::Kind::file;
            items << i;
        }
    }
    return items;
}

} // namespace

class BenchQueue : public QObject
{
    Q_OBJECT

private slots:
    void addOneByOne_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("1000") << 1000;
        QTest::newRow("10000") << 10000;
        QTest::newRow("50000") << 50000;
    }

    void addOneByOne()
    {
        QFETCH(int, count);
        const QList<CleanItem> items = makeItems(count / 100, 100);
        QBENCHMARK
        {
            CleanQueue queue;
            for (const CleanItem &i : items)
                queue.add(i);
        }
    }

    // A folder arriving last swallows a hundred queued children.
    void folderSwallowsChildren()
    {
        const QList<CleanItem> items = makeItems(100, 100);
        CleanItem folder;
        folder.id = "/srv/projects/p50";
        folder.kind = CleanItem::Kind::folder;
        QBENCHMARK
        {
            CleanQueue queue;
            queue.add(items);
            queue.add(folder);
        }
    }

    void includesOnABigQueue()
    {
        CleanQueue queue;
        queue.add(makeItems(100, 100));
        const QByteArray probe = "/srv/projects/p99/build/out/file99.o/x";
        QBENCHMARK
        {
            for (int i = 0; i < 1000; ++i)
                (void)queue.includes(probe);
        }
    }
};

QTEST_GUILESS_MAIN(BenchQueue)
#include "bench_queue.moc"
