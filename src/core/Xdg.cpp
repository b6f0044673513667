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

// The value of one user-dirs.dirs line: a shell-quoted string with "$HOME" and
// backslash escapes.
QByteArray unquote(QByteArrayView raw, QByteArrayView home)
{
    QByteArrayView v = raw.trimmed();
    if (v.size() < 2 || !v.startsWith('"') || !v.endsWith('"'))
        return {};
    v = v.sliced(1, v.size() - 2);
    QByteArray out;
    if (v.startsWith("$HOME")) {
        out = home.toByteArray();
        v = v.sliced(5);
    }
    for (qsizetype i = 0; i < v.size(); ++i) {
        if (v[i] == '\\' && i + 1 < v.size())
            ++i;
        out += v[i];
    }
    return out;
}

} // namespace

namespace Xdg {

QByteArray dataHome(QByteArrayView home) { return base(home, "XDG_DATA_HOME", ".local/share"); }
QByteArray configHome(QByteArrayView home) { return base(home, "XDG_CONFIG_HOME", ".config"); }
QByteArray cacheHome(QByteArrayView home) { return base(home, "XDG_CACHE_HOME", ".cache"); }
QByteArray stateHome(QByteArrayView home) { return base(home, "XDG_STATE_HOME", ".local/state"); }

QHash<QByteArray, QByteArray> userDirs(QByteArrayView home)
{
    QHash<QByteArray, QByteArray> dirs;
    QFile file(QFile::decodeName(Paths::join(configHome(home), "user-dirs.dirs")));
    if (!file.open(QIODevice::ReadOnly))
        return dirs;
    const QByteArray content = file.read(64 * 1024);
    for (const QByteArray &raw : content.split('\n')) {
        const QByteArrayView line = QByteArrayView(raw).trimmed();
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        const qsizetype eq = line.indexOf('=');
        if (eq < 0)
            continue;
        QByteArrayView name = line.first(eq).trimmed();
        if (!name.startsWith("XDG_") || !name.endsWith("_DIR") || name.size() <= 8)
            continue;
        name = name.sliced(4, name.size() - 8);
        QByteArray value = unquote(line.sliced(eq + 1), home);
        while (value.size() > 1 && value.endsWith('/'))
            value.chop(1);
        if (!value.startsWith('/') || Paths::equal(value, home))
            continue;
        dirs.insert(name.toByteArray(), value);
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
