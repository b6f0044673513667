#include "Xdg.h"

#include "Paths.h"
#include "Platform.h"

#include <QFile>

namespace {

QByteArray base(QByteArrayView home, const char *variable, QByteArrayView fallback)
{
    if (Paths::equal(home, Platform::homeDirectory())) {
        const QByteArray value = qgetenv(variable);
        if (value.startsWith('/'))
            return value;
    }
    return Paths::join(home, fallback);
}

// Removes shell backslash escapes from a user-dirs.dirs value.
QByteArray unescape(QByteArrayView text)
{
    QByteArray out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size())
            ++i;
        out.append(text[i]);
    }
    return out;
}

} // namespace

namespace Xdg {

QByteArray dataHome(QByteArrayView home) { return base(home, "XDG_DATA_HOME", ".local/share"); }
QByteArray configHome(QByteArrayView home) { return base(home, "XDG_CONFIG_HOME", ".config"); }
QByteArray cacheHome(QByteArrayView home) { return base(home, "XDG_CACHE_HOME", ".cache"); }
QByteArray stateHome(QByteArrayView home) { return base(home, "XDG_STATE_HOME", ".local/state"); }

QList<std::pair<QByteArray, QByteArray>> readUserDirs(const QByteArray &file, QByteArrayView home)
{
    QList<std::pair<QByteArray, QByteArray>> dirs;
    QFile in(QFile::decodeName(file));
    if (!in.open(QIODevice::ReadOnly))
        return dirs;
    const QByteArray text = in.read(1 << 20);
    for (const QByteArray &raw : text.split('\n')) {
        const QByteArrayView line = QByteArrayView(raw).trimmed();
        if (!line.startsWith("XDG_") || !line.contains('='))
            continue;
        const qsizetype eq = line.indexOf('=');
        const QByteArrayView name = line.first(eq).trimmed();
        const QByteArrayView value = line.sliced(eq + 1).trimmed();
        if (!name.endsWith("_DIR") || name.size() <= 8 || value.size() < 2 || !value.startsWith('"') ||
            !value.endsWith('"'))
            continue;
        const QByteArray path = unescape(value.sliced(1, value.size() - 2));
        QByteArray dir;
        if (path == "$HOME" || path.startsWith("$HOME/"))
            dir = home.toByteArray() + path.sliced(5);
        else if (path.startsWith('/'))
            dir = path;
        else
            continue; // no other form is defined
        while (dir.size() > 1 && dir.endsWith('/'))
            dir.chop(1);
        dirs.append({name.sliced(4, name.size() - 8).toByteArray(), dir});
    }
    return dirs;
}

QHash<QByteArray, QByteArray> userDirs(QByteArrayView home)
{
    QHash<QByteArray, QByteArray> dirs;
    for (const auto &[key, dir] : readUserDirs(Paths::join(configHome(home), "user-dirs.dirs"), home)) {
        // Pointing at the home folder itself is how a folder is switched off.
        if (!Paths::equal(dir, home))
            dirs.insert(key, dir);
    }
    return dirs;
}

QByteArray userDir(QByteArrayView home, QByteArrayView key, QByteArrayView fallback)
{
    const auto dirs = userDirs(home);
    const auto it = dirs.find(key.toByteArray());
    return it != dirs.end() ? it.value() : Paths::join(home, fallback);
}

} // namespace Xdg
