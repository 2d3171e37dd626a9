// PostScript programs of any size for the benchmarks, each with what must come of it. Generated, so that
// nothing large is kept.
#pragma once

#include <string>

struct Program {
    std::string text;   // a whole EPS file
    int entities = 0;   // how many it must give
    long sections = 0;  // and how many sections they must have together
    long work = 0;      // how many items were done: what the rate counts
};

// Plain numbers, lineto and curveto in the file itself, as most drawing programs write them. `size` is
// segments.
Program PathHeavy(int size);

// Shapes drawn through short bound procedures of a prolog, one call for each. `size` is calls.
Program BoundProcedures(int size);

// An arithmetic loop that draws one line at its end. `size` is passes.
Program Arithmetic(int size);

// gsave, a change of the state, a short line, grestore. `size` is passes.
Program SaveStates(int size);

// Definitions and look-ups in many dictionaries. `size` is names.
Program Dictionaries(int size);

// Nothing but the header.
Program Empty();
