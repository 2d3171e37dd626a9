// The coordinate operators.
#include "graphics/Matrix.h"

#include "support/Program.h"

namespace {

TEST(MatrixTest, FillsTheNumbersOfItsOperand) {
    CheckStacks({
        {"departure: matrix is reals", "matrix dup 1 get type", "[1.0 0.0 0.0 1.0 0.0 0.0] /realtype"},
        {"each call makes another", "matrix dup 0 9 put matrix", "[9 0.0 0.0 1.0 0.0 0.0] [1.0 0.0 0.0 1.0 0.0 0.0]"},
        {"identmatrix", "[1 2 3 4 5 6] identmatrix", "[1.0 0.0 0.0 1.0 0.0 0.0]"},
        {"defaultmatrix is the identity under any CTM", "2 3 scale [1 2 3 4 5 6] defaultmatrix",
         "[1.0 0.0 0.0 1.0 0.0 0.0]"},
        {"currentmatrix", "2 3 scale 4 5 translate matrix currentmatrix", "[2.0 0.0 0.0 3.0 8.0 15.0]"},
        {"every copy sees it", "[1 2 3 4 5 6] dup currentmatrix pop", "[1.0 0.0 0.0 1.0 0.0 0.0]"},
        {"an executable array", "{1 2 3 4 5 6} cvlit cvx currentmatrix", "{1.0 0.0 0.0 1.0 0.0 0.0}"},
        {"elements that are no numbers", "6 array currentmatrix", "[1.0 0.0 0.0 1.0 0.0 0.0]"},
        {"further elements stay", "[1 2 3 4 5 6 /more] identmatrix", "[1.0 0.0 0.0 1.0 0.0 0.0 /more]"},
        {"a view", "[8 1 2 3 4 5 6 9] dup 1 6 getinterval identmatrix pop", "[8 1.0 0.0 0.0 1.0 0.0 0.0 9]"},
        {"too short", "[1 2 3 4 5] identmatrix", "[1 2 3 4 5]", PSERR_RANGE},
        {"a short view of a long array", "[1 2 3 4 5 6 7 8] 0 5 getinterval identmatrix", "[1 2 3 4 5]", PSERR_RANGE},
        {"translate", "4 5 matrix translate", "[1.0 0.0 0.0 1.0 4.0 5.0]"},
        {"scale", "4 5 matrix scale", "[4.0 0.0 0.0 5.0 0.0 0.0]"},
        {"concatmatrix multiplies from the left", "[2 0 0 2 0 0] [1 0 0 1 3 4] matrix concatmatrix",
         "[2.0 0.0 0.0 2.0 3.0 4.0]"},
        {"concatmatrix into an operand", "[1 0 0 1 3 4] [2 0 0 2 0 0] dup concatmatrix", "[2.0 0.0 0.0 2.0 6.0 8.0]"},
        {"invertmatrix", "[2 0 0 4 6 8] matrix invertmatrix", "[0.5 0.0 0.0 0.25 -3.0 -2.0]"},
        {"departure: singular is no error", "[0 0 0 0 0 0] matrix invertmatrix 0 get dup eq", "false"},
        {"the CTM is not touched", "4 5 matrix translate 7 matrix rotate pop pop matrix currentmatrix",
         "[1.0 0.0 0.0 1.0 0.0 0.0]"},
    });
}

TEST(MatrixTest, MovesTheCtm) {
    CheckStacks({
        {"operations go in front", "2 2 scale 3 4 translate 90 rotate matrix currentmatrix 4 2 getinterval",
         "[6.0 8.0]"},
        {"concat", "2 2 scale [1 0 0 1 3 4] concat 1 1 transform", "8.0 10.0"},
        {"setmatrix", "2 2 scale [1 0 0 1 3 4] setmatrix 1 1 transform", "4.0 5.0"},
        {"initmatrix", "2 2 scale initmatrix 1 1 transform", "1.0 1.0"},
        {"six elements count", "[1 0 0 1 3 4 /more] concat 1 1 transform", "4.0 5.0"},
        {"departure: two values of pi", "90 rotate matrix currentmatrix 0 get 90 matrix rotate 0 get",
         "-4.371139e-08 2.632679e-05"},
        {"not six", "[1 0 0 1 3] setmatrix", "[1 0 0 1 3]", PSERR_RANGE},
        {"no numbers", "6 array concat", "[null null null null null null]", PSERR_TYPECHECK},
    });
}

TEST(MatrixTest, MapsPoints) {
    CheckStacks({
        {"transform by the CTM", "2 3 scale 4 5 translate 1 1 transform", "10.0 18.0"},
        {"transform by a matrix", "1 1 [2 0 0 3 8 15] transform", "10.0 18.0"},
        {"dtransform", "2 3 scale 4 5 translate 1 1 dtransform 1 1 [2 0 0 3 8 15] dtransform", "2.0 3.0 2.0 3.0"},
        {"itransform", "2 4 scale 4 5 translate 10 24 itransform 10 24 [2 0 0 4 8 20] itransform", "1.0 1.0 1.0 1.0"},
        {"idtransform", "2 4 scale 4 5 translate 2 4 idtransform 2 4 [2 0 0 4 8 20] idtransform", "1.0 1.0 1.0 1.0"},
        {"rotated and back", "30 rotate 7 8 translate 3 5 transform itransform 5 eq exch 3 eq", "true true"},
        {"departure: singular", "0 0 scale 1 1 itransform dup eq exch dup eq", "false false"},
        {"one number", "1 transform", "1", PSERR_STACKUNDERFLOW},
        {"below a number", "(a) 1 transform", "(a) 1", PSERR_TYPECHECK},
        {"below a matrix", "(a) 1 matrix transform", "(a) 1 [1.0 0.0 0.0 1.0 0.0 0.0]", PSERR_TYPECHECK},
    });
}

TEST(MatrixTest, RefusesAllButArrays) {
    for (const char* name :
         {"currentmatrix", "setmatrix", "identmatrix", "defaultmatrix", "concat", "concatmatrix", "translate", "scale",
          "rotate", "transform", "dtransform", "itransform", "idtransform", "invertmatrix"}) {
        const std::string op = name;
        SCOPED_TRACE(op);
        const RunResult packed = RunText("matrix matrix 1 0 0 1 0 0 6 packedarray " + op);
        EXPECT_EQ(packed.error, PSERR_TYPECHECK);
        EXPECT_EQ(packed.stack, "[1.0 0.0 0.0 1.0 0.0 0.0] [1.0 0.0 0.0 1.0 0.0 0.0] [1 0 0 1 0 0]");
        EXPECT_EQ(RunText(op).error, PSERR_STACKUNDERFLOW);
        EXPECT_EQ(RunText("/a " + op).error, PSERR_TYPECHECK);
    }
}

TEST(MatrixTest, InvertsTheFullMatrix) {
    const double m[9] = {2, 1, 0.5, -1, 3, 0.25, 4, 5, 2};
    double inverse[9];
    double product[9];
    MatInvert(m, inverse);
    MatMultiply(m, inverse, product);
    for (int i = 0; i < 9; ++i) EXPECT_NEAR(product[i], i % 4 == 0 ? 1.0 : 0.0, 1e-15);
}

}  // namespace
