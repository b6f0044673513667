#include "Desktop.h"

#include "FileActions.h"

Desktop::~Desktop() = default;

void Desktop::reveal(const QByteArrayList &paths) { FileActions::reveal(paths); }

void Desktop::openFullDiskAccessSettings() { FileActions::openFullDiskAccessSettings(); }
