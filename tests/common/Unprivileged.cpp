#include "Unprivileged.h"

#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

bool runningAsRoot() { return ::geteuid() == 0; }

namespace {

// Runs `work` in a forked child after `prepare`, which returns 0 or the exit
// status to give up with.
ChildOutcome runChild(const std::function<int()> &prepare, const std::function<QByteArray()> &work)
{
    int fds[2];
    if (::pipe(fds) != 0)
        return {};
    const pid_t pid = ::fork();
    if (pid < 0) {
        ::close(fds[0]);
        ::close(fds[1]);
        return {};
    }
    if (pid == 0) {
        ::close(fds[0]);
        if (const int status = prepare())
            ::_exit(status);
        const QByteArray out = work();
        qsizetype written = 0;
        while (written < out.size()) {
            const ssize_t n = ::write(fds[1], out.constData() + written, size_t(out.size() - written));
            if (n <= 0)
                ::_exit(121);
            written += n;
        }
        ::close(fds[1]);
        ::_exit(0);
    }
    ::close(fds[1]);
    ChildOutcome outcome;
    char buffer[4096];
    ssize_t n;
    while ((n = ::read(fds[0], buffer, sizeof buffer)) > 0)
        outcome.output.append(buffer, n);
    ::close(fds[0]);
    int status = 0;
    if (::waitpid(pid, &status, 0) == pid && WIFEXITED(status))
        outcome.status = WEXITSTATUS(status);
    return outcome;
}

bool writeFile(const char *path, const QByteArray &text)
{
    const int fd = ::open(path, O_WRONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool ok = ::write(fd, text.constData(), size_t(text.size())) == text.size();
    ::close(fd);
    return ok;
}

} // namespace

ChildOutcome runUnprivileged(const std::function<QByteArray()> &work)
{
    return runChild(
        [] {
            if (::geteuid() == 0) {
                const gid_t groups[] = {gid_t(unprivilegedId)};
                if (::setgroups(1, groups) != 0 || ::setgid(unprivilegedId) != 0 || ::setuid(unprivilegedId) != 0)
                    return 120;
            }
            return 0;
        },
        work);
}

ChildOutcome runWithOwnMounts(const std::function<QByteArray()> &work)
{
    return runChild(
        [] {
            const uid_t uid = ::geteuid();
            const gid_t gid = ::getegid();
            if (::unshare(CLONE_NEWNS) != 0) {
                // Not root: a user namespace of our own may mount instead.
                if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
                    return noMounts;
                writeFile("/proc/self/setgroups", "deny");
                if (!writeFile("/proc/self/uid_map", "0 " + QByteArray::number(uid) + " 1") ||
                    !writeFile("/proc/self/gid_map", "0 " + QByteArray::number(gid) + " 1"))
                    return noMounts;
            }
            // What the child mounts stays in its namespace.
            if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
                return noMounts;
            return 0;
        },
        work);
}

void openPathForOthers(const QByteArray &path)
{
    QByteArray p = path;
    while (!p.isEmpty() && p != "/") {
        struct stat st {};
        if (::stat(p.constData(), &st) == 0 && S_ISDIR(st.st_mode))
            ::chmod(p.constData(), (st.st_mode & 07777) | S_IXOTH | S_IROTH);
        const qsizetype slash = p.lastIndexOf('/');
        p = slash <= 0 ? QByteArray() : p.first(slash);
    }
}
