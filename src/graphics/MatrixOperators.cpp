// Matrices as objects and the current transformation matrix. Default user space is device space, so the
// default matrix is the identity. A matrix operand is an array; Departure: a packed array is refused. Failing
// operators leave their operands.
#include "graphics/MatrixOperators.h"

#include <cmath>

#include "graphics/GraphState.h"
#include "graphics/Matrix.h"
#include "interp/Operands.h"
#include "objects/Angles.h"

namespace {

constexpr int MATRIX_LENGTH = 6;
constexpr double kIdentity[MATRIX_LENGTH] = {1, 0, 0, 1, 0, 0};

/// The six values of a matrix operand.
void ReadOperand(Operands& in, int depth, double six[6]) {
    const CArrayElement* matrix = in.Array(depth);
    if (!matrix) return;
    const ErrorCode error = ReadMatrix(*matrix, six);
    in.Require(error == PSERR_NONE, error);
}

/// Whether the top is a matrix: the operators that take one have a form without it, too, which ends in a
/// number.
bool TopIsMatrix(Operands& in) {
    const CElement* top = in.OneOf(0, {ET_ARRAY, ET_NUMBER});
    return top && top->m_nType == ET_ARRAY;
}

/// Fills the matrix on top and takes the count operands below it away.
int FillTop(CFilterEPS& m, const double six[6], int count) {
    const ErrorCode error = WriteMatrix(*static_cast<CArrayElement*>(m.m_OperandStack.Top()), six);
    if (error != PSERR_NONE) return m.Fail(error);
    ElementPtr matrix = m.Pop();
    m.Drop(count);
    m.Push(std::move(matrix));
    return 1;
}

// -  matrix  matrix
int OpMatrix(CFilterEPS& m) {
    std::vector<ElementPtr> elements;
    for (const double value : kIdentity) elements.push_back(NewReal(value));
    m.Push(MakeElement<CArrayElement>(std::move(elements)));
    return 1;
}

// matrix  currentmatrix  matrix              STACKUNDERFLOW TYPECHECK RANGE
int OpCurrentmatrix(CFilterEPS& m) {
    Operands in(m);
    in.Array(0);
    if (!in) return -1;
    double six[6];
    m.GetCurrentGState()->GetCTM(six);
    return FillTop(m, six, 0);
}

// matrix  setmatrix  -                       STACKUNDERFLOW TYPECHECK RANGE
int OpSetmatrix(CFilterEPS& m) {
    Operands in(m);
    double six[6];
    ReadOperand(in, 0, six);
    if (!in) return -1;
    m.GetCurrentGState()->SetCTM(six);
    m.Drop(1);
    return 1;
}

// tx ty  translate  -                        STACKUNDERFLOW TYPECHECK RANGE
// tx ty matrix  translate  matrix
int OpTranslate(CFilterEPS& m) {
    Operands in(m);
    const int below = TopIsMatrix(in) ? 1 : 0;
    const double ty = in.Real(below);
    const double tx = in.Real(below + 1);
    if (!in) return -1;
    if (below) {
        const double six[6] = {1, 0, 0, 1, tx, ty};
        return FillTop(m, six, 2);
    }
    m.GetCurrentGState()->Translate(tx, ty);
    m.Drop(2);
    return 1;
}

// sx sy  scale  -                            STACKUNDERFLOW TYPECHECK RANGE
// sx sy matrix  scale  matrix
int OpScale(CFilterEPS& m) {
    Operands in(m);
    const int below = TopIsMatrix(in) ? 1 : 0;
    const double sy = in.Real(below);
    const double sx = in.Real(below + 1);
    if (!in) return -1;
    if (below) {
        const double six[6] = {sx, 0, 0, sy, 0, 0};
        return FillTop(m, six, 2);
    }
    m.GetCurrentGState()->Scale(sx, sy);
    m.Drop(2);
    return 1;
}

// angle  rotate  -                           STACKUNDERFLOW TYPECHECK RANGE
// angle matrix  rotate  matrix
int OpRotate(CFilterEPS& m) {
    Operands in(m);
    const int below = TopIsMatrix(in) ? 1 : 0;
    const double angle = in.Real(below);
    if (!in) return -1;
    if (below) {
        // Departure: a five-digit constant, other than that of the form without a matrix.
        const double r = angle * RADIANS_PER_DEGREE_5;
        const double six[6] = {std::cos(r), std::sin(r), -std::sin(r), std::cos(r), 0, 0};
        return FillTop(m, six, 1);
    }
    m.GetCurrentGState()->Rotate(angle);
    m.Drop(1);
    return 1;
}

// matrix  concat  -                          STACKUNDERFLOW TYPECHECK RANGE
int OpConcat(CFilterEPS& m) {
    Operands in(m);
    double six[6];
    ReadOperand(in, 0, six);
    if (!in) return -1;
    m.GetCurrentGState()->Concat(six);
    m.Drop(1);
    return 1;
}

// matrix1 matrix2 matrix3  concatmatrix  matrix3     STACKUNDERFLOW TYPECHECK RANGE
int OpConcatmatrix(CFilterEPS& m) {
    Operands in(m);
    for (int depth = 0; depth < 3; ++depth) in.Array(depth);
    double second[6];
    double first[6];
    ReadOperand(in, 1, second);
    ReadOperand(in, 2, first);
    if (!in) return -1;
    double a[9];
    double b[9];
    MatFromArray6(first, a);
    MatFromArray6(second, b);
    MatMultiply(a, b, a);
    double six[6];
    MatToArray6(a, six);
    return FillTop(m, six, 2);
}

// x y  transform  x' y'                      STACKUNDERFLOW TYPECHECK RANGE
// x y matrix  transform  x' y'
// The results stand in the number objects of the operands, as reals.
template <void (*Map)(int, double*, const double*) noexcept>
int OpMap(CFilterEPS& m) {
    Operands in(m);
    double matrix[9];
    const int below = TopIsMatrix(in) ? 1 : 0;
    if (below) {
        double six[6];
        ReadOperand(in, 0, six);
        if (in) MatFromArray6(six, matrix);
    } else {
        m.GetCurrentGState()->GetCTM3x3(matrix);
    }
    CNumberElement* y = in.Number(below);
    CNumberElement* x = in.Number(below + 1);
    if (!in) return -1;
    double point[2] = {x->GetReal(), y->GetReal()};
    Map(1, point, matrix);
    m.Drop(below);
    x->SetReal(point[0]);
    y->SetReal(point[1]);
    return 1;
}

// -  initmatrix  -
int OpInitmatrix(CFilterEPS& m) {
    m.GetCurrentGState()->SetCTM(kIdentity);
    return 1;
}

// matrix  identmatrix  matrix                STACKUNDERFLOW TYPECHECK RANGE
// matrix  defaultmatrix  matrix
int OpIdentmatrix(CFilterEPS& m) {
    Operands in(m);
    in.Array(0);
    if (!in) return -1;
    return FillTop(m, kIdentity, 0);
}

// matrix1 matrix2  invertmatrix  matrix2     STACKUNDERFLOW TYPECHECK RANGE
// Departure: a singular matrix is no error.
int OpInvertmatrix(CFilterEPS& m) {
    Operands in(m);
    in.Array(0);
    double six[6];
    ReadOperand(in, 1, six);
    if (!in) return -1;
    double matrix[9];
    MatFromArray6(six, matrix);
    MatInvert(matrix, matrix);
    MatToArray6(matrix, six);
    return FillTop(m, six, 1);
}

// Place 8 of the chain.
constexpr OpRow kCoreRows[] = {
    {"matrix", OpMatrix},
    {"currentmatrix", OpCurrentmatrix},
    {"setmatrix", OpSetmatrix},
    {"translate", OpTranslate},
    {"scale", OpScale},
    {"rotate", OpRotate},
    {"concat", OpConcat},
    {"concatmatrix", OpConcatmatrix},
    {"transform", OpMap<MatTransform>},
};

// clang-format off
// Place 23 of the chain.
constexpr OpRow kRows[] = {
    {"initmatrix", OpInitmatrix},
    {"identmatrix", OpIdentmatrix},
    {"defaultmatrix", OpIdentmatrix},
    {"dtransform", OpMap<MatDTransform>},
    {"itransform", OpMap<MatITransform>},
    {"idtransform", OpMap<MatIDTransform>},
    {"invertmatrix", OpInvertmatrix},
};
// clang-format on

}  // namespace

constinit const OpTable kMatrixCoreOperators{kCoreRows};
constinit const OpTable kMatrixOperators{kRows};

ErrorCode ReadMatrix(const CArrayElement& matrix, double six[6]) {
    if (matrix.GetLength() < MATRIX_LENGTH) return PSERR_RANGE;
    for (int i = 0; i < MATRIX_LENGTH; ++i) {
        const auto* number = As<CNumberElement>(matrix.GetAt(i));
        if (!number) return PSERR_TYPECHECK;
        six[i] = number->GetReal();
    }
    return PSERR_NONE;
}

ErrorCode WriteMatrix(const CArrayElement& matrix, const double six[6]) {
    if (matrix.GetLength() < MATRIX_LENGTH) return PSERR_RANGE;
    for (int i = 0; i < MATRIX_LENGTH; ++i) {
        if (auto* number = As<CNumberElement>(matrix.ChangeAt(i))) {
            number->SetReal(six[i]);
        } else {
            matrix.SetAt(i, NewReal(six[i]));
        }
    }
    return PSERR_NONE;
}
