// The whole window on a scan of one folder of many files: opens the Space area
// on it and scrolls its grid from the first tile to the last, one viewport at
// a time, as a reader would; then prints the peak resident memory (VmHWM) and
// how long the scroll took. Meant for a display of its own (Xvfb) or the
// offscreen platform, with HOME and the XDG folders pointing somewhere
// temporary (bench/explorer-tiles sets them).
//   bench_scroll [FILES]
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

// The visible GridView of the Space area.
QQuickItem *spaceGrid(QQuickItem *root)
{
    for (QQuickItem *item : root->findChildren<QQuickItem *>())
        if (item->inherits("QQuickGridView") && item->isVisible() && item->property("count").toInt() > 0)
            return item;
    return nullptr;
}

void settle(int ms)
{
    QElapsedTimer t;
    t.start();
    do
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
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
            std::fprintf(stderr, "the Space grid never showed the result\n");
            return 1;
        }
        settle(20);
    }
    settle(500);
    const qint64 shownResult = statusKb("VmHWM");

    // One viewport further each step, every frame drawn, until the last tile
    // of the folder is in view.
    QAtomicInt frames;
    QObject::connect(
        window, &QQuickWindow::frameSwapped, window, [&frames] { frames.ref(); }, Qt::DirectConnection);
    QElapsedTimer scrolling;
    scrolling.start();
    int steps = 0;
    const int total = count + 200;
    for (;;) {
        const double height = grid->height();
        const double end = grid->property("contentHeight").toDouble() + grid->property("originY").toDouble();
        const double y = grid->property("contentY").toDouble();
        const int rows = grid->property("count").toInt();
        if (rows >= total && y + height >= end - 1)
            break;
        grid->setProperty("contentY", std::min(y + height, end - height));
        // Until this position was drawn.
        const int drawn = frames.loadRelaxed();
        QElapsedTimer frame;
        frame.start();
        while (frames.loadRelaxed() == drawn && frame.elapsed() < 200)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        ++steps;
        if (scrolling.elapsed() > 900000) {
            std::fprintf(stderr, "gave up after %d steps\n", steps);
            break;
        }
    }
    settle(300);
    std::printf("scrolled %d tiles in %d steps of a viewport: %.1f s\n", grid->property("count").toInt(), steps,
                double(scrolling.elapsed()) / 1000.0);
    std::printf("peak resident: %.0f MB (before the scan %.0f MB, with the result shown %.0f MB)\n",
                double(statusKb("VmHWM")) / 1024.0, double(before) / 1024.0, double(shownResult) / 1024.0);
    return 0;
}
