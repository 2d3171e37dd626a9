// FlateDecode. zlib is given the input's block as it stands and tells what it has used, which ends at the last byte of
// the data; it writes straight to the reader.
#include "complete/filters/FlateDecoder.h"

CFlateDecoder::~CFlateDecoder() {
    if (m_bOpen) ::inflateEnd(&m_Stream);
}

std::size_t CFlateDecoder::Decode(std::span<unsigned char> out) {
    if (!m_bOpen) {
        m_bOpen = ::inflateInit(&m_Stream) == Z_OK;
        if (!m_bOpen) {
            Fail();
            return 0;
        }
        ::inflateValidate(&m_Stream, 0);
    }
    m_Stream.next_out = out.data();
    m_Stream.avail_out = static_cast<uInt>(out.size());
    while (IsLive()) {
        const std::span<const unsigned char> in = Peek();
        m_Stream.next_in = const_cast<Bytef*>(in.data());
        m_Stream.avail_in = static_cast<uInt>(in.size());
        const int result = ::inflate(&m_Stream, Z_NO_FLUSH);
        const bool stalled = m_Stream.avail_in > 0;
        Skip(in.size() - m_Stream.avail_in);
        if (result == Z_STREAM_END) {
            End();
        } else if (result != Z_OK && result != Z_BUF_ERROR) {
            Fail();
        } else if (m_Stream.avail_out == 0 && (stalled || in.empty())) {
            break;  // without input zlib may still hold bytes, which only room can show
        } else if (in.empty()) {
            End();
        }
    }
    return out.size() - m_Stream.avail_out;
}
