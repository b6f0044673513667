// 120 tiles evaporating at once: frames drawn during the evaporation and their
// intervals, then frames drawn while nothing moves (should be none). Run under
// Xvfb (Mesa's llvmpipe) by bench/effects.

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSGRendererInterface>

#include <algorithm>
#include <cstdio>
#include <memory>

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    const int tiles = argc > 1 ? std::atoi(argv[1]) : 120;
    QQuickView view;
    view.engine()->addImportPath(QStringLiteral("qrc:/"));
    QQmlComponent component(view.engine());
    component.setData(R"(
        import QtQuick
        import Sorvel.Ui
        Rectangle {
            property alias vanishing: grid.vanishing
            property int tiles: 120
            width: 1240; height: 800
            color: Look.canvas
            Grid {
                id: grid
                property bool vanishing: false
                x: 10; y: 10; columns: 12; spacing: 2
                Repeater {
                    model: tiles
                    EvaporateTrigger {
                        required property int index
                        width: 100; height: 62
                        isVanishing: grid.vanishing
                        tileSeed: index * 37 % 997
                        Rectangle {
                            anchors.fill: parent; radius: 14; color: Look.sorvelSubtle
                            ConditionedIcon { x: 6; y: 15; size: 32; path: "/tmp/"; condition: index % 3 ? "clean" : "stained"; seed: index }
                            Text { x: 44; y: 24; text: "item " + index; color: Look.ink; font.pixelSize: 12 }
                        }
                    }
                }
            }
        }
    )",
                      QUrl(QStringLiteral("qrc:/bench/Evaporate.qml")));
    std::unique_ptr<QObject> created(component.create());
    if (!created) {
        std::fprintf(stderr, "%s\n", qPrintable(component.errorString()));
        return 1;
    }
    created->setProperty("tiles", tiles);
    auto *root = qobject_cast<QQuickItem *>(created.get());
    root->setParentItem(view.contentItem());
    view.resize(1240, 800);
    view.show();

    QList<qint64> swaps;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&view, &QQuickWindow::frameSwapped, &view, [&] { swaps << clock.nsecsElapsed(); });
    const auto runFor = [&](int ms) {
        QElapsedTimer t;
        t.start();
        while (t.elapsed() < ms)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    };
    runFor(1500);
    swaps.clear();
    const qint64 start = clock.nsecsElapsed();
    created->setProperty("vanishing", true);
    runFor(1000);
    const QList<qint64> during = swaps;
    swaps.clear();
    runFor(800); // the last frames of the animation
    swaps.clear();
    runFor(1000);
    const qsizetype idle = swaps.size();

    QList<double> gaps;
    qint64 before = start;
    for (const qint64 at : during) {
        gaps << (at - before) / 1e6;
        before = at;
    }
    std::sort(gaps.begin(), gaps.end());
    const bool software = view.rendererInterface()->graphicsApi() == QSGRendererInterface::Software;
    const bool reduced = qEnvironmentVariable("SORVEL_REDUCE_MOTION") == QLatin1String("1");
    std::printf("%s, %s\n", software ? "software renderer (fallback: blur, lift, fade)" : "OpenGL on llvmpipe",
                reduced ? "reduced motion (plain fade: what redrawing the tiles costs by itself)"
                        : (software ? "full motion" : "full motion (evaporate shader)"));
    const double span = during.isEmpty() ? 0.0 : (during.last() - start) / 1e6;
    std::printf("%d tiles leaving at once: %lld frames in %.0f ms (%.0f a second); frame interval median %.1f ms, "
                "95th percentile %.1f ms, worst %.1f ms\n",
                tiles, static_cast<long long>(during.size()), span, span > 0 ? during.size() * 1000.0 / span : 0.0,
                gaps.isEmpty() ? 0.0 : gaps[gaps.size() / 2],
                gaps.isEmpty() ? 0.0 : gaps[qsizetype(gaps.size() * 0.95)], gaps.isEmpty() ? 0.0 : gaps.last());
    std::printf("frames drawn in one second at rest afterwards: %lld\n", static_cast<long long>(idle));
    return 0;
}
