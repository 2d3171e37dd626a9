// What a name means is remembered from one execution to the next: rows in which a meaning that is out of date would
// show.
#include "support/Program.h"

namespace {

TEST(NameMeaningTest, Definitions) {
    CheckStacks({
        {"in the dictionary on top", "/p {a} def /a 1 def 1 dict begin p p /a 2 def p p end p", "1 1 2 2 1"},
        {"put into a dictionary on the stack", "/p {a} def /a 1 def /d 1 dict def d begin p d /a 2 put p end p",
         "1 2 1"},
        {"put into one below the top",
         "/p {a} def /d 1 dict def d begin 1 dict begin /a 1 def p d /a 2 put p end p end", "1 1 2"},
        {"put into one while it is not there",
         "/p {a} def /a 1 def /d 1 dict def d begin p end d /a 2 put d begin p end", "1 2"},
        {"stored", "/p {a} def /a 1 def 1 dict begin p /a 2 store p end p", "1 2 2"},
        {"copied", "/p {a} def /a 1 def /d 1 dict def d begin p << /a 2 >> d copy pop p end p", "1 2 1"},
        {"undefined again", "/p {a} def /a 1 def /d 1 dict def d begin /a 2 def p d /a undef p end p", "2 1 1"},
        {"undefined altogether", "/p {a} def /a 1 def p userdict /a undef p", "1", PSERR_UNDEFINED},
        {"an operator, hidden and not", "/p {1 2 add} def p /add {mul 10} def p userdict /add undef p", "3 2 10 3"},
        {"an operator, changed in systemdict", "/p {3 4 sub} def p systemdict /sub /add load put p", "-1 7"},
        {"another kind of value", "/p {a} def /a 1 def p /a {2 3} def p /a /add load def p /a (x) def p", "1 5 (x)"},
        {"immediate", "/a 1 def {//a} exec 1 dict begin /a 2 def {//a} exec end {//a} exec", "1 2 1"},
    });
}

TEST(NameMeaningTest, DictionariesComeAndGo) {
    CheckStacks({
        {"one that had the key before",
         "/p {a} def /a 1 def /d 1 dict def d /a 2 put p d begin p end p d begin p end p", "1 2 1 2 1"},
        {"two by turns", "/p {a} def /d << /a 1 >> def /e << /a 2 >> def 3 {d begin p end e begin p end} repeat",
         "1 2 1 2 1 2"},
        {"two in either order",
         "/p {a} def /d << /a 1 >> def /e << /a 2 >> def 2 {d begin e begin p end end e begin d begin p end end} "
         "repeat",
         "2 1 2 1"},
        {"three in one place",
         "/p {a} def /d << /a 1 >> def /e << /a 2 >> def /f << /a 3 >> def 2 {d begin p end e begin p end f begin p "
         "end} "
         "repeat",
         "1 2 3 1 2 3"},
        {"one on itself", "/p {a} def /a 0 def /d << /a 1 >> def d begin d begin p end p end p", "1 1 0"},
        {"new ones without the key and with it", "/p {a} def /a 1 def 2 {1 dict begin p /a 2 def p end} repeat p",
         "1 2 1 2 1"},
        {"all at once", "/p {a} def /a 1 def 1 dict begin 1 dict begin /a 2 def p cleardictstack p", "2 1"},
        {"in the middle of a procedure", "/d << /a 2 >> def /a 1 def /p {a d begin a end a} def p p", "1 2 1 1 2 1"},
    });
}

TEST(NameMeaningTest, SaveLevels) {
    CheckStacks({
        {"a value goes", "/p {a} def /a 1 def p save /a 2 def p exch restore p", "1 2 1"},
        {"a key goes", "/p {a} def save /a 2 def p exch restore p", "2", PSERR_UNDEFINED},
        {"a key that hides another goes", "/p {a} def /a 1 def 1 dict begin save /a 2 def p exch restore p end", "2 1"},
        {"departure: the dictionary on top loses its storage",
         "/p {a} def /a 1 def save 1 dict begin /a 2 def p exch restore p p", "2 1 1"},
        {"new dictionaries where old ones were",
         "/p {a} def /a 0 def 3 {save 1 dict begin /a 5 def p end exch restore p} "
         "repeat",
         "5 0 5 0 5 0"},
        {"a literal array is another one at each level",
         "/a [1] def /p {a} def p 0 get save p 0 9 put p 0 get exch restore p 0 get", "1 9 1"},
    });
}

}  // namespace
