// `filter` (PLRM, Filters): its operands in all their forms, and the parameters of each filter's dictionary.
#include "complete/FilterOperators.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "complete/CompleteDialect.h"
#include "complete/FilterObjects.h"
#include "complete/filters/ReusableStore.h"
#include "interp/Keys.h"
#include "interp/Operands.h"

namespace {

/// Reads entries of a parameter dictionary; one of another type is a typecheck. Without a dictionary nothing is there.
class CFilterEntries {
public:
    CFilterEntries(CFilterEPS& m, const CDictionary* dict) noexcept : m_Machine(m), m_pDict(dict) {}

    template <class Integer>
    void Read(const char* key, Integer& value) {
        if (const auto* number = Entry<CNumberElement>(key)) value = number->GetInt();
    }
    void Read(const char* key, bool& value) {
        if (const auto* flag = Entry<CBoolElement>(key)) value = flag->GetValue();
    }
    void Read(const char* key, std::string& value) {
        if (const auto* string = Entry<CStringElement>(key)) value = string->GetText();
    }
    [[nodiscard]] explicit operator bool() const noexcept { return m_bOk; }

private:
    template <class Type>
    const Type* Entry(const char* key) {
        const CElement* entry = m_pDict ? m_pDict->GetValue(key) : nullptr;
        const auto* typed = As<Type>(entry);
        if (entry && !typed && entry->m_nType != ET_NULL) {
            m_Machine.Fail(PSERR_TYPECHECK);
            m_bOk = false;
        }
        return typed;
    }

    CFilterEPS& m_Machine;
    const CDictionary* m_pDict;
    bool m_bOk = true;
};

/// What the operands of a filter say.
struct FilterRequest {
    FilterParameters m_Params;
    bool bClose = false;  ///< CloseSource or CloseTarget
};

/// 1, or -1 with PSERR_TYPECHECK.
int ReadParameters(CFilterEPS& m, const CDictionary* dict, FilterRequest& request) {
    CFilterEntries entries(m, dict);
    FilterParameters& params = request.m_Params;
    entries.Read("Predictor", params.m_Predictor.nPredictor);
    entries.Read("Colors", params.m_Predictor.nColors);
    entries.Read("BitsPerComponent", params.m_Predictor.nBitsPerComponent);
    entries.Read("Columns", params.m_Predictor.nColumns);
    entries.Read("EarlyChange", params.m_Lzw.nEarlyChange);
    entries.Read("UnitLength", params.m_Lzw.nUnitLength);
    entries.Read("LowBitFirst", params.m_Lzw.bLowBitFirst);
    entries.Read("K", params.m_Fax.nK);
    entries.Read("EndOfLine", params.m_Fax.bEndOfLine);
    entries.Read("EncodedByteAlign", params.m_Fax.bEncodedByteAlign);
    entries.Read("Columns", params.m_Fax.nColumns);
    entries.Read("Rows", params.m_Fax.nRows);
    entries.Read("EndOfBlock", params.m_Fax.bEndOfBlock);
    entries.Read("BlackIs1", params.m_Fax.bBlackIs1);
    entries.Read("DamagedRowsBeforeError", params.m_Fax.nDamagedRowsBeforeError);
    entries.Read("EODCount", params.nEODCount);
    entries.Read("EODString", params.strEODString);
    entries.Read("RecordSize", params.nRecordSize);
    entries.Read("Effort", params.nEffort);
    entries.Read("CloseSource", request.bClose);
    entries.Read("CloseTarget", request.bClose);
    return entries ? 1 : -1;
}

int FailFilter(CFilterEPS& m, FilterFault fault) {
    switch (fault) {
        case FilterFault::Undefined:
            return m.Fail(PSERR_UNDEFINED);
        case FilterFault::Limit:
            return m.Fail(PSERR_RANGE, "limitcheck");
        default:
            return m.Fail(PSERR_RANGE);
    }
}

/// A file that decodes another one. Null with the code.
TypedPtr<CFileElement> OpenDecoder(CFilterEPS& m, std::string_view name, const FilterRequest& request,
                                   TypedPtr<CFileElement> below) {
    auto source = std::make_unique<CFilterSource>(m, std::move(below));
    FilterFault fault = FilterFault::None;
    if (!source->Start(name, request.m_Params, fault)) {
        FailFilter(m, fault);
        return nullptr;
    }
    source->SetCloseSource(request.bClose);
    const CFileElement& operand = source->Below();
    auto file = MakeElement<CFileElement>(std::move(source));
    return StandOn(m, *file, operand) ? std::move(file) : nullptr;
}

TypedPtr<CFileElement> OpenEncoder(CFilterEPS& m, std::string_view name, const FilterRequest& request,
                                   const CElement& target) {
    auto sink = std::make_unique<CFilterSink>(OpenDataTarget(m, target, request.bClose));
    FilterFault fault = FilterFault::None;
    if (!sink->Start(name, request.m_Params, fault)) {
        FailFilter(m, fault);
        return nullptr;
    }
    auto file = MakeElement<CFileElement>(std::move(sink));
    return StandOn(m, *file, target) ? std::move(file) : nullptr;
}

/// Element i of an entry that may be one object or an array of them; null beyond the end.
const CElement* AtOrAlone(const CElement* entry, std::int32_t i) {
    if (const auto* array = As<CArrayElement>(entry)) return i < array->GetLength() ? array->GetAt(i) : nullptr;
    return i == 0 ? entry : nullptr;
}

/// The filters that a ReusableStreamDecode dictionary asks for stand over the source; what comes out of them is kept.
TypedPtr<CFileElement> OpenReusable(CFilterEPS& m, const CDictionary* dict, const FilterRequest& request,
                                    TypedPtr<CFileElement> file) {
    const TypedPtr<CFileElement> source = file->CloneFile();
    const CElement* filters = dict ? dict->GetValue("Filter") : nullptr;
    const CElement* params = dict ? dict->GetValue("DecodeParms") : nullptr;
    if (filters && filters->m_nType == ET_NULL) filters = nullptr;
    for (std::int32_t i = 0; const CElement* filter = AtOrAlone(filters, i); ++i) {
        const CName* name = KeyNameOf(*filter);
        FilterRequest step;
        const auto* entries = As<CDictionary>(AtOrAlone(params, i));
        if (!name) m.Fail(PSERR_TYPECHECK);
        if (!name || ReadParameters(m, entries, step) != 1) return nullptr;
        file = OpenDecoder(m, name->Text(), step, std::move(file));
        if (!file) return nullptr;
    }
    // As a source of its own, so that the reading ends behind the data of the filters.
    FilterRequest whole;
    CFilterSource all(m, std::move(file));
    FilterFault fault = FilterFault::None;
    if (!all.Start("SubFileDecode", whole.m_Params, fault)) return nullptr;
    auto store = std::make_unique<CReusableStore>();
    CMachineLimits limits(m);
    switch (store->Collect(all, MAX_STRING_LENGTH, &limits)) {
        case CReusableStore::Collected:
            break;
        case CReusableStore::TooLong:
            m.Fail(PSERR_RANGE, "limitcheck");
            return nullptr;
        default:
            FailRead(m);
            return nullptr;
    }
    if (request.bClose) CloseFile(*source);
    return MakeElement<CFileElement>(std::move(store));
}

/// The operands of one call: they are off the stack while it works, and come back when it fails.
class CTakenOperands {
public:
    explicit CTakenOperands(CFilterEPS& m) noexcept : m_Machine(m) {}
    CTakenOperands(const CTakenOperands&) = delete;
    CTakenOperands& operator=(const CTakenOperands&) = delete;

    /// Takes the next one; null when there is none.
    const CElement* Take() {
        if (!m_Machine.m_OperandStack.Top()) return nullptr;
        m_Operands.push_back(m_Machine.Pop());
        return m_Operands.back().get();
    }
    [[nodiscard]] const CElement* Next() const { return m_Machine.m_OperandStack.Top(); }
    int PutBack() {
        for (; !m_Operands.empty(); m_Operands.pop_back()) m_Machine.Push(std::move(m_Operands.back()));
        return -1;
    }

private:
    CFilterEPS& m_Machine;
    std::vector<ElementPtr> m_Operands;
};

/// The parameters that stand between dictionary and name: a count and a string of SubFileDecode, a record size of
/// RunLengthEncode.
void TakeOldOperands(CTakenOperands& operands, std::string_view name, FilterParameters& params) {
    const CElement* next = operands.Next();
    if (name == "RunLengthEncode" && As<CNumberElement>(next)) {
        params.nRecordSize = static_cast<const CNumberElement*>(operands.Take())->GetInt();
    } else if (name == "SubFileDecode" && As<CStringElement>(next) && As<CNumberElement>(next->m_pPrev)) {
        params.strEODString = static_cast<const CStringElement*>(operands.Take())->GetText();
        params.nEODCount = static_cast<const CNumberElement*>(operands.Take())->GetInt();
    }
}

bool IsDataEnd(const CElement& e) { return e.m_nType == ET_FILE || e.m_nType == ET_STRING || e.IsProcedure(); }

// source|target [dict] [parameters] name  filter  file
//                                            stackunderflow typecheck undefined rangecheck limitcheck ioerror
int OpFilter(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(0, {ET_NAME, ET_STRING});
    in.Any(1);
    if (!in) return -1;
    CTakenOperands operands(m);
    const std::string_view name = KeyNameOf(*operands.Take())->Text();
    if (!CCompleteDialect::Of(m).HasFilter(name)) {
        m.Fail(PSERR_UNDEFINED);
        return operands.PutBack();
    }
    FilterRequest request;
    FilterParameters old;
    TakeOldOperands(operands, name, old);
    const auto* dict = As<CDictionary>(operands.Next());
    if (dict) static_cast<void>(operands.Take());
    request.m_Params = old;
    if (ReadParameters(m, dict, request) != 1) return operands.PutBack();
    const CElement* end = operands.Take();
    if (!end || !IsDataEnd(*end)) {
        m.Fail(end ? PSERR_TYPECHECK : PSERR_STACKUNDERFLOW);
        return operands.PutBack();
    }
    TypedPtr<CFileElement> file;
    if (name.ends_with("Encode")) {
        file = OpenEncoder(m, name, request, *end);
    } else {
        file = OpenDataSource(m, *end);
        file = name == REUSABLE_STREAM ? OpenReusable(m, dict, request, std::move(file))
                                       : OpenDecoder(m, name, request, std::move(file));
    }
    if (!file) return operands.PutBack();
    m.Push(std::move(file));
    return 1;
}

constexpr OpRow kRows[] = {{"filter", OpFilter}};

}  // namespace

bool CCompleteDialect::HasFilter(std::string_view name) const {
    return std::find(std::begin(kFilterNames), std::end(kFilterNames), name) != std::end(kFilterNames);
}

constinit const OpTable kCompleteFilterOperators{kRows};
