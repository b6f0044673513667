#!/usr/bin/env python3
"""Builds or removes a chain of nested folders, each one level deeper than the
last (names "d1", "d2", ...), far beyond PATH_MAX. Both work relative to open
descriptors, so no path ever gets long.

usage: chain.py make DIR DEPTH
       chain.py remove DIR
"""
import os
import sys


def make(top, depth):
    os.mkdir(top)
    fd = os.open(top, os.O_RDONLY | os.O_DIRECTORY)
    for level in range(1, depth + 1):
        os.mkdir("d%d" % level, dir_fd=fd)
        sub = os.open("d%d" % level, os.O_RDONLY | os.O_DIRECTORY, dir_fd=fd)
        os.close(fd)
        fd = sub
    os.close(fd)


def remove(top):
    # Each folder moves up beside the top before it goes, so paths stay short.
    base, pending, serial = os.path.dirname(top), [top], 0
    while pending:
        path = pending.pop()
        fd = os.open(path, os.O_RDONLY | os.O_DIRECTORY | os.O_NOFOLLOW)
        for entry in os.listdir(fd):
            st = os.stat(entry, dir_fd=fd, follow_symlinks=False)
            if (st.st_mode & 0o170000) == 0o040000:
                serial += 1
                up = os.path.join(base, ".up-%d" % serial)
                os.rename(entry, up, src_dir_fd=fd)
                pending.append(up)
            else:
                os.unlink(entry, dir_fd=fd)
        os.close(fd)
        os.rmdir(path)


if __name__ == "__main__":
    if len(sys.argv) == 4 and sys.argv[1] == "make":
        make(sys.argv[2], int(sys.argv[3]))
    elif len(sys.argv) == 3 and sys.argv[1] == "remove":
        remove(sys.argv[2])
    else:
        sys.exit(__doc__)
