// The font operators (PLRM, Font Operators) over the resource operators: a font is an instance of the category Font. A
// font that is scaled shares all entries with the one it is made of but its matrix.
#include "complete/FontOperators.h"

#include <vector>

#include "complete/CompleteDialect.h"
#include "complete/FontFaces.h"
#include "graphics/GraphState.h"
#include "graphics/Matrix.h"
#include "graphics/MatrixOperators.h"
#include "interp/Keys.h"
#include "interp/Operands.h"

namespace {

using FontPtr = TypedPtr<CDictionary>;

constexpr std::int32_t COMPOSITE = 0;

/// How deep composite fonts may stand in each other: the language allows five levels.
constexpr int MAX_FONT_DEPTH = 5;

int FailFont(CFilterEPS& m) { return m.Fail(PSERR_UNDEFINED, "invalidfont"); }

/// Runs an operator of resources with the category on top of the operands, which are back when it fails.
int RunOnFonts(CFilterEPS& m, std::string_view name) {
    m.Push(MakeElement<CSimpElement>(std::string_view("Font")));
    if (InternName(name)->m_pfnOperator(m) == 1) return 1;
    if (m.m_nError != PSERR_NONE) m.Drop(1);
    return -1;
}

/// The six values of a font's matrix. invalidfont when there is none.
int ReadFontMatrix(CFilterEPS& m, const CDictionary& font, double six[6]) {
    const auto* matrix = As<CArrayElement>(font.GetValue("FontMatrix"));
    return matrix && ReadMatrix(*matrix, six) == PSERR_NONE ? 1 : FailFont(m);
}

ElementPtr NewMatrix(const double six[6]) {
    std::vector<ElementPtr> elements;
    for (int i = 0; i < 6; ++i) elements.push_back(NewReal(six[i]));
    return MakeElement<CArrayElement>(std::move(elements));
}

/// A font that is another one behind a matrix; so are the composite fonts that it consists of, since only the matrix of
/// the innermost one is used with a base font's (PLRM, Composite Fonts).
FontPtr TransformFont(const CDictionary& font, const double by[6], int depth = 0) {
    auto copy = MakeElement<CDictionary>(font.GetMaxLength() + 2);
    static_cast<void>(font.CopyTo(copy.get()));
    double six[6];
    const auto* matrix = As<CArrayElement>(font.GetValue("FontMatrix"));
    if (matrix && ReadMatrix(*matrix, six) == PSERR_NONE) {
        double left[9];
        double right[9];
        MatFromArray6(six, left);
        MatFromArray6(by, right);
        MatMultiply(left, right, left);
        MatToArray6(left, six);
        copy->Put("FontMatrix", NewMatrix(six));
    }
    copy->Put("OrigFont", font.Clone());
    copy->Put("ScaleMatrix", NewMatrix(by));
    copy->m_nAccess = ACC_READONLY;
    const auto* type = As<CNumberElement>(font.GetValue("FontType"));
    const auto* parts = As<CArrayElement>(font.GetValue("FDepVector"));
    if (!type || type->GetInt() != COMPOSITE || !parts || depth >= MAX_FONT_DEPTH) return copy;
    std::vector<ElementPtr> elements;
    for (std::int32_t i = 0; i < parts->GetLength(); ++i) {
        const CElement& part = *parts->GetAt(i);
        const auto* descendant = As<CDictionary>(&part);
        const auto* its = descendant ? As<CNumberElement>(descendant->GetValue("FontType")) : nullptr;
        const bool isComposite = its && its->GetInt() == COMPOSITE;
        elements.push_back(isComposite ? TransformFont(*descendant, by, depth + 1) : part.Clone());
    }
    copy->Put("FDepVector", MakeElement<CArrayElement>(std::move(elements)));
    return copy;
}

/// Reads an operand that a font is changed by: a number or a matrix.
void ReadTransform(Operands& in, const CElement* operand, double six[6]) {
    if (const auto* number = As<CNumberElement>(operand)) {
        const double scale = number->GetReal();
        const double matrix[6] = {scale, 0, 0, scale, 0, 0};
        std::copy_n(matrix, 6, six);
    } else if (const auto* array = As<CArrayElement>(operand)) {
        const ErrorCode error = ReadMatrix(*array, six);
        in.Require(error == PSERR_NONE, error);
    }
}

// key font  definefont  font                 stackunderflow typecheck invalidfont invalidaccess
int OpDefinefont(CFilterEPS& m) {
    Operands in(m);
    in.Dict(0);
    in.Any(1);
    if (!in) return -1;
    return RunOnFonts(m, "defineresource");
}

// key  undefinefont  -                       stackunderflow
int OpUndefinefont(CFilterEPS& m) {
    Operands in(m);
    in.Any(0);
    if (!in) return -1;
    return RunOnFonts(m, "undefineresource");
}

// key  findfont  font                        stackunderflow invalidfont
int OpFindfont(CFilterEPS& m) {
    Operands in(m);
    in.Any(0);
    if (!in) return -1;
    if (RunOnFonts(m, "findresource") == 1) return 1;
    return m.m_nError == PSERR_UNDEFINED ? FailFont(m) : -1;
}

// font scale  scalefont  font                stackunderflow typecheck invalidfont
// font matrix  makefont  font                rangecheck
template <ElementType... Types>
int OpTransformFont(CFilterEPS& m) {
    Operands in(m);
    double by[6];
    const CElement* operand = in.OneOf(0, {Types...});
    const CDictionary* font = in.Dict(1);
    if (in) ReadTransform(in, operand, by);
    double six[6];
    if (!in || ReadFontMatrix(m, *font, six) != 1) return -1;
    FontPtr result = TransformFont(*font, by);
    m.Drop(2);
    m.Push(std::move(result));
    return 1;
}

// font  setfont  -                           stackunderflow typecheck
int OpSetfont(CFilterEPS& m) {
    Operands in(m);
    in.Dict(0);
    if (!in) return -1;
    m.GetCurrentGState()->SetLiveFont(Take<CDictionary>(m));
    return 1;
}

// -  currentfont  font
int OpCurrentfont(CFilterEPS& m) {
    m.Push(m.GetCurrentGState()->PeekFont()->Clone());
    return 1;
}

// -  rootfont  font
int OpRootfont(CFilterEPS& m) {
    const CDictionary* root = CCompleteDialect::Of(m).RootFont();
    m.Push((root ? root : m.GetCurrentGState()->PeekFont())->Clone());
    return 1;
}

// key scale | key matrix  selectfont  -      stackunderflow typecheck rangecheck invalidfont
int OpSelectfont(CFilterEPS& m) {
    Operands in(m);
    double by[6];
    const CElement* operand = in.OneOf(0, {ET_NUMBER, ET_ARRAY, ET_PACKEDARRAY});
    const CElement* key = in.Any(1);
    if (in) ReadTransform(in, operand, by);
    if (!in) return -1;
    m.Push(key->Clone());
    if (OpFindfont(m) != 1) {
        if (m.m_nError != PSERR_NONE) m.Drop(1);
        return -1;
    }
    const ElementPtr found = m.Pop();
    const auto* font = As<CDictionary>(found.get());
    double six[6];
    if (!font || ReadFontMatrix(m, *font, six) != 1) return FailFont(m);
    m.Drop(2);
    m.GetCurrentGState()->SetLiveFont(TransformFont(*font, by));
    return 1;
}

/// The CIDFont or font that stands for an element of the operand of `composefont`. Null with the code.
ElementPtr FindDescendant(CFilterEPS& m, const CElement& part) {
    if (part.m_nType == ET_DICT) return part.Clone();
    for (const std::string_view category : {"CIDFont", "Font"}) {
        m.Push(part.Clone());
        m.Push(MakeElement<CSimpElement>(category));
        if (InternName("findresource")->m_pfnOperator(m) == 1) return m.Pop();
        if (m.m_nError == PSERR_NONE) return nullptr;
        m.Drop(2);
    }
    return nullptr;
}

// key name|string|dict array  composefont  font
//                                            stackunderflow typecheck rangecheck undefinedresource invalidfont
int OpComposefont(CFilterEPS& m) {
    Operands in(m);
    const auto* parts = in.AnyArray(0);
    const CElement* operand = in.OneOf(1, {ET_NAME, ET_STRING, ET_DICT});
    const CElement* key = in.OneOf(2, {ET_NAME, ET_STRING});
    in.Require(!parts || parts->GetLength() > 0, PSERR_RANGE);
    if (!in) return -1;
    const ElementPtr keptParts = parts->Clone();
    const ElementPtr keptKey = key->Clone();
    ElementPtr cmap = operand->Clone();
    if (operand->m_nType != ET_DICT) {
        m.Push(MakeElement<CSimpElement>(KeyNameOf(*operand)));
        m.Push(MakeElement<CSimpElement>(std::string_view("CMap")));
        if (InternName("findresource")->m_pfnOperator(m) != 1) {
            if (m.m_nError != PSERR_NONE) m.Drop(2);
            return -1;
        }
        cmap = m.Pop();
    }
    const auto* map = As<CDictionary>(cmap.get());
    if (!map) return m.Fail(PSERR_TYPECHECK);
    std::vector<ElementPtr> descendants;
    std::vector<ElementPtr> encoding;
    const auto& list = static_cast<const CArrayElement&>(*keptParts);
    for (std::int32_t i = 0; i < list.GetLength(); ++i) {
        descendants.push_back(FindDescendant(m, *list.GetAt(i)));
        if (!descendants.back()) return -1;
        encoding.push_back(NewInt(i));
    }
    constexpr double identity[6] = {1, 0, 0, 1, 0, 0};
    constexpr std::int32_t byCMap = 9;
    auto font = MakeElement<CDictionary>(12);
    font->Put("FontType", NewInt(COMPOSITE));
    font->Put("FMapType", NewInt(byCMap));
    font->Put("FontName", MakeElement<CSimpElement>(KeyNameOf(*keptKey)));
    font->Put("FontMatrix", NewMatrix(identity));
    font->Put("Encoding", MakeElement<CArrayElement>(std::move(encoding)));
    font->Put("FDepVector", MakeElement<CArrayElement>(std::move(descendants)));
    const auto* writing = As<CNumberElement>(map->GetValue("WMode"));
    font->Put("WMode", NewInt(writing ? writing->GetInt() : 0));
    font->Put("CMap", std::move(cmap));
    m.Push(keptKey->Clone());
    m.Push(std::move(font));
    if (OpDefinefont(m) != 1) {
        if (m.m_nError != PSERR_NONE) m.Drop(2);
        return -1;
    }
    ElementPtr result = m.Pop();
    m.Drop(3);
    m.Push(std::move(result));
    return 1;
}

constexpr OpRow kRows[] = {
    {"definefont", OpDefinefont},
    {"undefinefont", OpUndefinefont},
    {"findfont", OpFindfont},
    {".findfontop", OpFindfont},
    {"scalefont", OpTransformFont<ET_NUMBER>},
    {"makefont", OpTransformFont<ET_ARRAY, ET_PACKEDARRAY>},
    {"setfont", OpSetfont},
    {"currentfont", OpCurrentfont},
    {"rootfont", OpRootfont},
    {"selectfont", OpSelectfont},
    {"composefont", OpComposefont},
};

}  // namespace

constinit const OpTable kCompleteFontOperators{kRows};

int DefineFont(CFilterEPS& m, const CElement& key, ElementPtr& instance) {
    auto& font = static_cast<CDictionary&>(*instance);
    const auto* type = As<CNumberElement>(font.GetValue("FontType"));
    double six[6];
    if (!type || ReadFontMatrix(m, font, six) != 1) return FailFont(m);
    const CElement* encoding = font.GetValue("Encoding");
    if (encoding && !encoding->IsArrayKind()) return FailFont(m);
    const bool isComposite = type->GetInt() == COMPOSITE;
    if (isComposite && (!encoding || !As<CArrayElement>(font.GetValue("FDepVector")))) return FailFont(m);
    const CName* name = KeyNameOf(key);
    font.Put("FID", MakeElement<CSimpElement>(name ? name : InternName("FontID"), ET_FONTID));
    return 1;
}

int DefineCidFont(CFilterEPS& m, const CElement& key, ElementPtr& instance) {
    // FontType by CIDFontType (PLRM, CIDFont Dictionaries).
    constexpr std::int32_t types[] = {9, 10, 11, 32};
    auto& font = static_cast<CDictionary&>(*instance);
    const auto* kind = As<CNumberElement>(font.GetValue("CIDFontType"));
    if (!kind || kind->GetInt() < 0 || kind->GetInt() >= std::ssize(types)) return FailFont(m);
    font.Put("FontType", NewInt(types[kind->GetInt()]));
    const CName* name = KeyNameOf(key);
    font.Put("FID", MakeElement<CSimpElement>(name ? name : InternName("FontID"), ET_FONTID));
    return 1;
}

void InitFont(CFilterEPS& m) {
    CGraphState& state = *m.GetCurrentGState();
    state.SetLiveFont(TypedPtr<CDictionary>(static_cast<CDictionary*>(state.PeekFont()->DeepCopy().release())));
}
