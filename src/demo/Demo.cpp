#include "Demo.h"

#include "core/Fmt.h"
#include "core/Paths.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>

#include <algorithm>
#include <map>
#include <vector>

namespace Demo {

namespace {

constexpr double day = 86400;

// Assembles the demo tree the way a scan would have left it: sizes and counts
// summed up the ancestors, categories totalled, artefacts listed.
class Builder
{
public:
    explicit Builder(qint64 firstID) : nextID(firstID), now(double(QDateTime::currentMSecsSinceEpoch()) / 1000.0) {}

    qint64 nextID;
    std::vector<FileItem> files;
    std::map<FileCategory::Value, CategoryTotal> categories;
    std::vector<DevArtifact> artifacts;
    qint64 dirs = 1; // the root, like a scan counts it
    const double now;

    DirNodePtr dir(const char *name, const DirNodePtr &parent)
    {
        auto node = std::make_shared<DirNode>(QByteArray(name), parent);
        parent->children.push_back(node);
        ++dirs;
        return node;
    }

    void file(const char *name, qint64 size, const DirNodePtr &in, double opened)
    {
        const QByteArray bytes(name);
        const QByteArray ext = Paths::extension(bytes).toByteArray().toLower();
        add(bytes, size, in, now - opened, FileCategory::classify(ext), false);
    }

    void package(const char *name, qint64 size, const DirNodePtr &in, FileCategory category)
    {
        ++dirs; // a scan enters a package to measure it
        add(QByteArray(name), size, in, now - 3 * day, category, true);
    }

    // Stands for many files below the tracking threshold.
    void filler(const DirNodePtr &in, qint64 bytes, qint64 count)
    {
        in->smallFilesSize += bytes;
        for (DirNodePtr d = in; d; d = d->parentNode()) {
            d->size = qMax<qint64>(0, d->size + bytes);
            d->fileCount = qMax<qint64>(0, d->fileCount + count);
        }
        for (FileCategory::Value c : {FileCategory::other, FileCategory::code, FileCategory::developer}) {
            categories[c].size += bytes / 3;
            categories[c].count += count / 3;
        }
    }

    // A folder of rebuildable developer output, filled with small files.
    void artifact(const DirNodePtr &in, const char *kind, qint64 bytes, qint64 count)
    {
        filler(in, bytes, count);
        in->artifactKind = QString::fromUtf8(kind);
        artifacts.push_back(DevArtifact{in->path(), in->artifactKind, bytes, count});
    }

private:
    void add(const QByteArray &name, qint64 size, const DirNodePtr &in, double when, FileCategory category,
             bool isPackage)
    {
        FileItem item;
        item.id = nextID++;
        item.path = Paths::join(in->path(), name);
        item.name = name;
        item.size = size;
        item.logicalSize = size;
        item.modified = when;
        item.accessed = when;
        item.category = category;
        item.isPackage = isPackage;
        item.parent = in;
        in->files.push_back(item);
        files.push_back(item);
        for (DirNodePtr d = in; d; d = d->parentNode()) {
            d->size += size;
            d->fileCount += 1;
        }
        CategoryTotal &total = categories[category];
        total.size += size;
        total.count += 1;
    }
};

QByteArrayList processArguments()
{
    QByteArrayList out;
    for (const QString &arg : QCoreApplication::arguments())
        out.append(QFile::encodeName(arg));
    return out;
}

} // namespace

bool isOn(const QByteArrayList &arguments) { return arguments.contains("-demo"); }

bool isOn()
{
    static const bool on = isOn(processArguments());
    return on;
}

bool isDemoPath(QByteArrayView path, Platform platform)
{
    const QByteArray root = home(platform);
    return path == root || (path.startsWith(root) && path.size() > root.size() && path[root.size()] == '/');
}

VolumeInfo volume(Platform platform)
{
    VolumeInfo v;
    v.url = "/";
    v.name = Fmt::displayName("/", platform, {});
    v.total = 994662584320;
    v.available = 131000000000;
    v.isInternal = true;
    v.isRoot = true;
    return v;
}

QMap<QString, DiskUsage> measurements(Platform platform)
{
    using Row = std::pair<const char *, DiskUsage>;
    static const std::vector<Row> macOS = {
        {"caches", {12640000000, 48210, true, true}},   {"logs", {640000000, 1204, true, true}},
        {"derived", {9820000000, 61400, true, true}},   {"devicesupport", {4210000000, 3100, true, true}},
        {"simcaches", {1130000000, 2870, true, true}},  {"archives", {3310000000, 640, true, true}},
        {"pkgcaches", {5620000000, 88000, true, true}}, {"installers", {14820000000, 5, true, true}},
    };
    // The same home seen through the Linux catalogue's rows.
    static const std::vector<Row> linux = {
        {"caches", {12640000000, 48210, true, true}},   {"thumbnails", {640000000, 9204, true, true}},
        {"browsers", {1130000000, 2870, true, true}},   {"flatpak", {3310000000, 6400, true, true}},
        {"pkgcaches", {5620000000, 88000, true, true}}, {"installers", {14820000000, 5, true, true}},
    };
    QMap<QString, DiskUsage> out;
    for (const auto &[id, usage] : platform == Platform::linux ? linux : macOS)
        out.insert(QString::fromLatin1(id), usage);
    return out;
}

QHash<QString, QList<JunkEntry>> contents(Platform platform)
{
    // Names under the demo home with their share of the location's figure,
    // largest first; the sizes add up to the figure exactly.
    struct Listing {
        const char *id;
        std::vector<std::pair<const char *, int>> entries;
    };
    static const std::vector<Listing> macOS = {
        {"caches",
         {{"Library/Caches/com.spotify.client", 314},
          {"Library/Caches/Google", 241},
          {"Library/Caches/com.microsoft.VSCode.ShipIt", 162},
          {"Library/Caches/pnpm", 138},
          {"Library/Caches/Homebrew", 119},
          {"Library/Caches/com.figma.Desktop", 91},
          {"Library/Caches/org.swift.swiftpm", 76},
          {"Library/Caches/com.tinyspeck.slackmacgap", 64},
          {"Library/Caches/ms-playwright", 42},
          {"Library/Caches/node-gyp", 17}}},
        {"logs", {{"Library/Logs/DiagnosticReports", 5}, {"Library/Logs/Homebrew", 3}, {"Library/Logs/zoom.us", 1}}},
        {"derived",
         {{"Library/Developer/Xcode/DerivedData/OrbitIOS-fjqk", 6},
          {"Library/Developer/Xcode/DerivedData/NimbusKit-ahzr", 3}}},
        {"devicesupport",
         {{"Library/Developer/Xcode/iOS DeviceSupport/17.2 (21C62)", 2},
          {"Library/Developer/Xcode/iOS DeviceSupport/16.4 (20E247)", 1}}},
        {"simcaches", {{"Library/Developer/CoreSimulator/Caches/dyld", 1}}},
        {"archives",
         {{"Library/Developer/Xcode/Archives/2025-03-14", 2}, {"Library/Developer/Xcode/Archives/2024-11-02", 1}}},
        {"pkgcaches", {{".npm/_cacache", 5}, {"Library/pnpm/store", 3}, {".cargo/registry/cache", 2}}},
        {"installers",
         {{"Downloads/Xcode_15.2.xip", 8},
          {"Downloads/Figma.dmg", 3},
          {"Downloads/Docker.dmg", 2},
          {"Downloads/zoomusInstaller.pkg", 1}}},
    };
    static const std::vector<Listing> linux = {
        {"caches",
         {{".cache/spotify", 314},
          {".cache/JetBrains", 241},
          {".cache/vscode-cpptools", 162},
          {".cache/bazel", 138},
          {".cache/mesa_shader_cache", 119},
          {".cache/gstreamer-1.0", 91},
          {".cache/ms-playwright", 76},
          {".cache/tracker3", 64},
          {".cache/node-gyp", 42},
          {".cache/gnome-software", 17}}},
        {"thumbnails", {{".cache/thumbnails/large", 5}, {".cache/thumbnails/normal", 2}, {".thumbnails/normal", 1}}},
        {"browsers", {{".cache/mozilla", 5}, {".cache/google-chrome", 3}, {".cache/chromium", 1}}},
        {"flatpak",
         {{".var/app/org.gimp.GIMP/cache", 4},
          {".var/app/com.discordapp.Discord/cache", 3},
          {".var/app/org.mozilla.Thunderbird/cache", 1}}},
        {"pkgcaches", {{".npm/_cacache", 5}, {".cache/pip", 3}, {".cargo/registry/cache", 2}}},
        {"installers",
         {{"Downloads/ubuntu-24.04-desktop-amd64.iso", 8},
          {"Downloads/code_1.96_amd64.deb", 2},
          {"Downloads/google-chrome-stable_current_amd64.deb", 2},
          {"Downloads/zoom_x86_64.rpm", 1}}},
    };
    const QMap<QString, DiskUsage> figures = measurements(platform);
    QHash<QString, QList<JunkEntry>> out;
    for (const Listing &listing : platform == Platform::linux ? linux : macOS) {
        const QString id = QString::fromLatin1(listing.id);
        const qint64 total = figures.value(id).size;
        qint64 shares = 0;
        for (const auto &entry : listing.entries)
            shares += entry.second;
        qint64 left = total;
        QList<JunkEntry> entries;
        for (std::size_t i = 0; i < listing.entries.size(); ++i) {
            const auto &[name, share] = listing.entries[i];
            const qint64 size = i + 1 == listing.entries.size() ? left : total / shares * share;
            left -= size;
            entries.append(JunkEntry{home(platform) + '/' + name, size, id != QLatin1String("installers")});
        }
        out.insert(id, entries);
    }
    return out;
}

QByteArray home(Platform platform)
{
    return platform == Platform::macOS ? QByteArrayLiteral("/Users/sample") : QByteArrayLiteral("/home/sample");
}

ScanResultPtr scanResult(qint64 firstID, Platform platform)
{
    // The same person's home on either system, in the names that system gives
    // its folders and with what is usual there.
    const bool mac = platform == Platform::macOS;
    Builder b(firstID);
    auto root = std::make_shared<DirNode>(home(platform));

    // Films: the heaviest and the most forgotten things on this disk.
    const auto movies = b.dir(mac ? "Movies" : "Videos", root);
    b.file("Iceland Trip 4K.mov", 18400000000, movies, 420 * day);
    const auto drone = b.dir("Drone Footage", movies);
    b.file("DJI_0412.MP4", 6210000000, drone, 300 * day);
    b.file("DJI_0413.MP4", 3870000000, drone, 300 * day);
    const auto exports = b.dir(mac ? "Final Cut Exports" : "Resolve Exports", movies);
    b.file("Brand Film v3.mp4", 2840000000, exports, 45 * day);
    b.file("Brand Film v2.mp4", 2810000000, exports, 190 * day);
    const auto recordings = b.dir("Screen Recordings", movies);
    b.file(mac ? "Onboarding Walkthrough.mov" : "Onboarding Walkthrough.webm", 1270000000, recordings, 12 * day);

    // Software: four projects with their build output.
    const auto projects = b.dir("Projects", root);
    const auto atlas = b.dir("atlas-web", projects);
    b.artifact(b.dir("node_modules", atlas), "Node.js dependencies", 1940000000, 48200);
    b.artifact(b.dir(".next", atlas), "Next.js build", 620000000, 3100);
    b.filler(b.dir("src", atlas), 48000000, 1260);
    const auto orbit = b.dir(mac ? "orbit-ios" : "orbit-server", projects);
    b.artifact(b.dir(".build", orbit), "Swift build", 2410000000, 9020);
    b.filler(b.dir("Sources", orbit), 21000000, 640);
    b.file(mac ? "App Icon.sketch" : "App Icon.xcf", 182000000, b.dir("Design", orbit), 95 * day);
    const auto nimbus = b.dir("nimbus-api", projects);
    b.artifact(b.dir(".venv", nimbus), "Python virtualenv", 840000000, 21300);
    b.file("production-dump.sql", 2140000000, b.dir("data", nimbus), 400 * day);
    const auto pixel = b.dir("pixel-quest", projects);
    b.artifact(b.dir("target", pixel), "Rust build", 3620000000, 14100);
    b.file("soundtrack.wav", 612000000, b.dir("assets", pixel), 230 * day);

    const auto downloads = b.dir("Downloads", root);
    b.file(mac ? "Xcode_16.xip" : "android-studio-2024.2-linux.tar.gz", 7940000000, downloads, 200 * day);
    b.file("ubuntu-24.04-desktop.iso", 6110000000, downloads, 150 * day);
    b.file(mac ? "Blender-4.1.dmg" : "blender-4.1.1-linux-x64.tar.xz", 381000000, downloads, 510 * day);
    b.file(mac ? "ZoomInstaller.pkg" : "zoom_amd64.deb", 95000000, downloads, 610 * day);
    b.file("tax-return-2023.pdf", 14000000, downloads, 380 * day);
    // A second download of a film already exported: a twin of it.
    b.file("Brand Film v3.mp4", 2840000000, downloads, 40 * day);
    b.filler(downloads, 820000000, 412);

    const auto pictures = b.dir("Pictures", root);
    if (mac)
        b.package("Photos Library.photoslibrary", 34200000000, pictures, FileCategory::other);
    else
        b.filler(b.dir("Camera Roll", pictures), 34200000000, 12400);
    const auto lisbon = b.dir("Lisbon 2023", b.dir("Shoots", pictures));
    b.file("Panorama Alfama.psd", 1830000000, lisbon, 470 * day);
    b.file("DSC_0142.NEF", 62000000, lisbon, 470 * day);
    b.filler(lisbon, 4200000000, 1800);

    const auto music = b.dir("Music", root);
    if (mac)
        b.package("Album Demo.logicx", 3810000000, b.dir("Logic Projects", music), FileCategory::audio);
    else
        b.filler(b.dir("Album Demo", b.dir("Ardour Sessions", music)), 3810000000, 640);
    b.file("Drum Kits.zip", 1240000000, b.dir("Samples", music), 700 * day);
    b.file("Album Demo Mix 3.wav", 842000000, b.dir("Bounces", music), 20 * day);

    const auto documents = b.dir("Documents", root);
    if (mac)
        b.package("Thesis Draft.pages", 210000000, documents, FileCategory::document);
    else
        b.file("Thesis Draft.odt", 210000000, documents, 3 * day);
    b.file("Studio Lease 2022.pdf", 8400000, b.dir("Contracts", documents), 800 * day);
    const auto taxes = b.dir("Taxes", documents);
    b.file("Receipts 2023.zip", 462000000, taxes, 330 * day);
    b.file("tax-return-2023.pdf", 14000000, taxes, 380 * day);
    b.filler(documents, 310000000, 2400);

    const auto desktop = b.dir("Desktop", root);
    b.file(mac ? "Screen Recording 2024-11-02.mov" : "Screencast 2024-11-02.webm", 948000000, desktop, 5 * day);
    b.file("mockup-final-FINAL.psd", 721000000, desktop, 60 * day);
    b.file("Panorama Alfama copy.psd", 1830000000, desktop, 470 * day);
    b.file("tax-return-2023 (1).pdf", 14000000, desktop, 380 * day);

    const auto windows = b.dir("Windows 11", b.dir("VirtualBox VMs", root));
    b.file("Windows 11.vdi", 27900000000, windows, 240 * day);
    b.filler(b.dir("Logs", windows), 6000000, 14);

    const auto brand = b.dir("Brand Assets", b.dir(mac ? "Creative Cloud Files" : "Nextcloud", root));
    b.file(mac ? "Logo Master.ai" : "Logo Master.svg", 241000000, brand, 400 * day);
    b.file("Hero Loop.mp4", 1610000000, brand, 380 * day);

    if (mac)
        b.package("DaVinci Resolve.app", 3120000000, b.dir("Applications", root), FileCategory::application);
    else
        b.file("DaVinci_Resolve_19.1_Linux.run", 3120000000, b.dir("Applications", root), 90 * day);

    b.filler(b.dir("mod", b.dir("pkg", b.dir("go", root))), 2310000000, 41000);

    const auto zotero = b.dir("Zotero", root);
    b.file("zotero.sqlite", 311000000, zotero, 2 * day);
    b.filler(b.dir("storage", zotero), 1920000000, 3400);

    b.filler(b.dir("_cacache", b.dir(".npm", root)), 2930000000, 52000);
    const auto cache = b.dir(".cache", root);
    b.filler(b.dir("pip", cache), 1140000000, 8800);
    b.filler(b.dir("huggingface", cache), 4400000000, 96);
    b.artifact(b.dir(".gradle", root), "Gradle cache", 3420000000, 40500);

    if (mac) {
        const auto library = b.dir("Library", root);
        b.filler(b.dir("Caches", library), 12640000000, 48210);
        b.filler(b.dir("Developer", library), 15200000000, 66000);
        b.filler(b.dir("Application Support", library), 6310000000, 22000);
        b.filler(b.dir("Mail", library), 3820000000, 96000);
        b.filler(b.dir("Containers", library), 2240000000, 18000);
    } else {
        // What macOS keeps in Library lives in the XDG folders.
        b.filler(b.dir("spotify", cache), 3140000000, 1900);
        b.filler(b.dir("JetBrains", cache), 2410000000, 30100);
        b.filler(b.dir("thumbnails", cache), 640000000, 9204);
        const auto share = b.dir("share", b.dir(".local", root));
        b.filler(b.dir("Steam", share), 15200000000, 66000);
        b.filler(b.dir("containers", share), 2240000000, 18000);
        b.filler(b.dir("JetBrains", b.dir(".config", root)), 6310000000, 22000);
        b.filler(b.dir(".thunderbird", root), 3820000000, 96000);
    }

    root->sortRecursively();
    auto bySize = [](const auto &x, const auto &y) { return x.size > y.size; };
    std::stable_sort(b.files.begin(), b.files.end(), bySize);
    std::stable_sort(b.artifacts.begin(), b.artifacts.end(), bySize);

    auto result = std::make_shared<ScanResult>();
    result->root = root;
    result->files = std::move(b.files);
    result->categoryTotals = std::move(b.categories);
    result->artifacts = std::move(b.artifacts);
    result->totalFiles = root->fileCount;
    result->totalDirs = b.dirs;
    result->unreadableCount = 0;
    result->duration = 6.4;
    result->date = b.now;
    result->lastID = b.nextID;
    return result;
}

} // namespace Demo
