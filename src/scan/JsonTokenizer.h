// Reads a JSON document one token at a time from a device, checking its grammar
// as it goes, in memory that does not grow with the size of the document: only
// the kind of each open array or object is kept, one byte per level, so nesting
// of any depth is read without recursion. One document, one thread.

#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

class QIODevice;

// Strings come back as raw bytes with their escapes decoded; bytes that are not
// valid UTF-8 pass unchanged, as writers of file names put them that way.
class JsonTokenizer
{
public:
    enum class Token {
        beginArray,
        endArray,
        beginObject,
        endObject,
        key, // a member's name; its value comes next
        string,
        number,
        boolean,
        null,
        end,   // the document is over and nothing but white space follows it
        error, // see errorText(); every later call gives error again
    };

    explicit JsonTokenizer(QIODevice &device);

    Token next();
    // After beginArray or beginObject: reads up to and including its end.
    // False on an error.
    bool skipRest();
    // After a key: reads its value, whatever it is. False on an error.
    bool skipValue();

    // Of the last key or string.
    const QByteArray &text() const { return m_text; }
    // Of the last number: whole numbers from -2^63 to 2^63-1 are exact;
    // `isWhole` is false for any other (a fraction, an exponent, or too large).
    qint64 number() const { return m_number; }
    bool isWhole() const { return m_whole; }
    // Of the last boolean.
    bool boolean() const { return m_boolean; }

    // Where the last token began, from 1; columns count bytes.
    qint64 line() const { return m_tokenLine; }
    qint64 column() const { return m_tokenColumn; }
    qint64 depth() const { return qint64(m_open.size()); }
    // What went wrong, with its line and column; empty without an error.
    QString errorText() const { return m_error; }
    // Stops with an error of the caller's, at the last token.
    Token fail(const QString &what);

    // Longest key or string accepted; a file name is at most a few kilobytes.
    static constexpr qsizetype maxText = 1 << 20;

private:
    enum class Expect : char { value, firstValue, firstKey, key, colon, commaOrEnd, nothing };

    // The next byte, or -1 at the end; inline, as most of the time goes here.
    int peek() { return m_pos < m_buffer.size() ? uchar(m_buffer.constData()[m_pos]) : peekFilled(); }
    int get()
    {
        const int c = peek();
        if (c >= 0) {
            ++m_pos;
            if (c == '\n') {
                ++m_line;
                m_column = 1;
            } else {
                ++m_column;
            }
        }
        return c;
    }
    int peekFilled();
    bool fill();
    void skipSpace();
    Token failAt(qint64 line, qint64 column, const QString &what);
    Token readString(Token kind);
    Token readNumber();
    Token readWord(const char *word, Token kind, bool value);
    bool readEscape();
    Token afterValue(Token token);

    QIODevice &m_device;
    QByteArray m_buffer;
    qsizetype m_pos = 0;
    bool m_atEnd = false;
    qint64 m_line = 1;
    qint64 m_column = 1;
    qint64 m_tokenLine = 1;
    qint64 m_tokenColumn = 1;

    std::vector<char> m_open; // '[' or '{' for each open level
    Expect m_expect = Expect::value;
    bool m_started = false;

    QByteArray m_text;
    qint64 m_number = 0;
    bool m_whole = true;
    bool m_boolean = false;
    QString m_error;
};
