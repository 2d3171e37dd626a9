// Showing text. Departure: no text reaches the host as text. `show` runs the glyph procedures of Type 3
// fonts, whose paths become ordinary entities; in any other font it draws nothing, and its relatives only
// take their operands.
#include "text/ShowOperators.h"

#include "graphics/GraphState.h"
#include "graphics/MatrixOperators.h"
#include "graphics/PathBuilder.h"
#include "interp/Operands.h"

namespace {

constexpr std::int32_t TYPE_3 = 3;

/// What `show` holds for as long as it runs, so that every glyph is of the font that it started with,
/// whatever the glyph procedures select in between.
struct ShownFont {
    TypedPtr<CDictionary> font;
    TypedPtr<CArrayElement> encoding;
    const CName* buildGlyph = InternName("BuildGlyph");
    const CName* buildChar = InternName("BuildChar");
    const CName* fontMatrix = InternName("FontMatrix");
};

const CArrayElement* AnyArrayIn(const CDictionary& dict, const CName* key) {
    const CElement* value = dict.GetValue(key);
    return value && value->IsArrayKind() ? static_cast<const CArrayElement*>(value) : nullptr;
}

/// Runs the procedure of one glyph at the current point and moves the point by the glyph's width.
/// PSERR_SYNTAX for a font that can't be shown.
int ShowGlyph(CFilterEPS& m, const ShownFont& shown, unsigned char code) {
    const CDictionary& font = *shown.font;
    const bool byName = font.Find(shown.buildGlyph) != nullptr;  // wins where both exist
    const CArrayElement* procedure = AnyArrayIn(font, byName ? shown.buildGlyph : shown.buildChar);
    const CArrayElement* matrix = AnyArrayIn(font, shown.fontMatrix);
    const CElement* glyphName = byName ? shown.encoding->GetAt(code) : nullptr;
    double six[6];
    if (!procedure || !matrix || ReadMatrix(*matrix, six) != PSERR_NONE || (byName && !glyphName)) {
        return m.Fail(PSERR_SYNTAX);
    }
    m.Push(font.Clone());
    if (byName) {
        m.Push(glyphName->Clone());
    } else {
        m.PushInt(code);
    }

    CGraphState* state = m.GetCurrentGState();
    double ctm[6];
    state->GetCTM(ctm);
    point_2d origin;
    if (m.GetCurrentPoint(origin) == 0) origin = {};
    state->Translate(origin.x, origin.y);
    state->Concat(six);
    // Departure: no gsave comes first, so that what the procedure sets stays set.
    if (m.ExecuteProcedure(procedure) != 1) return -1;

    state = m.GetCurrentGState();  // may be another one now
    state->SetCTM(ctm);
    // Departure: the advance follows the axes of user space, whatever way the font is turned.
    double next[2] = {origin.x + static_cast<double>(m.m_fCharWX) * six[0],
                      origin.y + static_cast<double>(m.m_fCharWY) * six[3]};
    AddUserPoints(m, 1, next, PATH_MOVE);
    return 1;
}

/// Counts a text that is not drawn, with the name of its font.
void LeaveOutText(CFilterEPS& m) {
    tagLeftOut& leftOut = m.m_Report.leftOut;
    ++leftOut.nTexts;
    const CDictionary* font = m.GetCurrentGState()->PeekFont();
    const CName* name = font ? font->m_pFoundAs : nullptr;
    if (font && !name) {
        const auto* entry = As<CSimpElement>(font->GetValue(InternName("FontName")));
        name = entry ? entry->m_pName : nullptr;
    }
    if (name && m.m_FontsLeftOut.insert(name).second) leftOut.strFonts.emplace_back(name->Text());
}

// string  show  -                            STACKUNDERFLOW TYPECHECK; SYNTAX for a font that can't be shown
// A font without FontType can't be shown, not even an empty string of it. What else a Type 3 font lacks shows
// at its first glyph.
int OpShow(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    if (!in) return -1;
    const std::string text = Take<CStringElement>(m)->GetText();
    CGraphState* state = m.GetCurrentGState();
    const CDictionary* current = state->PeekFont();
    const auto* type = current ? As<CNumberElement>(current->GetValue("FontType")) : nullptr;
    if (!type) return m.Fail(PSERR_SYNTAX);
    if (text.empty()) return 1;
    if (type->GetInt() != TYPE_3) {
        LeaveOutText(m);
        return 1;
    }

    ShownFont shown;
    shown.font.reset(static_cast<CDictionary*>(state->GetFont()->Clone().release()));
    const CArrayElement* encoding = AnyArrayIn(*shown.font, InternName("Encoding"));
    if (!encoding) return m.Fail(PSERR_SYNTAX);
    shown.encoding.reset(static_cast<CArrayElement*>(encoding->Clone().release()));
    for (const char c : text) {
        if (!shown.font->GetBody()) break;  // a restore took the font with it: nothing is left to be shown
        if (ShowGlyph(m, shown, static_cast<unsigned char>(c)) != 1) return -1;
    }
    return 1;
}

/// A relative of show that takes a string and so many operands below it.
template <int below>
int OpSilentShow(CFilterEPS& m) {
    Operands in(m);
    const CStringElement* text = in.String(0);
    in.Any(below);
    if (!in) return -1;
    if (text->GetLength() > 0) LeaveOutText(m);
    m.Drop(below + 1);
    return 1;
}

// string numbers  xshow  -                   STACKUNDERFLOW TYPECHECK
int OpSpacedShow(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(0, {ET_ARRAY, ET_STRING});
    const CStringElement* text = in.String(1);
    if (!in) return -1;
    if (text->GetLength() > 0) LeaveOutText(m);
    m.Drop(2);
    return 1;
}

// name  glyphshow  -                         STACKUNDERFLOW TYPECHECK
int OpGlyphshow(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(0, {ET_NAME, ET_FONTID});
    if (!in) return -1;
    LeaveOutText(m);
    m.Drop(1);
    return 1;
}

// string  stringwidth  wx wy                 STACKUNDERFLOW TYPECHECK
// Departure: there are no metrics; the width is 0.
int OpStringwidth(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    if (!in) return -1;
    m.Drop(1);
    m.PushReal(0.0);
    m.PushReal(0.0);
    return 1;
}

// proc string  cshow  -                      STACKUNDERFLOW TYPECHECK
// proc string  kshow  -
// Departure: the procedure does not run.
template <bool draws>
int OpProcShow(CFilterEPS& m) {
    Operands in(m);
    const CStringElement* text = in.String(0);
    in.Procedure(1);
    if (!in) return -1;
    if (draws && text->GetLength() > 0) LeaveOutText(m);
    m.Drop(2);
    return 1;
}

// Glyph metrics

/// Pops count numbers; out reads in the order in which they were pushed. STACKUNDERFLOW TYPECHECK.
int PopMetrics(CFilterEPS& m, int count, float* out) {
    Operands in(m);
    for (int i = 0; i < count; ++i) out[count - 1 - i] = static_cast<float>(in.Real(i));
    if (!in) return -1;
    m.Drop(count);
    return 1;
}

// wx wy llx lly urx ury  setcachedevice  -   STACKUNDERFLOW TYPECHECK
int OpSetcachedevice(CFilterEPS& m) {
    float metrics[6];
    if (PopMetrics(m, 6, metrics) != 1) return -1;
    m.m_fCharWX = metrics[0];
    m.m_fCharWY = metrics[1];
    for (int i = 0; i < 6; ++i) m.m_fCacheArgs[i] = metrics[i];
    return 1;
}

// w0x w0y llx lly urx ury w1x w1y vx vy  setcachedevice2  -  RANGE TYPECHECK
// Departure: too few operands are a range error; the metrics of writing mode 1 play no part.
int OpSetcachedevice2(CFilterEPS& m) {
    if (m.m_OperandStack.GetCount() < 10) return m.Fail(PSERR_RANGE);
    float metrics[10];
    if (PopMetrics(m, 10, metrics) != 1) return -1;
    m.m_fCharWX = metrics[0];
    m.m_fCharWY = metrics[1];
    constexpr int order[8] = {6, 7, 2, 3, 4, 5, 8, 9};
    for (int i = 0; i < 8; ++i) m.m_fCacheArgs[i] = metrics[order[i]];
    return 1;
}

// wx wy  setcharwidth  -                     STACKUNDERFLOW TYPECHECK
int OpSetcharwidth(CFilterEPS& m) {
    float metrics[2];
    if (PopMetrics(m, 2, metrics) != 1) return -1;
    m.m_fCharWX = m.m_fCacheArgs[0] = metrics[0];
    m.m_fCharWY = m.m_fCacheArgs[1] = metrics[1];
    return 1;
}

// Place 28 of the chain, compared after kFontOperators.
constexpr OpRow kRows[] = {
    {"show", OpShow},
    {"ashow", OpSilentShow<2>},
    {"widthshow", OpSilentShow<3>},
    {"awidthshow", OpSilentShow<5>},
    {"xshow", OpSpacedShow},
    {"xyshow", OpSpacedShow},
    {"yshow", OpSpacedShow},
    {"glyphshow", OpGlyphshow},
    {"stringwidth", OpStringwidth},
    {"cshow", OpProcShow<false>},
    {"kshow", OpProcShow<true>},
    {"setcachedevice", OpSetcachedevice},
    {"setcachedevice2", OpSetcachedevice2},
    {"setcharwidth", OpSetcharwidth},
};

}  // namespace

constinit const OpTable kShowOperators{kRows};
