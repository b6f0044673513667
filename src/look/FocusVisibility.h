// FocusVisibility: whether focus rings show, by how the user last reached for
// the window. A key press turns them on, a mouse button or a touch turns them
// off, so a click never leaves a ring behind while Tab and the arrows always
// show where they went. One per application; lives on the GUI thread, where it
// watches the application's input events.
#pragma once

#include <QObject>
#include <QQmlEngine>

class FocusVisibility : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    // True after a key press, false after a press of the mouse or a touch.
    Q_PROPERTY(bool keyboard READ keyboard WRITE setKeyboard NOTIFY keyboardChanged)

public:
    ~FocusVisibility() override;

    // The one instance, made on first use (QML's and C++'s alike; no default
    // constructor, so that QML asks create()).
    static FocusVisibility *instance();
    static FocusVisibility *create(QQmlEngine *, QJSEngine *);

    bool keyboard() const { return m_keyboard; }
    void setKeyboard(bool keyboard);

Q_SIGNALS:
    void keyboardChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    explicit FocusVisibility(QObject *parent);

    bool m_keyboard = false;
};
