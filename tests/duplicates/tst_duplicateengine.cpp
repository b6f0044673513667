#include "DeepTree.h"
#include "DuplicateFiles.h"
#include "TestMain.h"
#include "Unprivileged.h"

#include "duplicates/DuplicateEngine.h"
#include "duplicates/InStepComparison.h"

#include <QMutex>
#include <QRandomGenerator>

#include <limits>
#include <thread>

using DuplicateEngine::Reading;
using Groups = std::vector<DuplicateGroup>;
using Ids = QList<QList<qint64>>;                // per group, its files' ids
using Pieces = QList<QPair<qint64, QByteArray>>; // offset and bytes

Q_DECLARE_METATYPE(Reading)

namespace {

struct Report {
    double fraction;
    QString status;
    friend bool operator==(const Report &, const Report &) = default;
};

// Collects the reports of one search; thread-safe, as the engine's callback must be.
struct Reports {
    QMutex mutex;
    std::vector<Report> all;
    std::function<void(size_t)> onReport; // given the count so far

    DuplicateEngine::ProgressCallback callback()
    {
        return [this](double fraction, const QString &status) {
            size_t count = 0;
            {
                const QMutexLocker lock(&mutex);
                all.push_back({fraction, status});
                count = all.size();
            }
            if (onReport)
                onReport(count);
        };
    }
    int count(const QString &prefix) const
    {
        return int(std::count_if(all.begin(), all.end(), [&](const Report &r) { return r.status.startsWith(prefix); }));
    }
};

const QString fingerprinting = QStringLiteral("Fingerprinting files… ");
const QString verifying = QStringLiteral("Verifying contents… ");

// The ids of each group's files, groups and files in the order found; an
// absent answer as a lone -1.
Ids ids(const std::optional<Groups> &groups)
{
    if (!groups)
        return {{-1}};
    Ids result;
    for (const DuplicateGroup &group : *groups) {
        result.append(QList<qint64>());
        for (const FileItem &file : group.files)
            result.back().append(file.id);
    }
    return result;
}

void addReadings() { QTest::addColumn<Reading>("reading"); }

} // namespace

class TestDuplicateEngine : public QObject
{
    Q_OBJECT

private slots:
    // Two files of one size whose contents differ at one byte: which stage tells
    // them apart shows in the reports of stage 3, which come only for files read
    // whole.
    void stages_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::addColumn<qint64>("difference"); // -1: identical
        QTest::addColumn<Reading>("reading");
        QTest::addColumn<int>("verified"); // stage 3 reports
        QTest::addColumn<QString>("lastStatus");

        struct Row {
            const char *name;
            qint64 size;
            qint64 difference;
            int verified;
            const char *lastStatus;
        };
        const qint64 large = 3 * 4194304 + 12345; // several whole reads and a short one
        const Row rows[] = {
            // Only the first 64 KiB are sampled up to 131,072 bytes: stage 3 decides.
            {"131072, last byte", 131072, 131071, 2, "Verifying contents… 262 kB of 262 kB"},
            // From 131,073 on the tail is sampled: stage 2 decides, nothing is read whole.
            {"131073, last byte", 131073, 131072, 0, ""},
            // A sample that is the whole file decides alone.
            {"65536, last byte", 65536, 65535, 0, ""},
            // Files whose sample was all of them are counted together, in one report.
            {"1 byte, identical", 1, -1, 1, "Verifying contents… 2 bytes of 2 bytes"},
            // Only a whole read finds a difference in the middle.
            {"large, middle byte", large, large / 2, 2, "Verifying contents… 25.2 MB of 25.2 MB"},
            {"large, identical", large, -1, 2, "Verifying contents… 25.2 MB of 25.2 MB"},
        };
        for (const Row &row : rows) {
            for (const Reading reading : {Reading::oneAtATime, Reading::pooled}) {
                QTest::addRow("%s, %s", row.name, reading == Reading::pooled ? "pooled" : "one at a time")
                    << row.size << row.difference << reading << row.verified << QString::fromUtf8(row.lastStatus);
            }
        }
    }

    void stages()
    {
        QFETCH(qint64, size);
        QFETCH(qint64, difference);
        QFETCH(Reading, reading);
        QFETCH(int, verified);
        QFETCH(QString, lastStatus);

        DuplicateFiles dir;
        const QByteArray content = DuplicateFiles::noise(size, 7);
        const QByteArray other = difference < 0 ? content : DuplicateFiles::flipped(content, difference);
        const std::vector<FileItem> files = {dir.write("a", content), dir.write("b", other)};

        Reports reports;
        const auto groups = DuplicateEngine::find(files, makeCancelToken(), reports.callback(), reading);
        QCOMPARE(ids(groups), (difference < 0 ? Ids{{1, 2}} : Ids{}));
        QCOMPARE(reports.count(verifying), verified);
        if (verified > 0) {
            QCOMPARE(reports.all.back().status, lastStatus);
            QCOMPARE(reports.all.back().fraction, 1.0);
            QCOMPARE(reports.all.front().fraction, verified == 1 ? 1.0 : 0.2 + 0.8 * 0.5);
        }
        if (difference < 0)
            QCOMPARE(groups->front().id, DuplicateFiles::sha256(content));
    }

    void splits_data()
    {
        QTest::addColumn<QList<int>>("contents"); // which of a few contents each file has
        QTest::addColumn<Ids>("expected");
        addReadings();
        const auto both = [](const char *name, QList<int> contents, Ids expected) {
            QTest::addRow("%s, one at a time", name) << contents << expected << Reading::oneAtATime;
            QTest::addRow("%s, pooled", name) << contents << expected << Reading::pooled;
            QTest::addRow("%s, in step", name) << contents << expected << Reading::inStep;
        };
        both("three and one", {0, 0, 1, 0}, {{1, 2, 4}});
        both("two and two", {0, 1, 1, 0}, {{1, 4}, {2, 3}});
        both("all different", {0, 1, 2, 3}, {});
    }

    // Files of one size whose samples agree (they differ 70 KiB in), split by
    // their whole contents.
    void splits()
    {
        QFETCH(QList<int>, contents);
        QFETCH(Ids, expected);
        QFETCH(Reading, reading);

        DuplicateFiles dir;
        const QByteArray base = DuplicateFiles::noise(300000, 11);
        std::vector<FileItem> files;
        QHash<qint64, QByteArray> contentOf;
        for (int i = 0; i < contents.size(); ++i) {
            const QByteArray content = contents[i] == 0 ? base : DuplicateFiles::flipped(base, 71680 + contents[i]);
            files.push_back(dir.write("f" + QByteArray::number(i), content));
            contentOf.insert(files.back().id, content);
        }
        const auto groups = DuplicateEngine::find(files, makeCancelToken(), {}, reading);
        QCOMPARE(ids(groups), expected);
        for (const DuplicateGroup &group : *groups) {
            QCOMPARE(group.id, DuplicateFiles::sha256(contentOf.value(group.files.front().id)));
            QCOMPARE(group.size, files[size_t(group.files.front().id - 1)].size);
        }
    }

    // A file that can't be opened when its whole content is due drops out; its
    // twins stay a group while two or more remain.
    void vanishesBeforeStageThree_data()
    {
        QTest::addColumn<int>("copies");
        QTest::addColumn<Ids>("expected");
        QTest::newRow("three, one gone") << 3 << Ids{{1, 2}};
        QTest::newRow("two, one gone") << 2 << Ids{};
    }

    void vanishesBeforeStageThree()
    {
        QFETCH(int, copies);
        QFETCH(Ids, expected);

        DuplicateFiles dir;
        const QByteArray content = DuplicateFiles::noise(150000, 3);
        std::vector<FileItem> files;
        for (int i = 0; i < copies; ++i)
            files.push_back(dir.write("copy" + QByteArray::number(i), content));

        // The first whole file's report comes before the last file is opened.
        Reports reports;
        const QByteArray last = files.back().path;
        reports.onReport = [&](size_t count) {
            if (count == 1)
                QFile::remove(QFile::decodeName(last));
        };
        DuplicateEngine::Unreadable unreadable;
        const auto groups =
            DuplicateEngine::find(files, makeCancelToken(), reports.callback(), Reading::oneAtATime, &unreadable);
        QCOMPARE(ids(groups), expected);
        QCOMPARE(reports.count(verifying), copies - 1);
        QCOMPARE(unreadable.count, 1);
        QCOMPARE(unreadable.samples.front().path, last);
        QCOMPARE(unreadable.samples.front().error, ENOENT);

        // Read in step, the file gone before the comparison is counted alike.
        DuplicateEngine::Unreadable inStep;
        QCOMPARE(ids(DuplicateEngine::find(files, makeCancelToken(), {}, Reading::inStep, &inStep)), expected);
        QCOMPARE(inStep.count, 1);
        QCOMPARE(inStep.samples.front().path, last);
    }

    // Random sets of one size whose samples agree and whose contents differ (or
    // not) somewhere in the middle, in sets of up to 70 files (more than are read
    // side by side): read in step, the groups and their ids are exactly those of
    // hashing every file.
    void inStepMatchesHashingEveryFile()
    {
        QRandomGenerator random(77);
        for (int round = 0; round < 3; ++round) {
            DuplicateFiles dir;
            std::vector<FileItem> files;
            for (int set = 0; set < 4; ++set) {
                // Up to a few blocks long, the last one short, or exactly two blocks.
                const bool many = set == 3 && round % 2;
                const qint64 size = set == 0 ? 2 * InStepComparison::maxBlock
                                    : many   ? 200000
                                             : 131072 + random.bounded(int(2 * InStepComparison::maxBlock));
                const QByteArray base = DuplicateFiles::noise(size, random.generate());
                const int count = many ? 70 : 2 + random.bounded(6);
                for (int i = 0; i < count; ++i) {
                    // A third of them are copies; the rest differ at one of a few
                    // offsets between the samples, so some differ alike.
                    const int variant = random.bounded(3) == 0 ? -1 : random.bounded(3);
                    const qint64 at = 65536 + (size - 2 * 65536) * (variant + 1) / 4;
                    const QByteArray content = variant < 0 ? base : DuplicateFiles::flipped(base, at);
                    files.push_back(dir.write("r" + QByteArray::number(set) + "-" + QByteArray::number(i), content,
                                              1e9 + double(files.size())));
                }
            }
            const auto hashed = DuplicateEngine::find(files, makeCancelToken(), {}, Reading::oneAtATime);
            const auto inStep = DuplicateEngine::find(files, makeCancelToken(), {}, Reading::inStep);
            QVERIFY(hashed && inStep);
            QVERIFY(!hashed->empty());
            QCOMPARE(*inStep, *hashed);
        }
    }

    void unreadableFilesDropOut()
    {
        DuplicateFiles dir;
        const QByteArray content = DuplicateFiles::noise(5000, 5);
        std::vector<FileItem> files = {dir.write("a", content), dir.write("b", content), dir.write("c", content)};
        FileItem missing = files[0];
        missing.id = 99;
        missing.path = dir.path() + "/missing";
        FileItem folder = files[0];
        folder.id = 98;
        folder.path = dir.path();
        files.insert(files.begin() + 1, missing);
        files.push_back(folder);
        DuplicateEngine::Unreadable unreadable;
        const auto groups = DuplicateEngine::find(files, makeCancelToken(), {}, Reading::automatic, &unreadable);
        QCOMPARE(ids(groups), (Ids{{1, 2, 3}}));
        QCOMPARE(unreadable.count, 2);
        QCOMPARE(unreadable.samples.size(), size_t(2));
        QCOMPARE(unreadable.samples[0].path, missing.path);
        QCOMPARE(unreadable.samples[0].error, ENOENT);
        QCOMPARE(unreadable.samples[1].path, folder.path);
        QCOMPARE(unreadable.samples[1].error, 0);

        // A copy its reader may not open is counted, not compared.
        if (runningAsRoot()) {
            openPathForOthers(dir.path());
            ::chmod(files[2].path.constData(), 0);
            const ChildOutcome child = runUnprivileged([&] {
                DuplicateEngine::Unreadable refused;
                const auto found = DuplicateEngine::find(files, makeCancelToken(), {}, Reading::oneAtATime, &refused);
                if (!found || found->size() != 1 || refused.samples.size() != 3)
                    return QByteArray("unexpected answer");
                return QByteArray::number(qint64(found->front().files.size())) + ' ' +
                       QByteArray::number(refused.count) + ' ' + refused.samples[1].path + ' ' +
                       QByteArray::number(refused.samples[1].error);
            });
            QCOMPARE(child.output, "2 3 " + files[2].path + ' ' + QByteArray::number(EACCES));
        }

        // Nothing to compare: no group and no report.
        const std::vector<FileItem> unique = {dir.write("x", "x"), dir.write("xy", "xy")};
        Reports reports;
        QCOMPARE(DuplicateEngine::find(unique, makeCancelToken(), reports.callback()), std::optional<Groups>(Groups{}));
        QCOMPARE(DuplicateEngine::find({}, makeCancelToken(), reports.callback()), std::optional<Groups>(Groups{}));
        QVERIFY(reports.all.empty());
    }

    // One fingerprinting report per 50 candidates; files of a size of their own
    // are no candidates and are never counted.
    void fingerprintReports_data()
    {
        QTest::addColumn<int>("candidates");
        QTest::addColumn<QStringList>("statuses");
        QTest::newRow("49") << 49 << QStringList{};
        QTest::newRow("50") << 50 << QStringList{QStringLiteral("Fingerprinting files… 50 of 50")};
        QTest::newRow("101") << 101
                             << QStringList{QStringLiteral("Fingerprinting files… 50 of 101"),
                                            QStringLiteral("Fingerprinting files… 100 of 101")};
    }

    void fingerprintReports()
    {
        QFETCH(int, candidates);
        QFETCH(QStringList, statuses);

        DuplicateFiles dir;
        std::vector<FileItem> files;
        for (int i = 0; i < candidates; ++i)
            files.push_back(dir.write("c" + QByteArray::number(i), DuplicateFiles::noise(100, quint32(i))));
        for (int i = 0; i < 5; ++i)
            files.push_back(dir.write("u" + QByteArray::number(i), DuplicateFiles::noise(200 + i, 1)));

        Reports reports;
        const auto groups = DuplicateEngine::find(files, makeCancelToken(), reports.callback());
        QVERIFY(groups && groups->empty());
        QStringList seen;
        for (size_t i = 0; i < reports.all.size(); ++i) {
            seen.append(reports.all[i].status);
            QCOMPARE(reports.all[i].fraction, 0.2 * 50.0 * double(i + 1) / candidates);
        }
        QCOMPARE(seen, statuses);
    }

    // Equal savings keep the order in which their groups were formed (the order
    // of sizes in the input); a saving too large for 64 bits is held at the
    // limit, not wrapped to a negative that would rank last.
    void ranking_data()
    {
        QTest::addColumn<bool>("reversed");
        QTest::addColumn<QList<qint64>>("order"); // logical sizes of the groups, ranked
        QTest::newRow("as given") << false << QList<qint64>{7000, 6000, 3000, 4000, 5000};
        QTest::newRow("reversed") << true << QList<qint64>{7000, 6000, 5000, 4000, 3000};
    }

    void ranking()
    {
        QFETCH(bool, reversed);
        QFETCH(QList<qint64>, order);

        struct Spec {
            qint64 logicalSize;
            qint64 size; // what the scan said it allocates
            int copies;
        };
        QList<Spec> specs = {
            {3000, 8192, 2},                                   // saves 8192
            {4000, 8192, 2},                                   // 8192
            {5000, 4096, 3},                                   // 8192
            {6000, 10000, 2},                                  // 10000
            {7000, std::numeric_limits<qint64>::max() / 2, 4}, // overflows
        };
        if (reversed)
            std::reverse(specs.begin(), specs.end());

        DuplicateFiles dir;
        std::vector<FileItem> files;
        for (const Spec &spec : specs) {
            const QByteArray content = DuplicateFiles::noise(spec.logicalSize, quint32(spec.logicalSize));
            for (int i = 0; i < spec.copies; ++i) {
                files.push_back(dir.write(QByteArray::number(spec.logicalSize) + '-' + QByteArray::number(i), content));
                files.back().size = spec.size;
            }
        }
        const auto groups = DuplicateEngine::find(files, makeCancelToken(), {});
        QVERIFY(groups);
        QList<qint64> ranked;
        for (const DuplicateGroup &group : *groups)
            ranked.append(group.files.front().logicalSize);
        QCOMPARE(ranked, order);
        QCOMPARE(groups->front().reclaimable(), std::numeric_limits<qint64>::max());
    }

    // Newest first; equal dates keep the order the files came in.
    void newestFirst()
    {
        DuplicateFiles dir;
        const QByteArray content = DuplicateFiles::noise(90000, 9);
        const std::vector<FileItem> files = {dir.write("a", content, 10), dir.write("b", content, 30),
                                             dir.write("c", content, 20), dir.write("d", content, 30)};
        const auto groups = DuplicateEngine::find(files, makeCancelToken(), {});
        QCOMPARE(ids(groups), (Ids{{2, 4, 3, 1}}));
    }

    // A corpus with work in every stage: 120 candidates of one small size (two
    // fingerprinting reports), small files hashed whole in stage 2, traps that
    // only stage 3 separates, large files over several reads, and groups of
    // several sizes.
    void everyReadingFindsTheSameGroups()
    {
        DuplicateFiles dir;
        const std::vector<FileItem> files = mixedCorpus(dir);

        Reports one;
        Reports pooled;
        Reports inStep;
        const auto a = DuplicateEngine::find(files, makeCancelToken(), one.callback(), Reading::oneAtATime);
        const auto b = DuplicateEngine::find(files, makeCancelToken(), pooled.callback(), Reading::pooled);
        const auto c = DuplicateEngine::find(files, makeCancelToken(), inStep.callback(), Reading::inStep);
        const auto d = DuplicateEngine::find(files, makeCancelToken(), {}, Reading::automatic);
        QVERIFY(a && b && c && d);
        QCOMPARE(a->size(), size_t(9));
        QCOMPARE(*b, *a);
        QCOMPARE(*c, *a);
        QCOMPARE(*d, *a);
        QCOMPARE(one.count(fingerprinting), 2);
        QVERIFY(one.count(verifying) > 10);
        QVERIFY(pooled.all == one.all);
        // Read in step, copies are reported as sets, fewer times, to the same end.
        QVERIFY(inStep.count(verifying) > 0 && inStep.count(verifying) < one.count(verifying));
        QCOMPARE(inStep.all.back().status, one.all.back().status);
        QCOMPARE(inStep.all.back().fraction, 1.0);
    }

    // Thousands of tiny files in few sets, more than the pool holds at once:
    // sampled by a pool, they give the groups and reports of one at a time, and
    // each set is reported once in stage 3 however many files it has.
    void manyTinyFiles()
    {
        DuplicateFiles dir;
        std::vector<FileItem> files;
        for (int i = 0; i < 3000; ++i)
            files.push_back(dir.write("t" + QByteArray::number(i), QByteArray(1, char('a' + i % 3)), 1.7e9 + i % 7));
        files.push_back(dir.write("alone", "d"));

        Reports one;
        Reports pooled;
        const auto a = DuplicateEngine::find(files, makeCancelToken(), one.callback(), Reading::oneAtATime);
        const auto b = DuplicateEngine::find(files, makeCancelToken(), pooled.callback(), Reading::pooled);
        QVERIFY(a && b);
        QCOMPARE(*b, *a);
        QVERIFY(pooled.all == one.all);
        QCOMPARE(a->size(), size_t(3));
        for (const DuplicateGroup &group : *a) {
            QCOMPARE(group.files.size(), size_t(1000));
            const char byte = char('a' + (group.files.front().id - 1) % 3);
            QCOMPARE(group.id, DuplicateFiles::sha256(QByteArray(1, byte)));
            for (size_t i = 0; i < group.files.size(); ++i) {
                QCOMPARE((group.files[i].id - 1) % 3, (group.files.front().id - 1) % 3);
                if (i > 0)
                    QVERIFY(group.files[i - 1].modified >= group.files[i].modified);
            }
        }
        QCOMPARE(one.count(fingerprinting), 3001 / 50);
        QCOMPARE(one.count(verifying), 3);
        QCOMPARE(one.all.back().fraction, 1.0);
    }

    // Files far below PATH_MAX deep are compared like any other.
    void longPaths()
    {
        DuplicateFiles dir;
        DeepChain tree(dir.path(), 400, 21);
        const QByteArray content = DuplicateFiles::noise(300000, 21);
        // The second shallow file differs 70 KiB in, where no sample looks.
        std::vector<FileItem> files = {dir.write("shallow", content, 1),
                                       dir.write("other", DuplicateFiles::flipped(content, 71680), 2)};
        for (const QByteArray name : {"deep1", "deep2"}) {
            FileItem deep = files[0];
            deep.id = qint64(files.size()) + 1;
            deep.path = tree.write(name, content);
            deep.modified = 10.0 + double(files.size());
            files.push_back(deep);
        }
        for (const Reading reading : {Reading::oneAtATime, Reading::pooled, Reading::inStep}) {
            DuplicateEngine::Unreadable unreadable;
            const auto groups = DuplicateEngine::find(files, makeCancelToken(), {}, reading, &unreadable);
            QCOMPARE(ids(groups), (Ids{{4, 3, 1}}));
            QCOMPARE(unreadable.count, 0);
        }
    }

    // Sparse files are compared by their data extents, and still byte for byte:
    // a hole equals written zeros, a byte past a hole tells files apart.
    void sparse_data()
    {
        QTest::addColumn<qint64>("length");
        QTest::addColumn<Pieces>("pieces");
        QTest::addColumn<QList<int>>("kinds"); // per file: 0 sparse, 1 dense, 2 sparse with one byte changed
        QTest::addColumn<Ids>("expected");
        const qint64 gib = 1024 * 1024 * 1024;
        const Pieces scattered = {{0, DuplicateFiles::noise(5000, 1)},
                                  {70000, DuplicateFiles::noise(3, 2)},
                                  {300 * 1024 * 1024 + 4097, DuplicateFiles::noise(9000, 3)},
                                  {gib - 100, DuplicateFiles::noise(100, 4)}};
        QTest::newRow("two sparse alike") << gib << scattered << QList<int>{0, 0} << Ids{{1, 2}};
        QTest::newRow("one byte past a hole") << gib << scattered << QList<int>{0, 2, 0} << Ids{{1, 3}};
        const Pieces small = {{4096, DuplicateFiles::noise(4096, 5)},
                              {5 * 1024 * 1024 + 3, DuplicateFiles::noise(70000, 6)},
                              {8 * 1024 * 1024 - 10, DuplicateFiles::noise(10, 7)}};
        QTest::newRow("sparse and dense")
            << qint64(8 * 1024 * 1024) << small << QList<int>{1, 0, 2, 1} << Ids{{1, 2, 4}};
    }

    void sparse()
    {
        QFETCH(qint64, length);
        QFETCH(Pieces, pieces);
        QFETCH(QList<int>, kinds);
        QFETCH(Ids, expected);

        DuplicateFiles dir;
        std::vector<FileItem> files;
        for (const int kind : kinds) {
            const QByteArray name = "f" + QByteArray::number(qint64(files.size()));
            auto own = pieces;
            if (kind == 2) // a byte in the middle of the second piece, past a hole
                own[1].second = DuplicateFiles::flipped(own[1].second, own[1].second.size() / 2);
            if (kind == 1) {
                QByteArray content(length, '\0');
                for (const auto &[offset, bytes] : own)
                    content.replace(offset, bytes.size(), bytes);
                files.push_back(dir.write(name, content, -double(files.size())));
            } else {
                files.push_back(dir.writeSparse(name, length, own));
                files.back().modified = -double(files.size() - 1);
                if (files.back().size * 2 > length)
                    QSKIP("this file system does not keep holes");
            }
        }
        for (const Reading reading : {Reading::oneAtATime, Reading::pooled}) {
            DuplicateEngine::Unreadable unreadable;
            Reports reports;
            const auto groups =
                DuplicateEngine::find(files, makeCancelToken(), reports.callback(), reading, &unreadable);
            QCOMPARE(ids(groups), expected);
            QCOMPARE(unreadable.count, 0);
            QCOMPARE(reports.all.back().fraction, 1.0);
        }
    }

    // Cancelled at each report in turn, the search answers absent every time.
    void cancelAtEachReport_data()
    {
        addReadings();
        QTest::newRow("one at a time") << Reading::oneAtATime;
        QTest::newRow("pooled") << Reading::pooled;
        QTest::newRow("in step") << Reading::inStep;
    }

    void cancelAtEachReport()
    {
        QFETCH(Reading, reading);
        DuplicateFiles dir;
        const std::vector<FileItem> files = mixedCorpus(dir);
        Reports full;
        QVERIFY(DuplicateEngine::find(files, makeCancelToken(), full.callback(), reading));
        const size_t reportCount = full.all.size();
        QVERIFY(reportCount > 10);

        for (size_t at = 1; at <= reportCount; ++at) {
            const CancelTokenPtr token = makeCancelToken();
            Reports reports;
            reports.onReport = [&](size_t count) {
                if (count == at)
                    token->cancel();
            };
            QVERIFY2(!DuplicateEngine::find(files, token, reports.callback(), reading),
                     qPrintable(QStringLiteral("cancelled at report %1").arg(at)));
            QCOMPARE(reports.all.size(), at);
        }
        const CancelTokenPtr early = makeCancelToken();
        early->cancel();
        QVERIFY(!DuplicateEngine::find(files, early, {}, reading));
    }

    // Cancelled from another thread at random moments: absent, or (when the
    // answer was ready first) the whole answer, never part of it.
    void cancelAtRandomMoments()
    {
        DuplicateFiles dir;
        const std::vector<FileItem> files = mixedCorpus(dir);
        const auto full = DuplicateEngine::find(files, makeCancelToken(), {});
        QVERIFY(full);

        QRandomGenerator random(2024);
        int absent = 0;
        for (int round = 0; round < 30; ++round) {
            const CancelTokenPtr token = makeCancelToken();
            const int delay = random.bounded(40000);
            std::thread canceller([token, delay] {
                std::this_thread::sleep_for(std::chrono::microseconds(delay));
                token->cancel();
            });
            const Reading reading = round % 2 ? Reading::pooled : Reading::oneAtATime;
            const auto answer = DuplicateEngine::find(files, token, {}, reading);
            canceller.join();
            if (answer)
                QCOMPARE(*answer, *full);
            else
                ++absent;
        }
        QVERIFY(absent > 0);
    }

private:
    static std::vector<FileItem> mixedCorpus(DuplicateFiles &dir)
    {
        std::vector<FileItem> files;
        const auto add = [&](const QByteArray &name, const QByteArray &content, double modified) {
            files.push_back(dir.write(name, content, modified));
        };
        for (int i = 0; i < 120; ++i)
            add("small" + QByteArray::number(i), DuplicateFiles::noise(700, quint32(1000 + i % 115)), 100 + i % 7);
        const QByteArray large = DuplicateFiles::noise(9 * 1024 * 1024 + 77, 1);
        add("large1", large, 5);
        add("large-middle", DuplicateFiles::flipped(large, large.size() / 2), 6);
        add("large2", large, 7);
        const QByteArray mid = DuplicateFiles::noise(131072, 2);
        for (int i = 0; i < 4; ++i)
            add("mid" + QByteArray::number(i), i == 2 ? DuplicateFiles::flipped(mid, 131071) : mid, 50 - i);
        const QByteArray trap = DuplicateFiles::noise(500000, 4);
        add("trap-a", trap, 1);
        add("trap-b", DuplicateFiles::flipped(trap, 71680), 1);
        add("trap-c", trap, 1);
        add("trap-d", DuplicateFiles::flipped(trap, 71680), 1);
        return files;
    }
};

SORVEL_TEST(TestDuplicateEngine);
#include "tst_duplicateengine.moc"
