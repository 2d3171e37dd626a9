// Resources. There is no resource directory: the few categories that work are a table here, of which fonts
// stand in the font directories and CMaps in a dictionary of their own.
//
// Departure: a font that nobody defined is the default font, and not entered. Of all other categories each operator
// is refused, `Encoding` among them, so that `findencoding` always ends the run.
#include "operators/ResourceOperators.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "interp/Keys.h"
#include "interp/Operands.h"
#include "operators/CMapProcSet.h"
#include "text/FontDirectory.h"

namespace {

// Fonts

int DefineFont(CFilterEPS& m, const CName* key, const CElement& instance) {
    if (instance.m_nType != ET_DICT) return m.Fail(PSERR_TYPECHECK);
    EnterFont(m, key, instance);
    return 1;
}

bool IsFontPresent(const CFilterEPS& m, const CName* key) { return EnteredFont(m, key) != nullptr; }

// CMaps

int DefineCMap(CFilterEPS& m, const CName* key, const CElement& instance) {
    if (instance.m_nType != ET_DICT) return m.Fail(PSERR_TYPECHECK);
    m.m_pCMapDirectory->Put(key, instance.Clone());
    return 1;
}

void UndefineCMap(CFilterEPS& m, const CName* key) { m.m_pCMapDirectory->Remove(key); }

ElementPtr FindCMap(CFilterEPS& m, const CName* key) {
    const CElement* cmap = m.m_pCMapDirectory->GetValue(key);
    if (cmap) return cmap->Clone();
    m.Fail(PSERR_UNDEFINED);
    return nullptr;
}

bool IsCMapPresent(const CFilterEPS& m, const CName* key) { return m.m_pCMapDirectory->Find(key) != nullptr; }

// Procedure sets, of which one is there, and the category of categories

// Departure: only the first of these can be found.
constexpr std::string_view kProcSets[] = {"CIDInit", "BitmapFontInit", "ColorRendering", "FontSetInit"};

// Departure: the names that `resourcestatus` knows, whatever stands behind them.
// clang-format off
constexpr std::string_view kCategoryNames[] = {
    "Font", "CIDFont", "CMap", "FontSet", "Encoding",
    "Form", "Pattern", "ProcSet", "ColorSpace", "Halftone",
    "ColorRendering", "IdiomSet", "OutputDevice", "ControlLanguage", "Localization",
    "PDL", "HWOptions", "Filter", "ColorSpaceFamily", "Emulator",
    "IODevice", "ColorRenderingType", "FMapType", "FontType", "FormType",
    "HalftoneType", "ImageType", "PatternType", "FunctionType", "ShadingType",
    "Category", "Generic",
};
// clang-format on
static_assert(std::size(kCategoryNames) == 32);

ElementPtr FindProcSet(CFilterEPS& m, const CName* key) {
    if (key->Text() == kProcSets[0]) return BuildCMapProcSet(m);
    m.Fail(PSERR_UNSUPPORTED);
    return nullptr;
}

template <const auto& Names>
bool IsListed(const CFilterEPS&, const CName* key) {
    return std::find(std::begin(Names), std::end(Names), key->Text()) != std::end(Names);
}

constexpr ResourceCategory kCategories[] = {{"Font", DefineFont, RemoveFont, FindFont, IsFontPresent},
                                            {"CMap", DefineCMap, UndefineCMap, FindCMap, IsCMapPresent},
                                            {"ProcSet", nullptr, nullptr, FindProcSet, IsListed<kProcSets>},
                                            {"Category", nullptr, nullptr, nullptr, IsListed<kCategoryNames>}};

constexpr ResourceCategory kRefused{};

// The operators

/// The two operands that all four operators have: the category on top, and the key. TYPECHECK RANGE
class ResourceOperands {
public:
    ResourceOperands(CFilterEPS& m, int keyDepth) : m_In(m) {
        const CSimpElement* category = m_In.Name(0);
        const CElement* key = m_In.OneOf(keyDepth, {ET_NAME, ET_STRING});
        if (!m_In) return;
        m_pKey = KeyNameOf(*key);
        m_In.Require(category->m_pName->IsKey() && m_pKey->IsKey(), PSERR_RANGE);
        if (const ResourceCategory* known = m.Dialect().FindCategory(category->m_pName)) m_pCategory = known;
    }
    [[nodiscard]] explicit operator bool() const noexcept { return static_cast<bool>(m_In); }
    [[nodiscard]] const CName* Key() const noexcept { return m_pKey; }
    [[nodiscard]] const ResourceCategory& Category() const noexcept { return *m_pCategory; }

private:
    Operands m_In;
    const CName* m_pKey = nullptr;
    const ResourceCategory* m_pCategory = &kRefused;
};

// key instance category  defineresource  instance    STACKUNDERFLOW TYPECHECK RANGE
//                                                    TYPECHECK for an instance that is no dictionary, and
//                                                    UNSUPPORTED for a category, with all gone
int OpDefineresource(CFilterEPS& m) {
    const ResourceOperands in(m, 2);
    if (!in) return -1;
    m.Drop(1);
    ElementPtr instance = m.Pop();
    m.Drop(1);
    if (!in.Category().define) return m.Fail(PSERR_UNSUPPORTED);
    if (in.Category().define(m, in.Key(), *instance) != 1) return -1;
    m.Push(std::move(instance));
    return 1;
}

// key category  undefineresource  -          STACKUNDERFLOW TYPECHECK RANGE; UNSUPPORTED, with both gone
int OpUndefineresource(CFilterEPS& m) {
    const ResourceOperands in(m, 1);
    if (!in) return -1;
    m.Drop(2);
    if (!in.Category().undefine) return m.Fail(PSERR_UNSUPPORTED);
    in.Category().undefine(m, in.Key());
    return 1;
}

// key category  findresource  instance       STACKUNDERFLOW TYPECHECK RANGE
//                                            UNDEFINED UNSUPPORTED, with both gone
int OpFindresource(CFilterEPS& m) {
    const ResourceOperands in(m, 1);
    if (!in) return -1;
    m.Drop(2);
    if (!in.Category().find) return m.Fail(PSERR_UNSUPPORTED);
    ElementPtr instance = in.Category().find(m, in.Key());
    if (!instance) return -1;
    m.Push(std::move(instance));
    return 1;
}

// key category  resourcestatus  0 -1 true    STACKUNDERFLOW TYPECHECK RANGE; UNSUPPORTED, with both gone
// key category  resourcestatus  false
// Departure: the status is always that of an instance defined explicitly, and the size is never known.
int OpResourcestatus(CFilterEPS& m) {
    const ResourceOperands in(m, 1);
    if (!in) return -1;
    m.Drop(2);
    if (!in.Category().isPresent) return m.Fail(PSERR_UNSUPPORTED);
    const bool present = in.Category().isPresent(m, in.Key());
    if (present) {
        m.PushInt(0);
        m.PushInt(-1);
    }
    m.PushBool(present);
    return 1;
}

// clang-format off
// Place 18 of the chain.
constexpr OpRow kRows[] = {
    {"defineresource", OpDefineresource},
    {"undefineresource", OpUndefineresource},
    {"findresource", OpFindresource},
    {"findcolorrendering", OpUnsupported},
    {"resourcestatus", OpResourcestatus},
    {"resourceforall", OpUnsupported},
};
// clang-format on

}  // namespace

const ResourceCategory* CDialect::FindCategory(const CName* name) const {
    const auto* known = std::find_if(std::begin(kCategories), std::end(kCategories),
                                     [&](const auto& row) { return row.name == name->Text(); });
    return known != std::end(kCategories) ? known : nullptr;
}

constinit const OpTable kResourceOperators{kRows};
