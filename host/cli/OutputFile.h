// Where a drawing goes: the names of the files, and the buffered stream that the writers write to.
#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Options.h"

// The output of each input file, in order: "-" for standard output, empty for none. With a directory (several
// input files, or one and an existing directory) a name is the input's base name with the format's ending,
// and "-2", "-3" before the ending where an earlier input took the name.
std::vector<std::string> PlanOutputs(const Options& options);

// Makes the directory that the outputs need, and refuses an output that is one of the input files. On failure
// it has said what is wrong on standard error and answers the exit status; otherwise it answers nothing.
std::optional<int> PrepareOutputs(const Options& options, const std::vector<std::string>& outputs);

// A file or standard output, written through a large buffer. Numbers are written without a locale.
class COutputFile {
public:
    // Opens `path` for writing, replacing what is there; "-" is standard output. See Failed.
    explicit COutputFile(const std::string& path);
    ~COutputFile();
    COutputFile(const COutputFile&) = delete;
    COutputFile& operator=(const COutputFile&) = delete;

    void Write(std::string_view text) {
        m_Buffer += text;
        if (m_Buffer.size() >= kFlushAt) Flush();
    }
    void Write(char c) { Write(std::string_view(&c, 1)); }

    // The shortest decimal that reads back to the same value.
    void WriteShortest(float value);
    void WriteShortest(double value);
    void WriteInteger(long long value);

    // Ends the file. Answers whether every byte got there; Error() tells the reason if not.
    bool Close();
    const std::string& Error() const { return m_Error; }

private:
    static constexpr std::size_t kFlushAt = 1 << 18;

    void Flush();
    void Fail();

    std::FILE* m_pFile = nullptr;
    std::string m_Buffer;
    std::string m_Error;
};
