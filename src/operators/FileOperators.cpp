// Files and filters. Files are those of objects/File.h; names of a program's own choice reach the disk
// through platform/FileSystem.h alone: without the host's leave there is nothing.
//
// Departure: an import has no console, so that what is printed is dropped. Filters decode nothing
// (objects/Filter.h). An end of input is false for the reading operators, every other failure PSERR_IO, and
// no operator asks for access.
#include "operators/FileOperators.h"

#include <string>
#include <vector>

#include "hostout/HostCore.h"
#include "interp/Keys.h"
#include "interp/Operands.h"
#include "operators/ControlOperators.h"
#include "platform/Window.h"

namespace {

/// An operand file.
CFileElement* ReadFile(Operands& in, int depth) { return in.Get<CFileElement>(depth); }

/// An operand file or filter.
CElement* ReadStream(Operands& in, int depth) { return in.OneOf(depth, {ET_FILE, ET_FILTER}); }

/// A string operand as the C library takes a text.
std::string CText(const CStringElement& string) { return std::string(string.KeyText()); }

/// Sizes, positions and times may pass 32 bits.
void PushInt64(CFilterEPS& m, std::int64_t n) {
    TypedPtr<CNumberElement> number = NewInt(0);
    number->SetInt64(n);
    m.Push(std::move(number));
}

/// Writes bytes that were read into a string, and pushes the part that holds them and whether all was there.
int PushRead(CFilterEPS& m, const CStringElement& string, std::string_view bytes, bool complete) {
    TypedPtr<CStringElement> part = string.GetInterval(0, static_cast<std::int32_t>(bytes.size()));
    part->Write(bytes);
    m.Push(std::move(part));
    m.PushBool(complete);
    return 1;
}

/// Why a file can't be had by its name: the host allows none, or it isn't there.
const char* FileErrorName() {
    return glbf_GetMainFrame()->AllowsFileAccess() ? "undefinedfilename" : "invalidfileaccess";
}

// name access  file  file                    STACKUNDERFLOW TYPECHECK; IO, with both gone
int OpFile(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    in.String(1);
    if (!in) return -1;
    const auto access = Take<CStringElement>(m);
    const auto name = Take<CStringElement>(m);
    auto file = MakeElement<CFileElement>(CText(*name).c_str(), CText(*access).c_str());
    if (file->Open() != 1) return m.Fail(PSERR_IO, FileErrorName());
    m.Push(std::move(file));
    return 1;
}

// file  read  int true                       STACKUNDERFLOW TYPECHECK; IO, with the file gone
// file  read  false
// Departure: on a file other than the input, the end is first met as -1 true.
int OpRead(CFilterEPS& m) {
    Operands in(m);
    ReadFile(in, 0);
    if (!in) return -1;
    const auto file = Take<CFileElement>(m);
    unsigned byte = 0;
    const int result = file->ReadByte(&byte);
    if (result < 0) return m.Fail(PSERR_IO);
    if (result == 1) m.PushInt(static_cast<std::int32_t>(byte));
    m.PushBool(result == 1);
    return 1;
}

// file string  readhexstring  substring bool STACKUNDERFLOW TYPECHECK; IO, with both gone
int OpReadhexstring(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    ReadFile(in, 1);
    if (!in) return -1;
    const auto string = Take<CStringElement>(m);
    const auto file = Take<CFileElement>(m);
    std::vector<unsigned char> values;
    const int result = file->ReadHex(values, string->GetLength());
    if (result < 0) return m.Fail(PSERR_IO);
    return PushRead(m, *string, {reinterpret_cast<const char*>(values.data()), values.size()}, result == 1);
}

// file string  readstring  substring bool    STACKUNDERFLOW TYPECHECK; IO or UNSUPPORTED, with both gone
// filter string  readstring  string true
// Departure: of a filter no data comes. Its source is read over and the string stays as it is.
int OpReadstring(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    ReadStream(in, 1);
    if (!in) return -1;
    auto string = Take<CStringElement>(m);
    const ElementPtr source = m.Pop();
    if (const auto* filter = As<CFilterElement>(source.get())) {
        if (m.SkipFilterData(filter) != 1) return -1;
        m.Push(std::move(string));
        m.PushBool(true);
        return 1;
    }
    std::string bytes(static_cast<size_t>(string->GetLength()), '\0');
    unsigned count = 0;
    const int result =
        static_cast<const CFileElement&>(*source).ReadBlock(bytes.data(), static_cast<unsigned>(bytes.size()), &count);
    if (result < 0) return m.Fail(PSERR_IO);
    return PushRead(m, *string, std::string_view(bytes).substr(0, count), result == 1);
}

// -  currentfile  file
int OpCurrentfile(CFilterEPS& m) {
    // A machine that runs a text without a file answers one that can't be read.
    m.Push(m.m_pCurrentFile ? m.m_pCurrentFile->Clone() : MakeElement<CFileElement>());
    return 1;
}

// Place 9 of the chain.
constexpr OpRow kCoreRows[] = {
    {"file", OpFile},
    {"read", OpRead},
    {"readhexstring", OpReadhexstring},
    {"readstring", OpReadstring},
    {"currentfile", OpCurrentfile},
};

/// The source of a filter.
CElement* ReadSource(Operands& in, int depth) {
    CElement* source = in.OneOf(depth, {ET_FILE, ET_FILTER, ET_STRING, ET_ARRAY, ET_PACKEDARRAY});
    in.Require(!source || !source->IsArrayKind() || source->IsProcedure(), PSERR_TYPECHECK);
    return source;
}

// source name  filter  filter                STACKUNDERFLOW TYPECHECK; UNSUPPORTED, with the name gone
// source dict name  filter  filter           IO or UNSUPPORTED of "ReusableStreamDecode", with all gone
// Departure: five decoders and no encoder; filters take no parameters of their own from the stack.
int OpFilter(CFilterEPS& m) {
    Operands in(m);
    const CElement* name = in.OneOf(0, {ET_NAME, ET_STRING});
    const CElement* below = in.Any(1);
    const bool hasParams = below && below->m_nType == ET_DICT;
    ReadSource(in, hasParams ? 2 : 1);
    if (!in) return -1;
    const std::string_view kind = KeyNameOf(*name)->Text();
    if (!m.Dialect().HasFilter(kind)) {
        m.Drop(1);
        return m.Fail(PSERR_UNSUPPORTED);
    }
    m.Drop(1);
    TypedPtr<CDictionary> params = hasParams ? Take<CDictionary>(m) : nullptr;
    ElementPtr filter = m.Dialect().MakeFilter(m, kind, m.Pop(), std::move(params));
    if (!filter) return -1;
    m.Push(std::move(filter));
    return 1;
}

// file  closefile  -                         STACKUNDERFLOW TYPECHECK
int OpClosefile(CFilterEPS& m) {
    Operands in(m);
    const CFileElement* file = ReadFile(in, 0);
    if (!in) return -1;
    file->Close();
    m.Drop(1);
    return 1;
}

// file int  write  -                         STACKUNDERFLOW TYPECHECK; IO, with both gone
int OpWrite(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t byte = in.Int(0);
    const CFileElement* file = ReadFile(in, 1);
    if (!in) return -1;
    const int result = file->WriteByte(byte);
    m.Drop(2);
    return result == 1 ? 1 : m.Fail(PSERR_IO);
}

// file string  writestring  -                STACKUNDERFLOW TYPECHECK; IO, with both gone
// Departure: what is written ends at the string's first zero byte.
int OpWritestring(CFilterEPS& m) {
    Operands in(m);
    const CStringElement* string = in.String(0);
    const CFileElement* file = ReadFile(in, 1);
    if (!in) return -1;
    const int result = file->WriteText(CText(*string).c_str());
    m.Drop(2);
    return result == 1 ? 1 : m.Fail(PSERR_IO);
}

// file string  readline  substring bool      STACKUNDERFLOW TYPECHECK; IO, with both gone
// Departure: a line that is longer than the string is IO, too.
int OpReadline(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    ReadFile(in, 1);
    if (!in) return -1;
    const auto string = Take<CStringElement>(m);
    const auto file = Take<CFileElement>(m);
    std::string line;
    const int result = file->ReadLine(line, string->GetLength());
    if (result < 0) return m.Fail(PSERR_IO);
    return PushRead(m, *string, line, result == 1);
}

// file  bytesavailable  int                  STACKUNDERFLOW TYPECHECK; IO, with the file gone
// Departure: of the input these are the bytes up to the limit of the section that is being run.
int OpBytesavailable(CFilterEPS& m) {
    Operands in(m);
    ReadFile(in, 0);
    if (!in) return -1;
    const auto file = Take<CFileElement>(m);
    std::int64_t position = 0;
    std::int64_t limit = 0;
    if (file->GetPosition(position) != 1 || file->GetLimit(limit) != 1) return m.Fail(PSERR_IO);
    m.PushInt(static_cast<std::int32_t>(limit - position));
    return 1;
}

// -  flush  -
int OpFlush(CFilterEPS&) {
    FileSystem::FlushAll();
    return 1;
}

// file  flushfile  -                         STACKUNDERFLOW TYPECHECK
int OpFlushfile(CFilterEPS& m) {
    Operands in(m);
    const CFileElement* file = ReadFile(in, 0);
    if (!in) return -1;
    file->Flush();
    m.Drop(1);
    return 1;
}

// file  status  bool                         STACKUNDERFLOW TYPECHECK
// string  status  pages bytes referenced created true
// string  status  false                      IO
// Departure: a file object answers whether a file of its name exists; a name without a file ends the run.
int OpStatus(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(0, {ET_FILE, ET_STRING});
    if (!in) return -1;
    const ElementPtr operand = m.Pop();
    if (const auto* file = As<CFileElement>(operand.get())) {
        const CFileBody* body = file->GetBody();
        m.PushBool(body && FileSystem::Status(body->GetName()).has_value());
        return 1;
    }
    const auto status = FileSystem::Status(CText(static_cast<const CStringElement&>(*operand)).c_str());
    if (!status) {
        m.PushBool(false);
        return m.Fail(PSERR_IO, FileErrorName());
    }
    PushFileStatus(m, *status);
    m.PushBool(true);
    return 1;
}

// string  deletefile  -                      STACKUNDERFLOW TYPECHECK; IO, with the name gone
int OpDeletefile(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    if (!in) return -1;
    const auto name = Take<CStringElement>(m);
    return FileSystem::Remove(CText(*name).c_str()) ? 1 : m.Fail(PSERR_IO, FileErrorName());
}

// old new  renamefile  -                     STACKUNDERFLOW TYPECHECK; IO, with both gone
int OpRenamefile(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    in.String(1);
    if (!in) return -1;
    const auto newName = Take<CStringElement>(m);
    const auto oldName = Take<CStringElement>(m);
    return FileSystem::Rename(CText(*oldName).c_str(), CText(*newName).c_str()) ? 1 : m.Fail(PSERR_IO, FileErrorName());
}

// template proc scratch  filenameforall  -   STACKUNDERFLOW TYPECHECK; UNSUPPORTED, with all gone
// Departure: the procedure gets absolute paths; one that is longer than the scratch string is cut there. A
// template that begins with "%device%" is refused, and `stop` ends the loop like `exit`.
int OpFilenameforall(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    in.Procedure(1);
    in.String(2);
    if (!in) return -1;
    const auto scratch = Take<CStringElement>(m);
    const auto procedure = Take<CArrayElement>(m);
    const std::string pattern = CText(*Take<CStringElement>(m));
    if (pattern.starts_with("%device%")) return m.Fail(PSERR_UNSUPPORTED);
    LoopPass pass = LoopPass::goOn;
    for (const std::string& path : FileSystem::FindFiles(pattern.c_str())) {
        // The length anew at each pass: the procedure may take the string's body away by a `restore`.
        const auto room = static_cast<size_t>(scratch->GetLength());
        const std::string_view shown = std::string_view(path).substr(0, room);
        TypedPtr<CStringElement> part = scratch->GetInterval(0, static_cast<std::int32_t>(shown.size()));
        part->Write(shown);
        m.Push(std::move(part));
        pass = RunLoopPass(m, *procedure);
        if (pass != LoopPass::goOn) break;
    }
    return pass == LoopPass::failed ? -1 : 1;
}

// file position  setfileposition  -          STACKUNDERFLOW TYPECHECK; IO, with both gone
int OpSetfileposition(CFilterEPS& m) {
    Operands in(m);
    const CFileElement* file = ReadFile(in, 1);
    const CNumberElement* position = in.Number(0);
    if (!in) return -1;
    const int result = file->SetPosition(position->GetInt64());
    m.Drop(2);
    return result == 1 ? 1 : m.Fail(PSERR_IO);
}

// file  fileposition  int                    STACKUNDERFLOW TYPECHECK; IO, with the file gone
int OpFileposition(CFilterEPS& m) {
    Operands in(m);
    ReadFile(in, 0);
    if (!in) return -1;
    const auto file = Take<CFileElement>(m);
    std::int64_t position = 0;
    if (file->GetPosition(position) != 1) return m.Fail(PSERR_IO);
    PushInt64(m, position);
    return 1;
}

// int  setobjectformat  -                    STACKUNDERFLOW TYPECHECK
int OpSetobjectformat(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t format = in.Int(0);
    if (!in) return -1;
    m.m_nObjectFormat = format;
    m.Drop(1);
    return 1;
}

// -  currentobjectformat  int
int OpCurrentobjectformat(CFilterEPS& m) {
    m.PushInt(m.m_nObjectFormat);
    return 1;
}

// Place 30 of the chain.
constexpr OpRow kRows[] = {
    {"filter", OpFilter},
    {"closefile", OpClosefile},
    {"write", OpWrite},
    {"writehexstring", OpDiscard<&Operands::String, ReadFile>},  // Departure: nothing is written
    {"writestring", OpWritestring},
    {"readline", OpReadline},
    {"bytesavailable", OpBytesavailable},
    {"flush", OpFlush},
    {"flushfile", OpFlushfile},
    {"resetfile", OpDiscard<ReadStream>},
    {"status", OpStatus},
    {"run", OpUnsupported},
    {"currentfile", OpCurrentfile},  // a second time: the core table claims it first
    {"deletefile", OpDeletefile},
    {"renamefile", OpRenamefile},
    {"filenameforall", OpFilenameforall},
    {"setfileposition", OpSetfileposition},
    {"fileposition", OpFileposition},
    {"print", OpDiscard<&Operands::String>},
    {"=", OpDiscard<&Operands::Any>},
    {"==", OpDiscard<&Operands::Any>},
    {"stack", OpNothing},
    {"pstack", OpNothing},
    {"printobject", OpDiscard<&Operands::Any, &Operands::Any>},
    {"writeobject", OpUnsupported},
    {"setobjectformat", OpSetobjectformat},
    {"currentobjectformat", OpCurrentobjectformat},
};

}  // namespace

bool CDialect::HasFilter(std::string_view name) const { return FilterKindOf(name) != FILTER_NONE; }

ElementPtr CDialect::MakeFilter(CFilterEPS& m, std::string_view name, ElementPtr source, TypedPtr<CDictionary> params) {
    const FilterKind kind = FilterKindOf(name);
    auto filter = MakeElement<CFilterElement>(kind, std::move(source), std::move(params));
    if (kind == FILTER_REUSABLE && m.SkipFilterData(filter.get()) != 1) return nullptr;
    return filter;
}

void PushFileStatus(CFilterEPS& m, const FileSystem::FileStatus& status) {
    constexpr std::int64_t bytesPerPage = 1024;
    PushInt64(m, status.nSize / bytesPerPage);
    PushInt64(m, status.nSize);
    PushInt64(m, status.nModified);
    PushInt64(m, status.nCreated);
}

constinit const OpTable kFileCoreOperators{kCoreRows};
constinit const OpTable kFileOperators{kRows};
