#include "RemovalJournal.h"

#include "FileOperations.h"
#include "FolderDescriptor.h"
#include "FreedesktopTrash.h"
#include "TrashDirectorySizes.h"
#include "core/FdIo.h"
#include "core/Paths.h"
#include "core/Platform.h"
#include "core/RealPlace.h"
#include "core/Xdg.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// Each entry is a file of JSON lines: a header {"format", "version", "date"},
// then one object per item as it moved. Paths are percent-encoded as Path= is,
// so any bytes survive; device and inode are decimal strings, as they may not
// fit a double.
namespace {

QString tr(const char *text) { return QCoreApplication::translate("RemovalJournal", text); }

constexpr mode_t privateDir = 0700;
constexpr char suffix[] = ".jsonl";
constexpr char formatName[] = "sorvel-removals";
constexpr int formatVersion = 1;
const QString nameDate = QStringLiteral("yyyyMMdd'T'HHmmss.zzz'Z'");

QByteArray randomPart()
{
    return QByteArray::number(QRandomGenerator::global()->generate(), 16).rightJustified(8, '0');
}

// mkdir -p, mode 0700 for what it makes; 0 or errno.
int makeFolders(const QByteArray &path)
{
    struct stat st {};
    if (::stat(path.constData(), &st) == 0)
        return S_ISDIR(st.st_mode) ? 0 : ENOTDIR;
    const QByteArray parent = Paths::parentOf(path);
    if (!parent.isEmpty() && parent != path) {
        if (const int error = makeFolders(parent))
            return error;
    }
    if (::mkdir(path.constData(), privateDir) != 0 && errno != EEXIST)
        return errno;
    return 0;
}

// The place a trash path really names, so that undo can walk to it without
// meeting a link (a home reached through one, say).
QByteArray resolved(const QByteArray &path)
{
    if (path.isEmpty())
        return path;
    const RealPlace place = RealPlace::open(path);
    return place.isValid() ? place.path() : path;
}

QString encode(const QByteArray &path) { return QString::fromLatin1(FreedesktopTrash::encodePath(path)); }
QByteArray decode(const QJsonValue &value) { return FreedesktopTrash::decodePath(value.toString().toLatin1()); }

QByteArray headerLine(const QDateTime &date)
{
    const QJsonObject header{{QStringLiteral("format"), QLatin1StringView(formatName)},
                             {QStringLiteral("version"), formatVersion},
                             {QStringLiteral("date"), date.toUTC().toString(Qt::ISODateWithMs)}};
    return QJsonDocument(header).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray itemLine(const TrashedItem &item)
{
    const ItemIdentity &id = item.identity;
    const QJsonObject identity{{QStringLiteral("device"), QString::number(id.device)},
                               {QStringLiteral("inode"), QString::number(id.inode)},
                               {QStringLiteral("type"), qint64(id.type)},
                               {QStringLiteral("size"), id.size},
                               {QStringLiteral("mtime"), id.mtimeSeconds},
                               {QStringLiteral("mtimeNs"), id.mtimeNanoseconds}};
    QJsonObject line{{QStringLiteral("original"), encode(item.original)},
                     {QStringLiteral("trashedAs"), encode(item.trashedAs)},
                     {QStringLiteral("infoFile"), encode(item.infoFile)},
                     {QStringLiteral("identity"), identity},
                     {QStringLiteral("size"), item.size}};
    if (!item.named.isEmpty() && item.named != item.original)
        line.insert(QStringLiteral("named"), encode(item.named));
    return QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<TrashedItem> readItem(const QJsonObject &line)
{
    TrashedItem item;
    item.original = decode(line[QLatin1StringView("original")]);
    item.named = line.contains(QLatin1StringView("named")) ? decode(line[QLatin1StringView("named")]) : item.original;
    item.trashedAs = decode(line[QLatin1StringView("trashedAs")]);
    item.infoFile = decode(line[QLatin1StringView("infoFile")]);
    const QJsonObject identity = line[QLatin1StringView("identity")].toObject();
    bool deviceOk = false;
    bool inodeOk = false;
    item.identity.device = identity[QLatin1StringView("device")].toString().toULongLong(&deviceOk);
    item.identity.inode = identity[QLatin1StringView("inode")].toString().toULongLong(&inodeOk);
    item.identity.type = quint32(identity[QLatin1StringView("type")].toInteger());
    item.identity.size = identity[QLatin1StringView("size")].toInteger();
    item.identity.mtimeSeconds = identity[QLatin1StringView("mtime")].toInteger();
    item.identity.mtimeNanoseconds = identity[QLatin1StringView("mtimeNs")].toInteger();
    item.size = line[QLatin1StringView("size")].toInteger();
    if (!deviceOk || !inodeOk || !item.original.startsWith('/') || !item.trashedAs.startsWith('/'))
        return std::nullopt;
    return item;
}

// An entry's file; nothing when it holds no item that reads.
std::optional<RemovalJournal::Entry> readEntry(const QByteArray &folder, const QByteArray &name, int folderFd)
{
    RemovalJournal::Entry entry;
    entry.file = Paths::join(folder, name);
    const QByteArray content = FdIo::readAt(folderFd, name.constData());
    bool first = true;
    for (const QByteArray &text : content.split('\n')) {
        const QJsonObject line = QJsonDocument::fromJson(text).object();
        if (std::exchange(first, false) &&
            line[QLatin1StringView("format")].toString() == QLatin1StringView(formatName)) {
            entry.date = QDateTime::fromString(line[QLatin1StringView("date")].toString(), Qt::ISODateWithMs);
            continue;
        }
        if (const auto item = line.isEmpty() ? std::nullopt : readItem(line))
            entry.items.append(*item);
    }
    if (!entry.date.isValid()) { // a header lost: the name tells the time too
        entry.date = QDateTime::fromString(QString::fromLatin1(name.left(20)), nameDate);
        entry.date.setTimeSpec(Qt::UTC);
    }
    if (entry.items.isEmpty())
        return std::nullopt;
    return entry;
}

// Writes `items` as the entry's whole file, through a temporary file renamed
// over it; with no items the file goes. 0 or errno.
int rewrite(const QByteArray &file, const QDateTime &date, const QList<TrashedItem> &items)
{
    const FolderDescriptor folder = FolderDescriptor::resolved(Paths::parentOf(file));
    if (!folder.isValid())
        return folder.error();
    const QByteArray name = Paths::lastComponent(file);
    if (items.isEmpty())
        return ::unlinkat(folder.fd(), name.constData(), 0) == 0 || errno == ENOENT ? 0 : errno;
    QByteArray content = headerLine(date);
    for (const TrashedItem &item : items)
        content += itemLine(item);
    const QByteArray temporary = '.' + name + '.' + randomPart();
    const int fd =
        ::openat(folder.fd(), temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0)
        return errno;
    int error = FdIo::writeAll(fd, content) ? 0 : (errno ? errno : EIO);
    if (::close(fd) != 0 && !error)
        error = errno;
    if (!error && ::renameat(folder.fd(), temporary.constData(), folder.fd(), name.constData()) != 0)
        error = errno;
    if (error)
        ::unlinkat(folder.fd(), temporary.constData(), 0);
    return error;
}

// Renames without ever replacing what is at `to`. 0 or errno (EEXIST when
// something is there).
int renameNoReplace(int fromFd, const char *from, int toFd, const char *to)
{
#if defined(__linux__) && defined(RENAME_NOREPLACE)
    if (::renameat2(fromFd, from, toFd, to, RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
#elif defined(Q_OS_MACOS)
    if (::renameatx_np(fromFd, from, toFd, to, RENAME_EXCL) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOTSUP)
        return errno;
#endif
    // A file system that cannot promise it: look first, then rename.
    struct stat st {};
    if (::fstatat(toFd, to, &st, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    if (errno != ENOENT)
        return errno;
    return ::renameat(fromFd, from, toFd, to) == 0 ? 0 : errno;
}

bool isItem(const struct stat &st, const TrashedItem &item)
{
    return quint64(st.st_dev) == item.identity.device && quint64(st.st_ino) == item.identity.inode;
}

QString notInTrash() { return tr("It is no longer in the Trash"); }

// Puts one item back; the reason it stayed, or nothing when it came back.
std::optional<QString> restore(const TrashedItem &item)
{
    const FolderDescriptor files = FolderDescriptor::strict(Paths::parentOf(item.trashedAs));
    if (!files.isValid()) {
        if (files.linkOnTheWay())
            return tr("A folder on the way to it in the Trash is now a link");
        return files.error() == ENOENT || files.error() == ENOTDIR ? notInTrash()
                                                                   : FileOperations::describe(files.error());
    }
    const QByteArray trashedName = Paths::lastComponent(item.trashedAs);
    struct stat st {};
    if (::fstatat(files.fd(), trashedName.constData(), &st, AT_SYMLINK_NOFOLLOW) != 0 || !isItem(st, item))
        return notInTrash();

    const FolderDescriptor home = FolderDescriptor::strict(Paths::parentOf(item.original));
    if (!home.isValid()) {
        if (home.linkOnTheWay())
            return tr("A folder on the way to its old place is now a link");
        return home.error() == ENOENT || home.error() == ENOTDIR ? tr("The folder it came from is gone")
                                                                 : FileOperations::describe(home.error());
    }
    const QByteArray name = Paths::lastComponent(item.original);
    switch (const int error = renameNoReplace(files.fd(), trashedName.constData(), home.fd(), name.constData())) {
    case 0:
        break;
    case EEXIST:
    case ENOTEMPTY:
        return tr("Something else is at its old place now");
    case EXDEV:
        return tr("Its old place is on another volume now");
    case ENOENT:
        return notInTrash();
    default:
        return FileOperations::describe(error);
    }

    if (!item.infoFile.isEmpty()) {
        const FolderDescriptor info = FolderDescriptor::strict(Paths::parentOf(item.infoFile));
        if (info.isValid())
            ::unlinkat(info.fd(), Paths::lastComponent(item.infoFile).constData(), 0);
    }
    if (item.identity.isFolder())
        TrashDirectorySizes::drop(Paths::parentOf(Paths::parentOf(item.trashedAs)), trashedName);
    return std::nullopt;
}

} // namespace

RemovalJournal::RemovalJournal(QByteArray folder) : m_folder(std::move(folder)) {}

QByteArray RemovalJournal::defaultFolder()
{
    return Xdg::stateHome(Platform::homeDirectory()) + "/sorvel-cleaner/removals";
}

RemovalJournal::Writer::Writer(Writer &&other) noexcept
    : m_folder(std::move(other.m_folder)), m_file(std::move(other.m_file)), m_date(std::move(other.m_date)),
      m_fd(std::exchange(other.m_fd, -1))
{}

RemovalJournal::Writer &RemovalJournal::Writer::operator=(Writer &&other) noexcept
{
    if (this != &other) {
        if (m_fd >= 0)
            ::close(m_fd);
        m_folder = std::move(other.m_folder);
        m_file = std::move(other.m_file);
        m_date = std::move(other.m_date);
        m_fd = std::exchange(other.m_fd, -1);
    }
    return *this;
}

RemovalJournal::Writer::~Writer()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

bool RemovalJournal::Writer::open()
{
    if (m_folder.isEmpty() || makeFolders(m_folder) != 0)
        return false;
    const FolderDescriptor folder = FolderDescriptor::resolved(m_folder);
    if (!folder.isValid())
        return false;
    const QByteArray stamp = m_date.toUTC().toString(nameDate).toLatin1();
    for (int attempt = 0; attempt < 100; ++attempt) {
        const QByteArray name = stamp + '-' + randomPart() + suffix;
        const int fd = ::openat(folder.fd(), name.constData(),
                                O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (fd < 0 && errno == EEXIST)
            continue;
        if (fd < 0)
            return false;
        if (!FdIo::writeAll(fd, headerLine(m_date))) {
            ::close(fd);
            ::unlinkat(folder.fd(), name.constData(), 0);
            return false;
        }
        m_fd = fd;
        m_file = Paths::join(m_folder, name);
        return true;
    }
    return false;
}

bool RemovalJournal::Writer::add(const TrashedItem &item)
{
    if (m_fd < 0 && !open())
        return false;
    TrashedItem recorded = item;
    recorded.trashedAs = resolved(item.trashedAs);
    recorded.infoFile = resolved(item.infoFile);
    return FdIo::writeAll(m_fd, itemLine(recorded));
}

RemovalJournal::Writer RemovalJournal::begin() const
{
    Writer writer;
    writer.m_folder = m_folder;
    writer.m_date = QDateTime::currentDateTimeUtc();
    return writer;
}

QList<RemovalJournal::Entry> RemovalJournal::entries() const
{
    QList<Entry> found;
    const FolderDescriptor folder = FolderDescriptor::resolved(m_folder);
    if (!folder.isValid())
        return found;
    QByteArrayList names;
    const int listFd = ::dup(folder.fd());
    if (DIR *dir = listFd >= 0 ? ::fdopendir(listFd) : nullptr) {
        while (const dirent *entry = ::readdir(dir)) {
            const QByteArray name(entry->d_name);
            if (!name.startsWith('.') && name.endsWith(suffix))
                names.append(name);
        }
        ::closedir(dir);
    } else if (listFd >= 0) {
        ::close(listFd);
    }
    for (const QByteArray &name : std::as_const(names))
        if (auto entry = readEntry(m_folder, name, folder.fd()))
            found.append(std::move(*entry));
    std::sort(found.begin(), found.end(),
              [](const Entry &a, const Entry &b) { return a.date != b.date ? a.date > b.date : a.file > b.file; });
    return found;
}

std::optional<RemovalJournal::Entry> RemovalJournal::lastUndoable() const
{
    for (const Entry &entry : entries())
        if (std::any_of(entry.items.cbegin(), entry.items.cend(), inTrash))
            return entry;
    return std::nullopt;
}

int RemovalJournal::prune() const
{
    int removed = 0;
    for (const Entry &entry : entries()) {
        if (std::none_of(entry.items.cbegin(), entry.items.cend(), inTrash) && rewrite(entry.file, entry.date, {}) == 0)
            ++removed;
    }
    return removed;
}

bool RemovalJournal::inTrash(const TrashedItem &item)
{
    struct stat st {};
    return !item.trashedAs.isEmpty() && ::lstat(item.trashedAs.constData(), &st) == 0 && isItem(st, item);
}

RemovalJournal::UndoOutcome RemovalJournal::undo(const Entry &entry) const
{
    UndoOutcome outcome;
    QList<TrashedItem> kept;
    for (const TrashedItem &item : entry.items) {
        if (const std::optional<QString> reason = restore(item)) {
            outcome.stayed.append({item, *reason});
            if (inTrash(item))
                kept.append(item);
        } else {
            outcome.restored.append(item);
        }
    }
    rewrite(entry.file, entry.date, kept);
    return outcome;
}
