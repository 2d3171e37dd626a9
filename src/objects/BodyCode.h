// The code of a procedure: what its elements come to when they run, one record for each, at the same index. Made by
// interp/Compile.cpp, run by interp/Execute.cpp, and gone with the next change to the body.
#pragma once

#include <cstdint>

struct CName;

enum class StepKind : std::uint8_t {
    element,      ///< as the element says
    number,       ///< pushes a number
    name,         ///< executes a name: a raw token
    nameObject,   ///< the same of an executable name
    op,           ///< runs an operator
    nameLiteral,  ///< pushes a literal name
    // Of these the step itself is one of the above, but together with those behind it something shorter can be tried.
    numberThenOp,      ///< a number, and an operator or its name
    procedureThenOp,   ///< a procedure, and an operator or its name
    proceduresThenOp,  ///< two procedures, and an operator or its name
};

struct Step {
    StepKind kind = StepKind::element;
    bool isReal = false;  ///< of a number
    union {
        double number = 0.0;
        const CName* name;  ///< of a name or operator
    };
};
static_assert(sizeof(Step) == 16);

/// Moves on whenever any code goes: as long as it stays, so does all code.
inline std::uint64_t g_nCodeEpoch = 0;
