// The buffered stream that the writers write to.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

// A file or standard output, written through a large buffer. Numbers are written without a locale.
class COutputFile {
public:
    // Opens `path` for writing, replacing what is there; "-" is standard output. See Error.
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
