#!/usr/bin/env python3
"""Builds a synthetic tree for the scan benchmark.

The tree mixes what slows a scanner down or trips it up: many small folders,
chains of nested folders a few hundred levels deep, files with several hard
links, and JavaScript projects whose node_modules hold further node_modules.
It is reproducible (fixed seed) and written only below the folder given.

usage: make-tree.py DEST [ENTRIES]
"""
import os
import random
import sys


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    dest = sys.argv[1]
    target = int(sys.argv[2]) if len(sys.argv) > 2 else 520_000
    rng = random.Random(20261121)
    os.makedirs(dest, exist_ok=True)
    made = 0
    payload = bytes(range(256)) * 64  # 16 KiB to cut file contents from

    def write(path, size):
        nonlocal made
        with open(path, "wb") as f:
            if size:
                f.write(payload[:size])
        made += 1

    def mkdir(path):
        nonlocal made
        os.mkdir(path)
        made += 1

    linkable = []

    def package(root, depth):
        # One npm package: a few sources, sometimes its own node_modules.
        mkdir(root)
        for i in range(rng.randint(3, 12)):
            path = os.path.join(root, f"file{i}.{rng.choice(['js', 'json', 'md', 'ts', 'map'])}")
            write(path, rng.choice([0, 120, 900, 3000, 9000]))
            if rng.random() < 0.05:
                linkable.append(path)
        lib = os.path.join(root, "lib")
        mkdir(lib)
        for i in range(rng.randint(2, 8)):
            write(os.path.join(lib, f"m{i}.js"), rng.choice([200, 1500, 6000]))
        if depth < 4 and rng.random() < 0.3:
            nested = os.path.join(root, "node_modules")
            mkdir(nested)
            for i in range(rng.randint(1, 4)):
                package(os.path.join(nested, f"dep{i}"), depth + 1)

    project = 0
    while made < target:
        base = os.path.join(dest, f"project{project:04d}")
        mkdir(base)
        write(os.path.join(base, "package.json"), 400)
        src = os.path.join(base, "src")
        mkdir(src)
        for d in range(rng.randint(5, 15)):
            sub = os.path.join(src, f"module{d}")
            mkdir(sub)
            for f in range(rng.randint(5, 25)):
                write(os.path.join(sub, f"part{f}.{rng.choice(['c', 'h', 'py', 'png', 'txt'])}"),
                      rng.choice([0, 500, 4000, 12000]))
        modules = os.path.join(base, "node_modules")
        mkdir(modules)
        for i in range(rng.randint(10, 40)):
            package(os.path.join(modules, f"pkg{i}"), 0)
        if project % 10 == 0:
            # A deep chain of folders, one file on each level.
            deep = os.path.join(base, "deep")
            mkdir(deep)
            for level in range(300):
                deep = os.path.join(deep, f"d{level}")
                mkdir(deep)
                write(os.path.join(deep, "leaf.dat"), 700)
        project += 1

    # Hard links: two or three more names for some files, in other folders.
    links = os.path.join(dest, "links")
    mkdir(links)
    for n, path in enumerate(linkable):
        for k in range(rng.randint(1, 2)):
            os.link(path, os.path.join(links, f"l{n}_{k}"))
            made += 1
    print(f"{made} entries in {project} projects, {len(linkable)} files with extra links")


if __name__ == "__main__":
    main()
