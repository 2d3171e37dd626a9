// The buffered stream that the writers write to.
#pragma once

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

// A file or standard output, written through a large buffer. Numbers are written without a locale.
class COutputFile {
public:
    // Opens `path` for writing, replacing what is there; "-" is standard output. See Error.
    explicit COutputFile(const std::string& path);
    ~COutputFile();
    COutputFile(const COutputFile&) = delete;
    COutputFile& operator=(const COutputFile&) = delete;

    void Write(std::string_view text) {
        if (text.size() > kRoom - m_nUsed) return WriteBehindFlush(text);
        std::memcpy(m_Buffer.get() + m_nUsed, text.data(), text.size());
        m_nUsed += text.size();
    }
    void Write(char c) { Write(std::string_view(&c, 1)); }

    // The shortest decimal that reads back to the same value.
    void WriteShortest(float value);
    void WriteShortest(double value);
    // Four decimals, correctly rounded, without zeros at their end; 0 has no sign.
    void WriteFixed(double value);
    void WriteInteger(long long value);

    // Ends the file. Answers whether every byte got there; Error() tells the reason if not.
    bool Close();
    const std::string& Error() const { return m_Error; }

private:
    static constexpr std::size_t kRoom = 1 << 18;

    void WriteBehindFlush(std::string_view text);
    void Flush() { Put({m_Buffer.get(), std::exchange(m_nUsed, 0)}); }
    void Put(std::string_view bytes);
    void Fail();

    std::FILE* m_pFile = nullptr;
    const std::unique_ptr<char[]> m_Buffer = std::make_unique_for_overwrite<char[]>(kRoom);
    std::size_t m_nUsed = 0;
    std::string m_Error;
};
