#!/usr/bin/python3
"""Runs clang-tidy with .clang-tidy over the sources below some folders.

    tidy.py <build folder> [<folder or file>...]    (src when none is given)

The build folder must be configured; where sources include generated ones, built as well. Fails when
something is found.
"""

import json
import os
import re
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def without_precompiled_headers(commands):
    """The compiler's precompiled headers mean nothing to clang: each source must do without them."""
    for command in commands:
        text = re.sub(r" -include \S*cmake_pch\.hxx\b", "", command["command"])
        command["command"] = re.sub(r" -(Winvalid-pch|fpch-preprocess)\b", "", text)
    return commands


def main(arguments):
    if not arguments or arguments[0] in ("-h", "--help"):
        print(__doc__.strip())
        return 0 if arguments else 2
    folders = [os.path.abspath(folder) for folder in arguments[1:]] or [os.path.join(ROOT, "src")]
    with open(os.path.join(arguments[0], "compile_commands.json"), encoding="utf-8") as file:
        commands = without_precompiled_headers(json.load(file))
    with tempfile.TemporaryDirectory() as folder:
        with open(os.path.join(folder, "compile_commands.json"), "w", encoding="utf-8") as file:
            json.dump(commands, file)
        below = "^(" + "|".join(re.escape(place) for place in folders) + r")(/.*)?"
        runner = ["run-clang-tidy", "-quiet", "-p", folder, below + r"(?<!_autogen/mocs_compilation\.cpp)$"]
        return subprocess.run(runner, cwd=ROOT, check=False).returncode


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
