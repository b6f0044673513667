#include "Cli.h"
#include "TestMain.h"
#include "WriteFile.h"

#include "core/Paths.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

namespace {

QString text(const QByteArray &path) { return QFile::decodeName(path); }

bool exists(const QByteArray &path)
{
    struct stat st {};
    return ::lstat(path.constData(), &st) == 0;
}

// Names, sizes and contents of the files below `folder`.
QByteArray digest(const QByteArray &folder)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QDir dir(text(folder));
    const QStringList names = dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &name : names) {
        const QByteArray path = folder + '/' + QFile::encodeName(name);
        hash.addData(QFile::encodeName(name));
        QFile file(text(path));
        if (QFileInfo(file).isDir())
            hash.addData(digest(path));
        else if (file.open(QIODevice::ReadOnly))
            hash.addData(file.readAll());
    }
    return hash.result().toHex();
}

QJsonObject json(const CliOutcome &outcome) { return QJsonDocument::fromJson(outcome.out).object(); }

} // namespace

class TestRemoveCommand : public QObject
{
    Q_OBJECT

private slots:
    // Paths that lead through a link into what the guard keeps stay, whatever
    // their text says; --dry-run says the same and touches nothing.
    void guardJudgesWhereALinkLeads()
    {
        const QByteArray home = TestMain::home();
        writeFile(home + "/Documents/keep.txt", 10);
        writeFile(home + "/.ssh/id", 10);
        QVERIFY(QDir().mkpath(text(home + "/proj")));
        QCOMPARE(::symlink("..", (home + "/proj/up").constData()), 0);
        QCOMPARE(::symlink("../.ssh", (home + "/proj/keys").constData()), 0);
        QCOMPARE(::symlink("/etc", (home + "/proj/etc").constData()), 0);
        const QStringList paths = {text(home + "/proj/up/Documents"), text(home + "/proj/keys/id"),
                                   text(home + "/proj/etc/sorvel-never-there")};
        const QByteArray before = digest(home + "/Documents") + digest(home + "/.ssh");

        for (const QStringList &flags : {QStringList{"--dry-run"}, QStringList{}, QStringList{"--forever", "--yes"}}) {
            const CliOutcome outcome = sorvel(QStringList{"remove", "--json"} + flags + paths);
            QCOMPARE(outcome.status, 1);
            const QJsonObject result = json(outcome);
            QVERIFY(result["went"].toArray().isEmpty());
            const QJsonArray stayed = result["stayed"].toArray();
            QCOMPARE(stayed.size(), 3);
            for (const QJsonValue &item : stayed)
                QCOMPARE(item["reason"].toString(), "safetyGuard");
            QCOMPARE(Paths::fromText(stayed[0]["path"].toString()), home + "/proj/up/Documents");
        }
        QCOMPARE(digest(home + "/Documents") + digest(home + "/.ssh"), before);
        const CliOutcome summary = sorvel({"remove", paths[0]});
        QVERIFY(summary.out.contains("Kept by the safety guard"));
    }

    // A path already gone counts as gone; --forever never goes unasked.
    void goneAndUnasked()
    {
        QTemporaryDir dir;
        const QByteArray gone = QFile::encodeName(dir.path()) + "/never-was";
        const CliOutcome outcome = sorvel({"remove", text(gone)});
        QCOMPARE(outcome.status, 0);
        QVERIFY2(outcome.out.contains("(already gone)"), outcome.out.constData());
        QCOMPARE(json(sorvel({"remove", "--json", text(gone)}))["went"][0]["alreadyGone"].toBool(), true);

        const QByteArray file = QFile::encodeName(dir.path()) + "/keep";
        writeFile(file, 10);
        const CliOutcome unasked = sorvel({"remove", "--forever", text(file)});
        QCOMPARE(unasked.status, 2);
        QVERIFY(unasked.err.contains("--yes"));
        QVERIFY(exists(file));
        QCOMPARE(sorvel({"remove", "--forever", "--dry-run", text(file)}).status, 0);
        QVERIFY(exists(file));
        QCOMPARE(sorvel({"remove", "--no-such-option", text(file)}).status, 2);
    }

    // What `sorvel remove` moved to the Trash, `sorvel undo` puts back as it was.
    void undoPutsBackWhatRemoveTrashed()
    {
        QTemporaryDir dir;
        const QByteArray root = QFile::encodeName(dir.path());
        const QByteArray odd = root + "/two\nlines é.txt";
        writeFile(odd, 5000);
        writeFile(root + "/folder/inner/deep.bin", 20000);
        const QByteArray before = digest(root);

        const CliOutcome removed = sorvel({"remove", "--json", text(odd), text(root + "/folder")});
        QCOMPARE(removed.status, 0);
        QCOMPARE(json(removed)["went"].toArray().size(), 2);
        QVERIFY(!exists(odd) && !exists(root + "/folder"));

        const QJsonArray entries = json(sorvel({"undo", "--list", "--json"}))["entries"].toArray();
        QVERIFY(!entries.isEmpty());
        QCOMPARE(Paths::fromText(entries[0]["items"][0]["path"].toString()), odd);
        QCOMPARE(entries[0]["items"][1]["inTrash"].toBool(), true);

        const CliOutcome undone = sorvel({"undo"});
        QCOMPARE(undone.status, 0);
        QVERIFY2(undone.out.contains("2 items put back"), undone.out.constData());
        QCOMPARE(digest(root), before);
        const CliOutcome nothing = sorvel({"undo"});
        QCOMPARE(nothing.status, 1);
        QVERIFY(nothing.err.contains("nothing to undo"));
    }
};

SORVEL_TEST(TestRemoveCommand);
#include "tst_removecommand.moc"
