// Global mode and user objects, and what is left of page, device, job, clock and caches: each of these
// operators has a settled answer, and the tables say which of them end the run.
#include "operators/SystemOperators.h"

#include "interp/Operands.h"

namespace {

// bool  setglobal  -                         STACKUNDERFLOW TYPECHECK
int OpSetglobal(CFilterEPS& m) {
    Operands in(m);
    const bool global = in.Bool(0);
    if (!in) return -1;
    g_bGlobalMode = global;
    m.Drop(1);
    return 1;
}

// -  currentglobal  bool
int OpCurrentglobal(CFilterEPS& m) {
    m.PushBool(g_bGlobalMode);
    return 1;
}

// any  gcheck  bool                          STACKUNDERFLOW
int OpGcheck(CFilterEPS& m) {
    Operands in(m);
    const CElement* any = in.Any(0);
    if (!in) return -1;
    const bool global = any->IsGlobal();
    m.Drop(1);
    m.PushBool(global);
    return 1;
}

/// The user object array, which stands in userdict. A program may have put something else there, or nothing.
class UserObjects {
public:
    UserObjects(CFilterEPS& m, Operands& in)
        : m_pUserDict(static_cast<CDictionary*>(m.m_DictStack.AtFromBottom(2))), m_pKey(InternName("UserObjects")) {
        const CElement* value = m_pUserDict->GetValue(m_pKey);
        m_pArray = As<CArrayElement>(value);
        in.Require(!value || m_pArray, PSERR_TYPECHECK);
    }
    /// Null when there is none yet. Good until the dictionary is touched.
    [[nodiscard]] const CArrayElement* Array() const noexcept { return m_pArray; }

    /// Makes the array longer, or makes it. What is new holds nulls. An array that the program has fetched keeps its
    /// length and elements: the dictionary gets a new one. One that nobody has seen grows in place, so that defining
    /// one index after another costs no copy each time.
    const CArrayElement* Grow(std::int32_t length) {
        if (m_pArray && m_pArray->IsSole() && m_pArray->GetBody() && IsLiteralArray(*m_pArray)) {
            CElementList& elements = m_pArray->GetBody()->Change();
            while (elements.GetSize() < static_cast<size_t>(length)) elements.Append(MakeElement<CNullElement>());
            return m_pArray;
        }
        auto array = MakeElement<CArrayElement>(length);
        for (std::int32_t i = 0; m_pArray && i < m_pArray->GetLength(); ++i) {
            array->SetAt(i, m_pArray->GetAt(i)->Clone());
        }
        m_pArray = array.get();
        m_pUserDict->Put(m_pKey, std::move(array));
        return m_pArray;
    }

private:
    /// The kind that each save level has its own of, as read from a dictionary.
    static bool IsLiteralArray(const CArrayElement& array) { return array.m_nType == ET_ARRAY && !array.m_bExec; }

    CDictionary* m_pUserDict;
    const CName* m_pKey;
    const CArrayElement* m_pArray;
};

// index any  defineuserobject  -             STACKUNDERFLOW TYPECHECK RANGE
int OpDefineuserobject(CFilterEPS& m) {
    constexpr std::int32_t firstLength = 10;
    Operands in(m);
    const std::int32_t index = in.Int(1);
    in.Require(index >= 0 && index < MAX_ARRAY_LENGTH, PSERR_RANGE);
    UserObjects objects(m, in);
    if (!in) return -1;
    ElementPtr object = m.Pop();
    m.Drop(1);
    const CArrayElement* array = objects.Array();
    if (!array || index >= array->GetLength()) {
        array = objects.Grow(array || index >= firstLength ? index + 1 : firstLength);
    }
    array->SetAt(index, std::move(object));
    return 1;
}

/// The array for an operator that wants an object of it: index on top, which is popped. Null with UNDEFINED
/// when there is no array, with RANGE for an index outside it; TYPECHECK leaves the operand.
const CArrayElement* PopUserIndex(CFilterEPS& m, std::int32_t& index) {
    Operands in(m);
    index = in.Int(0);
    const UserObjects objects(m, in);
    if (!in) return nullptr;
    m.Drop(1);
    const CArrayElement* array = objects.Array();
    if (!array) {
        m.Fail(PSERR_UNDEFINED);
    } else if (index < 0 || index >= array->GetLength()) {
        m.Fail(PSERR_RANGE);
        array = nullptr;
    }
    return array;
}

// index  execuserobject  -                   STACKUNDERFLOW TYPECHECK; UNDEFINED RANGE UNSUPPORTED, with it gone
// index  execuserobject  any                 for a literal object
// Departure: an executable operator, or any other executable object that is no name, procedure or string, is refused.
int OpExecuserobject(CFilterEPS& m) {
    std::int32_t index = 0;
    const CArrayElement* array = PopUserIndex(m, index);
    if (!array) return -1;
    const CElement& object = *array->GetAt(index);
    if (!object.m_bExec) {
        m.Push(object.Clone());
        return 1;
    }
    if (object.m_nType == ET_OPERATOR) return m.Fail(PSERR_UNSUPPORTED);
    const int result = m.ExecuteObject(object);
    return result == 0 ? m.Fail(PSERR_UNSUPPORTED) : result;
}

// index  undefineuserobject  -               STACKUNDERFLOW TYPECHECK; UNDEFINED RANGE, with it gone
int OpUndefineuserobject(CFilterEPS& m) {
    std::int32_t index = 0;
    const CArrayElement* array = PopUserIndex(m, index);
    if (!array) return -1;
    array->SetAt(index, MakeElement<CNullElement>());
    return 1;
}

// -  UserObjects  array                      UNDEFINED TYPECHECK
int OpUserObjects(CFilterEPS& m) {
    Operands in(m);
    const UserObjects objects(m, in);
    if (!in) return -1;
    if (!objects.Array()) return m.Fail(PSERR_UNDEFINED);
    m.Push(objects.Array()->Clone());
    return 1;
}

// Place 19 of the chain.
constexpr OpRow kGlobalRows[] = {
    {"setglobal", OpSetglobal},
    {"currentglobal", OpCurrentglobal},
    {"gcheck", OpGcheck},
    {"startjob", OpUnsupported},
    {"defineuserobject", OpDefineuserobject},
    {"execuserobject", OpExecuserobject},
    {"undefineuserobject", OpUndefineuserobject},
    {"UserObjects", OpUserObjects},
};

// -  null  null
int OpNull(CFilterEPS& m) {
    m.Push(MakeElement<CNullElement>());
    return 1;
}

// -  serialnumber  int
int OpSerialnumber(CFilterEPS& m) {
    m.PushInt(42);
    return 1;
}

// Place 20 of the chain.
constexpr OpRow kMiscellaneousRows[] = {
    {"null", OpNull},
    {"realtime", OpUnsupported},
    {"usertime", OpUnsupported},
    {"serialnumber", OpSerialnumber},
    {"executive", OpNothing},
    {"echo", OpDiscard<&Operands::Bool>},
    {"prompt", OpNothing},
};

// dict  setpagedevice  -                     STACKUNDERFLOW TYPECHECK
// Departure: the dictionary replaces the old one whole; nothing is merged, and no key has an effect.
int OpSetpagedevice(CFilterEPS& m) {
    Operands in(m);
    in.Dict(0);
    if (!in) return -1;
    m.m_pPageDevice = Take<CDictionary>(m);
    return 1;
}

// -  currentpagedevice  dict
int OpCurrentpagedevice(CFilterEPS& m) {
    m.Push(m.m_pPageDevice->Clone());
    return 1;
}

// Departure: there is no page, and so neither `showpage` nor `copypage` touches the graphics state.
// Place 27 of the chain.
constexpr OpRow kDeviceRows[] = {
    {"showpage", OpNothing},
    {"copypage", OpNothing},
    {"setpagedevice", OpSetpagedevice},
    {"currentpagedevice", OpCurrentpagedevice},
    {"nulldevice", OpNothing},
};

// -  cachestatus  bsize bmax msize mmax csize cmax blimit
// Departure: the answer is fixed, whatever setcacheparams says.
int OpCachestatus(CFilterEPS& m) {
    for (const std::int32_t n : {0, 500000, 0, 200, 0, 5000, 5000}) m.PushInt(n);
    return 1;
}

// mark size lower upper  setcacheparams  -   STACKUNDERFLOW TYPECHECK
// Departure: the mark must stand directly below three numbers.
int OpSetcacheparams(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(3, {ET_MARK});
    const std::int32_t size = in.Int(2);
    const std::int32_t lower = in.Int(1);
    const std::int32_t upper = in.Int(0);
    if (!in) return -1;
    m.m_nCacheSize = size;
    m.m_nCacheLower = lower;
    m.m_nCacheUpper = upper;
    m.Drop(4);
    return 1;
}

// -  currentcacheparams  mark size lower upper
int OpCurrentcacheparams(CFilterEPS& m) {
    m.Push(NewMark());
    for (const std::int32_t n : {m.m_nCacheSize, m.m_nCacheLower, m.m_nCacheUpper}) m.PushInt(n);
    return 1;
}

// Place 29 of the chain.
constexpr OpRow kCacheRows[] = {
    {"cachestatus", OpCachestatus},
    {"setcachelimit", OpDiscard<&Operands::Any>},
    {"setcacheparams", OpSetcacheparams},
    {"currentcacheparams", OpCurrentcacheparams},
};

// clang-format off
// Place 31 of the chain.
constexpr OpRow kInsidenessRows[] = {
    {"infill", OpUnsupported},
    {"ineofill", OpUnsupported},
    {"inufill", OpUnsupported},
    {"inueofill", OpUnsupported},
    {"instroke", OpUnsupported},
    {"inustroke", OpUnsupported},
};
// clang-format on

}  // namespace

constinit const OpTable kGlobalOperators{kGlobalRows};
constinit const OpTable kMiscellaneousOperators{kMiscellaneousRows};
constinit const OpTable kDeviceOperators{kDeviceRows};
constinit const OpTable kCacheOperators{kCacheRows};
constinit const OpTable kInsidenessOperators{kInsidenessRows};
