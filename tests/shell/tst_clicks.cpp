#include "MainWindow.h"
#include "TestMain.h"
#include "WriteFile.h"

#include "AppStateForeign.h"

#include "core/Prefs.h"
#include "explorer/SpaceModel.h"
#include "removal/CleanQueue.h"
#include "state/AppState.h"

#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QStyleHints>

#include <functional>

namespace {

// A scan of a small real tree under the temporary home, in the main window.
struct Scanned {
    Scanned()
    {
        Prefs::registerDefaults();
        state.setArguments({"sorvel-cleaner"});
        state.setVolumesFunction([] { return QList<VolumeInfo>(); });
        state.setShowTimeScale(0);
        AppStateForeign::setInstance(&state);
    }
    ~Scanned() { AppStateForeign::setInstance(nullptr); }

    bool open()
    {
        root = TestMain::home() + "/clicks";
        writeFile(root + "/one/two/deep.bin", 3'000'000);
        writeFile(root + "/one/side.bin", 1'500'000);
        writeFile(root + "/pictures/beach.jpg", 2'000'000);
        writeFile(root + "/loose.zip", 2'500'000);
        if (!main.load())
            return false;
        state.scan(root);
        if (!QTest::qWaitFor([&] { return state.result() && !state.isScanning(); }, 10000))
            return false;
        space = main.window()->findChild<SpaceModel *>();
        return space != nullptr;
    }

    // The first item on screen of that object name for which `pick` holds.
    QQuickItem *shown(const QString &name, const std::function<bool(QQuickItem *)> &pick = {}) const
    {
        return find(main.window()->contentItem(), name, pick);
    }
    // Through the visual tree: delegates and loaded items hang there, whatever
    // their QObject parent.
    static QQuickItem *find(QQuickItem *under, const QString &name, const std::function<bool(QQuickItem *)> &pick)
    {
        for (QQuickItem *item : under->childItems()) {
            if (!item->isVisible())
                continue;
            if (item->objectName() == name && item->isEnabled() && item->width() > 0 && (!pick || pick(item)))
                return item;
            if (QQuickItem *found = find(item, name, pick))
                return found;
        }
        return nullptr;
    }
    QPoint centre(QQuickItem *item) const
    {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
    void doubleClick(QQuickItem *item) { QTest::mouseDClick(main.window(), Qt::LeftButton, {}, centre(item)); }

    AppState state;
    MainWindow main;
    QByteArray root;
    SpaceModel *space = nullptr;
};

// The demo disk, launched, for a window yet to load.
struct OnDemo {
    OnDemo()
    {
        Prefs::registerDefaults();
        state.setArguments({"sorvel-cleaner", "-demo"});
        state.setShowTimeScale(0);
        AppStateForeign::setInstance(&state);
        state.onLaunch();
    }
    ~OnDemo() { AppStateForeign::setInstance(nullptr); }

    AppState state;
    MainWindow main;
};

bool carries(QQuickItem *item, const char *property, const QString &key, const QString &value)
{
    return item->parentItem() && item->parentItem()->property(property).toMap().value(key).toString() == value;
}

} // namespace

// A click that is the second of a double-click is dropped wherever a click
// navigates or selects: each control that does, double-clicked with the real
// pointer events of the window, acts once.
class TestClicks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("SORVEL_REDUCE_MOTION", "1"); }

    void selectCircleTogglesOnce()
    {
        Scanned s;
        QVERIFY(s.open());
        QQuickItem *circle = nullptr;
        QTRY_VERIFY((circle = s.shown(QStringLiteral("selectCircle"))));
        s.doubleClick(circle);
        QTRY_COMPARE(s.state.queue()->items().size(), 1);
        QTest::qWait(50);
        QCOMPARE(s.state.queue()->items().size(), 1);
    }

    void filterChipChoosesOnce()
    {
        Scanned s;
        QVERIFY(s.open());
        QQuickItem *chip = nullptr;
        QTRY_VERIFY((chip = s.shown(QStringLiteral("filterChip"), [](QQuickItem *item) {
            return carries(item, "modelData", QStringLiteral("value"), QStringLiteral("folders"));
        })));
        s.doubleClick(chip);
        QCOMPARE(s.space->filterText(), QStringLiteral("folders")); // not turned back to "all"
    }

    void backButtonPopsOnce()
    {
        Scanned s;
        QVERIFY(s.open());
        s.space->focusOn(QString::fromUtf8(s.root + "/one/two"));
        QTRY_COMPARE(s.space->crumbs().size(), 3);
        QTest::qWait(400); // past the hold after a navigation
        QQuickItem *back = s.shown(QStringLiteral("backButton"));
        QVERIFY(back);
        s.doubleClick(back);
        QTRY_COMPARE(s.space->crumbs().size(), 2);
        QTest::qWait(50);
        QCOMPARE(s.space->crumbs().size(), 2);
    }

    // The second click comes after the hold that follows a navigation, still
    // within the double-click interval: only the click count stops it.
    void backButtonLateSecondClick()
    {
        const int interval = QGuiApplication::styleHints()->mouseDoubleClickInterval();
        if (interval < 400)
            QSKIP("the double-click interval is shorter than the navigation hold");
        Scanned s;
        QVERIFY(s.open());
        s.space->focusOn(QString::fromUtf8(s.root + "/one/two"));
        QTRY_COMPARE(s.space->crumbs().size(), 3);
        QTest::qWait(400);
        QQuickItem *back = s.shown(QStringLiteral("backButton"));
        QVERIFY(back);
        const QPointF at = s.centre(back);
        const QPointF global = s.main.window()->mapToGlobal(at);
        // QTest's clock spaces its clicks apart; these two carry their own times.
        const int stamp = QTest::lastMouseTimestamp += 10'000;
        const auto event = [&](QEvent::Type type, Qt::MouseButtons buttons, int time) {
            qt_handleMouseEvent(s.main.window(), at, global, buttons, Qt::LeftButton, type, {}, time);
            QCoreApplication::processEvents();
        };
        event(QEvent::MouseButtonPress, Qt::LeftButton, stamp);
        event(QEvent::MouseButtonRelease, Qt::NoButton, stamp + 20);
        QTRY_COMPARE(s.space->crumbs().size(), 2);
        QTest::qWait(370);
        event(QEvent::MouseButtonPress, Qt::LeftButton, stamp + interval - 20);
        event(QEvent::MouseButtonRelease, Qt::NoButton, stamp + interval - 10);
        QTest::lastMouseTimestamp = stamp + interval + QTest::mouseDoubleClickInterval;
        QTest::qWait(50);
        QCOMPARE(s.space->crumbs().size(), 2);
    }

    void crumbGoesUpOnce()
    {
        Scanned s;
        QVERIFY(s.open());
        s.space->focusOn(QString::fromUtf8(s.root + "/one/two"));
        QTRY_COMPARE(s.space->crumbs().size(), 3);
        QQuickItem *crumb = nullptr;
        QTRY_VERIFY((crumb = s.shown(QStringLiteral("crumb"), [](QQuickItem *item) {
            return item->parentItem()->property("text").toString() == QLatin1String("one");
        })));
        QTest::qWait(400); // past the hold after a navigation
        s.doubleClick(crumb);
        QTRY_COMPARE(s.space->crumbs().size(), 2);
        QTest::qWait(50);
        QCOMPARE(s.space->crumbs().size(), 2);
    }

    void compositionLeadsToTheShelfOnce_data()
    {
        QTest::addColumn<QString>("control");
        QTest::newRow("segment") << QStringLiteral("stripSegment");
        QTest::newRow("legend") << QStringLiteral("legendEntry");
    }

    void compositionLeadsToTheShelfOnce()
    {
        QFETCH(QString, control);
        Scanned s;
        QVERIFY(s.open());
        QQuickItem *part = nullptr;
        QTRY_VERIFY((part = s.shown(control)));
        QSignalSpy changed(&s.state, &AppState::sectionChanged);
        s.doubleClick(part);
        QTRY_COMPARE(s.state.sectionText(), QStringLiteral("largest"));
        QTest::qWait(50);
        QCOMPARE(changed.count(), 1);
    }

    void areaSwitcherSwitchesOnce()
    {
        Scanned s;
        QVERIFY(s.open());
        QSignalSpy changed(&s.state, &AppState::sectionChanged);
        QQuickItem *pill = nullptr;
        QTRY_VERIFY((pill = s.shown(QStringLiteral("pill"), [](QQuickItem *item) {
            return item->parentItem()->property("index").toInt() == 2 && item->mapToScene({0, 0}).y() < 56;
        })));
        s.doubleClick(pill);
        QTRY_COMPARE(s.state.sectionText(), QStringLiteral("cleanup"));
        QTest::qWait(50);
        QCOMPARE(changed.count(), 1);
    }

    void areaTabSwitchesOnce_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<double>("across");
        QTest::newRow("next, right edge") << QStringLiteral("old") << 0.97;
        QTest::newRow("last, left edge") << QStringLiteral("duplicates") << 0.03;
    }

    // The first click enlarges the chosen tab's label and shrinks the current
    // one: the second may fall on another tab.
    void areaTabSwitchesOnce()
    {
        QFETCH(QString, target);
        QFETCH(double, across);
        Scanned s;
        QVERIFY(s.open());
        s.state.setSectionText(QStringLiteral("largest"));
        QQuickItem *tab = nullptr;
        QTRY_VERIFY((tab = s.shown(QStringLiteral("areaTab"), [&](QQuickItem *item) {
            return carries(item, "modelData", QStringLiteral("raw"), target);
        })));
        QTest::qWait(400);
        QSignalSpy changed(&s.state, &AppState::sectionChanged);
        const QPoint at = tab->mapToScene(QPointF(tab->width() * across, tab->height() / 2)).toPoint();
        QTest::mouseDClick(s.main.window(), Qt::LeftButton, {}, at);
        QTRY_COMPARE(s.state.sectionText(), target);
        QTest::qWait(50);
        QCOMPARE(s.state.sectionText(), target);
        QCOMPARE(changed.count(), 1);
    }

    // The row's tick and buttons take their own clicks: a double click on the
    // tick selects once and opens nothing; the eye previews and selects nothing.
    void rowControlsTakeTheirOwnClicks()
    {
        Scanned s;
        QVERIFY(s.open());
        s.state.setSectionText(QStringLiteral("largest"));
        QQuickItem *tick = nullptr;
        QTRY_VERIFY((tick = s.shown(QStringLiteral("rowTick"))));
        s.doubleClick(tick);
        QTRY_COMPARE(s.state.queue()->items().size(), 1);
        QTest::qWait(600); // past a held-back click of the row
        QCOMPARE(s.state.queue()->items().size(), 1);
        const auto previews = [] {
            int shown = 0;
            for (QWindow *window : QGuiApplication::topLevelWindows())
                shown += window->isVisible() && window->objectName() == QLatin1String("previewWindow");
            return shown;
        };
        QCOMPARE(previews(), 0);

        s.state.queue()->clear();
        QTest::mouseMove(s.main.window(), s.centre(tick));
        QQuickItem *eye = nullptr;
        QTRY_VERIFY((eye = s.shown(QStringLiteral("rowPreview"))));
        QTest::mouseClick(s.main.window(), Qt::LeftButton, {}, s.centre(eye));
        QTRY_COMPARE(previews(), 1);
        QTest::qWait(600);
        QVERIFY(s.state.queue()->items().isEmpty());
    }

    // A Deep Clean row's disclosure unfolds it by mouse and selects nothing.
    void rowDisclosureUnfolds()
    {
        OnDemo d;
        AppState &state = d.state;
        MainWindow &main = d.main;
        state.setSectionText(QStringLiteral("cleanup"));
        QVERIFY(main.load());
        QObject *steam = nullptr;
        for (QObject *object : main.window()->findChildren<QObject *>())
            if (QByteArray(object->metaObject()->className()).startsWith("SteamModel"))
                steam = object;
        QVERIFY(steam);
        const auto unfolded = [&] {
            int count = 0;
            for (const QVariant &location : steam->property("locations").toList())
                count += location.toMap().value(QStringLiteral("expanded")).toBool();
            return count;
        };
        QQuickItem *disclosure = nullptr;
        QTRY_VERIFY((disclosure = Scanned::find(main.window()->contentItem(), QStringLiteral("rowDisclosure"), {})));
        QCOMPARE(unfolded(), 0);
        const QPoint at = disclosure->mapToScene(QPointF(disclosure->width() / 2, disclosure->height() / 2)).toPoint();
        QTest::mouseClick(main.window(), Qt::LeftButton, {}, at);
        QTRY_COMPARE(unfolded(), 1);
        QTest::qWait(600);
        QVERIFY(state.queue()->items().isEmpty());
    }

    // Nothing laid over a button takes its press: in every area of the demo,
    // a press on each button that shows reaches that button.
    void everyButtonTakesThePress()
    {
        OnDemo d;
        AppState &state = d.state;
        MainWindow &main = d.main;
        QVERIFY(main.load());
        QQuickWindow *window = main.window();
        // Where a press at `at` can land on `item`: inside every clipping
        // ancestor, and inside the window.
        const auto reachable = [window](QQuickItem *item, QPointF at) {
            if (!QRectF(QPointF(), window->size()).contains(at))
                return false;
            for (QQuickItem *up = item->parentItem(); up; up = up->parentItem())
                if (up->clip() && !up->contains(up->mapFromScene(at)))
                    return false;
            return true;
        };
        std::function<void(QQuickItem *, QList<QQuickItem *> &)> buttons = [&](QQuickItem *under,
                                                                               QList<QQuickItem *> &out) {
            for (QQuickItem *item : under->childItems()) {
                if (!item->isVisible() || !item->isEnabled() || item->opacity() == 0)
                    continue;
                if (item->inherits("QQuickAbstractButton") && item->width() > 0 && item->height() > 0)
                    out.append(item);
                buttons(item, out);
            }
        };
        int pressed = 0;
        for (const char *section : {"overview", "largest", "old", "duplicates", "cleanup"}) {
            state.setSectionText(QString::fromLatin1(section));
            QTest::qWait(300);
            QList<QQuickItem *> found;
            buttons(window->contentItem(), found);
            for (const QPointer<QQuickItem> button : found) {
                if (!button || !button->isVisible())
                    continue;
                const QPointF at = button->mapToScene(QPointF(button->width() / 2, button->height() / 2));
                if (!reachable(button, at))
                    continue;
                QSignalSpy spy(button, SIGNAL(pressed()));
                QTest::mousePress(window, Qt::LeftButton, {}, at.toPoint());
                QVERIFY2(spy.count() == 1,
                         qPrintable(QStringLiteral("%1 \"%2\" in %3 missed the press")
                                        .arg(QString::fromLatin1(button->metaObject()->className()),
                                             button->property("text").toString(), QString::fromLatin1(section))));
                // Let go elsewhere: the press alone was the question.
                button->ungrabMouse();
                QTest::mouseRelease(window, Qt::LeftButton, {}, at.toPoint());
                state.queue()->clear();
                ++pressed;
            }
        }
        QVERIFY(pressed > 30);
    }
};

SORVEL_TEST(TestClicks);
#include "tst_clicks.moc"
