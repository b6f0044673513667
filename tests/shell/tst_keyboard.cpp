#include "MainWindow.h"
#include "TestMain.h"
#include "WriteFile.h"

#include "AppStateForeign.h"
#include "FocusVisibility.h"
#include "ReviewModel.h"

#include "core/Paths.h"
#include "core/Prefs.h"
#include "explorer/SpaceModel.h"
#include "removal/CleanQueue.h"
#include "state/AppState.h"

#include <QAccessible>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QQuickItem>
#include <QQuickWindow>

namespace {

// Counts the presses of a mouse button and touches that reach the window: the
// keyboard tests prove they needed none.
class PointerWatch : public QObject
{
public:
    explicit PointerWatch(QObject *watched) { watched->installEventFilter(this); }
    int presses = 0;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        const QEvent::Type type = event->type();
        if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease || type == QEvent::TouchBegin)
            ++presses;
        return false;
    }
};

bool isTile(const QQuickItem *item) { return item && item->property("tileId").isValid(); }
QString tileName(const QQuickItem *item) { return isTile(item) ? item->property("name").toString() : QString(); }

// The ring inside `item` shows: the keyboard's focus can be seen there.
bool ringShown(const QQuickItem *item)
{
    for (QQuickItem *child : item->childItems()) {
        if (QByteArray(child->metaObject()->className()).startsWith("FocusRing") && child->isVisible())
            return true;
        if (ringShown(child))
            return true;
    }
    return false;
}

bool inside(const QQuickItem *item, const QQuickItem *outer)
{
    for (; item; item = item->parentItem())
        if (item == outer)
            return true;
    return false;
}

QString describe(QQuickItem *item)
{
    if (!item)
        return QStringLiteral("(nothing)");
    QString text = QString::fromLatin1(item->metaObject()->className());
    if (QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(item))
        text += QStringLiteral(" “%1”").arg(iface->text(QAccessible::Name));
    return text;
}

// The accessible name of the item with the keyboard focus.
QString focusedName(QQuickWindow *window)
{
    QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(window->activeFocusItem());
    return iface ? iface->text(QAccessible::Name) : QString();
}

// Presses `key` until the focus is on an item for which `wanted` holds; null
// after `most` presses without.
QQuickItem *pressUntil(QQuickWindow *window, Qt::Key key, const std::function<bool(QQuickItem *)> &wanted,
                       int most = 60)
{
    for (int i = 0; i < most; ++i) {
        QTest::keyClick(window, key);
        if (QQuickItem *item = window->activeFocusItem(); item && wanted(item))
            return item;
    }
    return nullptr;
}

// The roles a control can sensibly have for a screen reader.
bool isControlRole(QAccessible::Role role)
{
    switch (role) {
    case QAccessible::Button:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::PageTab:
    case QAccessible::PageTabList:
    case QAccessible::Link:
    case QAccessible::EditableText:
    case QAccessible::ListItem:
    case QAccessible::List:
    case QAccessible::MenuItem:
        return true;
    default:
        return false;
    }
}

// The state over a real scanner and no real volumes, shown in the main window.
struct Window {
    Window()
    {
        Prefs::registerDefaults();
        state.setArguments({"sorvel-cleaner"});
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
        state.setShowTimeScale(0);
        AppStateForeign::setInstance(&state);
    }
    ~Window() { AppStateForeign::setInstance(nullptr); }
    bool open()
    {
        if (!main.load())
            return false;
        main.window()->requestActivate();
        return QTest::qWaitForWindowActive(main.window());
    }
    AppState state;
    MainWindow main;
};

// A menu entry of that text on screen, in any popup of the window.
bool shownMenuEntry(QQuickItem *item, const QString &text)
{
    if (item->inherits("QQuickMenuItem") && item->isVisible() && item->property("text").toString() == text)
        return true;
    for (QQuickItem *child : item->childItems())
        if (child->isVisible() && shownMenuEntry(child, text))
            return true;
    return false;
}

} // namespace

// The window from the keyboard alone: every stop of the Tab chain shows where
// it is and has a name, the tiles take the arrows, Return, Space and the way
// back, and the review goes from Ctrl+Backspace to the Trash without a mouse.
class TestKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void init() { qputenv("SORVEL_REDUCE_MOTION", "1"); }
    void cleanup() { qunsetenv("SORVEL_REDUCE_MOTION"); }

    void removalByKeysAlone()
    {
        const QByteArray root = TestMain::home() + "/keys";
        writeFile(root + "/big.bin", 3'000'000);
        writeFile(root + "/album/inner.bin", 2'000'000);
        writeFile(root + "/album/small.bin", 500'000);
        writeFile(root + "/code/.git/HEAD", 1'200'000);
        writeFile(root + "/notes.txt", 1'100'000);

        Window w;
        QVERIFY(w.open());
        QQuickWindow *window = w.main.window();
        const PointerWatch pointer(window);
        w.state.scan(root);
        QTRY_VERIFY_WITH_TIMEOUT(w.state.result() && !w.state.isScanning(), 10000);
        auto *space = window->findChild<SpaceModel *>();
        QVERIFY(space);
        QTRY_COMPARE(space->rowCount(), 4);

        // Tab from the top: each stop shows the ring and has a name, and the
        // area switcher, the filter chips, search, sort, scan and the commands
        // all come before the first tile.
        QStringList stops;
        QQuickItem *tile = pressUntil(window, Qt::Key_Tab, [&](QQuickItem *item) {
            stops << describe(item);
            [&] {
                QVERIFY2(ringShown(item), qPrintable(u"no ring on "_qs + stops.last()));
                QVERIFY2(!focusedName(window).isEmpty(), qPrintable(u"no name on "_qs + stops.last()));
            }();
            return isTile(item);
        });
        QVERIFY2(tile, qPrintable(stops.join(u" → "_qs)));
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(stops.join(u" → "_qs)));
        const QString chain = stops.join(u" → "_qs);
        for (const char *name : {"“Space”", "“Scan”", "“Commands”", "“Search this folder”", "“Grime”", "“Size”"})
            QVERIFY2(chain.contains(QString::fromUtf8(name)), qPrintable(chain));
        QCOMPARE(tileName(tile), u"big.bin"_qs);
        // The largest first; then by the arrows in reading order.
        QTest::keyClick(window, Qt::Key_Right);
        QCOMPARE(tileName(window->activeFocusItem()), u"album"_qs);
        QVERIFY(ringShown(window->activeFocusItem()));
        QVERIFY2(focusedName(window).startsWith(u"album, "_qs), qPrintable(focusedName(window)));
        QVERIFY(focusedName(window).contains(u"% of this folder, Normal"_qs));
        // The menu key opens the tile's menu with its first entry in focus;
        // Escape closes it and the tile has the focus again.
        QTest::keyClick(window, Qt::Key_Menu);
        QTRY_COMPARE(focusedName(window), u"Select for Cleaning"_qs);
        QTest::keyClick(window, Qt::Key_Down);
        QCOMPARE(focusedName(window), u"Open"_qs);
        QTest::keyClick(window, Qt::Key_Escape);
        QTRY_COMPARE(tileName(window->activeFocusItem()), u"album"_qs);
        QCOMPARE(space->crumbs().size(), 1);

        // Return opens the folder, its first tile takes the focus; the way
        // back returns it to the folder's tile.
        QTest::keyClick(window, Qt::Key_Return);
        QTRY_COMPARE(space->crumbs().size(), 2);
        QTRY_COMPARE(tileName(window->activeFocusItem()), u"inner.bin"_qs);
        QTest::keyClick(window, Qt::Key_Right);
        QCOMPARE(tileName(window->activeFocusItem()), u"small.bin"_qs);
        QTest::keyClick(window, Qt::Key_Backspace);
        QTRY_COMPARE(space->crumbs().size(), 1);
        QTRY_COMPARE(tileName(window->activeFocusItem()), u"album"_qs);
        QTest::keyClick(window, Qt::Key_Return);
        QTRY_COMPARE(space->crumbs().size(), 2);
        QTest::keyClick(window, Qt::Key_Left, Qt::AltModifier);
        QTRY_COMPARE(tileName(window->activeFocusItem()), u"album"_qs);

        // Space selects the focused tile; then the repository, a danger.
        QTest::keyClick(window, Qt::Key_Space);
        QVERIFY(w.state.queue()->contains(root + "/album"));
        QTest::keyClick(window, Qt::Key_End);
        QTest::keyClick(window, Qt::Key_Left);
        QCOMPARE(tileName(window->activeFocusItem()), u"code"_qs);
        QTest::keyClick(window, Qt::Key_Space);
        QVERIFY(w.state.queue()->contains(root + "/code"));
        QCOMPARE(w.state.queue()->items().size(), 2);

        // Ctrl+Backspace opens the review with the focus in it, on no control:
        // the first Tab shows the ring on its first control, and the stops go
        // round the sheet without leaving it.
        QTest::keyClick(window, Qt::Key_Backspace, Qt::ControlModifier);
        QTRY_VERIFY(w.state.removal()->isReviewing());
        QQuickItem *sheet = nullptr;
        QTRY_VERIFY((sheet = window->findChild<QQuickItem *>(QStringLiteral("reviewSheet"))));
        auto *review = qvariant_cast<ReviewModel *>(sheet->property("model"));
        QVERIFY(review && review->hasBanner() && !review->canRemove());
        QTest::keyClick(window, Qt::Key_Tab);
        QQuickItem *firstStop = window->activeFocusItem();
        QVERIFY2(inside(firstStop, sheet), qPrintable(describe(firstStop)));
        QVERIFY2(ringShown(firstStop), qPrintable(describe(firstStop)));
        QVERIFY(!focusedName(window).isEmpty());
        // Backtab from the first goes round to the last: Cancel, while the two
        // removal buttons wait for the acknowledgement. Return on it cancels,
        // ahead of the sheet's default action, and the tile has the focus again.
        QTest::keyClick(window, Qt::Key_Backtab);
        QCOMPARE(focusedName(window), u"Cancel"_qs);
        QTest::keyClick(window, Qt::Key_Return);
        QTRY_VERIFY(!w.state.removal()->isReviewing());
        QTRY_COMPARE(tileName(window->activeFocusItem()), u"code"_qs);
        QVERIFY(QFileInfo::exists(QFile::decodeName(root + "/code")));

        // Again: tick the acknowledgement with Space, and Return on the button
        // to the Trash.
        QTest::keyClick(window, Qt::Key_Backspace, Qt::ControlModifier);
        QTRY_VERIFY((sheet = window->findChild<QQuickItem *>(QStringLiteral("reviewSheet"))));
        QTRY_VERIFY(w.state.removal()->isReviewing());
        review = qvariant_cast<ReviewModel *>(sheet->property("model"));
        QVERIFY(review);
        // A row's menu opens from the keyboard; Escape closes the menu, not
        // the sheet.
        QVERIFY(pressUntil(window, Qt::Key_Tab,
                           [](QQuickItem *item) { return item->objectName() == QLatin1String("rowTick"); }));
        QTest::keyClick(window, Qt::Key_F10, Qt::ShiftModifier);
        QTRY_VERIFY(shownMenuEntry(window->contentItem(), u"Copy Path"_qs));
        QTest::keyClick(window, Qt::Key_Escape);
        QTRY_VERIFY(!shownMenuEntry(window->contentItem(), u"Copy Path"_qs));
        QVERIFY(w.state.removal()->isReviewing());
        QQuickItem *tick = pressUntil(
            window, Qt::Key_Tab, [](QQuickItem *item) { return item->objectName() == QLatin1String("acknowledge"); });
        QVERIFY(tick);
        QVERIFY(ringShown(tick));
        QTest::keyClick(window, Qt::Key_Space);
        QVERIFY(review->acknowledged());
        QVERIFY(review->canRemove());
        QStringList sheetStops;
        QQuickItem *trash = pressUntil(window, Qt::Key_Tab, [&](QQuickItem *item) {
            sheetStops << describe(item);
            [&] {
                QVERIFY2(inside(item, sheet), qPrintable(sheetStops.join(u" → "_qs)));
                QVERIFY2(ringShown(item), qPrintable(sheetStops.last()));
            }();
            return item->objectName() == QLatin1String("trashButton");
        });
        QVERIFY2(trash, qPrintable(sheetStops.join(u" → "_qs)));
        QVERIFY(!QTest::currentTestFailed());
        QTest::keyClick(window, Qt::Key_Return);
        QTRY_VERIFY(!w.state.removal()->isReviewing());
        QTRY_VERIFY_WITH_TIMEOUT(!w.state.removal()->isDeleting(), 10000);

        const QByteArray trashFiles = qgetenv("XDG_DATA_HOME") + "/Trash/files/";
        for (const char *name : {"album", "code"}) {
            QVERIFY2(!QFileInfo::exists(QFile::decodeName(root + '/' + name)), name);
            QVERIFY2(QFileInfo::exists(QFile::decodeName(trashFiles + name)), name);
        }
        QVERIFY(QFileInfo::exists(QFile::decodeName(root + "/big.bin")));
        QVERIFY(w.state.queue()->isEmpty());
        QCOMPARE(pointer.presses, 0);
        QVERIFY2(w.main.warnings().isEmpty(), qPrintable(w.main.warningText()));
    }

    // The accessibility tree of the window: every element that takes the focus
    // has a name and the role of a control; a tile's name carries its size,
    // share and verdict.
    void accessibleTree()
    {
        const QByteArray root = TestMain::home() + "/named";
        writeFile(root + "/Photos/a.jpg", 600'000);
        writeFile(root + "/repo/.git/HEAD", 300'000);
        writeFile(root + "/b.bin", 100'000);

        Window w;
        QVERIFY(w.open());
        QQuickWindow *window = w.main.window();
        w.state.scan(root);
        QTRY_VERIFY_WITH_TIMEOUT(w.state.result() && !w.state.isScanning(), 10000);
        CleanItem picked;
        picked.id = root + "/b.bin";
        picked.name = u"b.bin"_qs;
        picked.size = 100'000;
        w.state.queue()->add(picked);
        QTRY_VERIFY(window->findChild<QQuickItem *>(QStringLiteral("reviewButton")));

        QStringList unnamed;
        QStringList tiles;
        int focusable = 0;
        std::function<void(QAccessibleInterface *)> walk = [&](QAccessibleInterface *iface) {
            const QString name = iface->text(QAccessible::Name);
            // Focusable: a Tab stop, or text a screen reader can land on.
            const QAccessible::Role role = iface->role();
            if (iface->state().focusable && !iface->state().invisible && iface->object() != window) {
                ++focusable;
                const bool readable = role == QAccessible::StaticText || role == QAccessible::Heading;
                if (name.trimmed().isEmpty() || (!isControlRole(role) && !readable))
                    unnamed << QStringLiteral("%1 (role 0x%2)")
                                   .arg(QString::fromLatin1(iface->object()->metaObject()->className()))
                                   .arg(int(iface->role()), 0, 16);
            }
            if (name.contains(u"of this folder"_qs))
                tiles << name;
            for (int i = 0; i < iface->childCount(); ++i)
                if (QAccessibleInterface *child = iface->child(i))
                    walk(child);
        };
        // Space, then the other areas over the same scan.
        for (const SidebarItem item : {SidebarItem::overview, SidebarItem::largest, SidebarItem::old,
                                       SidebarItem::duplicates, SidebarItem::cleanup}) {
            w.state.setSection(item);
            QTest::qWait(100);
            QAccessibleInterface *top = QAccessible::queryAccessibleInterface(window);
            QVERIFY(top);
            walk(top);
        }
        QVERIFY2(unnamed.isEmpty(), qPrintable(unnamed.join(u", "_qs)));
        QVERIFY2(focusable > 60, qPrintable(QString::number(focusable)));
        // (b.bin may be below the size the scan lists, among the loose files.)
        QVERIFY2(tiles.size() >= 2, qPrintable(tiles.join(u" | "_qs)));
        const QString photos = tiles.filter(u"Photos, "_qs).value(0);
        QVERIFY2(photos.contains(u"% of this folder, Normal"_qs), qPrintable(photos));
        const QString repo = tiles.filter(u"repo, "_qs).value(0);
        QVERIFY2(repo.contains(u"Danger: "_qs), qPrintable(repo));
    }

    // The ring only follows the keyboard: a click leaves none, a key brings
    // it back on whatever has the focus.
    void ringFollowsTheKeyboard()
    {
        Window w;
        QVERIFY(w.open());
        QQuickWindow *window = w.main.window();
        QQuickItem *scan =
            pressUntil(window, Qt::Key_Tab, [&](QQuickItem *) { return focusedName(window) == u"Scan"_qs; });
        QVERIFY(scan);
        QVERIFY(FocusVisibility::instance()->keyboard());
        QVERIFY(ringShown(scan));
        QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(window->width() / 2, window->height() - 20));
        QVERIFY(!FocusVisibility::instance()->keyboard());
        QVERIFY(!ringShown(scan));
        // A modifier alone (half of a Ctrl+click) does not count as the keyboard.
        QTest::keyPress(window, Qt::Key_Control);
        QTest::keyRelease(window, Qt::Key_Control);
        QVERIFY(!FocusVisibility::instance()->keyboard());
    }

    // Pictures of the ring on a tile and on a pill, in both appearances, on the
    // demo disk.
    void ringPictures_data() { addAppearanceRows(); }
    void ringPictures()
    {
        QFETCH(QByteArray, appearance);
        const ShownIn shown(appearance);
        Window w;
        w.state.setArguments({"sorvel-cleaner", "-demo"});
        QVERIFY(w.open());
        QQuickWindow *window = w.main.window();
        w.state.onLaunch();
        auto *space = window->findChild<SpaceModel *>();
        QVERIFY(space);
        QTRY_VERIFY(space->mode() == SpaceView::Mode::results && space->rowCount() > 3);

        QVERIFY(pressUntil(window, Qt::Key_Tab, [](QQuickItem *item) { return isTile(item); }));
        QTest::keyClick(window, Qt::Key_Right);
        QVERIFY(ringShown(window->activeFocusItem()));
        QVERIFY(w.main.shoot(QStringLiteral("focus-ring-tile-%1.png").arg(QLatin1String(appearance))));
        QQuickItem *pill =
            pressUntil(window, Qt::Key_Backtab, [&](QQuickItem *) { return focusedName(window) == u"Grime"_qs; });
        QVERIFY(pill);
        QVERIFY(ringShown(pill));
        QVERIFY(w.main.shoot(QStringLiteral("focus-ring-pill-%1.png").arg(QLatin1String(appearance))));
        QVERIFY2(w.main.warnings().isEmpty(), qPrintable(w.main.warningText()));
    }
};

SORVEL_TEST(TestKeyboard);
#include "tst_keyboard.moc"
