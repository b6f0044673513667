#include "DuplicateFiles.h"
#include "TestMain.h"

#include "duplicates/DuplicatesModel.h"

#include <QSignalSpy>
#include <QThread>

namespace {

QList<QList<qint64>> groupIds(const DuplicatesModel &model)
{
    QList<QList<qint64>> result;
    for (const DuplicateGroup &group : model.groups()) {
        QList<qint64> ids;
        for (const FileItem &file : group.files)
            ids.append(file.id);
        result.append(ids);
    }
    return result;
}

std::vector<FileItem> copiesOf(DuplicateFiles &dir, const QByteArray &prefix, qint64 size, int copies, quint32 seed)
{
    std::vector<FileItem> files;
    const QByteArray content = DuplicateFiles::noise(size, seed);
    for (int i = 0; i < copies; ++i)
        files.push_back(dir.write(prefix + QByteArray::number(i), content, 1000.0 - i));
    return files;
}

// Sixty files of one size and different contents: a fingerprinting report.
std::vector<FileItem> uniques(DuplicateFiles &dir)
{
    std::vector<FileItem> files;
    for (int i = 0; i < 60; ++i)
        files.push_back(dir.write("u" + QByteArray::number(i), DuplicateFiles::noise(3000, quint32(i))));
    return files;
}

void append(std::vector<FileItem> &to, const std::vector<FileItem> &more)
{
    to.insert(to.end(), more.begin(), more.end());
}

// Lets a worker finish and post its result without the main thread taking it
// in, so that whatever the main thread does next comes before the late result.
void letWorkerFinish() { QThread::msleep(300); }

} // namespace

class TestDuplicatesModel : public QObject
{
    Q_OBJECT

private slots:
    void filter_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<qint64>("logicalSize");
        QTest::addColumn<bool>("isPackage");
        QTest::addColumn<bool>("found");
        const qint64 minSize = 10000;
        QTest::newRow("exactly the minimum") << minSize << qint64(3000) << false << true;
        QTest::newRow("one byte less") << minSize - 1 << qint64(3000) << false << false;
        QTest::newRow("package") << minSize * 2 << qint64(3000) << true << false;
        QTest::newRow("zero length") << minSize << qint64(0) << false << false;
    }

    void filter()
    {
        QFETCH(qint64, size);
        QFETCH(qint64, logicalSize);
        QFETCH(bool, isPackage);
        QFETCH(bool, found);

        DuplicateFiles dir;
        std::vector<FileItem> files = copiesOf(dir, "pair", logicalSize, 2, 1);
        for (FileItem &file : files) {
            file.size = size;
            file.isPackage = isPackage;
        }
        DuplicatesModel model;
        model.run(files, 10000);
        QTRY_VERIFY(model.hasRun());
        QCOMPARE(model.isRunning(), false);
        QCOMPARE(model.groupCount(), found ? 1 : 0);
        QCOMPARE(model.reclaimable(), found ? size : 0);
    }

    // Nothing to compare still goes through every state.
    void emptyRun()
    {
        DuplicatesModel model;
        QSignalSpy running(&model, &DuplicatesModel::isRunningChanged);
        model.run({}, 0);
        QCOMPARE(model.isRunning(), true);
        QVERIFY(model.token());
        QCOMPARE(model.progress(), 0.0);
        QCOMPARE(model.status(), QStringLiteral("Comparing sizes…"));
        QCOMPARE(model.hasRun(), false);
        QTRY_VERIFY(model.hasRun());
        QCOMPARE(model.isRunning(), false);
        QVERIFY(!model.token());
        QVERIFY(model.groups().empty());
        QCOMPARE(running.count(), 2);
    }

    // The count of files a run could not read, signalled only when it changes.
    void unreadableCount()
    {
        DuplicateFiles dir;
        std::vector<FileItem> files = copiesOf(dir, "copy", 3000, 3, 1);
        DuplicatesModel model;
        QSignalSpy changed(&model, &DuplicatesModel::unreadableCountChanged);
        for (const qint64 expected : {0, 1, 1}) {
            if (expected == 1)
                QFile::remove(QFile::decodeName(files[1].path));
            model.run(files, 0);
            QTRY_VERIFY(!model.isRunning());
            QCOMPARE(model.unreadableCount(), expected);
            QCOMPARE(model.groupCount(), 1);
        }
        QCOMPARE(changed.count(), 1);
        model.reset();
        QCOMPARE(model.unreadableCount(), 0);
        QCOMPARE(changed.count(), 2);
    }

    // Reports reach the model on the main thread, in order, ending in the last
    // file's.
    void progressReports()
    {
        DuplicateFiles dir;
        std::vector<FileItem> files = uniques(dir);
        append(files, copiesOf(dir, "big", 300000, 3, 99));

        DuplicatesModel model;
        QList<double> fractions;
        QStringList statuses;
        bool onMainThread = true;
        connect(&model, &DuplicatesModel::progressChanged, this, [&] {
            fractions.append(model.progress());
            onMainThread = onMainThread && QThread::currentThread() == thread();
        });
        connect(&model, &DuplicatesModel::statusChanged, this, [&] { statuses.append(model.status()); });
        model.run(files, 0);
        QTRY_VERIFY(model.hasRun());
        QVERIFY(onMainThread);
        QCOMPARE(statuses,
                 (QStringList{QStringLiteral("Comparing sizes…"), QStringLiteral("Fingerprinting files… 50 of 63"),
                              QStringLiteral("Verifying contents… 900 kB of 900 kB")}));
        QVERIFY(std::is_sorted(fractions.begin(), fractions.end()));
        QCOMPARE(fractions.last(), 1.0);
        QCOMPARE(groupIds(model), (QList<QList<qint64>>{{61, 62, 63}}));
    }

    // A second run cancels the first; the first's reports and result, already on
    // their way, change nothing.
    void secondRunReplacesFirst()
    {
        DuplicateFiles dir;
        std::vector<FileItem> first = uniques(dir);
        append(first, copiesOf(dir, "a", 5000, 2, 1));
        const std::vector<FileItem> second = copiesOf(dir, "b", 7000, 3, 2);

        DuplicatesModel model;
        QStringList statuses;
        connect(&model, &DuplicatesModel::statusChanged, this, [&] { statuses.append(model.status()); });
        QSignalSpy groupsChanged(&model, &DuplicatesModel::groupsChanged);
        model.run(first, 0);
        const CancelTokenPtr firstToken = model.token();
        letWorkerFinish();
        statuses.clear();
        model.run(second, 0);
        QVERIFY(firstToken->isCancelled());
        QVERIFY(model.token() != firstToken);
        QTRY_VERIFY(model.hasRun());
        QCOMPARE(groupIds(model), (QList<QList<qint64>>{{63, 64, 65}}));
        QCOMPARE(groupsChanged.count(), 1);
        for (const QString &status : std::as_const(statuses))
            QVERIFY2(!status.contains(QStringLiteral(" of 62")), qPrintable(status));
        QTest::qWait(50);
        QCOMPARE(groupIds(model), (QList<QList<qint64>>{{63, 64, 65}}));
    }

    // Cancelling leaves the last result on show; a reset clears it; neither
    // lets the stopped run's late result in.
    void stoppingARun()
    {
        DuplicateFiles dir;
        const std::vector<FileItem> files = copiesOf(dir, "a", 5000, 2, 1);
        DuplicatesModel model;
        model.cancel(); // with no run: nothing
        QCOMPARE(model.isRunning(), false);
        model.run(files, 0);
        QTRY_VERIFY(model.hasRun());
        const auto before = groupIds(model);
        QCOMPARE(before.size(), 1);
        model.setMarked({1});

        model.run(copiesOf(dir, "b", 6000, 2, 2), 0);
        letWorkerFinish();
        model.cancel();
        QVERIFY(!model.isRunning() && !model.token());
        QTest::qWait(100);
        QCOMPARE(groupIds(model), before);
        QVERIFY(model.hasRun());

        model.run(files, 0);
        letWorkerFinish();
        QSignalSpy groupsChanged(&model, &DuplicatesModel::groupsChanged);
        model.reset();
        QTest::qWait(100);
        QVERIFY(!model.isRunning() && !model.hasRun());
        QCOMPARE(model.groupCount(), 0);
        QVERIFY(model.marked().isEmpty());
        QCOMPARE(groupsChanged.count(), 1);
    }

    void remove_data()
    {
        QTest::addColumn<QList<int>>("gone"); // indexes into the files: 0-2 one group, 3-4 another
        QTest::addColumn<QList<QList<qint64>>>("groups");
        QTest::addColumn<QList<qint64>>("marked");
        QTest::addColumn<bool>("changed");
        QTest::newRow("path of no group")
            << QList<int>{-1} << QList<QList<qint64>>{{1, 2, 3}, {4, 5}} << QList<qint64>{2, 3, 5} << false;
        QTest::newRow("three lose one") << QList<int>{2} << QList<QList<qint64>>{{1, 2}, {4, 5}} << QList<qint64>{2, 5}
                                        << true;
        QTest::newRow("two lose one") << QList<int>{3} << QList<QList<qint64>>{{1, 2, 3}} << QList<qint64>{2, 3}
                                      << true;
        QTest::newRow("all gone") << QList<int>{0, 1, 2, 3, 4} << QList<QList<qint64>>{} << QList<qint64>{} << true;
        QTest::newRow("canonically equivalent path")
            << QList<int>{-2} << QList<QList<qint64>>{{1, 2, 3}} << QList<qint64>{2, 3} << true;
    }

    void remove()
    {
        QFETCH(QList<int>, gone);
        QFETCH(QList<QList<qint64>>, groups);
        QFETCH(QList<qint64>, marked);
        QFETCH(bool, changed);

        DuplicateFiles dir;
        std::vector<FileItem> files = copiesOf(dir, "three", 5000, 3, 1);
        append(files, copiesOf(dir, "caf\xc3\xa9", 6000, 2, 2));
        DuplicatesModel model;
        model.run(files, 0);
        QTRY_VERIFY(model.hasRun());
        QCOMPARE(groupIds(model), (QList<QList<qint64>>{{1, 2, 3}, {4, 5}}));
        model.setMarked({2, 3, 5, 77});
        QCOMPARE(model.marked(), (QSet<qint64>{2, 3, 5}));

        QSet<QByteArray> paths;
        for (int index : gone)
            paths.insert(index == -1   ? dir.path() + "/elsewhere"
                         : index == -2 ? dir.path() + "/cafe\xcc\x81" + "0"
                                       : files[size_t(index)].path);
        QSignalSpy groupsChanged(&model, &DuplicatesModel::groupsChanged);
        model.remove(paths);
        QCOMPARE(groupIds(model), groups);
        QCOMPARE(model.marked(), QSet<qint64>(marked.begin(), marked.end()));
        QCOMPARE(groupsChanged.count(), changed ? 1 : 0);
        qint64 reclaimable = 0;
        for (const DuplicateGroup &group : model.groups())
            reclaimable += (qint64(group.files.size()) - 1) * group.size;
        QCOMPARE(model.reclaimable(), reclaimable);
    }
};

SORVEL_TEST(TestDuplicatesModel);
#include "tst_duplicatesmodel.moc"
