#include "Cli.h"
#include "ScopedEnv.h"
#include "TestMain.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cerrno>
#include <cstring>
#include <sys/stat.h>

namespace {

CliOutcome runDuplicates(QStringList args) { return sorvel(QStringList{QStringLiteral("twins")} + args); }

void write(const QString &path, const QByteArray &content, qint64 modified)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write a test file");
    file.setFileTime(QDateTime::fromSecsSinceEpoch(modified), QFileDevice::FileModificationTime);
    file.close();
}

QByteArray content(qint64 size, char seed)
{
    QByteArray bytes(size, Qt::Uninitialized);
    for (qint64 i = 0; i < size; ++i)
        bytes[i] = char((i * 31 + seed * 7 + (i >> 9)) & 0xff);
    return bytes;
}

} // namespace

class TestDuplicatesCommand : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        QDir(m_dir.path()).mkpath(QStringLiteral("a/deeper"));
        QDir(m_dir.path()).mkpath(QStringLiteral("b"));
        const QByteArray copy = content(200000, 1);
        write(m_dir.filePath(QStringLiteral("a/old copy")), copy, 1600000000);
        write(m_dir.filePath(QStringLiteral("b/newest")), copy, 1700000000);
        write(m_dir.filePath(QStringLiteral("a/deeper/middle")), copy, 1650000000);
        QByteArray trap = copy;
        trap[100000] = char(trap[100000] ^ 1); // same size, differs in the unsampled middle
        write(m_dir.filePath(QStringLiteral("b/trap")), trap, 1690000000);
        write(m_dir.filePath(QStringLiteral("b/alone")), content(12345, 2), 1690000000);
        write(m_dir.filePath(QStringLiteral("b/empty1")), {}, 1690000000);
        write(m_dir.filePath(QStringLiteral("b/empty2")), {}, 1690000000);
        m_digest = QString::fromLatin1(QCryptographicHash::hash(copy, QCryptographicHash::Sha256).toHex());
        struct stat st {};
        ::stat(QFile::encodeName(m_dir.filePath(QStringLiteral("b/newest"))).constData(), &st);
        m_allocated = qint64(st.st_blocks) * 512;
    }

    void json()
    {
        const CliOutcome run = runDuplicates({m_dir.path(), QStringLiteral("--json")});
        QCOMPARE(run.status, 0);
        QVERIFY2(run.err.isEmpty(), run.err.constData()); // no progress line off a terminal
        const QJsonObject doc = QJsonDocument::fromJson(run.out).object();
        const QJsonArray groups = doc.value(QStringLiteral("groups")).toArray();
        QCOMPARE(groups.size(), 1);
        const QJsonObject group = groups.first().toObject();
        QCOMPARE(group.value(QStringLiteral("id")).toString(), m_digest);
        QCOMPARE(group.value(QStringLiteral("copies")).toInteger(), 3);
        QCOMPARE(group.value(QStringLiteral("reclaimable")).toInteger(), 2 * m_allocated);
        QCOMPARE(doc.value(QStringLiteral("reclaimable")).toInteger(), 2 * m_allocated);
        QCOMPARE(doc.value(QStringLiteral("filesCompared")).toInteger(), 5); // the empty ones take no part
        QStringList paths;
        for (const QJsonValue &file : group.value(QStringLiteral("files")).toArray())
            paths.append(QDir(m_dir.path()).relativeFilePath(file.toObject().value(QStringLiteral("path")).toString()));
        QCOMPARE(paths, (QStringList{QStringLiteral("b/newest"), QStringLiteral("a/deeper/middle"),
                                     QStringLiteral("a/old copy")}));
    }

    void text()
    {
        const CliOutcome run = runDuplicates({m_dir.path()});
        QCOMPARE(run.status, 0);
        const QStringList lines = QString::fromUtf8(run.out).split(QLatin1Char('\n'));
        QVERIFY2(lines.size() >= 6, run.out.constData());
        QVERIFY(lines[0].startsWith(m_digest.left(12) + QStringLiteral("  3 copies  ")));
        QVERIFY(lines[1].endsWith(m_dir.filePath(QStringLiteral("b/newest"))));
        QVERIFY(lines[2].endsWith(m_dir.filePath(QStringLiteral("a/deeper/middle"))));
        QVERIFY(lines[3].endsWith(m_dir.filePath(QStringLiteral("a/old copy"))));
        QVERIFY(lines[5].startsWith(QStringLiteral("1 group of identical files among 5 files; ")));
    }

    void minSize()
    {
        const CliOutcome run =
            runDuplicates({m_dir.path(), QStringLiteral("--min-size"), QString::number(m_allocated + 1)});
        QCOMPARE(run.status, 0);
        QCOMPARE(run.out, QByteArray("No identical files among 0 files.\n"));
        const CliOutcome exact = runDuplicates(
            {m_dir.path(), QStringLiteral("--min-size=") + QString::number(m_allocated), QStringLiteral("--json")});
        QCOMPARE(QJsonDocument::fromJson(exact.out).object().value(QStringLiteral("groups")).toArray().size(), 1);
    }

    // Copies in the Trash and inside .git are kept there on purpose: left out
    // unless --all asks for them.
    void keptCopiesLeftOut()
    {
        QTemporaryDir root;
        ScopedEnv data("XDG_DATA_HOME", QFile::encodeName(root.filePath(QStringLiteral("share"))));
        const QByteArray copy = content(50000, 3);
        for (const char *name : {"work/a", "work/b", "repo/.git/objects/aa/b0", "share/Trash/files/c"}) {
            QDir(root.path()).mkpath(QFileInfo(root.filePath(QLatin1String(name))).path());
            write(root.filePath(QLatin1String(name)), copy, 1690000000);
        }
        const auto copies = [](const CliOutcome &run) {
            const QJsonArray groups =
                QJsonDocument::fromJson(run.out).object().value(QStringLiteral("groups")).toArray();
            return groups.isEmpty() ? 0 : groups.first().toObject().value(QStringLiteral("copies")).toInt();
        };
        QCOMPARE(copies(runDuplicates({root.path(), QStringLiteral("--json")})), 2);
        QCOMPARE(copies(runDuplicates({root.path(), QStringLiteral("--json"), QStringLiteral("--all")})), 4);
    }

    // A root that can't be listed, is missing or is a file fails as `sorvel scan` does.
    void refusedRoots()
    {
        QTemporaryDir tmp;
        const QString locked = tmp.filePath(QStringLiteral("locked"));
        QVERIFY(QDir().mkdir(locked));
        ::chmod(QFile::encodeName(tmp.path()).constData(), 0755);
        ::chmod(QFile::encodeName(locked).constData(), 0);
        const CliOutcome refused = sorvel({QStringLiteral("twins"), locked}, true);
        ::chmod(QFile::encodeName(locked).constData(), 0755);
        QCOMPARE(refused.status, 1);
        QCOMPARE(refused.err,
                 "sorvel twins: cannot read " + QFile::encodeName(locked) + ": " + std::strerror(EACCES) + '\n');
        QVERIFY(refused.out.isEmpty());

        const CliOutcome missing = runDuplicates({tmp.filePath(QStringLiteral("none"))});
        QCOMPARE(missing.status, 1);
        QVERIFY2(missing.err.endsWith("/none: no such file or folder\n"), missing.err.constData());
        const CliOutcome file = runDuplicates({m_dir.filePath(QStringLiteral("b/alone"))});
        QCOMPARE(file.status, 1);
        QVERIFY2(file.err.endsWith("/b/alone is a file, not a folder\n"), file.err.constData());
    }

    // A copy that can't be read is not compared, and says so.
    void unreadableCopy()
    {
        QTemporaryDir tmp;
        const QByteArray copy = content(150000, 3);
        for (const char *name : {"a", "b", "c"})
            write(tmp.filePath(QLatin1String(name)), copy, 1600000000);
        ::chmod(QFile::encodeName(tmp.path()).constData(), 0755);
        ::chmod(QFile::encodeName(tmp.filePath(QStringLiteral("b"))).constData(), 0);
        const CliOutcome run = sorvel({QStringLiteral("twins"), tmp.path(), QStringLiteral("--json")}, true);
        QCOMPARE(run.status, 0);
        QCOMPARE(run.err, "sorvel twins: warning: 1 file could not be read and was left out of the comparison\n  " +
                              QFile::encodeName(tmp.filePath(QStringLiteral("b"))) + ": " + std::strerror(EACCES) +
                              '\n');
        const QJsonObject doc = QJsonDocument::fromJson(run.out).object();
        QCOMPARE(doc.value(QStringLiteral("filesCompared")).toInteger(), 2);
        QCOMPARE(doc.value(QStringLiteral("unreadable")).toInteger(), 1);
        QCOMPARE(doc.value(QStringLiteral("unreadableSamples")).toArray().first()[QStringLiteral("error")].toString(),
                 QString::fromLocal8Bit(std::strerror(EACCES)));
        QCOMPARE(doc.value(QStringLiteral("groups")).toArray().first()[QStringLiteral("copies")].toInteger(), 2);
    }

private:
    QTemporaryDir m_dir;
    QString m_digest;
    qint64 m_allocated = 0;
};

SORVEL_TEST(TestDuplicatesCommand);
#include "tst_duplicatescommand.moc"
