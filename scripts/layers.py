#!/usr/bin/env python3
"""The library's layers, from the bottom up, and the check that dependencies flow one way.

A folder of tessel/ may include its own headers and those of lower layers, never those of a
higher layer or of a sibling (geometry and color share a rank and stay apart). The root object
sits on top; lower layers reach its factories through tessel/core/Root.h.

Run as a script, it checks every source and header of the tree (and the generated ones, when
given their folder) and prints each include that breaks the order.
"""

import os
import re
import sys

RANK = {"core": 0, "geometry": 1, "color": 1, "images": 2, "resources": 3, "graphics": 4,
        "controls": 5, "host": 6, "root": 7}


def may_use(user, used):
    """Whether code of folder `user` may depend on folder `used`."""
    return used == user or RANK[used] < RANK[user]


INCLUDE = re.compile(r'^\s*#\s*include\s*<tessel/(\w+)/')


def violations(tree):
    for folder in sorted(os.listdir(tree)):
        path = os.path.join(tree, folder)
        if not os.path.isdir(path):
            continue
        if folder not in RANK:
            yield f"{path}: {folder} is no layer of the library"
            continue
        for name in sorted(os.listdir(path)):
            if not name.endswith((".h", ".cpp")):
                continue
            with open(os.path.join(path, name), encoding="utf-8") as f:
                for no, line in enumerate(f, 1):
                    m = INCLUDE.match(line)
                    if m and m.group(1) in RANK and not may_use(folder, m.group(1)):
                        yield f"{path}/{name}:{no}: {folder} includes {m.group(1)}"


def main(trees):
    bad = [v for tree in trees for v in violations(tree)]
    for v in bad:
        print(v)
    print(f"{len(bad)} includes against the layer order" if bad else "layers: every include flows downward")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
