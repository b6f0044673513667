#include "NameKey.h"

#include "core/NameOrder.h"

#include <QChar>

#include <algorithm>
#include <array>

namespace NameKey {

namespace {

bool isAsciiDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// The rank of each printable ASCII character in the calling thread's
// collation, from 1 up; '0' stands for all digits. 0 marks a character the
// collation ignores, which a key can't place.
struct Ranks {
    std::array<quint8, 128> of{};

    Ranks()
    {
        const QCollator &collator = NameOrder::collator();
        std::array<char16_t, 95> chars{};
        qsizetype n = 0;
        for (char16_t c = 0x20; c < 0x7F; ++c)
            if (!isAsciiDigit(c) || c == u'0')
                chars[size_t(n++)] = c;
        const auto text = [](const char16_t &c) { return QStringView(&c, 1); };
        std::stable_sort(chars.begin(), chars.begin() + n,
                         [&](const char16_t &a, const char16_t &b) { return collator.compare(text(a), text(b)) < 0; });
        quint8 rank = 0;
        for (qsizetype i = 0; i < n; ++i) {
            const char16_t c = chars[size_t(i)];
            if (i == 0 || collator.compare(text(chars[size_t(i - 1)]), text(c)) != 0)
                ++rank;
            of[c] = collator.compare(text(c), QStringView()) == 0 ? 0 : rank;
        }
    }
};

const Ranks &ranks()
{
    thread_local const Ranks table;
    return table;
}

// A run of digits is the rank of '0', its length without leading zeros (one
// byte: the collation reads longer runs in parts), then those digits. Facing
// another character only the rank counts; facing another run, the length, then
// the digits decide.
template <class Text>
bool appendKey(QByteArray &out, Text name)
{
    const Ranks &table = ranks();
    const qsizetype n = name.size();
    for (qsizetype i = 0; i < n;) {
        const char16_t c = QChar(name[i]).unicode();
        if (c < 0x20 || c >= 0x7F)
            return false;
        if (isAsciiDigit(c)) {
            while (i + 1 < n && QChar(name[i]) == u'0' && isAsciiDigit(QChar(name[i + 1]).unicode()))
                ++i;
            qsizetype end = i;
            while (end < n && isAsciiDigit(QChar(name[end]).unicode()))
                ++end;
            const qsizetype length = end - i;
            if (length > 200)
                return false;
            out.append(char(table.of[u'0']));
            out.append(char(length));
            for (qsizetype k = i; k < end; ++k)
                out.append(char(QChar(name[k]).unicode()));
            i = end;
            continue;
        }
        const quint8 rank = table.of[c];
        if (rank == 0)
            return false;
        out.append(char(rank));
        ++i;
    }
    return true;
}

} // namespace

bool append(QByteArray &out, QStringView name) { return appendKey(out, name); }

bool append(QByteArray &out, QLatin1String name) { return appendKey(out, name); }

} // namespace NameKey
