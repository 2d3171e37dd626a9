// Showing text. One loop stands behind all operators (PLRM, Character Operators): the next character, its glyph, how
// far it goes, its outline or procedure, and what the operator adds.
#include "complete/ShowOperators.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "complete/CharReader.h"
#include "complete/CompleteDialect.h"
#include "complete/PaintOperators.h"
#include "complete/PathBridge.h"
#include "graphics/GraphState.h"
#include "graphics/HostUnits.h"
#include "graphics/Matrix.h"
#include "graphics/PaintOperators.h"
#include "graphics/PathBuilder.h"
#include "interp/Operands.h"

namespace {

using geometry::PathOp;
using geometry::Point;
using Painting = GlyphProcedure::Painting;

/// What becomes of the glyphs of a text.
enum class TextUse { Paint, Path, Width, Ask };

/// What an operator adds to the loop.
struct ShowRequest {
    TextUse use = TextUse::Paint;
    Point each;                          ///< behind every character, user space
    std::optional<std::int32_t> chosen;  ///< the character behind which `extra` is added
    Point extra;
    bool isPlaced = false;  ///< the advances are given: x, y or both of each character
    bool hasX = false;
    bool hasY = false;
    std::vector<double> advances;
    TypedPtr<CArrayElement> procedure;  ///< of kshow, between characters, and of cshow, for each
};

CFontFaces& FacesOf(const CFilterEPS& m) { return CCompleteDialect::Of(m).Fonts(); }

/// A vector through the linear part of a matrix of six.
Point Turn(Point v, const double six[6]) { return {v.x * six[0] + v.y * six[2], v.x * six[1] + v.y * six[3]}; }

/// The matrix of a font, times that of the composite font around it.
void GlyphMatrix(const ShownChar& character, double six[6]) {
    std::copy_n(character.font->Matrix(), 6, six);
    if (!character.parentMatrix) return;
    double left[9];
    double right[9];
    MatFromArray6(six, left);
    MatFromArray6(character.parentMatrix, right);
    MatMultiply(left, right, left);
    MatToArray6(left, six);
}

/// The text that is being shown: where the next glyph goes, and what has come of those before.
class CTextRun {
public:
    CTextRun(CFilterEPS& m, const ShowRequest& request) noexcept : m_Machine(m), m_Request(request) {}

    /// Shows a string in the current font. 1, or -1.
    [[nodiscard]] int ShowText(std::string text);
    /// Shows the glyph of a name or CID in the current font, a base font. The same answers.
    [[nodiscard]] int ShowGlyph(const CElement& selector);
    /// How far the text has gone, user space.
    [[nodiscard]] Point Width() const noexcept { return m_Width; }

private:
    [[nodiscard]] bool Draws() const noexcept {
        return m_Request.use == TextUse::Paint || m_Request.use == TextUse::Path;
    }
    [[nodiscard]] int Begin();
    [[nodiscard]] int TakePen();
    void PutPen();
    [[nodiscard]] int ShowOne(const ShownChar& character, Point& width);
    [[nodiscard]] int ShowOutline(const ShownChar& character, const double six[6], Point& width);
    [[nodiscard]] int RunProcedure(const ShownChar& character, const double six[6], Point& width);
    [[nodiscard]] int PaintOutline(const geometry::Path& outline, const double toPoints[6], bool isStroked);
    [[nodiscard]] int AddAdvance(const ShownChar& character, std::size_t index, Point& width) const;
    [[nodiscard]] int CallBetween(const ShownChar& character, std::int32_t nextCode);
    [[nodiscard]] int CallFor(const ShownChar& character, Point width);
    void Count(const CShownFont& font, GlyphFound found);
    void EndReport();

    CFilterEPS& m_Machine;
    const ShowRequest& m_Request;
    CCharReader m_Reader{m_Machine};
    double m_ToPoints[6] = {};  ///< user space to points of device space
    Point m_Pen;                ///< in points of device space
    Point m_Width;              ///< user space
    CPath m_Glyph;              ///< room for one outline
    bool m_bDrawn = false;
    const CShownFont* m_pCounted = nullptr;  ///< the font that m_pUse counts
    std::size_t m_nUse = 0;                  ///< place in the report
    bool m_bLeftOut = false;
};

int CTextRun::Begin() {
    if (m_Reader.SetFont(*m_Machine.GetCurrentGState()->PeekFont()) != 1) return -1;
    return TakePen();
}

int CTextRun::TakePen() {
    const CGraphState& state = *m_Machine.GetCurrentGState();
    state.GetCTM(m_ToPoints);
    point_2d last{};
    const bool isThere = state.GetLastPoint(last) != 0;
    if (!isThere && Draws()) return m_Machine.Fail(PSERR_NOCURRENTPOINT);
    const double unit = POINTS_PER_INCH / MM_PER_INCH / UnitsPerMillimetre(m_Machine);
    m_Pen = {last.x * unit, last.y * unit};
    return 1;
}

void CTextRun::PutPen() {
    const point_2d end{ToHostUnits(m_Machine, m_Pen.x), ToHostUnits(m_Machine, m_Pen.y)};
    m_Machine.GetCurrentGState()->AddPathPoint(&end, PATH_MOVE);
}

int CTextRun::ShowText(std::string text) {
    if (text.empty()) return 1;
    if (Begin() != 1) return -1;
    const bool isBetween = m_Request.procedure && m_Request.use == TextUse::Paint;
    if (isBetween && m_Reader.IsComposite()) return m_Machine.Fail(PSERR_UNDEFINED, "invalidfont");
    m_Glyph.SetLimit(CCompleteDialect::Of(m_Machine).PathLimit());
    const std::string codes = isBetween ? text : std::string();
    m_Reader.SetText(std::move(text));
    for (std::size_t index = 0; !m_Reader.AtEnd(); ++index) {
        if (m_Machine.IsInterrupted()) return -1;
        ShownChar character;
        if (m_Reader.Next(character) != 1) return -1;
        if (!character.font) break;
        Point width;
        if (ShowOne(character, width) != 1) return -1;
        if (m_Request.use == TextUse::Ask) {
            if (CallFor(character, width) != 1) return -1;
            continue;
        }
        if (AddAdvance(character, index, width) != 1) return -1;
        m_Width = m_Width + width;
        m_Pen = m_Pen + Turn(width, m_ToPoints);
        if (isBetween && !m_Reader.AtEnd()) {
            if (CallBetween(character, static_cast<unsigned char>(codes[index + 1])) != 1) return -1;
        }
    }
    if (Draws()) PutPen();
    EndReport();
    return 1;
}

int CTextRun::ShowGlyph(const CElement& selector) {
    if (Begin() != 1) return -1;
    const CShownFont* font = m_Reader.BaseFont();
    if (!font) return m_Machine.Fail(PSERR_UNDEFINED, "invalidfont");
    m_Glyph.SetLimit(CCompleteDialect::Of(m_Machine).PathLimit());
    ShownChar character;
    character.font = font;
    const auto* number = As<CNumberElement>(&selector);
    const bool isCid = font->Origin() == GlyphOrigin::CidProgram || font->Origin() == GlyphOrigin::CidProcedure;
    if (isCid != (number != nullptr)) return m_Machine.Fail(PSERR_TYPECHECK);
    character.selector = number ? GlyphSelector{nullptr, number->GetInt()}
                                : GlyphSelector{static_cast<const CSimpElement&>(selector).m_pName, -1};
    Point width;
    if (ShowOne(character, width) != 1) return -1;
    m_Pen = m_Pen + Turn(width, m_ToPoints);
    PutPen();
    EndReport();
    return 1;
}

/// Draws a character, if it is to be drawn, and tells its width in user space.
int CTextRun::ShowOne(const ShownChar& character, Point& width) {
    double six[6];
    GlyphMatrix(character, six);
    return character.font->HasProcedure() ? RunProcedure(character, six, width) : ShowOutline(character, six, width);
}

int CTextRun::ShowOutline(const ShownChar& character, const double six[6], Point& width) {
    const CShownFont& font = *character.font;
    FontGlyph glyph;
    GlyphFound found = font.Find(m_Machine, character.selector, glyph);
    GlyphAdvance advance;
    if (font.Measure(m_Machine, character.selector, glyph, m_Reader.WMode(), advance) != 1) return -1;
    width = Turn(advance.width, six);
    if (!Draws()) return 1;
    // A procedure that has run may have shown so much that the outline is no longer kept.
    if (font.HasDevProc()) found = font.Find(m_Machine, character.selector, glyph);
    if (glyph.outline && !glyph.outline->IsEmpty()) {
        const Point at = m_Pen + Turn(Turn(advance.shift - advance.origin, six) + Point{six[4], six[5]}, m_ToPoints);
        const Point across = Turn({six[0], six[1]}, m_ToPoints);
        const Point up = Turn({six[2], six[3]}, m_ToPoints);
        const double toPoints[6] = {across.x, across.y, up.x, up.y, at.x, at.y};
        if (PaintOutline(*glyph.outline, toPoints, font.IsStroked()) != 1) return -1;
    }
    Count(font, found);
    return 1;
}

int CTextRun::PaintOutline(const geometry::Path& outline, const double toPoints[6], bool isStroked) {
    CGraphState& state = *m_Machine.GetCurrentGState();
    const bool isPath = m_Request.use == TextUse::Path;
    if (!isPath) std::swap(state.m_Path, m_Glyph);  // the current path stays as it is
    const Point* points = outline.Points().data();
    for (const PathOp op : outline.Ops()) {
        constexpr PathLetter letters[] = {PATH_MOVE, PATH_LINE, PATH_CURVE, PATH_CLOSE};
        const std::size_t count = geometry::CountPoints(op);
        point_2d mapped[3];
        for (std::size_t i = 0; i < count; ++i, ++points) {
            const Point p = Turn(*points, toPoints);
            mapped[i] = {ToHostUnits(m_Machine, p.x + toPoints[4]), ToHostUnits(m_Machine, p.y + toPoints[5])};
        }
        if (op == PathOp::Close && state.GetSubpathStart(mapped[0]) == 0) continue;
        state.AddPathPoint(mapped, letters[static_cast<std::size_t>(op)]);
    }
    if (isPath) return 1;
    const int result = isStroked ? PaintLines(m_Machine) : PaintArea(m_Machine);
    std::swap(m_Machine.GetCurrentGState()->m_Path, m_Glyph);
    return result;
}

/// What runs while a glyph's procedure does.
class CGlyphScope {
public:
    CGlyphScope(CFilterEPS& m, GlyphProcedure& glyph, const CDictionary* root) noexcept
        : m_Dialect(CCompleteDialect::Of(m)), m_pRoot(m_Dialect.RootFont()) {
        glyph.outer = m_Dialect.Glyph();
        m_pOuter = glyph.outer;
        m_Dialect.SetGlyph(&glyph);
        if (root) m_Dialect.SetRootFont(root);
    }
    CGlyphScope(const CGlyphScope&) = delete;
    CGlyphScope& operator=(const CGlyphScope&) = delete;
    ~CGlyphScope() {
        m_Dialect.SetGlyph(m_pOuter);
        m_Dialect.SetRootFont(m_pRoot);
    }

private:
    CCompleteDialect& m_Dialect;
    const CDictionary* m_pRoot;
    GlyphProcedure* m_pOuter = nullptr;
};

/// The procedure of a glyph and what it takes beside the font; invalidfont when it can't be called.
struct ProcedureCall {
    ElementPtr procedure;
    ElementPtr operand;
};

bool FindCall(CFilterEPS& m, const ShownChar& character, ProcedureCall& call) {
    const FontNames& names = FacesOf(m).Names();
    const CDictionary& font = character.font->Dict();
    const GlyphSelector& selector = character.selector;
    const CElement* byName = font.GetValue(names.buildGlyph);
    if (byName && byName->IsProcedure()) {
        call.procedure = byName->Clone();
        if (character.font->Origin() == GlyphOrigin::CidProcedure) {
            call.operand = NewInt(selector.code);
        } else {
            call.operand = MakeElement<CSimpElement>(selector.name ? selector.name : names.notdef);
        }
        return true;
    }
    const CElement* byCode = font.GetValue(names.buildChar);
    if (byCode && byCode->IsProcedure()) {
        call.procedure = byCode->Clone();
        std::int32_t code = selector.code;
        if (code < 0) code = character.font->CodeOf(selector.name);
        if (code < 0) code = character.font->CodeOf(names.notdef);
        call.operand = NewInt(std::max(code, 0));
        return true;
    }
    m.Fail(PSERR_UNDEFINED, "invalidfont");
    return false;
}

int CTextRun::RunProcedure(const ShownChar& character, const double six[6], Point& width) {
    ProcedureCall call;
    if (!FindCall(m_Machine, character, call)) return -1;
    GlyphProcedure glyph;
    geometry::Path outline;
    glyph.painting = m_Request.use == TextUse::Paint  ? Painting::Draw
                     : m_Request.use == TextUse::Path ? Painting::Collect
                                                      : Painting::Drop;
    glyph.outline = &outline;
    glyph.wMode = m_Reader.WMode();
    const tagLeftOut leftOut = m_Machine.m_Report.leftOut;
    {
        const CGStateScope scope(m_Machine);
        CGraphState& state = *m_Machine.GetCurrentGState();
        double ctm[6];
        std::copy_n(m_ToPoints, 4, ctm);
        ctm[4] = m_Pen.x;
        ctm[5] = m_Pen.y;
        state.SetCTM(ctm);
        state.Concat(six);
        state.ClearPath();
        double start[2] = {};
        AddUserPoints(m_Machine, 1, start, PATH_MOVE);
        const bool isDescendant = character.parentMatrix != nullptr;
        if (isDescendant) {
            state.SetLiveFont(
                TypedPtr<CDictionary>(static_cast<CDictionary*>(character.font->Dict().Clone().release())));
        }
        const CGlyphScope running(m_Machine, glyph, isDescendant ? &m_Reader.Root() : nullptr);
        m_Machine.Push(character.font->Dict().Clone());
        m_Machine.Push(std::move(call.operand));
        if (m_Machine.ExecuteProcedure(static_cast<const CArrayElement*>(call.procedure.get())) != 1) return -1;
    }
    if (glyph.painting != Painting::Draw) m_Machine.m_Report.leftOut = leftOut;
    if (glyph.painting == Painting::Collect) {
        CGraphState& state = *m_Machine.GetCurrentGState();
        AppendPath(state, outline);
    }
    width = Turn(glyph.width[glyph.wMode], six);
    if (Draws()) Count(*character.font, GlyphFound::Yes);
    return 1;
}

int CTextRun::AddAdvance(const ShownChar& character, std::size_t index, Point& width) const {
    if (m_Request.isPlaced) {
        const std::size_t perChar = m_Request.hasX && m_Request.hasY ? 2 : 1;
        const std::size_t at = index * perChar;
        if (at + perChar > m_Request.advances.size()) return m_Machine.Fail(PSERR_RANGE);
        width.x = m_Request.hasX ? m_Request.advances[at] : 0;
        width.y = m_Request.hasY ? m_Request.advances[at + perChar - 1] : 0;
        return 1;
    }
    width = width + m_Request.each;
    if (m_Request.chosen && *m_Request.chosen == character.code) width = width + m_Request.extra;
    return 1;
}

int CTextRun::CallBetween(const ShownChar& character, std::int32_t nextCode) {
    PutPen();
    m_Machine.PushInt(character.code);
    m_Machine.PushInt(nextCode);
    if (m_Machine.ExecuteProcedure(m_Request.procedure.get()) != 1) return -1;
    const CDictionary* font = m_Machine.GetCurrentGState()->PeekFont();
    if (m_Reader.SetFont(*font) != 1) return -1;
    return TakePen();
}

int CTextRun::CallFor(const ShownChar& character, Point width) {
    CGraphState* state = m_Machine.GetCurrentGState();
    auto& dialect = CCompleteDialect::Of(m_Machine);
    const CDictionary* const outerRoot = dialect.RootFont();
    const bool isDescendant = character.parentMatrix != nullptr;
    const ElementPtr root = m_Reader.Root().Clone();
    ElementPtr shown;
    if (isDescendant) {
        // The descendant as it is scaled by the font around it (PLRM, cshow).
        double six[6];
        GlyphMatrix(character, six);
        const CDictionary& font = character.font->Dict();
        auto copy = MakeElement<CDictionary>(font.GetMaxLength());
        static_cast<void>(font.CopyTo(copy.get()));
        std::vector<ElementPtr> matrix;
        for (const double value : six) matrix.push_back(NewReal(value));
        copy->Put("FontMatrix", MakeElement<CArrayElement>(std::move(matrix)));
        shown = copy->Clone();
        state->SetLiveFont(std::move(copy));
        dialect.SetRootFont(static_cast<const CDictionary*>(root.get()));
    }
    m_Machine.PushInt(isDescendant ? std::max(character.selector.code, 0) : character.code);
    m_Machine.PushReal(width.x);
    m_Machine.PushReal(width.y);
    const int result = m_Machine.ExecuteProcedure(m_Request.procedure.get());
    dialect.SetRootFont(outerRoot);
    state = m_Machine.GetCurrentGState();
    if (shown && state->PeekFont()->IsEqual(shown.get())) {
        state->SetLiveFont(TypedPtr<CDictionary>(static_cast<CDictionary*>(root->Clone().release())));
    }
    return result;
}

// The report

void CTextRun::Count(const CShownFont& font, GlyphFound found) {
    if (CCompleteDialect::Of(m_Machine).Probe()) return;
    std::vector<tagFontUse>& fonts = m_Machine.m_Report.fonts;
    if (m_pCounted != &font) {
        m_pCounted = &font;
        const NamedFont* named = font.Named();
        tagFontUse use;
        use.strName = font.ReportName(m_Machine);
        use.bEmbedded = !named || named->isEmbedded;
        use.strUsed = named ? named->used : use.strName;
        use.bSameWidths = !named || named->hasSameWidths;
        const auto same = std::find_if(fonts.begin(), fonts.end(), [&](const tagFontUse& known) {
            return known.strName == use.strName && known.bEmbedded == use.bEmbedded;
        });
        m_nUse = static_cast<std::size_t>(same - fonts.begin());
        if (same == fonts.end()) fonts.push_back(std::move(use));
    }
    const bool hasFace = !font.Named() || font.Named()->face;
    if (found == GlyphFound::Yes) ++fonts[m_nUse].nGlyphs;
    if (found == GlyphFound::No || !hasFace) ++fonts[m_nUse].nMissing;
    if (hasFace) {
        m_bDrawn = true;
    } else if (!m_bLeftOut) {
        m_bLeftOut = true;
        const std::string& name = fonts[m_nUse].strName;
        if (m_Machine.m_FontsLeftOut.insert(InternName(name)).second) {
            m_Machine.m_Report.leftOut.strFonts.push_back(name);
        }
    }
}

void CTextRun::EndReport() {
    if (m_bDrawn) ++m_Machine.m_Report.nTextsDrawn;
    if (m_bLeftOut) ++m_Machine.m_Report.leftOut.nTexts;
}

// The operators

/// The operands of a call, off the stack while procedures run, and back when the operator has met an error itself.
class CHeldOperands {
public:
    CHeldOperands(CFilterEPS& m, int count) : m_Machine(m) {
        for (int i = 0; i < count; ++i) m_Operands.push_back(m.Pop());
    }
    CHeldOperands(const CHeldOperands&) = delete;
    CHeldOperands& operator=(const CHeldOperands&) = delete;

    /// By depth, as Operands reads them.
    template <class T>
    [[nodiscard]] const T& At(std::size_t depth) const {
        return static_cast<const T&>(*m_Operands[depth]);
    }
    int Finish(int result) {
        if (result == 1 || m_Machine.m_nError == PSERR_NONE) return result;
        for (; !m_Operands.empty(); m_Operands.pop_back()) m_Machine.Push(std::move(m_Operands.back()));
        return -1;
    }

private:
    CFilterEPS& m_Machine;
    std::vector<ElementPtr> m_Operands;
};

/// Shows the string at that depth of the operands, which are so many.
int RunShow(CFilterEPS& m, const ShowRequest& request, int count, std::size_t textDepth) {
    CHeldOperands held(m, count);
    CTextRun run(m, request);
    return held.Finish(run.ShowText(held.At<CStringElement>(textDepth).GetText()));
}

// string  show  -                            stackunderflow typecheck nocurrentpoint invalidfont rangecheck
int OpShow(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    if (!in) return -1;
    return RunShow(m, {}, 1, 0);
}

// ax ay string  ashow  -                     as show
int OpAshow(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    ShowRequest request;
    request.each = {in.Real(2), in.Real(1)};
    if (!in) return -1;
    return RunShow(m, request, 3, 0);
}

// cx cy char string  widthshow  -            as show
int OpWidthshow(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    ShowRequest request;
    request.chosen = in.Int(1);
    request.extra = {in.Real(3), in.Real(2)};
    if (!in) return -1;
    return RunShow(m, request, 4, 0);
}

// cx cy char ax ay string  awidthshow  -     as show
int OpAwidthshow(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    ShowRequest request;
    request.each = {in.Real(2), in.Real(1)};
    request.chosen = in.Int(3);
    request.extra = {in.Real(5), in.Real(4)};
    if (!in) return -1;
    return RunShow(m, request, 6, 0);
}

// string numarray | numstring  xshow  -      as show
// string numarray | numstring  yshow  -
// string numarray | numstring  xyshow  -
template <bool HasX, bool HasY>
int OpPlacedShow(CFilterEPS& m) {
    Operands in(m);
    const CElement* numbers = in.OneOf(0, {ET_ARRAY, ET_PACKEDARRAY, ET_STRING});
    in.String(1);
    ShowRequest request;
    request.isPlaced = true;
    request.hasX = HasX;
    request.hasY = HasY;
    if (in) {
        const ErrorCode error = ReadNumbers(*numbers, request.advances);
        in.Require(error == PSERR_NONE, error);
    }
    if (!in) return -1;
    return RunShow(m, request, 2, 1);
}

// name | cid  glyphshow  -                   stackunderflow typecheck nocurrentpoint invalidfont
int OpGlyphshow(CFilterEPS& m) {
    Operands in(m);
    in.OneOf(0, {ET_NAME, ET_NUMBER});
    if (!in) return -1;
    CHeldOperands held(m, 1);
    const ShowRequest request;
    CTextRun run(m, request);
    return held.Finish(run.ShowGlyph(held.At<CElement>(0)));
}

// proc string  kshow  -                      as show
// proc string  cshow  -
template <TextUse Use>
int OpProcShow(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    const CArrayElement* procedure = in.Procedure(1);
    if (!in) return -1;
    ShowRequest request;
    request.use = Use;
    request.procedure.reset(static_cast<CArrayElement*>(procedure->Clone().release()));
    return RunShow(m, request, 2, 0);
}

// string  stringwidth  wx wy                 stackunderflow typecheck invalidfont rangecheck
int OpStringwidth(CFilterEPS& m) {
    Operands in(m);
    in.String(0);
    if (!in) return -1;
    ShowRequest request;
    request.use = TextUse::Width;
    CHeldOperands held(m, 1);
    CTextRun run(m, request);
    if (held.Finish(run.ShowText(held.At<CStringElement>(0).GetText())) != 1) return -1;
    m.PushReal(run.Width().x);
    m.PushReal(run.Width().y);
    return 1;
}

// string bool  charpath  -                   as show
// The outline of a glyph serves for both values of bool.
int OpCharpath(CFilterEPS& m) {
    Operands in(m);
    in.Bool(0);
    in.String(1);
    if (!in) return -1;
    ShowRequest request;
    request.use = TextUse::Path;
    return RunShow(m, request, 2, 1);
}

/// Reads so many numbers and drops them; out is in the order in which they were pushed.
int TakeNumbers(CFilterEPS& m, int count, double* out) {
    Operands in(m);
    for (int i = 0; i < count; ++i) out[count - 1 - i] = in.Real(i);
    if (!in) return -1;
    m.Drop(count);
    return 1;
}

// wx wy  setcharwidth  -                     stackunderflow typecheck
// wx wy llx lly urx ury  setcachedevice  -
template <int Count>
int OpSetWidth(CFilterEPS& m) {
    double numbers[Count];
    if (TakeNumbers(m, Count, numbers) != 1) return -1;
    if (GlyphProcedure* glyph = CCompleteDialect::Of(m).Glyph()) {
        glyph->width[0] = glyph->width[1] = {numbers[0], numbers[1]};
    }
    return 1;
}

// w0x w0y llx lly urx ury w1x w1y vx vy  setcachedevice2  -    stackunderflow typecheck
int OpSetcachedevice2(CFilterEPS& m) {
    constexpr int count = 10;
    double numbers[count];
    if (TakeNumbers(m, count, numbers) != 1) return -1;
    if (GlyphProcedure* glyph = CCompleteDialect::Of(m).Glyph()) {
        glyph->width[0] = {numbers[0], numbers[1]};
        glyph->width[1] = {numbers[6], numbers[7]};
        if (glyph->wMode == 1) m.GetCurrentGState()->Translate(-numbers[8], -numbers[9]);
    }
    return 1;
}

constexpr OpRow kRows[] = {
    {"show", OpShow},
    {"ashow", OpAshow},
    {"widthshow", OpWidthshow},
    {"awidthshow", OpAwidthshow},
    {"xshow", OpPlacedShow<true, false>},
    {"yshow", OpPlacedShow<false, true>},
    {"xyshow", OpPlacedShow<true, true>},
    {"glyphshow", OpGlyphshow},
    {"kshow", OpProcShow<TextUse::Paint>},
    {"cshow", OpProcShow<TextUse::Ask>},
    {"stringwidth", OpStringwidth},
    {"charpath", OpCharpath},
    {"setcharwidth", OpSetWidth<2>},
    {"setcachedevice", OpSetWidth<6>},
    {"setcachedevice2", OpSetcachedevice2},
};

}  // namespace

constinit const OpTable kCompleteShowOperators{kRows};

bool DivertPaint(CFilterEPS& m) {
    const GlyphProcedure* glyph = CCompleteDialect::Of(m).Glyph();
    while (glyph && glyph->painting == Painting::Draw) glyph = glyph->outer;
    if (!glyph) return false;
    if (glyph->painting == Painting::Collect) glyph->outline->Append(ToGeometry(m.GetCurrentGState()->m_Path));
    m.NewPath();
    return true;
}
