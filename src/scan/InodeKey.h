// One file or folder by its device and inode, for the sets a walk keeps of
// what it has met: hard links, open folders, cycles.

#pragma once

#include <QtGlobal>

#include <functional>

#include <sys/types.h>

struct InodeKey {
    dev_t dev;
    ino_t ino;
    friend bool operator==(const InodeKey &, const InodeKey &) = default;
};

struct InodeKeyHash {
    std::size_t operator()(const InodeKey &k) const noexcept
    {
        return std::hash<quint64>()(quint64(k.ino) * 0x9E3779B97F4A7C15ull ^ quint64(k.dev));
    }
};
