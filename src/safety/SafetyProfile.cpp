#include "SafetyProfile.h"

#include "core/Paths.h"
#include "core/Xdg.h"

#include <QFile>
#include <QMutex>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

// Folders that may never go, compared whole. Both profiles.
constexpr std::array<const char *, 17> fixedExact = {
    "/",          "/Applications", "/Library", "/System", "/Users", "/Volumes", "/bin",   "/sbin",           "/usr",
    "/usr/local", "/private",      "/etc",     "/var",    "/tmp",   "/opt",     "/cores", "/Library/Caches",
};

// The same, below home; the empty suffix protects home itself.
constexpr std::array<const char *, 28> homeExact = {
    "",
    "/Library",
    "/Desktop",
    "/Documents",
    "/Downloads",
    "/Pictures",
    "/Movies",
    "/Music",
    "/Applications",
    "/Public",
    "/Library/Caches",
    "/Library/Logs",
    "/Library/Application Support",
    "/Library/Containers",
    "/Library/Group Containers",
    "/Library/Preferences",
    "/Library/Developer",
    "/Library/Mail",
    "/Library/Messages",
    "/Library/Mobile Documents",
    "/Library/CloudStorage",
    "/Library/Safari",
    "/Library/Accounts",
    "/Library/Calendars",
    "/Library/HomeKit",
    "/Library/Application Scripts",
    "/Library/Fonts",
    "/.Trash",
};

// Everything beneath these goes nowhere. The literal ones end in "/", so they
// protect only what lies below them, not the folder itself.
constexpr std::array<const char *, 13> fixedPrefixes = {
    "/System/",    "/bin/",         "/sbin/",           "/usr/bin/", "/usr/lib/", "/usr/libexec/",   "/usr/sbin/",
    "/usr/share/", "/private/etc/", "/private/var/db/", "/etc/",     "/var/db/",  "/Library/Apple/",
};
constexpr std::array<const char *, 3> homePrefixes = {"/Library/Keychains", "/.ssh", "/.gnupg"};

constexpr std::array<const char *, 2> homeContentsOnly = {"/Library/Caches", "/Library/Logs"};

// Linux additions.
constexpr std::array<const char *, 18> linuxExact = {
    "/boot", "/dev", "/proc", "/sys", "/run",   "/lib",  "/lib32",   "/lib64",   "/libx32",
    "/root", "/srv", "/snap", "/mnt", "/media", "/home", "/var/lib", "/var/log", "/var/cache",
};
constexpr std::array<const char *, 8> linuxHomeExact = {
    "/.config", "/.local", "/.local/share", "/.local/state", "/.cache", "/.local/share/Trash", "/Videos", "/Templates",
};
constexpr std::array<const char *, 10> linuxPrefixes = {
    "/boot/", "/proc/", "/sys/", "/dev/", "/run/", "/lib/", "/lib32/", "/lib64/", "/var/lib/", "/snap/",
};
constexpr std::array<const char *, 6> linuxHomePrefixes = {
    "/.local/share/keyrings", "/.pki", "/.password-store", "/.aws", "/.kube", "/.git-credentials",
};
constexpr std::array<const char *, 1> linuxHomeContentsOnly = {"/.cache"};

// Folders the system itself lives in, refused whole on Linux, where a careless
// rule such as "everything below /usr/bin" would still let the folder go.
constexpr std::array<const char *, 17> linuxSystemFolders = {
    "/",          "/usr",         "/usr/bin",     "/usr/sbin",  "/usr/lib",   "/usr/lib32",
    "/usr/lib64", "/usr/libexec", "/usr/include", "/usr/share", "/usr/src",   "/bin",
    "/sbin",      "/etc",         "/var",         "/opt",       "/usr/local",
};
constexpr std::array<const char *, 8> linuxSystemPrefixes = {
    "/usr/bin/", "/usr/sbin/", "/usr/lib/", "/usr/lib64/", "/usr/libexec/", "/bin/", "/sbin/", "/etc/",
};

QByteArray key(QByteArrayView path) { return Paths::comparable(path); }

// The folder a path really is, through every link, its own name included; the
// normalised text when it cannot be resolved.
QByteArray realFolder(const QByteArray &path)
{
    char *resolved = ::realpath(path.constData(), nullptr);
    if (!resolved)
        return Paths::normalize(path);
    const QByteArray out(resolved);
    ::free(resolved);
    return out;
}

QByteArray withSlash(QByteArray text)
{
    if (!text.endsWith('/'))
        text.append('/');
    return text;
}

// Splits a normalised path into its first few pieces; returns how many pieces
// the whole path has.
template <std::size_t N>
int splitLeading(QByteArrayView path, std::array<QByteArrayView, N> &lead)
{
    int count = 0;
    qsizetype start = 1;
    while (start < path.size()) {
        qsizetype end = path.indexOf('/', start);
        if (end < 0)
            end = path.size();
        if (end > start) {
            if (std::size_t(count) < N)
                lead[count] = path.sliced(start, end - start);
            ++count;
        }
        start = end + 1;
    }
    return count;
}

} // namespace

SafetyProfile::SafetyProfile(Platform platform, QByteArray home, QByteArray configHome)
    : m_platform(platform), m_home(std::move(home))
{
    m_homeKey = key(m_home);
    m_homeProbe = m_homeKey + '/';
    m_libraryKey = m_homeKey + "/Library";

    for (const char *entry : fixedExact)
        m_exact.insert(QByteArray(entry));
    for (const char *suffix : homeExact)
        m_exact.insert(m_homeKey + suffix);
    for (const char *entry : fixedPrefixes)
        m_prefixes.append({QByteArray(entry), QByteArray(entry), true});
    for (const char *suffix : homePrefixes)
        m_prefixes.append({m_homeKey + suffix, withSlash(m_homeKey + suffix), false});
    for (const char *suffix : homeContentsOnly)
        m_contentsOnly.insert(m_homeKey + suffix);
    m_downloadProbes.append(m_homeKey + "/Downloads/");

    if (m_platform != Platform::linux)
        return;

    for (const char *entry : linuxExact)
        m_exact.insert(QByteArray(entry));
    for (const char *suffix : linuxHomeExact)
        m_exact.insert(m_homeKey + suffix);
    for (const char *entry : linuxPrefixes)
        m_prefixes.append({QByteArray(entry), QByteArray(entry), true});
    for (const char *suffix : linuxHomePrefixes)
        m_prefixes.append({m_homeKey + suffix, withSlash(m_homeKey + suffix), false});
    for (const char *suffix : linuxHomeContentsOnly)
        m_contentsOnly.insert(m_homeKey + suffix);
    for (const char *entry : linuxSystemFolders)
        m_exact.insert(QByteArray(entry));
    for (const char *entry : linuxSystemPrefixes) {
        const bool listed = std::any_of(m_prefixes.cbegin(), m_prefixes.cend(),
                                        [entry](const Prefix &prefix) { return prefix.entry == entry; });
        if (!listed)
            m_prefixes.append({QByteArray(entry), QByteArray(entry), true});
    }
    // Each prefix protects its folder too, not only what lies below it.
    for (const Prefix &prefix : std::as_const(m_prefixes))
        if (prefix.system)
            m_exact.insert(prefix.entry.chopped(1));
    m_realHomeKey = key(realFolder(m_home));
    if (m_realHomeKey == m_homeKey)
        m_realHomeKey.clear();

    if (configHome.isEmpty())
        configHome = m_home + "/.config";
    const QByteArray normalHome = Paths::normalize(m_home);
    for (const auto &[name, dir] : readUserDirs(configHome + "/user-dirs.dirs", m_home)) {
        if (dir == normalHome || dir == "/")
            continue;
        m_userDirs.append(dir);
        m_exact.insert(key(dir));
        if (name == "DOWNLOAD") {
            const QByteArray probe = withSlash(key(dir));
            if (!m_downloadProbes.contains(probe))
                m_downloadProbes.append(probe);
        }
    }
}

namespace {

// The running system's profile, and every one built before it: a reference
// handed out stays valid for the life of the process.
struct Standard {
    std::atomic<const SafetyProfile *> current{nullptr};
    QMutex mutex;
    QByteArray home; // empty: the user's own
    std::vector<std::unique_ptr<SafetyProfile>> built;
};

Standard &standardState()
{
    static Standard state;
    return state;
}

} // namespace

const SafetyProfile &SafetyProfile::standard()
{
    Standard &state = standardState();
    if (const SafetyProfile *profile = state.current.load(std::memory_order_acquire))
        return *profile;
    QMutexLocker lock(&state.mutex);
    if (const SafetyProfile *profile = state.current.load(std::memory_order_acquire))
        return *profile;
    QByteArray config = qgetenv("XDG_CONFIG_HOME");
    if (!config.startsWith('/'))
        config.clear(); // a relative value is ignored, as the XDG rules say
    if (state.home.isEmpty()) {
        state.built.push_back(std::make_unique<SafetyProfile>(Platform::current(), Platform::homeDirectory(), config));
    } else {
        // The user's folder names, read where the user keeps them.
        if (config.isEmpty())
            config = Platform::homeDirectory() + "/.config";
        state.built.push_back(std::make_unique<SafetyProfile>(Platform::current(), state.home, config));
    }
    state.current.store(state.built.back().get(), std::memory_order_release);
    return *state.built.back();
}

void SafetyProfile::setStandardHome(const QByteArray &home)
{
    Standard &state = standardState();
    QMutexLocker lock(&state.mutex);
    if (home == state.home)
        return;
    state.home = home;
    state.current.store(nullptr, std::memory_order_release);
}

QByteArray SafetyProfile::normalize(QByteArrayView path) const
{
    if (path.startsWith('~') && (path.size() == 1 || path[1] == '/')) {
        QByteArray expanded = m_home;
        expanded.append(path.sliced(1));
        return Paths::normalize(expanded);
    }
    return Paths::normalize(path);
}

bool SafetyProfile::isMountPoint(QByteArrayView path) const
{
    std::array<QByteArrayView, 2> lead;
    const int count = splitLeading(path, lead);
    if (count == 2 && lead[0] == "Volumes")
        return true;
    if (m_platform != Platform::linux)
        return false;
    return ((count == 2 || count == 3) && lead[0] == "media") || (count == 2 && lead[0] == "mnt") ||
           (count == 4 && lead[0] == "run" && lead[1] == "media");
}

bool SafetyProfile::isInsideMount(QByteArrayView path) const
{
    std::array<QByteArrayView, 2> lead;
    const int count = splitLeading(path, lead);
    if (count > 2 && lead[0] == "Volumes")
        return true;
    if (m_platform != Platform::linux)
        return false;
    return (count > 3 && lead[0] == "media") || (count > 2 && lead[0] == "mnt") ||
           (count > 4 && lead[0] == "run" && lead[1] == "media");
}

bool SafetyProfile::isOtherHome(QByteArrayView path) const
{
    if (m_platform != Platform::linux)
        return false;
    std::array<QByteArrayView, 2> lead;
    if (splitLeading(path, lead) < 2 || lead[0] != "home")
        return false;
    const QByteArrayView own = QByteArrayView(m_homeKey);
    const qsizetype end = 6 + lead[1].size(); // "/home/" + NAME
    return !(own.size() >= end && own.startsWith(path.first(end)) && (own.size() == end || own[end] == '/'));
}

QByteArray SafetyProfile::homeForm(const QByteArray &realKey) const
{
    if (m_realHomeKey.isEmpty() || !realKey.startsWith(m_realHomeKey))
        return realKey;
    if (realKey.size() != m_realHomeKey.size() && realKey[m_realHomeKey.size()] != '/')
        return realKey;
    return m_homeKey + realKey.sliced(m_realHomeKey.size());
}

QList<std::pair<QByteArray, QByteArray>> SafetyProfile::readUserDirs(const QByteArray &file, const QByteArray &home)
{
    QList<std::pair<QByteArray, QByteArray>> dirs = Xdg::readUserDirs(file, home);
    for (auto &entry : dirs)
        entry.second = Paths::normalize(entry.second);
    return dirs;
}
