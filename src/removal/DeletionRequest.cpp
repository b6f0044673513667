#include "DeletionRequest.h"

#include "core/Paths.h"
#include "safety/SafetyGuard.h"

int DeletionRequest::protectedCount() const
{
    int count = 0;
    for (const DeletionItem &item : items)
        if (SafetyGuard::isProtected(Paths::normalize(item.path)))
            ++count;
    return count;
}
