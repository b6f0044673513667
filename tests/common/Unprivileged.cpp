#include "Unprivileged.h"

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

bool runningAsRoot() { return ::geteuid() == 0; }

ChildOutcome runUnprivileged(const std::function<QByteArray()> &work)
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
        if (::geteuid() == 0) {
            const gid_t groups[] = {gid_t(unprivilegedId)};
            if (::setgroups(1, groups) != 0 || ::setgid(unprivilegedId) != 0 || ::setuid(unprivilegedId) != 0)
                ::_exit(120);
        }
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
