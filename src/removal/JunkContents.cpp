#include "JunkContents.h"

#include "CleanQueue.h"

#include "core/Fmt.h"
#include "core/Paths.h"
#include "deepclean/JunkLocation.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

namespace {

QString quoted(const QString &name) { return QStringLiteral("\u201c%1\u201d").arg(name); }

} // namespace

namespace JunkContents {

namespace {
QByteArray junkID(const JunkLocation &location) { return CleanItem::junkPrefix.toByteArray() + location.id.toUtf8(); }
} // namespace

bool isTicked(const CleanQueue &queue, const JunkLocation &location, const JunkEntry &entry)
{
    return queue.contains(entry.path) || queue.contains(junkID(location));
}

QString tickHelp(const CleanQueue &queue, const JunkLocation &location, const JunkEntry &entry)
{
    if (queue.contains(entry.path) || !queue.contains(junkID(location)))
        return {};
    return QCoreApplication::translate("JunkContentsList",
                                       "Included because %1 is selected. Untick to leave just this out")
        .arg(quoted(location.title));
}

QString restLine(const QList<JunkEntry> &entries, qsizetype limit)
{
    if (limit < 0 || entries.size() <= limit)
        return {};
    qint64 rest = 0;
    for (qsizetype i = limit; i < entries.size(); ++i)
        rest += std::max<qint64>(entries[i].size, 0);
    return QCoreApplication::translate("JunkContentsList", "and %1 more (%2)")
        .arg(QLocale().toString(entries.size() - limit), Fmt::bytes(rest));
}

CleanItem itemFor(const JunkEntry &entry)
{
    CleanItem item;
    item.id = entry.path;
    item.symbolPath = entry.path;
    item.name = Paths::toDisplay(Paths::lastComponent(entry.path));
    item.size = entry.size;
    item.kind = entry.isDirectory ? CleanItem::Kind::folder : CleanItem::Kind::file;
    item.heat = 1.0;
    item.source = CleanItem::Source::deepClean;
    return item;
}

QString toggle(CleanQueue &queue, const JunkLocation &location, const JunkEntry &entry, const QList<JunkEntry> &entries)
{
    const QByteArray whole = junkID(location);
    if (queue.contains(whole)) {
        queue.remove(whole);
        QList<CleanItem> rest;
        for (const JunkEntry &other : entries)
            if (other.path != entry.path)
                rest << itemFor(other);
        queue.add(rest);
        return QCoreApplication::translate("JunkContentsList", "Left out %1 · the rest of %2 stays selected")
            .arg(quoted(Paths::toDisplay(Paths::lastComponent(entry.path))), location.title);
    }
    if (queue.contains(entry.path))
        queue.remove(entry.path);
    else
        queue.add(itemFor(entry));
    return {};
}

} // namespace JunkContents
