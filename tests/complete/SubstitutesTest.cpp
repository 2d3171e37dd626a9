// Which face stands for a name. The fonts are small ones in folders of the test's, and fontconfig is told of no others.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "complete/FontPrograms.h"
#include "complete/text/StandardFonts.h"
#include "complete/text/Substitutes.h"
#include "support/CharStrings.h"
#include "support/FontBytes.h"
#include "support/Paths.h"

namespace text {
namespace {

namespace fs = std::filesystem;

/// A folder of fonts, gone with the object.
class FontFolder {
public:
    FontFolder() {
        std::string name = (fs::temp_directory_path() / "fonts-XXXXXX").string();
        m_Path = mkdtemp(name.data());
    }
    FontFolder(const FontFolder&) = delete;
    FontFolder& operator=(const FontFolder&) = delete;
    ~FontFolder() { fs::remove_all(m_Path); }

    [[nodiscard]] std::string Path() const { return m_Path.string(); }
    void Write(const std::string& file, const std::string& bytes) const {
        std::ofstream(m_Path / file, std::ios::binary) << bytes;
    }
    /// A face whose a is as wide as told, to know it by. Its glyph names are own ones, if any.
    void Add(const std::string& postScriptName, int width, const std::string& nameOfA = "") const {
        std::vector<SfntGlyph> glyphs = {{".notdef", 0, 500, ""}, {nameOfA, U'a', width, "0,0 200,0 200,400"}};
        for (char32_t letter = U'b'; letter <= U'z'; ++letter)
            glyphs.push_back({"own" + std::to_string(letter), letter, 300, "0,0 100,0 100,100"});
        glyphs.push_back({"ownmu", U'\u00b5', 300, "0,0 100,0 100,100"});
        Write(postScriptName + ".ttf", MakeSfnt(glyphs, {1000, postScriptName, !nameOfA.empty()}));
    }

private:
    fs::path m_Path;
};

/// fontconfig with the fonts of one folder and nothing else, for as long as the object lives.
class OneSystemFolder {
public:
    explicit OneSystemFolder(const FontFolder& folder) {
        if (const char* old = std::getenv(VARIABLE)) m_Old = old;
        m_Own.Write("fonts.conf", "<?xml version='1.0'?><!DOCTYPE fontconfig SYSTEM 'fonts.dtd'><fontconfig><dir>" +
                                      folder.Path() + "</dir><cachedir>" + m_Own.Path() + "</cachedir></fontconfig>");
        setenv(VARIABLE, (m_Own.Path() + "/fonts.conf").c_str(), 1);
    }
    OneSystemFolder(const OneSystemFolder&) = delete;
    OneSystemFolder& operator=(const OneSystemFolder&) = delete;
    ~OneSystemFolder() {
        if (m_Old)
            setenv(VARIABLE, m_Old->c_str(), 1);
        else
            unsetenv(VARIABLE);
    }

private:
    static constexpr const char* VARIABLE = "FONTCONFIG_FILE";
    FontFolder m_Own;
    std::optional<std::string> m_Old;
};

/// "NimbusSans-Regular 556": the face and the width of its a; "none".
std::string Found(FontCatalogue& catalogue, std::string_view name) {
    const auto found = catalogue.Find(name);
    if (!found) return "none";
    const auto metrics = found->face->Metrics(found->face->GlyphOfName("a"));
    std::string text = found->usedName + " " + std::to_string(metrics ? static_cast<int>(metrics->width.x) : -1);
    if (!found->sameWidths) text += found->fitTo ? " fitted" : " other";
    return text;
}

TEST(SubstitutesTest, TheNameItselfThenEqualMetrics) {
    const FontFolder system;
    const OneSystemFolder only(system);
    system.Add("LiberationSans", 101);
    system.Add("TeXGyreHeros-Regular", 102);
    system.Add("NimbusSans-Bold", 103);
    system.Add("Own-Name", 104);
    system.Add("StandardSymbolsPS", 105);
    FontCatalogue catalogue({});
    EXPECT_EQ(Found(catalogue, "Helvetica"), "TeXGyreHeros-Regular 102");
    EXPECT_EQ(Found(catalogue, "ArialMT"), "TeXGyreHeros-Regular 102");
    EXPECT_EQ(Found(catalogue, "LiberationSans"), "LiberationSans 101");
    EXPECT_EQ(Found(catalogue, "Arial,Bold"), "NimbusSans-Bold 103");
    EXPECT_EQ(Found(catalogue, "Own-Name"), "Own-Name 104");
    EXPECT_EQ(Found(catalogue, "own-name"), "none");
    EXPECT_EQ(Found(catalogue, "Own"), "none");
    EXPECT_EQ(Found(catalogue, "PMW-Music"), "none");
    EXPECT_EQ(Found(catalogue, ""), "none");
    EXPECT_EQ(Found(catalogue, "ZapfDingbats"), "none");
    EXPECT_EQ(catalogue.Find("Symbol")->builtInEncoding, &kSymbolEncoding);
    EXPECT_EQ(catalogue.Find("Helvetica")->builtInEncoding, &kStandardEncoding);
    EXPECT_EQ(catalogue.Find("Own-Name")->builtInEncoding, &kStandardEncoding);
    EXPECT_EQ(catalogue.Find("Helvetica")->face, catalogue.Find("ArialMT")->face);
}

/// A Type 1 font file with one glyph, a, of that width.
std::string TypeOneFile(const std::string& encoding, int width) {
    const auto entry = [](const std::string& charString) {
        return std::to_string(charString.size()) + " RD " + charString + " ND\n";
    };
    const auto glyph = [&entry](int wide) {
        return entry(EncryptCharString(
            AssembleCharString("0 " + std::to_string(wide) + " hsbw 100 hlineto 100 vlineto closepath endchar")));
    };
    const std::string priv =
        "dup /Private 8 dict dup begin /RD {string currentfile exch readstring pop} executeonly def /ND {def} def"
        " /BlueValues [] def /MinFeature {16 16} def /password 5839 def /lenIV 4 def\n"
        "2 index /CharStrings 2 dict dup begin\n/.notdef " +
        glyph(500) + "/a " + glyph(width) +
        "end end readonly put noaccess put dup /FontName get exch definefont pop mark currentfile closefile\n";
    return "%!PS-AdobeFont-1.0: Own-Name 001.001\n11 dict begin\n/FontInfo 4 dict dup begin /ItalicAngle -12 def"
           " /isFixedPitch true def /UnderlinePosition -95 def /UnderlineThickness 40 def end def\n/FontName "
           "/Own-Name"
           " def\n/PaintType 0 def\n/FontType 1 def\n/FontMatrix [0.001 0 0 0.001 0 0] readonly def\n" +
           encoding + "\n/FontBBox {-20 -200 900 800} readonly def\ncurrentdict end\ncurrentfile eexec\n" +
           Encrypt(priv) + "\n" + std::string(64, '0') + "\ncleartomark\n";
}

TEST(SubstitutesTest, OfSeveralFilesTheOneWhoseEncodingIsKnown) {
    const std::string made =
        "/Encoding 256 array def 0 1 255 {Encoding exch /.notdef put} for Encoding 65 [/a] putinterval";
    const std::string plain = "/Encoding 256 array 0 1 255 {1 index exch /.notdef put} for dup 65 /a put readonly def";
    const FontFolder system;
    const OneSystemFolder only(system);
    system.Write("0.pfa", TypeOneFile(made, 101));
    FontCatalogue alone({});
    EXPECT_EQ(Found(alone, "Own-Name"), "Own-Name 101");
    EXPECT_EQ(alone.Find("Own-Name")->builtInEncoding, &kStandardEncoding);
    system.Write("1.pfa", TypeOneFile(plain, 102));
    FontCatalogue both({});
    EXPECT_EQ(Found(both, "Own-Name"), "Own-Name 102");
    EXPECT_EQ((*both.Find("Own-Name")->builtInEncoding)[65], "a");
    EXPECT_EQ((*both.Find("Own-Name")->builtInEncoding)[66], ".notdef");

    const auto traits = both.Find("Own-Name")->face->Traits();
    ASSERT_TRUE(traits);
    EXPECT_EQ(traits->boxMin, (geometry::Point{-20, -200}));
    EXPECT_EQ(traits->boxMax, (geometry::Point{900, 800}));
    EXPECT_EQ(traits->italicAngle, -12);
    EXPECT_TRUE(traits->isFixedPitch);
    EXPECT_EQ(traits->underlinePosition, -95);
    EXPECT_EQ(traits->underlineThickness, 40);
}

TEST(SubstitutesTest, FoldersGoFirst) {
    const FontFolder system;
    const OneSystemFolder only(system);
    const FontFolder first;
    const FontFolder second;
    system.Add("Helvetica", 101);
    second.Add("LiberationSans", 102);
    second.Add("Courier", 103);
    first.Add("Courier", 104);
    first.Write("broken.ttf", "no font");
    FontCatalogue catalogue({first.Path(), second.Path(), "/nowhere"});
    EXPECT_EQ(Found(catalogue, "Helvetica"), "LiberationSans 102");
    EXPECT_EQ(Found(catalogue, "ABCDEF+LiberationSans"), "LiberationSans 102");
    EXPECT_EQ(Found(catalogue, "ABCDEf+LiberationSans"), "Helvetica 101 other") << "no tag of a subset";
    EXPECT_EQ(Found(catalogue, "Courier"), "Courier 104");
}

TEST(SubstitutesTest, OfTheSameClassFittedToTheStandardWidths) {
    const FontFolder system;
    const OneSystemFolder only(system);
    system.Add("Anything", 200);
    FontCatalogue catalogue({});
    EXPECT_EQ(Found(catalogue, "Helvetica"), "Anything 556 fitted");
    EXPECT_EQ(Found(catalogue, "TimesNewRomanPS-BoldMT"), "Anything 500 fitted");
    EXPECT_EQ(Found(catalogue, "Courier-BoldOblique"), "Anything 600 fitted");
    EXPECT_EQ(Found(catalogue, "Palatino-Roman"), "Anything 200 other");
    EXPECT_EQ(Found(catalogue, "Verdana-Bold"), "Anything 200 other");
    EXPECT_EQ(Found(catalogue, "Symbol"), "none");
    EXPECT_EQ(Found(catalogue, "PMW-Music"), "none");
    FontFace& courier = *catalogue.Find("Courier")->face;
    EXPECT_EQ(TextOf(*courier.Outline(courier.GlyphOfName("a"))), "m 0 0 l 600 0 l 600 400 z");
    const FontFolder none;
    const OneSystemFolder nothing(none);
    FontCatalogue empty({});
    EXPECT_EQ(Found(empty, "Helvetica"), "none");
}

TEST(SubstitutesTest, ClassesWithoutRulesOfTheSystem) {
    const FontFolder system;
    const OneSystemFolder only(system);
    for (const char* face : {"Aardvark", "FreeMono", "FreeSans", "FreeSerif", "Zebra"}) system.Add(face, 200);
    FontCatalogue catalogue({});
    EXPECT_EQ(Found(catalogue, "Helvetica-Bold"), "FreeSans 556 fitted");
    EXPECT_EQ(Found(catalogue, "Times-Italic"), "FreeSerif 500 fitted");
    EXPECT_EQ(Found(catalogue, "LucidaSans-Typewriter"), "FreeMono 200 other");
}

TEST(SubstitutesTest, GlyphsByTheNamesThatEncodingsUse) {
    const FontFolder system;
    const OneSystemFolder only(system);
    system.Add("Nameless", 101);
    system.Add("Named", 102, "a");
    system.Add("Named-Otherwise", 103, "glyph1");
    FontCatalogue catalogue({});
    for (const char* name : {"Nameless", "Named", "Named-Otherwise"}) {
        SCOPED_TRACE(name);
        FontFace& face = *catalogue.Find(name)->face;
        EXPECT_EQ(face.GlyphOfName("a"), 1);
        EXPECT_EQ(face.NameOfGlyph(1), "a");
        EXPECT_EQ(face.NameOfGlyph(face.GlyphOfName("mu")), "mu");
        EXPECT_EQ(face.GlyphOfName("b"), 2);
        EXPECT_EQ(face.GlyphOfName("B"), FontFace::NO_GLYPH);
        EXPECT_EQ(face.Name(), name);
    }
}

TEST(SubstitutesTest, StandardNames) {
    struct Case {
        const char* name;
        const char* face;  ///< the first one; none for another name
    };
    for (const Case& c : {Case{"Helvetica-BoldOblique", "Helvetica-BoldOblique"},
                          {"Arial-BoldItalicMT", "Helvetica-BoldOblique"},
                          {"Arial", "Helvetica"},
                          {"Arial,Italic", "Helvetica-Oblique"},
                          {"Helvetica-Narrow-Bold", "NimbusSansNarrow-Bold"},
                          {"HelveticaNarrow-Bold", "NimbusSansNarrow-Bold"},
                          {"Helvetica-Condensed-BoldOblique", "NimbusSansNarrow-BoldOblique"},
                          {"ArialNarrow", "NimbusSansNarrow-Regular"},
                          {"Times", "Times-Roman"},
                          {"Times-Roman", "Times-Roman"},
                          {"TimesNewRomanPSMT", "Times-Roman"},
                          {"TimesNewRomanPS-BoldItalicMT", "Times-BoldItalic"},
                          {"TimesNewRoman,BoldItalic", "Times-BoldItalic"},
                          {"CourierNewPS-BoldMT", "Courier-Bold"},
                          {"CourierNew", "Courier"},
                          {"AvantGarde-DemiOblique", "AvantGarde-DemiOblique"},
                          {"Bookman-LightItalic", "Bookman-LightItalic"},
                          {"NewCenturySchlbk-Roman", "NewCenturySchlbk-Roman"},
                          {"Palatino-BoldItalic", "Palatino-BoldItalic"},
                          {"ZapfChancery-MediumItalic", "ZapfChancery-MediumItalic"},
                          {"Symbol", "Symbol"},
                          {"ZapfDingbats", "ZapfDingbats"},
                          {"NimbusSanL-Regu", "Helvetica"},
                          {"LiberationSerif-BoldItalic", "Times-BoldItalic"},
                          {"StandardSymL", "Symbol"},
                          {"HelveticaNeue-Bold", nullptr},
                          {"Helvetica-Light", nullptr},
                          {"ArialBlack", nullptr},
                          {"Symbol-Bold", nullptr},
                          {"ZapfChancery", nullptr},
                          {"", nullptr}}) {
        SCOPED_TRACE(c.name);
        const auto found = FindStandardFont(c.name);
        EXPECT_EQ(found.has_value(), c.face != nullptr);
        if (found && c.face) {
            EXPECT_EQ(found->faces.front(), c.face);
        }
    }
}

TEST(SubstitutesTest, WordsThatTellTextFaces) {
    using Family = FaceClass::Family;
    const auto classOf = [](std::string_view name) {
        const auto found = ClassOfName(name);
        if (!found) return std::string("none");
        return std::string(found->family == Family::Mono    ? "mono"
                           : found->family == Family::Serif ? "serif"
                                                            : "sans") +
               (found->isBold ? " bold" : "") + (found->isItalic ? " italic" : "");
    };
    EXPECT_EQ(classOf("LucidaSans-TypewriterBold"), "mono bold");
    EXPECT_EQ(classOf("Verdana-BoldItalic"), "sans bold italic");
    EXPECT_EQ(classOf("HelveticaNeue"), "sans");
    EXPECT_EQ(classOf("AGaramond-Italic"), "none");  // one word: no capital begins another
    EXPECT_EQ(classOf("Adobe-Garamond-Italic"), "serif italic");
    EXPECT_EQ(classOf("DejaVuSansMono-Oblique"), "mono italic");
    EXPECT_EQ(classOf("MonotypeSorts"), "none");
    EXPECT_EQ(classOf("PMW-Music"), "none");
    EXPECT_EQ(classOf("TimesMath-Symbols"), "none");
    EXPECT_EQ(classOf("GothicBBB-Medium-90ms-RKSJ-H"), "none");  // codes of two bytes
}

}  // namespace
}  // namespace text
