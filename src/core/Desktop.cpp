#include "Desktop.h"

#include "FileActions.h"

Desktop::~Desktop() = default;

void Desktop::openFullDiskAccessSettings() { FileActions::openFullDiskAccessSettings(); }

void Desktop::chooseFile(const QString &, const QString &, const QByteArray &, const QStringList &, FolderChosen done)
{
    done({});
}
