#!/usr/bin/env python3
"""The command-line host, from the outside: what it is given, what it gives back, and what it never does.

usage: test_epsimport.py PROGRAM EXAMPLES [TEST...]

PROGRAM is build/bin/epsimport, EXAMPLES the folder of example files. Needs python3-ezdxf and rsvg-convert.
"""

import json
import math
import os
import pty
import re
import resource
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import ezdxf
import ezdxf.math

PROGRAM = Path()
EXAMPLES = Path()
# Limits of the address space and exact times mean nothing under the sanitizers.
SANITIZED = os.environ.get("EPS_SANITIZED") == "1"

MM = 72 / 25.4
HEAD = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 100 100\n%%EndComments\n"
LINE = "0 0 moveto 72 0 lineto stroke\n"
CURVE = "0 0 moveto 72 0 lineto 100 0 100 50 50 50 curveto stroke\n"


class Run:
    def __init__(self, process):
        self.status = process.returncode
        self.out = process.stdout
        self.err = process.stderr.decode("utf-8", "replace")

    @property
    def json(self):
        return json.loads(self.out.decode("utf-8"))


class CliTest(unittest.TestCase):
    def setUp(self):
        self.dir = Path(tempfile.mkdtemp(prefix="epsimport-test-"))
        self.addCleanup(shutil.rmtree, self.dir)

    def run_it(self, *args, **more):
        more.setdefault("cwd", self.dir)
        return Run(subprocess.run([str(PROGRAM), *map(str, args)], capture_output=True, timeout=120, **more))

    def file(self, body, name="drawing.eps", head=HEAD):
        path = self.dir / name
        # A token that the end of the file cuts off doesn't count, so a text ends with a line feed.
        path.write_bytes((head + body + "\n").encode("latin-1") if isinstance(body, str) else body)
        return path

    def import_json(self, body, *args, status=0, head=HEAD):
        run = self.run_it(self.file(body, head=head), *args)
        self.assertEqual(run.status, status, run.err)
        return run.json


def as_float(text):
    """The 32-bit float that a decimal reads as."""
    return struct.unpack("f", struct.pack("f", float(text)))[0]


def cubic(points, t):
    s = 1 - t
    weights = (s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t)
    return [sum(w * p[axis] for w, p in zip(weights, points)) for axis in (0, 1)]


def pieces(entity):
    """An entity of the JSON as Bézier control points, four to a piece; lines with their thirds."""
    result = []
    for section in entity["sections"]:
        points = section["points"]
        if section["type"] == "bezier":
            result += [points[i : i + 4] for i in range(0, len(points) - 1, 3)]
        else:
            for a, b in zip(points, points[1:]):
                third = [(y - x) / 3 for x, y in zip(a, b)]
                result.append([a, [x + d for x, d in zip(a, third)], [x - d for x, d in zip(b, third)], b])
    return result


def has_curves(entity):
    return any(section["type"] == "bezier" for section in entity["sections"])


class Arguments(CliTest):
    def test_a_wrong_command_line_ends_with_2(self):
        drawing = self.file(LINE)
        other = self.file(LINE, "other.eps")
        for args in (
            [],
            ["--no-such-option", drawing],
            ["-f", "png", drawing],
            ["--lang", "fr", drawing],
            ["--curves", "arcs", drawing],
            ["--arc-tolerance", "0", drawing],
            ["--dxf", "r14", drawing],
            ["-j", "0", drawing],
            ["-j", "many", drawing],
            ["--timeout", "-1", drawing],
            ["--timeout", "nan", drawing],
            ["--memory", "much", drawing],
            ["--flatness", "0", drawing],
            ["--host-version", "-1", drawing],
            ["--host-version", "70000", drawing],
            [drawing, other],
            [drawing, other, "-o", "-"],
            [drawing, other, "-o", drawing],
            [drawing, "-o", drawing],
            [drawing, "-o", "a.txt"],
            [drawing, "-o", "x.pdf"],
            [drawing, "-f", "none", "--report", drawing],
            [drawing, "--report", "-"],
        ):
            with self.subTest(args=[str(a) for a in args]):
                run = self.run_it(*args)
                self.assertEqual(run.status, 2, run.err)
                self.assertEqual(run.out, b"")
                self.assertNotEqual(run.err, "")
        self.assertEqual(drawing.read_text(), HEAD + LINE + "\n")
        self.assertEqual(sorted(os.listdir(self.dir)), ["drawing.eps", "other.eps"])

    def test_a_mistake_is_answered_with_what_was_meant(self):
        self.file(LINE)
        for args, answer in (
            (["--tolerence", "1", "drawing.eps"], "did you mean --tolerance?"),
            (["--tolerence=1"], "did you mean --tolerance?"),
            (["--no-fill-outlines", "drawing.eps"], "did you mean --no-fill-outline?"),
            (["drawing.eps", "--xyz"], "no option --xyz\n"),
            (["drawing.eps", "--fonts", "no-such-folder"], "no-such-folder"),
            (["--fonts", ".", "--fonts", "drawing.eps", "drawing.eps"], "drawing.eps"),
            (["drawing.eps", "out.svg"], "put -o before it"),
            (["drawing.eps", "-o", "x.pdf"], "-f"),
            ([], "FILE"),
        ):
            with self.subTest(args=args):
                run = self.run_it(*args)
                self.assertEqual(run.status, 2)
                self.assertIn(answer, run.err)

    def test_help_and_version(self):
        for option in ("-h", "--help"):
            run = self.run_it(option)
            self.assertEqual((run.status, run.err), (0, ""))
            self.assertLessEqual(max(map(len, run.out.decode().split("\n"))), 80)
        self.assertEqual(self.run_it("-V").out, self.run_it("--version").out)
        self.assertRegex(self.run_it("-V").out.decode(), r"^epsimport \d")

    def test_every_option_is_in_the_man_page_and_the_completions(self):
        options = set(re.findall(r"(?<![-\w])--?[a-zA-Z][-a-z]*", self.run_it("--help").out.decode()))
        self.assertGreaterEqual(len(options), 20)
        root = EXAMPLES.parent
        man = (root / "docs/epsimport.1").read_text().replace("\\-", "-")
        for name in ("bash", "zsh", "fish"):
            text = (root / f"host/cli/completions/epsimport.{name}").read_text()
            for option in options:
                form = option
                if name == "fish":
                    form = ("-l " if option.startswith("--") else "-s ") + option.lstrip("-")
                with self.subTest(name, option=option):
                    self.assertRegex(text, re.escape(form) + r"(?![-\w])")
        for option in options:
            self.assertRegex(man, re.escape(option) + r"(?![-\w])")

    def test_the_ending_decides_unless_a_format_is_given(self):
        drawing = self.file(LINE)
        for args, start in (
            ([], b"{"),
            (["-o", "a.svg"], b"<?xml"),
            (["-o", "a.DXF"], b"999"),
            (["-o", "a.txt", "-f", "json"], b"{"),
            (["-o", "ending-free"], b"{"),
            (["-o", "b.svg", "-f", "json"], b"{"),
            (["-f", "svg"], b"<?xml"),
            (["-f", "dxf", "-o", "-"], b"999"),
        ):
            with self.subTest(args=args):
                run = self.run_it(drawing, *args)
                self.assertEqual(run.status, 0, run.err)
                to_file = "-o" in args and args[args.index("-o") + 1] != "-"
                content = (self.dir / args[args.index("-o") + 1]).read_bytes() if to_file else run.out
                self.assertTrue(content.startswith(start), content[:40])
                self.assertEqual(run.out == b"", to_file)
        self.assertEqual(self.run_it(drawing, "-f", "none").out, b"")

    def test_a_drawing_that_cannot_be_written_is_an_error(self):
        drawing = self.file(LINE)
        for path in ("/dev/full", self.dir / "missing" / "a.svg"):
            run = self.run_it(drawing, "-f", "svg", "-o", path)
            self.assertEqual(run.status, 1)
            self.assertIn(str(path), run.err)


class Json(CliTest):
    def test_fonts_of_texts(self):
        nothing = self.dir / "fonts.conf"  # a system without fonts
        nothing.write_text("<fontconfig></fontconfig>")
        env = {**os.environ, "FONTCONFIG_FILE": str(nothing)}
        drawing = self.file(LINE + "/Helvetica findfont 10 scalefont setfont 10 10 moveto (abc) show")
        run = self.run_it(drawing, "--complete", "--report", "report", env=env)
        fonts = [{"name": "Helvetica", "used": None, "embedded": False, "glyphs": 0, "missing": 3}]
        self.assertEqual((run.status, run.json["fonts"], len(run.json["entities"])), (0, fonts, 1), run.err)
        self.assertEqual(json.loads((self.dir / "report").read_text())["fonts"], fonts)
        self.assertIn(": 3 characters left out: no font for Helvetica (the package fonts-urw-base35 has them)", run.err)
        self.assertNotIn("not drawn", run.err)
        self.assertNotIn("fonts", self.run_it(drawing).json)
        self.assertNotIn("fonts", self.run_it(self.file(LINE), "--complete", env=env).json)

    def test_the_object(self):
        drawing = self.import_json(CURVE + "1 0 0 setrgbcolor 0 0 moveto 72 0 lineto 72 72 lineto closepath stroke\n")
        self.assertEqual(list(drawing), ["source", "dialect", "hostVersion", "unit", "settings", "messages", "entities"])
        self.assertEqual((drawing["source"], drawing["dialect"]), ("drawing.eps", "plain"))
        self.assertEqual((drawing["hostVersion"], drawing["unit"]), (5, "mm"))
        self.assertEqual(drawing["settings"], {"tolerance": 0.01, "fillOutline": True})
        self.assertEqual(drawing["messages"], [])
        mixed, triangle = drawing["entities"]
        self.assertEqual(list(mixed), ["type", "color", "closed", "sections"])
        self.assertEqual((mixed["type"], mixed["color"], mixed["closed"]), ("polyline", [0, 0, 0], False))
        self.assertEqual([s["type"] for s in mixed["sections"]], ["line", "bezier"])
        self.assertEqual(mixed["sections"][0]["points"], [[0, 0], [25.4, 0]])
        self.assertEqual(len(mixed["sections"][1]["points"]), 4)
        self.assertEqual((triangle["color"], triangle["closed"]), ([255, 0, 0], True))

    def test_numbers_are_the_shortest_that_read_back(self):
        run = self.run_it(self.file("0.1 0.7 moveto 33.333 1e7 lineto 12345.678 1e-3 lineto stroke"))
        texts = re.findall(r"-?[0-9][-+.e0-9]*", run.out.decode().split('"sections"')[1])
        self.assertEqual(len(texts), 8)
        for text in texts:
            digits = len(re.sub(r"e.*|[-.]", "", text).strip("0"))
            value = as_float(text)
            shorter = [f"{value:.{n}e}" for n in range(0, digits - 1)]
            self.assertFalse([s for s in shorter if as_float(s) == value], text)

    def test_a_coordinate_that_is_no_number_is_null_and_no_part_of_a_picture(self):
        eps = self.file("0 0 moveto 1e38 1e38 scale 1e38 0 lineto stroke\n" + "initmatrix " + LINE)
        run = self.run_it(eps)
        self.assertIn(b"null", run.out)
        self.assertEqual(len(run.json["entities"]), 2)
        for kind in ("svg", "dxf"):
            run = self.run_it(eps, "-f", kind)
            self.assertIn("1 entity", run.err)
            self.assertEqual(run.out.count(b"<path") if kind == "svg" else run.out.count(b"\nLWPOLYLINE\n"), 1)

    def test_old_hosts_count_in_fortieths(self):
        drawing = self.import_json(LINE, "--host-version", "4")
        self.assertEqual((drawing["hostVersion"], drawing["unit"]), (4, "mm/40"))
        self.assertAlmostEqual(drawing["entities"][0]["sections"][0]["points"][1][0], 1016, places=3)

    def test_information_is_valid_whatever_the_file_holds(self):
        head = "%!PS-Adobe-3.0 EPSF-3.0\n%%Title: caf\xe9 \x1b[2J\n%%BoundingBox: 0 0 612 792\n%%EndComments\n"
        drawing = self.import_json(LINE, "--info", head=head)
        self.assertEqual(list(drawing).index("information"), 5)
        self.assertIn("caf\ufffd \x1b[2J", drawing["information"])
        self.assertIn("215.90mm", drawing["information"])
        run = self.run_it(self.dir / "drawing.eps", "--info", "-f", "svg", "--lang", "en")
        self.assertIn("215.90", run.err)
        self.assertNotIn("\x1b", run.err)

    def test_info_on_a_file_without_header_comments_warns_and_imports(self):
        drawing = self.import_json(LINE, "--info", head="%!PS\n")
        self.assertEqual([m["style"] for m in drawing["messages"]], [48])
        self.assertNotEqual(drawing["information"], "")
        self.assertEqual(drawing["entities"], self.import_json(LINE, head="%!PS\n")["entities"])


class Dialog(CliTest):
    def test_the_tolerance_is_what_the_dialog_takes(self):
        refused = dict.fromkeys(("0.00009", "5.001", "-1", "thin", "", "nan"))
        for text, accepted in {"0.0001": 1e-4, "5.0": 5, "5": 5, "0.25": 0.25, **refused}.items():
            with self.subTest(text=text):
                run = self.run_it(self.file(LINE), "-t", text)
                settings = run.json["settings"]
                self.assertEqual(settings and settings["tolerance"], accepted)
                self.assertEqual(run.status, 1 if accepted is None else 0)
                self.assertEqual(len(run.json["entities"]), 0 if accepted is None else 1)
                self.assertEqual(run.err == "", accepted is not None)

    def test_the_tolerance_and_the_check_box_reach_the_import(self):
        body = "0 0 moveto 72 0 lineto 72 1 lineto 144 1 lineto stroke 0 0 moveto 9 9 lineto 0 9 lineto fill"
        fine = self.import_json(body)["entities"]
        coarse = self.import_json(body, "--tolerance=1")["entities"]
        self.assertEqual((len(fine), len(coarse)), (2, 2))
        self.assertLess(len(coarse[0]["sections"]), len(fine[0]["sections"]))
        drawing = self.import_json(body, "--no-fill-outline")
        self.assertEqual(len(drawing["entities"]), 1)
        self.assertIs(drawing["settings"]["fillOutline"], False)


class Errors(CliTest):
    def test_what_cannot_be_opened(self):
        (self.dir / "folder.eps").mkdir()
        for name, reason in (("missing.eps", "No such file"), ("folder.eps", "Is a directory"),
                             ("/dev/null", "regular")):
            with self.subTest(name=name):
                run = self.run_it(name)
                self.assertEqual(run.status, 1)
                self.assertIsNone(run.json["settings"])
                self.assertEqual((run.json["messages"], run.json["entities"]), ([], []))
                self.assertIn(reason, run.err)
                self.assertIn(name, run.err)
                self.assertEqual(self.run_it(name, "-f", "svg").out.count(b"<path"), 0)

    def test_what_is_no_eps(self):
        for content in (b"", b"%!P", b"GIF89a", b"\xc5\xd0\xd3\xc6" + b"\xff" * 28):
            with self.subTest(content=content):
                run = self.run_it(self.file(content))
                self.assertEqual(run.status, 1, run.err)
                self.assertEqual(run.json["entities"], [])
                self.assertIn("drawing.eps: not imported whole: ", run.err)

    def test_an_error_keeps_what_was_drawn_before(self):
        eps = self.file(LINE + "(a) 1 add " + LINE)
        run = self.run_it(eps)
        self.assertEqual(run.status, 1)
        self.assertEqual(len(run.json["entities"]), 1)
        self.assertEqual(run.json["messages"],
                         [{"caption": "出错信息", "text": "EPS文件解释失败!\n错误类型:类型不匹配", "style": 16}])
        for word in ("drawing.eps", "出错信息", "line 5: typecheck in add", "1 entity"):
            self.assertIn(word, run.err)
        quiet = self.run_it(eps, "--quiet")
        self.assertEqual((quiet.status, quiet.out), (1, run.out))
        self.assertNotIn("出错信息", quiet.err)
        english = self.run_it(eps, "--lang", "en")
        self.assertTrue(all(ord(c) < 128 for c in english.err + english.out.decode()), english.err)
        self.assertEqual([m["style"] for m in english.json["messages"]], [16])

    def test_where_it_failed_stands_in_the_json(self):
        failure = self.import_json(LINE + "(a) 1 add", status=1)["failure"]
        offset = len(HEAD + LINE + "(a) 1 ")
        self.assertEqual((failure["error"], failure["operator"], failure["line"]), ("typecheck", "add", 5))
        self.assertTrue(offset <= failure["offset"] <= offset + len("add "), failure)
        self.assertEqual(self.import_json(LINE + "nosuch", status=1)["failure"]["operator"], "nosuch")
        self.assertNotIn("failure", self.import_json(LINE))

    def test_what_a_whole_drawing_lacks_is_told(self):
        text = "/Helvetica findfont 12 scalefont setfont 0 0 moveto (hi) show\n"
        for content, words in ((LINE + text, "not drawn: 1 text (Helvetica)"),
                               (LINE + "%%EOF\n" + LINE, "warning: line 5: %%EOF"),
                               (LINE + "(never ends\n", "warning: line 5: the file ends inside the string"),
                               (LINE + "{ 1 2", "warning: line 5: the file ends inside the procedure"),
                               (LINE + "stroke", 'warning: line 5: "stroke" did not run')):
            with self.subTest(words):
                run = self.run_it(self.file((HEAD + content).encode()))
                self.assertEqual((run.status, len(run.json["entities"])), (0, 1), run.err)
                self.assertIn(words, run.err)
                self.assertEqual("leftOut" in run.json, "not drawn" in words)
                self.assertEqual("--complete" in run.err, "not drawn" in words)

    def test_a_program_that_ends_itself(self):
        for body in (LINE + "stop\n", LINE + "errordict /undefined {$error /newerror false put stop} put\nnosuch\n"):
            run = self.run_it(self.file(body), "--complete")
            self.assertEqual((run.status, run.json["messages"], len(run.json["entities"])), (1, [], 1), run.err)
            self.assertRegex(run.err, "not imported whole: line [56]: the program ended itself")

    def test_the_last_line_says_what_may_help(self):
        for body, args, words in ((LINE + "(a) 1 add", [], "--complete"),
                                  (LINE + "(x) (r) file", [], "--allow-file-access"),
                                  (LINE, ["-t", "9"], "0.0001 to 5"),
                                  (Limits.ENDLESS, ["--timeout", "0.2"], "--timeout")):
            run = self.run_it(self.file(body), "-f", "none", *args)
            self.assertEqual(run.status, 1)
            self.assertIn(words, run.err)
            self.assertEqual("--complete" in run.err.rstrip("\n").split("\n")[-1], not args)
        self.assertEqual(self.run_it(self.file(LINE), "-f", "none").err, "")

    def test_without_its_plug_in(self):
        (self.dir / "bin").mkdir()
        shutil.copy(PROGRAM, self.dir / "bin")
        environment = {**os.environ, "LD_LIBRARY_PATH": str(PROGRAM.parent.parent / "lib")}
        for option, library in (("-q", "epsfilter.so"), ("--complete", "epsfilter-complete.so")):
            process = subprocess.run([self.dir / "bin/epsimport", self.file(LINE), option], capture_output=True,
                                     env=environment)
            self.assertEqual((process.returncode, process.stdout), (1, b""))
            self.assertEqual(process.stderr.decode(), f"epsimport: the plug-in library {library} is missing\n")

    @unittest.skipIf(SANITIZED, "the frames of a sanitizer build don't fit")
    def test_a_small_stack_is_an_orderly_end(self):
        body = LINE + "/f { f 1 pop } def f"
        for kilobytes in (256, 1024):
            limit = lambda: resource.setrlimit(resource.RLIMIT_STACK, (kilobytes << 10, kilobytes << 10))
            run = self.run_it(self.file(body), preexec_fn=limit)
            self.assertEqual((run.status, len(run.json["entities"])), (1, 1), run.err)
            self.assertEqual(self.run_it(self.file(LINE), preexec_fn=limit).status, 0)

    def on_a_terminal(self, *args):
        """What a terminal is shown."""
        ours, theirs = pty.openpty()
        process = subprocess.Popen([str(PROGRAM), *args], cwd=self.dir, stderr=theirs)
        os.close(theirs)
        shown = b""
        while True:
            try:
                block = os.read(ours, 4096)
            except OSError:  # how a terminal ends
                break
            if not block:
                break
            shown += block
        os.close(ours)
        process.wait(timeout=60)
        return shown.decode()

    def test_a_terminal_sees_progress_and_a_summary(self):
        for body, args, summary in ((LINE + CURVE, [], "drawing.eps: 2 entities (2 segments, 1 curve), "),
                                    (Limits.ENDLESS, ["--timeout", "1.2"], "not imported whole: the time ran out")):
            self.file(body)
            text = self.on_a_terminal("drawing.eps", "-f", "none", *args)
            self.assertIn(summary, text)
            self.assertEqual("\x1b[K" in text, bool(args), text)  # short work shows no progress
            if args:
                self.assertRegex(text, r"\rdrawing.eps: [\d.]+ k?B of [\d.]+ k?B read, 1 entity")
                self.assertRegex(text, r"\r\x1b\[Kepsimport: ")  # the line is gone before the sentence stands
        self.file(LINE + CURVE + Limits.ENDLESS, "other.eps")
        text = self.on_a_terminal("drawing.eps", "other.eps", "-f", "none", "-j", "2", "--timeout", "1.2")
        self.assertRegex(text, r"\r0 of 2 files, [\d.]+ k?B read, 4 entities\x1b\[K")
        self.assertRegex(text, r"\r\x1b\[Kepsimport: ")


class Limits(CliTest):
    ENDLESS = LINE + "{ } loop " + LINE

    def test_time_runs_out(self):
        started = time.monotonic()
        run = self.run_it(self.file(self.ENDLESS), "--timeout", "1")
        self.assertEqual(run.status, 1)
        self.assertEqual((len(run.json["entities"]), run.json["messages"]), (1, []))
        self.assertIn("time", run.err)
        self.assertGreaterEqual(time.monotonic() - started, 1)

    def test_ctrl_c_and_termination_keep_the_drawing(self):
        self.file(self.ENDLESS, "second.eps")
        for args in ([], ["second.eps", "third.eps", "-o", "out"]):
            for number in (signal.SIGINT, signal.SIGTERM):
                with self.subTest(args=args, signal=number):
                    process = subprocess.Popen([str(PROGRAM), str(self.file(self.ENDLESS)), *args], cwd=self.dir,
                                               stdout=subprocess.PIPE, stderr=subprocess.PIPE)
                    time.sleep(1.5 if SANITIZED else 0.5)
                    process.send_signal(number)
                    out, err = process.communicate(timeout=60)
                    self.assertEqual(process.returncode, 1, err)
                    drawing = json.loads((self.dir / "out/drawing.json").read_bytes() if args else out)
                    self.assertEqual(len(drawing["entities"]), 1)
                    self.assertIn(b"nterrupted", err)
                    if args:
                        self.assertIn(b"2 files not imported", err)

    def test_calls_nest_as_deep_as_the_stack_allows(self):
        depth = 30000 if SANITIZED else 100000  # of frames that are larger
        deep = f"/f {{dup 0 gt {{1 sub f}} if}} def {depth} f pop\n" + LINE
        for dialect in ([], ["--complete"]):
            run = self.run_it(self.file(deep), *dialect)
            self.assertEqual((run.status, len(run.json["entities"])), (0, 1), run.err)

    def test_recursion_without_end_ends_in_order(self):
        small = (256 << 10, resource.getrlimit(resource.RLIMIT_STACK)[1])
        for recursion, caught in (("/f {f 1} def f", False), ("/f {true {f} if} def f", False),
                                  ("/s (s 1) cvx def s", False), ("/f {{f} stopped pop 1} def f", True)):
            for complete in (False, True):
                with self.subTest(recursion, complete=complete):
                    run = self.run_it(self.file(LINE + recursion), *["--complete"][:complete], "--lang", "en",
                                      preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_STACK, small))
                    self.assertEqual(run.status, 0 if caught and complete else 1, run.err)
                    self.assertEqual(len(run.json["entities"]), 1)
                    self.assertEqual("execstackoverflow" in run.err, run.status == 1, run.err)

    @unittest.skipIf(SANITIZED, "the sanitizers reserve terabytes of address space")
    def test_memory_runs_out(self):
        for greedy in ("/a 0 array def 0 1 100000000 { /a [ a ] def 1000 array pop } for",
                       "mark { 60000 string } loop", "{ 0 0 moveto 72 72 lineto stroke } loop"):
            with self.subTest(greedy=greedy):
                run = self.run_it(self.file(LINE + greedy), "--memory", "60", "--timeout", "100")
                self.assertEqual(run.status, 1, run.err)
                self.assertGreaterEqual(len(run.json["entities"]), 1)
                self.assertIn("memory", run.err)

    def test_time_and_memory_for_the_passes_run_out(self):
        passes = ("--dedupe", "--join", "0.01", "--curves", "arc", "--check")
        # A fan, which is much to compare, and lines apart from one another, which are much to index.
        fan = "0 1 60000 { dup 1000 mod 0.001 mul exch 0.0007 mul moveto 72 72 lineto stroke } for\n"
        apart = "0 1 200000 { dup 0 moveto 72 lineto stroke } for\n"
        cases = [(fan, (*passes, "--timeout", "0.4"), "time")]
        if not SANITIZED:
            cases.append((apart, (*passes, "--memory", "40"), "memory"))
        for program, args, word in cases:
            for kind in ("json", "svg"):
                with self.subTest(word, kind=kind):
                    run = self.run_it(self.file(program), "-f", kind, *args)
                    self.assertEqual(run.status, 1)
                    self.assertRegex(run.err, f"not imported whole: the {word} ran out")
                    self.assertIn("as it was drawn, without the changes", run.err)
                    lines = run.out.count(b"<path") if kind == "svg" else len(run.json["entities"])
                    self.assertGreater(lines, 1000)

    def test_programs_touch_no_files(self):
        (self.dir / "victim").write_text("mine")
        body = "(victim) deletefile\n"
        for program in (body, "(made) (w) file closefile", "(victim) (renamed) renamefile", "(victim) (r) file pop"):
            with self.subTest(program=program):
                run = self.run_it(self.file(LINE + program), cwd=self.dir)
                self.assertEqual(run.status, 1)
                self.assertEqual(sorted(os.listdir(self.dir)), ["drawing.eps", "victim"])
        run = self.run_it(self.file(LINE + body), "--allow-file-access")
        self.assertEqual((run.status, os.listdir(self.dir)), (0, ["drawing.eps"]))

    def test_what_a_program_prints_never_mixes_with_the_drawing(self):
        run = self.run_it(self.file(LINE + "(noise) print (noise) = 5 == flush stack pstack"))
        self.assertEqual(len(run.json["entities"]), 1)


class InputFiles(CliTest):
    def test_files_that_the_plug_in_could_not_open_itself(self):
        expected = self.run_it(self.file(LINE)).out
        deep = self.dir
        while len(str(deep)) < 300:
            deep = deep / ("x" * 60)
        deep.mkdir(parents=True)
        (deep / "drawing.eps").write_bytes((self.dir / "drawing.eps").read_bytes())
        temporary = self.dir / "tmp"
        temporary.mkdir()
        environment = {**os.environ, "TMPDIR": str(temporary)}
        with self.subTest("long path"):
            self.assertEqual(self.run_it(deep / "drawing.eps", env=environment).out, expected)
        with self.subTest("read-only file"):
            (self.dir / "drawing.eps").chmod(0o444)
            self.assertEqual(self.run_it("drawing.eps", env=environment).out, expected)
        with self.subTest("pipe"):
            run = self.run_it("-", env=environment, input=(HEAD + LINE).encode())
            self.assertEqual(run.json["entities"], json.loads(expected)["entities"])
        self.assertEqual(os.listdir(temporary), [])

    def test_line_ends_headers_and_endings(self):
        text = HEAD + "% " + "c" * 253 + "\n% " + "c" * 254 + "\n" + CURVE
        expected = self.import_json(text, head="")["entities"]
        plain = text.encode() + b"%%Trailer\n"
        preview = b"preview"
        places = (30, len(plain), 0, 0, 30 + len(plain), len(preview))
        binary = struct.pack("<4s6IH", b"\xc5\xd0\xd3\xc6", *places, 0xFFFF)
        for content in (plain.replace(b"\n", b"\r"), plain.replace(b"\n", b"\r\n"), plain.rstrip(b"\n"),
                        plain + b"%%EOF\nthis is no program )", binary + plain + preview):
            with self.subTest(content[:60]):
                self.assertEqual(self.import_json(content)["entities"], expected)


class Batch(CliTest):
    def counts(self, folder):
        """How many entities stand in each drawing of a folder."""
        drawings = (self.dir / folder).iterdir()
        return {path.name: len(json.loads(path.read_bytes())["entities"]) for path in drawings}

    def test_drawings_do_not_depend_on_the_jobs(self):
        names = []
        for i in range(7):
            fault = "(a) 1 add" if i == 3 else ""
            names.append(self.file(CURVE * (i + 1) + fault, f"drawing{i}.eps").name)
        errors = set()
        for kind in ("json", "svg", "dxf"):
            for jobs in (1, 2, 7):
                run = self.run_it("-f", kind, "-j", jobs, "-o", f"{kind}{jobs}", *names)
                self.assertEqual((run.status, run.out), (1, b""))
                errors.add(run.err)
            for name in names:
                single = self.run_it(name, "-f", kind).out
                for jobs in (1, 2, 7):
                    drawing = self.dir / f"{kind}{jobs}" / name.replace("eps", kind)
                    self.assertEqual(drawing.read_bytes(), single)
        self.assertEqual(len(errors), 1)

    def test_no_drawing_is_lost_to_a_name(self):
        for folder in "abc":
            (self.dir / folder).mkdir()
            self.file(LINE * (ord(folder) - 96), f"{folder}/same.eps")
        self.file(LINE * 4, "same-2.eps")
        run = self.run_it("a/same.eps", "b/same.eps", "same-2.eps", "c/same.eps", "-o", "deep/out")
        self.assertEqual(run.status, 0, run.err)
        self.assertEqual(self.counts("deep/out"),
                         {"same.json": 1, "same-2.json": 2, "same-2-2.json": 4, "same-3.json": 3})

    def test_one_bad_file_spoils_no_other(self):
        self.file(LINE)
        self.file(Limits.ENDLESS, "endless.eps")
        run = self.run_it("missing.eps", "endless.eps", "drawing.eps", "-o", "out", "--timeout", "1", "-j", "3")
        self.assertEqual(run.status, 1)
        self.assertEqual(self.counts("out"), {"missing.json": 0, "endless.json": 1, "drawing.json": 1})

    def test_the_last_line_counts(self):
        for name, body in (("a.eps", LINE), ("b.eps", LINE), ("c.eps", "foo")):
            self.file(body, name)
        for names, last in ((["a.eps", "c.eps", "b.eps"], "2 of 3 imported whole, 1 not"),
                            (["a.eps", "b.eps"], "2 of 2 imported whole")):
            run = self.run_it(*names, "-f", "none")
            self.assertEqual(run.err.rstrip("\n").split("\n")[-1], last)
        self.assertEqual(self.run_it("c.eps", "-f", "none", "-q").err.count("of 1 imported"), 0)

    def test_it_works_where_children_vanish(self):
        """A parent may have left SIGCHLD ignored: then no child's status arrives unless the program asks for it."""
        self.file(LINE)
        self.file("foo", "bad.eps")
        ignore = lambda: signal.signal(signal.SIGCHLD, signal.SIG_IGN)
        run = self.run_it("drawing.eps", "bad.eps", "-f", "none", preexec_fn=ignore)
        self.assertEqual(run.status, 1)
        self.assertIn("1 of 2 imported whole, 1 not", run.err)

    def test_the_report_has_a_line_for_each_input(self):
        self.file(LINE)
        self.file(LINE + "(a) 1 add", "bad.eps")
        names = ["drawing.eps", "missing.eps", "bad.eps", "./drawing.eps"]
        reports = set()
        for jobs in (1, 4):
            run = self.run_it(*names, "-o", "out", "-f", "svg", "--report", "report", "-j", jobs)
            self.assertEqual(run.status, 1)
            reports.add((self.dir / "report").read_bytes())
        self.assertEqual(len(reports), 1)
        lines = [json.loads(line) for line in reports.pop().decode().splitlines()]
        self.assertEqual([line["source"] for line in lines], names)
        self.assertEqual([line["status"] for line in lines], [0, 1, 1, 0])
        self.assertEqual([line["end"] for line in lines], ["whole", "not-opened", "failed", "whole"])
        self.assertEqual([line["entities"] for line in lines], [1, 0, 1, 1])
        self.assertEqual([line["output"] for line in lines],
                         ["out/drawing.svg", "out/missing.svg", "out/bad.svg", "out/drawing-2.svg"])
        self.assertEqual([line["dialect"] for line in lines], ["plain"] * 4)
        self.assertIsNone(lines[0]["reason"])
        self.assertIn("No such file", lines[1]["reason"])
        self.assertEqual(len(lines[2]["messages"]), 1)
        self.assertEqual(self.run_it("bad.eps", "-f", "none", "--report", "single").status, 1)
        self.assertEqual(json.loads((self.dir / "single").read_text()), {**lines[2], "output": None})
        run = self.run_it("drawing.eps", "-f", "none", "--report", "missing/report")
        self.assertEqual(run.status, 1)
        self.assertIn("can't write the report", run.err)

    def test_an_import_that_dies_is_told(self):
        self.file(Limits.ENDLESS, "endless.eps")
        self.file(LINE)
        arguments = ["endless.eps", "drawing.eps", "-o", "out", "--report", "report"]
        process = subprocess.Popen([str(PROGRAM), *arguments], cwd=self.dir,
                                   stderr=subprocess.PIPE)
        time.sleep(1.5 if SANITIZED else 0.5)
        children = Path(f"/proc/{process.pid}/task/{process.pid}/children").read_text().split()
        self.assertEqual(len(children), 1)
        os.kill(int(children[0]), signal.SIGKILL)
        err = process.communicate(timeout=60)[1].decode()
        self.assertEqual(process.returncode, 1)
        self.assertIn("endless.eps", err)
        self.assertIn("signal 9", err)
        self.assertEqual(os.listdir(self.dir / "out"), ["drawing.json"])
        lines = [json.loads(line) for line in (self.dir / "report").read_text().splitlines()]
        self.assertEqual([(line["source"], line["end"]) for line in lines],
                         [("endless.eps", "killed"), ("drawing.eps", "whole")])


class Svg(CliTest):
    SPACE = "{http://www.w3.org/2000/svg}"

    def test_the_picture(self):
        triangle = "0 1 0 setrgbcolor 72 144 moveto 144 144 lineto 144 216 lineto closepath stroke\n"
        body = triangle + "0 0 1 setrgbcolor " + CURVE
        svg = self.run_it(self.file(body), "-f", "svg").out
        root = ElementTree.fromstring(svg)
        x, y, width, height = map(float, root.get("viewBox").split())
        self.assertEqual((root.get("width"), root.get("height")), (f"{width:g}mm", f"{height:g}mm"))
        closed, mixed = root.iter(self.SPACE + "path")
        self.assertEqual((closed.get("stroke"), mixed.get("stroke")), ("#00ff00", "#0000ff"))
        self.assertEqual(closed.get("d"), "M25.4,-50.8 L50.8,-50.8 50.8,-76.2 Z")
        self.assertRegex(mixed.get("d"), r"^M0,0 L25\.4,0 C\S+ \S+ 17\.6389,-17\.6389$")
        # The drawing is 50.8 by 76.2 mm; the curve bulges less far than its control points.
        for size, margin in ((width - 50.8, 0.5), (height - 76.2, 0.5)):
            self.assertGreater(size, 2 * margin)
            self.assertLess(size, 8)
        self.assertLess(x, 0)
        self.assertLess(y, -76.2)

    def test_curves_become_lines_when_asked_for(self):
        svg = self.run_it(self.file(CURVE), "-f", "svg", "--curves", "polyline").out
        self.assertNotIn(b" C", svg)
        self.assertGreater(svg.count(b","), 6)

    def test_host_versions_give_the_same_picture(self):
        eps = self.file(LINE)
        self.assertEqual(self.run_it(eps, "-f", "svg").out, self.run_it(eps, "-f", "svg", "--host-version", "4").out)

    def test_it_renders(self):
        for eps in [self.file("", "empty.eps"), *sorted(EXAMPLES.glob("*.eps"))]:
            with self.subTest(eps.name):
                run = self.run_it(eps, "-o", "out.svg")
                self.assertEqual((run.status, run.err), (0, ""))
                command = ["rsvg-convert", "--width", "200", "out.svg"]
                render = subprocess.run(command, cwd=self.dir, capture_output=True)
                self.assertEqual((render.returncode, render.stderr), (0, b""))
                self.assertTrue(render.stdout.startswith(b"\x89PNG"))


class Dxf(CliTest):
    def convert(self, eps, *args):
        run = self.run_it(eps, "-o", "out.dxf", *args)
        self.assertEqual(run.status, 0, run.err)
        document = ezdxf.readfile(self.dir / "out.dxf")
        audit = document.audit()
        self.assertEqual([e.message for e in audit.errors + audit.fixes], [])
        return document

    def test_header_and_layers(self):
        body = LINE + "1 0 0 setrgbcolor " + LINE + "0.9 0.1 0.1 setrgbcolor " + LINE + "1 0 0 setrgbcolor " + LINE
        document = self.convert(self.file(body + "0 72 moveto 0 144 lineto stroke"))
        self.assertGreaterEqual(document.dxfversion, "AC1015")
        self.assertEqual(document.units, 4)
        for name, expected in (("$EXTMIN", (0, 0)), ("$EXTMAX", (25.4, 50.8))):
            self.assertTrue(all(math.isclose(a, b, abs_tol=1e-5) for a, b in zip(document.header[name], expected)))
        layers = {layer.dxf.name: layer.rgb for layer in document.layers if layer.rgb}
        self.assertEqual(layers, {"black": (0, 0, 0), "red": (255, 0, 0), "red-E51919": (229, 25, 25)})
        self.assertEqual([e.dxf.layer for e in document.modelspace()], ["black", "red", "red-E51919", "red", "red"])
        indices = {layer.dxf.name: layer.dxf.color for layer in document.layers}
        self.assertEqual((indices["black"], indices["red"]), (7, 1))
        seed = int(document.header["$HANDSEED"], 16)
        self.assertLess(max(int(e.dxf.handle, 16) for e in document.modelspace()), seed)

    def test_tables_that_layers_and_views_refer_to(self):
        for form in ("r2000", "r12"):
            document = self.convert(self.file(LINE), "--dxf", form)
            self.assertEqual({layer.dxf.linetype.upper() for layer in document.layers}, {"CONTINUOUS"})
            line = document.linetypes.get("CONTINUOUS")
            self.assertEqual((line.dxf.description, line.simplified_line_pattern()), ("Solid line", ()))
            self.assertEqual(document.styles.get("STANDARD").dxf.flags, 0)
        view = self.convert(self.file(LINE)).viewports.get("*ACTIVE")[0].dxf
        self.assertAlmostEqual(view.center[0], 12.7, 4)
        self.assertAlmostEqual(view.center[1], 0, 4)
        self.assertGreater(view.height * view.aspect_ratio, 25.4)
        self.assertLess(view.height * view.aspect_ratio, 2 * 25.4)

    def test_splines_are_exact(self):
        for eps in sorted(EXAMPLES.glob("*.eps")):
            with self.subTest(eps.name):
                source = self.run_it(eps).json["entities"]
                found = list(self.convert(eps).modelspace())
                self.assertEqual(len(found), len(source))
                for entity, dxf in zip(source, found):
                    self.compare(entity, dxf)

    def compare(self, entity, dxf):
        expected = pieces(entity)
        if not has_curves(entity):
            self.assertEqual((dxf.dxftype(), dxf.closed), ("LWPOLYLINE", entity["closed"]))
            vertices = [expected[0][0]] + [piece[3] for piece in expected]
            if entity["closed"] and vertices[-1] == vertices[0]:
                vertices.pop()
            self.assertEqual([list(map(as_float, v[:2])) for v in dxf.get_points("xy")],
                             [list(map(as_float, v)) for v in vertices])
            return
        self.assertEqual((dxf.dxftype(), dxf.dxf.degree, dxf.closed), ("SPLINE", 3, False))
        if entity["closed"]:
            self.assertEqual(tuple(dxf.control_points[0]), tuple(dxf.control_points[-1]))
        curve = dxf.construction_tool()
        for i, piece in enumerate(expected):
            for t in (0, 0.25, 0.5, 0.75):
                self.assertLess(math.dist(curve.point(i + t).vec2, cubic(piece, t)), 1e-5)
        self.assertLess(math.dist(curve.point(curve.max_t).vec2, expected[-1][3]), 0.0011)

    def test_polylines_keep_the_flatness(self):
        eps = EXAMPLES / "rosette.eps"
        source = self.run_it(eps).json["entities"]
        sizes = []
        for flatness in (0.5, 0.05, 0.001):
            found = list(self.convert(eps, "--curves", "polyline", "--flatness", flatness).modelspace())
            self.assertEqual({dxf.dxftype() for dxf in found}, {"LWPOLYLINE"})
            self.assertEqual([dxf.closed for dxf in found], [entity["closed"] for entity in source])
            sizes.append(sum(len(dxf) for dxf in found))
            for entity, dxf in zip(source, found):
                line = [p[:2] for p in dxf.get_points("xy")]
                line += line[:1] if dxf.closed else []
                for piece in pieces(entity):
                    for t in (0.1, 0.3, 0.5, 0.7, 0.9):
                        self.assertLess(self.distance(cubic(piece, t), line), flatness + 1e-5)
        self.assertEqual(sizes, sorted(sizes))
        self.assertLess(sizes[0], sizes[2])

    @staticmethod
    def distance(point, line):
        def to_segment(a, b):
            d = [b[0] - a[0], b[1] - a[1]]
            square = d[0] * d[0] + d[1] * d[1]
            t = 0 if square == 0 else ((point[0] - a[0]) * d[0] + (point[1] - a[1]) * d[1]) / square
            t = min(1, max(0, t))
            return math.dist(point, [a[0] + t * d[0], a[1] + t * d[1]])

        return min(to_segment(a, b) for a, b in zip(line, line[1:]))

    def test_an_empty_drawing(self):
        self.assertEqual(len(self.convert(self.file("")).modelspace()), 0)


class Arcs(CliTest):
    """--curves arc, in all formats, and the old form of DXF."""

    # A circle, a slot of lines and half circles, one open arc, a curve that is no arc.
    BODY = ("100 100 50 0 360 arc closepath stroke\n"
            "200 100 20 90 270 arc 300 100 20 270 90 arc closepath stroke\n"
            "100 300 30 10 120 arc stroke\n100 300 40 120 10 arcn stroke\n" + CURVE)
    # What R12 knows: names of records, and group codes.
    R12_RECORDS = {"SECTION", "ENDSEC", "TABLE", "ENDTAB", "LTYPE", "LAYER", "EOF", "POINT", "LINE", "ARC", "CIRCLE",
                   "POLYLINE", "VERTEX", "SEQEND"}
    R12_CODES = {0, 1, 2, 3, 6, 8, 9, 10, 11, 20, 21, 30, 31, 40, 42, 50, 51, 62, 66, 70, 72, 73}

    def drawings(self):
        return [self.file(self.BODY, "arcs.eps"), *sorted(EXAMPLES.glob("*.eps"))]

    def test_json_has_the_drawing_of_the_passes(self):
        circle, slot, arc, back, _ = self.import_json(self.BODY, "--curves", "arc")["entities"]
        self.assertEqual((circle["type"], circle["color"]), ("circle", [0, 0, 0]))
        for value, expected in zip((*circle["center"], circle["radius"]), (100, 100, 50)):
            self.assertAlmostEqual(value, expected / MM, places=4)
        self.assertEqual([s["type"] for s in slot["sections"]], ["arc", "line", "arc", "line"])
        self.assertTrue(slot["closed"])
        for entity, sweep in ((arc, 110), (back, -110)):
            self.assertEqual([s["type"] for s in entity["sections"]], ["arc"])
            self.assertAlmostEqual(entity["sections"][0]["sweep"], sweep, places=3)
        old = self.import_json(self.BODY, "--curves", "arc", "--host-version", "4")["entities"][0]
        self.assertAlmostEqual(old["radius"], 40 * circle["radius"], places=3)

    def test_svg_has_circles_and_arcs(self):
        svg = self.run_it(self.file(self.BODY), "-f", "svg", "--curves", "arc").out.decode()
        self.assertEqual(svg.count("<circle "), 1)
        self.assertNotIn(" C", svg)
        self.assertIn(" A", svg)
        for eps in self.drawings():
            self.assertEqual(self.run_it(eps, "--curves", "arc", "-o", "out.svg").status, 0)
            subprocess.run(["rsvg-convert", "out.svg", "-o", "out.png"], cwd=self.dir, check=True)

    def test_dxf_has_every_arc_where_json_has_it(self):
        for form, polyline in (("r2000", "LWPOLYLINE"), ("r12", "POLYLINE")):
            for eps in self.drawings():
                with self.subTest(form=form, eps=eps.name):
                    entities = self.run_it(eps, "--curves", "arc").json["entities"]
                    run = self.run_it(eps, "--curves", "arc", "--dxf", form, "-o", "out.dxf")
                    self.assertEqual(run.status, 0, run.err)
                    document = ezdxf.readfile(self.dir / "out.dxf")
                    audit = document.audit()
                    self.assertEqual([e.message for e in audit.errors + audit.fixes], [])
                    found = list(document.modelspace())
                    self.assertEqual(len(found), len(entities))
                    for entity, dxf in zip(entities, found):
                        self.compare(entity, dxf, polyline)

    def compare(self, entity, dxf, polyline):
        if entity["type"] == "circle":
            self.assertEqual(dxf.dxftype(), "CIRCLE")
            self.near((*dxf.dxf.center.vec2, dxf.dxf.radius), (*entity["center"], entity["radius"]))
            return
        parts = []
        for section in entity["sections"]:
            points = section.get("points", ())
            parts += [None] * (len(points) - 1) if points else [section]
        if len(parts) == 1 and parts[0] and not entity["closed"]:
            arc = parts[0]
            ends = sorted((arc["start"], arc["start"] + arc["sweep"]))
            self.assertEqual(dxf.dxftype(), "ARC")
            self.near((*dxf.dxf.center.vec2, dxf.dxf.radius), (*arc["center"], arc["radius"]))
            for angle, expected in zip((dxf.dxf.start_angle, dxf.dxf.end_angle), ends):
                self.assertAlmostEqual(math.remainder(angle - expected, 360), 0, places=6)
            return
        if len(parts) == 1 and polyline == "POLYLINE" and not entity["closed"]:
            self.assertEqual(dxf.dxftype(), "LINE")
            return
        self.assertEqual(dxf.dxftype(), polyline)
        if polyline == "POLYLINE":
            vertices = [(*v.dxf.location.vec2, v.dxf.bulge) for v in dxf.vertices]
            closed = dxf.is_closed
        else:
            vertices, closed = dxf.get_points("xyb"), dxf.closed
        self.assertEqual(closed, entity["closed"])
        ends = vertices[1:] + vertices[:1]
        for part, vertex, end in zip(parts, vertices, ends):
            if part is None:
                self.assertEqual(vertex[2], 0)
                continue
            center, start, stop, radius = ezdxf.math.bulge_to_arc(vertex[:2], end[:2], vertex[2])
            # Of a flat arc the centre is lost in the rounding of its ends; what counts is where it runs.
            middle = (start + stop + (math.tau if stop < start else 0)) / 2
            half = math.radians(part["start"] + part["sweep"] / 2)
            self.near((center.x + radius * math.cos(middle), center.y + radius * math.sin(middle)),
                      (part["center"][0] + part["radius"] * math.cos(half),
                       part["center"][1] + part["radius"] * math.sin(half)))

    def near(self, found, expected):
        for one, other in zip(found, expected):
            self.assertAlmostEqual(one, other, delta=1e-5)

    def test_r12_holds_nothing_newer(self):
        for options in ((), ("--curves", "polyline")):
            for eps in self.drawings():
                run = self.run_it(eps, "--dxf", "r12", "-f", "dxf", *options)
                self.assertEqual(run.status, 0, run.err)
                lines = run.out.decode("ascii").split("\n")
                codes, values = [int(code) for code in lines[:-1:2]], lines[1::2]
                self.assertLessEqual(set(codes), self.R12_CODES)
                self.assertLessEqual({v for c, v in zip(codes, values) if c == 0}, self.R12_RECORDS)
                self.assertEqual(values[codes.index(1)], "AC1009")
                names = {v for c, v in zip(codes, values) if c == 8}
                self.assertTrue(all(re.fullmatch("[A-Z0-9_-]{1,31}", name) for name in names), names)

    def test_r12_refuses_splines(self):
        run = self.run_it(self.file(LINE), "--dxf", "r12", "--curves", "spline", "-f", "dxf")
        self.assertEqual((run.status, run.out), (2, b""))
        self.assertIn("--curves arc", run.err)


class Readme(CliTest):
    @unittest.skipIf(SANITIZED, "one of the commands limits the memory")
    def test_its_commands_work(self):
        shutil.copytree(EXAMPLES, self.dir / "examples")
        commands = re.findall(r"\./epsimport ([^`\n]+)", (EXAMPLES.parent / "README.md").read_text())
        self.assertGreaterEqual(len(commands), 3)
        for command in commands:
            with self.subTest(command):
                run = self.run_it(*command.split())
                self.assertEqual((run.status, run.err), (0, ""))


class Installed(CliTest):
    def test_an_installed_copy_runs(self):
        build = PROGRAM.parent.parent
        prefix = self.dir / "prefix"
        subprocess.run(["cmake", "--install", str(build), "--prefix", str(prefix)], check=True, capture_output=True)
        moved = self.dir / "moved"  # the copy must not lean on the place that it was installed to
        prefix.rename(moved)
        run = Run(subprocess.run([str(moved / "bin/epsimport"), str(self.file(LINE))], capture_output=True))
        self.assertEqual((run.status, len(run.json["entities"])), (0, 1), run.err)
        loaded = subprocess.run(["ldd", str(moved / "bin/epsimport")], capture_output=True, text=True).stdout
        self.assertNotIn(str(build), loaded)
        self.assertTrue((moved / "share/man/man1/epsimport.1").exists())
        for completion in ("bash-completion/completions/epsimport", "zsh/site-functions/_epsimport",
                           "fish/vendor_completions.d/epsimport.fish"):
            self.assertTrue((moved / "share" / completion).exists(), completion)


if __name__ == "__main__":
    PROGRAM, EXAMPLES = (Path(argument).resolve() for argument in sys.argv[1:3])
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
