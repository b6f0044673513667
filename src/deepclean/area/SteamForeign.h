// QML declarations, compiled in the QML module, for the Deep Clean area's
// model. Declarations only; nothing runs.

#pragma once

#include "deepclean/area/SteamModel.h"

#include <QQmlEngine>

// Makes the Deep Clean area's model a QML type.
struct SteamModelForeign {
    Q_GADGET
    QML_FOREIGN(SteamModel)
    QML_NAMED_ELEMENT(SteamModel)
};
