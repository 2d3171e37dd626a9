// Interpreter parameters (PLRM, Appendix C). None has an effect: programs set them for speed, and ask for them to see
// what they run on.
#include "complete/ParameterOperators.h"

#include <span>
#include <string_view>
#include <variant>

#include "complete/CompleteDialect.h"
#include "interp/Keys.h"
#include "interp/Operands.h"

namespace {

struct Parameter {
    std::string_view name;
    std::variant<std::int32_t, bool, std::string_view> value;
};

constexpr Parameter kUserParameters[] = {
    {"AccurateScreens", false}, {"HalftoneMode", 0},        {"IdiomRecognition", true}, {"JobName", ""},
    {"JobTimeout", 0},          {"MaxDictStack", 10000},    {"MaxExecStack", 100000},   {"MaxFontItem", 12500},
    {"MaxFormItem", 100000},    {"MaxLocalVM", 2147483647}, {"MaxOpStack", 1000000},    {"MaxPatternItem", 20000},
    {"MaxScreenItem", 48000},   {"MaxSuperScreen", 1016},   {"MaxUPathItem", 5000},     {"MinFontCompress", 1250},
    {"VMReclaim", 0},           {"VMThreshold", 40000},     {"WaitTimeout", 300},
};

constexpr Parameter kSystemParameters[] = {
    {"BuildTime", 0},
    {"ByteOrder", true},
    {"CurDisplayList", 0},
    {"CurFontCache", 0},
    {"CurFormCache", 0},
    {"CurOutlineCache", 0},
    {"CurPatternCache", 0},
    {"CurScreenStorage", 0},
    {"CurSourceList", 0},
    {"CurUPathCache", 0},
    {"DoPrintErrors", false},
    {"DoStartPage", false},
    {"FactoryDefaults", false},
    {"FontResourceDir", "fonts/"},
    {"GenericResourceDir", "Resource/"},
    {"GenericResourcePathSep", "/"},
    {"JobTimeout", 0},
    {"LicenseID", ""},
    {"MaxDisplayList", 140000},
    {"MaxFontCache", 500000},
    {"MaxFormCache", 100000},
    {"MaxImageBuffer", 524288},
    {"MaxOutlineCache", 65000},
    {"MaxPatternCache", 100000},
    {"MaxScreenStorage", 84000},
    {"MaxSourceList", 25000},
    {"MaxUPathCache", 300000},
    {"PageCount", 0},
    {"PrinterName", ""},
    {"RamSize", 67108864},
    {"RealFormat", "IEEE"},
    {"Revision", 704},
    {"StartupMode", 0},
    {"ValNV", true},
    {"WaitTimeout", 300},
};

ElementPtr ValueOf(const Parameter& parameter) {
    if (const auto* number = std::get_if<std::int32_t>(&parameter.value)) return NewInt(*number);
    if (const auto* flag = std::get_if<bool>(&parameter.value)) return MakeElement<CBoolElement>(*flag);
    return MakeElement<CStringElement>(std::get<std::string_view>(parameter.value));
}

TypedPtr<CDictionary> Build(std::span<const Parameter> parameters, BodyPlace place) {
    const CBodyPlaceScope scope(place);
    auto dict = MakeElement<CDictionary>(static_cast<std::int32_t>(parameters.size()));
    for (const Parameter& parameter : parameters) dict->Put(parameter.name, ValueOf(parameter));
    return dict;
}

using Set = TypedPtr<CDictionary> SystemParameters::*;

// dict  setuserparams  -                     stackunderflow typecheck
// dict  setsystemparams  -                   stackunderflow typecheck
// What is unknown has no effect. There is no password.
template <Set Which>
int OpSetParameters(CFilterEPS& m) {
    Operands in(m);
    const CDictionary* request = in.Dict(0);
    if (!in) return -1;
    CDictionary& known = *(CCompleteDialect::Of(m).Parameters().*Which);
    for (std::int32_t i = 0; const CDictNode* node = request->GetNameNodeAt(i); ++i) {
        const CElement* old = known.GetValue(node->m_pKey);
        if (old && old->m_nType != node->GetValue()->m_nType) return m.Fail(PSERR_TYPECHECK);
    }
    for (std::int32_t i = 0; const CDictNode* node = request->GetNameNodeAt(i); ++i) {
        const CBodyPlaceScope scope(known.IsGlobal() ? PLACE_GLOBAL : PlaceOfLevel(g_nSaveLevel));
        if (known.Find(node->m_pKey)) known.Put(node->m_pKey, node->GetValue()->DeepCopy());
    }
    m.Drop(1);
    return 1;
}

// -  currentuserparams  dict
// -  currentsystemparams  dict
template <Set Which>
int OpCurrentParameters(CFilterEPS& m) {
    const CDictionary& known = *(CCompleteDialect::Of(m).Parameters().*Which);
    auto dict = MakeElement<CDictionary>(known.GetCount());
    static_cast<void>(known.CopyTo(dict.get()));
    m.Push(std::move(dict));
    return 1;
}

// string  currentdevparams  dict             stackunderflow typecheck
// There are no devices that have any.
int OpCurrentdevparams(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    if (!in) return -1;
    m.Drop(1);
    m.Push(MakeElement<CDictionary>(0));
    return 1;
}

constexpr OpRow kRows[] = {
    {"setuserparams", OpSetParameters<&SystemParameters::user>},
    {"currentuserparams", OpCurrentParameters<&SystemParameters::user>},
    {"setsystemparams", OpSetParameters<&SystemParameters::system>},
    {"currentsystemparams", OpCurrentParameters<&SystemParameters::system>},
    {"setdevparams", OpDiscard<&Operands::Dict, &Operands::String>},
    {"currentdevparams", OpCurrentdevparams},
};

}  // namespace

constinit const OpTable kParameterOperators{kRows};

void BuildParameters(CFilterEPS& m) {
    SystemParameters& parameters = CCompleteDialect::Of(m).Parameters();
    parameters.user = Build(kUserParameters, PlaceOfLevel(0));
    parameters.system = Build(kSystemParameters, PLACE_GLOBAL);
}
