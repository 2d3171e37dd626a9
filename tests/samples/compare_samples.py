#!/usr/bin/python3
"""Compares imports with the same drawings in other formats.

Each case names an EPS file, beside which stands a drawing of the same geometry that the same producer wrote as SVG,
and the known change of coordinates from that drawing to EPS points. Every point of the one geometry must lie within 0.01 mm
of the other, in both directions unless the case says why one of them can't hold. Text that the drawing has as outlines of
glyphs is compared in the complete dialect, within 0.002 mm.
"""
import copy
import io
import json
import math
import os
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

import svgelements

TOLERANCE = 0.01  # mm
TEXT_TOLERANCE = 0.002
STEP = 0.2        # mm between the points that a geometry is sampled at
TEXT_STEP = 0.05
TEXT_CURVE = 8    # pieces of a curve of a glyph: as many on both sides, so that they lie on each other
MM = 25.4 / 72.0  # of a point


def sample_line(a, b, out, step=STEP):
    if a[0] == b[0] and a[1] == b[1]:
        return  # a point draws nothing
    n = max(1, int(math.dist(a, b) / step))
    out.extend(((a[0] + (b[0] - a[0]) * i / n, a[1] + (b[1] - a[1]) * i / n),
                (a[0] + (b[0] - a[0]) * (i + 1) / n, a[1] + (b[1] - a[1]) * (i + 1) / n)) for i in range(n))


def bezier_point(p, t):
    s = 1 - t
    return tuple(s ** 3 * p[0][k] + 3 * s * s * t * p[1][k] + 3 * s * t * t * p[2][k] + t ** 3 * p[3][k] for k in (0, 1))


def curve_pieces(points, step):
    """How many pieces a curve along some points takes."""
    return max(8, int(sum(math.dist(a, b) for a, b in zip(points, points[1:])) / step * 2))


def sample_bezier(p, out, step=STEP, pieces=None):
    n = pieces or curve_pieces(p, step)
    points = [bezier_point(p, i / n) for i in range(n + 1)]
    for a, b in zip(points, points[1:]):
        sample_line(a, b, out, step)


def import_eps(epsimport, path, options=(), step=STEP, curve=None):
    """The drawing of an EPS file as short pieces of line, in mm."""
    command = [epsimport, path, "-o", "-", "-f", "json", "-q", "-t", "0.0001", *options]
    run = subprocess.run(command, capture_output=True, check=False)
    pieces = []
    for entity in json.loads(run.stdout)["entities"]:
        for section in entity["sections"]:
            points = section["points"]
            if section["type"] == "line":
                for a, b in zip(points, points[1:]):
                    sample_line(a, b, pieces, step)
            else:
                for i in range(0, len(points) - 3, 3):
                    sample_bezier(points[i:i + 4], pieces, step, curve)
    return pieces, run.returncode


SVG = "{http://www.w3.org/2000/svg}"
HREF = "{http://www.w3.org/1999/xlink}href"
UNDRAWN = {SVG + name for name in ("defs", "clipPath", "pattern", "mask", "symbol", "text")}


def draw_uses(parent, ids):
    """Puts what is used in its place, and takes out what is not drawn where it stands."""
    for place, child in reversed(list(enumerate(parent))):
        if child.tag in UNDRAWN:
            del parent[place]
        elif child.tag == SVG + "use":
            group = ElementTree.Element(SVG + "g", dict(child.attrib))
            group.set("transform", f"{child.get('transform', '')} translate({child.get('x', 0)} {child.get('y', 0)})")
            used = copy.deepcopy(ids[child.get(HREF)[1:]])
            if used.tag == SVG + "symbol":
                used.tag = SVG + "g"
            group.append(used)
            draw_uses(group, ids)
            parent[place] = group
        else:
            draw_uses(child, ids)


def flat_svg(path):
    root = ElementTree.parse(path).getroot()
    draw_uses(root, {element.get("id"): element for element in root.iter()})
    return io.BytesIO(ElementTree.tostring(root))


def svg_pieces(path, change, step=STEP, curve=None):
    svg = svgelements.SVG.parse(flat_svg(path), reify=True, ppi=96, width=None, height=None)
    pieces = []
    for element in svg.elements(lambda e: isinstance(e, svgelements.Shape)):
        for segment in svgelements.Path(element):
            if isinstance(segment, svgelements.Move):
                continue
            if isinstance(segment, (svgelements.Line, svgelements.Close)):
                if segment.start is not None and segment.end is not None:
                    sample_line(change(segment.start), change(segment.end), pieces, step)
                continue
            curves = segment.as_cubic_curves() if isinstance(segment, svgelements.Arc) else [segment]
            for part in curves:
                n = curve or curve_pieces([change(part.point(i / 8)) for i in range(9)], step)
                points = [change(part.point(i / n)) for i in range(n + 1)]
                for a, b in zip(points, points[1:]):
                    sample_line(a, b, pieces, step)
    return pieces


def distance_to_piece(p, piece):
    (ax, ay), (bx, by) = piece
    dx, dy = bx - ax, by - ay
    length = dx * dx + dy * dy
    t = 0 if length == 0 else max(0, min(1, ((p[0] - ax) * dx + (p[1] - ay) * dy) / length))
    return math.hypot(p[0] - ax - t * dx, p[1] - ay - t * dy)


def farthest(points_of, near, step=STEP):
    """The greatest distance from the ends of one set of pieces to the other set."""
    cell = 2 * step
    grid = {}
    for piece in near:
        for x, y in piece:
            grid.setdefault((int(x // cell), int(y // cell)), set()).add(piece)
    worst = (0.0, None)
    for p in dict.fromkeys(p for piece in points_of for p in piece):
        cx, cy = int(p[0] // cell), int(p[1] // cell)
        best = min((distance_to_piece(p, q) for i in (-1, 0, 1) for j in (-1, 0, 1) for q in grid.get((cx + i, cy + j), ())),
                   default=math.inf)
        if best > worst[0]:
            worst = (best, p)
    return worst


def flipped(height, scale=1.0, dx=0.0):
    """A drawing with y downwards from `height`, in units of `scale` points."""
    return lambda p: ((p[0] * scale + dx) * MM, (height - p[1] * scale) * MM)


# name, change of coordinates to mm, what must lie on what: "both", "truth" (all of the truth is imported; the
# EPS draws more) or "import" (all that is imported is in the truth, which has text besides)
PT = 0.75  # of a pixel: files sized in pt are read in pixels of 1/96 inch
CASES = [
    ("cairo-spiral", flipped(270, PT), "both"),
    ("metapost-plate", flipped(125), "import"),
    ("potrace-wrench", flipped(260, PT), "both"),
    ("poppler-gasket-pdftocairo", flipped(240, PT), "both"),
    ("variants-dos-tiff-gasket", flipped(240, PT), "both"),
    ("variants-cr-only-spiral", flipped(270, PT), "both"),
    ("reportlab-cam", flipped(220), "import"),
    ("pyqrcode-qr2", flipped(100), "both"),
    ("qr-image-qr2", flipped(261, 3), "both"),
    ("rsvg-truss", flipped(116, 0.75), "both"),
    ("metapost-calligraphic", lambda p: ((p[0] - 62) * MM, (48 - p[1]) * MM), "both"),
    ("matplotlib-textpath-patches", lambda p: ((p[0] * PT + 162) * MM, (540 - p[1] * PT) * MM), "both"),
    ("segno-micro", flipped(95), "both"),
    ("kicad-board-edges", lambda p: (p[1] * MM * PT, p[0] * MM * PT), "both"),
]

# Files that import whole in the complete dialect alone, with the tolerance: circles are arcs in the one format and cubics in
# the other.
COMPLETE_CASES = [
    (("hp2xx-bracket", lambda p: ((p[0] + 0.14173) * MM, (396.85 + 0.14173 - p[1]) * MM), "both"), TOLERANCE),
    (("freehep-leaves", lambda p: ((p[0] * 1.85 + 20) * MM, (118 + (300 - p[1]) * 1.85) * MM), "truth"), TOLERANCE),
    # Text in a Type 3 font, whose numbers have three places.
    (("matplotlib-bars-hatch", lambda p: ((p[0] * PT + 126) * MM, (522 - p[1] * PT) * MM), "both"), 0.005),
]

# Files of text, the same text as outlines ten times as large, and a face that must be installed for it.
TEXTS = [
    ("text-cairo-ttf", flipped(480, PT / 10), None),
    ("text-type1-whole", flipped(420, PT / 10), None),
    ("text-cid0", flipped(480, PT / 10), None),
    ("text-named", flipped(420, PT / 10), "NimbusSans-Regular"),
]


def folder_of(face):
    """Where a face is installed; nothing without it."""
    found = subprocess.run(["fc-list", f":postscriptname={face}", "file"], capture_output=True, check=False, text=True)
    files = sorted(line.split(":")[0] for line in found.stdout.splitlines())
    return os.path.dirname(files[0]) if files else None


def check(epsimport, folder, case, tolerance, options):
    name, change, which = case
    imported, status = import_eps(epsimport, os.path.join(folder, name + ".eps"), options)
    return compare(imported, status, svg_pieces(os.path.join(folder, name + ".svg"), change), which, tolerance)


def check_text(epsimport, folder, name, change, fonts):
    path = os.path.join(folder, name)
    options = ["--complete", *(["--fonts", fonts] if fonts else [])]
    imported, status = import_eps(epsimport, path + ".eps", options, TEXT_STEP, TEXT_CURVE)
    truth = svg_pieces(path + ".svg", change, TEXT_STEP, TEXT_CURVE)
    return compare(imported, status, truth, "both", TEXT_TOLERANCE, TEXT_STEP)


def compare(imported, status, truth, which, tolerance=TOLERANCE, step=STEP):
    problems = [] if status == 0 else [f"exit status {status}"]
    if not imported or not truth:
        problems.append(f"{len(imported)} pieces imported, {len(truth)} in the truth")
    if which in ("both", "import"):
        distance, where = farthest(imported, truth, step)
        if distance > tolerance:
            problems.append(f"imported point {where} lies {distance:.4f} mm beside the truth")
    if which in ("both", "truth"):
        distance, where = farthest(truth, imported, step)
        if distance > tolerance:
            problems.append(f"point {where} of the truth lies {distance:.4f} mm beside the import")
    return problems


def main():
    epsimport, folder = sys.argv[1:3]
    wanted = sys.argv[3:]
    failed = 0
    cases = [(case, TOLERANCE, ()) for case in CASES]
    cases += [(case, tolerance, ("--complete",)) for case, tolerance in COMPLETE_CASES]
    for case, tolerance, options in cases:
        if wanted and case[0] not in wanted:
            continue
        problems = check(epsimport, folder, case, tolerance, options)
        failed += bool(problems)
        print(f"{case[0]:32} {'ok' if not problems else '; '.join(problems)}")
    for name, change, face in TEXTS:
        if wanted and name not in wanted:
            continue
        fonts = face and folder_of(face)
        if face and not fonts:
            print(f"{name:32} left out: {face} is not installed")
            continue
        problems = check_text(epsimport, folder, name, change, fonts)
        failed += bool(problems)
        print(f"{name:32} {'ok' if not problems else '; '.join(problems)}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
