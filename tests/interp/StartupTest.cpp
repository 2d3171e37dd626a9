// The dictionaries that a program finds, and that one machine leaves nothing behind for the next.
#include "objects/Body.h"
#include "objects/Number.h"
#include "support/Program.h"

namespace {

TEST(StartupTest, WellKnownEntries) {
    CheckStacks({
        {"about itself", "version languagelevel product revision", "(3010) 3 (Orvelle 5.0) 704"},
        {"product in both", "statusdict /product get product eq", "true"},
        {"departure: encodings are empty", "StandardEncoding 65 get ISOLatin1Encoding length", "/.notdef 256"},
        {"departure: operators are entries", "systemdict /add get type systemdict /true get type",
         "/operatortype /operatortype"},
        {"the dictionary stack", "countdictstack currentdict userdict eq currentglobal", "3 true false"},
        {"what is global", "systemdict gcheck userdict gcheck globaldict gcheck statusdict gcheck",
         "true false true false"},
        {"errordict", "errordict length errordict /typecheck get xcheck", "28 true"},
        {"$error", "$error length $error /newerror get", "6 false"},
        {"the internal dictionary", "1183615869 internaldict /superexec known", "true"},
        {"departure: superexec is refused", "{} 1183615869 internaldict /superexec get exec", "{}", PSERR_UNSUPPORTED},
        {"departure: the default font", "/Any findfont dup /FontType get exch /FontName get", "1 /Helvetica"},
        {"departure: its numbers",
         "/Any findfont dup /PaintType get exch dup /UniqueID get exch dup /WMode get exch /FontBBox get",
         "0 5020902 0 [-174 -285 1001 953]"},
        {"departure: its matrix and encoding",
         "/Any findfont dup /FontMatrix get exch /Encoding get dup length exch {/.notdef eq {} {(other)} ifelse} "
         "forall",
         "[0.001 0.0 0.0 0.001 0.0 0.0] 256"},
        {"departure: its FontInfo",
         "/Any findfont dup length exch /FontInfo get dup length exch "
         "[/versiont /Notice /FullName /FamilyName /Weight /ItalicAngle /isFixedPitch /UnderlinePosition "
         "/UnderlineThickness] {1 index exch get exch} forall pop",
         "9 9 (1.05) () () () (Regular) 0.0 false -151 50"},
        {"departure: capacities", "systemdict maxlength userdict maxlength", "348 200"},
    });
}

TEST(StartupTest, MachinesStartAfresh) {
    EXPECT_EQ(RunText("true setglobal save save 5 {1} repeat exit /x 1 def nosuch").error, PSERR_UNDEFINED);
    EXPECT_EQ(RunText("currentglobal save pop save pop save pop save pop 3 {7} repeat /x where").stack,
              "false 7 7 7 false");
    EXPECT_EQ(RunText("5001 {1} repeat count").error, PSERR_NONE);
    EXPECT_EQ(g_nNumberPoolSize, NUMBER_POOL_STEP);
    EXPECT_EQ(g_nSaveLevel, 0);
    EXPECT_EQ(g_RegistryStack.At(PLACE_GLOBAL), nullptr);
    EXPECT_EQ(g_RegistryStack.At(PlaceOfLevel(0)), nullptr);
}

}  // namespace
