#include "TestMain.h"
#include "WriteFile.h"

#include "ConfirmModel.h"
#include "DeletionModel.h"
#include "ItemRowModel.h"
#include "ReviewModel.h"

#include "core/Paths.h"
#include "core/Prefs.h"
#include "state/AppState.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>

namespace {

// A scanned folder as the rows select it.
CleanItem folderItem(const QByteArray &path)
{
    CleanItem folder;
    folder.id = path;
    folder.name = QString::fromUtf8(path.mid(path.lastIndexOf('/') + 1));
    folder.kind = CleanItem::Kind::folder;
    return folder;
}

struct State {
    State()
    {
        Prefs::registerDefaults();
        state.setArguments({"sorvel-cleaner"});
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
    }
    AppState state;
};

} // namespace

// The sheets' and rows' models on a real application state.
class TestSheetModels : public QObject
{
    Q_OBJECT

private slots:
    // A file inside a selected folder, clicked once: nothing for one
    // double-click interval, then the folder breaks open around it.
    void rowInsideSelectedFolder()
    {
        const QByteArray root = TestMain::home() + "/rows";
        writeFile(root + "/photos/a.jpg", 1'500'000);
        writeFile(root + "/photos/b.jpg", 1'500'000);
        State s;
        s.state.scan(root);
        QTRY_VERIFY_WITH_TIMEOUT(s.state.result() && !s.state.isScanning(), 10000);

        const CleanItem folder = folderItem(root + "/photos");
        s.state.queue()->add(folder);

        ItemRowModel row;
        row.setState(&s.state);
        row.rowClick()->setInterval(300);
        QVariantMap value{{QStringLiteral("id"), Paths::toText(root + "/photos/a.jpg")},
                          {QStringLiteral("name"), QStringLiteral("a.jpg")},
                          {QStringLiteral("size"), 1'500'000},
                          {QStringLiteral("kind"), QStringLiteral("file")},
                          {QStringLiteral("heat"), 0.0},
                          {QStringLiteral("source"), QStringLiteral("space")}};
        row.setItemValue(value);
        QVERIFY(row.loaded());
        QVERIFY(!row.selectedItself());

        row.click();
        QTest::qWait(150);
        QVERIFY(s.state.queue()->contains(folder.id));
        QTRY_VERIFY(!s.state.queue()->contains(folder.id));
        QVERIFY(s.state.queue()->contains(root + "/photos/b.jpg"));
        QVERIFY(!row.loaded());
        QVERIFY(s.state.toast());
        QVERIFY(s.state.toast()->message.startsWith(QStringLiteral("Left out")));

        // Two quick clicks on a row inside a selected folder open it and
        // change nothing.
        s.state.queue()->clear();
        s.state.queue()->add(folder);
        QSignalSpy opened(&row, &ItemRowModel::openRequested);
        row.setProperty("canOpen", true);
        row.click();
        row.click();
        QCOMPARE(opened.size(), 1);
        QTest::qWait(450);
        QCOMPARE(s.state.queue()->items().size(), 1);
        QVERIFY(s.state.queue()->contains(folder.id));

        // A junk row offers no path actions.
        value[QStringLiteral("id")] = QStringLiteral("junk:thumbnails");
        value[QStringLiteral("kind")] = QStringLiteral("junk");
        row.setItemValue(value);
        QStringList actions;
        for (const QVariant &entry : row.menu())
            actions << entry.toMap().value(QStringLiteral("action")).toString();
        QCOMPARE(actions, (QStringList{QStringLiteral("toggle"), QStringLiteral("open")}));
    }

    // The deletion sheet draws 500 rows at most and counts the rest.
    void deletionRows()
    {
        State s;
        DeletionRequest request;
        request.title = QStringLiteral("Empty the Trash");
        for (int i = 0; i < 501; ++i)
            request.items << DeletionItem{"/t/" + QByteArray::number(i), 10, false};
        s.state.removal()->setPendingDeletion(request);
        DeletionModel model;
        model.setState(&s.state);
        QCOMPARE(model.rows().size(), 500);
        QCOMPARE(model.moreLine(), QStringLiteral("and 1 more"));
        model.cancel();
        QVERIFY(!s.state.removal()->pendingDeletion());
    }

    // The confirmation is cleared before its action runs, so the action may
    // ask again.
    void confirmClearsFirst()
    {
        State s;
        int asked = 0;
        ConfirmRequest request;
        request.title = QStringLiteral("Empty?");
        request.perform = [&] {
            ++asked;
            QVERIFY(!s.state.removal()->confirm());
            ConfirmRequest again;
            again.title = QStringLiteral("Really?");
            s.state.removal()->setConfirm(again);
        };
        s.state.removal()->setConfirm(request);
        ConfirmModel model;
        model.setState(&s.state);
        model.perform();
        QCOMPARE(asked, 1);
        QVERIFY(s.state.removal()->confirm());
        QCOMPARE(s.state.removal()->confirm()->title, QStringLiteral("Really?"));
    }

    // A selected folder that holds a repository, keys and a virtual machine
    // raises the danger banner, names each with its path, and blocks the
    // removal until acknowledged; build output is not looked into, and
    // unticking the folder takes the warning away.
    void reviewFindsDangersInside()
    {
        const QByteArray root = TestMain::home() + "/inside";
        writeFile(root + "/projects/app/.git/HEAD", 100);
        writeFile(root + "/projects/app/src/main.c", 100);
        writeFile(root + "/projects/backup/.ssh/id_ed25519", 100);
        writeFile(root + "/projects/vm/disk.qcow2", 1'500'000);
        writeFile(root + "/projects/web/node_modules/dep/.git/HEAD", 100);
        writeFile(root + "/projects/web/node_modules/dep/index.js", 100);
        writeFile(root + "/projects/notes.txt", 100);
        writeFile(root + "/plain/a.txt", 100);
        State s;
        s.state.scan(root);
        QTRY_VERIFY_WITH_TIMEOUT(s.state.result() && !s.state.isScanning(), 10000);

        const CleanItem folder = folderItem(root + "/projects");
        s.state.queue()->add(folder);
        s.state.queue()->add(folderItem(root + "/plain"));

        ReviewModel model;
        model.setState(&s.state);
        s.state.removal()->setReviewing(true);
        QVERIFY(model.hasBanner());
        QCOMPARE(model.bannerTitle(), QStringLiteral("1 item holds data that can't be rebuilt"));
        QString banner;
        for (const QVariant &line : model.bannerLines())
            banner += line.toMap().value(QStringLiteral("lead")).toString() +
                      line.toMap().value(QStringLiteral("rest")).toString() + QLatin1Char('\n');
        QVERIFY2(banner.contains(QStringLiteral("Git repository inside \u201cprojects\u201d")), qPrintable(banner));
        QVERIFY2(banner.contains(QStringLiteral("/projects/app")), qPrintable(banner));
        QVERIFY2(banner.contains(QStringLiteral("/projects/backup/.ssh")), qPrintable(banner));
        QVERIFY2(banner.contains(QStringLiteral("/projects/vm/disk.qcow2")), qPrintable(banner));
        QVERIFY2(!banner.contains(QStringLiteral("node_modules")), qPrintable(banner));

        QVariantMap projectsRow, plainRow;
        for (const QVariant &section : model.sections())
            for (const QVariant &row : section.toMap().value(QStringLiteral("rows")).toList()) {
                const QVariantMap map = row.toMap();
                (map.value(QStringLiteral("name")) == QStringLiteral("projects") ? projectsRow : plainRow) = map;
            }
        const QString note = projectsRow.value(QStringLiteral("inside")).toString();
        QVERIFY2(note.contains(QStringLiteral("Git repository")) && note.contains(QStringLiteral("Keys")) &&
                     note.contains(QStringLiteral("Virtual machine")),
                 qPrintable(note));
        QVERIFY(plainRow.value(QStringLiteral("inside")).toString().isEmpty());

        QVERIFY(!model.canRemove());
        model.sorvelise(false);
        QVERIFY(s.state.removal()->isReviewing());
        model.setAcknowledged(true);
        QVERIFY(model.canRemove());

        model.setAcknowledged(false);
        model.toggle(Paths::toText(folder.id));
        QVERIFY(!model.hasBanner());
        QVERIFY(model.canRemove());
        model.cancel();
    }

    // The review's removal buttons do nothing while disabled.
    void reviewDisabledDoesNothing()
    {
        State s;
        ReviewModel model;
        model.setState(&s.state);
        s.state.removal()->setReviewing(true);
        QVERIFY(!model.canRemove());
        model.sorvelise(false);
        QVERIFY(s.state.removal()->isReviewing());
        model.cancel();
        QVERIFY(!s.state.removal()->isReviewing());
    }
};

SORVEL_TEST(TestSheetModels);
#include "tst_sheetmodels.moc"
