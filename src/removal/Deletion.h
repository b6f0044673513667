#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QUuid>

#include <array>
#include <functional>
#include <optional>

// One path of a removal.
struct DeletionItem {
    QByteArray path; // absolute, exact bytes
    // Bytes this path frees if known beforehand; absent means it is measured
    // right before it goes.
    std::optional<qint64> size;
    // When the path will not go whole and is a folder, its contents go one by
    // one instead.
    bool clearInsideOnFailure = false;

    friend bool operator==(const DeletionItem &, const DeletionItem &) = default;
};

// A folder as it was seen when a removal was reviewed.
struct FolderIdentity {
    quint64 device = 0;
    quint64 inode = 0;
    friend bool operator==(const FolderIdentity &, const FolderIdentity &) = default;
};
// Item path -> the real folder it lay in at the review.
using ReviewedFolders = QHash<QByteArray, FolderIdentity>;

// A pending removal: a flat list of paths, handed to the worker by copy.
struct DeletionRequest {
    QUuid id = QUuid::createUuid();
    QString title; // empty when made from the selection
    QList<DeletionItem> items;
    qint64 estimatedSize = 0; // sum of the selected items' sizes
    // Runs once on the main thread after the removal, with the paths that went.
    std::function<void(const QByteArrayList &removedPaths)> onComplete;
    // Rows to show instead of `items`; absent when made from the selection.
    std::optional<QList<DeletionItem>> summary;
    // The selection ids this request consumes.
    QSet<QByteArray> queueIDs;
    // Where each item lay when the request was made; checked again right before
    // the item goes.
    ReviewedFolders reviewed;

    // How many items name a path that the safety guard keeps.
    int protectedCount() const;
};

// A question for the confirmation sheet.
struct ConfirmRequest {
    QUuid id = QUuid::createUuid();
    QString title;
    QString message;
    QString actionTitle;
    bool destructive = false;
    std::function<void()> perform;
};

// One path that stayed behind after a removal.
struct DeletionFailure {
    // Why it stayed; the declared order is the order of the groups shown.
    class Reason
    {
    public:
        enum Value : quint8 { safetyGuard, protectedByMacOS, noPermission, inUse, other };
        constexpr Reason(Value value = other) : m_value(value) {}
        constexpr operator Value() const { return m_value; }
        static constexpr std::array<Value, 5> allCases = {safetyGuard, protectedByMacOS, noPermission, inUse, other};
        QString rawValue() const;
        static std::optional<Reason> fromRawValue(QStringView raw);
        // Localised heading and explanation of the group.
        QString title() const;
        QString explanation() const;

    private:
        Value m_value;
    };

    QByteArray path;
    Reason reason;
    QString detail; // the guard's sentence or the system's wording of the error

    // The class of a failed file operation, by its errno: EPERM is the
    // system's protection, EACCES a lack of permission, EBUSY and ETXTBSY
    // something in use; anything else is `other`.
    static Reason classify(int error);

    friend bool operator==(const DeletionFailure &, const DeletionFailure &) = default;
};
