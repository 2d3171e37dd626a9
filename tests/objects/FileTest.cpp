// Files: the block buffer of the input with its limit and positions, and plain streams.
#include "objects/File.h"

#include "support/Program.h"
#include "support/TestFrame.h"

namespace {

std::string Pattern(size_t size) {
    std::string bytes(size, '\0');
    for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}

struct Input {
    explicit Input(const std::string& bytes) : file(bytes), body(file.Path().c_str(), "r+b") {
        body.SetFileKind(FK_INPUT);
        EXPECT_EQ(body.Open(), 1);
    }
    std::string Rest() {
        std::string bytes;
        for (unsigned c = 0; body.ReadByte(&c) == 1;) bytes.push_back(static_cast<char>(c));
        return bytes;
    }
    TempFile file;
    CFileBody body;
};

TEST(FileTest, BlocksJoinWithoutASeam) {
    for (const size_t size : {0u, 1u, 9999u, 10000u, 10001u, 20000u, 25000u}) {
        Input input(Pattern(size));
        EXPECT_EQ(input.body.GetFileSize(), static_cast<int>(size));
        EXPECT_EQ(input.Rest(), Pattern(size)) << size;
        unsigned c = 0;
        EXPECT_EQ(input.body.ReadByte(&c), 0);
    }
}

TEST(FileTest, LimitAndPosition) {
    Input input(Pattern(25000));
    input.body.SetLimit(10005);
    EXPECT_EQ(input.Rest(), Pattern(10005));
    ASSERT_EQ(input.body.SetPosition(9998), 1);
    EXPECT_EQ(input.Rest(), Pattern(10005).substr(9998));
    input.body.SetLimit(25000);
    ASSERT_EQ(input.body.SetPosition(12345), 1);
    unsigned c = 0;
    ASSERT_EQ(input.body.ReadByte(&c), 1);
    input.body.UnreadByte();
    EXPECT_EQ(input.Rest(), Pattern(25000).substr(12345));
    EXPECT_EQ(input.body.SetPosition(-1), 0);
    ASSERT_EQ(input.body.SetPosition(30000), 1);
    EXPECT_EQ(input.body.ReadByte(&c), 0) << "beyond the end there is no input";
}

TEST(FileTest, BlockReads) {
    Input input(Pattern(10010));
    std::string buffer(10020, '\0');
    unsigned count = 0;
    EXPECT_EQ(input.body.ReadBlock(buffer.data(), 10005, &count), 1);
    EXPECT_EQ(buffer.substr(0, count), Pattern(10010).substr(0, 10005));
    EXPECT_EQ(input.body.ReadBlock(buffer.data(), 10, &count), 0);
    EXPECT_EQ(count, 5u);
}

TEST(FileTest, Lines) {
    Input input("one\ntwo\r\nthree\rfour");
    std::string line;
    for (const char* expected : {"one", "two", "three"}) {
        EXPECT_EQ(input.body.ReadLine(line, 5), 1);
        EXPECT_EQ(line, expected);
    }
    EXPECT_EQ(input.body.ReadLine(line, 5), 0);
    EXPECT_EQ(line, "four");

    Input longer("12345\n123456\n");
    EXPECT_EQ(longer.body.ReadLine(line, 5), 1) << "as long as the limit";
    EXPECT_EQ(longer.body.ReadLine(line, 5), -1) << "one byte more";
    Input cr("a\r");
    EXPECT_EQ(cr.body.ReadLine(line, 5), 1) << "a CR at the very end ends the line";
}

TEST(FileTest, Hex) {
    Input input("4 1x4z2 43zz");
    std::vector<unsigned char> values;
    EXPECT_EQ(input.body.ReadHex(values, 2), 1);
    EXPECT_EQ(values, (std::vector<unsigned char>{0x41, 0x42}));
    EXPECT_EQ(input.Rest(), " 43zz") << "nothing is read ahead";
    Input odd("414");
    EXPECT_EQ(odd.body.ReadHex(values, 5), 0);
    EXPECT_EQ(values.size(), 1u);
}

TEST(FileTest, Zeros) {
    const std::string zeros(199, '0');
    Input input(zeros + "a" + zeros + " \r\n0rest");
    EXPECT_EQ(input.body.SkipToZeros(), 1);
    EXPECT_EQ(input.Rest(), "rest");
    Input none(zeros);
    EXPECT_EQ(none.body.SkipToZeros(), -1);
}

TEST(FileTest, StreamsAndOddNames) {
    const TestFrame frame;  // whose leave programs have to touch files
    const TempFile temp("ab");
    CFileBody file(temp.Path().c_str(), "r");
    unsigned c = 0;
    EXPECT_EQ(file.ReadByte(&c), -1) << "not open yet";
    ASSERT_EQ(file.Open(), 1);
    EXPECT_EQ(file.ReadByte(&c), 1);
    EXPECT_EQ(file.ReadByte(&c), 1);
    EXPECT_EQ(file.ReadByte(&c), 1) << "the read that runs into the end delivers -1";
    EXPECT_EQ(c, static_cast<unsigned>(-1));
    EXPECT_EQ(file.ReadByte(&c), 0);
    file.Close();
    EXPECT_EQ(file.ReadByte(&c), -1) << "closed";
    file.Close();

    CFileBody edit("%lineedit", "r");
    EXPECT_EQ(edit.Open(), 1);
    EXPECT_EQ(edit.ReadByte(&c), -1);
    CFileBody nameless(nullptr, "r");
    EXPECT_EQ(nameless.Open(), 0);
}

TEST(FileTest, FiltersAreReadOverToTheRightByte) {
    const std::string head = "%!PS\n/L {0 0 moveto 9 9 lineto stroke} def ";
    const auto entities = [&](const std::string& program) { return RunAsFile(head + program).entities.size(); };
    EXPECT_EQ(entities("currentfile /ASCIIHexDecode filter 9 string readstring\n41 42>L pop pop L "), 2u);
    EXPECT_EQ(entities("currentfile /ASCII85Decode filter 9 string readstring\nab~c~~>L~> pop pop L "), 1u)
        << "a tilde takes the byte behind it along";
    EXPECT_EQ(entities("currentfile /RunLengthDecode filter 9 string readstring\nabc\x80L pop pop L "), 2u);
    EXPECT_EQ(entities("currentfile /ASCIIHexDecode filter /DCTDecode filter 9 string readstring\n4142>L pop pop L "),
              2u);
    const RunResult unended = RunAsFile(head + "L currentfile /ASCIIHexDecode filter 9 string readstring\n4142");
    EXPECT_EQ(unended.error, PSERR_IO);
    EXPECT_EQ(unended.entities.size(), 1u);
    EXPECT_EQ(RunAsFile(head + "(abc) /ASCIIHexDecode filter 9 string readstring ").error, PSERR_UNSUPPORTED);
}

}  // namespace
