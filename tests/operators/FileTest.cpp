// File operators, on files that the tests make and on the input of an import.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "hostout/HostModel.h"
#include "interp/FilterEPS.h"
#include "support/Program.h"
#include "support/TestFrame.h"

namespace {

std::string Quoted(const std::string& path) { return "(" + path + ")"; }

std::string Opened(const TempFile& file, const char* mode = "r") {
    return Quoted(file.Path()) + " (" + mode + ") file ";
}

std::string Contents(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// Runs a program as the input file. True when it leaves true on top, and says what happened otherwise.
::testing::AssertionResult HoldsInFile(const std::string& program, const std::string& head = "%!PS\n") {
    RunSettings settings;
    settings.onDisk = true;
    const RunResult result = RunAsFile(head + program + "\n{} {/wrong load} ifelse\n", settings);
    if (result.error == PSERR_NONE) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "error " << result.error << " in: " << program;
}

TEST(FileOperatorsTest, Reading) {
    const TempFile file("ab\ncd\r\nef\rg");
    const std::string open = Opened(file);
    const auto stack = [&](const std::string& program) { return RunText(open + program).stack; };
    EXPECT_EQ(stack("dup read pop exch read"), "97 98 true");
    EXPECT_EQ(stack("2 string readstring"), "(ab) true");
    EXPECT_EQ(stack("20 string readstring exch length"), "false 11");
    EXPECT_EQ(stack("/f exch def 4 {f 5 string readline} repeat f 5 string readline"),
              "(ab) true (cd) true (ef) true (g) false () false");
    EXPECT_EQ(stack("2 string readline"), "(ab) true") << "a line of just the string's length";
    EXPECT_EQ(RunText(open + "1 string readline").error, PSERR_IO);
    EXPECT_EQ(stack("5 string dup 3 1 roll readline pop pop"), "(ab000)") << "the bytes are those of the string given";
    EXPECT_EQ(stack("dup 3 setfileposition dup fileposition exch dup bytesavailable exch read pop"), "3 8 99");
    EXPECT_EQ(stack("dup 11 setfileposition dup read 3 -1 roll read"), "-1 true false")
        << "departure: the end of a stream shows once as a byte";
    EXPECT_EQ(RunText(open + "dup -1 setfileposition").error, PSERR_IO);

    const TempFile letters("09aAfF@G`gBc/:");
    EXPECT_EQ(RunText(Opened(letters) + "9 string readhexstring exch {} forall").stack, "false 9 170 255 188");
    const TempFile hex("0 1x2\n3 45 6");
    EXPECT_EQ(RunText(Opened(hex) + "4 string readhexstring exch {} forall").stack, "false 1 35 69");
    EXPECT_EQ(RunText(Opened(hex) + "dup 2 string readhexstring exch {} forall 4 -1 roll read").stack,
              "true 1 35 32 true");
    EXPECT_EQ(RunText(Opened(hex) + "0 string readhexstring").stack, "() true");
}

TEST(FileOperatorsTest, Writing) {
    const TempFile file("");
    EXPECT_EQ(
        RunText(Opened(file, "w") + "dup 65 write dup 321 write dup (xyz) writestring dup (not this) writehexstring "
                                    "dup flushfile closefile")
            .error,
        PSERR_NONE);
    EXPECT_EQ(Contents(file.Path()), "AAxyz");
    EXPECT_EQ(RunText(Opened(file, "a") + "/s (12345) def s 2 0 put s writestring flush").error, PSERR_NONE);
    EXPECT_EQ(Contents(file.Path()), "AAxyz12") << "up to the zero byte";
    EXPECT_EQ(RunText(Opened(file) + "1 write").error, PSERR_IO);
    EXPECT_EQ(RunText(Opened(file) + "(x) writestring").error, PSERR_IO);
}

TEST(FileOperatorsTest, ClosedAndUnusableFiles) {
    const TempFile file("abc");
    const auto error = [](const std::string& program) { return RunText(program).error; };
    EXPECT_EQ(error(Opened(file) + "dup closefile dup closefile resetfile"), PSERR_NONE);
    for (const char* op : {"read", "bytesavailable", "fileposition", "3 string readstring", "3 string readline",
                           "3 string readhexstring", "1 write", "(a) writestring", "0 setfileposition"}) {
        EXPECT_EQ(error(Opened(file) + "dup closefile " + op), PSERR_IO) << op;
        EXPECT_EQ(error("save " + Opened(file) + "exch restore " + op), PSERR_IO) << op << " after its body is gone";
        EXPECT_EQ(error(std::string("(%lineedit) (r) file ") + op), PSERR_IO) << op;
    }
    EXPECT_EQ(error("save " + Opened(file) + "exch restore dup flushfile dup status pop closefile"), PSERR_NONE);
    EXPECT_EQ(error("(/no/such/file) (r) file"), PSERR_IO);
    EXPECT_EQ(error("(/) (r) file"), PSERR_IO);
    EXPECT_EQ(error(Quoted(file.Path()) + "(nonsense) file"), PSERR_IO);
}

TEST(FileOperatorsTest, Operands) {
    CheckStacks({
        {"file", "1 (r) file", "1 (r)", PSERR_TYPECHECK},
        {"file: missing", "(r) file", "(r)", PSERR_STACKUNDERFLOW},
        {"read", "1 read", "1", PSERR_TYPECHECK},
        {"departure: a filter is no file here", "() /ASCIIHexDecode filter read", "-filter-", PSERR_TYPECHECK},
        {"write: the number first", "1 (x) write", "1 (x)", PSERR_TYPECHECK},
        {"readstring", "1 (x) readstring", "1 (x)", PSERR_TYPECHECK},
        {"departure: setfileposition", "(%lineedit) (r) file (x) setfileposition", "-file- (x)", PSERR_TYPECHECK},
        {"filenameforall", "(x) [1] (x) filenameforall", "(x) [1] (x)", PSERR_TYPECHECK},
        {"closefile: missing", "closefile", "", PSERR_STACKUNDERFLOW},
        {"resetfile takes a filter", "() /ASCIIHexDecode filter resetfile", ""},
        {"print", "1 (abc) print", "1"},
        {"print: no string", "1 print", "1", PSERR_TYPECHECK},
        {"printing drops", "1 2 3 = ==", "1"},
        {"the stack stays", "1 stack pstack", "1"},
        {"printobject", "1 2 3 printobject", "1"},
        {"printobject: missing", "1 printobject", "1", PSERR_STACKUNDERFLOW},
        {"departure: writeobject", "1 2 3 writeobject", "1 2 3", PSERR_UNSUPPORTED},
        {"departure: run", "(x) run", "(x)", PSERR_UNSUPPORTED},
        {"departure: the object format", "currentobjectformat 3 setobjectformat currentobjectformat", "2 3"},
        {"setobjectformat: no number", "(x) setobjectformat", "(x)", PSERR_TYPECHECK},
        {"departure: a text that runs without a file has one that can't be read", "currentfile read", "", PSERR_IO},
    });
}

TEST(FileOperatorsTest, TheInputFile) {
    EXPECT_TRUE(HoldsInFile("currentfile 3 string readstring\nabc exch (abc) eq and"));
    EXPECT_TRUE(HoldsInFile("currentfile 4 string readhexstring\n61 6 2 6364 exch (abcd) eq and"));
    EXPECT_TRUE(HoldsInFile("currentfile 9 string readline\nA b\r\n exch (A b) eq and"));
    EXPECT_TRUE(HoldsInFile("currentfile 0 string readstring exch length 0 eq and"));
    EXPECT_TRUE(HoldsInFile("currentfile read \xC8 exch 200 eq and")) << "a byte, not a signed one";
    EXPECT_TRUE(HoldsInFile("currentfile dup fileposition 28 add setfileposition quit true"));
    EXPECT_TRUE(HoldsInFile("currentfile status"));
    EXPECT_EQ(RunAsFile("%!PS\ncurrentfile 65 write\n").error, PSERR_IO);
    EXPECT_EQ(RunAsFile("%!PS\ncurrentfile (A) writestring\n").error, PSERR_IO);
    const RunResult closed = RunAsFile("%!PS\n0 0 moveto 99 99 lineto stroke currentfile closefile\n/wrong load\n");
    EXPECT_EQ(closed.entities.size(), 1u);
    EXPECT_NE(closed.error, PSERR_UNDEFINED) << "nothing is read from a closed input";
}

TEST(FileOperatorsTest, BytesavailableEndsWithTheSection) {
    // A file with a binary header, and bytes behind the section.
    const std::string rest = "31 eq {} {/wrong load} ifelse \n";
    ASSERT_EQ(rest.size(), 31u);
    const std::string section = "%!PS\ncurrentfile bytesavailable " + rest;
    std::string bytes = "\xC5\xD0\xD3\xC6";
    for (const size_t n : {size_t{30}, section.size()}) {
        for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(n >> shift & 255);
    }
    bytes.resize(30);
    EXPECT_EQ(RunAsFile(bytes + section + "bytes of the preview").error, PSERR_NONE);
}

TEST(FileOperatorsTest, Filters) {
    CheckStacks({
        {"departure: over a string", "(abc) /ASCIIHexDecode filter", "-filter-"},
        {"departure: a name that is a string", "(abc) (RunLengthDecode) filter type", "/filetype"},
        {"departure: with a dictionary", "(abc) 1 dict /DCTDecode filter", "-filter-"},
        {"departure: over a procedure", "{(ab)} /ASCII85Decode filter", "-filter-"},
        {"over a literal array", "[1] /ASCII85Decode filter", "[1] /ASCII85Decode", PSERR_TYPECHECK},
        {"over a number", "1 /ASCII85Decode filter", "1 /ASCII85Decode", PSERR_TYPECHECK},
        {"no name", "(abc) 5 filter", "(abc) 5", PSERR_TYPECHECK},
        {"missing source", "/ASCII85Decode filter", "/ASCII85Decode", PSERR_STACKUNDERFLOW},
        {"missing source below a dictionary", "1 dict /DCTDecode filter", "<<0>> /DCTDecode", PSERR_STACKUNDERFLOW},
        {"departure: others are refused, the name gone", "(abc) 1 dict /LZWDecode filter", "(abc) <<0>>",
         PSERR_UNSUPPORTED},
        {"departure: encoders, too", "(abc) /ASCIIHexEncode filter", "(abc)", PSERR_UNSUPPORTED},
        {"departure: a reusable stream reads at once", "(abc) /ReusableStreamDecode filter", "", PSERR_UNSUPPORTED},
        {"departure: no data comes from a string", "(abc) /ASCIIHexDecode filter 3 string readstring", "",
         PSERR_UNSUPPORTED},
        {"departure: a procedure runs once and its string goes",
         "1 {(ab) 2 (cd)} /ASCII85Decode filter 3 string readstring", "1 (ab) 2 (000) true"},
        {"departure: and stays under a hexadecimal filter", "{(ab)} /ASCIIHexDecode filter 3 string readstring",
         "(ab) (000) true"},
        {"departure: a failing procedure", "{nothing} /ASCIIHexDecode filter 3 string readstring", "", PSERR_UNDEFINED},
        {"departure: the filter goes away while it reads",
         "save {restore (x)} /ASCII85Decode filter 3 string readstring", "() true"},
    });
    // The scan goes on right behind the end mark of the encoding closest to the file.
    EXPECT_TRUE(HoldsInFile("/s (xy) def currentfile /ASCIIHexDecode filter s readstring\n61 62> exch (xy) eq and"));
    EXPECT_TRUE(HoldsInFile("currentfile /ASCII85Decode filter 3 string readstring\n9~x~~~~>~> exch pop"));
    EXPECT_TRUE(HoldsInFile("currentfile /RunLengthDecode filter 3 string readstring\nab\x80 exch pop"));
    EXPECT_TRUE(HoldsInFile("currentfile /ASCII85Decode filter /DCTDecode filter 3 string readstring\n>ab~> exch pop"));
    EXPECT_TRUE(
        HoldsInFile("currentfile /RunLengthDecode filter /ReusableStreamDecode filter\nab\x80 type /filetype eq"));
    EXPECT_TRUE(
        HoldsInFile("currentfile /RunLengthDecode filter /DCTDecode filter 3 string readstring\n"
                    "\x01>~ab>\x80 exch pop"));
    EXPECT_TRUE(HoldsInFile(
        "currentfile /ASCIIHexDecode filter /RunLengthDecode filter 3 string readstring\n61\x80> exch pop"));
    for (const char* filter : {"/ASCIIHexDecode filter", "/RunLengthDecode filter", "/ASCII85Decode filter",
                               "/RunLengthDecode filter /DCTDecode filter"}) {
        EXPECT_EQ(RunAsFile(std::string("%!PS\ncurrentfile ") + filter + " 3 string readstring\n61 62 63").error,
                  PSERR_IO)
            << filter;
    }
}

/// A fresh directory that goes with the object.
class TempDirectory {
public:
    TempDirectory() {
        std::string path = ::testing::TempDir() + "epsfilterXXXXXX";
        EXPECT_NE(::mkdtemp(path.data()), nullptr);
        m_Path = path;
    }
    TempDirectory(const TempDirectory&) = delete;
    TempDirectory& operator=(const TempDirectory&) = delete;
    ~TempDirectory() { std::filesystem::remove_all(m_Path); }
    std::string Add(const std::string& name, const std::string& text = "") const {
        std::ofstream(m_Path + "/" + name) << text;
        return m_Path + "/" + name;
    }
    [[nodiscard]] const std::string& Path() const { return m_Path; }

private:
    std::string m_Path;
};

TEST(FileOperatorsTest, StatusDeleteRename) {
    const TempDirectory dir;
    const std::string a = dir.Add("a", std::string(2500, 'x'));
    const std::string b = dir.Path() + "/b";
    EXPECT_EQ(RunText(Quoted(a) + " status 5 1 roll pop 1600000000 gt 3 1 roll").stack, "true true 2 2500");
    EXPECT_EQ(RunText(Quoted(a) + " (r) file status").stack, "true");
    EXPECT_EQ(RunText(Quoted(a) + " (r) file " + Quoted(a) + " deletefile status").stack, "false")
        << "a file object goes by its name";
    dir.Add("a", "again");

    EXPECT_EQ(RunText(Quoted(a) + Quoted(b) + " renamefile").error, PSERR_NONE);
    EXPECT_EQ(Contents(b), "again");
    dir.Add("a", "other");
    EXPECT_EQ(RunText(Quoted(a) + Quoted(b) + " renamefile").error, PSERR_IO) << "a file of the new name stays";
    EXPECT_EQ(Contents(b), "again");

    EXPECT_EQ(RunText(Quoted(b) + " deletefile").error, PSERR_NONE);
    EXPECT_FALSE(std::filesystem::exists(b));
    const RunResult missing = RunText(Quoted(b) + " status");
    EXPECT_EQ(missing.stack, "false");
    EXPECT_EQ(missing.error, PSERR_IO);
    EXPECT_EQ(RunText(Quoted(b) + " deletefile").error, PSERR_IO);
    EXPECT_EQ(RunText(Quoted(dir.Path()) + " deletefile").error, PSERR_IO);
}

TEST(FileOperatorsTest, Filenameforall) {
    const TempDirectory dir;
    const std::string one = dir.Add("one.eps");
    const std::string two = dir.Add("two.eps");
    dir.Add("three.txt");
    const std::string matches = Quoted(dir.Path() + "/*.eps");
    EXPECT_EQ(RunText(matches + " {dup length string copy} 500 string filenameforall").stack,
              Quoted(one) + " " + Quoted(two));
    EXPECT_EQ(RunText(matches + " {} 4 string filenameforall").stack,
              Quoted(two.substr(0, 4)) + " " + Quoted(two.substr(0, 4)))
        << "cut at the end of the scratch string";
    EXPECT_EQ(RunText(matches + " {pop} 500 string dup 4 1 roll filenameforall 0 " + std::to_string(two.size() + 2) +
                      " getinterval")
                  .stack,
              Quoted(two + "00"))
        << "the tail stays";
    EXPECT_EQ(RunText(matches + " {pop 1 exit} 500 string filenameforall 2").stack, "1 2");
    EXPECT_EQ(RunText(matches + " {{stop} stopped pop pop 1 stop} 500 string filenameforall 2").stack, "1 2");
    EXPECT_EQ(RunText(matches + " {pop nothing} 500 string filenameforall").error, PSERR_UNDEFINED);
    EXPECT_EQ(RunText("/t " + matches +
                      " def /p {pop dup type /savetype eq {restore} if 7} def "
                      "save t /p load 500 string filenameforall")
                  .stack,
              "7 7")
        << "the scratch string goes away";
    EXPECT_EQ(RunText(Quoted(dir.Path() + "/none*") + " {} 9 string filenameforall").stack, "");
    const RunResult device = RunText("(%device%x) {} 9 string filenameforall");
    EXPECT_EQ(device.stack, "");
    EXPECT_EQ(device.error, PSERR_UNSUPPORTED);
}

// What a stranger's file can do where the host gives no leave: nothing, and it can't even tell what is there.
TEST(FileOperatorsTest, WithoutLeave) {
    const TempDirectory dir;
    const std::string there = dir.Add("there", "text");
    const std::string elsewhere = dir.Path() + "/elsewhere";
    const auto error = [](const std::string& program) {
        TestFrame frame;
        frame.m_bAllowsFiles = false;
        CEntGroup group;
        CFilterEPS machine(5);
        machine.m_pGroup = &group;
        return machine.ScanBuffer(program) == 1 ? PSERR_NONE : machine.m_nError;
    };
    EXPECT_EQ(error(Quoted(there) + " (r) file"), PSERR_IO);
    EXPECT_EQ(error(Quoted(elsewhere) + " (w) file"), PSERR_IO);
    for (const char* name : {"stdout", "stderr", "%stdin"})
        EXPECT_EQ(error(Quoted(name) + " (w) file"), PSERR_IO) << name;
    EXPECT_EQ(error(Quoted(there) + " status"), PSERR_IO);
    EXPECT_EQ(error(Quoted(there) + " deletefile"), PSERR_IO);
    EXPECT_EQ(error(Quoted(there) + Quoted(elsewhere) + " renamefile"), PSERR_IO);
    EXPECT_EQ(error(Quoted(dir.Path() + "/*") + " {nothing} 99 string filenameforall"), PSERR_NONE);
    EXPECT_EQ(Contents(there), "text");
    EXPECT_FALSE(std::filesystem::exists(elsewhere));
}

}  // namespace
