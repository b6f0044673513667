// QML declarations, compiled in the QML module, for the explorer's list model
// and the base of every list model. Declarations only; nothing runs.

#pragma once

#include "explorer/SpaceModel.h"
#include "explorer/SteamClean.h"

#include <QAbstractItemModel>
#include <QQmlEngine>

// Names the base of every list model for the QML tools (qmllint of Qt 6.4
// finds no declaration of it otherwise).
struct AbstractItemModelForeign {
    Q_GADGET
    QML_FOREIGN(QAbstractItemModel)
    QML_ANONYMOUS
};

// Makes the explorer's model, which lives in the engine library, a QML type.
struct SpaceModelForeign {
    Q_GADGET
    QML_FOREIGN(SpaceModel)
    QML_NAMED_ELEMENT(SpaceModel)
};

// The steamer's run, reached through SpaceModel.steamer.
struct SteamCleanForeign {
    Q_GADGET
    QML_FOREIGN(SteamClean)
    QML_NAMED_ELEMENT(SteamClean)
    QML_UNCREATABLE("The explorer's model owns its steamer.")
};
