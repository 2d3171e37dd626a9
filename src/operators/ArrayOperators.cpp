// The operators on arrays, and those that treat strings and dictionaries in the same way. Keys follow the
// rule of interp/Keys.h; views, and the bounds that let an index pass a view's end, are those of
// objects/Array.h and String.h.
//
// Departure: no operator asks for access, and packed arrays can be written through views.
#include "operators/ArrayOperators.h"

#include <vector>

#include "interp/Keys.h"
#include "interp/Operands.h"
#include "operators/ControlOperators.h"

void CopyElements(const CArrayElement& source, CArrayElement& target, std::int32_t at) {
    const auto start = [](const CArrayElement& array) { return array.m_bView ? array.m_nStart : 0; };
    const std::int32_t length = source.GetLength();
    CountWork(length);
    const auto copy = [&](std::int32_t i) {
        if (const CElement* element = source.GetAt(i)) target.SetAt(at + i, element->Clone());
    };
    if (source.m_Body.SameBody(target.m_Body) && start(target) + at > start(source)) {
        for (std::int32_t i = length; i-- > 0;) copy(i);
    } else {
        for (std::int32_t i = 0; i < length; ++i) copy(i);
    }
}

namespace {

/// An index, offset or count: a number that is not negative. TYPECHECK RANGE
std::int32_t ReadIndex(Operands& in, int depth) {
    const std::int32_t n = in.Int(depth);
    in.Require(n >= 0, PSERR_RANGE);
    return n;
}

/// A count of elements or bytes to make, small enough to be made. TYPECHECK RANGE
std::int32_t ReadCount(Operands& in, int depth, std::int32_t most) {
    const std::int32_t n = ReadIndex(in, depth);
    in.Require(n <= most, PSERR_RANGE);
    return n;
}

/// Pops as many elements as the array has into it, the top into its last place.
void Fill(CFilterEPS& m, CArrayElement& array) {
    CountWork(array.GetLength());
    for (std::int32_t i = array.GetLength(); i-- > 0;) array.SetAt(i, m.Pop());
}

// -  [  mark
int OpBeginArray(CFilterEPS& m) {
    m.Push(NewMark());
    return 1;
}

// mark any(0)..any(n-1)  ]  array            UNMATCHEDMARK
int OpEndArray(CFilterEPS& m) { return m.CloseArray(); }

// n  array  array                            STACKUNDERFLOW TYPECHECK RANGE
int OpArray(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t length = ReadCount(in, 0, MAX_ARRAY_LENGTH);
    if (!in) return -1;
    m.Drop(1);
    m.Push(MakeElement<CArrayElement>(length));
    return 1;
}

// n  string  string                          STACKUNDERFLOW TYPECHECK RANGE
int OpString(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t length = ReadCount(in, 0, MAX_STRING_LENGTH);
    if (!in) return -1;
    m.Drop(1);
    m.Push(MakeElement<CStringElement>(length));
    return 1;
}

/// What `length` answers for an object of one of its types.
std::int32_t LengthOf(const CElement& object) {
    if (const auto* string = As<CStringElement>(&object)) return string->GetLength();
    if (const auto* dict = As<CDictionary>(&object)) return dict->GetCount();
    if (const auto* array = As<CArrayElement>(&object)) return array->GetLength();
    return static_cast<std::int32_t>(static_cast<const CSimpElement&>(object).m_pName->m_nLength);
}

// array string dict name  length  int        STACKUNDERFLOW TYPECHECK
int OpLength(CFilterEPS& m) {
    Operands in(m);
    const CElement* object = in.OneOf(0, {ET_ARRAY, ET_PACKEDARRAY, ET_DICT, ET_STRING, ET_NAME});
    if (!in) return -1;
    const std::int32_t length = LengthOf(*object);
    m.Drop(1);
    m.PushInt(length);
    return 1;
}

// dict key  get  any                         RANGE for a key that is too long; UNDEFINED, with both gone
int GetFromDict(CFilterEPS& m) {
    Operands in(m);
    const CKey key(*in.Any(0));
    const auto* dict = in.Dict(1);
    in.Require(key.IsValid(), PSERR_RANGE);
    if (!in) return -1;
    const CElement* value = key.FindIn(*dict);
    ElementPtr any = value ? value->Clone() : nullptr;
    m.Drop(2);
    if (!any) return m.Fail(PSERR_UNDEFINED);
    m.Push(std::move(any));
    return 1;
}

// array index  get  any                      STACKUNDERFLOW TYPECHECK RANGE
// string index  get  int
// dict key  get  any                         UNDEFINED
int OpGet(CFilterEPS& m) {
    Operands in(m);
    const CElement* object = in.OneOf(1, {ET_ARRAY, ET_PACKEDARRAY, ET_STRING, ET_DICT});
    if (!in) return -1;
    if (object->m_nType == ET_DICT) return GetFromDict(m);

    const std::int32_t index = ReadIndex(in, 0);
    if (!in) return -1;
    if (const auto* string = As<CStringElement>(object)) {
        const std::int32_t byte = string->GetAt(index);  // Departure: -1 beyond the end, without an error
        m.Drop(2);
        m.PushInt(byte);
        return 1;
    }
    const CElement* element = static_cast<const CArrayElement*>(object)->GetAt(index);
    if (!element) return m.Fail(PSERR_RANGE);
    ElementPtr any = CopyOf(*element);
    m.Drop(2);
    m.Push(std::move(any));
    return 1;
}

// dict key any  put  -                       RANGE for a key that is too long
int PutInDict(CFilterEPS& m) {
    Operands in(m);
    const CKey key(*in.Any(1));
    in.Require(key.IsValid(), PSERR_RANGE);
    if (!in) return -1;
    ElementPtr value = m.Pop();
    const ElementPtr keyOperand = m.Pop();  // stays alive as long as key
    const auto dict = Take<CDictionary>(m);
    key.PutIn(*dict, std::move(value));
    return 1;
}

// array index any  put  -                    STACKUNDERFLOW TYPECHECK RANGE
// string index int  put  -
// dict key any  put  -
// Departure: a packed array is refused; beyond the end of a body nothing is stored, without an error.
int OpPut(CFilterEPS& m) {
    Operands in(m);
    CElement* object = in.OneOf(2, {ET_ARRAY, ET_STRING, ET_DICT});
    if (!in) return -1;
    if (object->m_nType == ET_DICT) return PutInDict(m);

    const std::int32_t index = ReadIndex(in, 1);
    if (auto* string = As<CStringElement>(object)) {
        const std::int32_t value = in.Int(0);
        if (!in) return -1;
        string->SetAt(index, static_cast<unsigned char>(value & 0xFF));
        m.Drop(3);
        return 1;
    }
    if (!in) return -1;
    static_cast<CArrayElement*>(object)->SetAt(index, m.Pop());
    m.Drop(2);
    return 1;
}

// array index count  getinterval  subarray   STACKUNDERFLOW TYPECHECK RANGE
// string index count  getinterval  substring
// Departure: an array interval that passes the end pushes nothing, and a string interval is cut at the end
// of the body.
int OpGetinterval(CFilterEPS& m) {
    Operands in(m);
    const CElement* object = in.OneOf(2, {ET_ARRAY, ET_PACKEDARRAY, ET_STRING});
    const std::int32_t index = ReadIndex(in, 1);
    const std::int32_t count = ReadIndex(in, 0);
    if (!in) return -1;
    ElementPtr interval;
    if (const auto* string = As<CStringElement>(object)) {
        interval = string->GetInterval(index, count);
    } else {
        interval = static_cast<const CArrayElement*>(object)->GetInterval(index, count);
    }
    m.Drop(3);
    m.Push(std::move(interval));
    return 1;
}

// array1 index array2  putinterval  -        STACKUNDERFLOW TYPECHECK RANGE; SYNTAX, with all three gone
// string1 index string2  putinterval  -
int OpPutinterval(CFilterEPS& m) {
    Operands in(m);
    CElement* source = in.OneOf(0, {ET_ARRAY, ET_PACKEDARRAY, ET_STRING});
    const bool strings = source && source->m_nType == ET_STRING;
    CElement* object = in.OneOf(2, {strings ? ET_STRING : ET_ARRAY});
    const std::int32_t index = ReadIndex(in, 1);
    if (!in) return -1;
    if (std::int64_t{LengthOf(*source)} + index > LengthOf(*object)) {
        m.Drop(3);
        return m.Fail(PSERR_SYNTAX);  // Departure: no rangecheck
    }
    if (strings) {
        const auto* bytes = static_cast<const CStringElement*>(source);
        static_cast<CStringElement*>(object)->GetInterval(index, bytes->GetLength())->Write(bytes->Bytes());
    } else {
        CopyElements(*static_cast<const CArrayElement*>(source), *static_cast<CArrayElement*>(object), index);
    }
    m.Drop(3);
    return 1;
}

// any(0)..any(n-1) array  astore  array      STACKUNDERFLOW TYPECHECK; RANGE, with the array gone
// Departure: a packed array is refused.
int OpAstore(CFilterEPS& m) {
    Operands in(m);
    in.Array(0);
    if (!in) return -1;
    auto array = Take<CArrayElement>(m);
    if (m.m_OperandStack.GetCount() < array->GetLength()) return m.Fail(PSERR_RANGE);
    Fill(m, *array);
    m.Push(std::move(array));
    return 1;
}

// array  aload  any(0)..any(n-1) array       STACKUNDERFLOW TYPECHECK
int OpAload(CFilterEPS& m) {
    Operands in(m);
    in.AnyArray(0);
    if (!in) return -1;
    auto array = Take<CArrayElement>(m);
    const std::int32_t length = array->GetLength();
    CountWork(length);
    for (std::int32_t i = 0; i < length; ++i) {
        if (const CElement* element = array->GetAt(i)) m.PushCopy(*element);
    }
    m.Push(std::move(array));
    return 1;
}

// The walks over the three kinds of objects ask for length and body anew at each pass, since the procedure
// may have taken the body away by a `restore`. They answer as the last pass did.

LoopPass ForAllElements(CFilterEPS& m, const CArrayElement& array, const CArrayElement& procedure) {
    LoopPass pass = LoopPass::goOn;
    for (std::int32_t i = 0; pass == LoopPass::goOn && i < array.GetLength(); ++i) {
        const CElement* element = array.GetAt(i);
        if (!element) break;
        m.Push(element->Clone());
        pass = RunLoopPass(m, procedure);
    }
    return pass;
}

LoopPass ForAllBytes(CFilterEPS& m, const CStringElement& string, const CArrayElement& procedure) {
    LoopPass pass = LoopPass::goOn;
    for (std::int32_t i = 0; pass == LoopPass::goOn && i < string.GetLength(); ++i) {
        m.PushInt(string.GetAt(i));
        pass = RunLoopPass(m, procedure);
    }
    return pass;
}

/// Visits the entries that the dictionary has at the start and that are still there when their turn comes. The names
/// are noted down first, since the procedure may define and undefine as it likes. Of the other entries, which stay in
/// the order of their age, the first and the last age are enough; finding them again by their keys would miss a
/// not-a-number, which equals nothing, and an object whose storage is gone.
LoopPass ForAllEntries(CFilterEPS& m, const CDictionary& dict, const CArrayElement& procedure) {
    std::vector<const CName*> names;
    names.reserve(static_cast<size_t>(dict.GetNameCount()));
    CountWork(dict.GetNameCount());
    for (std::int32_t i = 0; const CDictNode* node = dict.GetNameNodeAt(i); ++i) names.push_back(node->m_pKey);
    const CDictNode2* youngest = dict.GetOtherNodeAt(dict.GetOtherCount() - 1);
    const std::uint64_t end = youngest ? youngest->m_nSequence + 1 : 0;

    LoopPass pass = LoopPass::goOn;
    for (auto name = names.begin(); pass == LoopPass::goOn && name != names.end(); ++name) {
        const CElement* value = dict.GetValue(*name);
        if (!value) continue;
        m.Push(MakeElement<CSimpElement>(*name));
        m.Push(value->Clone());
        pass = RunLoopPass(m, procedure);
    }
    for (std::uint64_t next = 0; pass == LoopPass::goOn && next < end;) {
        const CDictNode2* node = dict.GetOtherNodeFrom(next);
        if (!node || node->m_nSequence >= end) break;
        next = node->m_nSequence + 1;
        const CElement* value = node->GetValue();
        if (!value) continue;
        m.Push(node->GetKey()->Clone());
        m.Push(value->Clone());
        pass = RunLoopPass(m, procedure);
    }
    return pass;
}

// array proc  forall  -                      STACKUNDERFLOW TYPECHECK
// string proc  forall  -
// dict proc  forall  -
// Departure: `stop` ends the loop like `exit`.
int OpForall(CFilterEPS& m) {
    Operands in(m);
    in.Procedure(0);
    in.OneOf(1, {ET_ARRAY, ET_PACKEDARRAY, ET_DICT, ET_STRING});
    if (!in) return -1;
    const auto procedure = Take<CArrayElement>(m);
    const ElementPtr object = m.Pop();
    LoopPass pass = LoopPass::goOn;
    if (const auto* array = As<CArrayElement>(object.get())) {
        pass = ForAllElements(m, *array, *procedure);
    } else if (const auto* string = As<CStringElement>(object.get())) {
        pass = ForAllBytes(m, *string, *procedure);
    } else {
        pass = ForAllEntries(m, static_cast<const CDictionary&>(*object), *procedure);
    }
    return pass == LoopPass::failed ? -1 : 1;
}

// Place 3 of the chain.
constexpr OpRow kCoreRows[] = {
    {"[", OpBeginArray},
    {"]", OpEndArray},
    {"array", OpArray},
    {"string", OpString},
    {"length", OpLength},
    {"get", OpGet},
    {"put", OpPut},
    {"getinterval", OpGetinterval},
    {"putinterval", OpPutinterval},
    {"astore", OpAstore},
    {"aload", OpAload},
    {"forall", OpForall},
};

// any(0)..any(n-1) n  packedarray  packedarray    STACKUNDERFLOW TYPECHECK RANGE; too few: RANGE, n gone
// Departure: the result has unlimited access.
int OpPackedarray(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t length = ReadCount(in, 0, MAX_ARRAY_LENGTH);
    if (!in) return -1;
    m.Drop(1);
    if (m.m_OperandStack.GetCount() < length) return m.Fail(PSERR_RANGE);
    auto packed = MakeElement<CArrayElement>(length);
    Fill(m, *packed);
    m.Dialect().Pack(*packed);
    m.Push(std::move(packed));
    return 1;
}

// bool  setpacking  -                        STACKUNDERFLOW TYPECHECK
int OpSetpacking(CFilterEPS& m) {
    Operands in(m);
    const bool packing = in.Bool(0);
    if (!in) return -1;
    m.m_bPacking = packing;
    m.Drop(1);
    return 1;
}

// -  currentpacking  bool
int OpCurrentpacking(CFilterEPS& m) {
    m.PushBool(m.m_bPacking);
    return 1;
}

// Place 12 of the chain.
constexpr OpRow kPackedRows[] = {
    {"packedarray", OpPackedarray},
    {"setpacking", OpSetpacking},
    {"currentpacking", OpCurrentpacking},
};

}  // namespace

constinit const OpTable kArrayCoreOperators{kCoreRows};
constinit const OpTable kPackedArrayOperators{kPackedRows};
