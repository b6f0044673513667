#include "Platform.h"

#include <pwd.h>
#include <unistd.h>

QByteArray Platform::homeDirectory()
{
    QByteArray home = qgetenv("HOME");
    if (home.isEmpty() || !home.startsWith('/')) {
        if (const passwd *pw = getpwuid(getuid()); pw && pw->pw_dir)
            home = QByteArray(pw->pw_dir);
    }
    while (home.size() > 1 && home.endsWith('/'))
        home.chop(1);
    return home.isEmpty() ? QByteArrayLiteral("/") : home;
}
