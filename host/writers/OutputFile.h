// The buffered stream that the writers write to.
#pragma once

#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "writers/Decimals.h"

/// A file or standard output, written through a large buffer. Numbers are written without a locale.
class COutputFile {
public:
    /// Opens `path` for writing, replacing what is there; "-" is standard output. See Error.
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

    /// The texts of writers/Decimals.h.
    void WriteShortest(float value) { EndAt(PutShortest(Room(kDecimalRoom), value)); }
    void WriteShortest(double value) { EndAt(PutShortest(Room(kDecimalRoom), value)); }
    void WriteFixed(double value) { EndAt(PutFixed(Room(kDecimalRoom), value)); }
    void WriteInteger(long long value) {
        char* const at = Room(kDecimalRoom);
        EndAt(std::to_chars(at, at + kDecimalRoom, value).ptr);
    }

    /// Room for `size` bytes, kRoom at most, to be filled from its start up to the place that EndAt is told.
    char* Room(std::size_t size) {
        if (size > kRoom - m_nUsed) Flush();
        return m_Buffer.get() + m_nUsed;
    }
    void EndAt(const char* end) { m_nUsed = static_cast<std::size_t>(end - m_Buffer.get()); }

    /// Ends the file. Answers whether every byte got there; Error() tells the reason if not.
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
