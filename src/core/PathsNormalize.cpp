#include "Paths.h"

#include "Platform.h"

#include <QVarLengthArray>

#include <pwd.h>

#include <vector>

namespace {

// The home folder of a named user ("~name"), empty when there is no such user.
QByteArray homeOfUser(QByteArrayView name)
{
    const QByteArray user = name.toByteArray();
    passwd entry{};
    passwd *found = nullptr;
    std::vector<char> buffer(16384);
    if (getpwnam_r(user.constData(), &entry, buffer.data(), buffer.size(), &found) != 0 || !found || !found->pw_dir)
        return {};
    return QByteArray(found->pw_dir);
}

// True when the text already is in canonical form: absolute, and no piece is
// empty, "." or "..". Most paths handed around are, so this spares the rebuild.
bool isCanonical(QByteArrayView path)
{
    if (path.isEmpty() || path.front() != '/')
        return false;
    if (path.size() == 1)
        return true;
    if (path.back() == '/')
        return false;
    qsizetype start = 1;
    while (start <= path.size()) {
        qsizetype end = path.indexOf('/', start);
        if (end < 0)
            end = path.size();
        const QByteArrayView piece = path.sliced(start, end - start);
        if (piece.isEmpty() || piece == "." || piece == "..")
            return false;
        start = end + 1;
    }
    return true;
}

} // namespace

namespace Paths {

QByteArray expandTilde(QByteArrayView path)
{
    if (!path.startsWith('~'))
        return path.toByteArray();
    qsizetype slash = path.indexOf('/');
    if (slash < 0)
        slash = path.size();
    const QByteArrayView user = path.sliced(1, slash - 1);
    const QByteArrayView rest = path.sliced(slash);
    const QByteArray home = user.isEmpty() ? Platform::homeDirectory() : homeOfUser(user);
    if (home.isEmpty())
        return path.toByteArray();
    if (home == "/" && !rest.isEmpty())
        return rest.toByteArray();
    QByteArray out = home;
    out.append(rest);
    return out;
}

QByteArray normalize(QByteArrayView path)
{
    QByteArray expanded;
    if (path.startsWith('~')) {
        expanded = expandTilde(path);
        path = expanded;
    }

    if (isCanonical(path))
        return path.toByteArray();

    QVarLengthArray<QByteArrayView, 32> pieces;
    forEachPiece(path, [&pieces](QByteArrayView piece) {
        if (piece != "..")
            pieces.append(piece);
        else if (!pieces.isEmpty())
            pieces.removeLast();
    });

    if (pieces.isEmpty())
        return QByteArrayLiteral("/");
    QByteArray out;
    out.reserve(path.size() + 1);
    for (QByteArrayView piece : pieces) {
        out.append('/');
        out.append(piece);
    }
    return out;
}

QString abbreviateHome(QByteArrayView path) { return abbreviateHome(path, Platform::homeDirectory()); }

QString abbreviateHome(QByteArrayView path, QByteArrayView home)
{
    if (!home.isEmpty() && home != "/") {
        if (equal(path, home))
            return QStringLiteral("~");
        if (isBelow(path, home))
            return QStringLiteral("~") + toDisplay(path.sliced(home.size()));
    }
    return toDisplay(path);
}

} // namespace Paths
