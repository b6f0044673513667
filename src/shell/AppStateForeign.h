#pragma once

#include "state/AppState.h"

#include <QQmlEngine>

// Makes the application's one AppState the QML singleton `AppState`. The
// process creates the state before loading any QML and hands it over with
// setInstance(); QML never owns it.
struct AppStateForeign {
    Q_GADGET
    QML_FOREIGN(AppState)
    QML_NAMED_ELEMENT(AppState)
    QML_SINGLETON

public:
    static void setInstance(AppState *state) { s_instance = state; }
    static AppState *instance() { return s_instance; }
    static AppState *create(QQmlEngine *, QJSEngine *engine)
    {
        Q_ASSERT(s_instance);
        // The engine must use the same thread as the state and must not delete it.
        Q_ASSERT(engine->thread() == s_instance->thread());
        QJSEngine::setObjectOwnership(s_instance, QJSEngine::CppOwnership);
        return s_instance;
    }

private:
    static inline AppState *s_instance = nullptr;
};
