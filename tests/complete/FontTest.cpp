// Fonts in the complete dialect: how they are found, defined and scaled, what programs do to them, and each font type's
// way to its glyphs.
#include <algorithm>
#include <cstdint>

#include "complete/CompleteDialect.h"
#include "complete/FontPrograms.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

std::string Left(const std::string& program) {
    const RunResult result = RunText(program, kComplete);
    EXPECT_EQ(result.error, PSERR_NONE) << program;
    return result.stack;
}

/// The width of a text in the current font.
std::string Width(const std::string& program, const std::string& text = "(A)") {
    return Left(program + " " + text + " stringwidth pop");
}

/// The box of the outline of a text in the current font, from the origin.
std::string Box(const std::string& program, const std::string& text = "(A)") {
    return Left(program + " 0 0 moveto " + text + " false charpath pathbbox");
}

TEST(CompleteFontTest, Dictionaries) {
    CheckStacks(
        {
            {"two names have two fonts", "/Helvetica findfont /Times-Roman findfont eq", "false"},
            {"one name has one", "/Helvetica findfont /Helvetica findfont eq", "true"},
            {"and it is a font of that name", "/Helvetica findfont dup /FontName get exch /FontType get",
             "/Helvetica 1"},
            {"its encoding", "/Helvetica findfont /Encoding get 65 get /Symbol findfont /Encoding get 97 get",
             "/A /alpha"},
            {"a copy keeps what it stands for",
             "/Symbol findfont dup length dict begin {1 index /FID ne {def} {pop pop} ifelse} forall currentdict end"
             " /S exch definefont /.Face known",
             "true"},
            {"a font that is defined is found", "/X << /FontType 3 /FontMatrix matrix >> definefont /X findfont eq",
             "true"},
            {"under any key", "5 << /FontType 3 /FontMatrix matrix >> definefont 5 findfont eq", "true"},
            {"and has an identifier", "/X << /FontType 3 /FontMatrix matrix >> definefont /FID known", "true"},
            {"so does one that was only named, once it is found",
             "FontDirectory /Helvetica known /Helvetica findfont pop FontDirectory /Helvetica known", "false true"},
            {"it stands in FontDirectory",
             "/X << /FontType 3 /FontMatrix matrix >> definefont pop FontDirectory /X known", "true"},
            {"until it is undefined",
             "/X << /FontType 3 /FontMatrix matrix >> definefont pop /X undefinefont FontDirectory /X known", "false"},
            {"or restored",
             "save /X << /FontType 3 /FontMatrix matrix >> definefont pop restore FontDirectory /X known", "false"},
            {"a scaled font shares its entries",
             "/X << /FontType 3 /FontMatrix [1 0 0 2 3 4] /Encoding [/a] >> definefont dup 2 scalefont dup /FontMatrix"
             " get aload pop 7 -1 roll /Encoding get 8 -1 roll /Encoding get eq",
             "2.0 0.0 0.0 4.0 6.0 8.0 true"},
            {"a matrix comes behind the font's own",
             "/X << /FontType 3 /FontMatrix [2 0 0 2 0 0] >> definefont [1 0 3 1 5 6] makefont /FontMatrix get aload "
             "pop",
             "2.0 0.0 6.0 2.0 5.0 6.0"},
            {"the current font is the one that was set",
             "/X << /FontType 3 /FontMatrix matrix >> definefont dup setfont gsave currentfont grestore eq", "true"},
            {"rootfont is the same",
             "/X << /FontType 3 /FontMatrix matrix >> definefont setfont currentfont rootfont eq", "true"},
            {"font types", "42 /FontType resourcestatus {pop pop} if 9 /FMapType resourcestatus", "0 0 true"},
            {"encodings", "/StandardEncoding findencoding StandardEncoding eq", "true"},
            {"no key that is no name", "{null findfont} stopped $error /errorname get", "null true /invalidfont"},
        },
        kComplete);
}

TEST(CompleteFontTest, ChangesBehindTheFirstShowCount) {
    const std::string set = kBoxes + "/Boxes 1000 selectfont (A) stringwidth pop pop gsave ";
    EXPECT_EQ(Width(set + "/Boxes findfont /CharStrings get /A " + kFlatBox + " put"), "600.0");
    EXPECT_EQ(Width(set + "/Boxes findfont /CharStrings get /C " + kFlatBox + " put", "(C)"), "600.0");
    EXPECT_EQ(Width(set + "/Boxes findfont /Encoding 256 array dup 0 1 255 {/B put dup} for pop put"), "500.0")
        << "the scaled font has the old entry";
    EXPECT_EQ(Width(kTypeOneHead + "/.notdef " + kEmpty + "def /A " + kBox + "def " + kTypeOneEnd +
                        "/Boxes findfont dup /Encoding StandardEncoding 256 array copy put 1000 scalefont setfont"
                        " (B) stringwidth pop pop gsave currentfont /Encoding get 66 /A put",
                    "(B)"),
              "500.0");
    // Bytes of a charstring that change in place, and subroutines.
    EXPECT_EQ(Width(set + "/Boxes findfont /CharStrings get /A get 0 " + kFlatBox + " putinterval"), "600.0");
    const std::string byCall = kTypeOneHead + "/A <8B F888 0D 8B 0A 0E> def " + kTypeOneEnd +
                               "/Boxes findfont /Private get /Subrs [<8B 16 F888 06 F950 07 09 0B>] put "
                               "/Boxes 1000 selectfont ";
    EXPECT_EQ(Box(byCall), "0.0 0.0 500.0 700.0");
    EXPECT_EQ(Box(byCall + "(A) stringwidth pop pop 0 0 moveto (A) true charpath newpath /Boxes findfont /Private get"
                           " /Subrs get 0 <8B 16 EF 06 EF 07 09 0B> put"),
              "0.0 0.0 100.0 100.0");
    // Two subsets of one name.
    const std::string first = kTypeOneHead + "/A " + kBox + "def " + kTypeOneEnd + "/Boxes findfont 1000 scalefont ";
    const std::string second = kTypeOneHead + "/A " + kFlatBox + "def " + kTypeOneEnd;
    EXPECT_EQ(Left(first + second +
                   "/Boxes findfont 1000 scalefont setfont (A) stringwidth pop exch setfont "
                   "(A) stringwidth pop"),
              "600.0 500.0");
    // A font that a restore has taken away.
    EXPECT_EQ(Left("save " + kBoxes +
                   "/Boxes 1000 selectfont (A) stringwidth pop exch restore "
                   "{(A) stringwidth} stopped $error /errorname get"),
              "500.0 (A) true /invalidfont");
}

TEST(CompleteFontTest, CharStrings) {
    const auto font = [](const std::string& glyphs) {
        return kTypeOneHead + "/.notdef " + kEmpty + "def " + glyphs + kTypeOneEnd + "/Boxes 1000 selectfont";
    };
    EXPECT_EQ(Width(font("/A " + kFraction + "def")), "555.5");
    EXPECT_EQ(Width(font("/B " + kFraction + "def")), "600.0") << ".notdef stands for it";
    const std::string accented = "/Aacute " + kAccented + "def /acute " + kFlatBox + "def ";
    EXPECT_EQ(Left(font(accented + "/A " + kBox + "def") + " 0 0 moveto /Aacute glyphshow currentpoint"), "500.0 0.0");
    EXPECT_EQ(
        RunText(font(accented + "/A " + kBox + "def") + " 0 0 moveto /Aacute glyphshow", kComplete).entities.size(),
        2U);
    EXPECT_EQ(RunText(font(accented) + " 0 0 moveto /Aacute glyphshow", kComplete).entities.size(), 0U);
    EXPECT_EQ(RunText(font(accented) + " 0 0 moveto /Aacute glyphshow Boxes", kComplete).error, PSERR_UNDEFINED);
    // A part that comes later.
    EXPECT_EQ(RunText(font(accented) + " 0 0 moveto /Aacute glyphshow /Boxes findfont /CharStrings get /A " + kBox +
                          "put /Aacute glyphshow",
                      kComplete)
                  .entities.size(),
              2U);
}

// eexec

TEST(CompleteFontTest, Eexec) {
    const std::string end = "\n0000000000000000000000000000000000000000000000000000000000000000\ncleartomark\n";
    // What stands behind the blank after RD are bytes, whatever they look like.
    const std::string plain =
        "dup /RD {string currentfile exch readstring pop} put /x 4 RD \n)(% def countdictstack currentdict systemdict "
        "eq"
        " mark currentfile closefile\n";
    for (const auto& [name, data] : {std::pair{"binary", Encrypt(plain)}, {"hexadecimal", Hex(Encrypt(plain))}}) {
        SCOPED_TRACE(name);
        for (const int blockSize : {0, 1, 7}) {
            RunSettings settings = kComplete;
            settings.blockSize = blockSize;
            const RunResult result = RunAsFile("%!PS-Adobe-3.0 EPSF-3.0\nuserdict currentfile eexec\n" + data + end +
                                                   "x length 4 eq x 0 get 10 eq and countdictstack 3 eq and "
                                                   "{0 0 moveto 72 0 lineto stroke} if\n",
                                               settings);
            EXPECT_EQ(result.error, PSERR_NONE);
            EXPECT_EQ(result.entities, std::vector<std::string>{"#000000 open L 0,0 25.4,0"});
        }
    }
    EXPECT_EQ(Left("<" + Hex(Encrypt("countdictstack /y 5 def")) + "> eexec countdictstack systemdict /y known"),
              "4 3 true");
    EXPECT_EQ(Left("{<" + Hex(Encrypt("1 add")) + "> eexec} stopped countdictstack exch $error /errorname get"),
              "1 4 true /stackunderflow");
    CheckStacks({{"nothing", "{eexec} stopped", "true"}, {"a number", "{5 eexec} stopped", "5 true"}}, kComplete);
}

// Type 42

std::string Big(std::uint32_t value, int bytes) {
    std::string text;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        text.push_back(static_cast<char>(std::uint64_t{value} >> std::min(shift, 63)));
    return text;
}

/// The description of a box of 500 by 700.
std::string BoxDescription() {
    return Big(1, 2) + Big(0, 4) + Big(500, 2) + Big(700, 2) + Big(3, 2) + Big(0, 2) + std::string("\1\1\1\1", 4) +
           Big(0, 2) + Big(500, 2) + Big(0, 2) + Big(0x10000 - 500, 2) + Big(0, 2) + Big(0, 2) + Big(700, 2) +
           Big(0, 2);
}

/// An sfnt with two glyphs, whose em has 1000 units: nothing, 600 wide, and a box of 500 by 700, 500 wide.
std::string SmallSfnt() {
    const std::string glyph = BoxDescription();
    const std::vector<std::pair<std::string, std::string>> tables = {
        {"glyf", glyph},
        {"head", Big(0x10000, 4) + Big(0, 8) + Big(0x5F0F3CF5, 4) + Big(0, 2) + Big(1000, 2) + Big(0, 16) + Big(0, 4) +
                     Big(500, 2) + Big(700, 2) + Big(0, 2) + Big(8, 2) + Big(2, 2) + Big(1, 2) + Big(0, 2)},
        {"hhea", Big(0x10000, 4) + Big(800, 2) + Big(0, 26) + Big(0, 2) + Big(2, 2)},
        {"hmtx", Big(600, 2) + Big(0, 2) + Big(500, 2) + Big(0, 2)},
        {"loca", Big(0, 4) + Big(0, 4) + Big(static_cast<std::uint32_t>(glyph.size()), 4)},
        {"maxp", Big(0x10000, 4) + Big(2, 2) + Big(4, 2) + Big(1, 2) + Big(0, 22)},
    };
    std::string head = Big(0x10000, 4) + Big(static_cast<std::uint32_t>(tables.size()), 2) + Big(0, 6);
    std::string body;
    const std::size_t start = head.size() + 16 * tables.size();
    for (const auto& [tag, data] : tables) {
        head += tag + Big(0, 4) + Big(static_cast<std::uint32_t>(start + body.size()), 4) +
                Big(static_cast<std::uint32_t>(data.size()), 4);
        body += data;
        body.resize((body.size() + 3) / 4 * 4, '\0');
    }
    return head + body;
}

/// /Type42, its sfnt in strings of so many bytes with a byte behind each that pads it.
std::string TypeFortyTwo(std::size_t split) {
    const std::string sfnt = SmallSfnt();
    std::string strings;
    for (std::size_t at = 0; at < sfnt.size(); at += split) strings += "<" + Hex(sfnt.substr(at, split)) + "00> ";
    return "/Type42 << /FontType 42 /FontMatrix [1 0 0 1 0 0] /PaintType 0 /FontBBox [0 0 0 0] /Encoding"
           " StandardEncoding /CharStrings << /.notdef 0 /A 1 /B 77 >> /sfnts [" +
           strings + "] >> definefont pop /Type42 1000 selectfont";
}

TEST(CompleteFontTest, TypeFortyTwo) {
    for (const std::size_t split : {std::size_t{4096}, std::size_t{2}, std::size_t{100}}) {
        EXPECT_EQ(Box(TypeFortyTwo(split)), "0.0 0.0 500.0 700.0") << split;
    }
    EXPECT_EQ(Width(TypeFortyTwo(4096)), "500.0");
    EXPECT_EQ(Width(TypeFortyTwo(4096), "(C)"), "600.0") << ".notdef stands for it";
    EXPECT_EQ(Width(TypeFortyTwo(4096), "(B)"), "600.0") << "there is no such glyph";
    EXPECT_EQ(Width("/X << /FontType 42 /FontMatrix [1 0 0 1 0 0] /Encoding StandardEncoding /CharStrings << /A 1 >>"
                    " /sfnts [<00> (none) 5] >> definefont setfont"),
              "0.0");
}

// What a driver sends for a text is added to the directory as the pages need it.
TEST(CompleteFontTest, GlyphDirectories) {
    const std::string box = "<" + Hex(BoxDescription()) + ">";
    const auto font = [](const std::string& entries) {
        return "/Type42 << /FontType 42 /FontMatrix [1 0 0 1 0 0] /PaintType 0 /FontBBox [0 0 0 0] /Encoding"
               " StandardEncoding /CharStrings << /.notdef 0 /A 3 /B 4 >> /sfnts [<" +
               Hex(SmallSfnt()) + ">] " + entries + " >> definefont pop /Type42 1000 selectfont";
    };
    const std::string empty = font("/GlyphDirectory 1 dict");
    EXPECT_EQ(Box(font("/GlyphDirectory << 3 " + box + " >>")), "0.0 0.0 500.0 700.0");
    EXPECT_EQ(Box(font("/GlyphDirectory [() () () " + box + "]")), "0.0 0.0 500.0 700.0");
    EXPECT_EQ(Left(empty + " 0 0 moveto (A) false charpath currentfont /GlyphDirectory get 3 " + box + " put newpath" +
                   " 0 0 moveto (A) false charpath pathbbox"),
              "0.0 0.0 500.0 700.0");
    EXPECT_EQ(Width(font("/MetricsCount 2 /GlyphDirectory << 3 <" + Hex(Big(800, 2) + Big(0, 2) + BoxDescription()) +
                         "> >>")),
              "800.0");
    EXPECT_EQ(Width(font("/MetricsCount 4 /GlyphDirectory << 3 <" +
                         Hex(Big(7, 2) + Big(8, 2) + Big(800, 2) + Big(0, 2) + BoxDescription()) + "> >>")),
              "800.0");
    EXPECT_EQ(Width(font("/GlyphDirectory 5")), "600.0") << "which is no directory";
    // Keys, values and data of all kinds make no glyph.
    for (const char* directory : {"<< /a (b) -1 (c) 3 5 70000 (d) >>", "[5 (a) null (b)]"})
        EXPECT_EQ(Left(font(std::string("/MetricsCount 9 /GlyphDirectory ") + directory) +
                       " 0 0 moveto (AB) false charpath {} {} {} {} pathforall"),
                  "0.0 0.0")
            << directory;
}

// Composite fonts

/// A composite font of Boxes and of a font of twice its size, as /C at 1000.
std::string Composite(const std::string& entries) {
    return kBoxes +
           "/Small /Boxes findfont def /Large /Boxes findfont 2 scalefont def "
           "/C << /FontType 0 /FontMatrix [1 0 0 1 0 0] /FDepVector [Small Large] /Encoding [0 1] " +
           entries + " >> definefont 1000 scalefont setfont";
}

TEST(CompleteFontTest, Mappings) {
    for (const auto& [entries, text, width] : std::vector<std::array<std::string, 3>>{
             {"/FMapType 2", "<0041 0141 0142>", "2700.0"},
             {"/FMapType 3", "<41 FF01 41 41 FF00 42>", "3100.0"},
             {"/FMapType 3 /EscChar 7", "<41 0701 41>", "1500.0"},
             {"/FMapType 4", "<41 C1>", "1500.0"},
             {"/FMapType 5", "<0041 00C1>", "1500.0"},
             {"/FMapType 6 /SubsVector <00 80 80>", "<41 C1>", "1500.0"},
             {"/FMapType 6 /SubsVector <01 0080>", "<0041 00C1>", "1500.0"},
             {"/FMapType 7", "<41 FF01 41>", "1500.0"},
             {"/FMapType 8", "<41 0E 41 0F 41>", "2000.0"},
             {"/FMapType 8 /ShiftOut 1 /ShiftIn 2", "<41 01 41 02 41>", "2000.0"},
         }) {
        EXPECT_EQ(Width(Composite(entries), text), width) << entries;
    }
    const std::string name = " stopped $error /errorname get 3 1 roll pop pop";
    EXPECT_EQ(Left(Composite("/FMapType 2") + " {<00> stringwidth}" + name), "/rangecheck");
    EXPECT_EQ(Left(Composite("/FMapType 2") + " {<0541> stringwidth}" + name), "/rangecheck");
    EXPECT_EQ(Left(Composite("/FMapType 10") + " {<0541> stringwidth}" + name), "/invalidfont");
    EXPECT_EQ(Left(Composite("/FMapType 2") + " 0 0 moveto {{} <0041> kshow}" + name + " exch pop"), "/invalidfont");
    // Only the innermost composite font's matrix goes with a base font's; the scale reaches it once.
    EXPECT_EQ(Width(kBoxes + "/In << /FontType 0 /FMapType 4 /FontMatrix [1 0 0 1 0 0] /Encoding [0 0] /FDepVector"
                             " [/Boxes findfont] >> definefont pop /Out << /FontType 0 /FMapType 2 /FontMatrix"
                             " [1 0 0 1 0 0] /Encoding [0] /FDepVector [/In findfont] >> definefont 1000 scalefont"
                             " setfont",
                    "<0041>"),
              "500.0");
    // In the procedure of cshow the font is the descendant.
    EXPECT_EQ(Left(Composite("/FMapType 2") + " {currentfont /FontType get rootfont /FontType get} <0041> cshow"
                                              " currentfont /FontType get"),
              "65 500.0 0.0 1 0 0");
}

TEST(CompleteFontTest, CidFontsThatAreNotThere) {
    CheckStacks(
        {
            {"has what programs copy",
             "/Absent-W5 /CIDFont findresource"
             " dup /CIDFontName get exch /CIDSystemInfo get /Registry get",
             "/Absent-W5 (Adobe)"},
            {"is the same one again", "/Absent-W5 /CIDFont findresource /Absent-W5 /CIDFont findresource eq", "true"},
            {"isn't told to be there", "/Absent-W5 /CIDFont resourcestatus", "false"},
            {"has no glyphs",
             "/C /Identity-H [/Absent-W5] composefont 10 scalefont setfont 3 4 moveto (\\000A) show currentpoint",
             "3.0 4.0"},
            {"a font of that name goes first",
             "/Own << /FontType 3 /FontMatrix [1 0 0 1 0 0] /Encoding [] /FontBBox [0 0 1 1] >> definefont pop"
             " {/Own /CIDFont findresource} stopped $error /errorname get 4 1 roll pop pop pop",
             "/undefinedresource"},
        },
        kComplete);
}

TEST(CompleteFontTest, CMaps) {
    const std::string cmap =
        kBoxes +
        "/CIDInit /ProcSet findresource begin 12 dict begin begincmap /CMapName /M def /CMapType 1 def"
        " 2 begincodespacerange <00> <7F> <8000> <FFFF> endcodespacerange"
        " 1 beginbfrange <41> <42> <41> endbfrange 1 beginbfchar <30> /A endbfchar"
        " 1 beginbfrange <8000> <8001> [/B <41>] endbfrange"
        " 1 usefont 1 beginbfchar <50> <41> endbfchar"
        " endcmap currentdict end end /M exch /CMap defineresource pop"
        " /C /M [/Boxes /Boxes findfont 2 scalefont] composefont 1000 scalefont setfont";
    for (const auto& [text, width] : std::vector<std::pair<std::string, std::string>>{
             {"<41>", "500.0"},
             {"<42>", "600.0"},
             {"<30>", "500.0"},
             {"<8000>", "600.0"},
             {"<8001>", "500.0"},
             {"<50>", "1000.0"},
             {"<41 8000 50>", "2100.0"},
         }) {
        EXPECT_EQ(Width(cmap, text), width) << text;
    }
    CheckStacks(
        {
            {"there from the start", "/Identity-V /CMap findresource /WMode get", "1"},
            {"usecmap of none", "{/None usecmap} stopped $error /errorname get", "/None true /undefinedresource"},
            {"usecmap of a number", "{5 usecmap} stopped $error /errorname get", "5 true /typecheck"},
            {"an odd range", "{mark (A) endcodespacerange} stopped $error /errorname get count",
             "mark (A) true /rangecheck 4"},
            {"no mark", "{endcidchar} stopped $error /errorname get", "true /unmatchedmark"},
            {"no string", "{mark 5 6 endcidchar} stopped $error /errorname get", "mark 5 6 true /typecheck"},
            {"no font number", "{-1 usefont} stopped $error /errorname get", "-1 true /rangecheck"},
        },
        kComplete);
}

}  // namespace
