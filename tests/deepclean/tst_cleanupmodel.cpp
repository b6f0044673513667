#include "Fixture.h"
#include "TestMain.h"

#include "deepclean/CleanupModel.h"

#include <QSignalSpy>

class TestCleanupModel : public QObject
{
    Q_OBJECT

private slots:
    void requestsDuringARunGiveOneMoreRun()
    {
        FakeHome home;
        home.file("Library/Logs/a.log");
        CleanupModel model(Platform::macOS, home.path());
        QSignalSpy measured(&model, &CleanupModel::measured);
        model.measure();
        QVERIFY(model.isMeasuring());
        model.measure();
        model.measure();
        model.measure();
        QVERIFY(measured.wait(5000));
        QVERIFY(model.isMeasuring()); // the one follow-up run is under way
        QVERIFY(measured.wait(5000));
        QVERIFY(!model.isMeasuring());
        QVERIFY(!measured.wait(300));
        QCOMPARE(measured.count(), 2);
    }

    void firstResultTicksSafeNonEmptyRows()
    {
        FakeHome home;
        home.dir("Library/Caches");                  // safe, empty
        home.file("Library/Logs/app.log", 5000);     // safe, holds something
        home.file("Downloads/Installer.dmg", 20000); // caution: never ticked by itself
        CleanupModel model(Platform::macOS, home.path());
        QSignalSpy measured(&model, &CleanupModel::measured);
        model.measure();
        QVERIFY(measured.wait(5000));
        QCOMPARE(model.selected(), QSet<QString>{QStringLiteral("logs")});
        QVERIFY(model.hasMeasured());
        QVERIFY(model.trash().has_value());

        // Caches grows later; it stays unticked, and an untick is kept too.
        home.file("Library/Caches/org.example/blob", 30000);
        model.setSelected({});
        model.measure();
        QVERIFY(measured.wait(5000));
        QVERIFY(model.selected().isEmpty());
        QVERIFY(model.measurements().value(QStringLiteral("caches")).size > 0);
    }

    void visibility()
    {
        FakeHome home;
        home.dir("Library/Caches");
        home.file("Library/Logs/app.log", 5000);
        CleanupModel model(Platform::macOS, home.path());
        // Before measuring: whatever exists.
        QStringList before;
        for (const auto &l : model.visibleLocations())
            before << l.id;
        QCOMPARE(before, (QStringList{"caches", "logs"}));
        QSignalSpy measured(&model, &CleanupModel::measured);
        model.measure();
        QVERIFY(measured.wait(5000));
        QStringList after;
        for (const auto &l : model.visibleLocations())
            after << l.id;
        QCOMPARE(after, QStringList{"logs"}); // empty and readable: hidden
    }

    void subtractClampsAndPrunes()
    {
        FakeHome home;
        const QByteArray logs = home.dir("Library/Logs");
        const QByteArray a = home.file("Library/Logs/a.log", 8000);
        home.file("Library/Logs/b.log", 8000);
        CleanupModel model(Platform::macOS, home.path());
        QSignalSpy measured(&model, &CleanupModel::measured);
        model.measure();
        QVERIFY(measured.wait(5000));
        const JunkLocation location = model.locations().at(1);
        QCOMPARE(location.id, QStringLiteral("logs"));
        QSignalSpy contents(&model, &CleanupModel::contentsChanged);
        model.loadContents(false, location);
        QVERIFY(contents.wait(5000));
        QCOMPARE(model.contents().value(location.id).size(), 2);

        const qint64 before = model.measurements().value(location.id).size;
        QSignalSpy changed(&model, &CleanupModel::measurementsChanged);
        model.subtract({{"/elsewhere/x", 100}, {logs + "x/y", 50}}); // outside: nothing happens
        model.subtract({{a, 0}});                                    // a zero sum: nothing happens
        QCOMPARE(changed.count(), 0);
        model.subtract({{a, 1000}});
        QCOMPARE(model.measurements().value(location.id).size, before - 1000);
        QCOMPARE(model.contents().value(location.id).size(), 1);
        model.subtract({{logs, before * 10}});
        QCOMPARE(model.measurements().value(location.id).size, 0);
        QCOMPARE(model.measurements().value(location.id).items, 2); // stale until the next measure
        QVERIFY(model.visibleLocations().isEmpty());
    }

    void forcedLoadDuringALoadStartsNothing()
    {
        FakeHome home;
        home.file("Library/Logs/a.log");
        home.file("Library/Logs/b.log", 20000);
        CleanupModel model(Platform::macOS, home.path());
        const JunkLocation location = model.locations().at(1);
        QSignalSpy loading(&model, &CleanupModel::loadingContentsChanged);
        QSignalSpy contents(&model, &CleanupModel::contentsChanged);
        model.loadContents(false, location);
        model.loadContents(true, location);
        model.loadContents(true, location);
        QVERIFY(contents.wait(5000));
        QVERIFY(!contents.wait(300));
        QCOMPARE(contents.count(), 1);
        QCOMPARE(loading.count(), 2); // in, then out
        const auto entries = model.contents().value(location.id);
        QCOMPARE(entries.size(), 2);
        QVERIFY(entries[0].size >= entries[1].size); // largest first
        // Loaded (even if it were empty): not again unless forced.
        model.loadContents(false, location);
        QVERIFY(model.loadingContents().isEmpty());
    }

    void demoDataStandsStill()
    {
        FakeHome home;
        CleanupModel model(Platform::macOS, home.path());
        model.loadDemo({{QStringLiteral("caches"), DiskUsage{5000, 3, true, true}}},
                       {{QStringLiteral("caches"), {{"/Users/sample/Library/Caches/x", 5000, true}}}});
        QVERIFY(model.hasMeasured());
        QVERIFY(model.selected().isEmpty());
        QCOMPARE(model.trash()->size, 2300000000);
        model.measure();
        QVERIFY(!model.isMeasuring());
        model.loadContents(true, model.locations().first());
        QCOMPARE(model.contents().value(QStringLiteral("caches")).size(), 1);
    }

    void simulatorsSettledOnce()
    {
        FakeHome home;
        CleanupModel before(Platform::macOS, home.path());
        home.dir("Library/Developer/CoreSimulator/Devices");
        QVERIFY(!before.hasSimulators());
        CleanupModel after(Platform::macOS, home.path());
        QVERIFY(after.hasSimulators());
        QVERIFY(!CleanupModel(Platform::linux, home.path()).hasSimulators());
    }
};

SORVEL_TEST(TestCleanupModel);
#include "tst_cleanupmodel.moc"
