// Images: that their data is read over to the right byte and that nothing is drawn.
#include "support/Program.h"

namespace {

constexpr const char* kHeader = "%!PS-Adobe-3.0 EPSF-3.0\n";

/// What is drawn by a file whose image is followed by its data and by a line.
std::string DrawnBehind(const std::string& image, const std::string& data) {
    const RunResult result = RunAsFile(kHeader + image + "\n" + data + " 0 0 moveto 72 0 lineto stroke\n");
    EXPECT_EQ(result.error, PSERR_NONE) << image;
    return result.entities.empty() ? "" : result.entities.front();
}

TEST(ImageTest, Procedures) {
    CheckStacks({
        {"as often as need be", "/n 0 def 10 10 8 matrix {/n n 1 add def (0123456789)} image n", "10"},
        {"whole bytes a row", "/n 0 def 9 3 1 matrix {/n n 1 add def (ab)} image n", "3"},
        {"the last string may be too long", "/n 0 def 10 1 8 matrix {/n n 1 add def (abcd)} image n", "3"},
        {"an empty string ends the data", "/n 0 def 10 10 8 matrix {/n n 1 add def ()} image n", "1"},
        {"nothing to read", "0 10 8 matrix {nosuch} image 10 0 8 matrix {nosuch} image", ""},
        {"a mask has one bit a sample", "/n 0 def 10 2 true matrix {/n n 1 add def (a)} imagemask n", "4"},
        {"components", "/n 0 def 2 2 8 matrix {/n n 1 add def (abc)} false 3 colorimage n", "4"},
        {"several in the order of the program", "1 1 8 matrix {/r (a)} {/g (a)} {/b (a)} true 3 colorimage",
         "/r /g /b"},
        {"all of them in each pass", "2 1 8 matrix {/r (a)} {/g (a)} {/b (a)} true 3 colorimage", "/r /g /b /r /g /b"},
        {"departure: no string", "1 1 8 matrix {7} image", "7", PSERR_TYPECHECK},
        {"departure: nothing at all", "1 1 8 matrix {} image", "", PSERR_STACKUNDERFLOW},
        {"a failing one", "1 1 8 matrix {nosuch} image", "", PSERR_UNDEFINED},
        {"a packed one", "1 1 8 matrix (abc) 1 packedarray cvx image", ""},
    });
}

TEST(ImageTest, Strings) {
    CheckStacks({
        {"long enough", "7 5 2 8 matrix (0123456789) image", "7"},
        {"departure: too short", "7 5 2 8 matrix (012345678) image", "7", PSERR_IO},
        {"a mask", "5 2 true matrix (01) imagemask", ""},
        {"departure: components", "1 1 8 matrix (012) false 3 colorimage 1 1 8 matrix (012) false 4 colorimage", "",
         PSERR_IO},
        {"together long enough", "1 1 8 matrix (a) () (bc) true 3 colorimage", ""},
        {"departure: together too short", "1 1 8 matrix (a) () (b) true 3 colorimage", "", PSERR_IO},
        {"departure: one of another type", "1 1 8 matrix (a) 7 (bc) true 3 colorimage", "", PSERR_TYPECHECK},
        {"departure: a total beyond all numbers", "2147483647 dup 32 matrix () false 2147483647 colorimage", "",
         PSERR_IO},
        {"departure: a width below zero", "-1 10 8 matrix (a) image", "", PSERR_RANGE},
        {"departure: two sizes below zero", "-8 10 -8 matrix (a) image", "", PSERR_RANGE},
        {"departure: a height below zero", "10 -1 true matrix (a) imagemask", "", PSERR_RANGE},
    });
}

TEST(ImageTest, Operands) {
    CheckStacks({
        {"no source", "1 1 8 matrix /a image", "1 1 8 [1.0 0.0 0.0 1.0 0.0 0.0] /a", PSERR_TYPECHECK},
        {"a literal array", "[1] imagemask", "[1]", PSERR_TYPECHECK},
        {"no matrix", "1 1 8 6 (a) image", "1 1 8 6 (a)", PSERR_TYPECHECK},
        {"no width", "(x) 1 8 matrix (a) image", "(x) 1 8 [1.0 0.0 0.0 1.0 0.0 0.0] (a)", PSERR_TYPECHECK},
        {"too few", "8 matrix (a) image", "8 [1.0 0.0 0.0 1.0 0.0 0.0] (a)", PSERR_STACKUNDERFLOW},
        {"nothing", "image", "", PSERR_STACKUNDERFLOW},
        {"no components", "1 1 8 matrix (a) false 0 colorimage", "1 1 8 [1.0 0.0 0.0 1.0 0.0 0.0] (a) false 0",
         PSERR_RANGE},
        {"departure: more components than operands", "1 1 8 1 (a) true 2147483647 colorimage",
         "1 1 8 1 (a) true 2147483647", PSERR_STACKUNDERFLOW},
        {"neither true nor false", "1 1 8 1 (a) 1 1 colorimage", "1 1 8 1 (a) 1 1", PSERR_TYPECHECK},
        {"departure: another source of one", "1 1 8 1 /a false 3 colorimage", "", PSERR_UNSUPPORTED},
        {"departure: another first source of several", "1 1 8 1 (a) (a) /a true 3 colorimage", "", PSERR_TYPECHECK},
        {"the path stays", "72 0 moveto 1 1 8 matrix (a) image currentpoint", "72.0 0.0"},
    });
}

TEST(ImageTest, Dictionaries) {
    CheckStacks({
        {"a single source", "<< /ImageType 1 /Width 5 /Height 2 /BitsPerComponent 8 /DataSource (0123456789) >> image",
         ""},
        {"departure: one component whatever the space",
         "/DeviceRGB setcolorspace << /ImageType 1 /Width 1 /Height 1 /BitsPerComponent 8 /DataSource (0) >> "
         "image",
         ""},
        {"departure: too short",
         "<< /ImageType 4 /Width 5 /Height 2 /BitsPerComponent 8 /DataSource (012345678) >> image", "", PSERR_IO},
        {"several sources",
         "<< /ImageType 1 /Width 1 /Height 1 /BitsPerComponent 8 /MultipleDataSources true /DataSource [{/a "
         "(1)} {/b "
         "(2)}] >> image",
         "/a /b"},
        {"departure: several sources together too short",
         "<< /ImageType 1 /Width 1 /Height 1 /BitsPerComponent 8 /MultipleDataSources true /DataSource [(1) "
         "()] >> "
         "image",
         "", PSERR_IO},
        {"departure: no list of sources",
         "<< /ImageType 1 /Width 1 /Height 1 /BitsPerComponent 8 /MultipleDataSources true /DataSource (1) "
         ">> image",
         "", PSERR_TYPECHECK},
        {"departure: the data below a mask",
         "<< /ImageType 3 /DataDict << /Width 1 /Height 1 /BitsPerComponent 8 /DataSource (1) >> >> image", ""},
        {"departure: no data below a mask", "<< /ImageType 3 >> image", "", PSERR_SYNTAX},
        {"departure: another type", "<< /ImageType 2 >> image", "", PSERR_RANGE},
        {"departure: no type", "<< /Width 1 >> image", "", PSERR_TYPECHECK},
        {"departure: no width", "<< /ImageType 1 /Height 1 /BitsPerComponent 8 /DataSource (1) >> image", "",
         PSERR_TYPECHECK},
        {"departure: no source", "<< /ImageType 1 /Width 1 /Height 1 /BitsPerComponent 8 >> image", "",
         PSERR_TYPECHECK},
        {"departure: a source of another type is let be",
         "<< /ImageType 1 /Width 1 /Height 1 /BitsPerComponent 8 /DataSource /a >> image", ""},
        {"departure: but not by a mask", "<< /Width 1 /Height 1 /DataSource /a >> imagemask", "", PSERR_TYPECHECK},
        {"departure: a mask", "/n 0 def << /Width 9 /Height 1 /DataSource {/n n 1 add def (a)} >> imagemask n", "2"},
    });
}

TEST(ImageTest, DataInTheFile) {
    const std::string line = "#000000 open L 0,0 25.4,0";
    EXPECT_EQ(DrawnBehind("/b 3 string def 3 2 8 matrix {currentfile b readhexstring pop} image", "000102 03040\n5"),
              line);
    EXPECT_EQ(DrawnBehind("2 2 8 matrix currentfile /ASCIIHexDecode filter image", "00 01 02 03>"), line);
    EXPECT_EQ(DrawnBehind("2 2 8 matrix currentfile /ASCII85Decode filter image", "lineto stroke ~>"), line);
    EXPECT_EQ(DrawnBehind("2 2 1 matrix currentfile /RunLengthDecode filter imagemask", "lineto stroke \x80"), line);
    EXPECT_EQ(
        DrawnBehind("2 2 8 matrix currentfile /ASCII85Decode filter /DCTDecode filter false 3 colorimage", "aa~>"),
        line)
        << "the mark is that of the filter next to the file";
    EXPECT_EQ(DrawnBehind("1 1 8 matrix currentfile /ASCIIHexDecode filter currentfile /ASCIIHexDecode filter "
                          "currentfile /ASCIIHexDecode filter true 3 colorimage",
                          "00> 01> 02>"),
              line);
    EXPECT_EQ(DrawnBehind("<< /ImageType 1 /Width 2 /Height 2 /BitsPerComponent 8 /DataSource currentfile "
                          "/ASCIIHexDecode filter >> image",
                          "00 01 02 03>"),
              line);
    EXPECT_EQ(DrawnBehind("currentfile /ASCIIHexDecode filter /ReusableStreamDecode filter",
                          "00> 1 1 8 matrix 5 -1 roll image"),
              line)
        << "the data of a reusable stream has been read when the stream was made";
    EXPECT_EQ(RunAsFile(std::string(kHeader) + "1 1 8 matrix currentfile image\n").error, PSERR_UNSUPPORTED);
    EXPECT_EQ(RunAsFile(std::string(kHeader) + "1 1 8 matrix currentfile /ASCIIHexDecode filter image 00").error,
              PSERR_IO)
        << "no end mark";
}

}  // namespace
