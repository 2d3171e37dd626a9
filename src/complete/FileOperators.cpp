// The operators on files (PLRM, File Operators), with the errors of the reference. An end of input is false; a file
// that is closed is an ioerror to read from and to write to, and nothing to the operators that end its use.
#include "complete/FileOperators.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "complete/FilterObjects.h"
#include "complete/ProgramLexer.h"
#include "hostout/HostCore.h"
#include "interp/Operands.h"
#include "operators/FileOperators.h"
#include "platform/Window.h"

namespace {

/// Takes two operands as owned elements, so that a procedure that a filter runs may do with the stack what it likes.
/// They come back when the operator fails.
template <class Lower, class Upper>
class CTakenPair {
public:
    explicit CTakenPair(CFilterEPS& m) : m_Machine(m), m_pUpper(Take<Upper>(m)), m_pLower(Take<Lower>(m)) {}
    CTakenPair(const CTakenPair&) = delete;
    CTakenPair& operator=(const CTakenPair&) = delete;

    const Lower& LowerOne() const { return *m_pLower; }
    const Upper& UpperOne() const { return *m_pUpper; }
    /// result, when it is no failure; else the operands are back.
    int Finish(int result) {
        if (result == 1) return 1;
        m_Machine.Push(std::move(m_pLower));
        m_Machine.Push(std::move(m_pUpper));
        return -1;
    }

private:
    CFilterEPS& m_Machine;
    TypedPtr<Upper> m_pUpper;
    TypedPtr<Lower> m_pLower;
};

/// Writes bytes that were read into a string, and pushes the part that holds them and whether all was there.
int PushRead(CFilterEPS& m, const CStringElement& string, std::string_view bytes, bool complete) {
    TypedPtr<CStringElement> part = string.GetInterval(0, static_cast<std::int32_t>(bytes.size()));
    part->Write(bytes);
    m.Push(std::move(part));
    m.PushBool(complete);
    return 1;
}

/// Fails as a file that can't be had by its name does: the host allows none, or it isn't there.
int FailName(CFilterEPS& m) {
    return m.Fail(PSERR_IO, glbf_GetMainFrame()->AllowsFileAccess() ? "undefinedfilename" : "invalidfileaccess");
}

/// A sink for what is printed: an import has no console.
class CNowhere final : public CByteSink {
public:
    [[nodiscard]] bool Write(std::span<const unsigned char>) override { return true; }
    [[nodiscard]] bool Close() override { return true; }
};

/// The file of a name and access; null with the code. "%stdin" is the channel that the program comes through.
TypedPtr<CFileElement> OpenNamed(CFilterEPS& m, const std::string& name, const std::string& access) {
    constexpr std::string_view modes[] = {"r", "w", "a", "r+", "w+", "a+"};
    if (std::find(std::begin(modes), std::end(modes), access) == std::end(modes)) {
        m.Fail(PSERR_IO, "invalidfileaccess");
        return nullptr;
    }
    if (name.starts_with("%")) {
        if (name == "%stdin" && access == "r" && m.m_pCurrentFile) return m.m_pCurrentFile->CloneFile();
        if ((name == "%stdout" || name == "%stderr") && access == "w") {
            return MakeElement<CFileElement>(std::make_unique<CNowhere>());
        }
        m.Fail(PSERR_IO, name.starts_with("%std") ? "invalidfileaccess" : "undefinedfilename");
        return nullptr;
    }
    auto file = MakeElement<CFileElement>(name.c_str(), access.c_str());
    if (name != "stdout" && name != "stderr" && file->Open() == 1) return file;
    FailName(m);
    return nullptr;
}

// name access  file  file
//                                            stackunderflow typecheck invalidfileaccess undefinedfilename
int OpFile(CFilterEPS& m) {
    Operands in(m);
    const auto* access = in.String(0);
    const auto* name = in.String(1);
    if (!in) return -1;
    TypedPtr<CFileElement> file = OpenNamed(m, std::string(name->KeyText()), access->GetText());
    if (!file) return -1;
    m.Drop(2);
    m.Push(std::move(file));
    return 1;
}

// string  run  -                             stackunderflow typecheck invalidfileaccess undefinedfilename
int OpRun(CFilterEPS& m) {
    Operands in(m);
    const auto* name = in.String(0);
    if (!in) return -1;
    TypedPtr<CFileElement> file = OpenNamed(m, std::string(name->KeyText()), "r");
    if (!file) return -1;
    m.Drop(1);
    file->m_bExec = true;
    return m.ExecuteObject(*file);
}

/// Reads a byte: 1, 0 at the end, -1.
int ReadByte(const CFileElement& file, unsigned& byte) {
    const int result = file.ReadByte(&byte);
    return result == 1 && byte == static_cast<unsigned>(EOF) ? 0 : result;  // a stream ran into its end
}

// file  read  int true                       stackunderflow typecheck ioerror
// file  read  false
int OpRead(CFilterEPS& m) {
    Operands in(m);
    in.Get<CFileElement>(0);
    if (!in) return -1;
    auto file = Take<CFileElement>(m);
    unsigned byte = 0;
    const int result = ReadByte(*file, byte);
    if (result < 0) {
        m.Push(std::move(file));
        return FailRead(m);
    }
    if (result == 1) m.PushInt(static_cast<std::int32_t>(byte));
    m.PushBool(result == 1);
    return 1;
}

/// file string  ...  substring bool           stackunderflow typecheck rangecheck ioerror
/// Fetch reads into bytes what a string of so many takes: 1 when it is full, 0 at the end, -1.
template <int (*Fetch)(const CFileElement& file, std::int32_t size, std::string& bytes)>
int OpReadInto(CFilterEPS& m) {
    Operands in(m);
    const auto* string = in.String(0);
    in.Get<CFileElement>(1);
    in.Require(!string || string->GetLength() > 0, PSERR_RANGE);
    if (!in) return -1;
    CTakenPair<CFileElement, CStringElement> taken(m);
    std::string bytes;
    const int result = Fetch(taken.LowerOne(), taken.UpperOne().GetLength(), bytes);
    return taken.Finish(result < 0 ? FailRead(m) : PushRead(m, taken.UpperOne(), bytes, result == 1));
}

int FetchBytes(const CFileElement& file, std::int32_t size, std::string& bytes) {
    bytes.resize(static_cast<std::size_t>(size));
    unsigned count = 0;
    const int result = file.ReadBlock(bytes.data(), static_cast<unsigned>(size), &count);
    bytes.resize(count);
    return result;
}

int FetchHex(const CFileElement& file, std::int32_t size, std::string& bytes) {
    std::vector<unsigned char> values;
    const int result = file.ReadHex(values, size);
    bytes.assign(values.begin(), values.end());
    return result;
}

// file string  readline  substring bool      stackunderflow typecheck rangecheck ioerror
int OpReadline(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    in.Get<CFileElement>(1);
    if (!in) return -1;
    CTakenPair<CFileElement, CStringElement> taken(m);
    const std::int32_t size = taken.UpperOne().GetLength();
    std::string line;
    const int result = taken.LowerOne().ReadLine(line, size);
    if (result < 0 && line.size() > static_cast<std::size_t>(size)) return taken.Finish(m.Fail(PSERR_RANGE));
    return taken.Finish(result < 0 ? FailRead(m) : PushRead(m, taken.UpperOne(), line, result == 1));
}

/// 1, or -1 with ioerror.
int WriteBytes(CFilterEPS& m, const CFileElement& file, std::string_view bytes) {
    CFileBody* body = file.GetBody();
    return body && body->Write(bytes) == 1 ? 1 : FailRead(m);
}

// file int  write  -                         stackunderflow typecheck ioerror
int OpWrite(CFilterEPS& m) {
    Operands in(m);
    in.Number(0);
    in.Get<CFileElement>(1);
    if (!in) return -1;
    CTakenPair<CFileElement, CNumberElement> taken(m);
    const auto byte = static_cast<char>(taken.UpperOne().GetInt());
    return taken.Finish(WriteBytes(m, taken.LowerOne(), {&byte, 1}));
}

std::string AsItIs(std::string_view bytes) { return std::string(bytes); }

std::string InHex(std::string_view bytes) {
    std::string hex;
    for (const char c : bytes) {
        hex.push_back("0123456789abcdef"[static_cast<unsigned char>(c) >> 4]);
        hex.push_back("0123456789abcdef"[c & 15]);
    }
    return hex;
}

// file string  writestring  -                stackunderflow typecheck ioerror
// file string  writehexstring  -
template <std::string (*Form)(std::string_view)>
int OpWritestring(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    in.Get<CFileElement>(1);
    if (!in) return -1;
    CTakenPair<CFileElement, CStringElement> taken(m);
    return taken.Finish(WriteBytes(m, taken.LowerOne(), Form(taken.UpperOne().Bytes())));
}

// file  closefile  -                         stackunderflow typecheck
int OpClosefile(CFilterEPS& m) {
    Operands in(m);
    in.Get<CFileElement>(0);
    if (!in) return -1;
    CloseFile(*Take<CFileElement>(m));
    return 1;
}

// file  flushfile  -                         stackunderflow typecheck ioerror
// A file to read is read to its end; of what is written a filter may keep back what it can't write yet.
int OpFlushfile(CFilterEPS& m) {
    Operands in(m);
    in.Get<CFileElement>(0);
    if (!in) return -1;
    auto file = Take<CFileElement>(m);
    CFileBody* body = file->GetBody();
    if (!body || !body->IsOpen()) return 1;
    if (!body->GetSource()) {
        file->Flush();
        return 1;
    }
    char block[4096];
    for (int result = 1; result == 1;) {
        unsigned count = 0;
        result = file->ReadBlock(block, sizeof block, &count);
        if (result >= 0) continue;
        m.Push(std::move(file));
        return FailRead(m);
    }
    return 1;
}

// file  status  bool                         stackunderflow typecheck
// string  status  pages bytes referenced created true
// string  status  false
int OpStatus(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(0, {ET_FILE, ET_STRING});
    if (!in) return -1;
    const ElementPtr operand = m.Pop();
    if (const auto* file = As<CFileElement>(operand.get())) {
        const CFileBody* body = file->GetBody();
        m.PushBool(body && body->IsOpen());
        return 1;
    }
    const auto status = FileSystem::Status(std::string(static_cast<const CStringElement&>(*operand).KeyText()).c_str());
    if (status) PushFileStatus(m, *status);
    m.PushBool(status.has_value());
    return 1;
}

// file  bytesavailable  int                  stackunderflow typecheck ioerror
// -1 where it can't be told, as of a filter.
int OpBytesavailable(CFilterEPS& m) {
    Operands in(m);
    const auto* file = in.Get<CFileElement>(0);
    if (!in) return -1;
    const CFileBody* body = file->GetBody();
    if (!body || !body->IsOpen()) return m.Fail(PSERR_IO);
    std::int64_t position = 0;
    std::int64_t limit = 0;
    const bool isKnown = file->GetPosition(position) == 1 && file->GetLimit(limit) == 1 && position < limit;
    m.Drop(1);
    m.PushInt(isKnown ? static_cast<std::int32_t>(limit - position) : -1);
    return 1;
}

// file  fileposition  int                    stackunderflow typecheck ioerror
int OpFileposition(CFilterEPS& m) {
    Operands in(m);
    const auto* file = in.Get<CFileElement>(0);
    if (!in) return -1;
    std::int64_t position = 0;
    if (file->GetPosition(position) != 1) return m.Fail(PSERR_IO);
    m.Drop(1);
    m.PushInt(static_cast<std::int32_t>(position));
    return 1;
}

// file position  setfileposition  -          stackunderflow typecheck rangecheck ioerror
int OpSetfileposition(CFilterEPS& m) {
    Operands in(m);
    const auto* position = in.Number(0);
    const auto* file = in.Get<CFileElement>(1);
    in.Require(!position || position->GetReal() >= 0, PSERR_RANGE);
    if (!in) return -1;
    std::int64_t limit = 0;
    if (file->GetLimit(limit) == 1 && position->GetInt64() > limit) return m.Fail(PSERR_IO);
    if (file->SetPosition(position->GetInt64()) != 1) return m.Fail(PSERR_IO);
    m.Drop(2);
    return 1;
}

// file  token  any true                      stackunderflow typecheck syntaxerror undefined ioerror
// file  token  false                         and the file is closed
// string  token  post any true
// string  token  false
int OpToken(CFilterEPS& m) {
    Operands in(m);
    const CElement* source = in.OneOf(0, {ET_FILE, ET_STRING});
    if (!in) return -1;
    ElementPtr object;
    if (const auto* string = As<CStringElement>(source)) {
        std::int32_t consumed = 0;
        if (m.ScanToken(*string, object, consumed) < 0) return -1;
        const auto taken = Take<CStringElement>(m);
        if (object) m.Push(taken->GetInterval(consumed, taken->GetLength() - consumed));
    } else {
        auto file = Take<CFileElement>(m);
        CProgramLexer<CompleteFileRules> lexer{CProgramSource(*file)};
        if (ReadNext(m, lexer, object) != 1) {
            m.Push(std::move(file));
            return -1;
        }
        if (lexer.HoldsSpecial()) file->UnreadByte();
        if (!object) CloseFile(*file);
    }
    const bool found = object != nullptr;
    if (found) m.Push(std::move(object));
    m.PushBool(found);
    return 1;
}

constexpr OpRow kRows[] = {
    {"file", OpFile},
    {"run", OpRun},
    {"read", OpRead},
    {"readstring", OpReadInto<FetchBytes>},
    {"readhexstring", OpReadInto<FetchHex>},
    {"readline", OpReadline},
    {"write", OpWrite},
    {"writestring", OpWritestring<AsItIs>},
    {"writehexstring", OpWritestring<InHex>},
    {"closefile", OpClosefile},
    {"flushfile", OpFlushfile},
    {"resetfile", OpDiscard<&Operands::Get<CFileElement>>},
    {"status", OpStatus},
    {"bytesavailable", OpBytesavailable},
    {"fileposition", OpFileposition},
    {"setfileposition", OpSetfileposition},
    {"token", OpToken},
};

}  // namespace

constinit const OpTable kCompleteFileOperators{kRows};
