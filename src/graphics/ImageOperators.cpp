// Images. Departure: they draw nothing. What matters is that their data is read over to the right byte, so
// that the program goes on behind it.
#include "graphics/ImageOperators.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <vector>

#include "interp/Operands.h"

namespace {

/// What may stand where an operator names nothing that it could do with a source.
enum class UnknownSource { ignore, typecheck, unsupported };

/// The product of two numbers that are not negative; the greatest number stands for all beyond it.
std::int64_t Product(std::int64_t a, std::int64_t b) {
    std::int64_t product = 0;
    return __builtin_mul_overflow(a, b, &product) ? std::numeric_limits<std::int64_t>::max() : product;
}

/// Bytes of an image of so many rows, each of whole bytes; the factors tell the bits of a row. -1 with
/// PSERR_RANGE for a negative size.
std::int64_t TotalBytes(CFilterEPS& m, std::int32_t height, std::initializer_list<std::int32_t> factors) {
    if (std::min(height, std::min(factors)) < 0) return m.Fail(PSERR_RANGE);
    std::int64_t rowBits = 1;
    for (const std::int32_t factor : factors) rowBits = Product(rowBits, factor);
    return Product(rowBits / 8 + (rowBits % 8 != 0 ? 1 : 0), height);
}

/// Runs the procedures in turn until their strings add up to the total. An empty string ends the data, as the
/// language says of image data (PLRM, image).
int RunProcedures(CFilterEPS& m, const std::vector<ElementPtr>& sources, std::int64_t total) {
    for (std::int64_t sum = 0; sum < total;) {
        for (const ElementPtr& source : sources) {
            if (!source->IsProcedure()) return m.Fail(PSERR_TYPECHECK);
            if (m.ExecuteProcedure(static_cast<const CArrayElement*>(source.get())) != 1) return -1;
            Operands in(m);
            in.String(0);
            if (!in) return -1;
            const std::int32_t length = Take<CStringElement>(m)->GetLength();
            if (length == 0) return 1;
            sum += length;
        }
    }
    return 1;
}

/// Makes the sources give up their data. The type of `leading`, which is one of them, decides for all. A
/// total of -1 has been refused by TotalBytes.
int Consume(CFilterEPS& m, const std::vector<ElementPtr>& sources, const CElement& leading, std::int64_t total,
            UnknownSource unknown) {
    if (total < 0) return -1;
    ++m.m_Report.leftOut.nImages;
    if (leading.IsProcedure()) return RunProcedures(m, sources, total);
    switch (leading.m_nType) {
        case ET_STRING: {
            std::int64_t sum = 0;
            for (const ElementPtr& source : sources) {
                const auto* string = As<CStringElement>(source.get());
                if (!string) return m.Fail(PSERR_TYPECHECK);
                sum += string->GetLength();
            }
            return sum >= total ? 1 : m.Fail(PSERR_IO);
        }
        case ET_FILTER:
            for (const ElementPtr& source : sources) {
                const auto* filter = As<CFilterElement>(source.get());
                if (!filter) return m.Fail(PSERR_TYPECHECK);
                if (filter->GetFilterKind() != FILTER_REUSABLE && m.SkipFilterData(filter) != 1) return -1;
            }
            return 1;
        case ET_FILE:
            return m.Fail(PSERR_UNSUPPORTED);
        default:
            break;
    }
    if (unknown == UnknownSource::ignore) return 1;
    return m.Fail(unknown == UnknownSource::unsupported ? PSERR_UNSUPPORTED : PSERR_TYPECHECK);
}

/// Whether an operand can be the source of an image or its dictionary.
bool IsSourceOrDict(const CElement& e) {
    return e.IsProcedure() || e.m_nType == ET_STRING || e.m_nType == ET_FILE || e.m_nType == ET_FILTER ||
           e.m_nType == ET_DICT;
}

/// Reads entries of an image dictionary; the first that is missing or of another type sets PSERR_TYPECHECK.
class ImageDict {
public:
    ImageDict(CFilterEPS& m, const CDictionary& dict) : m_Machine(m), m_Dict(dict) {}

    std::int32_t Int(const char* key) {
        const auto* number = As<CNumberElement>(m_Dict.GetValue(key));
        if (!number) Refuse();
        return number ? number->GetInt() : 0;
    }
    bool Flag(const char* key) const {
        const auto* flag = As<CBoolElement>(m_Dict.GetValue(key));
        return flag && flag->GetValue();
    }
    ElementPtr Source() {
        const CElement* source = m_Dict.GetValue("DataSource");
        if (!source) Refuse();
        return source ? source->Clone() : nullptr;
    }
    [[nodiscard]] explicit operator bool() const noexcept { return m_bOk; }

private:
    void Refuse() {
        m_bOk = false;
        m_Machine.Fail(PSERR_TYPECHECK);
    }

    CFilterEPS& m_Machine;
    const CDictionary& m_Dict;
    bool m_bOk = true;
};

/// A list of one source.
std::vector<ElementPtr> Single(ElementPtr source) {
    std::vector<ElementPtr> sources;
    sources.push_back(std::move(source));
    return sources;
}

/// The image of a dictionary. Departure: one component a sample, whatever the colour space.
int ImageOfDict(CFilterEPS& m, const CDictionary& operand) {
    ImageDict outer(m, operand);
    const std::int32_t type = outer.Int("ImageType");
    if (!outer) return -1;
    const CDictionary* dict = &operand;
    if (type == 3) {
        dict = As<CDictionary>(operand.GetValue("DataDict"));
        if (!dict) return m.Fail(PSERR_SYNTAX);
    } else if (type != 1 && type != 4) {
        return m.Fail(PSERR_RANGE);
    }
    ImageDict image(m, *dict);
    const std::int32_t bits = image.Int("BitsPerComponent");
    const std::int32_t width = image.Int("Width");
    const std::int32_t height = image.Int("Height");
    ElementPtr source = image.Source();
    if (!image) return -1;
    if (!image.Flag("MultipleDataSources")) {
        const std::vector<ElementPtr> sources = Single(std::move(source));
        return Consume(m, sources, *sources.front(), TotalBytes(m, height, {bits, width}), UnknownSource::ignore);
    }
    const auto* list = As<CArrayElement>(source.get());
    if (!list || list->GetLength() == 0) return m.Fail(PSERR_TYPECHECK);
    const std::int32_t count = list->GetLength();
    std::vector<ElementPtr> sources;
    for (std::int32_t i = 0; i < count; ++i) sources.push_back(list->GetAt(i)->Clone());
    return Consume(m, sources, *sources.front(), TotalBytes(m, height, {count, bits, width}), UnknownSource::typecheck);
}

int MaskOfDict(CFilterEPS& m, const CDictionary& dict) {
    ImageDict image(m, dict);
    const std::int32_t width = image.Int("Width");
    const std::int32_t height = image.Int("Height");
    ElementPtr source = image.Source();
    if (!image) return -1;
    const std::vector<ElementPtr> sources = Single(std::move(source));
    return Consume(m, sources, *sources.front(), TotalBytes(m, height, {width}), UnknownSource::typecheck);
}

// width height bits matrix source | dict  image  -
//                                            STACKUNDERFLOW TYPECHECK RANGE SYNTAX IO UNSUPPORTED
int OpImage(CFilterEPS& m) {
    Operands in(m);
    const CElement* top = in.Any(0);
    in.Require(top && IsSourceOrDict(*top), PSERR_TYPECHECK);
    if (!in) return -1;
    if (top->m_nType == ET_DICT) return ImageOfDict(m, *Take<CDictionary>(m));
    in.Array(1);
    const std::int32_t bits = in.Int(2);
    const std::int32_t height = in.Int(3);
    const std::int32_t width = in.Int(4);
    if (!in) return -1;
    const std::vector<ElementPtr> sources = Single(m.Pop());
    m.Drop(4);
    return Consume(m, sources, *sources.front(), TotalBytes(m, height, {bits, width}), UnknownSource::typecheck);
}

// width height bits matrix source(1)..source(n) multi ncomp  colorimage  -
//                                            STACKUNDERFLOW TYPECHECK RANGE IO UNSUPPORTED
int OpColorimage(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t components = in.Int(0);
    const bool multiple = in.Bool(1);
    in.Require(components >= 1, PSERR_RANGE);
    in.Require(!multiple || components <= m.m_OperandStack.GetCount(), PSERR_STACKUNDERFLOW);
    if (!in) return -1;
    const std::int32_t count = multiple ? components : 1;
    const CElement* leading = in.Any(2);
    const std::int32_t bits = in.Int(count + 3);
    const std::int32_t height = in.Int(count + 4);
    const std::int32_t width = in.Int(count + 5);
    if (!in) return -1;
    m.Drop(2);
    std::vector<ElementPtr> sources(static_cast<size_t>(count));
    for (std::int32_t i = count; i-- > 0;) sources[static_cast<size_t>(i)] = m.Pop();
    m.Drop(4);
    return Consume(m, sources, *leading, TotalBytes(m, height, {bits, width, components}),
                   multiple ? UnknownSource::typecheck : UnknownSource::unsupported);
}

// width height polarity matrix source | dict  imagemask  -
//                                            STACKUNDERFLOW TYPECHECK RANGE IO UNSUPPORTED
int OpImagemask(CFilterEPS& m) {
    Operands in(m);
    const CElement* top = in.Any(0);
    in.Require(top && IsSourceOrDict(*top), PSERR_TYPECHECK);
    if (!in) return -1;
    if (top->m_nType == ET_DICT) return MaskOfDict(m, *Take<CDictionary>(m));
    const std::int32_t height = in.Int(3);
    const std::int32_t width = in.Int(4);
    if (!in) return -1;
    const std::vector<ElementPtr> sources = Single(m.Pop());
    m.Drop(4);
    return Consume(m, sources, *sources.front(), TotalBytes(m, height, {width}), UnknownSource::typecheck);
}

// Place 25 of the chain, compared after kPaintOperators.
constexpr OpRow kRows[] = {
    {"image", OpImage},
    {"colorimage", OpColorimage},
    {"imagemask", OpImagemask},
};

}  // namespace

constinit const OpTable kImageOperators{kRows};
