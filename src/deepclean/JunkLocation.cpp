#include "JunkLocation.h"

#include "core/Paths.h"
#include "core/Xdg.h"
#include "scan/DiskScanner.h"

#include <QCoreApplication>

#include <algorithm>

#include <dirent.h>
#include <sys/stat.h>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("JunkLocation", text); }

bool exists(const QByteArray &path)
{
    struct stat st {};
    return ::stat(path.constData(), &st) == 0;
}

bool isDirectory(const QByteArray &path)
{
    struct stat st {};
    return ::stat(path.constData(), &st) == 0 && S_ISDIR(st.st_mode);
}

// Names in a folder in the order the system lists them; empty when it cannot
// be listed.
QByteArrayList listNames(const QByteArray &dir)
{
    QByteArrayList names;
    DIR *d = ::opendir(dir.constData());
    if (!d)
        return names;
    while (const dirent *e = ::readdir(d)) {
        if (qstrcmp(e->d_name, ".") == 0 || qstrcmp(e->d_name, "..") == 0)
            continue;
        names.append(QByteArray(e->d_name));
    }
    ::closedir(d);
    return names;
}

JunkLocation row(const char *id, const char *title, const char *detail, const char *symbol, JunkLocation::Risk risk,
                 JunkLocation::Kind kind, QByteArrayList paths)
{
    JunkLocation l;
    l.id = QString::fromLatin1(id);
    l.title = tr(title);
    l.detail = tr(detail);
    l.symbol = QString::fromLatin1(symbol);
    l.risk = risk;
    l.kind = kind;
    l.paths = std::move(paths);
    return l;
}

using R = JunkLocation::Risk;
using K = JunkLocation::Kind;

QList<JunkLocation> macOSCatalogue(const QByteArray &home)
{
    const QByteArray dev = home + "/Library/Developer";
    QList<JunkLocation> list;

    auto caches = row("caches", QT_TRANSLATE_NOOP("JunkLocation", "App Caches"),
                      QT_TRANSLATE_NOOP("JunkLocation",
                                        "Temporary data apps keep to load faster. Apps rebuild it as needed. Quit them "
                                        "first for best results. Apple's own caches (com.apple.*) are left alone."),
                      "archivebox", R::safe, K::contents, {home + "/Library/Caches"});
    caches.skipPrefixes = {"com.apple."};
    list << caches;
    list << row("logs", QT_TRANSLATE_NOOP("JunkLocation", "Logs"),
                QT_TRANSLATE_NOOP("JunkLocation", "Diagnostic logs written by apps and services."),
                "doc.text.magnifyingglass", R::safe, K::contents, {home + "/Library/Logs"});
    list << row(
        "derived", QT_TRANSLATE_NOOP("JunkLocation", "Xcode DerivedData"),
        QT_TRANSLATE_NOOP("JunkLocation", "Build products and indexes. Xcode regenerates them on the next build."),
        "hammer", R::safe, K::contents, {dev + "/Xcode/DerivedData"});
    QByteArrayList support;
    for (const char *platform : {"iOS", "watchOS", "tvOS", "visionOS", "macOS"})
        support << dev + "/Xcode/" + platform + " DeviceSupport";
    list << row("devicesupport", QT_TRANSLATE_NOOP("JunkLocation", "Device Support Files"),
                QT_TRANSLATE_NOOP("JunkLocation", "Debug symbols copied from devices you've connected. Re-created "
                                                  "when a device is connected again."),
                "iphone", R::safe, K::contents, support);
    list << row("simcaches", QT_TRANSLATE_NOOP("JunkLocation", "Simulator Caches"),
                QT_TRANSLATE_NOOP("JunkLocation", "Dyld and runtime caches for iOS Simulators."), "ipad.and.iphone",
                R::safe, K::contents, {dev + "/CoreSimulator/Caches"});
    list << row("archives", QT_TRANSLATE_NOOP("JunkLocation", "Xcode Archives"),
                QT_TRANSLATE_NOOP("JunkLocation", "Archived app builds. They contain the dSYMs needed to symbolicate "
                                                  "crash reports of shipped versions."),
                "shippingbox", R::caution, K::contents, {dev + "/Xcode/Archives"});
    list << row(
        "pkgcaches", QT_TRANSLATE_NOOP("JunkLocation", "Package Manager Caches"),
        QT_TRANSLATE_NOOP("JunkLocation",
                          "Downloaded packages from npm, pnpm, Yarn, Gradle and Cargo. Re-downloaded on demand."),
        "shippingbox.circle", R::safe, K::item,
        {home + "/.npm/_cacache", home + "/Library/pnpm/store", home + "/.yarn/berry/cache", home + "/.gradle/caches",
         home + "/.cargo/registry/cache"});
    auto installers = row("installers", QT_TRANSLATE_NOOP("JunkLocation", "Installers in Downloads"),
                          QT_TRANSLATE_NOOP("JunkLocation", "Disk images and installer packages (.dmg, .pkg, .iso, "
                                                            ".xip) left over after installing apps."),
                          "arrow.down.circle", R::caution, K::matching, {home + "/Downloads"});
    installers.extensions = {"dmg", "pkg", "mpkg", "iso", "xip"};
    list << installers;
    list << row("backups", QT_TRANSLATE_NOOP("JunkLocation", "iPhone & iPad Backups"),
                QT_TRANSLATE_NOOP("JunkLocation", "Local device backups made by Finder. Remove only if you back up "
                                                  "to iCloud or no longer need them."),
                "externaldrive.badge.timemachine", R::caution, K::contents,
                {home + "/Library/Application Support/MobileSync/Backup"});
    return list;
}

QList<JunkLocation> linuxCatalogue(const QByteArray &home)
{
    const QByteArray cache = Xdg::cacheHome(home);
    QList<JunkLocation> list;

    auto caches = row("caches", QT_TRANSLATE_NOOP("JunkLocation", "App Caches"),
                      QT_TRANSLATE_NOOP("JunkLocation",
                                        "Temporary data apps keep to load faster. Apps rebuild it as needed. Quit them "
                                        "first for best results. Caches that hold your own data, such as offline "
                                        "music, keys or transfers, are left alone."),
                      "archivebox", R::safe, K::contents, {cache});
    caches.skipPrefixes = {"thumbnails", "mozilla",   "chromium", "google-chrome", "pip",
                           "yarn",       "go-build",  "pnpm",     "composer",      "obexd",
                           "ibus",       "keepassxc", "spotify",  "evolution",     "gnome-control-center",
                           "wallpaper",  "doc"};
    list << caches;
    list << row("thumbnails", QT_TRANSLATE_NOOP("JunkLocation", "Thumbnails"),
                QT_TRANSLATE_NOOP("JunkLocation", "Small previews of your pictures and documents. Your file manager "
                                                  "draws them again when it needs them."),
                "photo.on.rectangle", R::safe, K::contents, {cache + "/thumbnails", home + "/.thumbnails"});
    list << row("browsers", QT_TRANSLATE_NOOP("JunkLocation", "Browser Caches"),
                QT_TRANSLATE_NOOP("JunkLocation", "Pages and media that web browsers keep to load sites faster. Quit "
                                                  "the browser first; it fetches them again as you browse."),
                "globe", R::caution, K::contents, {cache + "/mozilla", cache + "/chromium", cache + "/google-chrome"});

    // Flatpak apps keep their caches in a folder of their own each.
    QByteArrayList flatpak;
    const QByteArray apps = home + "/.var/app";
    QByteArrayList names = listNames(apps);
    std::sort(names.begin(), names.end());
    for (const QByteArray &app : names) {
        const QByteArray cacheDir = apps + '/' + app + "/cache";
        if (isDirectory(cacheDir))
            flatpak << cacheDir;
    }
    list << row("flatpak", QT_TRANSLATE_NOOP("JunkLocation", "Flatpak App Caches"),
                QT_TRANSLATE_NOOP("JunkLocation", "Temporary data of apps installed with Flatpak. Apps rebuild it as "
                                                  "needed. Quit them first for best results."),
                "shippingbox", R::safe, K::contents, flatpak);
    list << row("pkgcaches", QT_TRANSLATE_NOOP("JunkLocation", "Package Manager Caches"),
                QT_TRANSLATE_NOOP("JunkLocation", "Downloaded packages from npm, pnpm, Yarn, pip, Cargo, Gradle, Go "
                                                  "and Composer. Re-downloaded on demand."),
                "shippingbox.circle", R::safe, K::item,
                {home + "/.npm/_cacache", home + "/.local/share/pnpm/store", cache + "/yarn",
                 home + "/.yarn/berry/cache", cache + "/pip", home + "/.cargo/registry/cache", home + "/.gradle/caches",
                 cache + "/go-build", cache + "/composer"});
    auto installers = row("installers", QT_TRANSLATE_NOOP("JunkLocation", "Installers in Downloads"),
                          QT_TRANSLATE_NOOP("JunkLocation", "Software packages and disk images (.deb, .rpm, .flatpak, "
                                                            ".snap, .iso) left over after installing apps."),
                          "arrow.down.circle", R::caution, K::matching, {Xdg::userDir(home, "DOWNLOAD", "Downloads")});
    installers.extensions = {"deb", "rpm", "flatpak", "flatpakref", "flatpakrepo", "snap",
                             "iso", "dmg", "pkg",     "mpkg",       "xip"};
    list << installers;
    return list;
}

void addUsage(DiskUsage &sum, const DiskUsage &part, bool &readable)
{
    sum.size += part.size;
    sum.items += part.items;
    if (!part.readable)
        readable = false;
}

} // namespace

QString JunkLocation::Risk::rawValue() const
{
    return m_value == safe ? QStringLiteral("safe") : QStringLiteral("caution");
}

QList<JunkLocation> JunkLocation::all(Platform platform, const QByteArray &home)
{
    return platform == Platform::macOS ? macOSCatalogue(home) : linuxCatalogue(home);
}

QByteArrayList JunkLocation::existingPaths() const
{
    QByteArrayList out;
    for (const QByteArray &p : paths)
        if (exists(p))
            out << p;
    return out;
}

QByteArrayList JunkLocation::targets() const
{
    QByteArrayList out;
    const QByteArrayList existing = existingPaths();
    if (kind == Kind::item)
        return existing;
    for (const QByteArray &dir : existing) {
        for (const QByteArray &name : listNames(dir)) {
            if (kind == Kind::contents) {
                const bool skipped = std::any_of(skipPrefixes.begin(), skipPrefixes.end(),
                                                 [&](const QByteArray &prefix) { return name.startsWith(prefix); });
                if (skipped)
                    continue;
            } else if (!extensions.contains(Paths::extension(name).toByteArray().toLower())) {
                continue;
            }
            out << Paths::join(dir, name);
        }
    }
    return out;
}

DiskUsage JunkLocation::measure() const
{
    DiskUsage sum;
    bool readable = true;
    const QByteArrayList existing = existingPaths();
    // With a skip list the folder's own total would include what is kept, so
    // the targets are walked one by one; likewise for matching names. Otherwise
    // each folder is walked whole.
    const bool oneByOne = (kind == Kind::contents && !skipPrefixes.isEmpty()) || kind == Kind::matching;
    for (const QByteArray &path : oneByOne ? targets() : existing)
        addUsage(sum, DiskScanner::usage(path), readable);
    sum.exists = !existing.isEmpty();
    sum.readable = readable;
    return sum;
}

QList<JunkEntry> JunkLocation::entries() const
{
    QList<JunkEntry> out;
    for (const QByteArray &target : targets()) {
        const DiskUsage usage = DiskScanner::usage(target);
        out.append({target, usage.exists ? usage.size : 0, isDirectory(target)});
    }
    std::stable_sort(out.begin(), out.end(), [](const JunkEntry &a, const JunkEntry &b) { return a.size > b.size; });
    return out;
}

bool JunkLocation::isWorthShowing(const DiskUsage &measured)
{
    return measured.exists && !(measured.size <= 0 && measured.readable);
}
