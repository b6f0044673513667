// Builds the Space explorer's tiles for one folder of many files and reports
// the time of a full build, of a memo hit (what every redraw, hover and scroll
// asks), of each sort and of a search.
//   bench_tiles [FILES]
#include "Trees.h"

#include "explorer/SpaceView.h"
#include "removal/CleanQueue.h"
#include "safety/RiskCatalog.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>

namespace {

double msPer(int rounds, const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < rounds; ++i)
        work();
    return double(timer.nsecsElapsed()) / 1e6 / rounds;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int count = argc > 1 ? QByteArray(argv[1]).toInt() : 200000;

    auto root = std::make_shared<DirNode>("/bench/huge");
    static const char *const extensions[] = {".jpg", ".txt", ".mov", ".zip", ".swift", ".dmg", ".pdf", ""};
    for (int i = 0; i < count; ++i) {
        const QByteArray name = "file-" + QByteArray::number(i) + extensions[i % 8];
        Trees::file(root, name, 1'000'000 + qint64((i * 7919) % 100000) * 4096);
    }
    for (int i = 0; i < 200; ++i)
        Trees::folder(root, "dir-" + QByteArray::number(i), 5'000'000 + i);
    Trees::settle(root);

    CleanQueue queue;
    TileMemo memo;
    int revision = 0;
    ExplorerQuery query;

    const double build = msPer(3, [&] { SpaceView::resultTiles(root, ++revision, {}, query, queue, memo); });
    const double hit = msPer(100000, [&] { SpaceView::resultTiles(root, revision, {}, query, queue, memo); });
    query.sort = ExplorerSort::name;
    const double byName = msPer(2, [&] { SpaceView::resultTiles(root, ++revision, {}, query, queue, memo); });
    query.sort = ExplorerSort::kind;
    const double byKind = msPer(2, [&] { SpaceView::resultTiles(root, ++revision, {}, query, queue, memo); });
    query.sort = ExplorerSort::size;
    query.search = QStringLiteral("99");
    const double search = msPer(2, [&] { SpaceView::resultTiles(root, ++revision, {}, query, queue, memo); });

    // The part of a build that is the risk catalogue's.
    const double risks = msPer(1, [&] {
        for (const FileItem &file : root->files)
            RiskCatalog::assess(file.path, file.isPackage, false, file.size);
    });

    std::printf("tiles for one folder of %d files and 200 folders\n", count);
    std::printf("  build, size order:  %9.1f ms\n", build);
    std::printf("  build, name order:  %9.1f ms\n", byName);
    std::printf("  build, kind order:  %9.1f ms\n", byKind);
    std::printf("  build, search \"99\": %9.1f ms (%lld tiles)\n", search, qlonglong(memo.tiles.size()));
    std::printf("  of which verdicts:  %9.1f ms\n", risks);
    std::printf("  memo hit:           %9.3f us\n", hit * 1000.0);
    return 0;
}
