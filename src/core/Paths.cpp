#include "Paths.h"

#include <QChar>

namespace {

constexpr char16_t escapeBase = 0xDC00;

bool isEscape(char16_t c) { return c >= 0xDC80 && c <= 0xDCFF; }

// Length of the valid UTF-8 sequence starting at p[0], or 0 when it is invalid
// (bad lead byte, bad continuation, overlong form, surrogate, beyond U+10FFFF).
qsizetype validSequenceLength(const unsigned char *p, qsizetype left)
{
    const unsigned char b0 = p[0];
    if (b0 < 0x80)
        return 1;
    auto cont = [&](qsizetype i) { return i < left && (p[i] & 0xC0) == 0x80; };
    if (b0 >= 0xC2 && b0 <= 0xDF)
        return cont(1) ? 2 : 0;
    if (b0 >= 0xE0 && b0 <= 0xEF) {
        if (!cont(1) || !cont(2))
            return 0;
        if (b0 == 0xE0 && p[1] < 0xA0)
            return 0; // overlong
        if (b0 == 0xED && p[1] >= 0xA0)
            return 0; // UTF-16 surrogate
        return 3;
    }
    if (b0 >= 0xF0 && b0 <= 0xF4) {
        if (!cont(1) || !cont(2) || !cont(3))
            return 0;
        if (b0 == 0xF0 && p[1] < 0x90)
            return 0; // overlong
        if (b0 == 0xF4 && p[1] >= 0x90)
            return 0; // beyond U+10FFFF
        return 4;
    }
    return 0;
}

// The code point of the valid sequence of `len` bytes at p.
char32_t codePoint(const unsigned char *p, qsizetype len)
{
    switch (len) {
    case 1:
        return p[0];
    case 2:
        return char32_t(p[0] & 0x1F) << 6 | (p[1] & 0x3F);
    case 3:
        return char32_t(p[0] & 0x0F) << 12 | char32_t(p[1] & 0x3F) << 6 | (p[2] & 0x3F);
    default:
        return char32_t(p[0] & 0x07) << 18 | char32_t(p[1] & 0x3F) << 12 | char32_t(p[2] & 0x3F) << 6 | (p[3] & 0x3F);
    }
}

// Characters that would act on the text around them rather than show: C1
// controls, the bidirectional marks, embeddings, overrides and isolates, and the
// line and paragraph separators.
bool actsOnText(char32_t c)
{
    return (c >= 0x80 && c <= 0x9F) || c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069) || c == 0x2028 || c == 0x2029;
}

void appendHex(QString &out, const char *prefix, char32_t value, int digits)
{
    out += QLatin1String(prefix);
    out += QString::number(uint(value), 16).toUpper().rightJustified(digits, QLatin1Char('0'));
}

// One piece of a path (no slash in it) as it is shown; see toDisplay().
void appendShownPiece(QString &out, QByteArrayView piece)
{
    const auto *p = reinterpret_cast<const unsigned char *>(piece.data());
    const qsizetype n = piece.size();
    QString shown;
    shown.reserve(n);
    bool rightToLeft = false;
    for (qsizetype i = 0; i < n;) {
        const qsizetype len = validSequenceLength(p + i, n - i);
        if (len == 0) {
            appendHex(shown, "\\x", p[i], 2);
            ++i;
            continue;
        }
        const char32_t c = codePoint(p + i, len);
        i += len;
        if (c == '\n')
            shown += QLatin1String("\\n");
        else if (c == '\t')
            shown += QLatin1String("\\t");
        else if (c == '\r')
            shown += QLatin1String("\\r");
        else if (c < 0x20 || c == 0x7F)
            appendHex(shown, "\\x", c, 2);
        else if (c == '\\')
            shown += QLatin1String("\\\\");
        else if (actsOnText(c))
            appendHex(shown, "\\u", c, 4);
        else {
            const QChar::Direction direction = QChar::direction(c);
            rightToLeft = rightToLeft || direction == QChar::DirR || direction == QChar::DirAL;
            shown += QStringView(QChar::fromUcs4(c));
        }
    }
    if (rightToLeft) {
        out += QChar(0x2068);
        out += shown;
        out += QChar(0x2069);
    } else {
        out += shown;
    }
}

// True when every byte is printable ASCII other than a backslash: such text
// shows as it is.
bool plainAscii(QByteArrayView bytes)
{
    for (char c : bytes)
        if (c < 0x20 || c > 0x7E || c == '\\')
            return false;
    return true;
}

// Lossless text: invalid bytes become the escapes U+DC80 + byte.
QString decode(QByteArrayView path)
{
    if (path.isEmpty())
        return {};
    if (QUtf8StringView(path.data(), path.size()).isValidUtf8())
        return QString::fromUtf8(path.data(), path.size());
    QString out;
    out.reserve(path.size());
    const auto *p = reinterpret_cast<const unsigned char *>(path.data());
    const qsizetype n = path.size();
    qsizetype i = 0;
    while (i < n) {
        qsizetype run = i;
        qsizetype len = 0;
        while (run < n && (len = validSequenceLength(p + run, n - run)) > 0)
            run += len;
        if (run > i)
            out += QString::fromUtf8(path.data() + i, run - i);
        if (run < n) {
            out += QChar(char16_t(escapeBase + p[run]));
            ++run;
        }
        i = run;
    }
    return out;
}

QByteArray nfc(QByteArrayView bytes)
{
    return QString::fromUtf8(bytes.data(), bytes.size()).normalized(QString::NormalizationForm_C).toUtf8();
}

} // namespace

namespace Paths {

bool isAscii(QByteArrayView bytes)
{
    for (char c : bytes)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    return true;
}

QString toText(QByteArrayView path) { return decode(path); }

QString toDisplay(QByteArrayView path)
{
    if (plainAscii(path))
        return QString::fromLatin1(path.data(), path.size());
    QString out;
    out.reserve(path.size() + 2);
    qsizetype start = 0;
    while (start <= path.size()) {
        qsizetype end = path.indexOf('/', start);
        if (end < 0)
            end = path.size();
        appendShownPiece(out, path.sliced(start, end - start));
        if (end < path.size())
            out += QLatin1Char('/');
        start = end + 1;
    }
    return out;
}

QByteArray fromText(const QString &text)
{
    const auto *u = reinterpret_cast<const char16_t *>(text.utf16());
    const qsizetype n = text.size();
    bool escaped = false;
    for (qsizetype i = 0; i < n && !escaped; ++i)
        escaped = isEscape(u[i]);
    if (!escaped)
        return text.toUtf8();

    QByteArray out;
    out.reserve(n);
    qsizetype start = 0;
    for (qsizetype i = 0; i < n; ++i) {
        // A low surrogate right after a high one is half of a real character.
        const bool paired = i > 0 && QChar::isHighSurrogate(u[i - 1]);
        if (isEscape(u[i]) && !paired) {
            out += QStringView(u + start, i - start).toUtf8();
            out += char(u[i] - escapeBase);
            start = i + 1;
        }
    }
    out += QStringView(u + start, n - start).toUtf8();
    return out;
}

QByteArray comparable(QByteArrayView path)
{
    if (isAscii(path) || !QUtf8StringView(path.data(), path.size()).isValidUtf8())
        return path.toByteArray();
    return nfc(path);
}

bool equal(QByteArrayView a, QByteArrayView b)
{
    if (a == b)
        return true;
    if (isAscii(a) && isAscii(b))
        return false;
    return comparable(a) == comparable(b);
}

bool startsWith(QByteArrayView path, QByteArrayView prefix)
{
    if (path.startsWith(prefix))
        return true;
    if (isAscii(path) && isAscii(prefix))
        return false;
    return QByteArrayView(comparable(path)).startsWith(comparable(prefix));
}

bool isWithin(QByteArrayView path, QByteArrayView dir) { return equal(path, dir) || isBelow(path, dir); }

namespace {
bool isBelowBytes(QByteArrayView path, QByteArrayView dir)
{
    if (dir.endsWith('/'))
        return path.size() > dir.size() && path.startsWith(dir);
    return path.size() > dir.size() + 1 && path.startsWith(dir) && path[dir.size()] == '/';
}
} // namespace

bool isBelow(QByteArrayView path, QByteArrayView dir)
{
    if (isBelowBytes(path, dir))
        return true;
    if (isAscii(path) && isAscii(dir))
        return false;
    return isBelowBytes(comparable(path), comparable(dir));
}

QByteArray lastComponent(QByteArrayView path)
{
    if (path == "/")
        return QByteArrayLiteral("/");
    QByteArrayView p = path;
    while (p.size() > 1 && p.endsWith('/'))
        p.chop(1);
    const qsizetype slash = p.lastIndexOf('/');
    return (slash < 0 ? p : p.sliced(slash + 1)).toByteArray();
}

QByteArray parentOf(QByteArrayView path)
{
    QByteArrayView p = path;
    while (p.size() > 1 && p.endsWith('/'))
        p.chop(1);
    if (p == "/" || p.isEmpty())
        return {};
    const qsizetype slash = p.lastIndexOf('/');
    if (slash < 0)
        return {};
    if (slash == 0)
        return QByteArrayLiteral("/");
    return p.first(slash).toByteArray();
}

QByteArray join(QByteArrayView dir, QByteArrayView name)
{
    QByteArray out;
    out.reserve(dir.size() + name.size() + 1);
    out.append(dir);
    if (!dir.endsWith('/'))
        out.append('/');
    out.append(name);
    return out;
}

QByteArrayView extension(QByteArrayView name)
{
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0)
        return {};
    return name.sliced(dot + 1);
}

} // namespace Paths
