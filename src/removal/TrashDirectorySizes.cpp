#include "TrashDirectorySizes.h"

#include "FolderDescriptor.h"
#include "core/FdIo.h"

#include <QRandomGenerator>

#include <cerrno>
#include <functional>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char fileName[] = "directorysizes";

// A whole number of the file, digits only.
bool readNumber(QByteArrayView text, qint64 &value)
{
    if (text.isEmpty() || text.size() > 18)
        return false;
    value = 0;
    for (const char c : text) {
        if (c < '0' || c > '9')
            return false;
        value = value * 10 + (c - '0');
    }
    return true;
}

// Rewrites the file with what `change` makes of its lines, under the trash
// folder's lock. Lines whose files/NAME is gone are dropped on the way.
int update(const QByteArray &trash, const std::function<void(QList<TrashDirectorySizes::Line> &)> &change)
{
    const FolderDescriptor folder = FolderDescriptor::resolved(trash);
    if (!folder.isValid())
        return folder.error();
    while (::flock(folder.fd(), LOCK_EX) != 0) {
        if (errno != EINTR)
            return errno;
    }
    int error = 0;
    const QByteArray before = FdIo::readAt(folder.fd(), fileName, &error);
    if (error && error != ENOENT)
        return error;
    QList<TrashDirectorySizes::Line> lines = TrashDirectorySizes::parse(before);
    const int files = ::openat(folder.fd(), "files", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (files >= 0) {
        lines.removeIf([files](const TrashDirectorySizes::Line &line) {
            struct stat st {};
            return ::fstatat(files, line.name.constData(), &st, AT_SYMLINK_NOFOLLOW) != 0 && errno == ENOENT;
        });
        ::close(files);
    }
    change(lines);
    const QByteArray after = TrashDirectorySizes::format(lines);
    if (after == before)
        return 0;

    QByteArray temporary;
    int fd = -1;
    for (int attempt = 0; fd < 0 && attempt < 100; ++attempt) {
        temporary = QByteArray(fileName) + '.' + QByteArray::number(QRandomGenerator::global()->generate(), 16);
        fd = ::openat(folder.fd(), temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (fd < 0 && errno != EEXIST)
            return errno;
    }
    if (fd < 0)
        return EEXIST;
    const bool written = FdIo::writeAll(fd, after);
    error = written ? 0 : (errno ? errno : EIO);
    if (::close(fd) != 0 && !error)
        error = errno;
    if (!error && ::renameat(folder.fd(), temporary.constData(), folder.fd(), fileName) != 0)
        error = errno;
    if (error)
        ::unlinkat(folder.fd(), temporary.constData(), 0);
    return error;
}

} // namespace

QByteArray TrashDirectorySizes::escape(QByteArrayView name) { return name.toByteArray().toPercentEncoding(); }

QByteArray TrashDirectorySizes::unescape(QByteArrayView escaped)
{
    return QByteArray::fromPercentEncoding(escaped.toByteArray());
}

QList<TrashDirectorySizes::Line> TrashDirectorySizes::parse(QByteArrayView content)
{
    QList<Line> lines;
    qsizetype start = 0;
    while (start < content.size()) {
        qsizetype end = content.indexOf('\n', start);
        if (end < 0)
            end = content.size();
        const QByteArrayView text = content.sliced(start, end - start);
        start = end + 1;
        const qsizetype first = text.indexOf(' ');
        const qsizetype second = first < 0 ? -1 : text.indexOf(' ', first + 1);
        if (second < 0 || second + 1 >= text.size() || text.indexOf(' ', second + 1) >= 0)
            continue;
        Line line;
        if (!readNumber(text.first(first), line.size) ||
            !readNumber(text.sliced(first + 1, second - first - 1), line.mtime))
            continue;
        line.name = unescape(text.sliced(second + 1));
        if (line.name.isEmpty() || line.name.contains('/') || line.name == "." || line.name == "..")
            continue;
        lines.append(line);
    }
    return lines;
}

QByteArray TrashDirectorySizes::format(const QList<Line> &lines)
{
    QByteArray out;
    for (const Line &line : lines)
        out += QByteArray::number(line.size) + ' ' + QByteArray::number(line.mtime) + ' ' + escape(line.name) + '\n';
    return out;
}

QList<TrashDirectorySizes::Line> TrashDirectorySizes::read(const QByteArray &trash)
{
    const FolderDescriptor folder = FolderDescriptor::resolved(trash);
    int error = 0;
    return folder.isValid() ? parse(FdIo::readAt(folder.fd(), fileName, &error)) : QList<Line>();
}

int TrashDirectorySizes::put(const QByteArray &trash, const Line &line)
{
    return update(trash, [&line](QList<Line> &lines) {
        lines.removeIf([&line](const Line &other) { return other.name == line.name; });
        lines.append(line);
    });
}

int TrashDirectorySizes::drop(const QByteArray &trash, const QByteArray &name)
{
    return update(trash, [&name](QList<Line> &lines) {
        lines.removeIf([&name](const Line &line) { return line.name == name; });
    });
}
