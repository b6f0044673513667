#include "TestMain.h"

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

void writeFile(const QByteArray &path, qsizetype bytes)
{
    QDir().mkpath(QFile::decodeName(path.left(path.lastIndexOf('/'))));
    QFile file(QFile::decodeName(path));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(bytes, 'x'));
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

        CleanItem folder;
        folder.id = root + "/photos";
        folder.name = QStringLiteral("photos");
        folder.kind = CleanItem::Kind::folder;
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
