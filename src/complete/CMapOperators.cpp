// The operators that make a CMap (PLRM, CMap Dictionaries) work on the current dictionary, and leave what they gather
// in two hidden entries of it. StartData reads the data that stand behind a CIDFont or a set of fonts.
#include "complete/CMapOperators.h"

#include <vector>

#include "complete/CompleteDialect.h"
#include "complete/FilterObjects.h"
#include "graphics/MatrixOperators.h"
#include "interp/Keys.h"
#include "interp/Operands.h"

namespace {

using text::CodeMap;
using Target = CodeMap::Target;

const FontNames& NamesOf(const CFilterEPS& m) { return CCompleteDialect::Of(m).Fonts().Names(); }

// What the next records of a CMap are about.
constexpr std::string_view USE_FONT = ".UseFont";
constexpr std::string_view USE_MATRIX = ".UseMatrix";

void Append(CDictionary& cmap, const CName* key, std::string_view records) {
    const auto* before = As<CStringElement>(cmap.GetValue(key));
    std::string all = before ? before->GetText() : std::string();
    all.append(records);
    cmap.Put(key, MakeElement<CStringElement>(std::string_view(all)));
}

/// Adds names to the list of those that codes select; answers the place of the first one.
std::uint32_t AddNames(CFilterEPS& m, CDictionary& cmap, std::vector<ElementPtr> names) {
    const auto* before = As<CArrayElement>(cmap.GetValue(NamesOf(m).glyphNames));
    std::vector<ElementPtr> all;
    for (std::int32_t i = 0; before && i < before->GetLength(); ++i) all.push_back(before->GetAt(i)->Clone());
    const auto first = static_cast<std::uint32_t>(all.size());
    for (ElementPtr& name : names) all.push_back(std::move(name));
    cmap.Put(NamesOf(m).glyphNames, MakeElement<CArrayElement>(std::move(all)));
    return first;
}

// -  begincmap  -
int OpBegincmap(CFilterEPS& m) {
    m.TopDict()->Put(NamesOf(m).codeMap, MakeElement<CStringElement>(std::string_view()));
    return 1;
}

// int  begin...  mark                        stackunderflow typecheck
int OpBeginList(CFilterEPS& m) {
    Operands in(m);
    in.Number(0);
    if (!in) return -1;
    m.Drop(1);
    m.Push(NewMark());
    return 1;
}

// any any  beginrearrangedfont  -            stackunderflow
// Departure: fonts are not rearranged.
int OpBeginrearrangedfont(CFilterEPS& m) {
    Operands in(m);
    in.Any(1);
    if (!in) return -1;
    m.Drop(2);
    return 1;
}

// key  usecmap  -                            stackunderflow typecheck undefinedresource
int OpUsecmap(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(0, {ET_NAME, ET_STRING});
    if (!in) return -1;
    m.Push(MakeElement<CSimpElement>(std::string_view("CMap")));
    if (InternName("findresource")->m_pfnOperator(m) != 1) {
        if (m.m_nError != PSERR_NONE) m.Drop(1);
        return -1;
    }
    const ElementPtr found = m.Pop();
    const auto* other = As<CDictionary>(found.get());
    if (!other) return m.Fail(PSERR_TYPECHECK);
    const FontNames& names = NamesOf(m);
    if (const auto* contents = As<CStringElement>(other->GetValue(names.codeMap))) {
        Append(*m.TopDict(), names.codeMap, contents->Bytes());
    }
    for (const CName* key : {names.glyphNames, names.fontMatrices}) {
        if (const CElement* kept = other->GetValue(key)) m.TopDict()->Put(key, kept->Clone());
    }
    return 1;
}

// int  usefont  -                            stackunderflow typecheck rangecheck
int OpUsefont(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t font = in.Int(0);
    in.Require(font >= 0 && font < 256, PSERR_RANGE);
    if (!in) return -1;
    m.Drop(1);
    m.TopDict()->Put(USE_FONT, NewInt(font));
    return 1;
}

// int  beginusematrix  -                     stackunderflow typecheck rangecheck
int OpBeginusematrix(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t font = in.Int(0);
    in.Require(font >= 0 && font < 256, PSERR_RANGE);
    if (!in) return -1;
    m.Drop(1);
    m.TopDict()->Put(USE_MATRIX, NewInt(font));
    return 1;
}

// matrix  endusematrix  -                    stackunderflow typecheck rangecheck
int OpEndusematrix(CFilterEPS& m) {
    Operands in(m);
    const CArrayElement* matrix = in.AnyArray(0);
    double six[6];
    if (in) {
        const ErrorCode error = ReadMatrix(*matrix, six);
        in.Require(error == PSERR_NONE, error);
    }
    if (!in) return -1;
    const FontNames& names = NamesOf(m);
    CDictionary& cmap = *m.TopDict();
    const auto* before = As<CDictionary>(cmap.GetValue(names.fontMatrices));  // perhaps another CMap's, too
    auto matrices = MakeElement<CDictionary>(4);
    if (before) static_cast<void>(before->CopyTo(matrices.get()));
    if (const CElement* font = cmap.GetValue(USE_MATRIX)) matrices->PutOther(font->Clone(), matrix->Clone());
    cmap.Put(names.fontMatrices, std::move(matrices));
    m.Drop(1);
    return 1;
}

/// The elements above the topmost mark in groups of so many, which go with the mark when all of them are read.
class CList {
public:
    CList(CFilterEPS& m, int group) : m_Machine(m), m_nGroup(group), m_nCount(m.m_OperandStack.CountToMark()) {
        if (m_nCount < 0) {
            m.Fail(PSERR_UNMATCHEDMARK);
        } else if (m_nCount % group != 0) {
            m.Fail(PSERR_RANGE);
            m_nCount = -1;
        }
        for (int i = 0; i < m_nCount; ++i) m_Elements.push_back(m.m_OperandStack.AtFromTop(m_nCount - 1 - i));
    }
    [[nodiscard]] bool IsThere() const noexcept { return m_nCount >= 0; }
    [[nodiscard]] int Groups() const noexcept { return m_nCount / m_nGroup; }
    [[nodiscard]] const CElement& At(int group, int i) const noexcept {
        return *m_Elements[static_cast<std::size_t>(group * m_nGroup + i)];
    }
    int Done() {
        m_Machine.Drop(m_nCount + 1);
        return 1;
    }

private:
    CFilterEPS& m_Machine;
    int m_nGroup;
    int m_nCount;
    std::vector<const CElement*> m_Elements;
};

/// The bytes of a code; false with the error.
bool ReadCode(CFilterEPS& m, const CElement& e, std::string_view& code) {
    const auto* string = As<CStringElement>(&e);
    if (!string) {
        m.Fail(PSERR_TYPECHECK);
        return false;
    }
    code = string->Bytes();
    if (!code.empty() && code.size() <= CodeMap::MAX_CODE_BYTES) return true;
    m.Fail(PSERR_RANGE);
    return false;
}

// mark low high ...  endcodespacerange  -    unmatchedmark typecheck rangecheck
int OpEndcodespacerange(CFilterEPS& m) {
    CList list(m, 2);
    if (!list.IsThere()) return -1;
    std::string records;
    for (int i = 0; i < list.Groups(); ++i) {
        std::string_view low;
        std::string_view high;
        if (!ReadCode(m, list.At(i, 0), low) || !ReadCode(m, list.At(i, 1), high)) return -1;
        if (low.size() != high.size()) return m.Fail(PSERR_RANGE);
        records += CodeMap::EncodeCodeSpace(low, high);
    }
    Append(*m.TopDict(), NamesOf(m).codeMap, records);
    return list.Done();
}

/// Reads what a range of base font codes selects: a code, a glyph name, or an array of them, one for each code.
int ReadDestination(CFilterEPS& m, const CElement& e, CodeMap::Range range, std::string& records) {
    if (const auto* code = As<CStringElement>(&e)) {
        range.target = Target::Code;
        range.value = CodeMap::NumberOf(code->Bytes());
        records += CodeMap::Encode(range);
        return 1;
    }
    if (e.m_nType == ET_NAME) {
        std::vector<ElementPtr> names;
        names.push_back(e.Clone());
        range.target = Target::Name;
        range.value = AddNames(m, *m.TopDict(), std::move(names));
        // One glyph for all codes.
        const std::uint32_t high = std::min(range.high, range.low + 255);
        for (; range.low <= high; ++range.low) {
            range.high = range.low;
            records += CodeMap::Encode(range);
        }
        return 1;
    }
    const auto* array = As<CArrayElement>(&e);
    if (!array) return m.Fail(PSERR_TYPECHECK);
    for (std::int32_t i = 0; i < array->GetLength() && range.low + i <= range.high; ++i) {
        const CElement& part = *array->GetAt(i);
        if (part.m_nType != ET_STRING && part.m_nType != ET_NAME) return m.Fail(PSERR_TYPECHECK);
        CodeMap::Range one = range;
        one.low = one.high = range.low + static_cast<std::uint32_t>(i);
        if (ReadDestination(m, part, one, records) != 1) return -1;
    }
    return 1;
}

enum class ListKind { Cid, NotDef, BaseFont };

// mark low high cid ...  endcidrange  -      unmatchedmark typecheck rangecheck
// mark low high cid ...  endnotdefrange  -
// mark low high code|name|array ...  endbfrange  -
// mark code cid ...  endcidchar  -           and so on
template <ListKind Kind, bool IsRange>
int OpEndList(CFilterEPS& m) {
    CList list(m, IsRange ? 3 : 2);
    if (!list.IsThere()) return -1;
    CDictionary& cmap = *m.TopDict();
    const auto* font = As<CNumberElement>(cmap.GetValue(USE_FONT));
    std::string records;
    for (int i = 0; i < list.Groups(); ++i) {
        std::string_view low;
        std::string_view high;
        if (!ReadCode(m, list.At(i, 0), low) || !ReadCode(m, list.At(i, IsRange ? 1 : 0), high)) return -1;
        if (low.size() != high.size()) return m.Fail(PSERR_RANGE);
        CodeMap::Range range;
        range.bytes = static_cast<std::uint8_t>(low.size());
        range.font = static_cast<std::uint8_t>(font ? font->GetInt() : 0);
        range.low = CodeMap::NumberOf(low);
        range.high = CodeMap::NumberOf(high);
        const CElement& value = list.At(i, IsRange ? 2 : 1);
        if (Kind == ListKind::BaseFont) {
            if (ReadDestination(m, value, range, records) != 1) return -1;
            continue;
        }
        const auto* cid = As<CNumberElement>(&value);
        if (!cid) return m.Fail(PSERR_TYPECHECK);
        range.target = Kind == ListKind::Cid ? Target::Cid : Target::NotDef;
        range.value = static_cast<std::uint32_t>(cid->GetInt());
        records += CodeMap::Encode(range);
    }
    Append(cmap, NamesOf(m).codeMap, records);
    return list.Done();
}

// StartData

/// The bytes behind the operator: so many as they are, or of hexadecimal digits up to their end mark. False with the
/// code.
bool ReadData(CFilterEPS& m, bool isHex, std::int32_t length, std::string& data) {
    if (!m.m_pCurrentFile) {
        m.Fail(PSERR_IO);
        return false;
    }
    TypedPtr<CFileElement> file = m.m_pCurrentFile->CloneFile();
    if (isHex) {
        auto source = std::make_unique<CFilterSource>(m, std::move(file));
        FilterFault fault = FilterFault::None;
        static_cast<void>(source->Start("ASCIIHexDecode", {}, fault));
        file = MakeElement<CFileElement>(std::move(source));
    }
    constexpr std::int32_t block = 1 << 16;
    int result = 1;
    while (result == 1 && static_cast<std::int32_t>(data.size()) < length) {
        const std::size_t before = data.size();
        const auto size = static_cast<unsigned>(std::min(block, length - static_cast<std::int32_t>(before)));
        data.resize(before + size);
        unsigned count = 0;
        result = file->ReadBlock(data.data() + before, size, &count);
        data.resize(before + count);
        if (m.IsInterrupted(static_cast<int>(count / 64) + 1)) return false;
    }
    // What stands between the data and the end mark goes with it.
    unsigned rest = 0;
    while (isHex && result == 1) result = file->ReadByte(&rest);
    if (result >= 0) return true;
    FailRead(m);
    return false;
}

/// Takes the procedure set off the dictionary stack that a file has put there for StartData.
void EndProcSet(CFilterEPS& m) {
    constexpr int standing = 3;
    if (m.m_DictStack.GetCount() > standing && m.TopDict()->Find("StartData")) m.m_DictStack.Pop();
}

/// Ends the definition of a CIDFont, which is the current dictionary.
int FinishCidFont(CFilterEPS& m, std::string_view data) {
    const FontNames& names = NamesOf(m);
    constexpr int standing = 3;
    const CElement* name = m.TopDict()->GetValue(names.cidFontName);
    if (!name || m.m_DictStack.GetCount() <= standing) return m.Fail(PSERR_UNDEFINED, "invalidfont");
    m.TopDict()->Put("GlyphData", MakeElement<CStringElement>(data));
    m.Push(name->Clone());
    m.Push(m.m_DictStack.Top()->Clone());
    m.Push(MakeElement<CSimpElement>(std::string_view("CIDFont")));
    if (InternName("defineresource")->m_pfnOperator(m) != 1) {
        if (m.m_nError != PSERR_NONE) m.Drop(3);
        return -1;
    }
    m.Drop(1);
    m.m_DictStack.Pop();
    EndProcSet(m);
    return 1;
}

// string int  StartData  -                   stackunderflow typecheck rangecheck ioerror invalidfont
// key int  StartData  -
// The first in CIDInit, with (Binary) or (Hex); the second in FontSetInit.
int OpStartData(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t length = in.Int(0);
    const CElement* what = in.OneOf(1, {ET_STRING, ET_NAME});
    in.Require(length >= 0 && length <= MAX_STRING_LENGTH, PSERR_RANGE);
    if (!in) return -1;
    const ElementPtr kept = what->Clone();
    const auto* form = As<CStringElement>(kept.get());
    std::string data;
    m.Drop(2);
    const bool isHex = form && form->Bytes() == "Hex";
    int result = ReadData(m, isHex, length, data) ? 1 : -1;
    if (result == 1 && form) {
        result = FinishCidFont(m, data);
    } else if (result == 1) {
        result = CCompleteDialect::Of(m).Fonts().DefineFontSet(m, *kept, std::move(data));
        if (result == 1) EndProcSet(m);
    }
    if (result == 1 || m.m_nError == PSERR_NONE) return result;
    m.Push(kept->Clone());
    m.PushInt(length);
    return -1;
}

constexpr OpRow kRows[] = {
    {"begincmap", OpBegincmap},
    {"endcmap", OpNothing},
    {"usecmap", OpUsecmap},
    {"usefont", OpUsefont},
    {"begincodespacerange", OpBeginList},
    {"endcodespacerange", OpEndcodespacerange},
    {"begincidchar", OpBeginList},
    {"endcidchar", OpEndList<ListKind::Cid, false>},
    {"begincidrange", OpBeginList},
    {"endcidrange", OpEndList<ListKind::Cid, true>},
    {"beginnotdefchar", OpBeginList},
    {"endnotdefchar", OpEndList<ListKind::NotDef, false>},
    {"beginnotdefrange", OpBeginList},
    {"endnotdefrange", OpEndList<ListKind::NotDef, true>},
    {"beginbfchar", OpBeginList},
    {"endbfchar", OpEndList<ListKind::BaseFont, false>},
    {"beginbfrange", OpBeginList},
    {"endbfrange", OpEndList<ListKind::BaseFont, true>},
    {"beginrearrangedfont", OpBeginrearrangedfont},
    {"endrearrangedfont", OpNothing},
    {"beginusematrix", OpBeginusematrix},
    {"endusematrix", OpEndusematrix},
    {"StartData", OpStartData},
};

}  // namespace

constinit const OpTable kCMapOperators{kRows};

ElementPtr MakeCMap(CFilterEPS& m, const CName* key) {
    constexpr std::int32_t writingModes = 2;
    std::int32_t mode = 0;
    while (mode + 1 < writingModes && key->Text() != kCMapNames[mode]) ++mode;
    auto info = MakeElement<CDictionary>(3);
    info->Put("Registry", MakeElement<CStringElement>(std::string_view("Adobe")));
    info->Put("Ordering", MakeElement<CStringElement>(std::string_view("Identity")));
    info->Put("Supplement", NewInt(0));
    auto cmap = MakeElement<CDictionary>(8);
    cmap->Put("CMapName", MakeElement<CSimpElement>(key));
    cmap->Put("CMapType", NewInt(1));
    cmap->Put("CMapVersion", NewInt(1));
    cmap->Put("WMode", NewInt(mode));
    cmap->Put("CIDSystemInfo", std::move(info));
    CodeMap::Range all;
    all.bytes = 2;
    all.high = 0xFFFF;
    constexpr std::string_view low("\x00\x00", 2);
    const std::string contents = CodeMap::EncodeCodeSpace(low, "\xFF\xFF") + CodeMap::Encode(all);
    cmap->Put(NamesOf(m).codeMap, MakeElement<CStringElement>(std::string_view(contents)));
    return cmap;
}

ElementPtr MakeFontProcSet(CFilterEPS&, const CName* key) {
    auto procSet = MakeElement<CDictionary>(static_cast<std::int32_t>(std::size(kRows)));
    const bool isCid = key->Text() == kFontProcSets[0];
    for (const OpRow& row : kRows) {
        if (isCid || row.run == OpStartData) procSet->Put(row.name, MakeElement<COperatorElement>(row.name));
    }
    return procSet;
}
