// The connections an object made to one it follows, undone together when it
// follows another one, or none. Used on the thread of the objects connected.

#pragma once

#include <QList>
#include <QObject>

#include <utility>

class Connections
{
public:
    Connections() = default;
    ~Connections() { clear(); }
    Connections(const Connections &) = delete;
    Connections &operator=(const Connections &) = delete;

    Connections &operator<<(QMetaObject::Connection connection)
    {
        m_list.append(std::move(connection));
        return *this;
    }

    // Disconnects every connection kept.
    void clear()
    {
        for (const QMetaObject::Connection &connection : std::as_const(m_list))
            QObject::disconnect(connection);
        m_list.clear();
    }

private:
    QList<QMetaObject::Connection> m_list;
};
