// Dictionaries, the dictionary stack, and bind. Every operand that serves as a key follows the rule of
// interp/Keys.h; what `length`, `get`, `put`, `forall` and `copy` do to dictionaries stands with the arrays
// and the stack.
//
// Departure: dictionaries and their stack are never full, and no operator asks for access.
#include "operators/DictionaryOperators.h"

#include <numeric>
#include <unordered_map>
#include <vector>

#include "interp/Keys.h"
#include "interp/Operands.h"

namespace {

/// systemdict, globaldict and userdict: what `end` and `cleardictstack` leave.
constexpr int PERMANENT_DICTS = 3;

/// An operand as a key. STACKUNDERFLOW RANGE
CKey ReadKey(Operands& in, int depth) {
    const CElement* e = in.Any(depth);
    const CKey key = e ? CKey(*e) : CKey();
    in.Require(key.IsValid(), PSERR_RANGE);
    return key;
}

/// The topmost dictionary on the stack that has a key; null when none has it.
CDictionary* DictOf(const CFilterEPS& m, const CKey& key) {
    for (CElement* e = m.m_DictStack.Top(); e; e = e->m_pPrev) {
        CountWork(1);
        auto* dict = static_cast<CDictionary*>(e);
        if (key.IsIn(*dict)) return dict;
    }
    return nullptr;
}

// n  dict  dict                              STACKUNDERFLOW TYPECHECK RANGE
// Departure: n is only what `maxlength` answers. It costs nothing, so there is no upper bound.
int OpDict(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t capacity = in.Int(0);
    in.Require(capacity >= 0, PSERR_RANGE);
    if (!in) return -1;
    m.Drop(1);
    m.Push(MakeElement<CDictionary>(capacity));
    return 1;
}

// dict  begin  -                             STACKUNDERFLOW TYPECHECK
int OpBegin(CFilterEPS& m) {
    Operands in(m);
    in.Dict(0);
    if (!in) return -1;
    m.m_DictStack.Push(Take<CDictionary>(m));
    return 1;
}

// -  end  -                                  DICTSTACKUNDERFLOW
int OpEnd(CFilterEPS& m) {
    if (m.m_DictStack.GetCount() <= PERMANENT_DICTS) return m.Fail(PSERR_DICTSTACKUNDERFLOW);
    m.m_DictStack.Pop();
    return 1;
}

// key value  def  -                          STACKUNDERFLOW RANGE
int OpDef(CFilterEPS& m) {
    Operands in(m);
    const CKey key = ReadKey(in, 1);
    if (!in) return -1;
    ElementPtr value = m.Pop();
    const ElementPtr operand = m.Pop();  // stays alive as long as key
    key.PutIn(*m.TopDict(), std::move(value));
    return 1;
}

/// What of some array bodies a walk has not come to yet. However many views cover an element, and whatever a
/// body contains, each element is visited once.
class CUnvisited {
public:
    /// Of each index of one body the index itself or, once it is visited, one farther on.
    using Indices = std::vector<size_t>;

    /// All of a body before the first visit to it.
    Indices& Of(const CArrayBody& body) {
        Indices& indices = m_Indices[&body];
        if (indices.empty()) {
            indices.resize(body.Contents().GetSize() + 1);
            CountWork(static_cast<std::int64_t>(indices.size()));
            std::iota(indices.begin(), indices.end(), size_t{0});
        }
        return indices;
    }
    /// The first index from `from` on that is left; the size of the body when none is.
    static size_t Find(Indices& indices, size_t from) {
        while (indices[from] != from) {
            indices[from] = indices[indices[from]];  // halves the way for the next one who comes along
            from = indices[from];
        }
        return from;
    }

private:
    std::unordered_map<const CArrayBody*, Indices> m_Indices;
};

/// The operator that a name means for bind; null when the topmost dictionary that has the name is another
/// than systemdict, or has something else.
const COperatorElement* SystemOperator(const CFilterEPS& m, const CName* name) {
    for (const CElement* e = m.m_DictStack.Top(); e; e = e->m_pPrev) {
        CountWork(1);
        const auto& dict = static_cast<const CDictionary&>(*e);
        const CDictNode* node = dict.Find(name);
        if (!node) continue;
        return dict.m_nDictKind == DICT_SYSTEM ? As<COperatorElement>(node->GetValue()) : nullptr;
    }
    return nullptr;
}

// proc  bind  proc                           STACKUNDERFLOW TYPECHECK
// Departure: only raw tokens are replaced, not name objects; a name that any dictionary above systemdict has
// is left alone; attributes don't protect a procedure, neither the outer nor the ones inside.
int OpBind(CFilterEPS& m) { return BindProcedure(m, BoundNames::rawTokens); }

// key  load  any                             STACKUNDERFLOW RANGE; UNDEFINED, with the key gone
int OpLoad(CFilterEPS& m) {
    Operands in(m);
    const CKey key = ReadKey(in, 0);
    if (!in) return -1;
    const ElementPtr operand = m.Pop();
    const CDictionary* dict = DictOf(m, key);
    const CElement* value = dict ? key.FindIn(*dict) : nullptr;
    if (!value) return m.Fail(PSERR_UNDEFINED);
    m.Push(value->Clone());
    return 1;
}

// dict key  known  bool                      STACKUNDERFLOW TYPECHECK RANGE
int OpKnown(CFilterEPS& m) {
    Operands in(m);
    const CDictionary* dict = in.Dict(1);
    const CKey key = ReadKey(in, 0);
    if (!in) return -1;
    const bool known = key.IsIn(*dict);
    m.Drop(2);
    m.PushBool(known);
    return 1;
}

// key  where  dict true                      STACKUNDERFLOW RANGE
// key  where  false
int OpWhere(CFilterEPS& m) {
    Operands in(m);
    const CKey key = ReadKey(in, 0);
    if (!in) return -1;
    const ElementPtr operand = m.Pop();
    const CDictionary* dict = DictOf(m, key);
    if (dict) m.Push(dict->Clone());
    m.PushBool(dict != nullptr);
    return 1;
}

// clang-format off
// Place 4 of the chain.
constexpr OpRow kCoreRows[] = {
    {"dict", OpDict},
    {"begin", OpBegin},
    {"end", OpEnd},
    {"def", OpDef},
    {"bind", OpBind},
    {"load", OpLoad},
    {"known", OpKnown},
    {"where", OpWhere},
};
// clang-format on

// -  <<  mark
int OpBeginDictionary(CFilterEPS& m) {
    m.Push(NewMark());
    return 1;
}

// mark key value ..  >>  dict                UNMATCHEDMARK
// Departure: keys are names and strings only; of a key given twice the first value counts; of an odd number
// of objects the lowest is dropped and the mark stays.
int OpEndDictionary(CFilterEPS& m) { return m.CloseDictionary(); }

// dict  maxlength  int                       STACKUNDERFLOW TYPECHECK
// Departure: the answer never changes, whatever is defined.
int OpMaxlength(CFilterEPS& m) {
    Operands in(m);
    const CDictionary* dict = in.Dict(0);
    if (!in) return -1;
    const std::int32_t capacity = dict->GetMaxLength();
    m.Drop(1);
    m.PushInt(capacity);
    return 1;
}

// key value  store  -                        STACKUNDERFLOW RANGE
// Departure: systemdict is not searched.
int OpStore(CFilterEPS& m) {
    Operands in(m);
    const CKey key = ReadKey(in, 1);
    if (!in) return -1;
    ElementPtr value = m.Pop();
    const ElementPtr operand = m.Pop();
    CDictionary* dict = DictOf(m, key);
    if (!dict || dict == m.m_DictStack.Bottom()) dict = m.TopDict();
    key.PutIn(*dict, std::move(value));
    return 1;
}

// dict key  undef  -                         STACKUNDERFLOW TYPECHECK RANGE
// Departure: a key that is absent is no error, and only the value of the current save level goes.
int OpUndef(CFilterEPS& m) {
    Operands in(m);
    in.Dict(1);
    const CKey key = ReadKey(in, 0);
    if (!in) return -1;
    const ElementPtr operand = m.Pop();
    const auto dict = Take<CDictionary>(m);
    key.RemoveFrom(*dict);
    return 1;
}

// -  currentdict  dict
int OpCurrentdict(CFilterEPS& m) {
    m.Push(m.TopDict()->Clone());
    return 1;
}

// -  countdictstack  int
int OpCountdictstack(CFilterEPS& m) {
    m.PushInt(m.m_DictStack.GetCount());
    return 1;
}

// array  dictstack  subarray                 STACKUNDERFLOW TYPECHECK RANGE
// Departure: a packed array is refused.
int OpDictstack(CFilterEPS& m) {
    Operands in(m);
    const CArrayElement* array = in.Array(0);
    in.Require(!array || array->GetLength() >= m.m_DictStack.GetCount(), PSERR_RANGE);
    if (!in) return -1;
    TypedPtr<CArrayElement> view = array->GetInterval(0, m.m_DictStack.GetCount());
    std::int32_t i = 0;
    for (const CElement* dict = m.m_DictStack.Bottom(); dict; dict = dict->m_pNext) view->SetAt(i++, dict->Clone());
    m.Drop(1);
    m.Push(std::move(view));
    return 1;
}

// -  cleardictstack  -
int OpCleardictstack(CFilterEPS& m) {
    while (m.m_DictStack.GetCount() > PERMANENT_DICTS) m.m_DictStack.Pop();
    return 1;
}

// int  internaldict  dict                    STACKUNDERFLOW; TYPECHECK for a wrong password
// Departure: a wrong password is no invalidaccess, and a real is truncated.
int OpInternaldict(CFilterEPS& m) {
    Operands in(m);
    in.Require(in.Int(0) == INTERNALDICT_PASSWORD, PSERR_TYPECHECK);
    if (!in) return -1;
    m.Drop(1);
    m.Push(m.m_pInternalDict->Clone());
    return 1;
}

// Place 13 of the chain.
constexpr OpRow kRows[] = {
    {"<<", OpBeginDictionary},
    {">>", OpEndDictionary},
    {"maxlength", OpMaxlength},
    {"store", OpStore},
    {"undef", OpUndef},
    {"currentdict", OpCurrentdict},
    {"countdictstack", OpCountdictstack},
    {"dictstack", OpDictstack},
    {"cleardictstack", OpCleardictstack},
    {"internaldict", OpInternaldict},
};

}  // namespace

int BindProcedure(CFilterEPS& m, BoundNames names) {
    Operands in(m);
    const CArrayElement* outermost = in.Procedure(0);
    if (!in) return -1;
    // Nothing runs here, and no procedure is replaced: pointers to them stay good. The order of the walk does
    // not show in the result.
    CUnvisited unvisited;
    std::vector<const CArrayElement*> open{outermost};
    while (!open.empty()) {
        const CArrayElement& procedure = *open.back();
        open.pop_back();
        CArrayBody* body = procedure.GetBody();
        if (!body || procedure.GetLength() == 0) continue;
        const size_t first = procedure.m_bView ? static_cast<size_t>(procedure.m_nStart) : 0;
        const size_t end = first + static_cast<size_t>(procedure.GetLength());
        CUnvisited::Indices& indices = unvisited.Of(*body);
        for (size_t i = CUnvisited::Find(indices, first); i < end; i = CUnvisited::Find(indices, i)) {
            if (m.IsInterrupted()) return -1;
            indices[i] = i + 1;
            const CElement& e = body->Contents().At(i);
            if (e.IsProcedure()) {
                open.push_back(&static_cast<const CArrayElement&>(e));
            } else if (e.m_nType == ET_RAWTOKEN || (names == BoundNames::all && e.m_nType == ET_NAME && e.m_bExec)) {
                const CName* name = static_cast<const CSimpElement&>(e).m_pName;
                if (name->IsNumber()) continue;
                const COperatorElement* found = SystemOperator(m, name);
                if (!found) continue;
                body->Change().Set(i, MakeElement<COperatorElement>(found->m_pName));
            }
        }
    }
    return 1;
}

constinit const OpTable kDictionaryCoreOperators{kCoreRows};
constinit const OpTable kDictionaryOperators{kRows};
