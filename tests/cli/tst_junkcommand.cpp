#include "Cli.h"
#include "ScopedEnv.h"
#include "TestMain.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

// `sorvel junk` tells what the Trash holds besides the places it measures.
class TestJunkCommand : public QObject
{
    Q_OBJECT

private slots:
    void trashIsReported()
    {
        QTemporaryDir data;
        ScopedEnv env("XDG_DATA_HOME", QFile::encodeName(data.path()));
        QVERIFY(QDir(data.path()).mkpath(QStringLiteral("Trash/files")));
        QFile file(data.filePath(QStringLiteral("Trash/files/old.iso")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(300000, 'x'));
        file.close();

        const CliOutcome json = sorvel({QStringLiteral("junk"), QStringLiteral("--json")});
        QCOMPARE(json.status, 0);
        const QJsonObject trash = QJsonDocument::fromJson(json.out).object().value(QStringLiteral("trash")).toObject();
        QVERIFY2(trash.value(QStringLiteral("size")).toInteger() >= 300000, json.out.constData());
        QVERIFY(trash.value(QStringLiteral("items")).toInteger() >= 1);

        const CliOutcome text = sorvel({QStringLiteral("junk")});
        QCOMPARE(text.status, 0);
        QVERIFY2(text.out.contains("already in the Trash"), text.out.constData());
    }
};

SORVEL_TEST(TestJunkCommand);
#include "tst_junkcommand.moc"
