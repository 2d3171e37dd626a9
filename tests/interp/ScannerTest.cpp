// The scanners: what each piece of syntax becomes in a file, in an executed string, in a procedure, and as a token.
#include "support/Program.h"

using namespace std::string_literals;

namespace {

TEST(ScannerTest, StringsAndEscapes) {
    CheckStacks({
        {"inner parentheses stay", "(a(b)c)", "(a(b)c)"},
        {"three digits make a byte", R"((\101\1012) )", "(AA2)"},
        {"departure: one or two digits are text", R"((\12) (\1x) (\8x))", "(12) (1x) (8x)"},
        {"departure: 8 and 9 count with their face value", R"((\081))", "(A)"},
        {"letters", R"((\n\r\t\b\f) {} forall (\q\(\)\\) {} forall)", "10 13 9 8 12 113 40 41 92"},
        {"line ends behind a backslash vanish", "(a\\\nb\\\r\nc\\\rd)", "(abcd)"},
        {"departure: line ends in strings stay", "(a\r\nb) length", "4"},
        {"cut off", "1 (abc", "1", PSERR_SYNTAX},
        {"cut off behind a backslash", "(a\\", "", PSERR_SYNTAX},
    });
}

TEST(ScannerTest, HexStrings) {
    CheckStacks({
        {"departure: a lone last digit is dropped", "<41 4>", "(A)"},
        {"digits in both cases", "<09afAFg> {} forall", "9 175 175"},
        {"empty", "<>", "()"},
        {"foreign bytes are ignored", "<4x1 (4) 2>", "(AB)"},
        {"departure: no ASCII base-85: only the digits count", "<~41~>", "(A)"},
        {"comment inside", "<41 %42\n43>", "(AC)"},
        {"a brace is an ignored byte", "<4{1}>", "(A)"},
        {"cut off", "<41", "", PSERR_SYNTAX},
        {"lone closing bracket", "> ", "", PSERR_SYNTAX},
    });
}

TEST(ScannerTest, NamesAndNumbers) {
    CheckStacks({
        {"departure: the slash waits for the next token", "/ abc", "/abc"},
        {"delimiters complete a token", "/a/b[/c]", "/a /b [/c]"},
        {"stray closers complete a token and vanish", "1)2}3", "1 2 3"},
        {"departure: backslash is a delimiter", "1\\2", "1 2"},
        {"departure: order of the bytes is not checked", "1-2 --5 1.2.3 1e +7 -.5", "1 0 1.2 1.0 7 -0.5"},
        {"departure: a real without digits is zero without a sign", "-. +. -.e5 -0.", "0.0 0.0 0.0 -0.0"},
        {"signs and dots alone are names", "+", "", PSERR_UNDEFINED},
        {"departure: 32 bits are the limit", "2147483648 -2147483649 4294967295", "2147483647 -2147483648 2147483647"},
        {"radix", "16#ff 2#101 36#Z 16#FFFFFFFF 8#777777777777", "255 5 35 -1 -1"},
        {"departure: radix: digit outside the base", "8#9", "", PSERR_SYNTAX},
        {"departure: radix: base outside 2 to 36", "37#1", "", PSERR_SYNTAX},
        {"departure: radix: no digits", "16#", "", PSERR_SYNTAX},
        {"reals beyond double", "1e400 1e-400", "inf 0.0"},
        {"immediate", "//true 1 //true 0", "--true-- 1 --true-- 0"},
        {"immediate, unknown", "//nosuch", "", PSERR_UNDEFINED},
        {"departure: a slash at the end", "1 /", "1", PSERR_SYNTAX},
        {"last word of a text counts", "1 2 add", "3"},
    });
    const std::string longest(127, 'a');
    CheckStacks({{"a token of 127 bytes", ("/" + longest + " length").c_str(), "127"},
                 {"departure: a token of 128 bytes", ("/" + longest + "a length").c_str(), "", PSERR_SYNTAX}});
}

TEST(ScannerTest, ArraysAndDictionaries) {
    CheckStacks({
        {"array", "[1 [2] /a]", "[1 [2] /a]"},
        {"array without a mark", "1 ]", "1", PSERR_UNMATCHEDMARK},
        {"dictionary", "<< /a 1 (b) 2 >> dup /b get", "<<2>> 2"},
        {"departure: the pair nearest the mark is stored last", "<< /a 1 /a 2 >> /a get", "1"},
        {"departure: an odd element goes, and the mark stays", "<< /x /a 1 >>", "mark <<1>>"},
        {"departure: one element alone", "<< /a >>", "mark <<0>>"},
        {"departure: a key that is no text", "<< 1 2 >>", "mark", PSERR_UNMATCHEDMARK},
    });
}

TEST(ScannerTest, Procedures) {
    CheckStacks({
        {"tokens stay raw", "{1 2 add /x (s) <41>}", "{1 2 add /x (s) (A)}"},
        {"brackets stay raw", "{[1 2]} exec", "[1 2]"},
        {"double brackets: the mark is finished", "{<< /a 1 >>} exec", "<<1>>"},
        {"nested", "{1 {2 {3}} 4}", "{1 {2 {3}} 4}"},
        {"departure: a brace in a string counts: what is left is an open string", "{ (}) }", "", PSERR_SYNTAX},
        {"balanced braces in a string", "{({})} exec", "({})"},
        {"a comment hides what it holds, but not braces", "{1 %2 {3}\n4}", "{1 4}"},
        {"immediate names are resolved when made", "/x 5 def {//x} /x 6 def exec", "5"},
        {"immediate name unknown", "{//nosuch}", "", PSERR_UNDEFINED},
        {"departure: packed", "true setpacking {1} type {1} exec", "/packedarraytype 1"},
        {"departure: a bad radix number shows when it runs", "{8#9} pop {8#9} exec", "", PSERR_SYNTAX},
        {"cut off", "{1 2", "", PSERR_SYNTAX},
        {"hex string cut off in a procedure", "{<41}", "", PSERR_SYNTAX},
    });
}

TEST(ScannerTest, Token) {
    CheckStacks({
        {"departure: rest, object, true", "( 12 x) token", "( x) 12 true"},
        {"departure: end of the text ends a token", "(abc) token", "() /abc true"},
        {"nothing", "() token (  ) token", "false false"},
        {"departure: a comment stops it", "(%a\n1) token", "false"},
        {"departure: a slash looks at nothing", "(//a b) token", "( b) /a true"},
        {"departure: brackets come as names", "([1]) token (<<) token", "(1]) /[ true () /<< true"},
        {"string and procedure", "((a)b) token ({1 2}3) token", "(b) (a) true (3) {1 2} true"},
        {"departure: cut off", "(<41) token", "", PSERR_SYNTAX},
        {"departure: lone bracket", "(>a) token", "", PSERR_SYNTAX},
    });
}

/// With its zero bytes, which end a text of C.
RunResult RunBytes(std::string program) {
    for (char& c : program) c = c == '~' ? '\0' : c;
    return RunText(program);
}

TEST(ScannerTest, ATokenEndsAtItsFirstZeroByte) {
    for (const auto& [program, stack] : {std::pair{"12~#5", "12"},
                                         {"12~x 1.5~ /ab~cd //true~x", "12 1.5 /ab --true--"},
                                         {"{12~#5 /ab~cd} exec", "12 /ab"},
                                         {"(12\\000) cvi (1.5\\000x) cvr (ab\\000) cvn", "12 1.5 /ab"},
                                         {"(12\\000z 5) token", "( 5) 12 true"},
                                         {"(/12\\000z 5) token", "( 5) /12 true"},
                                         {"(a\\000b) length", "3"}}) {
        const RunResult result = RunBytes(program);
        EXPECT_EQ(result.error, PSERR_NONE) << program;
        EXPECT_EQ(result.stack, stack) << program;
    }
    const std::string inFile = "%!PS\n12\0#5 12 eq not {nosuch} if "s;
    EXPECT_EQ(RunAsFile(inFile).error, PSERR_NONE);
}

TEST(ScannerTest, DepthIsBounded) {
    const std::string open(20000, '{');
    EXPECT_EQ(RunText(open).error, PSERR_RANGE);
    EXPECT_EQ(RunAsFile("%!PS\n" + open).error, PSERR_RANGE);
    const std::string nested = std::string(9000, '{') + std::string(9000, '}');
    EXPECT_EQ(RunText(nested + " pop").error, PSERR_NONE);
    EXPECT_EQ(RunText(nested + " dup length exch bind pop").stack, "1");
}

constexpr const char* LINE = "10 10 moveto 20 20 lineto stroke ";

size_t EntitiesOf(const std::string& bytes) { return RunAsFile(bytes).entities.size(); }

TEST(ScannerTest, FileHeaders) {
    EXPECT_EQ(EntitiesOf(std::string("%!PS\n") + LINE), 1u);
    for (const char* bytes : {"", "%!P", "hello world", "%PDF-1.4\n"}) {
        const RunResult result = RunAsFile(bytes);
        EXPECT_EQ(result.error, PSERR_FORMAT) << bytes;
        EXPECT_EQ(result.boxes.size(), 1u);
    }
    const std::string program = std::string("%!PS\n") + LINE;
    const auto binary = [&](unsigned offset, unsigned length) {
        std::string header = "\xC5\xD0\xD3\xC6";
        for (const unsigned word : {offset, length}) {
            for (int shift = 0; shift < 32; shift += 8) header.push_back(static_cast<char>(word >> shift & 255));
        }
        header.resize(30);
        return header + program + "0 0 moveto 5 5 lineto stroke ";
    };
    const auto size = static_cast<unsigned>(program.size());
    EXPECT_EQ(EntitiesOf(binary(30, size)), 1u) << "the section ends before the second line";
    EXPECT_EQ(EntitiesOf(binary(30, 4000)), 2u) << "a section longer than the file ends with the file";
    EXPECT_EQ(EntitiesOf(binary(4000000000u, 10)), 0u);
    EXPECT_EQ(EntitiesOf(binary(30, 0)), 0u);
}

TEST(ScannerTest, FileEnds) {
    const std::string head = "%!PS\n";
    EXPECT_EQ(EntitiesOf(head + "10 10 moveto 20 20 lineto stroke"), 0u) << "a last token without delimiter is lost";
    EXPECT_EQ(EntitiesOf(head + "10 10 moveto 20 20 lineto stroke\r"), 0u) << "and so with a CR at the very end";
    for (const char* open : {"(abc", "<41", "{1 2"}) {
        const RunResult result = RunAsFile(head + LINE + open);
        EXPECT_EQ(result.error, PSERR_NONE) << open;
        EXPECT_EQ(result.entities.size(), 1u);
    }
    for (const char* broken : {"/", "<", ">", "(\\", "(\\12"}) {
        const RunResult result = RunAsFile(head + LINE + broken);
        EXPECT_EQ(result.error, PSERR_SYNTAX) << broken;
        EXPECT_EQ(result.entities.size(), 1u) << "what was drawn stays";
    }
}

TEST(ScannerTest, EofComment) {
    const std::string head = "%!PS\n";
    EXPECT_EQ(EntitiesOf(head + LINE + "\n%%EOF\n" + LINE), 1u);
    EXPECT_EQ(EntitiesOf(head + LINE + "5%%EOF\n" + LINE), 1u) << "the comment counts, not the line";
    EXPECT_EQ(EntitiesOf(head + LINE + "%%EOF \n" + LINE), 2u) << "a trailing blank";
    EXPECT_EQ(EntitiesOf(head + LINE + "%%%EOF\n" + LINE), 2u);
    EXPECT_EQ(EntitiesOf(head + "{%%EOF\n} pop (%%EOF\n) pop " + LINE), 1u) << "not in a procedure or a string";
    EXPECT_EQ(EntitiesOf(head + LINE + "%" + std::string(1000, 'x') + "\n" + LINE), 2u);
}

TEST(ScannerTest, LineEndsInFiles) {
    for (const char* end : {"\n", "\r", "\r\n"}) {
        const std::string nl = end;
        EXPECT_EQ(EntitiesOf("%!PS" + nl + "% comment" + nl + "10 10 moveto" + nl + "20 20 lineto" + nl + "stroke" +
                             nl + " "),
                  1u);
    }
}

TEST(ScannerTest, ThePlaceOfAnErrorInTheFile) {
    struct Case {
        const char* what;
        std::string bytes;
        const char* place;
    };
    const std::string pad(9980, ' ');
    for (const Case& c : {
             Case{"a name", "%!PS\n1 2\n  nosuch\n3 4\n", "3:11"},
             Case{"CR, LF and CR LF", "%!PS\r\n\r%\n\n\r nosuch ", "6:12"},
             Case{"what a delimiter of the token before begins", "%!PS\n12]\n", "2:7"},
             Case{"the name behind comments", "%!PS\n%a\r\n % b)\n nosuch\n\n", "4:16"},
             Case{"the name that called, not the procedure", "%!PS\n/a\n{ nosuch } def\n1 a\n", "4:25"},
             Case{"behind data that the program read", "%!PS\n2 string currentfile exch readstring\nab\ncd\nnosuch ",
                  "4:45"},
             Case{"an end that comes too early", "%!PS\n1 2\n(\\", "3:9"},
             Case{"in the second block", "%!PS\n" + pad + "\n1\n2\n3\n4\n5\n6\n7\n8\nnosuch ", "11:10002"},
         }) {
        const RunResult result = RunAsFile(c.bytes);
        EXPECT_NE(result.error, PSERR_NONE) << c.what;
        EXPECT_EQ(result.place, c.place) << c.what;
    }
    std::string binary("\xC5\xD0\xD3\xC6\x1E\0\0\0\x10\0\0\0\n\n\n", 15);
    binary.resize(30);
    EXPECT_EQ(RunAsFile(binary + "%!PS\n1 nosuch \n").place, "2:37") << "lines of the program, bytes of the file";
    EXPECT_EQ(RunText("nosuch").place, "") << "no file";
}

TEST(ScannerTest, WhatDidNotRunIsTold) {
    struct Case {
        const char* what;
        std::string rest;
        const char* tail;
    };
    for (const Case& c : {
             Case{"a last operator that nothing ends", "1 pop\n stroke", "token 3:12 stroke"},
             Case{"and so behind a lone CR", "stroke\r", "token 2:5 stroke"},
             Case{"names", "/abc", "token 2:5 /abc"},
             Case{"names at once", " //abc", "token 2:6 //abc"},
             Case{"a string", "(a(b)\n\n", "string 2:5"},
             Case{"a hexadecimal string", "%\n<41\n", "string 3:7"},
             Case{"a procedure", "/a {\n{ } stroke\n", "procedure 2:8"},
             Case{"everything ran", "stroke\n", ""},
             Case{"everything but a comment", "stroke\n%% end", ""},
             Case{"names that only tidy up", "stroke showpage", ""},
             Case{"end marks of old systems", "stroke\n\x04\x1A", ""},
             Case{"an end comment at the end", "%%EOF\n\n% a\n\x04\n%%EOF", ""},
             Case{"an end comment and a program", "1 pop\r\n%%EOF\r\n/a 1 def\n", "end comment 3:12"},
             Case{"an end comment and a program behind another", "%%EOF\r%%EOF\r0 0 moveto\n", "end comment 2:5"},
             Case{"an end comment and a mail", "%%EOF\n-- \n1st of all: add (it)\n", ""},
             Case{"an end comment and an open string", "%%EOF\n(a\n", ""},
         }) {
        for (const int blockSize : {1, 3, 10000}) {
            RunSettings settings;
            settings.blockSize = blockSize;
            const RunResult result = RunAsFile("%!PS\n" + c.rest, settings);
            EXPECT_EQ(result.error, PSERR_NONE) << c.what;
            EXPECT_EQ(result.tail, c.tail) << c.what << ", blocks of " << blockSize;
        }
    }
    EXPECT_EQ(RunAsFile("%!PS\nnosuch (a\n").tail, "") << "an error tells for itself";
}

TEST(ScannerTest, BraceInHexStringOfAFile) {
    // The procedure comes out first, then the hex string goes on.
    EXPECT_EQ(EntitiesOf("%!PS\n<41{10 10 moveto 20 20 lineto stroke}42> (AB) eq exch pop not {nosuch} if\n"
                         "10 10 moveto 20 20 lineto stroke\n"),
              1u);
}

TEST(ScannerTest, TheBlockSizeDoesNotShow) {
    const std::string binary = "\xC5\xD0\xD3\xC6\x0C\0\0\0\x50\0\0\0"s;
    for (const std::string& bytes : {
             std::string("%!PS\r\n/a(b\\101(c)\\\r\nd\\12)def%x\r\r\n<62 41 2863 2964313 2>a eq not{nosuch}if 1 2 "
                         "moveto//true\r\n"
                         "{{3 4}}exec exec lineto stroke<</x[5 6]>>/x get aload pop moveto 7 8 lineto stroke\r"),
             std::string("%!PS\n1 1 moveto currentfile 2 string readstring\n9 pop dup 0 get 48 sub 2 lineto stroke "
                         "currentfile 9 string readline\r\nabc\r\npop length 5 moveto 9 9 lineto stroke\rlast"),
             std::string(
                 "%!PS\n0 0 moveto currentfile/ASCIIHexDecode filter 9 string readstring\n414 2>pop length 3 lineto "
                 "stroke currentfile/ASCII85Decode filter 1 string readstring a~x~>pop pop 5 5 moveto 6 6 lineto "
                 "stroke 1 add nosuch "),
             std::string("%!PS\n1 1 moveto 16#1F 2 lineto stroke\r\n%%EOF\r\n%%EOF\r\n3 3 moveto\n"),
             "%!PS\n12\0#5 3 moveto/a\0b 1 def a 9 lineto stroke (\\"s,
             binary + "%!PS\n1 1 moveto currentfile fileposition 2 lineto stroke 3 3 moveto 4 4 lineto stroke ",
         }) {
        const auto run = [&bytes](int blockSize) {
            RunSettings settings;
            settings.blockSize = blockSize;
            const RunResult result = RunAsFile(bytes, settings);
            std::string text = std::to_string(result.error) + " at " + result.place + ", tail " + result.tail;
            for (const std::string& entity : result.entities) text += "\n" + entity;
            return text;
        };
        const std::string whole = run(10000);
        EXPECT_NE(whole.find("L "), std::string::npos) << whole;
        for (const int blockSize : {1, 2, 3, 7}) EXPECT_EQ(run(blockSize), whole) << "blocks of " << blockSize;
    }
}

TEST(ScannerTest, BlockBoundaries) {
    // Tokens, strings, escapes and comments meet the end of a block at every offset.
    const std::string program =
        "/a(b\\101(c))def %x\r\n<62 41 28 63 29>a eq not{nosuch}if 10 10 moveto 20 20 lineto stroke\r\n";
    for (size_t pad = 9900; pad < 10010; ++pad) {
        EXPECT_EQ(EntitiesOf("%!PS\n" + std::string(pad, ' ') + program), 1u) << pad;
    }
}

}  // namespace
