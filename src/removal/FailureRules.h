// What the failure sheet after a removal shows: the failures grouped by reason,
// its heading and whether it offers the privacy settings. Pure functions; any
// thread.

#pragma once

#include "DeletionFailure.h"

#include <QList>
#include <QString>

namespace FailureRules {

// The failures of one reason, in their order.
struct Group {
    DeletionFailure::Reason reason;
    QList<DeletionFailure> failures;
};
// One group per reason that has failures, in the declared order of the reasons.
QList<Group> groups(const QList<DeletionFailure> &failures);
// The button to the system's privacy settings: only when the system's own
// protection kept something and the permission is missing.
bool showsFullDiskAccess(const QList<DeletionFailure> &failures, bool hasFullDiskAccess);
// "3 items stayed behind"
QString heading(qsizetype count);

} // namespace FailureRules
