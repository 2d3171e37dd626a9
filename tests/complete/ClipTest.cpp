// The clip of the complete dialect: the page, what cuts it, and what of it is told.
#include "complete/CompleteDialect.h"
#include "support/Program.h"

namespace {

constexpr RunSettings kComplete{.dialect = MakeDialect<CCompleteDialect>};

TEST(CompleteClipTest, Regions) {
    CheckStacks(
        {
            {"the page", "clippath pathbbox", "0.0 0.0 612.0 792.0"},
            {"in user space", "2 2 scale clippath pathbbox", "0.0 0.0 306.0 396.0"},
            {"closed", "clippath {pop pop /m} {pop pop /l} {} {/h} pathforall", "/m /l /l /l /h"},
            {"a rectangle", "36 36 72 144 rectclip clippath pathbbox", "36.0 36.0 108.0 180.0"},
            {"rectangles of an array", "[0 0 9 9 36 36 9 9] rectclip clippath pathbbox", "0.0 0.0 45.0 45.0"},
            {"rectclip empties the path", "9 9 moveto 0 0 9 9 rectclip {currentpoint} stopped", "true"},
            {"clip leaves the path", "9 18 moveto 18 18 lineto 18 36 lineto clip currentpoint", "18.0 36.0"},
            {"a clip of a clip", "0 0 72 72 rectclip 36 36 72 72 rectclip clippath pathbbox", "36.0 36.0 72.0 72.0"},
            {"beyond the page", "-36 -36 72 72 rectclip clippath pathbbox", "0.0 0.0 36.0 36.0"},
            {"the other rule",
             "0 0 moveto 72 0 lineto 72 72 lineto 0 72 lineto closepath 36 0 moveto 72 0 lineto 72 72 lineto 36 72 "
             "lineto closepath eoclip clippath pathbbox 4 {round 4 1 roll} repeat",
             "0.0 0.0 36.0 72.0"},
            {"nothing left has a point", "newpath clip clippath pathbbox 3 {pop} repeat type", "realtype"},
            {"initclip", "0 0 9 9 rectclip initclip clippath pathbbox", "0.0 0.0 612.0 792.0"},
            {"initgraphics", "0 0 9 9 rectclip initgraphics clippath pathbbox", "0.0 0.0 612.0 792.0"},
            {"gsave", "gsave 0 0 9 9 rectclip grestore clippath pathbbox", "0.0 0.0 612.0 792.0"},
            {"save", "save 0 0 9 9 rectclip restore clippath pathbbox", "0.0 0.0 612.0 792.0"},
            {"a state object", "0 0 36 36 rectclip gstate initclip setgstate clippath pathbbox", "0.0 0.0 36.0 36.0"},
            {"clipsave", "0 0 36 36 rectclip clipsave 0 0 9 9 rectclip cliprestore clippath pathbbox",
             "0.0 0.0 36.0 36.0"},
            {"one within the other",
             "0 0 36 36 rectclip clipsave 0 0 18 18 rectclip clipsave 0 0 9 9 rectclip cliprestore cliprestore "
             "clippath pathbbox",
             "0.0 0.0 36.0 36.0"},
            {"a clipsave before gsave stays",
             "0 0 36 36 rectclip clipsave gsave 0 0 9 9 rectclip cliprestore 0 0 18 18 rectclip cliprestore clippath "
             "pathbbox grestore",
             "0.0 0.0 36.0 36.0"},
            {"cliprestore alone", "cliprestore clippath pathbbox", "0.0 0.0 612.0 792.0"},
            {"no end of clipsave", "{clipsave} loop", "", PSERR_RANGE},
            {"operands come back", "{1 2 (a) 4 rectclip} stopped", "1 2 (a) 4 true"},
            {"three numbers", "{[1 2 3] rectclip} stopped", "[1 2 3] true"},
            {"the page device", "<</PageSize [200 100]>> setpagedevice clippath pathbbox", "0.0 0.0 200.0 100.0"},
            {"a page device without a size", "<</Duplex true>> setpagedevice clippath pathbbox", "0.0 0.0 612.0 792.0"},
        },
        kComplete);
}

/// The page of a file, drawn as its diagonal.
std::string PageOf(const std::string& head, const std::string& tail = "") {
    const RunResult result = RunAsFile(head + "clippath pathbbox newpath moveto lineto stroke\n" + tail, kComplete);
    return result.entities.size() == 1 ? result.entities[0] : "";
}

TEST(CompleteClipTest, PageOfTheFile) {
    const std::string a = PageOf("%!PS\n%%BoundingBox: 0 36 72 144\n");
    EXPECT_EQ(a, "#000000 open L 25.4,50.8 0,12.7");
    EXPECT_EQ(PageOf("%!PS-Adobe-3.0 EPSF-3.0\r%%Title: x\r%%BoundingBox:0 36.0 72 144\r%%EndComments\r"), a);
    EXPECT_EQ(PageOf("%!PS\n%%BoundingBox: (atend)\n", "%%Trailer\n%%BoundingBox: 0 36 72 144\n%%EOF\n"), a);
    const std::string letter = "#000000 open L 215.9,279.4 0,0";
    EXPECT_EQ(PageOf("%!PS\n"), letter);
    EXPECT_EQ(PageOf("%!PS\n%%BoundingBox: 1 2 x\n"), letter);
    EXPECT_EQ(PageOf("%!PS\n%%BoundingBox: 72 72 0 0\n"), letter);
    EXPECT_EQ(PageOf("%!PS\n%%BoundingBox: (atend)\n"), letter);
    EXPECT_EQ(PageOf("%!PS\n%%EndComments\n%%BoundingBox: 0 36 72 144\n"), letter);
}

TEST(CompleteClipTest, CountsWhatItWouldCut) {
    struct Case {
        const char* name;
        const char* program;
        int clips;
    };
    for (const Case& c : {
             Case{"inside", "0 0 72 72 rectclip 9 9 moveto 63 9 lineto stroke", 0},
             Case{"on the border", "0 0 72 72 rectclip 0 0 72 72 rectfill", 0},
             Case{"across", "0 0 72 72 rectclip 9 9 moveto 144 9 lineto stroke", 1},
             Case{"each once", "0 0 72 72 rectclip 2 {9 9 moveto 144 9 lineto stroke} repeat", 1},
             Case{"a triangle",
                  "0 0 moveto 72 0 lineto 0 72 lineto clip newpath 9 9 moveto 9 18 lineto stroke 60 60 moveto 60 9 "
                  "lineto stroke",
                  1},
             Case{"the page is no clip", "-9 -9 moveto 9 9 lineto stroke clipsave -9 -9 moveto 9 9 lineto stroke", 0},
             Case{"two", "gsave 0 0 9 9 rectclip 0 0 18 18 rectfill grestore 0 0 9 9 rectclip 0 0 18 18 rectfill", 2},
         }) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(RunAsFile("%!PS\n" + std::string(c.program) + "\n", kComplete).report.leftOut.nClips, c.clips);
    }
}

}  // namespace
