#include "TestMain.h"

#include "core/Fmt.h"
#include "removal/CleanQueue.h"
#include "removal/FailureRules.h"
#include "removal/JunkContents.h"
#include "removal/ReviewRules.h"
#include "removal/RowLimit.h"

#include "deepclean/JunkLocation.h"

#include <QDir>
#include <QFile>
#include <QHash>

namespace {

using Kind = CleanItem::Kind;
using Reason = DeletionFailure::Reason;

CleanItem item(const QByteArray &id, Kind kind = Kind::folder, qint64 size = 10)
{
    CleanItem i;
    i.id = id;
    i.name = QString::fromUtf8(id.mid(id.lastIndexOf('/') + 1));
    i.size = size;
    i.kind = kind;
    return i;
}

// Verdicts by id, so that a test decides which items are dangerous.
struct Verdicts {
    QHash<QByteArray, Risk> byId;
    Risk operator()(const CleanItem &i) const { return byId.value(i.id); }
    void danger(const QByteArray &id, const QString &title, const QString &why = QStringLiteral("why"))
    {
        byId.insert(id, Risk{Risk::Level::danger, title, why});
    }
};

QByteArray under(const char *name) { return QByteArray("/data/fixture/") + name; }

} // namespace

class TestSheetRules : public QObject
{
    Q_OBJECT

private slots:
    // Five kinds of danger: three lines in order of their titles, then the
    // count of the rest. Several items of one kind share a line.
    void bannerGroupsKinds()
    {
        Verdicts v;
        QList<CleanItem> items;
        const QStringList titles = {QStringLiteral("Mail"), QStringLiteral("Keys"), QStringLiteral("Settings"),
                                    QStringLiteral("App data"), QStringLiteral("Git repository")};
        for (const QString &title : titles) {
            const QByteArray id = under(title.toUtf8().constData());
            v.danger(id, title, title + QStringLiteral(" why"));
            items << item(id);
        }
        // A second key makes "Keys" a group of two; its why is the first's.
        v.danger(under("second"), QStringLiteral("Keys"), QStringLiteral("ignored"));
        items << item(under("second"));
        items << item(under("plain")); // no danger

        const QList<CleanItem> dangers = ReviewRules::dangers(items, v);
        QCOMPARE(dangers.size(), 6);
        const ReviewRules::DangerBanner banner = ReviewRules::dangerBanner(dangers, v);
        QCOMPARE(banner.title, QStringLiteral("6 items hold data that can't be rebuilt"));
        QCOMPARE(banner.lines.size(), 3);
        QCOMPARE(banner.lines[0],
                 (ReviewRules::BannerLine{QStringLiteral("App data"), QStringLiteral(" · App data: App data why")}));
        QCOMPARE(banner.lines[1].lead, QStringLiteral("Git repository"));
        QCOMPARE(banner.lines[2],
                 (ReviewRules::BannerLine{QStringLiteral("Keys · 2 items"), QStringLiteral(": Keys why")}));
        QCOMPARE(banner.closing, QStringLiteral("and 2 more kinds, marked below"));
    }

    void bannerClosingLine_data()
    {
        QTest::addColumn<int>("kinds");
        QTest::addColumn<int>("perKind");
        QTest::addColumn<QString>("closing");
        QTest::addColumn<QString>("title");
        QTest::newRow("one item") << 1 << 1 << QString() << QStringLiteral("1 item holds data that can't be rebuilt");
        QTest::newRow("two of a kind") << 1 << 2 << QStringLiteral("Each one is marked in the list below.")
                                       << QStringLiteral("2 items hold data that can't be rebuilt");
        QTest::newRow("three kinds") << 3 << 1 << QStringLiteral("Each one is marked in the list below.")
                                     << QStringLiteral("3 items hold data that can't be rebuilt");
        QTest::newRow("four kinds") << 4 << 1 << QStringLiteral("and 1 more kind, marked below")
                                    << QStringLiteral("4 items hold data that can't be rebuilt");
    }

    void bannerClosingLine()
    {
        QFETCH(int, kinds);
        QFETCH(int, perKind);
        QFETCH(QString, closing);
        QFETCH(QString, title);
        Verdicts v;
        QList<CleanItem> items;
        for (int k = 0; k < kinds; ++k)
            for (int i = 0; i < perKind; ++i) {
                const QByteArray id = under(QByteArray::number(k * 10 + i).constData());
                v.danger(id, QStringLiteral("kind %1").arg(k));
                items << item(id);
            }
        const auto banner = ReviewRules::dangerBanner(ReviewRules::dangers(items, v), v);
        QCOMPARE(banner.closing, closing);
        QCOMPARE(banner.title, title);
        QCOMPARE(banner.lines.size(), std::min(kinds, 3));
    }

    // Unticking the only danger lifts the banner and the buttons come on
    // without the tick; unticking everything turns them off.
    void untickingDangers()
    {
        Verdicts v;
        v.danger(under("keys"), QStringLiteral("Keys"));
        const QList<CleanItem> queue = {item(under("keys")), item(under("build"))};

        auto state = [&](const QSet<QByteArray> &excluded, bool acknowledged) {
            const QList<CleanItem> included = ReviewRules::included(queue, excluded);
            const QList<CleanItem> dangers = ReviewRules::dangers(included, v);
            return ReviewRules::canRemove(included.size(), dangers.size(), acknowledged);
        };
        QVERIFY(!state({}, false));
        QVERIFY(state({}, true));
        QVERIFY(state({under("keys")}, false));
        QVERIFY(ReviewRules::dangerBanner(ReviewRules::dangers(ReviewRules::included(queue, {under("keys")}), v), v)
                    .title.isEmpty());
        QVERIFY(!state({under("keys"), under("build")}, true));
    }

    // A protected folder is kept by the guard: it is never counted as a danger,
    // whatever its verdict, and only the kept note names it.
    void lockedDangerOnlyInKeptNote()
    {
        const QByteArray documents = TestMain::home() + "/Documents";
        Verdicts v;
        v.danger(documents, QStringLiteral("Documents"));
        v.danger(under("keys"), QStringLiteral("Keys"));
        const QList<CleanItem> queue = {item(documents), item(under("keys"))};

        const QList<CleanItem> dangers = ReviewRules::dangers(queue, v);
        QCOMPARE(dangers.size(), 1);
        QCOMPARE(dangers.first().id, under("keys"));
        const QList<CleanItem> locked = ReviewRules::locked(queue);
        QCOMPARE(locked.size(), 1);
        QCOMPARE(ReviewRules::badgeFor(locked.first()), ReviewRules::BadgeKind::kept);
        QCOMPARE(ReviewRules::keptNote(locked),
                 QStringLiteral("Kept by the safety guard: \u201cDocuments\u201d. Open it in Space to clean inside."));

        const QList<CleanItem> two = {item(documents), item(TestMain::home() + "/Music")};
        QCOMPARE(ReviewRules::keptNote(ReviewRules::locked(two)),
                 QStringLiteral("Kept by the safety guard: \u201cDocuments\u201d, \u201cMusic\u201d. Open them in "
                                "Space to clean inside."));
        QVERIFY(ReviewRules::keptNote({}).isEmpty());
    }

    // The badge of a row: kept, contents only, or the risk's own.
    void badges()
    {
        const QByteArray cache = TestMain::home() + "/.cache";
        QCOMPARE(ReviewRules::badgeFor(item(cache)), ReviewRules::BadgeKind::contentsOnly);
        QVERIFY(!ReviewRules::isLocked(item(cache)));
        QCOMPARE(ReviewRules::badgeFor(item(TestMain::home())), ReviewRules::BadgeKind::kept);
        QCOMPARE(ReviewRules::badgeFor(item(TestMain::home() + "/project/build")), ReviewRules::BadgeKind::risk);
        CleanItem junk = item("junk:" + TestMain::home());
        junk.kind = Kind::junk;
        QCOMPARE(ReviewRules::badgeFor(junk), ReviewRules::BadgeKind::risk);

        // A row whose folders lead into the keys through a link is kept too.
        const QByteArray home = TestMain::home();
        QVERIFY(QDir().mkpath(QFile::decodeName(home + "/.ssh")) && QDir().mkpath(QFile::decodeName(home + "/linked")));
        QFile::link(QStringLiteral("../.ssh"), QFile::decodeName(home + "/linked/keys"));
        QCOMPARE(ReviewRules::badgeFor(item(home + "/linked/keys/id", Kind::file)), ReviewRules::BadgeKind::kept);
        QCOMPARE(ReviewRules::badgeFor(item(home + "/linked/keys", Kind::file)), ReviewRules::BadgeKind::risk);
    }

    void buttons() { QCOMPARE(ReviewRules::trashButtonTitle(-5), QStringLiteral("Sorvelise Zero kB to Trash")); }

    // Up to the limit every row shows; one more and a line counts the rest.
    void rowLimits()
    {
        QCOMPARE(RowLimit::shown(4, 4), 4);
        QVERIFY(RowLimit::moreLine(4, 4).isEmpty());
        QCOMPARE(RowLimit::shown(5, 4), 4);
        QCOMPARE(RowLimit::moreLine(5, 4), QStringLiteral("and 1 more"));
    }

    // Groups follow the declared order of the reasons, whatever order the
    // failures came in; failures keep their order inside a group.
    void failureGroups()
    {
        const QList<DeletionFailure> failures = {
            {"/a", Reason::other, QStringLiteral("boom")},
            {"/b", Reason::inUse, {}},
            {"/c", Reason::safetyGuard, {}},
            {"/d", Reason::other, QStringLiteral("bang")},
            {"/e", Reason::noPermission, {}},
        };
        const auto groups = FailureRules::groups(failures);
        QList<Reason::Value> reasons;
        for (const auto &group : groups)
            reasons << group.reason;
        QCOMPARE(reasons,
                 (QList<Reason::Value>{Reason::safetyGuard, Reason::noPermission, Reason::inUse, Reason::other}));
        QCOMPARE(groups.last().failures.size(), 2);
        QCOMPARE(groups.last().failures[0].path, QByteArray("/a"));
        QCOMPARE(groups.last().failures[1].path, QByteArray("/d"));
        QVERIFY(FailureRules::groups({}).isEmpty());
    }

    void fullDiskAccessButton_data()
    {
        QTest::addColumn<QList<int>>("reasons");
        QTest::addColumn<bool>("hasAccess");
        QTest::addColumn<bool>("shown");
        QTest::newRow("guard only, no access") << QList<int>{Reason::safetyGuard} << false << false;
        QTest::newRow("protected, no access") << QList<int>{Reason::other, Reason::protectedByMacOS} << false << true;
        QTest::newRow("protected, access") << QList<int>{Reason::protectedByMacOS} << true << false;
    }

    void fullDiskAccessButton()
    {
        QFETCH(QList<int>, reasons);
        QFETCH(bool, hasAccess);
        QFETCH(bool, shown);
        QList<DeletionFailure> failures;
        for (int reason : reasons)
            failures << DeletionFailure{"/x", Reason(Reason::Value(reason)), {}};
        QCOMPARE(FailureRules::showsFullDiskAccess(failures, hasAccess), shown);
    }

    // Unticking one entry of a location that is queued whole: the location
    // leaves, every other entry comes in with its own size.
    void junkEntryOfWholeLocation()
    {
        JunkLocation location;
        location.id = QStringLiteral("thumbs");
        location.title = QStringLiteral("Thumbnails");
        const QList<JunkEntry> entries = {{"/t/a", 100, false}, {"/t/b", 200, true}, {"/t/c", 300, false}};
        CleanQueue queue;
        CleanItem whole = item("junk:thumbs", Kind::junk, 5000);
        queue.add(whole);
        QVERIFY(JunkContents::isTicked(queue, location, entries[1]));
        QCOMPARE(JunkContents::tickHelp(queue, location, entries[1]),
                 QStringLiteral("Included because \u201cThumbnails\u201d is selected. Untick to leave just this out"));

        const QString toast = JunkContents::toggle(queue, location, entries[1], entries);
        QCOMPARE(toast, QStringLiteral("Left out \u201cb\u201d · the rest of Thumbnails stays selected"));
        QCOMPARE(queue.count(), 2);
        QVERIFY(!queue.contains("junk:thumbs"));
        QCOMPARE(queue.totalSize(), 400);
        QVERIFY(!JunkContents::isTicked(queue, location, entries[1]));
        QVERIFY(JunkContents::tickHelp(queue, location, entries[0]).isEmpty());

        // Without the whole location, a toggle adds or removes just the entry.
        QVERIFY(JunkContents::toggle(queue, location, entries[1], entries).isEmpty());
        QCOMPARE(queue.count(), 3);
        QCOMPARE(queue.items().last().kind, Kind::folder);
        JunkContents::toggle(queue, location, entries[0], entries);
        QCOMPARE(queue.count(), 2);

        // The list's closing line counts and weighs only what it leaves out.
        QCOMPARE(JunkContents::restLine(entries, 1), QStringLiteral("and 2 more (%1)").arg(Fmt::bytes(500)));
        QVERIFY(JunkContents::restLine(entries, 3).isEmpty());
    }
};

SORVEL_TEST(TestSheetRules);
#include "tst_sheetrules.moc"
