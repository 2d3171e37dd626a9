#!/usr/bin/env python3
"""Holds the sources against what docs/architecture.md says of them: the directions of includes, and the format.

usage: check_floors.py includes ROOT | check_floors.py format ROOT CLANG_FORMAT

The rooms, from the ground up, and what each may include stand in ROOMS; includes that run upwards, and why, in
UPWARDS. Both are lists to be edited: a room that isn't listed, an include that neither allows, and an exception
that nobody needs any more are reported.
"""

import fnmatch
import os
import re
import subprocess
import sys

WIDTH = 120  # of comments; clang-format sees to the code

SRC_GROUND = ["hostout/*", "platform/*"]
MACHINE = SRC_GROUND + ["objects/*", "interp/*"]
HOST_GROUND = SRC_GROUND + ["lib/*", "plugin/PlugFilterMain.h"]

# Room: what its files may include of others. Headers of the room itself always, with or without its name.
ROOMS = {
    "src/hostout": [],
    "src/platform": ["hostout/*"],
    "src/objects": SRC_GROUND,
    "src/interp": SRC_GROUND + ["objects/*"],
    "src/operators": MACHINE,
    "src/graphics": MACHINE,
    "src/text": MACHINE,
    "src/plugin": MACHINE + ["operators/*", "graphics/*", "text/*"],
    "src/complete": MACHINE + ["operators/*", "graphics/*", "text/*", "plugin/*"],
    # The host meets the plug-in through its entry, the host's declarations and the framework layer.
    "host/lib": ["hostout/*", "platform/FreeCells.h"],
    "host/drawing": ["hostout/*"],
    "host/import": HOST_GROUND + ["objects/EpsHeader.h"],
    "host/writers": ["hostout/*", "drawing/*", "import/Drawing.h"],
    "host/cli": ["platform/*", "drawing/*", "import/*", "writers/*"],
}

# File, headers, reason.
UPWARDS = [
    ("src/interp/OperatorChain.cpp", "*/*Operators.h", "the one list of operator families"),
    ("src/operators/SaveOperators.cpp", "graphics/GStateStack.h", "save and restore are where all state meets"),
    ("src/operators/ResourceOperators.cpp", "text/FontDirectory.h", "the Font category of resources is the font directory"),
    ("src/text/*", "graphics/GraphState.h", "showing a glyph moves the current point"),
    ("src/text/*", "graphics/PathBuilder.h", "the advance of a glyph is a record of the path"),
    ("src/text/*", "graphics/Matrix.h", "a font has a matrix"),
    ("src/text/*", "graphics/MatrixOperators.h", "operands that are matrices"),
]

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')


def sources(root, *folders):
    """Paths of C++ sources below the folders, relative to the root."""
    for folder in folders:
        for parent, _, names in sorted(os.walk(os.path.join(root, folder))):
            for name in sorted(names):
                if name.endswith((".cpp", ".h")):
                    yield os.path.relpath(os.path.join(parent, name), root)


def lines(root, path):
    with open(os.path.join(root, path), encoding="utf-8") as file:
        return file.read().split("\n")


def check_includes(root):
    faults = []
    used = set()
    for path in sources(root, "src", "host"):
        room = "/".join(path.split("/")[:2])
        if room not in ROOMS:
            faults.append(f"{path}: {room} is no room of the list")
            continue
        own = room.split("/")[1]
        for number, line in enumerate(lines(root, path), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            header = match[1]
            if "/" not in header or header.startswith(own + "/"):
                continue
            if any(fnmatch.fnmatchcase(header, allowed) for allowed in ROOMS[room]):
                continue
            exception = next(
                (e for e in UPWARDS if fnmatch.fnmatchcase(path, e[0]) and fnmatch.fnmatchcase(header, e[1])), None)
            if exception:
                used.add(exception)
            else:
                faults.append(f"{path}:{number}: {room} may not include {header}")
    faults += [f"{file} no longer includes {header}: the exception can go"
               for file, header, reason in UPWARDS if (file, header, reason) not in used]
    return faults


def check_format(root, clang_format):
    paths = list(sources(root, "src", "host", "tests", "fuzz", "bench"))
    run = subprocess.run([clang_format, "--dry-run", "--Werror", *paths], cwd=root, capture_output=True, text=True)
    faults = [line for line in run.stderr.split("\n") if ": error: " in line]
    if run.returncode != 0 and not faults:
        faults.append(run.stderr)
    for path in paths:
        for number, line in enumerate(lines(root, path), 1):
            if len(line) > WIDTH and "//" in line:
                faults.append(f"{path}:{number}: a comment of {len(line)} characters, and {WIDTH} are the width")
    return faults


def main():
    what, root = sys.argv[1:3]
    faults = check_includes(root) if what == "includes" else check_format(root, sys.argv[3])
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
