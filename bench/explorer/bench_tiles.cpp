// Builds the Space explorer's tiles for one folder of many files and reports
// the time of a full build, of a memo hit (what every redraw, hover and scroll
// asks), of each sort and of a search, then each goal with MET or MISSED. A
// build is timed with the rows a view first shows read, as the model reads
// them.
//   bench_tiles [FILES]
#include "Trees.h"

#include "explorer/RowDiff.h"
#include "explorer/SpaceView.h"
#include "removal/CleanQueue.h"
#include "safety/RiskCatalog.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>

namespace {

// The first page of rows, as SpaceModel::syncRows reads it.
void readPage(const TileList &tiles)
{
    QList<QByteArray> ids;
    QList<size_t> signatures;
    qint64 heaviest = 1;
    for (qsizetype i = 0; i < std::min<qsizetype>(tiles.size(), 120); ++i) {
        ids.append(tiles.id(i));
        signatures.append(RowDiff::signature(tiles[i]));
        heaviest = std::max(heaviest, tiles.bytes(i));
    }
}

void goal(const char *what, double value, const char *unit, double limit)
{
    std::printf("  goal: %-44s %9.3f %s (< %g) %s\n", what, value, unit, limit, value < limit ? "MET" : "MISSED");
}

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

    const auto build = [&] { readPage(SpaceView::resultTiles(root, ++revision, {}, query, queue, memo)); };
    const double bySize = msPer(3, build);
    const double hit = msPer(100000, [&] { SpaceView::resultTiles(root, revision, {}, query, queue, memo); });
    query.sort = ExplorerSort::name;
    const double byName = msPer(3, build);
    query.sort = ExplorerSort::kind;
    const double byKind = msPer(2, build);
    query.sort = ExplorerSort::size;
    query.search = QStringLiteral("99");
    const double search = msPer(2, build);

    // What the verdicts of every file would cost: a build leaves them to the
    // rows that are read.
    const double risks = msPer(1, [&] {
        for (const FileItem &file : root->files)
            RiskCatalog::assess(file.path, file.isPackage, false, file.size);
    });

    std::printf("tiles for one folder of %d files and 200 folders\n", count);
    std::printf("  build, size order:  %9.1f ms\n", bySize);
    std::printf("  build, name order:  %9.1f ms\n", byName);
    std::printf("  build, kind order:  %9.1f ms\n", byKind);
    std::printf("  build, search \"99\": %9.1f ms (%lld tiles)\n", search, qlonglong(memo.tiles.size()));
    std::printf("  verdicts, all files: %8.1f ms\n", risks);
    std::printf("  memo hit:           %9.3f us\n", hit * 1000.0);
    const QByteArray files = QByteArray::number(count);
    goal(("tiles of " + files + " files, size order").constData(), bySize, "ms", 100);
    goal(("tiles of " + files + " files, name order").constData(), byName, "ms", 100);
    goal("memo hit (hover, scroll)", hit, "ms", 1);
    return 0;
}
