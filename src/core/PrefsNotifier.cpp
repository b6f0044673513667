#include "PrefsNotifier.h"

PrefsNotifier *PrefsNotifier::instance()
{
    static PrefsNotifier notifier;
    return &notifier;
}
