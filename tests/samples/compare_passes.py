#!/usr/bin/python3
"""Compares drawings before and after --curves arc, and before and after --dedupe --join 0 --curves arc.

Every point of the one must lie within the tolerance of the other, in both directions; with arcs alone there are lines,
arcs and circles only afterwards, closed figures are closed, and lines end where lines ended.
"""
import glob
import json
import math
import os
import subprocess
import sys

from compare_samples import farthest, sample_bezier, sample_line

FLATNESS = 0.05    # mm
SAMPLING = 0.005   # mm that the chords of the samples lie beside curves
FORM = 0.00028     # radii between a circle and the four curves that are usually drawn for it
ARC_STEP = 0.05    # mm
DOUBLE = 0.001     # mm between what is drawn twice


def sample_arc(arc, out):
    (x, y), radius = arc["center"], arc["radius"]
    start, sweep = math.radians(arc.get("start", 0)), math.radians(arc.get("sweep", 360))
    n = max(8, int(radius * abs(sweep) / ARC_STEP))
    at = [(x + radius * math.cos(start + sweep * i / n), y + radius * math.sin(start + sweep * i / n)) for i in range(n + 1)]
    out.extend(zip(at, at[1:]))


def drawing(epsimport, path, *options):
    # What a file that isn't imported whole has drawn is a drawing, too.
    run = subprocess.run([epsimport, path, "-f", "json", "-q", *options], capture_output=True, check=False)
    return json.loads(run.stdout)["entities"]


def pieces_of(entities):
    pieces = []
    for entity in entities:
        if entity["type"] == "circle":
            sample_arc(entity, pieces)
            continue
        for section in entity["sections"]:
            if section["type"] == "arc":
                sample_arc(section, pieces)
                continue
            points = section["points"]
            if section["type"] == "line":
                for a, b in zip(points, points[1:]):
                    sample_line(a, b, pieces)
            else:
                for i in range(0, len(points) - 3, 3):
                    sample_bezier(points[i : i + 4], pieces)
    return pieces


def line_ends(entities):
    return {tuple(point) for entity in entities for section in entity.get("sections", ()) if section["type"] == "line"
            for point in section["points"]}


def arcs_of(entities):
    return [e for e in entities if e["type"] == "circle"] + [
        s for e in entities for s in e.get("sections", ()) if s["type"] == "arc"]


def check(epsimport, path):
    before, after = drawing(epsimport, path), drawing(epsimport, path, "--curves", "arc")
    problems = []
    if len(before) != len(after):
        return [f"{len(before)} entities became {len(after)}"]
    for one, other in zip(before, after):
        if other["type"] != "circle" and one["closed"] != other["closed"]:
            problems.append("a figure was opened or closed")
    if any(s["type"] == "bezier" for e in after for s in e.get("sections", ())):
        problems.append("curves are left")
    lost = line_ends(before) - line_ends(after)
    kinds = {tuple(s["points"][0]) for e in before for s in e["sections"] if s["type"] == "bezier"}
    if lost - kinds - line_ends(e for e, o in zip(before, after) if o["type"] == "circle"):
        problems.append(f"{len(lost)} ends of lines have moved")
    exact = [arc["radius"] for arc in arcs_of(after) if arc["radius"] < 1000]
    tolerance = max(FLATNESS, FORM * max(exact, default=0)) + SAMPLING
    pieces = pieces_of(before)
    problems += distances(pieces, pieces_of(after), tolerance)
    single = drawing(epsimport, path, "--dedupe", "--join", "0", "--curves", "arc")
    problems += ["without doubles: " + text for text in distances(pieces, pieces_of(single), tolerance + DOUBLE)]
    return problems


def distances(before, after, tolerance):
    problems = []
    for one, other, name in ((before, after, "before"), (after, before, "after")):
        distance, where = farthest(one, other) if one else (0, None)
        if distance > tolerance:
            problems.append(f"point {where} of the drawing {name} lies {distance:.4f} mm beside the other")
    return problems


def main():
    epsimport, folder = sys.argv[1:3]
    failed = 0
    for path in sorted(glob.glob(os.path.join(folder, "*.eps"))):
        if sys.argv[3:] and os.path.basename(path) not in sys.argv[3:]:
            continue
        problems = check(epsimport, path)
        failed += bool(problems)
        print(f"{os.path.basename(path):32} {'ok' if not problems else '; '.join(problems)}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
