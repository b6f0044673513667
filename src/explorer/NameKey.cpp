#include "NameKey.h"

#include <QChar>

namespace NameKey {

namespace {

bool isAsciiDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

// The UTF-8 pattern for any value below 0x110000, surrogates included: its
// bytes order as the values do, and no encoding is a prefix of another.
void appendValue(QByteArray &out, char32_t v)
{
    if (v < 0x80) {
        out.append(char(v));
    } else if (v < 0x800) {
        out.append(char(0xC0 | (v >> 6)));
        out.append(char(0x80 | (v & 0x3F)));
    } else if (v < 0x10000) {
        out.append(char(0xE0 | (v >> 12)));
        out.append(char(0x80 | ((v >> 6) & 0x3F)));
        out.append(char(0x80 | (v & 0x3F)));
    } else {
        out.append(char(0xF0 | (v >> 18)));
        out.append(char(0x80 | ((v >> 12) & 0x3F)));
        out.append(char(0x80 | ((v >> 6) & 0x3F)));
        out.append(char(0x80 | (v & 0x3F)));
    }
}

// A run of digits is the byte '0', its length without leading zeros (two
// bytes), then those digits. NameOrder::compare meets a digit facing another
// character only at the start of a run, and compares the digit's code with
// the other's folded code; no character folds into '0'...'9', so the byte '0'
// stands for any digit there. Facing another run, the marker ties and the
// length, then the digits, decide. Every other character is its folded UTF-16
// code unit, as NameOrder::compare reads it.
template <class Text>
bool appendKey(QByteArray &out, Text name)
{
    const qsizetype n = name.size();
    for (qsizetype i = 0; i < n;) {
        const char16_t c = QChar(name[i]).unicode();
        if (isAsciiDigit(c)) {
            while (i + 1 < n && QChar(name[i]) == u'0' && isAsciiDigit(QChar(name[i + 1]).unicode()))
                ++i;
            qsizetype end = i;
            while (end < n && isAsciiDigit(QChar(name[end]).unicode()))
                ++end;
            if (end < n && QChar(name[end]).isDigit())
                return false;
            const qsizetype length = end - i;
            if (length > 0xFFFF)
                return false;
            out.append('0');
            out.append(char(length >> 8));
            out.append(char(length & 0xFF));
            for (qsizetype k = i; k < end; ++k)
                out.append(char(QChar(name[k]).unicode()));
            i = end;
            continue;
        }
        if (c < 0x80) {
            out.append(char(c >= u'A' && c <= u'Z' ? c + 32 : c));
        } else {
            if (QChar::isDigit(c))
                return false;
            appendValue(out, QChar::toCaseFolded(char32_t(c)));
        }
        ++i;
    }
    return true;
}

} // namespace

bool append(QByteArray &out, QStringView name) { return appendKey(out, name); }

bool append(QByteArray &out, QLatin1String name) { return appendKey(out, name); }

} // namespace NameKey
