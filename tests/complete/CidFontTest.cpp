// CIDFonts, sets of fonts and what CMaps do to their fonts, in the complete dialect: each way from a code to a glyph,
// through programs that define small fonts.
#include "complete/CompleteDialect.h"
#include "complete/FontPrograms.h"
#include "support/CharStrings.h"
#include "support/FontBytes.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

/// What a program leaves on the stack that runs as a file, so that data may stand in it.
std::string Left(const std::string& program) {
    const RunResult result = RunText("<" + Hex(program) + "> 0 () /SubFileDecode filter cvx exec", kComplete);
    EXPECT_EQ(result.error, PSERR_NONE);
    return result.stack;
}

/// Sets /C, the CIDFont /T by the CMap Identity-H, 1000 units large.
const std::string kCompose = " /C /Identity-H [/T] composefont 1000 scalefont setfont ";

std::string Widths(const std::string& text) { return "<" + text + "> {pop cvi exch pop} exch cshow "; }

// CIDFonts of type 2

/// Glyphs 1 to 3: 200 wide with a box of 100, 300 wide with one of 200, and 400 wide, the box of glyph 1 moved by 50.
const std::string kSfnt = MakeSfnt({{".notdef", 0, 100, ""},
                                    {"", 0, 200, "0,0 100,0 100,100 0,100"},
                                    {"", 0, 300, "0,0 200,0 200,200 0,200"},
                                    {"", 0, 400, "+1 50 0"}});

std::string CidFont2(const std::string& sfnt, const std::string& entries) {
    return "/T << /CIDFontName /T /CIDFontType 2 /FontMatrix [1 0 0 1 0 0] /CIDCount 5 /GDBytes 2 /sfnts [<" +
           Hex(sfnt) + ">] " + entries + " >> /CIDFont defineresource pop" + kCompose;
}

TEST(CompleteCidFontTest, CidMaps) {
    for (const auto& [map, widths] : std::vector<std::pair<std::string, std::string>>{
             {"0", "100 200 300 100"},                               // the index itself
             {"1", "200 300 400 200"},                               // an offset, of CID 0, too
             {"<0000 0002 0001 0003>", "100 300 200 400"},           // a string
             {"[<0000> <0002 0001> <0003>]", "100 300 200 400"},     // several
             {"[<0000 0002> <0001>]", "100 300 200 100"},            // one that ends early
             {"<< 1 3 3 1 >>", "100 400 100 200"},                   // a dictionary
             {"<00000000 00000003> /GDBytes 4", "100 400 100 100"},  // numbers of four bytes
             {"<00 03 02> /GDBytes 1", "100 400 300 100"},           // of one
             {"<0000 0009>", "100 100 100 100"},                     // a glyph that there isn't
         }) {
        // The last CID is the fourth of the string's, which the offset takes beyond the glyphs.
        const std::string last = map == "0" ? "0004" : "0003";
        EXPECT_EQ(Left(CidFont2(kSfnt, "/CIDMap " + map) + Widths("0000 0001 0002 " + last)), widths) << map;
    }
    EXPECT_EQ(Left(CidFont2(kSfnt, "/CIDMap 0") + "0 0 moveto <00010003> false charpath pathbbox"),
              "0.0 0.0 350.0 100.0");
}

std::size_t NumberAt(const std::string& bytes, std::size_t at) {
    std::size_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
    return number;
}

/// Takes the glyphs out of sfnt data: the tables of them get other names. Answers the description of each.
std::vector<std::string> TakeGlyphs(std::string& sfnt) {
    const std::size_t glyf = sfnt.find("glyf");
    const std::size_t loca = sfnt.find("loca");
    const std::size_t glyphs = NumberAt(sfnt, glyf + 8);
    const std::size_t offsets = NumberAt(sfnt, loca + 8);
    std::vector<std::string> taken;
    for (std::size_t at = offsets; at + 4 < offsets + NumberAt(sfnt, loca + 12); at += 4) {
        taken.push_back(sfnt.substr(glyphs + NumberAt(sfnt, at), NumberAt(sfnt, at + 4) - NumberAt(sfnt, at)));
    }
    sfnt.replace(glyf, 4, "gone");
    sfnt.replace(loca, 4, "lost");
    return taken;
}

TEST(CompleteCidFontTest, GlyphDirectoriesOfSfnts) {
    std::string sfnt = kSfnt;
    const std::vector<std::string> glyphs = TakeGlyphs(sfnt);
    const std::string box = " 0 0 moveto <0002> false charpath pathbbox newpath ";
    const std::string asDict =
        "/CIDMap 0 /GlyphDirectory << 0 () 1 <" + Hex(glyphs[1]) + "> 2 <" + Hex(glyphs[2]) + "> >>";
    const std::string asArray = "/CIDMap 0 /GlyphDirectory [() <" + Hex(glyphs[1]) + "> <" + Hex(glyphs[2]) + "> null]";
    for (const std::string& entries : {asDict, asArray}) {
        EXPECT_EQ(Left(CidFont2(sfnt, entries) + box + Widths("0001 0002")), "0.0 0.0 200.0 200.0 200 300");
    }
    // Numbers in front of the descriptions: a bearing and an advance of vertical writing, then those of hmtx.
    for (const auto& [count, numbers] : {std::pair{2, "02BC0000"}, {4, "FFFF FFFF 02BC0000"}}) {
        EXPECT_EQ(Left(CidFont2(sfnt, "/CIDMap 0 /MetricsCount " + std::to_string(count) + " /GlyphDirectory << 2 <" +
                                          numbers + Hex(glyphs[2]) + "> >>") +
                       box + Widths("0002")),
                  "0.0 0.0 200.0 200.0 700");
    }
    // A glyph that comes later, and one that takes another's place; the part of a composite one, too.
    const std::string directory = "/T /CIDFont findresource /GlyphDirectory get ";
    EXPECT_EQ(Left(CidFont2(sfnt, asDict) + "0 0 moveto <0003> false charpath {pathbbox} stopped {clear} if newpath " +
                   directory + "3 <" + Hex(glyphs[3]) + "> put 0 0 moveto <0003> false charpath pathbbox newpath " +
                   directory + "1 <" + Hex(glyphs[2]) + "> put 0 0 moveto <0003> false charpath pathbbox"),
              "100.0 0.0 100.0 0.0 50.0 0.0 150.0 100.0 50.0 0.0 250.0 200.0");
    // What is no sfnt gives nothing.
    for (std::size_t size = 0; size < sfnt.size(); size += 7) {
        static_cast<void>(Left(CidFont2(sfnt.substr(0, size), asDict) + "0 0 moveto <0002> show clear"));
    }
}

// CIDFonts of type 0

/// A box of 50, by the subroutine, and a triangle.
std::string WideGlyph() { return AssembleCharString("0 700 hsbw 0 callsubr endchar"); }
std::string SmallGlyph() { return AssembleCharString("0 300 hsbw 10 hlineto 10 vlineto closepath endchar"); }
std::string BoxSubr() { return AssembleCharString("50 hlineto 50 vlineto -50 hlineto closepath return"); }

/// The dictionary of a CIDFont with two font dictionaries: that of the second doubles its glyphs.
std::string CidFont0(const std::string& entries, const std::string& privateEntries) {
    const auto fontDict = [&](const std::string& matrix) {
        return "<< /FontType 1 /PaintType 0 /FontMatrix [" + matrix + "] /Private << /lenIV -1 " + privateEntries +
               " >> >> ";
    };
    return "<< /CIDFontName /T /CIDFontType 0 /FontMatrix [1 0 0 1 0 0] /FontBBox [0 0 0 0] /FDBytes 1 /FDArray [" +
           fontDict(".001 0 0 .001 0 0") + fontDict(".002 0 0 .002 0 0") + "] " + entries + " >> ";
}

const std::string kMeasure = Widths("0001 0002 0003") + "0 0 moveto <0001> false charpath pathbbox";
constexpr const char* kMeasured = "700 600 0 0.0 0.0 50.0 50.0";

TEST(CompleteCidFontTest, StartData) {
    // CID 0 is empty; the map has a byte for the font dictionary and two for the offset, and subroutines are behind it.
    const auto entry = [](std::size_t fontDict, std::size_t offset) {
        return std::string{static_cast<char>(fontDict), '\0', static_cast<char>(offset)};
    };
    constexpr std::size_t subrMap = 12;
    constexpr std::size_t start = subrMap + 4;
    const std::size_t small = start + WideGlyph().size();
    const std::size_t subr = small + SmallGlyph().size();
    const std::size_t end = subr + BoxSubr().size();
    const std::string data = entry(0, start) + entry(0, start) + entry(1, small) + entry(0, subr) +
                             std::string{'\0', static_cast<char>(subr), '\0', static_cast<char>(end)} + WideGlyph() +
                             SmallGlyph() + BoxSubr();
    const std::string head =
        "/CIDInit /ProcSet findresource begin " +
        CidFont0("/CIDMapOffset 0 /GDBytes 2 /CIDCount 3", "/SubrMapOffset 12 /SDBytes 2 /SubrCount 1") +
        "dup length dict copy begin ";
    const std::string size = std::to_string(data.size());
    EXPECT_EQ(Left(head + "(Binary) " + size + " StartData " + data + kCompose + kMeasure), kMeasured);
    EXPECT_EQ(Left(head + "(Hex) " + size + " StartData " + Hex(data) + " >" + kCompose + kMeasure), kMeasured);
    EXPECT_EQ(Left(head + "countdictstack (Binary) " + size + " StartData " + data + " countdictstack"), "5 3");
    CheckStacks(
        {{"a negative length", "{(Hex) -1 StartData} stopped $error /errorname get", "(Hex) -1 true /rangecheck"},
         {"no file to read from", "{(Hex) 5 StartData} stopped $error /errorname get", "(Hex) 5 true /ioerror"},
         {"no font around it", "{5 5 StartData} stopped $error /errorname get", "5 5 true /typecheck"}},
        kComplete);
}

TEST(CompleteCidFontTest, GlyphDirectoriesOfCharStrings) {
    const std::string wide = "<00" + Hex(WideGlyph()) + ">";
    const std::string small = "<01" + Hex(SmallGlyph()) + ">";
    const std::string subrs = "/Subrs [<" + Hex(BoxSubr()) + ">]";
    for (const std::string& directory : {"<< 1 " + wide + " 2 " + small + " >>", "[null " + wide + " " + small + "]",
                                         "[null " + wide + small + "<05>]"}) {
        EXPECT_EQ(Left("/T " + CidFont0("/GlyphDirectory " + directory, subrs) + "/CIDFont defineresource pop" +
                       kCompose + kMeasure),
                  kMeasured)
            << directory;
    }
    EXPECT_EQ(
        Left("/T " + CidFont0("/GlyphDirectory 5 dict", subrs) + "/CIDFont defineresource pop" + kCompose +
             Widths("0001") + "/T /CIDFont findresource /GlyphDirectory get 1 " + wide + " put " + Widths("0001")),
        "0 700");
}

// Sets of fonts

TEST(CompleteCidFontTest, FontSets) {
    // SID 34 is A.
    const std::string glyph = "600 100 200 rmoveto 300 hlineto 400 vlineto endchar";
    const auto set = [](const std::string& cff) {
        return "/FontSetInit /ProcSet findresource begin /Set " + std::to_string(cff.size()) + " StartData " + cff +
               "\n";
    };
    EXPECT_EQ(Left(set(MakeCff({{34, glyph}})) + "/TestFace 1000 selectfont (A) stringwidth pop 0 0 moveto (A) false"
                                                 " charpath pathbbox /Set /FontSet resourcestatus"),
              "600.0 100.0 200.0 400.0 600.0 0 -1 true");
    EXPECT_EQ(Left(set(MakeCff({{34, glyph}})) + "/TestFace findfont dup /FontType get exch /CharStrings get /A known"
                                                 " countdictstack"),
              "2 true 3");
    const std::string box{"\x27\x3b\x8c\x8d\x05"};  // -100 -80 1 2 FontBBox
    EXPECT_EQ(Left(set(MakeCff({{34, glyph}}, {false, box})) + "/TestFace findfont /FontBBox get aload pop"),
              "-100.0 -80.0 1.0 2.0");
    EXPECT_EQ(
        Left("/Times-Italic findfont dup /FontBBox get aload pop 5 -1 roll /FontInfo get dup /ItalicAngle get exch"
             " /isFixedPitch get /Courier findfont /FontInfo get dup /isFixedPitch get exch /UnderlinePosition"
             " get"),
        "-169.0 -217.0 1010.0 883.0 -15.5 false true -100.0");
    EXPECT_EQ(Left(set(MakeCff({{7, glyph}}, {true, ""})) +
                   "/C /Identity-H [/TestFace] composefont 1000 scalefont"
                   " setfont " +
                   Widths("0007 0008")),
              "600 250");
    EXPECT_EQ(Left("/FontSetInit /ProcSet findresource begin {/Set 4 StartData} stopped junk $error /errorname get"),
              "/Set 4 true /invalidfont");
}

// CMaps

TEST(CompleteCidFontTest, MatricesOfFonts) {
    const std::string head = kBoxes + "/CIDInit /ProcSet findresource begin 12 dict begin begincmap /CMapType 1 def ";
    const std::string ranges =
        "1 begincodespacerange <00> <FF> endcodespacerange 1 beginbfrange <41> <42> <41> endbfrange"
        " 1 usefont 1 beginbfchar <61> <41> endbfchar ";
    const std::string end = "endcmap currentdict end end /M exch /CMap defineresource pop ";
    const std::string use =
        "/C /M [/Boxes /Boxes] composefont 1000 scalefont setfont <41 61> {pop cvi exch pop} "
        "exch cshow 0 0 moveto <61> false charpath pathbbox ";
    const std::string matrix = "1 beginusematrix [2 0 0 3 0 0] endusematrix ";
    EXPECT_EQ(Left(head + matrix + ranges + end + use), "500 1000 0.0 0.0 1000.0 2100.0");
    // A CMap that uses that one has it, too, and another one of its own leaves that one as it is.
    const std::string second =
        "/CIDInit /ProcSet findresource begin 12 dict begin begincmap /CMapType 1 def /M usecmap "
        "1 beginusematrix [1 0 0 1 0 0] endusematrix endcmap currentdict end end /N exch /CMap defineresource pop ";
    EXPECT_EQ(Left(head + matrix + ranges + end + second + use), "500 1000 0.0 0.0 1000.0 2100.0");
    EXPECT_EQ(Left(head + "{300 beginusematrix} stopped {5 endusematrix} stopped end end"), "300 true 5 true");
}

}  // namespace
