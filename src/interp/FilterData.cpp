// Reading over the encoded data behind a filter. Nothing is decoded: the input is moved to behind the end mark of the
// encoding, so that the scan can go on behind an image.
#include "interp/FilterEPS.h"

namespace {

/// Reads up to and including the first byte of a value: 1, or the result of the failing read.
int SkipPast(const CFileElement& file, unsigned mark) {
    for (;;) {
        unsigned c = 0;
        if (const int result = file.ReadByte(&c); result != 1) return result;
        if (c == mark) return 1;
    }
}

/// Reads up to and including the end mark ~> of ASCII base-85. A ~ takes the byte behind it along.
int SkipPast85End(const CFileElement& file) {
    for (;;) {
        if (const int result = SkipPast(file, '~'); result != 1) return result;
        unsigned c = 0;
        if (const int result = file.ReadByte(&c); result != 1) return result;
        if (c == '>') return 1;
    }
}

int SkipEncoded(const CFileElement& file, FilterKind kind) {
    switch (kind) {
        case FILTER_ASCIIHEX:
            return SkipPast(file, '>');
        case FILTER_ASCII85:
            return SkipPast85End(file);
        default:
            return SkipPast(file, 128);  // the end mark of run-length encoding (PLRM, RunLengthDecode)
    }
}

}  // namespace

int CFilterEPS::SkipFilterData(const CFilterElement* filter) {
    // Binary filters over others leave it to the one closest to the file.
    FilterKind kind = filter->GetFilterKind();
    const CElement* source = filter->GetSource();
    while (kind >= FILTER_RUNLENGTH && source && source->m_nType == ET_FILTER) {
        const auto* inner = static_cast<const CFilterElement*>(source);
        kind = inner->GetFilterKind();
        source = inner->GetSource();
    }
    if (!source || kind == FILTER_NONE) return Fail(PSERR_UNSUPPORTED);

    if (source->m_nType == ET_FILE && kind <= FILTER_RUNLENGTH) {
        return SkipEncoded(static_cast<const CFileElement&>(*source), kind) == 1 ? 1 : Fail(PSERR_IO);
    }
    if (source->IsProcedure() && kind <= FILTER_ASCII85) {
        if (ExecuteProcedure(static_cast<const CArrayElement*>(source)) != 1) return -1;
        if (kind == FILTER_ASCII85) Drop(1);  // the data string that it left
        return 1;
    }
    return Fail(PSERR_UNSUPPORTED);
}
