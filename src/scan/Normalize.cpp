#include "scan/DiskScanner.h"

#include "core/Platform.h"

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

QByteArray DiskScanner::normalize(QByteArrayView path)
{
    // A leading "~" or "~name" is expanded the way a shell does: to the home
    // folder, or to the named user's; an unknown user leaves the text alone.
    QByteArray expanded;
    if (path.startsWith('~')) {
        qsizetype slash = path.indexOf('/');
        if (slash < 0)
            slash = path.size();
        const QByteArrayView user = path.sliced(1, slash - 1);
        const QByteArray home = user.isEmpty() ? Platform::homeDirectory() : homeOfUser(user);
        if (!home.isEmpty()) {
            expanded = home;
            expanded.append(path.sliced(slash));
            path = expanded;
        }
    }

    if (isCanonical(path))
        return path.toByteArray();

    QVarLengthArray<QByteArrayView, 32> pieces;
    qsizetype start = 0;
    while (start <= path.size()) {
        qsizetype end = path.indexOf('/', start);
        if (end < 0)
            end = path.size();
        const QByteArrayView piece = path.sliced(start, end - start);
        if (piece == "..") {
            if (!pieces.isEmpty())
                pieces.removeLast();
        } else if (!piece.isEmpty() && piece != ".") {
            pieces.append(piece);
        }
        start = end + 1;
    }

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
