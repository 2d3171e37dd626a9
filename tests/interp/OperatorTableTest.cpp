// What stands above the rows of the operator tables is read by people who change them: that it tells the place that the
// chain gives the table, and that functions are called as the rows say.
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>

#include "interp/OperatorChain.h"
#include "support/Program.h"

namespace {

std::string TextOf(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The sources of the rooms that have operators, one behind the other.
std::string FamilySources() {
    std::string all;
    for (const char* room : {"graphics", "operators", "text"}) {
        for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(EPS_SOURCES) / room)) {
            if (entry.path().extension() == ".cpp") all += TextOf(entry.path());
        }
    }
    return all;
}

std::vector<std::smatch> Matches(const std::string& text, const std::regex& pattern) {
    return {std::sregex_iterator(text.begin(), text.end(), pattern), std::sregex_iterator()};
}

/// The comment above the rows of a table, by the text of its source from the start of the file on.
std::string HeadOf(const std::string& sources, const std::string& table) {
    const std::size_t definition = sources.find("constinit const OpTable " + table + "{");
    if (definition == std::string::npos) return "no such table";
    const std::size_t open = sources.find('{', definition) + 1;
    const std::string rows = sources.substr(open, sources.find('}', open) - open);
    // The rows stand above the definition, in the same file.
    const std::size_t begin = sources.rfind("\nconstexpr OpRow " + rows + "[]", definition);
    if (begin == std::string::npos) return "no such rows";
    const std::size_t line = sources.rfind('\n', begin - 1) + 1;
    return sources.substr(line, begin - line);
}

TEST(OperatorTableTest, HeadsTellTheirPlaceInTheChain) {
    const std::string sources = FamilySources();
    const std::string chain = TextOf(std::filesystem::path(EPS_SOURCES) / "interp/OperatorChain.cpp");
    const std::vector<std::smatch> links = Matches(chain, std::regex(R"(\{(\d+), &(k\w+)\})"));
    ASSERT_EQ(links.size(), OperatorChain().size());
    for (std::size_t i = 0; i < links.size(); ++i) {
        const std::string place = links[i][1];
        const bool follows = i > 0 && links[i - 1][1] == place;
        const bool leads = i + 1 < links.size() && links[i + 1][1] == place;
        std::string head = "// Place " + place + " of the chain";
        head += follows ? ", compared after " + links[i - 1][2].str() + "." : leads ? ", its first table." : ".";
        EXPECT_EQ(HeadOf(sources, links[i][2]), head) << links[i][2];
    }
}

TEST(OperatorTableTest, FunctionsAreCalledLikeTheirOperators) {
    const std::string sources = FamilySources();
    const std::vector<std::smatch> rows = Matches(sources, std::regex(R"re(\n    \{"\.?([^"]+)", Op(\w+))re"));
    ASSERT_GT(rows.size(), 300u) << "a table that is not written one row a line";
    const auto lower = [](std::string text) {
        std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
        return text;
    };
    for (const std::smatch& row : rows) {
        std::string spelled = row[1];
        if (lower(spelled) != lower(row[2])) continue;  // the function of a family
        spelled[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(spelled[0])));
        EXPECT_EQ(row[2], spelled);
    }
}

}  // namespace
