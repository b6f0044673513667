#pragma once

#include <QByteArray>

#include <functional>

// Runs `work` in a forked child that has dropped root (to nobody, 65534) when the
// tests run as root, and returns what it wrote back; the child's own exit status
// is `status` (-1 when it died or could not start). Needed for cases such as an
// unreadable folder, which root can read anyway. Keep `work` simple: the child is
// a copy of a threaded process.
struct ChildOutcome {
    int status = -1;
    QByteArray output;
};
ChildOutcome runUnprivileged(const std::function<QByteArray()> &work);

// Runs `work` in a forked child with a mount namespace of its own (as root, or
// in a user namespace otherwise), so it may mount a tmpfs or a bind mount that
// vanishes with it. Status `noMounts` when the system allows neither.
ChildOutcome runWithOwnMounts(const std::function<QByteArray()> &work);
constexpr int noMounts = 122;

// The uid the child runs as, for chown() of fixtures the child must not read.
bool runningAsRoot();
constexpr unsigned unprivilegedId = 65534;

// Makes `path` and every folder above it traversable by others (o+x), so that
// the unprivileged child can reach fixtures inside a private temporary folder.
void openPathForOthers(const QByteArray &path);
