#include "NameOrder.h"

namespace NameOrder {

int compare(QStringView a, QStringView b)
{
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        if (a[i].isDigit() && b[j].isDigit()) {
            // Runs of digits compare by value: without leading zeros, the longer
            // run is the larger number, else the first differing digit decides.
            while (i < a.size() && a[i] == u'0' && i + 1 < a.size() && a[i + 1].isDigit())
                ++i;
            while (j < b.size() && b[j] == u'0' && j + 1 < b.size() && b[j + 1].isDigit())
                ++j;
            qsizetype ei = i;
            qsizetype ej = j;
            while (ei < a.size() && a[ei].isDigit())
                ++ei;
            while (ej < b.size() && b[ej].isDigit())
                ++ej;
            if (ei - i != ej - j)
                return ei - i < ej - j ? -1 : 1;
            const int digits = a.sliced(i, ei - i).compare(b.sliced(j, ej - j));
            if (digits != 0)
                return digits < 0 ? -1 : 1;
            i = ei;
            j = ej;
            continue;
        }
        const char32_t x = QChar::toCaseFolded(a[i].unicode());
        const char32_t y = QChar::toCaseFolded(b[j].unicode());
        if (x != y)
            return x < y ? -1 : 1;
        ++i;
        ++j;
    }
    const qsizetype restA = a.size() - i;
    const qsizetype restB = b.size() - j;
    return restA == restB ? 0 : (restA < restB ? -1 : 1);
}

} // namespace NameOrder
