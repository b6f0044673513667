#include "PathActionsModel.h"

#include "shell/AppStateForeign.h"

#include "core/Desktop.h"
#include "core/Paths.h"
#include "state/AppState.h"

void PathActionsModel::copy(const QString &path)
{
    if (AppState *state = AppStateForeign::instance())
        state->copyPaths({Paths::fromText(path)});
}

void PathActionsModel::reveal(const QString &path)
{
    AppState *state = AppStateForeign::instance();
    if (state && state->desktop())
        state->desktop()->reveal({Paths::fromText(path)});
}
