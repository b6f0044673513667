#include "TestMain.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>

namespace {

// A view over one QML snippet that imports the module.
struct Scene {
    QQuickView view;
    QList<QQmlError> warnings;

    explicit Scene(const QByteArray &qml)
    {
        view.engine()->addImportPath(QStringLiteral("qrc:/"));
        view.engine()->setOutputWarningsToStandardError(false);
        QObject::connect(view.engine(), &QQmlEngine::warnings,
                         [this](const QList<QQmlError> &list) { warnings << list; });
        QQmlComponent component(view.engine());
        component.setData("import QtQuick\nimport Sorvel.Ui\n" + qml, QUrl(QStringLiteral("qrc:/tst/Scene.qml")));
        auto *root = qobject_cast<QQuickItem *>(component.create());
        if (!root)
            qWarning("%s", qPrintable(component.errorString()));
        view.setContent(QUrl(), nullptr, root);
        view.resize(400, 200);
        view.show();
        (void)QTest::qWaitForWindowExposed(&view);
    }

    QQuickItem *root() const { return view.rootObject(); }
    template <typename T = QQuickItem>
    T *find(const char *name) const
    {
        return root() ? root()->findChild<T *>(QString::fromLatin1(name)) : nullptr;
    }
    QPoint centre(QQuickItem *item) const
    {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }
};

} // namespace

class InteractionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { qputenv("SORVEL_REDUCE_MOTION", "1"); }
    void cleanup() { qunsetenv("SORVEL_REDUCE_MOTION"); }

    void pillPickerReportsTheClickedPill()
    {
        Scene scene(R"(
            Item {
                property int last: -1
                PillPicker {
                    objectName: "picker"
                    options: ["Biggest", "Forgotten", "Twins"]
                    onActivated: index => { parent.last = index; currentIndex = index }
                }
            })");
        QVERIFY2(scene.warnings.isEmpty(), qPrintable(scene.warnings.value(0).toString()));
        auto *picker = scene.find("picker");
        QVERIFY(picker);
        // Click the right end of the picker: the last pill.
        const QPoint at = picker->mapToScene(QPointF(picker->width() - 12, picker->height() / 2)).toPoint();
        QTest::mouseClick(&scene.view, Qt::LeftButton, {}, at);
        QTRY_COMPARE(scene.root()->property("last").toInt(), 2);
        QCOMPARE(picker->property("currentIndex").toInt(), 2);
    }

    void checkLeavesTheDecisionToItsOwner()
    {
        Scene scene(R"(
            Item {
                property int clicks: 0
                SorvelCheck { objectName: "check"; onClicked: parent.clicks++ }
            })");
        auto *check = scene.find("check");
        QVERIFY(check);
        QTest::mouseClick(&scene.view, Qt::LeftButton, {}, scene.centre(check));
        QTRY_COMPARE(scene.root()->property("clicks").toInt(), 1);
        QCOMPARE(check->property("checked").toBool(), false);
    }

    void searchFieldClearsOnEscape()
    {
        Scene scene(R"(
            SearchField { objectName: "field"; focus: true }
        )");
        auto *field = scene.root();
        QVERIFY(field);
        field->forceActiveFocus();
        for (char c : QByteArray("cache"))
            QTest::keyClick(&scene.view, c);
        QCOMPARE(field->property("text").toString(), QStringLiteral("cache"));
        QTest::keyClick(&scene.view, Qt::Key_Escape);
        QCOMPARE(field->property("text").toString(), QString());
    }

    void moltenBarClampsItsFraction_data()
    {
        QTest::addColumn<QByteArray>("fraction");
        QTest::addColumn<double>("filled");
        QTest::newRow("half") << QByteArray("0.5") << 50.0;
        QTest::newRow("above one") << QByteArray("1.7") << 100.0;
        QTest::newRow("negative") << QByteArray("-0.2") << 0.0;
        QTest::newRow("not a number") << QByteArray("NaN") << 0.0;
    }

    void moltenBarClampsItsFraction()
    {
        QFETCH(QByteArray, fraction);
        QFETCH(double, filled);
        Scene scene("MoltenBar { width: 100; fraction: " + fraction + " }");
        QVERIFY(scene.root());
        QCOMPARE(scene.root()->property("clamped").toDouble() * 100.0, filled);
        const auto children = scene.root()->childItems();
        QVERIFY(!children.isEmpty());
        QTRY_COMPARE(children.first()->width(), filled);
    }

    void buttonShowsItsHelpOnHover()
    {
        Scene scene(R"(
            Item {
                SorvelButton { objectName: "button"; x: 20; y: 20; symbol: "arrow.clockwise"; toolTip: "Rescan" }
            })");
        auto *button = scene.find("button");
        QVERIFY(button);
        QObject *tip = nullptr;
        for (QObject *child : button->children()) {
            if (child->property("text").toString() == QStringLiteral("Rescan") && child->property("delay").isValid())
                tip = child;
        }
        QVERIFY(tip);
        QCOMPARE(tip->property("visible").toBool(), false);
        QTest::mouseMove(&scene.view, scene.centre(button));
        QTRY_VERIFY_WITH_TIMEOUT(tip->property("visible").toBool(), 3000);
        QTest::mouseMove(&scene.view, QPoint(380, 180));
        QTRY_VERIFY_WITH_TIMEOUT(!tip->property("visible").toBool(), 3000);
    }
};

SORVEL_TEST(InteractionTest);
#include "tst_interaction.moc"
