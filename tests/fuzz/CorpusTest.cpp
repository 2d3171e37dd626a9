// Replays the corpora of the fuzz targets: past faults, and seeds that reach far.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "complete/CompleteDialect.h"
#include "fuzz/Harness.h"
#include "support/Program.h"

namespace {

int Replay(const char* corpus, void (*target)(const std::uint8_t*, std::size_t)) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(FUZZ_CORPUS) / corpus)) {
        SCOPED_TRACE(entry.path().string());
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(in), {}};
        target(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++count;
    }
    return count;
}

void RunPlain(const std::uint8_t* data, std::size_t size) { FuzzRun(data, size); }

void RunComplete(const std::uint8_t* data, std::size_t size) { FuzzRun(data, size, MakeDialect<CCompleteDialect>); }

TEST(CorpusTest, Run) { EXPECT_GT(Replay("run", RunPlain), 0); }

TEST(CorpusTest, RunInTheCompleteDialect) {
    EXPECT_GT(Replay("run", RunComplete), 0);
    EXPECT_GT(Replay("complete", RunComplete), 0);
}

TEST(CorpusTest, Scanner) { EXPECT_GT(Replay("scanner", FuzzScanner), 0); }

TEST(CorpusTest, Filter) { EXPECT_GT(Replay("filter", FuzzFilter), 0); }

TEST(CorpusTest, Font) { EXPECT_GT(Replay("font", FuzzFont), 0); }

TEST(CorpusTest, Writers) { EXPECT_GT(Replay("writers", FuzzWriters), 0); }

TEST(CorpusTest, FileInfo) { EXPECT_GT(Replay("info", FuzzFileInfo), 0); }

}  // namespace
