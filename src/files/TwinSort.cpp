#include "TwinSort.h"

#include "core/NameOrder.h"
#include "core/Paths.h"

#include <QCoreApplication>

#include <algorithm>

QString TwinSort::rawValue() const
{
    static const char *const raw[] = {"extra", "copies", "name"};
    return QString::fromLatin1(raw[m_value]);
}

std::optional<TwinSort> TwinSort::fromRawValue(QStringView raw)
{
    for (const TwinSort sort : allCases)
        if (sort.rawValue() == raw)
            return sort;
    return std::nullopt;
}

QString TwinSort::title() const
{
    static const char *const titles[] = {
        QT_TRANSLATE_NOOP("Files", "Wasted space"),
        QT_TRANSLATE_NOOP("Files", "Most copies"),
        QT_TRANSLATE_NOOP("Files", "Name"),
    };
    return QCoreApplication::translate("Files", titles[m_value]);
}

void TwinSort::sort(std::vector<const DuplicateGroup *> &groups) const
{
    switch (m_value) {
    case extra:
        std::stable_sort(groups.begin(), groups.end(), [](const DuplicateGroup *a, const DuplicateGroup *b) {
            return a->reclaimable() > b->reclaimable();
        });
        return;
    case copies:
        std::stable_sort(groups.begin(), groups.end(), [](const DuplicateGroup *a, const DuplicateGroup *b) {
            if (a->files.size() != b->files.size())
                return a->files.size() > b->files.size();
            return a->reclaimable() > b->reclaimable();
        });
        return;
    case name: {
        const auto firstName = [](const DuplicateGroup *group) {
            return group->files.empty() ? QString() : Paths::toDisplay(group->files.front().name);
        };
        std::stable_sort(groups.begin(), groups.end(), [&](const DuplicateGroup *a, const DuplicateGroup *b) {
            return NameOrder::compare(firstName(a), firstName(b)) < 0;
        });
        return;
    }
    }
}
