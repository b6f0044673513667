#include "FileRow.h"

#include "core/Paths.h"

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

QString folderText(const FileItem &file) { return Paths::abbreviateHome(Paths::parentOf(file.path)); }

} // namespace FileRow
