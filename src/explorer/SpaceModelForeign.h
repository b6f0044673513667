#pragma once

#include "explorer/SpaceModel.h"

#include <QQmlEngine>

// Makes the explorer's model, which lives in the engine library, a QML type.
struct SpaceModelForeign {
    Q_GADGET
    QML_FOREIGN(SpaceModel)
    QML_NAMED_ELEMENT(SpaceModel)
};
