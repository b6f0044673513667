// The freedesktop.org base and user folders, as bytes. Stateless; any thread
// (the running user's environment is read at each call).

#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>

#include <utility>

// Each function takes the home folder the caller works with. For the running
// user's own home the XDG_* environment variables apply (a relative value is
// ignored, as the base directory rules say); for any other home handed in (a
// test's, a profile being checked) only the defaults below that home are used,
// so the real user's settings never leak into it.
namespace Xdg {

QByteArray dataHome(QByteArrayView home);   // $XDG_DATA_HOME or ~/.local/share
QByteArray configHome(QByteArrayView home); // $XDG_CONFIG_HOME or ~/.config
QByteArray cacheHome(QByteArrayView home);  // $XDG_CACHE_HOME or ~/.cache
QByteArray stateHome(QByteArrayView home);  // $XDG_STATE_HOME or ~/.local/state

// The entries of a user-dirs.dirs file in file order, as (key, folder): lines
// XDG_NAME_DIR="$HOME/sub" or XDG_NAME_DIR="/absolute" with shell backslash
// escapes; keys lose the XDG_ prefix and _DIR suffix. Other forms are skipped.
// Folders are absolute but not otherwise normalised.
QList<std::pair<QByteArray, QByteArray>> readUserDirs(const QByteArray &file, QByteArrayView home);

// The user folders of user-dirs.dirs in the config folder, by key without the
// XDG_ prefix and _DIR suffix ("DOWNLOAD", "MUSIC", ...). Values are absolute;
// "$HOME/" is expanded; entries that are not absolute paths are left out, as is
// an entry that points at the home folder itself (the convention for "unset").
QHash<QByteArray, QByteArray> userDirs(QByteArrayView home);
// One user folder, or `fallback` below home when it is not configured.
QByteArray userDir(QByteArrayView home, QByteArrayView key, QByteArrayView fallback);

} // namespace Xdg
