// Output names and the output stream.
#include "OutputFile.h"

#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <set>

#include "Text.h"

namespace fs = std::filesystem;

namespace {

bool GoesToDirectory(const Options& options) {
    if (options.files.size() > 1) return true;
    if (options.output.empty() || options.output == "-") return false;
    std::error_code ignored;
    return options.output.back() == '/' || fs::is_directory(options.output, ignored);
}

template <class T>
std::string_view Shortest(char (&room)[64], T value) {
    const auto end = std::to_chars(room, room + sizeof room, value).ptr;
    return {room, static_cast<std::size_t>(end - room)};
}

}  // namespace

std::vector<std::string> PlanOutputs(const Options& options) {
    std::vector<std::string> outputs(options.files.size());
    if (options.format == DrawingFormat::None) return outputs;
    if (!GoesToDirectory(options)) {
        outputs.front() = options.output.empty() ? "-" : options.output;
        return outputs;
    }
    std::set<std::string> taken;
    for (std::size_t i = 0; i < outputs.size(); ++i) {
        const std::string base = options.files[i] == "-" ? "stdin" : fs::path(options.files[i]).stem().string();
        std::string name = base;
        for (int n = 2; !taken.insert(name).second; ++n) name = base + "-" + std::to_string(n);
        outputs[i] = (fs::path(options.output) / (name + EndingOf(options.format))).string();
    }
    return outputs;
}

std::optional<int> PrepareOutputs(const Options& options, const std::vector<std::string>& outputs) {
    std::error_code error;
    if (options.format != DrawingFormat::None && GoesToDirectory(options)) {
        fs::create_directories(options.output, error);
        if (error) {
            Complain("can't make the directory " + options.output + ": " + error.message());
            return kExitNotWhole;
        }
    }
    for (const std::string& output : outputs) {
        if (output.empty() || output == "-" || !fs::is_regular_file(output, error)) continue;
        for (const std::string& input : options.files) {
            if (!fs::equivalent(output, input, error) || error) continue;
            Complain("the drawing would replace its own input file " + input);
            return kExitUsage;
        }
    }
    return std::nullopt;
}

COutputFile::COutputFile(const std::string& path) {
    m_pFile = path == "-" ? stdout : std::fopen(path.c_str(), "wb");
    if (m_pFile == nullptr) Fail();
    m_Buffer.reserve(kFlushAt + 4096);
}

COutputFile::~COutputFile() {
    if (m_pFile != nullptr && m_pFile != stdout) std::fclose(m_pFile);
}

void COutputFile::WriteShortest(float value) {
    char room[64];
    Write(Shortest(room, value));
}

void COutputFile::WriteShortest(double value) {
    char room[64];
    Write(Shortest(room, value));
}

void COutputFile::WriteInteger(long long value) {
    char room[64];
    Write(Shortest(room, value));
}

bool COutputFile::Close() {
    Flush();
    if (m_pFile == nullptr) return m_Error.empty();
    const bool isStdout = m_pFile == stdout;
    if ((isStdout ? std::fflush(m_pFile) : std::fclose(m_pFile)) != 0) Fail();
    m_pFile = nullptr;
    return m_Error.empty();
}

void COutputFile::Flush() {
    if (m_pFile != nullptr && std::fwrite(m_Buffer.data(), 1, m_Buffer.size(), m_pFile) != m_Buffer.size()) Fail();
    m_Buffer.clear();
}

// Only the first reason counts: what follows comes of it.
void COutputFile::Fail() {
    if (m_Error.empty()) m_Error = std::strerror(errno);
}
