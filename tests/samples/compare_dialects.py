#!/usr/bin/python3
"""Compares the imports of a folder's files in the two dialects, entity for entity.

usage: compare_dialects.py EPSIMPORT FOLDER [NAME...]

A file that imports whole in the plain dialect gives the same entities in the complete one, in the same order, but for

- areas that the program leaves open and that have their closing side: always allowed, as the entity alone tells it;
- outlines of texts, where the plain import says that it left texts out;
- what REASONS lists for the file, with its kind and why. A reason that nothing needs any more is a failure as well.
"""
import json
import os
import subprocess
import sys

# Entities of the complete dialect against those of the plain one. CLOSED and RECOLOURED are the same but for that.
CLOSED, RECOLOURED, ADDED, GONE, CHANGED = "closed", "recoloured", "added", "gone", "changed"

# File: kinds of difference and why.
REASONS = {
    "cdlabelgen-envelope": {CHANGED: "lines begin where a text ends"},
    "html2ps-second": {CHANGED: "lines begin where a text ends"},
    "mscgen-seq2": {CHANGED: "boxes are as wide as their texts"},
    "vim-plain-landscape": {ADDED: "the plain dialect shows these fonts without counting them"},
    "gl2ps-torus-flat": {ADDED: "areas of shadings are drawn"},
    "grace-bars": {RECOLOURED: "areas in patterns have the colour of the pattern, not the last gray"},
    "graphviz-tree": {RECOLOURED: "sethsbcolor sets a colour"},
    "trueprint-tiny": {CHANGED: "each page begins with a fresh graphics state"},
}


def run(epsimport, path, *options):
    done = subprocess.run([epsimport, path, "-o", "-", "-f", "json", "-q", *options], capture_output=True, check=False)
    return json.loads(done.stdout)


def is_closed_form(plain, complete):
    """Whether the one entity is the other with the side that closes it."""
    if plain["closed"] or not complete["closed"] or plain["color"] != complete["color"]:
        return False
    sides = complete["sections"]
    if sides == plain["sections"]:
        return True
    start, end = plain["sections"][0]["points"][0], plain["sections"][-1]["points"][-1]
    return sides[:-1] == plain["sections"] and sides[-1] == {"type": "line", "points": [end, start]}


def compare(plain, complete):
    """Counts of closed forms, and of the kinds of difference."""
    counts = dict.fromkeys((CLOSED, RECOLOURED, ADDED, GONE, CHANGED), 0)
    places = {}
    for i, entity in enumerate(complete):
        for sections in {json.dumps(entity["sections"]), json.dumps(entity["sections"][:-1])}:
            places.setdefault(sections, []).append(i)
    for stack in places.values():
        stack.reverse()

    def next_place(entity, start):
        """Where the same geometry comes next, but for a closing side."""
        stack = places.get(json.dumps(entity["sections"]), [])
        while stack and stack[-1] < start:
            stack.pop()
        return stack[-1] if stack else None

    def is_like(entity, other):
        return entity == other or is_closed_form(entity, other) or {**entity, "color": None} == {**other, "color": None}

    at = 0
    i = 0
    while i < len(plain):
        if at < len(complete) and plain[i] == complete[at]:
            at += 1
        elif at < len(complete) and is_closed_form(plain[i], complete[at]):
            counts[CLOSED] += 1
            at += 1
        elif at < len(complete) and {**plain[i], "color": None} == {**complete[at], "color": None}:
            counts[RECOLOURED] += 1
            at += 1
        else:
            place = next_place(plain[i], at)
            if place is not None and is_like(plain[i], complete[place]):
                counts[ADDED] += place - at
                at = place
                continue
            if at < len(complete) and len(plain) - i <= len(complete) - at:
                counts[CHANGED] += 1
                at += 1
            else:
                counts[GONE] += 1
        i += 1
    counts[ADDED] += len(complete) - at
    return counts


def check(epsimport, path):
    """A line about the file, and what is wrong with it."""
    name = os.path.splitext(os.path.basename(path))[0]
    plain = run(epsimport, path)
    complete = run(epsimport, path, "--complete")
    problems = []
    if complete["messages"]:
        problems.append("does not import whole in the complete dialect")
    if plain["messages"]:
        return f"for the first time: {len(plain['entities'])} -> {len(complete['entities'])}", problems
    left_out = plain.get("leftOut") or {}
    counts = compare(plain["entities"], complete["entities"])
    found = {kind for kind in (RECOLOURED, ADDED, GONE, CHANGED) if counts[kind]}
    listed = REASONS.get(name, {})
    unlisted = found - set(listed)
    if left_out.get("texts"):
        unlisted.discard(ADDED)  # outlines of the texts
    problems += [f"{counts[kind]} {kind} without a listed reason" for kind in sorted(unlisted)]
    problems += [f"nothing is {kind} any more: {listed[kind]}" for kind in sorted(set(listed) - found)]
    return ", ".join(f"{n} {kind}" for kind, n in counts.items() if n) or "the same", problems


def main():
    epsimport, folder = sys.argv[1:3]
    wanted = sys.argv[3:]
    failed = 0
    for file in sorted(os.listdir(folder)):
        name, extension = os.path.splitext(file)
        if extension not in (".eps", ".epsi", ".ps") or wanted and name not in wanted:
            continue
        what, problems = check(epsimport, os.path.join(folder, file))
        failed += bool(problems)
        print(f"{name:34} {'; '.join(problems) or 'ok'} ({what})")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
