// Files: the block buffer of the input with its limit and positions, plain streams, sources and sinks.
#include "objects/File.h"

#include <algorithm>
#include <functional>

#include "interp/FilterEPS.h"
#include "objects/Sources.h"
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

/// Gives a few bytes at a time and has no places; may do something at each read.
class Trickle final : public CByteSource {
public:
    explicit Trickle(std::string bytes, std::function<void()> atRead = {})
        : m_Bytes(std::move(bytes)), m_AtRead(std::move(atRead)) {}
    [[nodiscard]] std::ptrdiff_t Read(unsigned char* buffer, std::size_t size) override {
        if (m_AtRead) m_AtRead();
        const std::size_t count = m_Bytes.copy(reinterpret_cast<char*>(buffer), std::min<std::size_t>(size, 3), m_nAt);
        m_nAt += count;
        return static_cast<std::ptrdiff_t>(count);
    }

private:
    std::string m_Bytes;
    std::function<void()> m_AtRead;
    std::size_t m_nAt = 0;
};

class Broken final : public CByteSource {
public:
    [[nodiscard]] std::ptrdiff_t Read(unsigned char*, std::size_t) override { return -1; }
};

TEST(FileTest, ASourceIsAFile) {
    for (const int blockSize : {1, 2, 3, 7, 10000}) {
        SCOPED_TRACE(blockSize);
        CFileBody file(std::make_unique<Trickle>("one\r\ntwo\n4 1x42 rest"), blockSize);
        std::string line;
        EXPECT_EQ(file.ReadLine(line, 10), 1);
        EXPECT_EQ(line, "one");
        unsigned c = 0;
        EXPECT_EQ(file.ReadByte(&c), 1);
        file.UnreadByte();
        EXPECT_EQ(file.ReadLine(line, 10), 1);
        EXPECT_EQ(line, "two");
        std::vector<unsigned char> values;
        EXPECT_EQ(file.ReadHex(values, 2), 1);
        EXPECT_EQ(values, (std::vector<unsigned char>{0x41, 0x42}));
        std::int64_t at = 0;
        EXPECT_EQ(file.GetPosition(at), 0) << "no places";
        EXPECT_EQ(file.SetPosition(0), 0);
        EXPECT_EQ(file.GetLimit(at), 0) << "not known";
        EXPECT_EQ(file.WriteByte('a'), -1);
        char rest[10];
        unsigned count = 0;
        EXPECT_EQ(file.ReadBlock(rest, sizeof rest, &count), 0);
        EXPECT_EQ(std::string(rest, count), " rest");
        EXPECT_EQ(file.ReadByte(&c), 0);
        file.Close();
        EXPECT_EQ(file.ReadByte(&c), -1);
        EXPECT_EQ(file.SkipToZeros(), 0);
    }
    CFileBody places(std::make_unique<CMemorySource>("abcdef"), 2);
    unsigned c = 0;
    EXPECT_EQ(places.GetFileSize(), 6);
    EXPECT_EQ(places.SetPosition(4), 1);
    EXPECT_EQ(places.ReadByte(&c), 1);
    EXPECT_EQ(c, static_cast<unsigned>('e'));
    EXPECT_EQ(places.PlaceOf(0, 2).nOffset, 2);
    EXPECT_EQ(places.ReadByte(&c), 1);
    EXPECT_EQ(c, static_cast<unsigned>('f')) << "looking for a place moves nothing";
    CFileBody limited(std::make_unique<Trickle>("abcdef"));
    limited.SetLimit(2);
    char two[6];
    unsigned count = 0;
    EXPECT_EQ(limited.ReadBlock(two, 6, &count), 0);
    EXPECT_EQ(count, 2u);
    CFileBody broken(std::make_unique<Broken>());
    EXPECT_EQ(broken.ReadByte(&c), -1);
}

TEST(FileTest, ASourceMayTakeItsFileAway) {
    TestFrame frame;
    CFilterEPS machine(5);
    unsigned c = 0;
    CFileBody* self = nullptr;
    CFileBody closed(std::make_unique<Trickle>("abc", [&] { self->Close(); }));
    self = &closed;
    EXPECT_EQ(closed.ReadByte(&c), -1);
    EXPECT_EQ(closed.ReadByte(&c), -1);

    CFileBody nested(std::make_unique<Trickle>("abc", [&] { EXPECT_EQ(self->ReadByte(&c), -1); }));
    self = &nested;
    EXPECT_EQ(nested.ReadByte(&c), 1) << "a source that reads its own file gets nothing, and the reader all";
    EXPECT_EQ(c, static_cast<unsigned>('a'));

    ASSERT_EQ(machine.ScanBuffer("userdict /s save put"), 1);
    const CFileElement lost(
        std::make_unique<Trickle>("abc", [&] { EXPECT_EQ(machine.ScanBuffer("userdict /s get restore"), 1); }));
    CFileReader reader(lost);
    EXPECT_EQ(lost.ReadByte(&c), -1);
    EXPECT_EQ(lost.ReadByte(&c), -1);
    int result = 1;
    EXPECT_TRUE(reader.Peek(result).empty());
    EXPECT_EQ(result, -1);
    reader.Skip(1);
}

TEST(FileTest, ASinkIsAFile) {
    class Sink final : public CByteSink {
    public:
        explicit Sink(std::string& log) : m_Log(log) {}
        [[nodiscard]] bool Write(std::span<const unsigned char> bytes) override {
            m_Log.append(bytes.begin(), bytes.end());
            return m_Log.size() < 9;
        }
        [[nodiscard]] bool Close() override { return m_Log += '.', true; }

    private:
        std::string& m_Log;
    };
    std::string log;
    CFileBody file(std::make_unique<Sink>(log));
    EXPECT_EQ(file.WriteByte('a'), 1);
    EXPECT_EQ(file.WriteText("bcd"), 1);
    unsigned c = 0;
    EXPECT_EQ(file.ReadByte(&c), -1);
    file.Close();
    file.Close();
    EXPECT_EQ(log, "abcd.");
    EXPECT_EQ(file.WriteByte('a'), -1);
    {
        CFileBody full(std::make_unique<Sink>(log));
        EXPECT_EQ(full.WriteText("1234"), -1);
    }
    EXPECT_EQ(log, "abcd.1234") << "a file that just goes ends nothing";
}

TEST(FileTest, AnyFileCanBeRunAndReadByADecoder) {
    const TestFrame frame;
    CFilterEPS machine(5);
    const CFileElement program(std::make_unique<Trickle>("1 currentfile 3 string readstring\nabc 2"), 2);
    EXPECT_EQ(machine.ExecuteFile(program), 1);
    EXPECT_EQ(machine.m_OperandStack.GetCount(), 3) << "1 (abc) true, and a last token that nothing ends";
    EXPECT_EQ(machine.m_pCurrentFile, nullptr) << "the current file before";
    EXPECT_EQ(machine.m_Report.nTail, RT_NONE) << "told of the input alone";

    const TempFile temp("ab");
    CFileElement disk(temp.Path().c_str(), "r");
    ASSERT_EQ(disk.Open(), 1);
    CFileReader reader(disk);
    std::string bytes;
    int result = 0;
    for (std::span<const unsigned char> some = reader.Peek(result); result == 1; some = reader.Peek(result)) {
        EXPECT_EQ(reader.Peek(result).front(), some.front()) << "looking takes nothing";
        bytes.push_back(static_cast<char>(some.front()));
        reader.Skip(1);
    }
    EXPECT_EQ(bytes, "ab");
    EXPECT_EQ(result, 0);
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
