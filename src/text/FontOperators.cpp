// Fonts. Departure: a font is nothing but a dictionary. No font program is ever read, no entry is required or
// added, and a name that nobody defined answers the default font; only Type 3 fonts lead to anything drawn.
#include "text/FontOperators.h"

#include "graphics/GraphState.h"
#include "graphics/Matrix.h"
#include "graphics/MatrixOperators.h"
#include "interp/Keys.h"
#include "interp/Operands.h"
#include "text/FontDirectory.h"

namespace {

using FontPtr = TypedPtr<CDictionary>;

FontPtr CloneFont(const CDictionary& font) { return FontPtr(static_cast<CDictionary*>(font.Clone().release())); }

/// The text of a key operand; a key too long is PSERR_RANGE.
const CName* FontKey(Operands& in, int depth) {
    const CElement* e = in.OneOf(depth, {ET_NAME, ET_STRING});
    const CName* key = e ? KeyNameOf(*e) : nullptr;
    if (key) in.Require(key->IsKey(), PSERR_RANGE);
    return key;
}

// key font  definefont  font                 STACKUNDERFLOW TYPECHECK RANGE
int OpDefinefont(CFilterEPS& m) {
    Operands in(m);
    in.Dict(0);
    const CName* key = FontKey(in, 1);
    if (!in) return -1;
    auto font = Take<CDictionary>(m);
    m.Drop(1);
    EnterFont(m, key, *font);
    m.Push(std::move(font));
    return 1;
}

// key cmap array  composefont  font          STACKUNDERFLOW TYPECHECK RANGE; UNDEFINED, with all gone
// Departure: the composite font is the CMap itself; its descendants are not looked at.
int OpComposefont(CFilterEPS& m) {
    Operands in(m);
    in.Array(0);
    const CElement* operand = in.OneOf(1, {ET_NAME, ET_STRING, ET_DICT});
    const CName* cmapKey = operand && operand->m_nType != ET_DICT ? FontKey(in, 1) : nullptr;
    const CName* key = FontKey(in, 2);
    if (!in) return -1;
    const CElement* found = cmapKey ? m.m_pCMapDirectory->GetValue(cmapKey) : operand;
    ElementPtr cmap = found ? found->Clone() : nullptr;
    m.Drop(3);
    if (!cmap) return m.Fail(PSERR_UNDEFINED);
    EnterLocalFont(m, key, *cmap);
    m.Push(std::move(cmap));
    return 1;
}

// key  undefinefont  -                       STACKUNDERFLOW TYPECHECK RANGE
int OpUndefinefont(CFilterEPS& m) {
    Operands in(m);
    const CName* key = FontKey(in, 0);
    if (!in) return -1;
    m.Drop(1);
    RemoveFont(m, key);
    return 1;
}

// key  .findfontop  font                     STACKUNDERFLOW; TYPECHECK, with the key gone; RANGE
// Departure: a font that is not there is the default font from then on.
int OpFindfontop(CFilterEPS& m) {
    const ElementPtr operand = m.Pop();
    if (!operand) return m.Fail(PSERR_STACKUNDERFLOW);
    const CName* key = KeyNameOf(*operand);
    if (!key) return m.Fail(PSERR_TYPECHECK);
    if (!key->IsKey()) return m.Fail(PSERR_RANGE);
    const bool isNew = !EnteredFont(m, key);
    ElementPtr font = FindFont(m, key);
    if (!font) return -1;
    if (isNew) EnterFontEverywhere(m, key, *font);
    m.Push(std::move(font));
    return 1;
}

/// The dictionary that `selectfont` starts from; null with the code set.
FontPtr SelectedFont(CFilterEPS& m, const CName* key) {
    if (const auto* found = As<CDictionary>(EnteredFont(m, key))) return CloneFont(*found);
    const ElementPtr font = m.Dialect().FindUndefinedFont(m, key);
    return font ? CloneFont(static_cast<const CDictionary&>(*font)) : nullptr;
}

// Scaling. Whatever can be wrong with a font or a matrix shows before anything is popped.

/// The six values of an array, which null stands for when it is missing or no array.
void ReadSix(Operands& in, const CArrayElement* array, double six[6]) {
    const ErrorCode error = array ? ReadMatrix(*array, six) : PSERR_TYPECHECK;
    in.Require(error == PSERR_NONE, error);
}

/// A copy of a font that has another font matrix. The font and what it was changed by are remembered in it.
FontPtr CopyOfFont(FontPtr font, const double six[6], ElementPtr scaleMatrix) {
    FontPtr copy(static_cast<CDictionary*>(font->DeepCopy().release()));
    auto* matrix = As<CArrayElement>(copy->GetValue("FontMatrix"));
    if (matrix) static_cast<void>(WriteMatrix(*matrix, six));  // as long as the font's own
    copy->Put("OrigFont", std::move(font));
    copy->Put("ScaleMatrix", std::move(scaleMatrix));
    return copy;
}

FontPtr ScaledFont(FontPtr font, double six[6], double scale) {
    const auto s = static_cast<float>(scale);
    std::vector<ElementPtr> elements;
    for (int i = 0; i < 6; ++i) {
        six[i] = static_cast<float>(six[i]) * s;  // in single precision
        elements.push_back(NewReal(i == 0 || i == 3 ? static_cast<double>(s) : 0.0));
    }
    return CopyOfFont(std::move(font), six, MakeElement<CArrayElement>(std::move(elements)));
}

FontPtr TransformedFont(FontPtr font, double six[6], const double by[6], ElementPtr operand) {
    double matrix[9];
    double left[9];
    MatFromArray6(six, matrix);
    MatFromArray6(by, left);
    MatConcat(matrix, left);  // the operand stands on the left
    MatToArray6(matrix, six);
    return CopyOfFont(std::move(font), six, std::move(operand));
}

// font scale  scalefont  font                STACKUNDERFLOW TYPECHECK; RANGE for a short font matrix
int OpScalefont(CFilterEPS& m) {
    Operands in(m);
    const CDictionary* font = in.Dict(1);
    const double scale = in.Real(0);
    double six[6];
    if (in) ReadSix(in, As<CArrayElement>(font->GetValue("FontMatrix")), six);
    if (!in) return -1;
    m.Drop(1);
    m.Push(ScaledFont(Take<CDictionary>(m), six, scale));
    return 1;
}

// font matrix  makefont  font                STACKUNDERFLOW TYPECHECK; RANGE for a short matrix
int OpMakefont(CFilterEPS& m) {
    Operands in(m);
    const CArrayElement* matrix = in.Array(0);
    const CDictionary* font = in.Dict(1);
    double by[6];
    double six[6];
    if (in) ReadSix(in, matrix, by);
    if (in) ReadSix(in, As<CArrayElement>(font->GetValue("FontMatrix")), six);
    if (!in) return -1;
    ElementPtr operand = m.Pop();
    m.Push(TransformedFont(Take<CDictionary>(m), six, by, std::move(operand)));
    return 1;
}

// font  setfont  -                           STACKUNDERFLOW TYPECHECK
int OpSetfont(CFilterEPS& m) {
    Operands in(m);
    in.Dict(0);
    if (!in) return -1;
    m.GetCurrentGState()->SetFont(Take<CDictionary>(m));
    return 1;
}

// -  currentfont  font
int OpCurrentfont(CFilterEPS& m) {
    const CDictionary* font = m.GetCurrentGState()->GetFont();
    m.Push(font ? font->Clone() : m.m_pDefaultFont->Clone());
    return 1;
}

// key scale | key matrix  selectfont  -      STACKUNDERFLOW TYPECHECK RANGE
// Departure: a font that is not there is not entered under the key.
int OpSelectfont(CFilterEPS& m) {
    Operands in(m);
    const CElement* by = in.OneOf(0, {ET_NUMBER, ET_ARRAY});
    const CName* key = FontKey(in, 1);
    if (!in) return -1;
    FontPtr font = SelectedFont(m, key);
    if (!font) return -1;
    double six[6];
    double matrix[6];
    const auto* scale = As<CNumberElement>(by);
    if (!scale) ReadSix(in, As<CArrayElement>(by), matrix);
    if (in) ReadSix(in, As<CArrayElement>(font->GetValue("FontMatrix")), six);
    if (!in) return -1;
    font = scale ? ScaledFont(std::move(font), six, scale->GetReal())
                 : TransformedFont(std::move(font), six, matrix, by->Clone());
    m.Drop(2);
    m.GetCurrentGState()->SetFont(std::move(font));
    return 1;
}

// clang-format off
// Place 28 of the chain, its first table.
constexpr OpRow kRows[] = {
    {"definefont", OpDefinefont},
    {"composefont", OpComposefont},
    {"undefinefont", OpUndefinefont},
    {".findfontop", OpFindfontop},
    {"scalefont", OpScalefont},
    {"makefont", OpMakefont},
    {"setfont", OpSetfont},
    {"rootfont", OpUnsupported},
    {"currentfont", OpCurrentfont},
    {"selectfont", OpSelectfont},
};
// clang-format on

}  // namespace

ElementPtr CDialect::FindUndefinedFont(CFilterEPS& m, const CName* key) {
    FontPtr font = CloneFont(*m.m_pDefaultFont);
    font->m_pFoundAs = key;
    return font;
}

constinit const OpTable kFontOperators{kRows};
