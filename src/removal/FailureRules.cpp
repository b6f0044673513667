#include "FailureRules.h"

#include <QCoreApplication>

#include <algorithm>
#include <climits>

namespace FailureRules {

QList<Group> groups(const QList<DeletionFailure> &failures)
{
    QList<Group> result;
    for (const DeletionFailure::Reason::Value reason : DeletionFailure::Reason::allCases) {
        Group group{reason, {}};
        for (const DeletionFailure &failure : failures)
            if (failure.reason == reason)
                group.failures << failure;
        if (!group.failures.isEmpty())
            result << group;
    }
    return result;
}

bool showsFullDiskAccess(const QList<DeletionFailure> &failures, bool hasFullDiskAccess)
{
    if (hasFullDiskAccess)
        return false;
    return std::any_of(failures.begin(), failures.end(), [](const DeletionFailure &failure) {
        return failure.reason == DeletionFailure::Reason::protectedByMacOS;
    });
}

QString heading(qsizetype n)
{
    return QCoreApplication::translate("FailureSheet", "%Ln items stayed behind", nullptr,
                                       int(std::min<qsizetype>(n, INT_MAX)));
}

} // namespace FailureRules
