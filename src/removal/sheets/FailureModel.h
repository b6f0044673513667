// FailureModel: the failure sheet, what stayed behind after a removal. Owns
// the failures as they stood when the sheet appeared; QML makes it on the GUI
// thread.
#pragma once

#include "removal/DeletionFailure.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QString>
#include <QVariantList>

class AppState;

// What stayed behind after a removal, by reason.
// Made when its sheet appears, so the sheet's own state starts afresh every
// time. Follows AppStateForeign's state unless given another.
class FailureModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString heading READ heading CONSTANT)
    // [{title, countText, explanation, rows: [{path, name, subtitle}], more}]
    Q_PROPERTY(QVariantList groups READ groups CONSTANT)
    Q_PROPERTY(bool showsFullDiskAccess READ showsFullDiskAccess NOTIFY accessChanged)

public:
    explicit FailureModel(QObject *parent = nullptr);
    void setState(AppState *state);

    QString heading() const;
    QVariantList groups() const;
    bool showsFullDiskAccess() const;

    // The second line of a row: the system's words for `other`, else the
    // folder that holds the path (the group already says why).
    static QString subtitle(const DeletionFailure &failure);

    Q_INVOKABLE void copyAll();
    Q_INVOKABLE void copyGroup(int index);
    Q_INVOKABLE void openFullDiskAccess();
    Q_INVOKABLE void done();

Q_SIGNALS:
    void accessChanged();

private:
    QPointer<AppState> m_state;
    QList<DeletionFailure> m_failures; // final while the sheet is up
};
