// Named resources (PLRM, Named Resources). A category is a row of ResourceCategories.cpp, or a dictionary of procedures
// that a program has defined. The general procedures stand here: they run for a row, and for a dictionary whose
// procedures are copies of those of Generic. Other procedures run with their dictionary on the dictionary stack.
//
// Instances of local VM come before those of global VM, which come before what the system has; while VM allocation is
// global, the local ones are not seen.
#include "complete/ResourceOperators.h"

#include <algorithm>
#include <string>
#include <vector>

#include "complete/CompleteDialect.h"
#include "complete/ResourceCategories.h"
#include "interp/Keys.h"
#include "interp/Operands.h"
#include "operators/ControlOperators.h"
#include "operators/TypeOperators.h"

namespace {

// What `resourcestatus` tells of where an instance comes from.
constexpr std::int32_t STATUS_DEFINED = 0;
constexpr std::int32_t STATUS_MADE = 1;
constexpr std::int32_t STATUS_TO_MAKE = 2;

/// A category as the operators meet it.
struct Category {
    const CName* name = nullptr;
    const CategoryRow* row = nullptr;     ///< null for one that a program has defined
    TypedPtr<CDictionary> dict{nullptr};  ///< of one that a program has defined
};

// The directories

TypedPtr<CDictionary> MakeDirectory(BodyPlace place) {
    const CBodyPlaceScope scope(place);
    return MakeElement<CDictionary>(50);
}

/// The instances of a category in a directory; null when there never was one and none is to be made.
CDictionary* InstancesIn(CDictionary& directory, BodyPlace place, const CName* category, bool make) {
    const CElement* found = directory.GetValue(category);
    if (!found && make) {
        const CBodyPlaceScope scope(place);
        directory.Put(category, MakeElement<CDictionary>(20));
        found = directory.GetValue(category);
    }
    return const_cast<CDictionary*>(static_cast<const CDictionary*>(found));
}

/// The instances of a category in local or global VM. The same answers.
CDictionary* Instances(CFilterEPS& m, const Category& category, bool global, bool make = false) {
    if (category.row && category.row->directory) return category.row->directory(m, global);
    ResourceDirectories& directories = CCompleteDialect::Of(m).Resources();
    return global ? InstancesIn(*directories.global, PLACE_GLOBAL, category.name, make)
                  : InstancesIn(*directories.local, PlaceOfLevel(0), category.name, make);
}

CDictionary* MadeInstances(CFilterEPS& m, const CName* category, bool make = false) {
    return InstancesIn(*CCompleteDialect::Of(m).Resources().made, PLACE_GLOBAL, category, make);
}

/// What a directory has under a key; null, too, for an entry that was taken out at a later save level.
const CElement* Entered(const CDictionary* instances, const CElement& key) {
    const CElement* found = instances ? CKey(key).FindIn(*instances) : nullptr;
    return found && found->m_nType != ET_NULL ? found : nullptr;
}

void TakeOut(CDictionary* instances, const CElement& key) {
    if (!instances) return;
    const CKey text(key);
    text.RemoveFrom(*instances);
    if (text.IsIn(*instances)) text.PutIn(*instances, MakeElement<CNullElement>());  // until a restore
}

/// The instance that has been defined; null when there is none.
const CElement* Defined(CFilterEPS& m, const Category& category, const CElement& key) {
    const CElement* found = g_bGlobalMode ? nullptr : Entered(Instances(m, category, false), key);
    return found ? found : Entered(Instances(m, category, true), key);
}

/// The text of a key as it stands among the names of a row; null for a key that can't stand there.
const CName* SystemName(const CElement& key) {
    const auto* number = As<CNumberElement>(&key);
    if (number) return number->IsReal() ? nullptr : InternName(std::to_string(number->GetInt()));
    const CName* name = KeyNameOf(key);
    return name && !name->IsNumber() ? name : nullptr;
}

ElementPtr SystemKey(std::string_view text) {
    const CName* name = InternName(text);
    if (name->IsNumber()) return NewInt(static_cast<std::int32_t>(name->m_fNumber));
    return MakeElement<CSimpElement>(name);
}

/// Whether the system has the key among the names of the category.
bool IsOfSystem(const Category& category, const CElement& key) {
    const CName* name = category.row ? SystemName(key) : nullptr;
    const auto names = category.row ? category.row->names : std::span<const std::string_view>{};
    return name && std::find(names.begin(), names.end(), name->Text()) != names.end();
}

/// An instance of the system's; null with the code set.
ElementPtr Make(CFilterEPS& m, const Category& category, const CElement& key) {
    if (category.row->isImplicit) return key.Clone();
    if (const CElement* made = Entered(MadeInstances(m, category.name), key)) return made->Clone();
    const CBodyPlaceScope global(PLACE_GLOBAL);
    ElementPtr instance = category.row->make(m, SystemName(key));
    if (!instance) return nullptr;
    CKey(key).PutIn(*MadeInstances(m, category.name, true), instance->Clone());
    return instance;
}

// The general procedures. The operands lie on the stack without the category.

bool IsOfType(const CElement& instance, std::string_view type) {
    const std::string_view own = TypeName(instance);
    return type.empty() || own == type || (type == "arraytype" && own == "packedarraytype");
}

/// The type that instances must have; empty for any.
std::string_view InstanceType(const Category& category) {
    if (category.row) return category.row->instanceType;
    const auto* type = As<CSimpElement>(category.dict->GetValue("InstanceType"));
    return type ? type->m_pName->Text() : std::string_view();
}

// key instance  -  instance                  typecheck invalidaccess
int Define(CFilterEPS& m, const Category& category) {
    Operands in(m);
    CElement* instance = in.Any(0);
    const CElement* key = in.Any(1);
    in.Require(!key || key->m_nType != ET_NULL, PSERR_TYPECHECK);
    in.Require(!instance || IsOfType(*instance, InstanceType(category)), PSERR_TYPECHECK);
    if (!in) return -1;
    const bool isImplicit = category.row && category.row->isImplicit;
    if (isImplicit || (g_bGlobalMode && !instance->IsGlobal())) return m.Fail(PSERR_SYNTAX, "invalidaccess");
    const ElementPtr keptKey = key->Clone();
    ElementPtr entered = instance->Clone();
    if (category.row && category.row->define && category.row->define(m, *keptKey, entered) != 1) return -1;
    if (entered->IsArrayKind() || entered->m_nType == ET_DICT || entered->m_nType == ET_STRING) {
        entered->m_nAccess = std::max<std::int32_t>(entered->m_nAccess, ACC_READONLY);
    }
    if (g_bGlobalMode) TakeOut(Instances(m, category, false), *keptKey);
    CKey(*keptKey).PutIn(*Instances(m, category, g_bGlobalMode, true), entered->Clone());
    m.Drop(2);
    m.Push(std::move(entered));
    return 1;
}

// key  -  -
int Undefine(CFilterEPS& m, const Category& category) {
    const ElementPtr key = m.Pop();
    TakeOut(Instances(m, category, false), *key);
    if (g_bGlobalMode) TakeOut(Instances(m, category, true), *key);
    return 1;
}

// key  -  instance                           undefinedresource
int Find(CFilterEPS& m, const Category& category) {
    const ElementPtr key = m.m_OperandStack.Top()->Clone();
    const CElement* defined = Defined(m, category, *key);
    ElementPtr instance{nullptr};
    m.m_nError = PSERR_NONE;
    if (defined) {
        instance = defined->Clone();
    } else if (IsOfSystem(category, *key)) {
        instance = Make(m, category, *key);
    } else if (category.row && category.row->find) {
        instance = category.row->find(m, *key);
    }
    if (!instance) return m.m_nError == PSERR_NONE ? m.Fail(PSERR_UNDEFINED, "undefinedresource") : -1;
    m.Drop(1);
    m.Push(std::move(instance));
    return 1;
}

// key  -  status size true
// key  -  false
int Status(CFilterEPS& m, const Category& category) {
    constexpr std::int32_t unknownSize = -1;
    const ElementPtr key = m.Pop();
    std::int32_t status = STATUS_DEFINED;
    std::int32_t size = unknownSize;
    bool isThere = Defined(m, category, *key) != nullptr;
    if (!isThere && IsOfSystem(category, *key)) {
        isThere = true;
        if (category.row->isImplicit) {
            size = 0;
        } else {
            status = Entered(MadeInstances(m, category.name), *key) ? STATUS_MADE : STATUS_TO_MAKE;
        }
    } else if (!isThere && category.row && category.row->exists && category.row->exists(m, *key)) {
        isThere = true;
        status = STATUS_TO_MAKE;
    }
    if (isThere) {
        m.PushInt(status);
        m.PushInt(size);
    }
    m.PushBool(isThere);
    return 1;
}

/// Whether a text fits a template: * stands for any bytes, ? for one, and \ takes the next byte as it is (PLRM,
/// filenameforall).
bool Fits(std::string_view text, std::string_view pattern) {
    constexpr std::size_t none = std::string_view::npos;
    std::size_t at = 0, next = 0;
    std::size_t star = none, behindStar = 0;  // the last *, and where in the text it has come to
    while (at < text.size()) {
        const bool isEscaped = next + 1 < pattern.size() && pattern[next] == '\\';
        const std::size_t byte = isEscaped ? next + 1 : next;
        if (!isEscaped && next < pattern.size() && pattern[next] == '*') {
            star = next++;
            behindStar = at;
        } else if (byte < pattern.size() && (pattern[byte] == text[at] || (!isEscaped && pattern[byte] == '?'))) {
            ++at;
            next = byte + 1;
        } else if (star != none) {
            at = ++behindStar;
            next = star + 1;
        } else {
            return false;
        }
    }
    while (next < pattern.size() && pattern[next] == '*') ++next;
    return next == pattern.size();
}

/// The keys of a category that fit a template, each once.
std::vector<ElementPtr> KeysOf(CFilterEPS& m, const Category& category, std::string_view pattern) {
    std::vector<ElementPtr> keys;
    const CDictionary* const directories[] = {g_bGlobalMode ? nullptr : Instances(m, category, false),
                                              Instances(m, category, true)};
    const auto add = [&](ElementPtr key) {
        const CName* name = KeyNameOf(*key);
        if (name ? Fits(name->Text(), pattern) : pattern == "*") keys.push_back(std::move(key));
    };
    for (const CDictionary* directory : directories) {
        if (!directory) continue;
        const auto addEntered = [&](ElementPtr key) {
            const bool isTold = directory != directories[0] && Entered(directories[0], *key);
            if (!isTold && Entered(directory, *key)) add(std::move(key));
        };
        for (std::int32_t i = 0; const CDictNode* node = directory->GetNameNodeAt(i); ++i) {
            addEntered(MakeElement<CSimpElement>(node->m_pKey));
        }
        for (std::int32_t i = 0; const CDictNode2* node = directory->GetOtherNodeAt(i); ++i) {
            addEntered(node->GetKey()->Clone());
        }
    }
    if (category.row) {
        for (const std::string_view text : category.row->names) {
            ElementPtr key = SystemKey(text);
            if (!Defined(m, category, *key)) add(std::move(key));
        }
    }
    return keys;
}

// template proc scratch  -  -                stackunderflow typecheck rangecheck
int ForAll(CFilterEPS& m, const Category& category) {
    Operands in(m);
    const auto* scratch = in.String(0);
    in.Procedure(1);
    const auto* pattern = in.String(2);
    if (!in) return -1;
    std::vector<ElementPtr> keys = KeysOf(m, category, pattern->Bytes());
    for (const ElementPtr& key : keys) {
        const CName* name = KeyNameOf(*key);
        if (name && static_cast<std::int32_t>(name->m_nLength) > scratch->GetLength()) return m.Fail(PSERR_RANGE);
    }
    const auto text = Take<CStringElement>(m);
    const auto procedure = Take<CArrayElement>(m);
    m.Drop(1);
    for (ElementPtr& key : keys) {
        if (const CName* name = KeyNameOf(*key)) {
            TypedPtr<CStringElement> part = text->GetInterval(0, static_cast<std::int32_t>(name->m_nLength));
            part->Write(name->Text());
            key = std::move(part);
        }
        m.Push(std::move(key));
        const LoopPass pass = RunLoopPass(m, *procedure);
        if (pass == LoopPass::failed) return -1;
        if (pass == LoopPass::ended) break;
    }
    return 1;
}

// The procedures of a category

struct ProcedureRow {
    std::string_view key;      ///< in the dictionary of a category
    std::string_view general;  ///< the operator that the general procedure consists of
    int (*run)(CFilterEPS&, const Category&);
    int operands;  ///< beside the category
};

constexpr ProcedureRow DEFINE{"DefineResource", ".defineinstance", Define, 2};
constexpr ProcedureRow UNDEFINE{"UndefineResource", ".undefineinstance", Undefine, 1};
constexpr ProcedureRow FIND{"FindResource", ".findinstance", Find, 1};
constexpr ProcedureRow STATUS{"ResourceStatus", ".instancestatus", Status, 1};
constexpr ProcedureRow FORALL{"ResourceForAll", ".instanceforall", ForAll, 3};
constexpr const ProcedureRow* kProcedures[] = {&DEFINE, &UNDEFINE, &FIND, &STATUS, &FORALL};

/// The category of a name: one that a program has defined, or else the system's. False when there is none.
bool FindCategory(CFilterEPS& m, const CElement& name, Category& category) {
    category.name = KeyNameOf(name);
    const Category categories{InternName(CATEGORY), FindCategoryRow(InternName(CATEGORY)), nullptr};
    if (const auto* dict = As<CDictionary>(Defined(m, categories, name))) {
        category.dict.reset(static_cast<CDictionary*>(dict->Clone().release()));
        return true;
    }
    category.row = FindCategoryRow(category.name);
    return category.row != nullptr;
}

/// Whether a procedure is one of Generic, as a program may have copied it.
bool IsGeneral(const CElement& procedure, const ProcedureRow& row) {
    const auto* array = As<CArrayElement>(&procedure);
    const auto* only = array && array->GetLength() == 1 ? As<COperatorElement>(array->GetAt(0)) : nullptr;
    return only && only->m_pName->Text() == row.general;
}

/// Runs a procedure of a category, whose operands lie on the stack.
int RunProcedure(CFilterEPS& m, const Category& category, const ProcedureRow& row) {
    if (category.row) return row.run(m, category);
    const CElement* found = category.dict->GetValue(row.key);
    if (!found || !found->IsProcedure()) return m.Fail(PSERR_UNDEFINED);
    if (IsGeneral(*found, row)) return row.run(m, category);
    const ElementPtr procedure = found->Clone();
    const int depth = m.m_DictStack.GetCount();
    m.m_DictStack.PushCopy(*category.dict);
    const int result = m.ExecuteProcedure(static_cast<const CArrayElement*>(procedure.get()));
    while (m.m_DictStack.GetCount() > depth) m.m_DictStack.Pop();
    return result;
}

/// The operators of resources: the category lies on top of what its procedure takes. PLRM: an unknown category is
/// undefined.
template <const ProcedureRow& Row>
int OpOnCategory(CFilterEPS& m) {
    Operands in(m);
    const CElement* name = in.OneOf(0, {ET_NAME, ET_STRING});
    in.Any(Row.operands);
    if (!in) return -1;
    Category category;
    if (!FindCategory(m, *name, category)) return m.Fail(PSERR_UNDEFINED);
    const ElementPtr operand = m.Pop();
    const int result = RunProcedure(m, category, Row);
    if (result != 1 && m.m_nError != PSERR_NONE)
        m.Push(operand->Clone());  // beside the operands, which lie there still
    return result;
}

/// What the procedures of Generic consist of: the category is that whose dictionary is on the dictionary stack.
template <const ProcedureRow& Row>
int OpOfGeneric(CFilterEPS& m) {
    Operands in(m);
    in.Any(Row.operands - 1);
    if (!in) return -1;
    const CElement* name = m.LookUp(InternName(CATEGORY));
    Category category;
    if (!name || !KeyNameOf(*name) || !FindCategory(m, *name, category)) return m.Fail(PSERR_UNDEFINED);
    return Row.run(m, category);
}

// intent  findcolorrendering  name bool      stackunderflow typecheck
int OpFindcolorrendering(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(0, {ET_NAME, ET_STRING});
    if (!in) return -1;
    m.Drop(1);
    m.Push(MakeElement<CSimpElement>(std::string_view("DefaultColorRendering")));
    m.PushBool(false);
    return 1;
}

constexpr OpRow kRows[] = {
    {"defineresource", OpOnCategory<DEFINE>},     {"undefineresource", OpOnCategory<UNDEFINE>},
    {"findresource", OpOnCategory<FIND>},         {"resourcestatus", OpOnCategory<STATUS>},
    {"resourceforall", OpOnCategory<FORALL>},     {".defineinstance", OpOfGeneric<DEFINE>},
    {".undefineinstance", OpOfGeneric<UNDEFINE>}, {".findinstance", OpOfGeneric<FIND>},
    {".instancestatus", OpOfGeneric<STATUS>},     {".instanceforall", OpOfGeneric<FORALL>},
    {"findcolorrendering", OpFindcolorrendering},
};

}  // namespace

ElementPtr MakeCategory(CFilterEPS&, const CName* name) {
    const CategoryRow& row = *FindCategoryRow(name);
    auto dict = MakeElement<CDictionary>(10);
    dict->Put(CATEGORY, MakeElement<CSimpElement>(name));
    if (!row.instanceType.empty()) dict->Put("InstanceType", MakeElement<CSimpElement>(row.instanceType));
    for (const ProcedureRow* procedure : kProcedures) {
        std::vector<ElementPtr> elements;
        elements.push_back(MakeElement<COperatorElement>(procedure->general));
        auto array = MakeElement<CArrayElement>(std::move(elements));
        array->m_bExec = true;
        dict->Put(procedure->key, std::move(array));
    }
    return dict;
}

int DefineCategory(CFilterEPS& m, const CElement& key, ElementPtr& instance) {
    const CName* name = KeyNameOf(key);
    if (!name) return m.Fail(PSERR_TYPECHECK);
    auto& dict = static_cast<CDictionary&>(*instance);
    for (const ProcedureRow* row : kProcedures) {
        const CElement* procedure = dict.GetValue(row->key);
        if (!procedure) return m.Fail(PSERR_UNDEFINED);
        if (!procedure->IsProcedure()) return m.Fail(PSERR_TYPECHECK);
    }
    dict.Put(CATEGORY, MakeElement<CSimpElement>(name));
    return 1;
}

void BuildResources(CFilterEPS& m) {
    ResourceDirectories& directories = CCompleteDialect::Of(m).Resources();
    directories.local = MakeDirectory(PlaceOfLevel(0));
    directories.global = MakeDirectory(PLACE_GLOBAL);
    directories.made = MakeDirectory(PLACE_GLOBAL);

    auto& systemDict = static_cast<CDictionary&>(*m.m_DictStack.Bottom());
    const Category encodings{InternName("Encoding"), FindCategoryRow(InternName("Encoding")), nullptr};
    for (const std::string_view name : {"StandardEncoding", "ISOLatin1Encoding"}) {
        const auto key = MakeElement<CSimpElement>(name);
        systemDict.Put(key->m_pName, Make(m, encodings, *key));
    }
}

constinit const OpTable kCompleteResourceOperators{kRows};
