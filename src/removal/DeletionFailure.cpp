#include "DeletionFailure.h"

#include <QCoreApplication>

#include <cerrno>

namespace {

struct ReasonRow {
    const char *raw;
    const char *title;
    const char *explanation;
};

constexpr ReasonRow reasonRows[] = {
    {"safetyGuard", QT_TRANSLATE_NOOP("DeletionFailure", "Kept by the safety guard"),
     QT_TRANSLATE_NOOP("DeletionFailure", "Sorvel Cleaner never removes system folders, your home folder or its "
                                          "main folders. Open them to clean inside.")},
    {"changedSinceReview", QT_TRANSLATE_NOOP("DeletionFailure", "Changed since you reviewed it"),
     QT_TRANSLATE_NOOP("DeletionFailure", "These changed on disk after you reviewed them, so they were left alone. "
                                          "Look at them again and sorvelise them anew if they should still go.")},
    {"protectedByMacOS", QT_TRANSLATE_NOOP("DeletionFailure", "Protected by macOS"),
     QT_TRANSLATE_NOOP("DeletionFailure",
                       "macOS blocks apps from changing these (System Integrity Protection or privacy protection for "
                       "another app's data). Full Disk Access unlocks some of them; the rest only macOS itself can "
                       "remove.")},
    {"noPermission", QT_TRANSLATE_NOOP("DeletionFailure", "Not yours to remove"),
     QT_TRANSLATE_NOOP("DeletionFailure", "These belong to another user or to the system. Remove them in Finder (it "
                                          "will ask for your password) if you're sure.")},
    {"inUse", QT_TRANSLATE_NOOP("DeletionFailure", "In use"),
     QT_TRANSLATE_NOOP("DeletionFailure", "An app is using these right now. Quit it and sorvelise again.")},
    {"other", QT_TRANSLATE_NOOP("DeletionFailure", "Couldn't be moved"),
     QT_TRANSLATE_NOOP("DeletionFailure", "Something else went wrong; the message is shown for each item.")},
};

} // namespace

QString DeletionFailure::Reason::rawValue() const { return QString::fromLatin1(reasonRows[m_value].raw); }

std::optional<DeletionFailure::Reason> DeletionFailure::Reason::fromRawValue(QStringView raw)
{
    for (Value value : allCases)
        if (raw == QLatin1StringView(reasonRows[value].raw))
            return Reason(value);
    return std::nullopt;
}

QString DeletionFailure::Reason::title() const
{
    return QCoreApplication::translate("DeletionFailure", reasonRows[m_value].title);
}

QString DeletionFailure::Reason::explanation() const
{
    return QCoreApplication::translate("DeletionFailure", reasonRows[m_value].explanation);
}

DeletionFailure::Reason DeletionFailure::classify(int error)
{
    switch (error) {
    case EPERM:
        return Reason::protectedByMacOS;
    case EACCES:
        return Reason::noPermission;
    case EBUSY:
    case ETXTBSY:
        return Reason::inUse;
    default:
        return Reason::other;
    }
}
