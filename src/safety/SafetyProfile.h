// The places on disk that the safety guard and the risk catalogue know by name,
// built for one platform profile and one home folder. Immutable once built; any
// thread.

#pragma once

#include "core/Platform.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QSet>

// The running system's profile is `standard()`: built on first use from any
// thread, from Platform::current() and Platform::homeDirectory() read at that
// moment (or the home given to setStandardHome), and rebuilt only when that
// home changes. Other profiles are made by hand, so both platforms' tables can
// be checked on any host.
//
// Every table entry is held in comparable form (Paths::comparable), so lookups
// follow canonical Unicode equivalence.
class SafetyProfile
{
public:
    // `home` is taken as it stands, not normalised. `configHome` is where the
    // Linux profile reads `user-dirs.dirs`; empty means `home` + "/.config".
    SafetyProfile(Platform platform, QByteArray home, QByteArray configHome = {});

    static const SafetyProfile &standard();
    // The home the standard profile speaks of from now on; empty for the
    // user's own. The demo's made-up home is judged as a home, not as another
    // user's. A profile handed out before stays valid.
    static void setStandardHome(const QByteArray &home);

    Platform platform() const { return m_platform; }
    const QByteArray &home() const { return m_home; }

    // Paths::normalize, except that a leading "~" stands for this
    // profile's home rather than the running user's.
    QByteArray normalize(QByteArrayView path) const;

    // The XDG user folders of `user-dirs.dirs` (Linux profile only; empty on
    // macOS), normalised, as bytes. A folder switched off by pointing it at the
    // home folder itself is left out.
    const QList<QByteArray> &userDirs() const { return m_userDirs; }
    // The download folders: home + "/Downloads", and on Linux also the XDG one
    // when it differs. Comparable form, each ending in "/".
    const QList<QByteArray> &downloadProbes() const { return m_downloadProbes; }

    // A path in a mount-point shape: "/Volumes/NAME"; on Linux also
    // "/media/USER", "/media/USER/NAME", "/run/media/USER/NAME" and "/mnt/NAME".
    bool isMountPoint(QByteArrayView normalizedPath) const;
    // A path strictly inside such a mount point, on a mounted volume.
    bool isInsideMount(QByteArrayView normalizedPath) const;
    // Linux: "/home/NAME", or anything below it, for a NAME that is not the
    // user's own home. Another user's home is refused whole.
    bool isOtherHome(QByteArrayView normalizedPath) const;

    // A resolved path (comparable form) with the real place of home written as
    // home, so that the home rules hold for a home reached through a link
    // ("/home" -> "/var/home"). Other paths come back unchanged.
    QByteArray homeForm(const QByteArray &realKey) const;

    // The guard's tables (see SafetyGuard), in comparable form.
    struct Prefix {
        QByteArray entry; // as listed
        QByteArray probe; // the entry with a "/" added unless it ends in one
        bool system;      // a literal system folder, as opposed to one below home
    };
    const QSet<QByteArray> &exact() const { return m_exact; }
    const QList<Prefix> &prefixes() const { return m_prefixes; }
    const QSet<QByteArray> &contentsOnly() const { return m_contentsOnly; }

    // Home in comparable form, and the same followed by "/".
    const QByteArray &homeKey() const { return m_homeKey; }
    const QByteArray &homeProbe() const { return m_homeProbe; }
    // home + "/Library" in comparable form.
    const QByteArray &libraryKey() const { return m_libraryKey; }

    // Reads `user-dirs.dirs` in the XDG format: lines `XDG_NAME_DIR="$HOME/sub"`
    // or `XDG_NAME_DIR="/absolute"`, with backslash escapes. Returns the
    // normalised folder for each name ("DOWNLOAD", "DESKTOP", ...), in file
    // order. A missing or unreadable file gives an empty list.
    static QList<std::pair<QByteArray, QByteArray>> readUserDirs(const QByteArray &file, const QByteArray &home);

private:
    Platform m_platform;
    QByteArray m_home;
    QByteArray m_homeKey;
    QByteArray m_homeProbe;
    QByteArray m_libraryKey;
    QByteArray m_realHomeKey; // where home really is, when that differs from its text
    QList<QByteArray> m_userDirs;
    QList<QByteArray> m_downloadProbes;
    QSet<QByteArray> m_exact;
    QList<Prefix> m_prefixes;
    QSet<QByteArray> m_contentsOnly;
};
