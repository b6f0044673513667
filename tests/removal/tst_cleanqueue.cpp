#include "TestMain.h"

#include "removal/CleanQueue.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>

#include <utility>

namespace {

using Kind = CleanItem::Kind;
using Source = CleanItem::Source;

CleanItem item(const QByteArray &id, Kind kind, Source source = Source::space, qint64 size = 10)
{
    CleanItem i;
    i.id = id;
    i.name = QString::fromUtf8(id);
    i.size = size;
    i.kind = kind;
    i.source = source;
    return i;
}

QByteArrayList ids(const CleanQueue &q)
{
    QByteArrayList out;
    for (const CleanItem &i : q.items())
        out << i.id;
    return out;
}

} // namespace

class TestCleanQueue : public QObject
{
    Q_OBJECT

private slots:
    // Each step adds "F" folder (Space), "f" file (Files), "a" artefact or "j"
    // junk (Deep Clean), then the id.
    void invariants_data()
    {
        QTest::addColumn<QByteArrayList>("steps");
        QTest::addColumn<QByteArrayList>("expected");
        QTest::newRow("folder swallows children across sources")
            << QByteArrayList{"f/a/b/c", "a/a/b/d", "F/a/bc", "jjunk:caches", "F/a/b", "a/a/b/d/e"}
            << QByteArrayList{"/a/bc", "junk:caches", "/a/b"};
        QTest::newRow("/a/bc is not below /a/b")
            << QByteArrayList{"F/a/b", "f/a/bc"} << QByteArrayList{"/a/b", "/a/bc"};
        QTest::newRow("files cover nothing") << QByteArrayList{"f/a/b", "f/a/b/c"} << QByteArrayList{"/a/b", "/a/b/c"};
        QTest::newRow("junk stands outside") << QByteArrayList{"jjunk:caches", "jjunk:caches/x", "F/", "F/etc"}
                                             << QByteArrayList{"junk:caches", "junk:caches/x", "/"};
        QTest::newRow("first item wins") << QByteArrayList{"f/x", "f/y", "F/x"} << QByteArrayList{"/x", "/y"};
        QTest::newRow("canonical equivalence")
            << QByteArrayList{"F/Users/ren\xc3\xa9", "F/Users/rene\xcc\x81", "f/Users/rene\xcc\x81/x"}
            << QByteArrayList{"/Users/ren\xc3\xa9"};
    }

    void invariants()
    {
        QFETCH(QByteArrayList, steps);
        QFETCH(QByteArrayList, expected);
        CleanQueue q;
        for (const QByteArray &step : steps) {
            const char k = step.front();
            const Kind kind = k == 'F' ? Kind::folder : k == 'f' ? Kind::file : k == 'a' ? Kind::artifact : Kind::junk;
            const Source source = k == 'F' ? Source::space : k == 'f' ? Source::files : Source::deepClean;
            q.add(item(step.mid(1), kind, source));
        }
        QCOMPARE(ids(q), expected);
    }

    void covering()
    {
        CleanQueue q;
        q.add(item("/a/b", Kind::folder));
        q.add(item("/f", Kind::file));
        q.add(item("junk:caches", Kind::junk, Source::deepClean));
        QVERIFY(q.includes("/a/b/c") && !q.contains("/a/b/c"));
        QCOMPARE(q.covering("/a/b/c/d")->id, QByteArray("/a/b"));
        QVERIFY(!q.covering("/a/b")); // not covered by itself
        QVERIFY(!q.covering("/f/x") && !q.includes("/a/bc") && !q.includes("junk:other"));
        // Adding what is there or covered says nothing.
        QSignalSpy spy(&q, &CleanQueue::itemsChanged);
        q.add(item("/a/b", Kind::folder, Source::files, 99));
        q.add(item("/a/b/x", Kind::file));
        QCOMPARE(spy.count(), 0);
        QCOMPARE(q.items().first().size, 10); // the first item to name an id wins
        QCOMPARE(q.items().first().source, Source(Source::space));
    }

    // Removing never reaches below an item, and the index forgets what went.
    void removing()
    {
        CleanQueue q;
        q.add(item("/a", Kind::folder));
        q.add(item("/b", Kind::file));
        q.add(item("/c", Kind::folder));
        QSignalSpy spy(&q, &CleanQueue::itemsChanged);
        q.remove("/a/x"); // only covered: no effect
        q.remove("/zzz");
        q.removeEvaporated({}, {});
        QCOMPARE(spy.count(), 0);
        q.remove("/a");
        q.removeEvaporated({"/zzz"}, {"/c"});
        QCOMPARE(spy.count(), 2);
        QCOMPARE(ids(q), QByteArrayList{"/b"});
        q.add(item("/a/x", Kind::file));
        q.add(item("/c/z", Kind::file));
        QCOMPARE(q.count(), 3);
    }

    void bySource()
    {
        CleanQueue q;
        QVERIFY(q.bySource().isEmpty());
        q.add(item("junk:caches", Kind::junk, Source::deepClean, 100));
        QCOMPARE(q.bySource(), (QList<CleanQueue::SourceSummary>{{Source::deepClean, 1, 100}}));
        q.add(item("/f1", Kind::file, Source::files, 7));
        q.add(item("/s1", Kind::folder, Source::space, 3));
        q.add(item("/f2", Kind::file, Source::files, 8));
        QCOMPARE(q.bySource(), (QList<CleanQueue::SourceSummary>{
                                   {Source::space, 1, 3}, {Source::files, 2, 15}, {Source::deepClean, 1, 100}}));
        QCOMPARE(q.totalSize(), 118);
    }

    // Adding a list at once agrees with adding one by one.
    void manyItemsAgree()
    {
        CleanQueue single;
        CleanQueue batch;
        QList<CleanItem> items;
        for (int d = 0; d < 100; ++d) {
            for (int f = 0; f < 100; ++f)
                items << item("/data/d" + QByteArray::number(d) + "/f" + QByteArray::number(f), Kind::file);
        }
        items << item("/data/d7", Kind::folder) << item("/data/d70", Kind::folder);
        for (const CleanItem &i : items)
            single.add(i);
        QSignalSpy spy(&batch, &CleanQueue::itemsChanged);
        batch.add(items);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(ids(single), ids(batch));
        QCOMPARE(single.count(), 10000 - 200 + 2);
        QVERIFY(single.includes("/data/d7/f3"));
    }

    void jsonRoundTrip_data()
    {
        QTest::addColumn<QByteArray>("id");
        QTest::addColumn<bool>("withSymbol");
        QTest::newRow("no symbol") << QByteArray("junk:caches") << false;
        QTest::newRow("invalid utf8 and newline") << QByteArray("/tmp/bad\xff\xfe\nname \"q\" \\") << true;
    }

    void jsonRoundTrip()
    {
        QFETCH(QByteArray, id);
        QFETCH(bool, withSymbol);
        CleanItem i = item(id, Kind::artifact, Source::deepClean, 1234567890123);
        i.name = QStringLiteral("Proj \u00b7 node_modules");
        i.heat = 0.6;
        if (withSymbol)
            i.symbolPath = id;
        const QByteArray json = i.toJson();
        const auto back = CleanItem::fromJson(json);
        QVERIFY2(back.has_value(), json.constData());
        QCOMPARE(*back, i);
        QCOMPARE(json.contains("symbolPath"), withSymbol);
    }

    void jsonRejects_data()
    {
        QTest::addColumn<QByteArray>("json");
        const QJsonObject good{{u"id"_qs, u"/a"_qs},     {u"name"_qs, u"a"_qs}, {u"size"_qs, 3},
                               {u"kind"_qs, u"file"_qs}, {u"heat"_qs, 0},       {u"source"_qs, u"files"_qs}};
        const auto json = [](const QJsonObject &o) { return QJsonDocument(o).toJson(QJsonDocument::Compact); };
        QVERIFY(CleanItem::fromJson(json(good)));
        QTest::newRow("not json") << QByteArray("{nope");
        QTest::newRow("array") << QByteArray("[1]");
        for (const QString &key : good.keys()) {
            QJsonObject missing = good;
            missing.remove(key);
            QTest::addRow("missing %s", qPrintable(key)) << json(missing);
        }
        // One field with a value of the wrong kind.
        const std::pair<QString, QJsonValue> wrongKinds[] = {{u"kind"_qs, u"dir"_qs},
                                                             {u"source"_qs, u"trash"_qs},
                                                             {u"size"_qs, u"3"_qs},
                                                             {u"size"_qs, 3.5},
                                                             {u"symbolPath"_qs, 4}};
        for (const auto &[key, value] : wrongKinds) {
            QJsonObject wrong = good;
            wrong.insert(key, value);
            QTest::newRow(json(wrong).constData()) << json(wrong);
        }
    }

    void jsonRejects()
    {
        QFETCH(QByteArray, json);
        QVERIFY2(!CleanItem::fromJson(json), json.constData());
    }

    void risks()
    {
        CleanItem junk = item("junk:caches", Kind::junk, Source::deepClean);
        junk.heat = 1.0;
        QCOMPARE(junk.risk().level, Risk::Level(Risk::Level::safe));
        junk.heat = 0.6;
        QCOMPARE(junk.risk().level, Risk::Level(Risk::Level::caution));
        // An id that looks protected is still judged by heat for junk, while a
        // path goes through the catalogue.
        QCOMPARE(item("junk:/usr/bin/ls", Kind::junk).risk().level, Risk::Level(Risk::Level::caution));
        QCOMPARE(item("/usr/bin/ls", Kind::file).risk().level, Risk::Level(Risk::Level::locked));
        const CleanItem build = CleanItem::artifact({"/p/App/node_modules", QStringLiteral("node_modules"), 500, 12});
        QCOMPARE(build.risk().level, Risk::Level(Risk::Level::safe));
        QCOMPARE(build.symbolPath, std::optional<QByteArray>("/p/App/node_modules"));
    }
};

SORVEL_TEST(TestCleanQueue);
#include "tst_cleanqueue.moc"
