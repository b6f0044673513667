#include "DeepTree.h"
#include "ScanFixtures.h"
#include "TestMain.h"

#include "scan/DiskScanner.h"
#include "scan/NcduWriter.h"

#include <QBuffer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cmath>
#include <random>

using Fixtures::file;
using Fixtures::folder;

namespace {

ScanOptions options(bool skipHidden = false, QByteArrayList excluded = {}, bool packages = true)
{
    ScanOptions o;
    o.minTrackedSize = 1;
    o.skipHiddenFiles = skipHidden;
    o.excludedPaths = std::move(excluded);
    o.treatPackagesAsFiles = packages;
    return o;
}

// A scan of `root` that also saves it to `saved`.
ScanResultPtr scanAndSave(const QByteArray &root, const ScanOptions &o, const QByteArray &saved)
{
    QFile out(QFile::decodeName(saved));
    if (!out.open(QIODevice::WriteOnly))
        return {};
    const CancelTokenPtr token = makeCancelToken();
    NcduWriter writer(out, QStringLiteral("test"), token);
    ScanResultPtr result = DiskScanner::scan(root, o, 0, token, {}, DiskScanner::Walking::automatic, &writer);
    return writer.finish() ? result : nullptr;
}

ScanResultPtr import(const QByteArray &saved, const ScanOptions &o, QString *error = nullptr)
{
    QString ignored;
    return DiskScanner::importNcdu(saved, o, 0, makeCancelToken(), {}, error ? error : &ignored);
}

ScanResultPtr importText(const QByteArray &dir, const QByteArray &text, QString *error)
{
    const QByteArray path = dir + "/saved.json";
    QFile out(QFile::decodeName(path));
    if (!out.open(QIODevice::WriteOnly) || out.write(text) != text.size())
        return {};
    out.close();
    return import(path, options(), error);
}

// A saved scan keeps times to the second, and no access times.
QByteArray describeToTheSecond(ScanResult result)
{
    for (FileItem &f : result.files) {
        f.modified = std::floor(f.modified);
        f.accessed = 0;
    }
    return Fixtures::describe(result);
}

// What a saved scan read by another tool must keep, whatever order it lists in.
QByteArray totals(const ScanResult &result)
{
    QByteArray out = "size " + QByteArray::number(result.root->size) + " files " +
                     QByteArray::number(result.totalFiles) + " folders " + QByteArray::number(result.totalDirs) +
                     " listed " + QByteArray::number(qint64(result.files.size())) + '\n';
    for (const auto &[category, total] : result.categoryTotals)
        out += "category " + QByteArray::number(int(category)) + ' ' + QByteArray::number(total.size) + ' ' +
               QByteArray::number(total.count) + '\n';
    QByteArrayList artefacts;
    for (const DevArtifact &a : result.artifacts)
        artefacts.append(a.path + ' ' + a.kind.toUtf8() + ' ' + QByteArray::number(a.size));
    std::sort(artefacts.begin(), artefacts.end());
    return out + artefacts.join('\n');
}

// JSON written with single quotes, for legibility.
QByteArray json(const char *text) { return QByteArray(text).replace('\'', '"'); }

QByteArray header() { return json("[1,2,{'progname':'test','progver':'1','timestamp':1700000000},"); }

} // namespace

class TestNcdu : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QByteArray m_tree;

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        m_tree = QFile::encodeName(m_dir.path()) + "/tree";
        Fixtures::randomTree(m_tree, 23, 1500);
        // Build output whose project file comes after it in the listing, or before.
        file(m_tree + "/late/target/debug/app", 20000);
        file(m_tree + "/late/zz/Cargo.toml", 10);
        QVERIFY(::rename((m_tree + "/late/zz/Cargo.toml").constData(), (m_tree + "/late/Cargo.toml").constData()) == 0);
        file(m_tree + "/.hidden/inside", 5000);
        file(m_tree + "/.dotfile", 700);
    }

    // Names that are not UTF-8 are beyond QTemporaryDir.
    void cleanupTestCase()
    {
        DeepTree::remove(m_tree);
        DeepTree::remove(QFile::encodeName(m_dir.path()) + "/small");
    }

    // Our saved scan read back gives the very result of the scan that saved it,
    // for every set of options (what the options left out is saved as excluded).
    void readsBackWhatItSaved_data()
    {
        QTest::addColumn<bool>("leaveOut");
        QTest::addColumn<bool>("bundles");
        QTest::newRow("everything") << false << true;
        QTest::newRow("hidden and excluded left out") << true << true;
        QTest::newRow("bundles as folders") << false << false;
    }

    void readsBackWhatItSaved()
    {
        QFETCH(bool, leaveOut);
        QFETCH(bool, bundles);
        const ScanOptions opts =
            options(leaveOut, leaveOut ? QByteArrayList{m_tree + "/late"} : QByteArrayList{}, bundles);
        const QByteArray saved = QFile::encodeName(m_dir.path()) + "/ours.json";
        const ScanResultPtr scanned = scanAndSave(m_tree, opts, saved);
        QVERIFY(scanned);
        QString error;
        const ScanResultPtr read = import(saved, opts, &error);
        QVERIFY2(read, qPrintable(error));
        QCOMPARE(describeToTheSecond(*read), describeToTheSecond(*scanned));
        QCOMPARE(read->importedFrom, saved);
        QCOMPARE(Fixtures::invariantFault(*read, 0), QString());
        QVERIFY(!read->artifacts.empty());
    }

    // Both directions with ncdu itself: it reads our file, and we read its.
    void agreesWithNcdu()
    {
        const QString ncdu = QStandardPaths::findExecutable(QStringLiteral("ncdu"));
        if (ncdu.isEmpty())
            QSKIP("ncdu is not installed (scripts/install-deps installs it): the round trip with it is unchecked");
        const QByteArray dir = QFile::encodeName(m_dir.path());
        const ScanResultPtr scanned = scanAndSave(m_tree, options(), dir + "/ours.json");
        QVERIFY(scanned);

        QProcess again;
        again.start(ncdu, {QStringLiteral("-f"), m_dir.path() + "/ours.json", QStringLiteral("-o"),
                           m_dir.path() + "/again.json"});
        QVERIFY(again.waitForFinished(60000));
        QCOMPARE(again.exitCode(), 0);
        QString error;
        const ScanResultPtr throughNcdu = import(dir + "/again.json", options(), &error);
        QVERIFY2(throughNcdu, qPrintable(error));
        QCOMPARE(totals(*throughNcdu), totals(*scanned));

        QProcess theirs;
        theirs.start(ncdu, {QStringLiteral("-o"), m_dir.path() + "/theirs.json", QFile::decodeName(m_tree)});
        QVERIFY(theirs.waitForFinished(60000));
        QCOMPARE(theirs.exitCode(), 0);
        const ScanResultPtr ncduScan = import(dir + "/theirs.json", options(), &error);
        QVERIFY2(ncduScan, qPrintable(error));
        QCOMPARE(totals(*ncduScan), totals(*scanned));
    }

    // What a saved scan says could not be read, links, excluded entries, and a
    // document nested 100,000 deep (read without recursion).
    void readsWhatTheFormatSays()
    {
        const QByteArray dir = QFile::encodeName(m_dir.path());
        QString error;
        const ScanResultPtr read = importText(
            dir,
            header() + json("[{'name':'/r/'},\n"
                            "[{'name':'locked','read_error':true}],\n"
                            "{'name':'gone','read_error':true},\n"
                            "{'name':'link','asize':9,'dsize':4096,'notreg':true},\n"
                            "{'name':'skipped','asize':5000,'dsize':8192,'excluded':'pattern'},\n"
                            "{'name':'a','asize':5000,'dsize':8192,'ino':7,'hlnkc':true},\n"
                            "[{'name':'sub','dev':3},{'name':'b','asize':5000,'dsize':8192,'ino':7,'hlnkc':true},\n"
                            " {'name':'c','asize':5000,'dsize':8192,'ino':7,'hlnkc':true,'future':[1,{'x':null}]}]]]"),
            &error);
        QVERIFY2(read, qPrintable(error));
        QCOMPARE(read->root->name, QByteArray("/r"));
        QCOMPARE(read->unreadableCount, 2);
        // "b" and "c" are links of one file, on another device than "a".
        QCOMPARE(read->root->size, 8192 * 2);
        QCOMPARE(read->totalFiles, 2);
        QCOMPARE(read->date, 1700000000.0);
        QVERIFY(read->node("/r/locked")->isUnreadable());

        QByteArray deep = header() + json("[{'name':'/deep'}");
        constexpr int depth = 100000;
        for (int i = 0; i < depth; ++i)
            deep += json(",[{'name':'d'}");
        deep += json(",{'name':'f','asize':1,'dsize':512}");
        const ScanResultPtr nested = importText(dir, deep + QByteArray(depth + 2, ']'), &error);
        QVERIFY2(nested, qPrintable(error));
        QCOMPARE(nested->totalDirs, depth + 1);
        QCOMPARE(nested->root->size, 512);
        QVERIFY(!importText(dir, deep + QByteArray(depth, ']'), &error));
        QVERIFY2(error.contains("ends before"), qPrintable(error));
    }

    void refusesMalformedDocuments_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("says");
        const QByteArray root = json("[{'name':'/r'}");
        QTest::newRow("empty") << QByteArray() << "empty";
        QTest::newRow("truncated") << header() + root + json(",{'name':'f','asi") << "line 1, column";
        QTest::newRow("major version 2") << QByteArray(json("[2,0,{},[{'name':'/r'}]]")) << "version 2";
        QTest::newRow("an object") << QByteArray(json("{'name':'/r'}")) << "not an array";
        QTest::newRow("root is a file") << header() + json("{'name':'/r'}]") << "root is not a folder";
        QTest::newRow("relative root") << header() + json("[{'name':'r'}]]") << "absolute";
        QTest::newRow("invalid escape") << header() + root + json(",{'name':'a\\qb'}]]") << "escape";
        QTest::newRow("lone surrogate") << header() + root + json(",{'name':'\\udc00'}]]") << "escape";
        QTest::newRow("parent name") << header() + root + json(",[{'name':'..'}]]]") << "cannot be a file name";
        QTest::newRow("slash in a name") << header() + root + json(",{'name':'a/../../etc'}]]")
                                         << "cannot be a file name";
        QTest::newRow("zero byte") << header() + root + json(",{'name':'a\\u0000'}]]") << "cannot be a file name";
        QTest::newRow("huge number") << header() + root + json(",{'name':'f','dsize':99999999999999999999999}]]")
                                     << "whole number";
        QTest::newRow("negative size") << header() + root + json(",{'name':'f','asize':-1}]]") << "whole number";
        QTest::newRow("too large") << header() + root + json(",{'name':'f','dsize':9000000000000000000}]]")
                                   << "larger than any disk";
        QTest::newRow("sum too large") << header() + root +
                                              QByteArray(json(",{'name':'f','dsize':9000000000000000}")).repeated(600) +
                                              "]]"
                                       << "add up";
        QTest::newRow("no name") << header() + root + json(",{'asize':1}]]") << "without a name";
        QTest::newRow("text after") << header() + root + "]] x"
                                    << "after the end";
        QTest::newRow("control character") << header() + root + ",{\"name\":\"a\tb\"}]]"
                                           << "control character";
        QTest::newRow("unclosed string") << header() + root + json(",{'name':'abc") << "inside a string";
    }

    void refusesMalformedDocuments()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, says);
        QString error;
        QVERIFY(!importText(QFile::encodeName(m_dir.path()), text, &error));
        QVERIFY2(error.contains(says), qPrintable(error));
    }

    // Random damage to a real saved scan: every reading ends with a result that
    // holds together or with a message, and no path ever leaves the root.
    void survivesDamagedFiles()
    {
        const QByteArray dir = QFile::encodeName(m_dir.path());
        const QByteArray small = dir + "/small";
        Fixtures::randomTree(small, 5, 120);
        QVERIFY(scanAndSave(small, options(), dir + "/small.json"));
        QFile in(QFile::decodeName(dir + "/small.json"));
        QVERIFY(in.open(QIODevice::ReadOnly));
        const QByteArray good = in.readAll();

        std::mt19937 random(7);
        const QByteArray noise = "[]{},:\"\\/.0123456789-etrufalsn \n\xff";
        int read = 0;
        for (int round = 0; round < 300; ++round) {
            QByteArray bad = good;
            const int damages = 1 + int(random() % 4);
            for (int d = 0; d < damages; ++d) {
                const auto at = qsizetype(random() % quint32(bad.size()));
                switch (random() % 4) {
                case 0:
                    bad[at] = noise[qsizetype(random() % quint32(noise.size()))];
                    break;
                case 1:
                    bad.remove(at, 1 + qsizetype(random() % 40));
                    break;
                case 2:
                    bad.insert(at, bad.mid(qsizetype(random() % quint32(bad.size())), 30));
                    break;
                default:
                    bad.truncate(at);
                    break;
                }
                if (bad.isEmpty())
                    bad = "[";
            }
            QString error;
            const ScanResultPtr result = importText(dir, bad, &error);
            if (!result) {
                QVERIFY2(!error.isEmpty(), bad.constData());
                continue;
            }
            ++read;
            QCOMPARE(Fixtures::invariantFault(*result, 0), QString());
            const QByteArray prefix = result->root->name + '/';
            for (const FileItem &f : result->files)
                QVERIFY2(f.path.startsWith(prefix), f.path.constData());
        }
        QVERIFY(read > 0);
    }

    // A full disk stops the walk at once and says so.
    void stopsWhenTheDiskIsFull()
    {
        QFile full(QStringLiteral("/dev/full"));
        if (!full.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            QSKIP("no /dev/full here");
        const CancelTokenPtr token = makeCancelToken();
        NcduWriter writer(full, QStringLiteral("test"), token);
        const ScanResultPtr result =
            DiskScanner::scan(m_tree, options(), 0, token, {}, DiskScanner::Walking::automatic, &writer);
        QVERIFY(!result || !writer.finish());
        QVERIFY(token->isCancelled() || !writer.finish());
        QVERIFY2(writer.errorText().contains("could not write"), qPrintable(writer.errorText()));
    }
};

SORVEL_TEST(TestNcdu);
#include "tst_ncdu.moc"
