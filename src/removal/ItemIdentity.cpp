#include "ItemIdentity.h"

#include "core/Fmt.h"

#include <QCoreApplication>

ItemIdentity ItemIdentity::of(const struct stat &st)
{
    ItemIdentity identity;
    identity.device = quint64(st.st_dev);
    identity.inode = quint64(st.st_ino);
    identity.type = quint32(st.st_mode & S_IFMT);
    if (!S_ISDIR(st.st_mode)) {
        identity.size = qint64(st.st_size);
#if defined(Q_OS_MACOS)
        identity.mtimeSeconds = qint64(st.st_mtimespec.tv_sec);
        identity.mtimeNanoseconds = qint64(st.st_mtimespec.tv_nsec);
#else
        identity.mtimeSeconds = qint64(st.st_mtim.tv_sec);
        identity.mtimeNanoseconds = qint64(st.st_mtim.tv_nsec);
#endif
    }
    return identity;
}

ItemIdentity::Change ItemIdentity::changeTo(const ItemIdentity &now) const
{
    if (now.device != device)
        return Change::otherVolume;
    if (now.isLink() && !isLink())
        return Change::becameLink;
    if (now.inode != inode)
        return Change::replaced;
    if (now.type != type)
        return Change::typeChanged;
    if (isFolder())
        return Change::none;
    if (now.size > size)
        return Change::grew;
    if (now.size < size)
        return Change::shrank;
    if (now.mtimeSeconds != mtimeSeconds || now.mtimeNanoseconds != mtimeNanoseconds)
        return Change::modified;
    return Change::none;
}

QString ItemIdentity::describe(Change change, const ItemIdentity &before, const ItemIdentity &now)
{
    auto tr = [](const char *text) { return QCoreApplication::translate("ItemIdentity", text); };
    switch (change) {
    case Change::none:
        return {};
    case Change::otherVolume:
        return tr("What is there now lies on another volume");
    case Change::replaced:
        return tr("It was replaced by another item of the same name");
    case Change::becameLink:
        return tr("It was replaced by a link");
    case Change::typeChanged:
        return tr("It was replaced by an item of another kind");
    case Change::grew:
        return tr("It grew from %1 to %2").arg(Fmt::bytes(before.size), Fmt::bytes(now.size));
    case Change::shrank:
        return tr("It shrank from %1 to %2").arg(Fmt::bytes(before.size), Fmt::bytes(now.size));
    case Change::modified:
        return tr("It was modified");
    }
    return {};
}
