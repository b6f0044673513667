#!/usr/bin/env python3
"""Writes a corpus for the duplicate-search benchmark into an empty folder.

Originals of 1 KB to 200 MB (most small, a few large), about a fifth of them
copied one to three times, groups of files that share a size but not their
contents, and traps: copies with one byte changed at the start, in the middle,
at the end, or 70 KiB in, which only a whole-file comparison may tell apart
from their originals where the change falls between the sampled ends.
Everything is drawn from a seeded generator, so a seed gives the same corpus.
"""

import argparse
import os
import random
import shutil
import sys

CHUNK = 8 * 1024 * 1024


def log_uniform(rng, low, high):
    return int(round(low * (high / low) ** rng.random()))


def write_random(rng, path, size):
    with open(path, "wb") as f:
        left = size
        while left > 0:
            n = min(CHUNK, left)
            f.write(rng.randbytes(n))
            left -= n


def write_flipped(source, path, offset):
    shutil.copyfile(source, path)
    with open(path, "r+b") as f:
        f.seek(offset)
        byte = f.read(1)
        f.seek(offset)
        f.write(bytes([byte[0] ^ 0x5A]))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--scale", type=float, default=1.0, help="multiplies the number of files")
    args = parser.parse_args()

    rng = random.Random(args.seed)
    root = args.folder
    os.makedirs(root, exist_ok=True)
    folders = []
    for a in range(12):
        for b in range(5):
            name = os.path.join(root, f"area {a:02d}", ["photos", "build", "Déjà vu", "misc", "archive"][b])
            os.makedirs(name, exist_ok=True)
            folders.append(name)

    counter = [0]
    total = [0]

    def new_path(stem):
        counter[0] += 1
        return os.path.join(rng.choice(folders), f"{stem}-{counter[0]:05d}.bin")

    def stamp(path):
        # Spread modification dates over two years, so that newest-first is tested.
        when = 1_700_000_000 + rng.randrange(0, 2 * 365 * 86400)
        os.utime(path, (when, when))
        total[0] += os.path.getsize(path)

    scale = args.scale
    sizes = [log_uniform(rng, 1000, 1_000_000) for _ in range(int(2600 * scale))]
    sizes += [log_uniform(rng, 1_000_000, 20_000_000) for _ in range(int(140 * scale))]
    sizes += [rng.randrange(20_000_000, 200_000_000) for _ in range(int(12 * scale))]
    sizes += [200_000_000]
    # Sizes right at the sampling edges.
    sizes += [65535, 65536, 65537, 131072, 131073, 131074]

    originals = []
    for size in sizes:
        path = new_path("file")
        write_random(rng, path, size)
        stamp(path)
        originals.append(path)

    # About a fifth of the originals get one to three copies.
    copies = 0
    for source in rng.sample(originals, len(originals) // 5):
        for _ in range(rng.choice([1, 1, 1, 2, 3])):
            path = new_path("copy")
            shutil.copyfile(source, path)
            stamp(path)
            copies += 1

    # Same sizes, different contents.
    same_size = 0
    for _ in range(int(60 * scale)):
        size = log_uniform(rng, 1000, 5_000_000)
        for _ in range(rng.randrange(2, 6)):
            path = new_path("samesize")
            write_random(rng, path, size)
            stamp(path)
            same_size += 1

    # Traps: one byte changed. Sizes from 65,537 on, so that some changes fall in
    # the unsampled middle.
    traps = 0
    candidates = [p for p in originals if os.path.getsize(p) >= 65537]
    for source in rng.sample(candidates, min(len(candidates), int(160 * scale))):
        size = os.path.getsize(source)
        where = rng.choice(["first", "middle", "last", "70k"])
        offset = {"first": 0, "middle": size // 2, "last": size - 1, "70k": min(71680, size - 1)}[where]
        path = new_path("trap-" + where)
        write_flipped(source, path, offset)
        stamp(path)
        traps += 1

    # Empty files are nobody's twins.
    for _ in range(5):
        path = new_path("empty")
        open(path, "wb").close()
        stamp(path)

    files = len(originals) + copies + same_size + traps + 5
    print(f"corpus: {files} files, {total[0] / 1e9:.2f} GB ({len(originals)} originals, {copies} copies, "
          f"{same_size} same-size, {traps} traps, 5 empty)", file=sys.stderr)


if __name__ == "__main__":
    main()
