#!/usr/bin/env python3
"""Holds the built plug-ins against what is promised of them: one exported symbol, and the libraries they need.

usage: check_libraries.py PLAIN COMPLETE
"""

import re
import subprocess
import sys

# What any C++ library of the project needs. The sanitizers bring their own.
RUNTIME = {"libepshost.so", "libstdc++.so.6", "libm.so.6", "libgcc_s.so.1", "libc.so.6", "ld-linux-x86-64.so.2"}
SANITIZERS = re.compile(r"lib(asan|ubsan)\.so")
COMPLETE = {"libz.so.1", "libfreetype.so.6", "libfontconfig.so.1", "libpolyclipping.so.22"}


def output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def faults_of(library, allowed):
    symbols = [line.split()[-1] for line in output("nm", "-D", "--defined-only", library).splitlines()]
    if symbols != ["PlugFilterMain"]:
        yield f"{library} exports {' '.join(symbols) or 'nothing'}"
    needed = re.findall(r"\(NEEDED\).*\[(.*)\]", output("readelf", "-d", library))
    if "libepshost.so" not in needed:
        yield f"{library}: the list of needed libraries can't be read"
    foreign = [name for name in needed if name not in allowed and not SANITIZERS.match(name)]
    if foreign:
        yield f"{library} needs {' '.join(foreign)}"


def main():
    plain, complete = sys.argv[1:3]
    faults = [*faults_of(plain, RUNTIME), *faults_of(complete, RUNTIME | COMPLETE)]
    print("\n".join(faults))
    return 1 if faults else 0


sys.exit(main())
