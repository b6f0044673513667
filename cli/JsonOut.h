// A small streaming JSON writer to standard output, shared by the commands
// that print JSON. One object per document; main thread.

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <string_view>

// Values are written as they come: a full scan can hold millions of folders,
// and building a document in memory first would cost more than the scan. The
// caller writes the punctuation with raw().
class JsonOut
{
public:
    JsonOut();
    ~JsonOut();
    JsonOut(const JsonOut &) = delete;
    JsonOut &operator=(const JsonOut &) = delete;

    void raw(std::string_view text);
    void number(qint64 value);
    void number(double value); // the shortest text that reads back as the same double
    void boolean(bool value);
    void text(const QString &value);
    // Path bytes: valid UTF-8 as it is; each byte that isn't part of valid UTF-8
    // as the escape \udcXX, the same scheme as Paths::toText, so the exact bytes
    // can be recovered.
    void bytes(QByteArrayView value);
    // `"key":` before a value, with a comma unless it opens its object.
    void key(std::string_view name, bool first = false);
    void flush();

private:
    void escaped(QByteArrayView value);

    QByteArray m_buffer;
};
