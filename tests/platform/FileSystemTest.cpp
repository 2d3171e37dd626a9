// The door to the file system: whom it lets in, and what it refuses to open.
#include "platform/FileSystem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>

#include "support/Program.h"
#include "support/TestFrame.h"

namespace {

namespace fs = std::filesystem;

/// A fresh directory with everything in it, gone with the object.
class TempDir {
public:
    TempDir() {
        std::string path = ::testing::TempDir() + "epsfilterXXXXXX";
        EXPECT_NE(::mkdtemp(path.data()), nullptr);
        m_Path = path;
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    ~TempDir() { fs::remove_all(m_Path); }
    [[nodiscard]] std::string operator/(const char* name) const { return (m_Path / name).string(); }
    std::string Write(const char* name, const char* bytes) const {
        std::ofstream(m_Path / name) << bytes;
        return *this / name;
    }

private:
    fs::path m_Path;
};

bool Opens(std::FILE* file) {
    if (file) std::fclose(file);
    return file != nullptr;
}

TEST(FileSystemTest, DeniedProgramsSeeNoFileAtAll) {
    TestFrame frame;
    frame.m_bAllowsFiles = false;
    const TempDir dir;
    const std::string there = dir.Write("there", "text");
    const std::string fresh = dir / "fresh";
    EXPECT_EQ(FileSystem::Open(there.c_str(), "r"), nullptr);
    EXPECT_EQ(FileSystem::Open(fresh.c_str(), "w"), nullptr);
    EXPECT_FALSE(FileSystem::Remove(there.c_str()));
    EXPECT_FALSE(FileSystem::Rename(there.c_str(), fresh.c_str()));
    EXPECT_FALSE(FileSystem::Status(there.c_str()).has_value());
    EXPECT_TRUE(FileSystem::FindFiles((dir / "*").c_str()).empty());
    for (int kind = 0; kind <= 2; ++kind) EXPECT_EQ(FileSystem::StandardStream(kind), nullptr) << kind;
    EXPECT_TRUE(fs::exists(there));
    EXPECT_FALSE(fs::exists(fresh));
    EXPECT_TRUE(Opens(FileSystem::OpenInput(there.c_str(), "r+b")));  // the user's own choice
}

TEST(FileSystemTest, OnlyRegularFilesOpen) {
    const TestFrame frame;
    const TempDir dir;
    const std::string file = dir.Write("file", "text");
    const std::string pipe = dir / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0666), 0);
    EXPECT_TRUE(Opens(FileSystem::Open(file.c_str(), "r")));
    for (const std::string& path : {dir / "", pipe, std::string("/dev/zero"), dir / "missing", std::string()}) {
        SCOPED_TRACE(path);
        EXPECT_FALSE(Opens(FileSystem::Open(path.c_str(), "r")));
        EXPECT_FALSE(Opens(FileSystem::OpenInput(path.c_str(), "r+b")));
    }
    for (const char* mode : {"", "x", "+", "b"}) EXPECT_FALSE(Opens(FileSystem::Open(file.c_str(), mode))) << mode;
}

/// Gives up root's right to write every file for as long as it lives.
class OrdinaryUser {
public:
    OrdinaryUser() { EXPECT_EQ(m_Before == 0 ? ::seteuid(65534) : 0, 0); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() { EXPECT_EQ(::seteuid(m_Before), 0); }

private:
    uid_t m_Before = ::geteuid();
};

TEST(FileSystemTest, ReadOnlyInputIsRefused) {
    const TempDir dir;
    const std::string file = dir.Write("file", "%!PS");
    ASSERT_EQ(::chmod((dir / "").c_str(), 0755), 0);
    ASSERT_EQ(::chmod(file.c_str(), 0444), 0);
    const OrdinaryUser user;
    EXPECT_FALSE(Opens(FileSystem::OpenInput(file.c_str(), "r+b")));
    EXPECT_TRUE(Opens(FileSystem::OpenInput(file.c_str(), "rb")));
}

TEST(FileSystemTest, ModesReadWriteAndAppend) {
    const TestFrame frame;
    const TempDir dir;
    const std::string path = dir / "file";
    const auto write = [&](const char* mode, const char* text) {
        std::FILE* file = FileSystem::Open(path.c_str(), mode);
        ASSERT_NE(file, nullptr) << mode;
        std::fputs(text, file);
        std::fclose(file);
    };
    const auto read = [&] {
        std::ifstream in(path);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    EXPECT_FALSE(Opens(FileSystem::Open(path.c_str(), "r+")));
    write("w", "long text");
    write("w", "abc");
    write("a", "def");
    EXPECT_EQ(read(), "abcdef");
    write("r+b", "X");
    EXPECT_EQ(read(), "Xbcdef");
}

TEST(FileSystemTest, RenameOverwritesNothingAndRemoveSparesDirectories) {
    const TestFrame frame;
    const TempDir dir;
    const std::string a = dir.Write("a", "1");
    const std::string b = dir.Write("b", "22");
    const std::string c = dir / "c";
    fs::create_directory(dir / "folder");
    EXPECT_FALSE(FileSystem::Rename(a.c_str(), b.c_str()));
    EXPECT_EQ(fs::file_size(b), 2u);
    EXPECT_TRUE(FileSystem::Rename(a.c_str(), c.c_str()));
    EXPECT_FALSE(fs::exists(a));
    EXPECT_FALSE(FileSystem::Remove((dir / "folder").c_str()));
    EXPECT_TRUE(FileSystem::Remove(c.c_str()));
    EXPECT_FALSE(FileSystem::Remove(c.c_str()));
    const std::optional<FileSystem::FileStatus> status = FileSystem::Status(b.c_str());
    ASSERT_TRUE(status.has_value());
    EXPECT_EQ(status->nSize, 2);
    EXPECT_NEAR(static_cast<double>(status->nCreated), static_cast<double>(std::time(nullptr)), 600);
    EXPECT_GE(status->nModified, status->nCreated);
    const timespec longAgo[2] = {{1000, 0}, {2000, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, b.c_str(), longAgo, 0), 0);
    EXPECT_EQ(FileSystem::Status(b.c_str())->nModified, 2000);
    EXPECT_EQ(FileSystem::Status(b.c_str())->nCreated, status->nCreated) << "setting the others leaves it";
    EXPECT_FALSE(FileSystem::Status(c.c_str()).has_value());
}

TEST(FileSystemTest, FindFilesGivesAbsolutePathsInByteOrder) {
    const TestFrame frame;
    const TempDir dir;
    for (const char* name : {"b.eps", "B.eps", "a.eps", "a.txt", ".hidden"}) dir.Write(name, "");
    EXPECT_EQ(FileSystem::FindFiles((dir / "*.eps").c_str()),
              (std::vector<std::string>{dir / "B.eps", dir / "a.eps", dir / "b.eps"}));
    EXPECT_EQ(FileSystem::FindFiles((dir / ".*").c_str()), (std::vector<std::string>{dir / ".hidden"}));
    EXPECT_TRUE(FileSystem::FindFiles((dir / "none*").c_str()).empty());
    const fs::path before = fs::current_path();
    fs::current_path(dir / "");
    EXPECT_EQ(FileSystem::FindFiles("a.?xt"), (std::vector<std::string>{dir / "a.txt"}));
    fs::current_path(before);
}

TEST(FileSystemTest, StandardOutputIsLeftToTheDrawing) {
    const TestFrame frame;
    EXPECT_EQ(FileSystem::StandardStream(1), stderr);
    EXPECT_EQ(FileSystem::StandardStream(2), stderr);
    EXPECT_NE(FileSystem::StandardStream(0), nullptr);
    EXPECT_EQ(FileSystem::StandardStream(3), nullptr);
}

}  // namespace
