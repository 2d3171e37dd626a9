"""How much CPU time imports take, as a multiple of what other programs take for the same work: `wc -w` for files that
are mostly numbers, Lua for loops. The two of a pair run in turns, so that a busy machine slows both; what counts is the
CPU time of whole processes. With --base another build of the program stands in place of the others."""
import argparse
import os
import statistics
import subprocess
import tempfile
from pathlib import Path

HEAD = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 1000 1000\n%%EndComments\n"


def coordinates(count):
    """Points as programs write them, with four decimals."""
    for i in range(count):
        yield f"{i * 7919 % 9999991 / 10000:.4f} {i * 104729 % 9999973 / 10000:.4f}"


def lines(count):
    for i, point in enumerate(coordinates(count)):
        if i % 100 == 0:
            yield "stroke\n" if i else ""
            yield point + " moveto\n"
        yield point + " lineto\n"
    yield "stroke\n"


def procedures(count):
    yield "/m {moveto} bind def /l {lineto} bind def /c {curveto} bind def /s {stroke} bind def\n"
    points = coordinates(2 * count)
    for i in range(count // 10):
        yield next(points) + " m\n"
        for _ in range(7):
            yield next(points) + " l\n"
        yield f"{next(points)} {next(points)} {next(points)} c\ns\n"


def states(count):
    yield "/Helvetica findfont 12 scalefont setfont\n"
    points = coordinates(2 * count)
    for i in range(count):
        yield f"gsave {i % 10 / 10} 0.5 {i % 7 / 10} setrgbcolor newpath {next(points)} moveto "
        yield f"{next(points)} lineto stroke grestore\n"


def dictionaries(count):
    yield "/D 4 dict def /P {D begin /y exch def /x exch def x y moveto x 10 add y lineto stroke end} bind def\n"
    for point in coordinates(count):
        yield point + " P\n"


FIBONACCI = "/fib {dup 2 lt {} {dup 1 sub fib exch 2 sub fib add} ifelse} bind def 27 fib pop\n"
LUA_FIBONACCI = "function fib(n) if n < 2 then return n end return fib(n - 1) + fib(n - 2) end fib(27)"

# Name, the PostScript, and the Lua that does the same, with global variables as PostScript has them. None: `wc -w`
# reads the file.
WORKLOADS = [
    ("lines", lambda: lines(2_000_000), None),
    ("procs", lambda: procedures(1_500_000), None),
    ("gsave", lambda: states(300_000), None),
    ("dicts", lambda: dictionaries(400_000), None),
    ("arith", lambda: ["1 1 3000000 {3 mul 7 add 10007 mod pop} for\n"],
     "for i = 1, 3000000 do x = (i * 3 + 7) % 10007 end"),
    ("vars", lambda: ["/x 0 def 1 1 3000000 {/x exch x add def} for\n"],
     "x = 0 for i = 1, 3000000 do x = i + x end"),
    ("fib", lambda: [FIBONACCI], LUA_FIBONACCI),
    ("arrays", lambda: ["/a 1000 array def 0 1 999 {a exch 0 put} for\n",
                        "3000 {0 1 999 {a exch 2 copy get 1 add put} for} repeat\n"],
     "a = {} for i = 0, 999 do a[i] = 0 end for k = 1, 3000 do for i = 0, 999 do a[i] = a[i] + 1 end end"),
]


def usage(command, stdin=None):
    """CPU seconds and peak memory in bytes of a process that must succeed."""
    process = subprocess.Popen(command, stdin=stdin, stdout=subprocess.DEVNULL)
    _, status, used = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise SystemExit(f"{' '.join(map(str, command))}: exit status {process.returncode}")
    return used.ru_utime + used.ru_stime, used.ru_maxrss * 1024


def spread(values, digits=2):
    return "  ".join(f"{value:8.{digits}f}" for value in (min(values), statistics.median(values), max(values)))


class Bench:
    def __init__(self, arguments, folder):
        self.arguments = arguments
        self.folder = Path(folder)

    def write(self, name, chunks):
        path = self.folder / name
        with open(path, "w", encoding="ascii") as file:
            file.write(HEAD)
            file.writelines(chunks)
        return path

    def wanted(self, name):
        return not self.arguments.only or name in self.arguments.only

    def import_command(self, path, *options, program=None):
        dialect = ["--complete"] if self.arguments.complete else []
        return [program or self.arguments.program, *dialect, *(options or ("-f", "none")), path]

    def ratio(self, name, chunks, lua):
        path = self.write(name + ".eps", chunks)
        if self.arguments.base:
            other, title = self.import_command(path, program=self.arguments.base), "base"
        elif lua is None:
            other, title = ["wc", "-w", path], "wc -w"
        else:
            script = self.folder / (name + ".lua")
            script.write_text(lua, encoding="ascii")
            other, title = ["lua5.4", script], "Lua"
        pairs = [(usage(self.import_command(path))[0], usage(other)[0]) for _ in range(self.arguments.rounds)]
        print(f"{name:10} x {title:10}", spread([ours / theirs for ours, theirs in pairs]), flush=True)
        path.unlink()

    def writer(self, style):
        """Megabytes written in a CPU second beyond that of the import alone."""
        path = self.write("lines.eps", lines(1_000_000))
        output = self.folder / ("drawing." + style)
        rates = []
        for _ in range(self.arguments.rounds):
            plain = usage(self.import_command(path))[0]
            whole = usage(self.import_command(path, "-f", style, "-o", output))[0]
            rates.append(output.stat().st_size / 1e6 / (whole - plain))
        print(f"{style:10}   {'MB/s':10}", spread(rates, 0), flush=True)
        output.unlink()

    def memory(self):
        peaks = [usage(self.import_command(self.write("lines.eps", lines(n))))[1] for n in (1_000_000, 2_000_000)]
        print(f"{'memory':10}   {'B/section':10}", spread([(peaks[1] - peaks[0]) / 1_000_000], 1), flush=True)

    def growth(self):
        """CPU time of four times the work over that of the work; about 4 when nothing is quadratic."""
        sizes = {"lines": lines, "procs": procedures, "gsave": states, "dicts": dictionaries}
        for name, program in sizes.items():
            small, large = (self.write(f"{name}{n}.eps", program(n)) for n in (250_000, 1_000_000))
            ratios = [usage(self.import_command(large))[0] / usage(self.import_command(small))[0]
                      for _ in range(self.arguments.rounds)]
            print(f"{name:10} x {'a quarter':10}", spread(ratios), flush=True)

    def large(self):
        """A file of 500 MB."""
        path = self.write("large.eps", lines(21_000_000))
        seconds, peak = usage(self.import_command(path))
        size = path.stat().st_size
        print(f"{'large':10}   {'MB/s':10} {size / 1e6 / seconds:8.0f}  of {size / 1e6:.0f} MB, "
              f"peak {peak / 2**20:.0f} MiB")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True, type=os.path.abspath, help="the epsimport to measure")
    parser.add_argument("--base", type=os.path.abspath, help="another epsimport to compare it with")
    parser.add_argument("--complete", action="store_true", help="measure the complete dialect")
    parser.add_argument("--rounds", type=int, default=5, help="runs of each pair (5)")
    parser.add_argument("--growth", action="store_true", help="how time grows with the work, instead")
    parser.add_argument("--large", action="store_true", help="a file of 500 MB, instead")
    parser.add_argument("only", nargs="*", help="rows of the table (all)")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="epsbench-") as folder:
        bench = Bench(arguments, folder)
        if arguments.large:
            return bench.large()
        print(f"{'workload':10}   {'':10}", "  ".join(f"{word:>8}" for word in ("minimum", "median", "maximum")))
        if arguments.growth:
            return bench.growth()
        for name, chunks, lua in WORKLOADS:
            if bench.wanted(name):
                bench.ratio(name, chunks(), lua)
        for style in ("svg", "dxf"):
            if bench.wanted(style):
                bench.writer(style)
        if bench.wanted("memory"):
            bench.memory()
    return None


if __name__ == "__main__":
    main()
