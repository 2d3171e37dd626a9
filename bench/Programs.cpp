// The generated programs. Their answers are known from how they are made.
#include "Programs.h"

#include <cstdio>

namespace {

constexpr const char* kHead = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 600 600\n%%EndComments\n";

template <class... Values>
void Append(std::string& text, const char* format, Values... values) {
    char line[256];
    text.append(line, static_cast<std::size_t>(std::snprintf(line, sizeof line, format, values...)));
}

}  // namespace

Program PathHeavy(int size) {
    Program program{kHead, 0, 0, size};
    constexpr int kSegmentsPerPath = 100;
    for (int i = 0; i < size; ++i) {
        const double x = i % 577, y = i % 431;
        if (i % kSegmentsPerPath == 0) {
            if (i > 0) program.text += "stroke\n";
            Append(program.text, "%.3f %.3f moveto\n", x + 7.125, y + 3.25);
            ++program.entities;
        }
        if (i % 4 == 3)
            Append(program.text, "%.3f %.3f %.3f %.3f %.3f %.3f curveto\n", x, y + 1.5, x + 2.5, y, x + 9.75, y + 4.5);
        else
            Append(program.text, "%.3f %.3f lineto\n", x + 0.375, y + 20.5);
        ++program.sections;
    }
    program.text += "stroke\nshowpage\n";
    return program;
}

Program BoundProcedures(int size) {
    Program program{kHead, size, 2L * size, size};
    program.text +=
        "/bdef { bind def } bind def\n/m { moveto } bdef\n/l { lineto } bdef\n/s { stroke } bdef\n"
        "/corner { 2 copy m 10 0 rlineto 0 10 rlineto s pop pop } bdef\n";
    for (int i = 0; i < size; ++i) Append(program.text, "%d %d corner\n", i % 500, i % 300);
    return program;
}

Program Arithmetic(int size) {
    Program program{kHead, 1, 1, size};
    Append(program.text, "0 1 1 %d { dup 2 mod 0 eq { 3 mul 7 add } { 2 sub } ifelse 10007 mod add 30011 mod } for\n",
           size);
    program.text += "pop 0 0 moveto 100 100 lineto stroke\n";
    return program;
}

Program SaveStates(int size) {
    Program program{kHead, size, size, size};
    Append(program.text,
           "0 1 %d { gsave 500 mod dup translate 0.5 setgray 2 setlinewidth 0 0 moveto 5 5 lineto stroke "
           "grestore } for\n",
           size - 1);
    return program;
}

Program Dictionaries(int size) {
    Program program{kHead, 1, 1, size};
    program.text += "/d 10 dict def d begin\n";
    for (int i = 0; i < size; ++i) Append(program.text, "/name%d { %d } def\n", i, i % 100);
    program.text += "end d begin 0\n";
    for (int i = 0; i < size; ++i) Append(program.text, "name%d add\n", i);
    program.text += "pop end 0 0 moveto 100 100 lineto stroke\n";
    return program;
}

Program Empty() { return {kHead, 0, 0, 1}; }
