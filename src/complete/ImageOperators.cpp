// image, imagemask and colorimage (PLRM, Images) take exactly the data that they ask for, so that the program goes on
// behind it: rows of whole bytes, as many samples in each as the components of the image's space are.
#include "complete/ImageOperators.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "complete/ColorSpaces.h"
#include "complete/CompleteDialect.h"
#include "complete/FilterObjects.h"
#include "interp/Operands.h"

namespace {

/// Bytes of rows that each hold so many samples, of bits each; the greatest number stands for all beyond it.
std::int64_t RowBytes(std::int64_t rows, std::int64_t samples, std::int64_t bits) {
    std::int64_t rowBits = 0;
    std::int64_t total = 0;
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    if (__builtin_mul_overflow(samples, bits, &rowBits)) return most;
    return __builtin_mul_overflow(rowBits / 8 + (rowBits % 8 != 0 ? 1 : 0), rows, &total) ? most : total;
}

/// A source and the bytes that are to come from it.
struct ImageSource {
    ElementPtr object;
    std::int64_t nBytes;
};

/// Reads from a file: 1 when all came, 0 at its end, -1.
int ReadFile(CFilterEPS& m, const CFileElement& file, std::int64_t bytes) {
    std::vector<char> block(4096);
    while (bytes > 0) {
        const auto wanted = static_cast<unsigned>(std::min<std::int64_t>(bytes, std::ssize(block)));
        unsigned count = 0;
        const int result = file.ReadBlock(block.data(), wanted, &count);
        if (result < 0) return FailRead(m);
        if (result == 0) return 0;
        bytes -= count;
    }
    PassFilterEnd(file);
    return 1;
}

/// Runs a procedure for its next string: 1, 0 for an empty one, -1.
int ReadProcedureString(CFilterEPS& m, const CArrayElement& procedure, std::int64_t& bytes) {
    if (m.ExecuteProcedure(&procedure) != 1) return -1;
    Operands in(m);
    in.String(0);
    if (!in) return -1;
    const std::int32_t length = Take<CStringElement>(m)->GetLength();
    bytes -= length;
    return length > 0 ? 1 : 0;
}

/// Takes the data of an image. Procedures have their turns one after the other, as components of rows may come from
/// them. An end of the data ends the image (PLRM, image), and a string serves as often as it must.
int ReadImage(CFilterEPS& m, std::vector<ImageSource> sources) {
    ++m.m_Report.leftOut.nImages;
    for (const ImageSource& source : sources) {
        const CElement& e = *source.object;
        if (e.m_nType != ET_FILE && e.m_nType != ET_STRING && !e.IsProcedure()) return m.Fail(PSERR_TYPECHECK);
    }
    for (bool goesOn = true; goesOn;) {
        goesOn = false;
        for (ImageSource& source : sources) {
            if (source.nBytes <= 0 || source.object->m_nType == ET_STRING) continue;
            int result = 1;
            if (const auto* file = As<CFileElement>(source.object.get())) {
                result = ReadFile(m, *file, std::exchange(source.nBytes, 0));
            } else {
                const auto& procedure = static_cast<const CArrayElement&>(*source.object);
                result = ReadProcedureString(m, procedure, source.nBytes);
                goesOn = goesOn || source.nBytes > 0;
            }
            if (result <= 0) return result == 0 ? 1 : -1;
        }
    }
    return 1;
}

/// The components that a sample of `image` has in the current space.
int CurrentComponents(const CFilterEPS& m) {
    const CGraphState& state = *m.GetCurrentGState();
    const CArrayElement* space = state.PeekColorSpace();
    const int count = space ? ComponentsOf(space) : 0;
    if (count > 0) return count;
    return state.m_nColorKind == COLOR_RGB ? 3 : state.m_nColorKind == COLOR_CMYK ? 4 : 1;
}

/// The entries of an image dictionary that tell how much data there is.
struct ImageLayout {
    std::int64_t nWidth = 0;
    std::int64_t nHeight = 0;
    std::int32_t nBits = 1;
    std::vector<ElementPtr> m_Sources;  ///< one, or one for each component
};

bool IsSampleSize(std::int32_t bits) { return bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 12; }

/// An integer entry: 1, or -1 with typecheck, or with undefined when it is missing.
int ReadEntry(CFilterEPS& m, const CDictionary& dict, const char* key, std::int64_t& value) {
    const CElement* entry = dict.GetValue(key);
    const auto* number = As<CNumberElement>(entry);
    if (!number) return m.Fail(entry ? PSERR_TYPECHECK : PSERR_UNDEFINED);
    value = number->GetInt();
    return value >= 0 ? 1 : m.Fail(PSERR_RANGE);
}

enum class DataSource { needed, optional };

/// Reads an image dictionary of type 1 or 4, or one of those that type 3 is made of.
int ReadLayout(CFilterEPS& m, const CDictionary& dict, DataSource need, ImageLayout& layout) {
    if (ReadEntry(m, dict, "Width", layout.nWidth) != 1 || ReadEntry(m, dict, "Height", layout.nHeight) != 1) return -1;
    std::int64_t bits = 1;
    if (dict.GetValue("BitsPerComponent") && ReadEntry(m, dict, "BitsPerComponent", bits) != 1) return -1;
    if (!IsSampleSize(static_cast<std::int32_t>(bits))) return m.Fail(PSERR_RANGE);
    layout.nBits = static_cast<std::int32_t>(bits);
    const CElement* source = dict.GetValue("DataSource");
    if (!source) return need == DataSource::optional ? 1 : m.Fail(PSERR_UNDEFINED);
    const auto* multiple = As<CBoolElement>(dict.GetValue("MultipleDataSources"));
    if (!multiple || !multiple->GetValue()) {
        layout.m_Sources.push_back(source->Clone());
        return 1;
    }
    const auto* list = As<CArrayElement>(source);
    if (!list || list->GetLength() == 0) return m.Fail(PSERR_TYPECHECK);
    for (std::int32_t i = 0; i < list->GetLength(); ++i) layout.m_Sources.push_back(list->GetAt(i)->Clone());
    return 1;
}

/// The sources of an image of that many components with what each of them has to give.
std::vector<ImageSource> SourcesOf(ImageLayout& layout, std::int64_t components) {
    const bool multiple = layout.m_Sources.size() > 1;
    const std::int64_t bytes = RowBytes(layout.nHeight, layout.nWidth * (multiple ? 1 : components), layout.nBits);
    std::vector<ImageSource> sources;
    for (ElementPtr& source : layout.m_Sources) sources.push_back({std::move(source), bytes});
    return sources;
}

/// An image with a mask of its own: samples of both in turn, rows of both in turn, or two sources.
int ReadMaskedImage(CFilterEPS& m, const CDictionary& dict) {
    std::int64_t interleave = 0;
    if (ReadEntry(m, dict, "InterleaveType", interleave) != 1) return -1;
    const auto* data = As<CDictionary>(dict.GetValue("DataDict"));
    const auto* mask = As<CDictionary>(dict.GetValue("MaskDict"));
    if (!data || !mask) return m.Fail(PSERR_TYPECHECK);
    ImageLayout image;
    ImageLayout stencil;
    if (ReadLayout(m, *data, DataSource::needed, image) != 1) return -1;
    if (ReadLayout(m, *mask, interleave == 3 ? DataSource::needed : DataSource::optional, stencil) != 1) return -1;
    const int components = CurrentComponents(m);
    std::vector<ImageSource> sources;
    switch (interleave) {
        case 1:
            sources = SourcesOf(image, components + 1);
            break;
        case 2:
            sources = SourcesOf(image, components);
            sources.front().nBytes += RowBytes(stencil.nHeight, stencil.nWidth, 1);
            break;
        case 3:
            sources = SourcesOf(stencil, 1);
            for (ImageSource& source : SourcesOf(image, components)) sources.push_back(std::move(source));
            break;
        default:
            return m.Fail(PSERR_RANGE);
    }
    return ReadImage(m, std::move(sources));
}

/// The image of a dictionary, whose type has its own layout of data.
int ReadImageDict(CFilterEPS& m, const CDictionary& dict, int components) {
    std::int64_t type = 0;
    if (ReadEntry(m, dict, "ImageType", type) != 1) return -1;
    if (type == 3) return ReadMaskedImage(m, dict);
    if (type != 1 && type != 4) return m.Fail(PSERR_RANGE);
    ImageLayout layout;
    if (ReadLayout(m, dict, DataSource::needed, layout) != 1) return -1;
    return ReadImage(m, SourcesOf(layout, components));
}

/// Runs work without the operands of a call, which come back when it fails.
template <class Work>
int WithoutOperands(CFilterEPS& m, int count, Work work) {
    std::vector<ElementPtr> operands;  // the top first
    while (count-- > 0) operands.push_back(m.Pop());
    if (work(operands) == 1) return 1;
    if (m.m_nError == PSERR_NONE) return -1;
    for (; !operands.empty(); operands.pop_back()) m.Push(std::move(operands.back()));
    return -1;
}

/// The size and the sources among the operands of the forms without a dictionary.
struct ImageOperands {
    std::int32_t nWidth;
    std::int32_t nHeight;
    std::int32_t nBits;
    std::int32_t nSources;
    std::int32_t nAbove;  ///< operands above the sources
    std::int32_t nComponents;
};

/// width height bits matrix source...
int ReadOperandImage(CFilterEPS& m, const ImageOperands& image) {
    const std::int32_t all = image.nSources + image.nAbove + 4;
    return WithoutOperands(m, all, [&](const std::vector<ElementPtr>& operands) {
        ImageLayout layout{image.nWidth, image.nHeight, image.nBits, {}};
        for (std::int32_t i = image.nSources; i-- > 0;) {
            layout.m_Sources.push_back(operands[static_cast<std::size_t>(image.nAbove + i)]->Clone());
        }
        return ReadImage(m, SourcesOf(layout, image.nComponents));
    });
}

int ReadDictImage(CFilterEPS& m, int components) {
    return WithoutOperands(m, 1, [&](const std::vector<ElementPtr>& operands) {
        const ElementPtr dict = operands.front()->Clone();
        return ReadImageDict(m, static_cast<const CDictionary&>(*dict), components);
    });
}

/// The test of width, height and matrix at their depths.
void RequireSize(Operands& in, int matrixDepth, std::int32_t width, std::int32_t height) {
    const auto* matrix = in.AnyArray(matrixDepth);
    in.Require(!matrix || matrix->GetLength() >= 6, PSERR_RANGE);
    in.Require(width >= 0 && height >= 0, PSERR_RANGE);
}

bool IsImageSource(const CElement& e) { return e.m_nType == ET_FILE || e.m_nType == ET_STRING || e.IsProcedure(); }

// width height bits matrix source  image  -  stackunderflow typecheck rangecheck undefined ioerror
// dict  image  -
int OpImage(CFilterEPS& m) {
    Operands in(m);
    const CElement* top = in.Any(0);
    if (!in) return -1;
    if (top->m_nType == ET_DICT) return ReadDictImage(m, CurrentComponents(m));
    in.Require(IsImageSource(*top), PSERR_TYPECHECK);
    const std::int32_t bits = in.Int(2);
    const std::int32_t height = in.Int(3);
    const std::int32_t width = in.Int(4);
    RequireSize(in, 1, width, height);
    in.Require(IsSampleSize(bits), PSERR_RANGE);
    return in ? ReadOperandImage(m, {width, height, bits, 1, 0, 1}) : -1;
}

// width height polarity matrix source  imagemask  -
//                                            stackunderflow typecheck rangecheck undefined ioerror
// dict  imagemask  -
int OpImagemask(CFilterEPS& m) {
    Operands in(m);
    const CElement* top = in.Any(0);
    if (!in) return -1;
    if (top->m_nType == ET_DICT) return ReadDictImage(m, 1);
    in.Require(IsImageSource(*top), PSERR_TYPECHECK);
    in.Bool(2);
    const std::int32_t height = in.Int(3);
    const std::int32_t width = in.Int(4);
    RequireSize(in, 1, width, height);
    return in ? ReadOperandImage(m, {width, height, 1, 1, 0, 1}) : -1;
}

// width height bits matrix source(1)..source(n) multi ncomp  colorimage  -
//                                            stackunderflow typecheck rangecheck ioerror
int OpColorimage(CFilterEPS& m) {
    Operands in(m);
    const std::int32_t components = in.Int(0);
    const bool multiple = in.Bool(1);
    in.Require(components == 1 || components == 3 || components == 4, PSERR_RANGE);
    if (!in) return -1;
    const std::int32_t count = multiple ? components : 1;
    for (int i = 0; i < count; ++i) {
        const CElement* source = in.Any(2 + i);
        in.Require(!source || IsImageSource(*source), PSERR_TYPECHECK);
    }
    const std::int32_t bits = in.Int(count + 3);
    const std::int32_t height = in.Int(count + 4);
    const std::int32_t width = in.Int(count + 5);
    RequireSize(in, count + 2, width, height);
    in.Require(IsSampleSize(bits), PSERR_RANGE);
    return in ? ReadOperandImage(m, {width, height, bits, count, 2, components}) : -1;
}

constexpr OpRow kRows[] = {
    {"image", OpImage},
    {"imagemask", OpImagemask},
    {"colorimage", OpColorimage},
};

}  // namespace

constinit const OpTable kCompleteImageOperators{kRows};
