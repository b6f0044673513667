// QML declarations, compiled in the QML module, for the list models of the
// Files shelves. Declarations only; nothing runs.

#pragma once

#include "files/FileShelfModel.h"
#include "files/TwinShelfModel.h"

#include <QQmlEngine>

// Makes the Biggest and Forgotten shelves' model a QML type.
struct FileShelfModelForeign {
    Q_GADGET
    QML_FOREIGN(FileShelfModel)
    QML_NAMED_ELEMENT(FileShelfModel)
};

// Makes the Twins shelf's model a QML type.
struct TwinShelfModelForeign {
    Q_GADGET
    QML_FOREIGN(TwinShelfModel)
    QML_NAMED_ELEMENT(TwinShelfModel)
};
