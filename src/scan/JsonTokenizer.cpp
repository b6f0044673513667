#include "JsonTokenizer.h"

#include <QCoreApplication>
#include <QIODevice>

namespace {

QString tr(const char *text) { return QCoreApplication::translate("JsonTokenizer", text); }

constexpr qsizetype chunk = 64 * 1024;

void appendUtf8(QByteArray &out, char32_t code) { out.append(QStringView(QChar::fromUcs4(code)).toUtf8()); }

int hexValue(int c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

JsonTokenizer::JsonTokenizer(QIODevice &device) : m_device(device) {}

bool JsonTokenizer::fill()
{
    if (m_atEnd)
        return false;
    m_buffer.resize(chunk);
    const qint64 got = m_device.read(m_buffer.data(), chunk);
    m_pos = 0;
    if (got <= 0) {
        m_buffer.clear();
        m_atEnd = true;
        if (got < 0 && m_error.isEmpty())
            m_error = tr("could not read the file: %1").arg(m_device.errorString());
        return false;
    }
    m_buffer.resize(got);
    return true;
}

int JsonTokenizer::peekFilled() { return fill() ? uchar(m_buffer.constData()[m_pos]) : -1; }

void JsonTokenizer::skipSpace()
{
    for (int c = peek(); c == ' ' || c == '\t' || c == '\n' || c == '\r'; c = peek())
        get();
}

JsonTokenizer::Token JsonTokenizer::failAt(qint64 line, qint64 column, const QString &what)
{
    if (m_error.isEmpty())
        m_error = tr("line %1, column %2: %3").arg(line).arg(column).arg(what);
    m_expect = Expect::nothing;
    m_atEnd = true;
    m_buffer.clear();
    m_pos = 0;
    return Token::error;
}

JsonTokenizer::Token JsonTokenizer::fail(const QString &what) { return failAt(m_tokenLine, m_tokenColumn, what); }

JsonTokenizer::Token JsonTokenizer::afterValue(Token token)
{
    m_expect = m_open.empty() ? Expect::nothing : Expect::commaOrEnd;
    return token;
}

JsonTokenizer::Token JsonTokenizer::next()
{
    if (!m_error.isEmpty())
        return Token::error;
    skipSpace();
    m_tokenLine = m_line;
    m_tokenColumn = m_column;
    int c = peek();
    if (!m_error.isEmpty())
        return failAt(m_line, m_column, m_error);

    auto close = [this]() {
        get();
        const char kind = m_open.back();
        m_open.pop_back();
        return afterValue(kind == '[' ? Token::endArray : Token::endObject);
    };

    switch (m_expect) {
    case Expect::nothing:
        if (c < 0)
            return m_started ? Token::end : fail(tr("the file is empty"));
        return fail(tr("unexpected text after the end of the document"));
    case Expect::commaOrEnd: {
        const char open = m_open.back();
        if (c == (open == '[' ? ']' : '}'))
            return close();
        if (c != ',')
            return c < 0 ? fail(tr("the file ends before the document does"))
                         : fail(open == '[' ? tr("expected ',' or ']'") : tr("expected ',' or '}'"));
        get();
        skipSpace();
        m_tokenLine = m_line;
        m_tokenColumn = m_column;
        c = peek();
        m_expect = open == '[' ? Expect::value : Expect::key;
        break;
    }
    case Expect::firstValue:
        if (c == ']')
            return close();
        m_expect = Expect::value;
        break;
    case Expect::firstKey:
        if (c == '}')
            return close();
        m_expect = Expect::key;
        break;
    case Expect::value:
    case Expect::key:
    case Expect::colon:
        break;
    }

    if (c < 0)
        return fail(m_open.empty() && !m_started ? tr("the file is empty")
                                                 : tr("the file ends before the document does"));
    m_started = true;

    if (m_expect == Expect::key) {
        if (c != '"')
            return fail(tr("expected a member name in quotes"));
        if (readString(Token::key) == Token::error)
            return Token::error;
        skipSpace();
        if (get() != ':')
            return failAt(m_line, m_column, tr("expected ':' after a member name"));
        m_expect = Expect::value;
        return Token::key;
    }

    switch (c) {
    case '[':
    case '{':
        get();
        m_open.push_back(char(c));
        m_expect = c == '[' ? Expect::firstValue : Expect::firstKey;
        return c == '[' ? Token::beginArray : Token::beginObject;
    case '"':
        if (readString(Token::string) == Token::error)
            return Token::error;
        return afterValue(Token::string);
    case 't':
        return readWord("true", Token::boolean, true);
    case 'f':
        return readWord("false", Token::boolean, false);
    case 'n':
        return readWord("null", Token::null, false);
    default:
        if (c == '-' || (c >= '0' && c <= '9'))
            return readNumber();
        return fail(
            tr("unexpected character '%1'").arg(c >= 0x20 && c < 0x7F ? QString(QChar(c)) : QString::number(c)));
    }
}

JsonTokenizer::Token JsonTokenizer::readString(Token kind)
{
    get();            // the opening quote
    m_text.resize(0); // keeps its room for the next one
    for (;;) {
        // Plain runs are copied whole from the buffer.
        const qsizetype start = m_pos;
        while (m_pos < m_buffer.size()) {
            const uchar c = uchar(m_buffer[m_pos]);
            if (c == '"' || c == '\\' || c < 0x20)
                break;
            ++m_pos;
        }
        m_text.append(m_buffer.constData() + start, m_pos - start);
        m_column += m_pos - start;
        if (m_text.size() > maxText)
            return fail(tr("a string longer than %1 bytes").arg(maxText));
        const int c = peek();
        if (c < 0)
            return fail(tr("the file ends inside a string"));
        if (c == '"') {
            get();
            return kind;
        }
        if (c < 0x20)
            return failAt(m_line, m_column, tr("a control character inside a string"));
        if (c == '\\' && !readEscape())
            return Token::error;
    }
}

bool JsonTokenizer::readEscape()
{
    const qint64 line = m_line;
    const qint64 column = m_column;
    get(); // the backslash
    auto invalid = [&] {
        failAt(line, column, tr("an invalid escape in a string"));
        return false;
    };
    auto fourHex = [this]() {
        int value = 0;
        for (int i = 0; i < 4; ++i) {
            const int digit = hexValue(get());
            if (digit < 0)
                return -1;
            value = value * 16 + digit;
        }
        return value;
    };
    switch (get()) {
    case '"':
        m_text.append('"');
        return true;
    case '\\':
        m_text.append('\\');
        return true;
    case '/':
        m_text.append('/');
        return true;
    case 'b':
        m_text.append('\b');
        return true;
    case 'f':
        m_text.append('\f');
        return true;
    case 'n':
        m_text.append('\n');
        return true;
    case 'r':
        m_text.append('\r');
        return true;
    case 't':
        m_text.append('\t');
        return true;
    case 'u': {
        const int unit = fourHex();
        if (unit < 0 || (unit >= 0xDC00 && unit <= 0xDFFF))
            return invalid();
        if (unit >= 0xD800 && unit <= 0xDBFF) {
            if (get() != '\\' || get() != 'u')
                return invalid();
            const int low = fourHex();
            if (low < 0xDC00 || low > 0xDFFF)
                return invalid();
            appendUtf8(m_text, 0x10000 + ((char32_t(unit) - 0xD800) << 10) + (char32_t(low) - 0xDC00));
            return true;
        }
        appendUtf8(m_text, char32_t(unit));
        return true;
    }
    default:
        return invalid();
    }
}

JsonTokenizer::Token JsonTokenizer::readNumber()
{
    bool negative = false;
    if (peek() == '-') {
        negative = true;
        get();
    }
    quint64 value = 0;
    bool fits = true;
    int c = peek();
    if (c < '0' || c > '9')
        return fail(tr("a malformed number"));
    if (c == '0') {
        get();
    } else {
        while ((c = peek()) >= '0' && c <= '9') {
            get();
            const quint64 digit = quint64(c - '0');
            if (value > (~quint64(0) - digit) / 10)
                fits = false;
            else
                value = value * 10 + digit;
        }
    }
    bool whole = true;
    if (peek() == '.') {
        get();
        whole = false;
        if ((c = peek()) < '0' || c > '9')
            return fail(tr("a malformed number"));
        while ((c = peek()) >= '0' && c <= '9')
            get();
    }
    if (peek() == 'e' || peek() == 'E') {
        get();
        whole = false;
        if (peek() == '+' || peek() == '-')
            get();
        if ((c = peek()) < '0' || c > '9')
            return fail(tr("a malformed number"));
        while ((c = peek()) >= '0' && c <= '9')
            get();
    }
    const quint64 limit = negative ? quint64(1) << 63 : (quint64(1) << 63) - 1;
    m_whole = whole && fits && value <= limit;
    m_number = !m_whole ? 0 : negative ? qint64(0 - value) : qint64(value);
    return afterValue(Token::number);
}

JsonTokenizer::Token JsonTokenizer::readWord(const char *word, Token kind, bool value)
{
    for (const char *p = word; *p; ++p)
        if (get() != *p)
            return fail(tr("unexpected character"));
    m_boolean = value;
    return afterValue(kind);
}

bool JsonTokenizer::skipRest()
{
    const std::size_t level = m_open.size();
    while (m_open.size() >= level) {
        if (next() == Token::error)
            return false;
    }
    return true;
}

bool JsonTokenizer::skipValue()
{
    const Token token = next();
    if (token == Token::beginArray || token == Token::beginObject)
        return skipRest();
    return token != Token::error && token != Token::end;
}
