#include "TestMain.h"
#include "Unprivileged.h"

#include "core/FileActions.h"
#include "core/FullDiskAccess.h"
#include "core/Paths.h"
#include "core/VolumeInfo.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QStorageInfo>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

namespace {

VolumeInfo volume(const char *path, const char *name, bool root = false)
{
    VolumeInfo v;
    v.url = path;
    v.name = QString::fromUtf8(name);
    v.total = 1;
    v.isRoot = root;
    return v;
}

QStringList names(const QList<VolumeInfo> &volumes)
{
    QStringList out;
    for (const VolumeInfo &v : volumes)
        out.append(v.name);
    return out;
}

bool makeFile(const QByteArray &path, mode_t mode)
{
    if (!QDir().mkpath(QFile::decodeName(Paths::parentOf(path))))
        return false;
    QFile file(QFile::decodeName(path));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.close();
    return ::chmod(path.constData(), mode) == 0;
}

FileActions::RunResult runAndWait(const QString &program, const QStringList &args, bool *returnedFirst = nullptr)
{
    FileActions::RunResult result{-99, {}};
    bool done = false;
    FileActions::run(program, args, [&](const FileActions::RunResult &r) {
        QVERIFY2(!done, "answered twice");
        result = r;
        done = true;
    });
    if (returnedFirst)
        *returnedFirst = !done;
    if (!QTest::qWaitFor([&] { return done; }, 10000))
        qWarning("the command never answered");
    return result;
}

} // namespace

class TestVolumes : public QObject
{
    Q_OBJECT

private slots:
    void sortPutsRootFirstThenByName()
    {
        QList<VolumeInfo> list = {volume("/media/z", "Zeta"), volume("/media/b", "beta"), volume("/", "Sys", true),
                                  volume("/media/a", "Alpha"), volume("/media/a2", "Alpha")};
        VolumeInfo::sort(list);
        // Plain text order: upper case before lower case; equal names keep their order.
        QCOMPARE(names(list), (QStringList{u"Sys"_qs, u"Alpha"_qs, u"Alpha"_qs, u"Zeta"_qs, u"beta"_qs}));
        QCOMPARE(list[1].url, QByteArray("/media/a"));
        QCOMPARE(list[2].url, QByteArray("/media/a2"));
    }

    void mountedOnThisMachine()
    {
        const QList<VolumeInfo> volumes = VolumeInfo::mounted();
        QSet<QByteArray> seen;
        for (qsizetype i = 0; i < volumes.size(); ++i) {
            const VolumeInfo &v = volumes[i];
            QVERIFY2(v.total > 0, v.url.constData());
            QVERIFY(v.available >= 0 && v.available <= v.total);
            QVERIFY(!v.name.isEmpty());
            QVERIFY2(!seen.contains(v.url), v.url.constData());
            seen.insert(v.url);
            for (const char *system : {"/proc", "/sys", "/dev", "/run/user"})
                QVERIFY2(!Paths::isWithin(v.url, system), v.url.constData());
            if (v.isRoot)
                QCOMPARE(i, 0);
        }
        // Whatever holds "/" is listed, unless it is a layered file system.
        QStorageInfo root = QStorageInfo::root();
        if (root.fileSystemType() != "overlay" && root.bytesTotal() > 0) {
            QVERIFY(!volumes.isEmpty());
            QCOMPARE(volumes.first().url, QByteArray("/"));
            QVERIFY(volumes.first().isRoot);
        }
    }

    void fullDiskAccessProbe_data()
    {
        QTest::addColumn<QList<int>>("modes"); // one per probe file; -1: absent
        QTest::addColumn<bool>("granted");
        QTest::newRow("no probe file") << QList<int>{-1, -1, -1} << true;
        QTest::newRow("first refused, second readable") << QList<int>{0, 0644, -1} << true;
        QTest::newRow("one present and refused") << QList<int>{-1, -1, 0} << false;
    }

    void fullDiskAccessProbe()
    {
        QFETCH(QList<int>, modes);
        QFETCH(bool, granted);
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QByteArray home = QFile::encodeName(dir.path());
        const QList<QByteArray> probes = FullDiskAccess::probePaths(home);
        QCOMPARE(probes.size(), 3);
        for (int i = 0; i < 3; ++i)
            if (modes[i] >= 0)
                QVERIFY(makeFile(probes[i], mode_t(modes[i])));
        for (const QByteArray &probe : probes)
            openPathForOthers(Paths::parentOf(probe));
        const ChildOutcome outcome = runUnprivileged([&] { return QByteArray::number(FullDiskAccess::probe(home)); });
        QCOMPARE(outcome.output, QByteArray::number(granted));
    }

    void runMergesOutputWithoutBlocking()
    {
        bool returnedFirst = false;
        const auto result =
            runAndWait(u"/bin/sh"_qs,
                       {u"-c"_qs, u"echo out; echo err >&2; echo \"$1\"; exit 3"_qs, u"sh"_qs, u"caf\u00e9 \u2713"_qs},
                       &returnedFirst);
        QVERIFY(returnedFirst);
        QCOMPARE(result.status, 3);
        QCOMPARE(result.output, u"out\nerr\ncaf\u00e9 \u2713\n"_qs);
    }

    void runReportsFailures_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("status");
        QTest::newRow("missing executable") << u"/nonexistent/tool"_qs << QStringList() << -1;
        QTest::newRow("killed by a signal") << u"/bin/sh"_qs << QStringList{u"-c"_qs, u"kill -9 $$"_qs} << -1;
    }

    void runReportsFailures()
    {
        QFETCH(QString, program);
        QFETCH(QStringList, args);
        QFETCH(int, status);
        const auto result = runAndWait(program, args);
        QCOMPARE(result.status, status);
        QVERIFY(result.output.isEmpty());
    }

    void runIsStoppedWithItsContext()
    {
        bool called = false;
        auto context = std::make_unique<QObject>();
        QElapsedTimer timer;
        timer.start();
        FileActions::run(
            u"/bin/sleep"_qs, {u"30"_qs}, [&](const FileActions::RunResult &) { called = true; }, context.get());
        context.reset();
        QTest::qWait(50);
        QVERIFY(!called);
        QVERIFY(timer.elapsed() < 10000);
    }
};

SORVEL_TEST(TestVolumes);
#include "tst_volumes.moc"
