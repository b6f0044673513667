#include "PathActionsModel.h"

#include "AppStateForeign.h"

#include "core/AppState.h"
#include "core/FileActions.h"
#include "core/Paths.h"

void PathActionsModel::copy(const QString &path)
{
    if (AppState *state = AppStateForeign::instance())
        state->copyPaths({Paths::fromText(path)});
}

void PathActionsModel::reveal(const QString &path) { FileActions::reveal({Paths::fromText(path)}); }
