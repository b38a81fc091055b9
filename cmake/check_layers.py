#!/usr/bin/env python3
"""Holds every #include between folders of src/ against cmake/layers.txt.

usage: check_layers.py [SOURCE_ROOT]
Exits with 1 and a line for each include that points the wrong way, each folder that the table does
not know, and each JavaScriptCore header outside src/engine.
"""
import re
import sys
from pathlib import Path

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def read_table(path):
    direct = {}
    for line in path.read_text().splitlines():
        line = line.split("#")[0].strip()
        if line:
            folder, _, below = line.partition(":")
            direct[folder.strip()] = below.split()
    return direct


def reach(direct, folder, seen=None):
    seen = set() if seen is None else seen
    if folder not in seen:
        seen.add(folder)
        for below in direct[folder]:
            reach(direct, below, seen)
    return seen


def owner(direct, relative):
    """The folder of the table that a path under src/ belongs to, the longest match."""
    parts = Path(relative).parts[:-1]
    for length in range(len(parts), 0, -1):
        folder = "/".join(parts[:length])
        if folder in direct:
            return folder
    return None


def check(root):
    direct = read_table(root / "cmake" / "layers.txt")
    allowed = {folder: reach(direct, folder) for folder in direct}
    faults = [f"cmake/layers.txt: {folder} stands above itself" for folder, below in direct.items()
              if any(folder in reach(direct, other) for other in below)]
    for path in sorted((root / "src").rglob("*")):
        if path.suffix not in (".h", ".cpp"):
            continue
        relative = path.relative_to(root / "src").as_posix()
        folder = owner(direct, relative)
        inside = "/".join(Path(relative).parts[:-1])
        # Beside rooms of the table, a folder without a line would count as the storey above them.
        if folder and folder != inside and any(other.startswith(folder + "/") for other in direct):
            folder = None
        if folder is None:
            faults.append(f"{relative}: its folder is not in cmake/layers.txt")
            continue
        for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            quote, header = match.groups()
            if header.startswith("JavaScriptCore/") and folder != "engine":
                faults.append(f"{relative}:{number}: only src/engine may include {header}")
            if quote == '"':
                target = owner(direct, header)
                if target and target not in allowed[folder]:
                    faults.append(f"{relative}:{number}: {folder} must not include {header}")
    return faults


def main():
    root = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent
    faults = check(root)
    print("\n".join(faults) if faults else "include directions: fine")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
