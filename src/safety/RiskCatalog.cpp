#include "RiskCatalog.h"

#include "SafetyGuard.h"
#include "core/Paths.h"

#include <QCoreApplication>
#include <QHash>
#include <QMutex>

#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include <sys/stat.h>
#include <unistd.h>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("RiskCatalog", text); }

using L = Risk::Level;

struct Verdict {
    Risk::Level::Value level;
    const char *title;
    const char *why;

    Risk risk() const { return Risk{level, tr(title), tr(why)}; }
};

// Sentences that more than one verdict uses.
constexpr const char *cacheTitle = QT_TRANSLATE_NOOP("RiskCatalog", "Cache");
const char *const appDataTitle = QT_TRANSLATE_NOOP("RiskCatalog", "App data");
const char *const appCacheWhy = QT_TRANSLATE_NOOP("RiskCatalog", "Temporary data the app rebuilds. Quit the app first");
const char *const containerCacheWhy =
    QT_TRANSLATE_NOOP("RiskCatalog", "An app's own cache inside its container, rebuilt by the app");
const char *const sandboxWhy = QT_TRANSLATE_NOOP(
    "RiskCatalog",
    "A sandboxed app's whole data store (documents, settings, databases). Removing it is like resetting the app");
const char *const appSupportWhy =
    QT_TRANSLATE_NOOP("RiskCatalog", "Apps keep documents, settings and databases here. It may not be rebuildable");
const char *const mailWhy =
    QT_TRANSLATE_NOOP("RiskCatalog", "Your messages and attachments. Removing them here can lose them for good");
const char *const settingsWhy = QT_TRANSLATE_NOOP("RiskCatalog", "App settings. The app forgets how you set it up");
constexpr const char *containerDataTitle = QT_TRANSLATE_NOOP("RiskCatalog", "Container data");
constexpr const char *containerDataWhy =
    QT_TRANSLATE_NOOP("RiskCatalog", "Container images and volumes. Volumes may hold databases");

constexpr Verdict keptVerdict{L::locked, QT_TRANSLATE_NOOP("RiskCatalog", "Kept"), nullptr};
constexpr Verdict contentsOnlyVerdict{
    L::safe, cacheTitle,
    QT_TRANSLATE_NOOP("RiskCatalog", "Everything inside is rebuilt by apps; the folder itself stays")};
constexpr Verdict buildOutputVerdict{
    L::safe, QT_TRANSLATE_NOOP("RiskCatalog", "Build output"),
    QT_TRANSLATE_NOOP("RiskCatalog", "Rebuilt by your build tools (npm install, xcodebuild, cargo…)")};
constexpr Verdict secretVerdict{
    L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Keys & passwords"),
    QT_TRANSLATE_NOOP("RiskCatalog",
                      "Passwords, keys or certificates. Losing them can lock you out of accounts and servers")};
const char *const libraryWhy =
    QT_TRANSLATE_NOOP("RiskCatalog", "A whole library or project in one item. Everything in it goes with it");
constexpr Verdict vmVerdict{
    L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Virtual machine"),
    QT_TRANSLATE_NOOP("RiskCatalog", "A whole virtual computer. Its system, apps and files go with it")};
constexpr Verdict containerVerdict{L::danger, containerDataTitle, containerDataWhy};
constexpr Verdict dockerDiskVerdict{L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Docker disk"),
                                    QT_TRANSLATE_NOOP("RiskCatalog", "All Docker images, containers and volumes")};
constexpr Verdict gitVerdict{L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Git repository"),
                             QT_TRANSLATE_NOOP("RiskCatalog", "Any uncommitted or unpushed work in it would be lost")};
constexpr Verdict installerVerdict{
    L::caution, QT_TRANSLATE_NOOP("RiskCatalog", "Installer"),
    QT_TRANSLATE_NOOP("RiskCatalog", "Usually not needed after installing, unless it's your only copy")};

// Extensions and names, all lower case.
const std::unordered_map<std::string_view, const char *> libraryExtensions = {
    {"photoslibrary", QT_TRANSLATE_NOOP("RiskCatalog", "Photos library")},
    {"migratedphotolibrary", QT_TRANSLATE_NOOP("RiskCatalog", "Photos library")},
    {"aplibrary", QT_TRANSLATE_NOOP("RiskCatalog", "Photos library")},
    {"musiclibrary", QT_TRANSLATE_NOOP("RiskCatalog", "Music library")},
    {"tvlibrary", QT_TRANSLATE_NOOP("RiskCatalog", "TV library")},
    {"imovielibrary", QT_TRANSLATE_NOOP("RiskCatalog", "iMovie library")},
    {"fcpbundle", QT_TRANSLATE_NOOP("RiskCatalog", "Final Cut library")},
    {"lrcat", QT_TRANSLATE_NOOP("RiskCatalog", "Lightroom catalog")},
    {"lrlibrary", QT_TRANSLATE_NOOP("RiskCatalog", "Lightroom library")},
    {"cocatalog", QT_TRANSLATE_NOOP("RiskCatalog", "Capture One catalog")},
    {"logicx", QT_TRANSLATE_NOOP("RiskCatalog", "Logic project")},
    {"band", QT_TRANSLATE_NOOP("RiskCatalog", "GarageBand project")},
};
const std::unordered_set<std::string_view> vmExtensions = {"vmwarevm", "pvm", "utm", "vbox", "vdi", "qcow2", "vmdk"};
const std::unordered_set<std::string_view> secretExtensions = {
    "keychain", "keychain-db", "kdbx", "kdb",      "1pif", "opvault", "agilekeychain", "pem",
    "p12",      "pfx",         "key",  "keystore", "jks",  "gpg",     "asc",           "ovpn",
};
const std::unordered_set<std::string_view> secretNames = {"id_rsa", "id_dsa",      "id_ecdsa", "id_ed25519", ".env",
                                                          ".netrc", "credentials", ".ssh",     ".gnupg"};
const std::unordered_set<std::string_view> installerExtensions = {"dmg", "pkg", "mpkg", "iso", "xip"};
// Linux packages and images that are kept only to install something.
const std::unordered_set<std::string_view> linuxInstallerExtensions = {"deb",  "rpm",        "flatpak",
                                                                       "snap", "flatpakref", "flatpakrepo"};

// A ".key" file larger than this is a Keynote document, not a key.
constexpr qint64 largestKeyFile = 512000;

constexpr std::array<const char *, 3> containerHomes = {"/.docker/", "/.colima/", "/.orbstack/"};

// Rules over `rel`, the part of a path below a folder, tried in order.
enum class Match : quint8 {
    prefix,            // rel begins with one of the patterns
    contains,          // rel contains the pattern
    appleCache,        // rel begins with "Caches/com.apple."
    cacheInContainer,  // rel begins with a pattern and the whole path holds "/Library/Caches/"
    cacheInFlatpakApp, // rel begins with a pattern and holds "/cache/"
    any,
};

struct Rule {
    Match match;
    std::array<std::string_view, 2> patterns;
    Verdict verdict;
};

// The verdicts below ~/Library; the last row always matches.
const std::array<Rule, 18> libraryRules = {{
    {Match::appleCache,
     {},
     {L::caution, QT_TRANSLATE_NOOP("RiskCatalog", "Apple cache"),
      QT_TRANSLATE_NOOP("RiskCatalog",
                        "macOS's own cache. It's rebuilt, but some hold state, so it's left out of bulk cleaning")}},
    {Match::prefix, {"Caches/"}, {L::safe, cacheTitle, appCacheWhy}},
    {Match::prefix,
     {"Logs/"},
     {L::safe, QT_TRANSLATE_NOOP("RiskCatalog", "Logs"),
      QT_TRANSLATE_NOOP("RiskCatalog", "Diagnostic logs; only useful when troubleshooting")}},
    {Match::prefix,
     {"Developer/Xcode/DerivedData/", "Developer/CoreSimulator/Caches/"},
     {L::safe, QT_TRANSLATE_NOOP("RiskCatalog", "Xcode build data"),
      QT_TRANSLATE_NOOP("RiskCatalog", "Rebuilt by Xcode on the next build (the next build is slower)")}},
    {Match::prefix,
     {"Developer/Xcode/Archives/"},
     {L::caution, QT_TRANSLATE_NOOP("RiskCatalog", "Xcode archive"),
      QT_TRANSLATE_NOOP("RiskCatalog", "Holds the dSYMs needed to read crash reports from versions you shipped")}},
    {Match::contains,
     {"DeviceSupport/"},
     {L::caution, QT_TRANSLATE_NOOP("RiskCatalog", "Device support"),
      QT_TRANSLATE_NOOP("RiskCatalog", "Re-copied when you connect the device again (takes a while)")}},
    {Match::prefix,
     {"Developer/CoreSimulator/Devices/"},
     {L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Simulator data"),
      QT_TRANSLATE_NOOP("RiskCatalog", "Simulator devices with their installed apps and data")}},
    {Match::prefix,
     {"Application Support/MobileSync/Backup"},
     {L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Device backup"),
      QT_TRANSLATE_NOOP("RiskCatalog", "May be the only backup of an iPhone or iPad")}},
    {Match::cacheInContainer, {"Containers/", "Group Containers/"}, {L::safe, cacheTitle, containerCacheWhy}},
    {Match::prefix,
     {"Containers/com.docker.docker", "Group Containers/group.com.docker"},
     {L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Docker data"),
      QT_TRANSLATE_NOOP("RiskCatalog", "All Docker images, containers and volumes. Volumes may hold databases")}},
    {Match::prefix, {"Containers/", "Group Containers/"}, {L::danger, appDataTitle, sandboxWhy}},
    {Match::prefix, {"Application Support/"}, {L::danger, appDataTitle, appSupportWhy}},
    {Match::prefix, {"Mail/"}, {L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Mail"), mailWhy}},
    {Match::prefix, {"Messages/"}, {L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Messages"), mailWhy}},
    {Match::prefix,
     {"Mobile Documents/"},
     {L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "iCloud Drive"),
      QT_TRANSLATE_NOOP("RiskCatalog",
                        "Deleting here deletes it from iCloud and every device signed in to your Apple Account")}},
    {Match::prefix,
     {"CloudStorage/"},
     {L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Synced files"),
      QT_TRANSLATE_NOOP("RiskCatalog",
                        "Deleting here also deletes it from your cloud account (Dropbox, Google Drive, OneDrive…)")}},
    {Match::prefix, {"Preferences/"}, {L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Settings"), settingsWhy}},
    {Match::any,
     {},
     {L::caution, QT_TRANSLATE_NOOP("RiskCatalog", "System library"),
      QT_TRANSLATE_NOOP("RiskCatalog", "Part of your account's Library. Check what it is first")}},
}};

// The Linux profile's verdicts below home, tried after the Library table; when
// none matches the search goes on.
const std::array<Rule, 8> linuxHomeRules = {{
    {Match::prefix, {".cache/"}, {L::safe, cacheTitle, appCacheWhy}},
    {Match::prefix,
     {".local/share/Trash/"},
     {L::caution, QT_TRANSLATE_NOOP("RiskCatalog", "Trash"),
      QT_TRANSLATE_NOOP("RiskCatalog", "Already in the Trash. Empty the Trash to free it")}},
    {Match::prefix,
     {".local/share/containers/", ".local/share/docker/"},
     {L::danger, containerDataTitle, containerDataWhy}},
    {Match::prefix, {".local/share/", ".local/state/"}, {L::danger, appDataTitle, appSupportWhy}},
    {Match::cacheInFlatpakApp, {".var/app/"}, {L::safe, cacheTitle, containerCacheWhy}},
    {Match::prefix, {".var/app/"}, {L::danger, appDataTitle, sandboxWhy}},
    {Match::prefix, {".config/"}, {L::danger, QT_TRANSLATE_NOOP("RiskCatalog", "Settings"), settingsWhy}},
    {Match::prefix, {".mozilla/", ".thunderbird/"}, {L::danger, appDataTitle, appSupportWhy}},
}};

std::string_view view(QByteArrayView bytes) { return {bytes.data(), std::size_t(bytes.size())}; }

bool beginsWithPattern(std::string_view rel, const Rule &rule)
{
    for (std::string_view pattern : rule.patterns)
        if (!pattern.empty() && rel.starts_with(pattern))
            return true;
    return false;
}

bool matches(const Rule &rule, std::string_view rel, std::string_view path)
{
    switch (rule.match) {
    case Match::prefix:
        return beginsWithPattern(rel, rule);
    case Match::contains:
        return rel.find(rule.patterns[0]) != std::string_view::npos;
    case Match::appleCache: {
        constexpr std::string_view caches = "Caches/";
        return rel.starts_with(caches) && rel.substr(caches.size()).starts_with("com.apple.");
    }
    case Match::cacheInContainer:
        return beginsWithPattern(rel, rule) && path.find("/Library/Caches/") != std::string_view::npos;
    case Match::cacheInFlatpakApp:
        return beginsWithPattern(rel, rule) && rel.find("/cache/") != std::string_view::npos;
    case Match::any:
        return true;
    }
    return false;
}

template <std::size_t N>
const Rule *firstMatch(const std::array<Rule, N> &rules, std::string_view rel, std::string_view path)
{
    for (const Rule &rule : rules)
        if (matches(rule, rel, path))
            return &rule;
    return nullptr;
}

// The last component in lower case. ASCII, the common case, is folded in place;
// other text by Unicode rules, so that "K" (Kelvin sign) still reads "k".
QByteArray lowerName(const QByteArray &key)
{
    const qsizetype slash = key.lastIndexOf('/');
    const QByteArrayView name = QByteArrayView(key).sliced(slash + 1);
    if (Paths::isAscii(name) || !QUtf8StringView(name.data(), name.size()).isValidUtf8())
        return name.toByteArray().toLower();
    return QString::fromUtf8(name.data(), name.size()).toLower().toUtf8();
}

// The size of the item itself (a link gives the link's own size); 0 when it
// can't be read.
qint64 fileSize(const QByteArray &path)
{
    struct stat st {};
    if (::lstat(path.constData(), &st) != 0)
        return 0;
    return qint64(st.st_size);
}

bool isSecret(std::string_view name, std::string_view ext, const QByteArray &path, bool isDirectory,
              std::optional<qint64> size)
{
    if (secretNames.contains(name))
        return true;
    if (!secretExtensions.contains(ext))
        return false;
    if (ext != "key")
        return true;
    // ".key" is also Keynote's: only a small file counts. No disk access unless
    // it is a file and the caller gave no size.
    if (isDirectory)
        return false;
    return size.value_or(fileSize(path)) <= largestKeyFile;
}

QMutex gitCacheLock;
QHash<QByteArray, bool> gitCache; // grows only, for the life of the process

} // namespace

namespace RiskCatalog {

Risk assess(QByteArrayView path, bool isDirectory, bool isBuildOutput, std::optional<qint64> size,
            const SafetyProfile &profile)
{
    const QByteArray p = profile.normalize(path);
    const QByteArray key = SafetyGuard::detail::comparableKey(p);
    const bool contentsOnly = profile.contentsOnly().contains(key);

    // 1-3: the guard, contents-only folders, build output.
    if (!contentsOnly && SafetyGuard::detail::isProtectedKey(key, profile))
        return Risk{L::locked, tr(keptVerdict.title), SafetyGuard::detail::reasonKey(key, profile)};
    if (contentsOnly)
        return contentsOnlyVerdict.risk();
    if (isBuildOutput)
        return buildOutputVerdict.risk();

    // 4-6: by name and extension, wherever the item is.
    const QByteArray lowered = lowerName(key);
    const std::string_view name = view(lowered);
    const std::string_view ext = view(Paths::extension(lowered));
    if (isSecret(name, ext, p, isDirectory, size))
        return secretVerdict.risk();
    if (const auto it = libraryExtensions.find(ext); it != libraryExtensions.end())
        return Risk{L::danger, tr(it->second), tr(libraryWhy)};
    if (vmExtensions.contains(ext))
        return vmVerdict.risk();

    // 7: below ~/Library the Library table always decides.
    const QByteArray &lib = profile.libraryKey();
    if (key.size() > lib.size() && key.startsWith(lib) && key[lib.size()] == '/') {
        const std::string_view rel = view(QByteArrayView(key).sliced(lib.size() + 1));
        return firstMatch(libraryRules, rel, view(key))->verdict.risk();
    }

    const QByteArray &homeProbe = profile.homeProbe();
    const bool belowHome = key.startsWith(homeProbe);
    if (belowHome && profile.platform() == Platform::linux) {
        const std::string_view rel = view(QByteArrayView(key).sliced(homeProbe.size()));
        if (const Rule *rule = firstMatch(linuxHomeRules, rel, view(key)))
            return rule->verdict.risk();
    }

    // 8-9: container engines.
    if (belowHome) {
        const QByteArrayView rel = QByteArrayView(key).sliced(profile.homeKey().size());
        for (const char *folder : containerHomes)
            if (rel.startsWith(QByteArrayView(folder)))
                return containerVerdict.risk();
    }
    if (name == "docker.raw" || name == "docker.qcow2")
        return dockerDiskVerdict.risk();

    // 10: a repository, for folders only; its .git folder and everything in it
    // are the repository's history itself.
    if ((isDirectory && isGitRepository(p)) || name == ".git" || key.contains("/.git/"))
        return gitVerdict.risk();

    // 11: installers left in Downloads.
    const bool installer = installerExtensions.contains(ext) ||
                           (profile.platform() == Platform::linux && linuxInstallerExtensions.contains(ext));
    if (installer) {
        for (const QByteArray &probe : profile.downloadProbes())
            if (key.startsWith(probe))
                return installerVerdict.risk();
    }
    return Risk{};
}

bool isGitRepository(const QByteArray &path)
{
    {
        QMutexLocker locker(&gitCacheLock);
        if (const auto it = gitCache.constFind(path); it != gitCache.constEnd())
            return it.value();
    }
    // The lock is not held across the disk call: two threads may both look and
    // both store, with the same answer.
    const QByteArray dotGit = Paths::join(path, ".git");
    const bool found = ::access(dotGit.constData(), F_OK) == 0;
    QMutexLocker locker(&gitCacheLock);
    gitCache.insert(path, found);
    return found;
}

QList<SummaryRow> summary(const SafetyProfile &profile)
{
    enum Scope : quint8 { both, macOSOnly, linuxOnly };
    struct Line {
        const char *text;
        Scope scope;
    };
    struct Row {
        Risk::Level::Value level;
        const char *heading;
        std::array<Line, 7> lines;
    };
    static const std::array<Row, 4> rows = {{
        {L::safe,
         QT_TRANSLATE_NOOP("RiskCatalog", "Safe: rebuilt automatically"),
         {{
             {QT_TRANSLATE_NOOP("RiskCatalog", "App caches in ~/Library/Caches (quit the app first)"), both},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Logs in ~/Library/Logs"), macOSOnly},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Xcode DerivedData and simulator caches"), macOSOnly},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Caches of Flatpak apps in ~/.var/app"), linuxOnly},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Project build output: node_modules, .build, target, build, Pods, "
                                               ".next, virtualenvs"),
              both},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Package-manager caches: npm, pnpm, Yarn, Gradle, Cargo"), both},
         }}},
        {L::caution,
         QT_TRANSLATE_NOOP("RiskCatalog", "Look first"),
         {{
             {QT_TRANSLATE_NOOP("RiskCatalog", "Apple's own caches (com.apple.*), left out of bulk cleaning"),
              macOSOnly},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Xcode Archives, which hold dSYMs for crash reports"), macOSOnly},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Device Support files, re-copied on connect"), macOSOnly},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Installers in Downloads (.dmg, .pkg, .iso, .xip)"), both},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Files already in the Trash"), linuxOnly},
         }}},
        {L::danger,
         QT_TRANSLATE_NOOP("RiskCatalog", "Holds data that can't be rebuilt: asks you to confirm"),
         {{
             {QT_TRANSLATE_NOOP("RiskCatalog",
                                "App data: Application Support, Containers, Group Containers, Preferences"),
              both},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Mail and Messages"), macOSOnly},
             {QT_TRANSLATE_NOOP("RiskCatalog", "iCloud Drive (deletes on every device) and synced cloud folders"),
              macOSOnly},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Photos, Music, TV, iMovie, Final Cut, Lightroom libraries"), both},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Virtual machines and Docker data"), both},
             {QT_TRANSLATE_NOOP(
                  "RiskCatalog",
                  "Passwords, keys and certificates; git repositories; device backups; simulator devices"),
              both},
         }}},
        {L::locked,
         QT_TRANSLATE_NOOP("RiskCatalog", "Never touched"),
         {{
             {QT_TRANSLATE_NOOP("RiskCatalog", "macOS system folders (/System, /usr, /bin, /Library/Apple…)"), both},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Keychains, ~/.ssh, ~/.gnupg"), both},
             {QT_TRANSLATE_NOOP("RiskCatalog", "Your home folder and its main folders (Documents, Desktop, "
                                               "Downloads, Library…). Open them to clean inside"),
              both},
         }}},
    }};

    const Scope excluded = profile.platform() == Platform::linux ? macOSOnly : linuxOnly;
    QList<SummaryRow> out;
    for (const Row &row : rows) {
        SummaryRow summaryRow{row.level, tr(row.heading), {}};
        for (const Line &line : row.lines)
            if (line.text && line.scope != excluded)
                summaryRow.lines.append(tr(line.text));
        out.append(summaryRow);
    }
    return out;
}

} // namespace RiskCatalog
