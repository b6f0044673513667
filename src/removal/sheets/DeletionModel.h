// DeletionModel: the deletion sheet, a removal waiting for its go. Owns a copy
// of the pending request taken when the sheet appears; QML makes it on the GUI
// thread.
#pragma once

#include "removal/DeletionRequest.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QString>
#include <QVariantList>

#include <optional>

class AppState;

// A removal waiting for its go.
// Made when its sheet appears, so the sheet's own state starts afresh every
// time. Follows AppStateForeign's state unless given another.
class DeletionModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString freesText READ freesText CONSTANT)
    // [{path, name, sizeText}], at most RowLimit::deletionRows
    Q_PROPERTY(QVariantList rows READ rows CONSTANT)
    Q_PROPERTY(QString moreLine READ moreLine CONSTANT)
    Q_PROPERTY(QString protectedNote READ protectedNote CONSTANT)

public:
    explicit DeletionModel(QObject *parent = nullptr);
    void setState(AppState *state);

    QString title() const { return m_request ? m_request->title : QString(); }
    QString freesText() const;
    QVariantList rows() const;
    QString moreLine() const;
    QString protectedNote() const;

    Q_INVOKABLE void cancel();
    Q_INVOKABLE void sorvelise(bool permanently);

private:
    QList<DeletionItem> shownItems() const;

    QPointer<AppState> m_state;
    std::optional<DeletionRequest> m_request;
};
