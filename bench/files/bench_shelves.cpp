// The Files shelves on one big scan: the time to derive the Biggest list in
// each order and with a search, the Forgotten list, and on screen the time
// from "Show 48 more" to the new rows being drawn.
//   bench_shelves ROOT
// ROOT is scanned with every file listed (no size floor), so the list is as
// long as the tree has files.
#include "AppStateForeign.h"
#include "BiggestShelves.h"
#include "FileShelfModel.h"
#include "ForgottenShelves.h"

#include "core/Prefs.h"
#include "scan/DiskScanner.h"
#include "state/AppState.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

namespace {

double msOf(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return double(timer.nsecsElapsed()) / 1e6;
}

// Runs the event loop until `done` holds or five seconds pass.
bool waitFor(const std::function<bool()> &done)
{
    QElapsedTimer timer;
    timer.start();
    while (!done() && timer.elapsed() < 5000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    return done();
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    QGuiApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_shelves ROOT\n");
        return 2;
    }
    Prefs::useFile(home.filePath(QStringLiteral("prefs.ini")));
    Prefs::registerDefaults();
    const QByteArray root = argv[1];

    ScanOptions options;
    options.minTrackedSize = 0;
    ScanResultPtr result;
    const double scan = msOf([&] { result = DiskScanner::scan(root, options, 1, makeCancelToken(), {}); });
    const std::vector<FileItem> &files = result->files;
    std::printf("scan of %s: %zu files listed, %.0f ms\n", root.constData(), files.size(), scan);

    for (const FileSort sort : FileSort::allCases) {
        BiggestShelves::Filters filters;
        filters.sort = sort;
        std::vector<FileItem> list;
        const double ms = msOf([&] { list = BiggestShelves::matches(files, filters); });
        std::printf("  Biggest, %-12s %8.0f ms (%zu rows)\n", qPrintable(sort.title()), ms, list.size());
    }
    {
        BiggestShelves::Filters filters;
        filters.search = QStringLiteral("lib");
        std::vector<FileItem> list;
        const double ms = msOf([&] { list = BiggestShelves::matches(files, filters); });
        std::printf("  Biggest, search \"lib\" %4.0f ms (%zu rows)\n", ms, list.size());
    }
    {
        std::vector<FileItem> list;
        const double ms = msOf([&] {
            list = ForgottenShelves::matches(files, 12, double(QDateTime::currentSecsSinceEpoch()), {}, FileSort::size);
        });
        std::printf("  Forgotten, 1 yr       %4.0f ms (%zu rows)\n", ms, list.size());
    }
    const double copy = msOf([&] {
        std::vector<FileItem> copied = files;
        Q_UNUSED(copied);
    });
    std::printf("  copying the list for the worker (main thread): %.0f ms\n", copy);

    // On screen: the window over this result, the Biggest shelf, 48 more rows.
    AppState state;
    state.setArguments({"sorvel-cleaner"});
    state.setVolumesFunction([] { return QList<VolumeInfo>(); });
    AppStateForeign::setInstance(&state);
    state.showResult(root, result);
    state.setSection(SidebarItem::largest);
    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/"));
    engine.load(QUrl(QStringLiteral("qrc:/Sorvel/Ui/shell/Main.qml")));
    auto *window = qobject_cast<QQuickWindow *>(engine.rootObjects().value(0));
    if (!window)
        return 1;
    FileShelfModel *shelf = nullptr;
    QElapsedTimer opened;
    opened.start();
    waitFor([&] {
        const auto found = window->findChildren<FileShelfModel *>();
        shelf = found.isEmpty() ? nullptr : found.first();
        return shelf && !shelf->deriving() && shelf->rowCount() > 0;
    });
    if (!shelf)
        return 1;
    std::printf("  opening the shelf until its list is in: %lld ms\n", opened.elapsed());
    // Scrolled to the end as a user about to press the button, so the new rows
    // come into view and are made and drawn in the measured frame.
    QQuickItem *list = nullptr;
    for (QQuickItem *item : window->findChildren<QQuickItem *>())
        if (QByteArray(item->metaObject()->className()).startsWith("ShelfList"))
            list = item;
    if (!list)
        return 1;
    for (int round = 0; round < 5; ++round) {
        QMetaObject::invokeMethod(list, "positionViewAtEnd");
        bool drawn = false;
        const auto connection = QObject::connect(window, &QQuickWindow::frameSwapped, [&] { drawn = true; });
        waitFor([&] { return drawn; });
        drawn = false;
        QElapsedTimer timer;
        timer.start();
        const int before = shelf->rowCount();
        shelf->showMore();
        window->update();
        waitFor([&] { return drawn; });
        QObject::disconnect(connection);
        std::printf("  \"Show 48 more\" (%d -> %d rows) to the frame drawn: %.1f ms\n", before, shelf->rowCount(),
                    double(timer.nsecsElapsed()) / 1e6);
    }
    AppStateForeign::setInstance(nullptr);
    return 0;
}
