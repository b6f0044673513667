#include "Cli.h"
#include "DeepTree.h"
#include "TestMain.h"

#include "core/DirNode.h"
#include "core/Fmt.h"
#include "core/Paths.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <cerrno>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A listed file whose name is no UTF-8 and would break its line and turn the
// text after it around.
const QByteArray oddName("odd-\xff\n\xe2\x80\xae"
                         "name.bin");

void write(const QByteArray &path, qint64 size)
{
    QDir().mkpath(QFile::decodeName(path.left(path.lastIndexOf('/'))));
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    QVERIFY(fd >= 0);
    const QByteArray data(size, 'x');
    QCOMPARE(::write(fd, data.constData(), size_t(size)), ssize_t(size));
    ::close(fd);
}

// The value printed beside a label in the summary ("  Files   1,234").
QString summaryValue(const QString &summary, const QString &label)
{
    const QRegularExpression re(QStringLiteral("^  ") + QRegularExpression::escape(label) + QStringLiteral(" +(.+)$"),
                                QRegularExpression::MultilineOption);
    return re.match(summary).captured(1).trimmed();
}

// A listed file's path, as a reader of the JSON puts it together: the names up the
// chain of parent folders, joined with "/".
QByteArray pathOf(const QJsonArray &folders, const QJsonObject &file)
{
    QByteArrayList names{Paths::fromText(file[QStringLiteral("name")].toString())};
    for (qint64 i = file[QStringLiteral("folder")].toInteger(-1); i >= 0;
         i = folders[i].toObject()[QStringLiteral("parent")].toInteger(-1))
        names.prepend(Paths::fromText(folders[i].toObject()[QStringLiteral("name")].toString()));
    return names.join('/');
}

} // namespace

class TestScanCommand : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_tmp;
    QByteArray m_root;

private slots:
    void initTestCase()
    {
        m_root = QFile::encodeName(m_tmp.path());
        write(m_root + "/movies/holiday.mov", 300000);
        write(m_root + "/movies/trailer.mp4", 120000);
        write(m_root + "/docs/report.pdf", 2000);
        write(m_root + "/web/package.json", 300);
        write(m_root + "/web/node_modules/left/index.js", 50000);
        write(m_root + "/Tool.app/Contents/MacOS/tool", 200000);
        write(m_root + '/' + oddName, 150000);
        write(m_root + "/line\nbreak \"quoted\".txt", 10);
    }

    void cleanupTestCase()
    {
        // QTemporaryDir removes by name as text, which can't spell this one.
        ::unlink((m_root + '/' + oddName).constData());
    }

    void summaryAndJsonAgree()
    {
        const QStringList common{QStringLiteral("scan"), QFile::decodeName(m_root), QStringLiteral("--min-size"),
                                 QStringLiteral("100k"), QStringLiteral("--top"),   QStringLiteral("3")};
        const CliOutcome text = sorvel(common);
        QCOMPARE(text.status, 0);
        QVERIFY(text.err.isEmpty()); // no terminal, no progress
        const QString summary = QString::fromUtf8(text.out);

        const CliOutcome json = sorvel(common + QStringList{QStringLiteral("--json")});
        QCOMPARE(json.status, 0);
        QJsonParseError error;
        const QJsonObject doc = QJsonDocument::fromJson(json.out, &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);

        const QJsonObject totals = doc[QStringLiteral("totals")].toObject();
        const QLocale locale;
        QCOMPARE(summaryValue(summary, QStringLiteral("Total size")),
                 Fmt::bytes(totals[QStringLiteral("size")].toInteger()));
        QCOMPARE(summaryValue(summary, QStringLiteral("Files")),
                 locale.toString(totals[QStringLiteral("files")].toInteger()));
        QCOMPARE(summaryValue(summary, QStringLiteral("Folders")),
                 locale.toString(totals[QStringLiteral("folders")].toInteger()));
        QCOMPARE(summaryValue(summary, QStringLiteral("Unreadable")), QStringLiteral("0"));
        QCOMPARE(totals[QStringLiteral("files")].toInteger(), 8);
        QCOMPARE(totals[QStringLiteral("folders")].toInteger(), 7); // root movies docs web node_modules left Tool.app

        // The biggest files, in the same order.
        const QJsonArray files = doc[QStringLiteral("files")].toArray();
        const QJsonArray folders = doc[QStringLiteral("folders")].toArray();
        QCOMPARE(files.size(), 4); // holiday, Tool.app, odd name, trailer
        const qsizetype biggest = summary.indexOf(QStringLiteral("Biggest files"));
        QVERIFY(biggest > 0);
        qsizetype at = biggest;
        for (int i = 0; i < 3; ++i) {
            const QJsonObject f = files[i].toObject();
            const QByteArray path = pathOf(folders, f);
            QVERIFY(path.startsWith(m_root + '/'));
            at = summary.indexOf(Paths::toDisplay(path), at);
            QVERIFY2(at > 0, path.constData());
        }
        QVERIFY(!summary.contains(QStringLiteral("trailer.mp4")));
        // Its odd bytes are named, its newline and its override shown, not obeyed.
        QVERIFY2(summary.contains(u"/odd-\\xFF\\n\\u202Ename.bin\n"_qs), qPrintable(summary));
        QVERIFY(!summary.contains(QChar(0x202E)));
        QVERIFY(!summary.contains(u"\nname.bin"_qs));
        // Names that aren't UTF-8 come back byte for byte.
        bool sawOdd = false;
        for (const QJsonValue &v : files)
            sawOdd |= pathOf(folders, v.toObject()) == m_root + '/' + oddName;
        QVERIFY(sawOdd);

        // Categories: the same totals in both.
        for (const QJsonValue &v : doc[QStringLiteral("categories")].toArray()) {
            const QJsonObject c = v.toObject();
            const QString line = c[QStringLiteral("title")].toString();
            const QRegularExpression re(QStringLiteral("^  ") + QRegularExpression::escape(line) +
                                            QStringLiteral(" +(.+?)  (.+)$"),
                                        QRegularExpression::MultilineOption);
            const auto m = re.match(summary);
            QVERIFY2(m.hasMatch(), qPrintable(line));
            QCOMPARE(m.captured(1).trimmed(), Fmt::bytes(c[QStringLiteral("size")].toInteger()));
        }

        // The artefact, and the tree's folders with their parents.
        const QJsonArray artifacts = doc[QStringLiteral("artifacts")].toArray();
        QCOMPARE(artifacts.size(), 1);
        QCOMPARE(artifacts[0].toObject()[QStringLiteral("kind")].toString(), QStringLiteral("Node.js dependencies"));
        QVERIFY(summary.contains(QStringLiteral("Node.js dependencies")));
        QCOMPARE(folders.size(), 6); // the package has no folder of its own
        QCOMPARE(folders[0].toObject()[QStringLiteral("size")].toInteger(), totals[QStringLiteral("size")].toInteger());
        QVERIFY(folders[0].toObject()[QStringLiteral("parent")].isNull());
        qint64 childSum = folders[0].toObject()[QStringLiteral("smallFilesSize")].toInteger();
        for (const QJsonValue &v : folders)
            if (v.toObject()[QStringLiteral("parent")].toInteger(-1) == 0)
                childSum += v.toObject()[QStringLiteral("size")].toInteger();
        for (const QJsonValue &v : files)
            if (v.toObject()[QStringLiteral("folder")].toInteger(-1) == 0)
                childSum += v.toObject()[QStringLiteral("size")].toInteger();
        QCOMPARE(childSum, totals[QStringLiteral("size")].toInteger());
    }

    void options()
    {
        const QString root = QFile::decodeName(m_root);
        const CliOutcome json =
            sorvel({QStringLiteral("scan"), root, QStringLiteral("--json"), QStringLiteral("--no-packages"),
                    QStringLiteral("--exclude"), root + QStringLiteral("/web/"), QStringLiteral("--skip-hidden"),
                    QStringLiteral("--min-size=0")});
        QCOMPARE(json.status, 0);
        const QJsonObject doc = QJsonDocument::fromJson(json.out).object();
        QVERIFY(doc[QStringLiteral("artifacts")].toArray().isEmpty());
        // The tree has no hidden file to show --skip-hidden by; the other
        // options show in the totals.
        QCOMPARE(doc[QStringLiteral("options")].toObject()[QStringLiteral("skipHiddenFiles")].toBool(), true);
        const QJsonObject totals = doc[QStringLiteral("totals")].toObject();
        QCOMPARE(totals[QStringLiteral("files")].toInteger(), 6);
        QCOMPARE(totals[QStringLiteral("listedFiles")].toInteger(), 6);
        QCOMPARE(totals[QStringLiteral("folders")].toInteger(), 6); // root movies docs Tool.app Contents MacOS
    }

    // A scan saved in ncdu's format, to a file or through a pipe, reads back
    // as the same scan.
    void savedScans()
    {
        const QString root = QFile::decodeName(m_root);
        const QString saved = m_tmp.path() + u"/../saved-scan.json"_qs;
        const auto withoutTimes = [](const QByteArray &json) {
            QJsonObject o = QJsonDocument::fromJson(json).object();
            o.remove(u"date"_qs);
            o.remove(u"duration"_qs);
            QJsonArray files;
            for (const QJsonValue &f : o.value(u"files"_qs).toArray()) {
                QJsonObject file = f.toObject();
                file.remove(u"modified"_qs);
                file.remove(u"accessed"_qs);
                files.append(file);
            }
            o.insert(u"files"_qs, files);
            return o;
        };
        const CliOutcome scanned = sorvel({u"scan"_qs, root, u"--json"_qs, u"--export-ncdu"_qs, saved});
        QCOMPARE(scanned.status, 0);
        const CliOutcome read = sorvel({u"scan"_qs, u"--import-ncdu"_qs, saved, u"--json"_qs});
        QVERIFY2(read.status == 0, read.err.constData());
        QCOMPARE(withoutTimes(read.out), withoutTimes(scanned.out));
        QFile::remove(saved);

        const CliOutcome piped = sorvel({u"scan"_qs, root, u"--export-ncdu"_qs, u"-"_qs});
        QCOMPARE(piped.status, 0);
        QVERIFY(piped.out.startsWith("[1,2,{\"progname\":\"sorvel\""));
        QProcess in;
        in.start(QStringLiteral(SORVEL_CLI), {u"scan"_qs, u"--import-ncdu"_qs, u"-"_qs, u"--json"_qs});
        in.write(piped.out);
        in.closeWriteChannel();
        QVERIFY(in.waitForFinished(60000));
        QCOMPARE(in.exitCode(), 0);
        QCOMPARE(withoutTimes(in.readAllStandardOutput()), withoutTimes(scanned.out));
    }

    // Bad input for each command: a clear message, a usage status, nothing on stdout.
    void badInput_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("message"); // empty: any
        const QString root = QFile::decodeName(m_root);
        const auto row = [](const char *name, QStringList args, int status, const char *message = "") {
            QTest::newRow(name) << args << status << QString::fromUtf8(message);
        };
        row("scan missing", {u"scan"_qs, root + u"/nowhere"_qs}, 1, "no such file or folder");
        row("scan a file", {u"scan"_qs, root + u"/docs/report.pdf"_qs}, 1, "is a file, not a folder");
        row("scan no path", {u"scan"_qs}, 2, "sorvel scan: which folder?");
        row("scan unknown option", {u"scan"_qs, root, u"--fast"_qs}, 2, "unknown option '--fast'");
        row("scan bad size", {u"scan"_qs, root, u"--min-size"_qs, u"lots"_qs}, 2, "--min-size takes");
        for (const char *number : {"nan", "-0", "1e999"})
            row(number, {u"scan"_qs, root, u"--min-size"_qs, QString::fromLatin1(number)}, 2, "--min-size takes");
        row("scan two paths", {u"scan"_qs, root, root}, 2, "one PATH at a time");
        row("import and a folder", {u"scan"_qs, root, u"--import-ncdu"_qs, root + u"/docs/report.pdf"_qs}, 2,
            "not both");
        row("import a document that is no saved scan", {u"scan"_qs, u"--import-ncdu"_qs, root + u"/docs/report.pdf"_qs},
            1, "line 1, column 1");
        row("export and json on one output", {u"scan"_qs, root, u"--export-ncdu"_qs, u"-"_qs, u"--json"_qs}, 2,
            "standard output");
        row("twins no path", {u"twins"_qs}, 2);
        row("twins not a number", {u"twins"_qs, root, u"--min-size"_qs, u"ten"_qs}, 2);
        row("volumes with an argument", {u"volumes"_qs, u"/"_qs}, 2);
    }

    void badInput()
    {
        QFETCH(QStringList, args);
        QFETCH(int, status);
        QFETCH(QString, message);
        const CliOutcome o = sorvel(args);
        QCOMPARE(o.status, status);
        QVERIFY(o.out.isEmpty());
        QVERIFY2(!o.err.isEmpty() && QString::fromUtf8(o.err).contains(message), o.err.constData());
        if (args.first() == u"scan"_qs)
            QVERIFY(o.err.startsWith("sorvel scan: "));
    }

    // Paths beyond PATH_MAX are counted in full, and the JSON grows with the
    // number of folders, not with their depth.
    void deepTrees()
    {
        QTemporaryDir tmp;
        const QByteArray wide = QFile::encodeName(tmp.path()) + "/wide", deep = QFile::encodeName(tmp.path()) + "/deep";
        QVERIFY(QDir().mkdir(QFile::decodeName(wide)) && QDir().mkdir(QFile::decodeName(deep)));
        const auto cleanup = qScopeGuard([&] {
            DeepTree::remove(wide);
            DeepTree::remove(deep);
        });
        QVERIFY(DeepTree::make(wide, 400, 21, 2));
        QVERIFY(DeepTree::make(deep, 20000, 1, 0));

        const CliOutcome summary = sorvel({QStringLiteral("scan"), QFile::decodeName(wide)});
        QCOMPARE(summary.status, 0);
        QCOMPARE(summaryValue(QString::fromUtf8(summary.out), QStringLiteral("Files")), QLocale().toString(800));
        QCOMPARE(summaryValue(QString::fromUtf8(summary.out), QStringLiteral("Unreadable")), QStringLiteral("0"));

        const CliOutcome json = sorvel({QStringLiteral("scan"), QFile::decodeName(deep), QStringLiteral("--json")});
        QCOMPARE(json.status, 0);
        QVERIFY2(json.out.size() < 4'000'000, QByteArray::number(json.out.size()).constData());
        const QJsonObject doc = QJsonDocument::fromJson(json.out).object();
        QCOMPARE(doc[QStringLiteral("version")].toInt(), 2);
        const QJsonArray folders = doc[QStringLiteral("folders")].toArray();
        QCOMPARE(folders.size(), 20001);
        QCOMPARE(folders[0].toObject()[QStringLiteral("name")].toString(), QFile::decodeName(deep));
        const QJsonObject last = folders[20000].toObject();
        QCOMPARE(last[QStringLiteral("name")].toString(), QFile::decodeName(DeepTree::name(20000, 1)));
        QCOMPARE(last[QStringLiteral("parent")].toInteger(), 19999);
        QVERIFY(!last.contains(QStringLiteral("path")));
    }

    // Whether a process has a handler for SIGINT, from its status on Linux.
    static bool catchesInterrupt(qint64 pid)
    {
#if defined(Q_OS_LINUX)
        QFile status(QStringLiteral("/proc/%1/status").arg(pid));
        if (!status.open(QIODevice::ReadOnly))
            return false;
        for (const QByteArray &line : status.readAll().split('\n'))
            if (line.startsWith("SigCgt:"))
                return (line.mid(7).trimmed().toULongLong(nullptr, 16) >> (SIGINT - 1)) & 1;
        return false;
#else
        Q_UNUSED(pid);
        QTest::qWait(150);
        return true;
#endif
    }

    void interruptCancels()
    {
        // A tree big enough that the walk is still going when the signal comes.
        QProcess p;
        p.start(QStringLiteral(SORVEL_CLI), {QStringLiteral("scan"), QStringLiteral("/usr"), QStringLiteral("--json")});
        QVERIFY(p.waitForStarted());
        // Only once the tool catches the signal: a slow start (a sanitizer
        // build) would otherwise be killed by it before the walk begins.
        QTRY_VERIFY_WITH_TIMEOUT(catchesInterrupt(p.processId()), 20000);
        QTest::qWait(100);
        ::kill(pid_t(p.processId()), SIGINT);
        QVERIFY(p.waitForFinished(60000));
        if (p.exitCode() == 0)
            QSKIP("the walk ended before the signal arrived");
        QCOMPARE(p.exitStatus(), QProcess::NormalExit);
        QCOMPARE(p.exitCode(), 130);
        QVERIFY(p.readAllStandardOutput().isEmpty());
        QCOMPARE(p.readAllStandardError(), QByteArray("sorvel scan: cancelled\n"));
    }

    void unreadableRoot()
    {
        QTemporaryDir tmp;
        const QByteArray root = QFile::encodeName(tmp.path());
        ::chmod(root.constData(), 0755);
        QVERIFY(QDir().mkdir(QFile::decodeName(root + "/closed")));
        ::chmod((root + "/closed").constData(), 0);
        const CliOutcome o = sorvel({QStringLiteral("scan"), QFile::decodeName(root + "/closed")}, true);
        ::chmod((root + "/closed").constData(), 0755);
        QCOMPARE(o.status, 1);
        QVERIFY2(o.err.contains("cannot read"), o.err.constData());
        QCOMPARE(o.err.count('\n'), 1);
    }

    // A folder inside that can't be read is in the tree, with the reason.
    void unreadableFolderInTheTree()
    {
        QTemporaryDir tmp;
        const QByteArray root = QFile::encodeName(tmp.path());
        ::chmod(root.constData(), 0755);
        QVERIFY(QDir().mkpath(QFile::decodeName(root + "/closed/inner")));
        ::chmod((root + "/closed").constData(), 0);
        const CliOutcome o = sorvel({QStringLiteral("scan"), QStringLiteral("--json"), QFile::decodeName(root)}, true);
        ::chmod((root + "/closed").constData(), 0755);
        QCOMPARE(o.status, 0);
        const QJsonArray folders = QJsonDocument::fromJson(o.out)[QStringLiteral("folders")].toArray();
        QCOMPARE(folders.size(), 2);
        QVERIFY(folders[0].toObject()[QStringLiteral("readError")].isNull());
        const QJsonObject closed = folders[1].toObject();
        QCOMPARE(closed[QStringLiteral("name")].toString(), QStringLiteral("closed"));
        QCOMPARE(closed[QStringLiteral("readError")].toString(), DirNode::errorText(EACCES));
        QCOMPARE(closed[QStringLiteral("partlyRead")].toBool(), false);
    }
};

SORVEL_TEST(TestScanCommand);
#include "tst_scancommand.moc"
