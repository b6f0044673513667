#include "TestMain.h"

#include "SteamRules.h"

#include "deepclean/CleanupModel.h"
#include "demo/Demo.h"

#include <QtTest>

namespace {

SteamRules::LocationRow row(const char *id, const char *title, JunkLocation::Risk risk, qint64 size,
                            bool readable = true)
{
    SteamRules::LocationRow r;
    r.location.id = QString::fromLatin1(id);
    r.location.title = QString::fromLatin1(title);
    r.location.detail = QStringLiteral("Detail of ") + r.location.title;
    r.location.risk = risk;
    r.location.paths = {"/srv/ada/.cache/" + QByteArray(id)};
    r.usage = {size, 10, true, readable};
    return r;
}

DevArtifact artifact(const char *path, qint64 size, const char *kind = "Node.js dependencies")
{
    return {QByteArray(path), QString::fromLatin1(kind), size, 100};
}

QStringList ids(const QList<CleanItem> &items)
{
    QStringList out;
    for (const CleanItem &item : items)
        out << QString::fromUtf8(item.id);
    return out;
}

} // namespace

// What the Deep Clean area lists, and what "Select everything safe" takes.
class SteamRulesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The floor is inclusive; the scan's order stays.
    void artifactFloor()
    {
        auto result = std::make_shared<ScanResult>();
        result->artifacts = {artifact("/p/a/node_modules", 999'999), artifact("/p/b/target", 1'000'000, "Rust build"),
                             artifact("/p/c/.venv", 5'000'000, "Python virtualenv")};
        const QList<DevArtifact> shown = SteamRules::artifacts(result);
        QCOMPARE(shown.size(), 2);
        QCOMPARE(shown.first().path, QByteArray("/p/b/target"));
        QVERIFY(SteamRules::artifacts(nullptr).isEmpty());
    }

    // Safe, readable and non-empty locations, then every artefact, whatever
    // is filtered or searched; an unreadable 5 GB location still shows.
    void everythingSafe()
    {
        const QList<SteamRules::LocationRow> rows = {
            row("caches", "App Caches", JunkLocation::Risk::safe, 3'000'000'000),
            row("browsers", "Browser Caches", JunkLocation::Risk::caution, 2'000'000'000),
            row("thumbnails", "Thumbnails", JunkLocation::Risk::safe, 5'000'000'000, false),
            row("flatpak", "Flatpak App Caches", JunkLocation::Risk::safe, 0),
        };
        const QList<DevArtifact> artifacts = {artifact("/p/a/node_modules", 2'000'000)};
        const QList<CleanItem> safe = SteamRules::safeItems(rows, artifacts);
        QCOMPARE(ids(safe), (QStringList{"junk:caches", "/p/a/node_modules"}));
        QCOMPARE(safe.first().heat, 1.0);
        QCOMPARE(safe.first().risk().level, Risk::Level::safe);
        QCOMPARE(safe.first().kind, CleanItem::Kind::junk);
        QCOMPARE(SteamRules::locationItem(rows[1].location, rows[1].usage).risk().level, Risk::Level::caution);

        // Look first: the cautious row only, no artefacts; the safe list is the same.
        const auto cautious = SteamRules::shownRows(rows, DeepCleanFilter::caution, {}, NameSizeSort::size);
        QCOMPARE(cautious.size(), 1);
        QCOMPARE(cautious.first().location.id, QStringLiteral("browsers"));
        QVERIFY(SteamRules::shownArtifacts(artifacts, DeepCleanFilter::caution, {}, NameSizeSort::size).isEmpty());
        QVERIFY(SteamRules::shownRows(rows, DeepCleanFilter::build, {}, NameSizeSort::size).isEmpty());
        const auto all = SteamRules::shownRows(rows, DeepCleanFilter::all, {}, NameSizeSort::size);
        QCOMPARE(all.first().location.id, QStringLiteral("thumbnails"));
        QCOMPARE(SteamRules::smallPrint(all.first(), {}, Platform::linux, "/srv/ada"),
                 QStringLiteral("~/.cache/thumbnails · can't be read"));
        QCOMPARE(SteamRules::smallPrint(all.first(), {}, Platform::macOS, "/srv/ada"),
                 QStringLiteral("~/.cache/thumbnails · needs Full Disk Access"));
        QCOMPARE(SteamRules::smallPrint(all[1], {"/srv/ada/.cache/caches"}, Platform::linux, "/srv/ada"),
                 QStringLiteral("~/.cache/caches · rebuilds itself"));
        SteamRules::LocationRow several = all[1];
        several.location.paths = {"/srv/ada/a", "/srv/ada/b"};
        // A figure without a folder to name (the demo's) goes unplaced.
        QCOMPARE(SteamRules::smallPrint(several, {}, Platform::linux, "/srv/ada"), QStringLiteral("rebuilds itself"));
        several.usage.size = 0;
        QCOMPARE(SteamRules::smallPrint(several, {}, Platform::linux, "/srv/ada"),
                 QStringLiteral("not on this computer · rebuilds itself"));
        QCOMPARE(SteamRules::smallPrint(several, several.location.paths, Platform::linux, "/srv/ada"),
                 QStringLiteral("2 folders · rebuilds itself"));
    }

    // A search that finds no location but an artefact's kind or path shows
    // just those; by name, projects sort as people read them, whatever the sizes.
    void searchAndNameOrder()
    {
        const QList<SteamRules::LocationRow> rows = {row("caches", "App Caches", JunkLocation::Risk::safe, 9)};
        const QList<DevArtifact> artifacts = {artifact("/p/beta/target", 9'000'000, "Rust build"),
                                              artifact("/p/Alpha/node_modules", 2'000'000),
                                              artifact("/p/gamma/.venv", 4'000'000, "Python virtualenv")};
        QVERIFY(
            SteamRules::shownRows(rows, DeepCleanFilter::all, QStringLiteral("rust"), NameSizeSort::size).isEmpty());
        const auto rust =
            SteamRules::shownArtifacts(artifacts, DeepCleanFilter::all, QStringLiteral("rust"), NameSizeSort::size);
        QCOMPARE(rust.size(), 1);
        QCOMPARE(
            SteamRules::shownArtifacts(artifacts, DeepCleanFilter::safe, QStringLiteral("GAMMA"), NameSizeSort::size)
                .size(),
            1);
        const auto byName = SteamRules::shownArtifacts(artifacts, DeepCleanFilter::all, {}, NameSizeSort::name);
        QCOMPARE(byName[0].path, QByteArray("/p/Alpha/node_modules"));
        QCOMPARE(byName[1].path, QByteArray("/p/beta/target"));
        QCOMPARE(SteamRules::shownArtifacts(artifacts, DeepCleanFilter::all, {}, NameSizeSort::size)[1].path,
                 QByteArray("/p/gamma/.venv"));
    }

    // The demo's figures stand under the ids of each platform's catalogue, so
    // every row of the area gets one.
    void demoFiguresFitTheCatalogue()
    {
        for (const Platform platform : {Platform::macOS, Platform::linux}) {
            QStringList catalogue;
            for (const JunkLocation &location : JunkLocation::all(platform, "/srv/ada"))
                catalogue << location.id;
            QStringList missing;
            for (const QString &id : catalogue)
                if (!Demo::measurements(platform).contains(id) && id != QLatin1String("backups"))
                    missing << id;
            QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QLatin1Char(' '))));
            for (const QString &id : Demo::measurements(platform).keys())
                QVERIFY2(catalogue.contains(id), qPrintable(id));
        }
    }

    // Rows come from the measured, visible locations of the running profile;
    // an empty safe location is not among them.
    void rowsFollowTheMeasurements()
    {
        CleanupModel cleanup;
        cleanup.loadDemo({{QStringLiteral("caches"), DiskUsage{4000, 3, true, true}},
                          {QStringLiteral("pkgcaches"), DiskUsage{0, 0, true, true}}},
                         {});
        const QList<SteamRules::LocationRow> rows = SteamRules::rows(cleanup);
        QCOMPARE(rows.size(), 1);
        QCOMPARE(rows.first().location.id, QStringLiteral("caches"));
        QCOMPARE(rows.first().usage.size, 4000);
    }
};

SORVEL_TEST(SteamRulesTest);
#include "tst_steamrules.moc"
