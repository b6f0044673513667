#include "FocusVisibility.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPointer>

namespace {

QPointer<FocusVisibility> &single()
{
    static QPointer<FocusVisibility> instance;
    return instance;
}

// Modifiers alone are half of a click with Ctrl or Shift, not a move of the
// keyboard focus.
bool isModifierOnly(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Meta:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_CapsLock:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return true;
    default:
        return false;
    }
}

} // namespace

FocusVisibility::FocusVisibility(QObject *parent) : QObject(parent)
{
    if (QCoreApplication *app = QCoreApplication::instance())
        app->installEventFilter(this);
}

FocusVisibility::~FocusVisibility()
{
    if (QCoreApplication *app = QCoreApplication::instance())
        app->removeEventFilter(this);
}

FocusVisibility *FocusVisibility::instance()
{
    QPointer<FocusVisibility> &one = single();
    if (!one)
        one = new FocusVisibility(QCoreApplication::instance());
    return one;
}

FocusVisibility *FocusVisibility::create(QQmlEngine *, QJSEngine *)
{
    FocusVisibility *one = instance();
    // Shared by every engine; none of them may delete it.
    QJSEngine::setObjectOwnership(one, QJSEngine::CppOwnership);
    return one;
}

void FocusVisibility::setKeyboard(bool keyboard)
{
    if (keyboard == m_keyboard)
        return;
    m_keyboard = keyboard;
    emit keyboardChanged();
}

bool FocusVisibility::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        if (!isModifierOnly(static_cast<QKeyEvent *>(event)->key()))
            setKeyboard(true);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
        setKeyboard(false);
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
