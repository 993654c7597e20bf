#!/usr/bin/env python3
"""Checks that every include of a library layer names a header of that layer or of a layer it
links, directly or through others.

    check-layers.py LAYERS_TXT SRC_DIR

LAYERS_TXT, written by CMake, holds one line per layer: its target name, its folder under
SRC_DIR and the layers it links. A folder of a layer does not take in the folders of other
layers below it (production/data does not hold production/data/jet)."""
import os
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def main(table_path, src):
    folders, links = {}, {}
    with open(table_path, encoding="utf-8") as table:
        for line in table:
            words = line.split()
            if words:
                folders[words[0]] = words[1]
                links[words[0]] = words[2:]

    def layer_of(path):
        """The layer whose folder is the longest start of path, or None."""
        best = None
        for name, folder in folders.items():
            if path.startswith(folder + "/") and (best is None or len(folder) > len(folders[best])):
                best = name
        return best

    def reachable(name):
        seen, todo = {name}, [name]
        while todo:
            for link in links.get(todo.pop(), []):
                if link not in seen:
                    seen.add(link)
                    todo.append(link)
        return seen

    problems = []
    for name, folder in sorted(folders.items()):
        allowed = reachable(name)
        directory = os.path.join(src, folder)
        for entry in sorted(os.listdir(directory)):
            if not entry.endswith((".h", ".cpp")):
                continue
            path = os.path.join(directory, entry)
            with open(path, encoding="utf-8") as source:
                text = source.read()
            for included in INCLUDE.findall(text):
                if not os.path.exists(os.path.join(src, included)):
                    continue  # beside the file, or generated
                owner = layer_of(included)
                if owner is None:
                    problems.append(f"{folder}/{entry}: includes {included}, which is outside "
                                    "the library's layers")
                elif owner not in allowed:
                    problems.append(f"{folder}/{entry}: includes {included} of {owner}, which "
                                    f"{name} does not link")
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    sys.exit(main(sys.argv[1], sys.argv[2]))
