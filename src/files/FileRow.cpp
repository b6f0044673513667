#include "FileRow.h"

#include "core/Paths.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace FileRow {

CleanItem item(const FileItem &file, double heat)
{
    CleanItem item;
    item.id = file.path;
    item.name = Paths::toDisplay(file.name);
    item.size = file.size;
    item.kind = file.isPackage ? CleanItem::Kind::folder : CleanItem::Kind::file;
    item.heat = heat;
    item.symbolPath = file.path;
    item.source = CleanItem::Source::files;
    return item;
}

QVariantMap value(const CleanItem &item) { return QJsonDocument::fromJson(item.toJson()).object().toVariantMap(); }

QString folderText(const FileItem &file) { return Paths::abbreviateHome(Paths::parentOf(file.path)); }

} // namespace FileRow
