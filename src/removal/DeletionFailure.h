// One path that stayed behind after a removal, the reason it stayed and the
// guard's or the system's words for it. A value; any thread.

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <array>
#include <optional>

struct DeletionFailure {
    // Why it stayed; the declared order is the order of the groups shown.
    class Reason
    {
    public:
        enum Value : quint8 { safetyGuard, changedSinceReview, protectedByMacOS, noPermission, inUse, other };
        constexpr Reason(Value value = other) : m_value(value) {}
        constexpr operator Value() const { return m_value; }
        static constexpr std::array<Value, 6> allCases = {
            safetyGuard, changedSinceReview, protectedByMacOS, noPermission, inUse, other};
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
