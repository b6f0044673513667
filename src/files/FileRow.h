// A listed file as a row of the Files shelves: the selection item it stands
// for, in the form an item row takes. Plain functions; any thread.

#pragma once

#include "core/FileItem.h"
#include "removal/CleanItem.h"

#include <QVariantMap>

namespace FileRow {

// The item of a file picked on a shelf. A package is a folder on disk and goes
// as one; everything else as a file.
CleanItem item(const FileItem &file, double heat);
// The folder a file lies in, with "~" for the home folder.
QString folderText(const FileItem &file);

} // namespace FileRow
