#include "SafetyGuard.h"

#include "core/Paths.h"
#include "core/RealPlace.h"

#include <QCoreApplication>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("SafetyGuard", text); }

const char *const contentsOnlyReason = QT_TRANSLATE_NOOP(
    "SafetyGuard", "The folder stays; everything inside it is sorvelised (except Apple's own com.apple.* items)");
const char *const homeReason = QT_TRANSLATE_NOOP("SafetyGuard", "Your home folder can't be sorvelised");
const char *const keychainReason =
    QT_TRANSLATE_NOOP("SafetyGuard", "Your saved passwords and certificates are never touched");
const char *const keysReason = QT_TRANSLATE_NOOP("SafetyGuard", "Your SSH and encryption keys are never touched");
const char *const homeFolderReason =
    QT_TRANSLATE_NOOP("SafetyGuard", "macOS and your apps expect this folder to exist. Open it to clean inside");
const char *const systemReason = QT_TRANSLATE_NOOP("SafetyGuard", "Part of macOS, never touched");
const char *const otherHomeReason = QT_TRANSLATE_NOOP("SafetyGuard", "Another user's home folder, never touched");

// Plain text prefixes, with no "/" added: "~/.sshfoo" gets the SSH sentence.
constexpr std::array<const char *, 1> keychainPrefixes = {"/Library/Keychains"};
constexpr std::array<const char *, 2> keyPrefixes = {"/.ssh", "/.gnupg"};
// Linux stores of passwords, certificates and cloud credentials.
constexpr std::array<const char *, 6> linuxKeychainPrefixes = {
    "/.local/share/keyrings", "/.pki", "/.password-store", "/.aws", "/.kube", "/.git-credentials",
};

template <std::size_t N>
bool beginsWithAny(const QByteArray &key, const QByteArray &home, const std::array<const char *, N> &suffixes)
{
    if (!key.startsWith(home))
        return false;
    const QByteArrayView rest = QByteArrayView(key).sliced(home.size());
    for (const char *suffix : suffixes)
        if (rest.startsWith(QByteArrayView(suffix)))
            return true;
    return false;
}

} // namespace

namespace SafetyGuard {

namespace detail {

QByteArray comparableKey(const QByteArray &normalizedPath)
{
    return Paths::isAscii(normalizedPath) ? normalizedPath : Paths::comparable(normalizedPath);
}

bool isProtectedKey(const QByteArray &key, const SafetyProfile &profile)
{
    if (profile.exact().contains(key))
        return true;
    bool insideMount = false;
    bool mountChecked = false;
    for (const SafetyProfile::Prefix &prefix : profile.prefixes()) {
        if (key == prefix.entry)
            return true;
        if (!key.startsWith(prefix.probe))
            continue;
        // A volume mounted below a system folder ("/run/media/USER/NAME") is not
        // part of the system: what lies on it is judged by the mount rules.
        if (prefix.system) {
            if (!mountChecked) {
                insideMount = profile.isInsideMount(key);
                mountChecked = true;
            }
            if (insideMount)
                continue;
        }
        return true;
    }
    return profile.isMountPoint(key) || profile.isOtherHome(key);
}

QString reasonKey(const QByteArray &key, const SafetyProfile &profile)
{
    if (profile.contentsOnly().contains(key))
        return tr(contentsOnlyReason);
    const QByteArray &home = profile.homeKey();
    if (key == home)
        return tr(homeReason);
    if (beginsWithAny(key, home, keychainPrefixes))
        return tr(keychainReason);
    if (beginsWithAny(key, home, keyPrefixes))
        return tr(keysReason);
    if (profile.platform() == Platform::linux && beginsWithAny(key, home, linuxKeychainPrefixes))
        return tr(keychainReason);
    if (key.startsWith(profile.homeProbe()))
        return tr(homeFolderReason);
    if (profile.isOtherHome(key))
        return tr(otherHomeReason);
    return tr(systemReason);
}

} // namespace detail

bool isProtected(QByteArrayView path, const SafetyProfile &profile)
{
    return detail::isProtectedKey(detail::comparableKey(profile.normalize(path)), profile);
}

QString reason(QByteArrayView path, const SafetyProfile &profile)
{
    return detail::reasonKey(detail::comparableKey(profile.normalize(path)), profile);
}

Verdict lastWord(QByteArrayView path, const RealPlace &place, const SafetyProfile &profile)
{
    const QByteArray textKey = detail::comparableKey(profile.normalize(path));
    if (detail::isProtectedKey(textKey, profile))
        return {Verdict::Form::text, detail::reasonKey(textKey, profile), place.path()};
    if (!place.isValid())
        return {Verdict::Form::none, {}, {}};
    // The real place is canonical already; only the home written through a
    // link needs mapping back.
    const QByteArray realKey = profile.homeForm(detail::comparableKey(place.path()));
    if (detail::isProtectedKey(realKey, profile))
        return {Verdict::Form::realPlace, detail::reasonKey(realKey, profile), place.path()};
    return {Verdict::Form::none, {}, place.path()};
}

Verdict lastWord(QByteArrayView path, const SafetyProfile &profile)
{
    // A leading "~" is the profile's home, as in the text form.
    const QByteArray given = path.startsWith('~') ? profile.normalize(path) : path.toByteArray();
    return lastWord(path, RealPlace::open(given), profile);
}

bool isContentsOnly(QByteArrayView path, const SafetyProfile &profile)
{
    return profile.contentsOnly().contains(detail::comparableKey(profile.normalize(path)));
}

} // namespace SafetyGuard
