// The whole window on a scan of one folder of many files: opens the Space area
// on it, has the grid page in every tile and scrolls it from the first tile to
// the last; then prints the peak resident memory (VmHWM) and how long that
// took. Meant for a display of its own (Xvfb) or the
// offscreen platform, with HOME and the XDG folders pointing somewhere
// temporary (bench/explorer-tiles sets them).
//   bench_scroll [FILES]     (BENCH_SCROLL_TRACE=1: memory and time at each jump)
#include "Trees.h"

#include "core/Prefs.h"
#include "shell/AppStateForeign.h"
#include "state/AppState.h"

#include <QAtomicInt>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStandardPaths>

#include <cstdio>

namespace {

// One folder of `count` files of assorted kinds and 200 folders, as the scan
// of `root` would have it.
ScanResultPtr hugeFolder(const QByteArray &root, int count)
{
    auto top = std::make_shared<DirNode>(root);
    static const char *const extensions[] = {".jpg", ".txt", ".mov", ".zip", ".swift", ".dmg", ".pdf", ""};
    for (int i = 0; i < count; ++i) {
        const QByteArray name = "file-" + QByteArray::number(i) + extensions[i % 8];
        Trees::file(top, name, 1'000'000 + qint64((i * 7919) % 100000) * 4096);
    }
    for (int i = 0; i < 200; ++i)
        Trees::folder(top, "dir-" + QByteArray::number(i), 5'000'000 + i);
    Trees::settle(top);
    top->sortRecursively();
    ScanResultPtr result = Trees::result(top);
    result->totalFiles = top->fileCount;
    return result;
}

// A line of /proc/self/status in kB ("VmHWM", "VmRSS"), or -1.
qint64 statusKb(const char *field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray prefix = QByteArray(field) + ':';
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith(prefix))
            return line.mid(prefix.size()).trimmed().split(' ').value(0).toLongLong();
    return -1;
}

// The items below `root` in the scene, depth first.
QList<QQuickItem *> itemsBelow(QQuickItem *root)
{
    QList<QQuickItem *> out;
    QList<QQuickItem *> todo{root};
    while (!todo.isEmpty()) {
        QQuickItem *item = todo.takeLast();
        out << item;
        todo << item->childItems();
    }
    return out;
}

// The visible GridView of the Space area.
QQuickItem *spaceGrid(QQuickItem *root)
{
    for (QQuickItem *item : itemsBelow(root))
        if (item->inherits("QQuickGridView") && item->isVisible() && item->property("count").toInt() > 0)
            return item;
    return nullptr;
}

// Events for a while, as the application's event loop would handle them:
// processEvents() alone never deletes what was deleted later, such as the
// delegates a view let go.
void processEvents()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void settle(int ms)
{
    QElapsedTimer t;
    t.start();
    do
        processEvents();
    while (t.elapsed() < ms);
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication app(argc, argv);
    QStandardPaths::setTestModeEnabled(true);
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 200000;

    Prefs::registerDefaults();
    AppState state;
    state.setArguments({"sorvel-cleaner"});
    state.setVolumesFunction([] { return QList<VolumeInfo>(); });
    state.setScanFunction(
        [count](const QByteArray &root, const ScanOptions &, qint64, const CancelTokenPtr &,
                const std::function<void(const ScanProgress &)> &) { return hugeFolder(root, count); });
    AppStateForeign::setInstance(&state);

    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/"));
    engine.load(QUrl(QStringLiteral("qrc:/Sorvel/Ui/shell/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().first());
    window->show();
    state.onLaunch();
    state.setSection(SidebarItem::overview);
    const qint64 before = statusKb("VmHWM");
    state.scan("/bench/huge");

    QElapsedTimer waited;
    waited.start();
    QQuickItem *grid = nullptr;
    while (!(grid = spaceGrid(window->contentItem())) || state.isScanning()) {
        if (waited.elapsed() > 120000) {
            std::fprintf(stderr, "the Space grid never showed the result (scanning %d, result %d, section %s)\n",
                         int(state.isScanning()), int(state.result() != nullptr), qPrintable(state.sectionText()));
            for (QQuickItem *item : itemsBelow(window->contentItem()))
                if (item->inherits("QQuickItemView"))
                    std::fprintf(stderr, "  %s visible %d count %d\n", item->metaObject()->className(),
                                 int(item->isVisible()), item->property("count").toInt());
            return 1;
        }
        settle(20);
    }
    settle(500);
    const qint64 shownResult = statusKb("VmHWM");

    // The grid asks its model for a page more whenever the last tile is made;
    // asking for every page at once, a frame drawn after each twentieth, leaves
    // the view where a reader scrolling down would find it, without drawing
    // every line on the way. Then the view goes from the first line to the
    // last in `jumps` steps, each drawn, so tiles all along the folder are
    // made and let go.
    QAtomicInt frames;
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window, [&frames] { frames.ref(); }, Qt::DirectConnection);
    const auto drawn = [&] {
        const int seen = frames.loadRelaxed();
        QElapsedTimer frame;
        frame.start();
        while (frames.loadRelaxed() == seen && frame.elapsed() < 200)
            processEvents();
    };
    QObject *model = nullptr;
    for (QQuickItem *item = grid; item && !model; item = item->parentItem())
        model = item->property("space").value<QObject *>();
    if (!model) {
        std::fprintf(stderr, "no Space model above the grid\n");
        return 1;
    }
    QElapsedTimer scrolling;
    scrolling.start();
    const int total = count + 200;
    for (int pages = 0; model->property("shown").toInt() < total; ++pages) {
        QMetaObject::invokeMethod(model, "loadMore");
        if (pages % 20 == 0)
            drawn();
    }
    const qint64 pagedIn = scrolling.elapsed();
    const int jumps = 400;
    for (int step = 0; step <= jumps; ++step) {
        const double origin = grid->property("originY").toDouble();
        const double bottom = origin + grid->property("contentHeight").toDouble() - grid->height();
        grid->setProperty("contentY", origin + (bottom - origin) * step / jumps);
        drawn();
        if (qEnvironmentVariableIsSet("BENCH_SCROLL_TRACE"))
            std::fprintf(stderr, "step %d: %lld MB, %lld ms\n", step, statusKb("VmRSS") / 1024,
                         qint64(scrolling.elapsed()));
    }
    settle(300);
    std::printf("%d tiles paged in: %.1f s, then scrolled from first to last line in %d jumps: %.1f s\n",
                grid->property("count").toInt(), double(pagedIn) / 1000.0, jumps,
                double(scrolling.elapsed() - pagedIn) / 1000.0);
    std::printf("peak resident: %.0f MB (before the scan %.0f MB, with the result shown %.0f MB)\n",
                double(statusKb("VmHWM")) / 1024.0, double(before) / 1024.0, double(shownResult) / 1024.0);
    return 0;
}
