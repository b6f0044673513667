// The profile of a system: which tables of real places on disk apply. Every such
// table is built from a Platform and a home folder handed in, so both profiles
// can be exercised on any host. A value; any thread.

#pragma once

#include <QByteArray>

class Platform
{
public:
    enum Value : quint8 { macOS, linux };

    constexpr Platform(Value value) : m_value(value) {}
    constexpr operator Value() const { return m_value; }

    // The profile of the running system.
    static constexpr Platform current()
    {
#if defined(Q_OS_MACOS)
        return macOS;
#else
        return linux;
#endif
    }

    // The user's home folder as bytes ($HOME, else the password database),
    // without a trailing slash.
    static QByteArray homeDirectory();

private:
    Value m_value;
};
