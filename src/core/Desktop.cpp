#include "Desktop.h"

#include "FileActions.h"

Desktop::~Desktop() = default;

void Desktop::openFullDiskAccessSettings() { FileActions::openFullDiskAccessSettings(); }
