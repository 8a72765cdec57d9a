#include "xml/XmlMessages.h"

#include <QvXmlLib16/Format.h>
#include <QvXmlLib16/QvException.h>
#include <QvXmlLib16/QvZip.h>

#include <zlib.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>

namespace QvXmlLib16 {

namespace {

constexpr int kGzipWindowBits = 31;       // 32 KB window, gzip wrapper
constexpr int kAutoDetectWindowBits = 47; // 32 KB window, zlib or gzip header
constexpr unsigned long kInflateChunk = 65536;

// zlib counts in 32 bits: a buffer of 4 GiB or more goes to it in passes of at most this.
uInt Pass(unsigned long left) {
    return static_cast<uInt>(std::min<unsigned long>(left, std::numeric_limits<uInt>::max()));
}

// Owns a z_stream and ends it on every path.
class Deflater {
public:
    ~Deflater() {
        if (m_started)
            deflateEnd(&m_stream);
    }

    int Start(CompressionType type) {
        const int result =
            type == Compression_GZip
                ? deflateInit2(&m_stream, 1, Z_DEFLATED, kGzipWindowBits, 8, Z_DEFAULT_STRATEGY)
                : deflateInit(&m_stream, 1);
        m_started = result == Z_OK;
        return result;
    }

    z_stream& Stream() { return m_stream; }

private:
    z_stream m_stream{};
    bool m_started = false;
};

class Inflater {
public:
    ~Inflater() {
        if (m_started)
            inflateEnd(&m_stream);
    }

    bool Start() {
        m_started = inflateInit2(&m_stream, kAutoDetectWindowBits) == Z_OK;
        return m_started;
    }

    z_stream& Stream() { return m_stream; }

private:
    z_stream m_stream{};
    bool m_started = false;
};

// A new[] buffer that doubles as it fills, handed over with Release().
class GrowingBuffer {
public:
    unsigned char* Reserve(unsigned long more) {
        if (m_length + more > m_capacity) {
            unsigned long capacity = m_capacity ? m_capacity : kInflateChunk;
            while (capacity < m_length + more)
                capacity *= 2;
            std::unique_ptr<unsigned char[]> bigger(new unsigned char[capacity]);
            if (m_length)
                std::memcpy(bigger.get(), m_data.get(), m_length);
            m_data = std::move(bigger);
            m_capacity = capacity;
        }
        return m_data.get() + m_length;
    }

    void Commit(unsigned long n) { m_length += n; }

    unsigned long Length() const { return m_length; }

    unsigned char* Release() { return m_data.release(); }

private:
    std::unique_ptr<unsigned char[]> m_data;
    unsigned long m_length = 0;
    unsigned long m_capacity = 0;
};

} // namespace

void CQvZip::Compress(unsigned char** data, unsigned long* length, CompressionType type) {
    if (type != Compression_GZip && type != Compression_ZLib)
        return;
    Deflater deflater;
    int result = deflater.Start(type);
    if (result != Z_OK)
        throw CQvException(FormatString(msg::kCompressFailedFmt, result));
    // Output gets the input's size and no more: a result that would be larger fails.
    std::unique_ptr<unsigned char[]> out(new unsigned char[*length ? *length : 1]);
    z_stream& stream = deflater.Stream();
    stream.next_in = *data;
    stream.next_out = out.get();
    unsigned long inLeft = *length, outLeft = *length;
    auto step = [&](int flush) {
        const uInt in = Pass(inLeft), room = Pass(outLeft);
        stream.avail_in = in;
        stream.avail_out = room;
        const int status = deflate(&stream, flush);
        inLeft -= in - stream.avail_in;
        outLeft -= room - stream.avail_out;
        return status;
    };
    result = step(Z_NO_FLUSH);
    while (result == Z_OK && inLeft > 0 && outLeft > 0)
        result = step(Z_NO_FLUSH);
    if (result == Z_OK || result == Z_BUF_ERROR)
        result = step(Z_FINISH);
    while (result == Z_OK && outLeft > 0)
        result = step(Z_FINISH);
    if (result != Z_STREAM_END)
        throw CQvException(FormatString(msg::kCompressFailedFmt, result));
    *length = stream.total_out;
    *data = out.release();
}

void CQvZip::Decompress(unsigned char** data, unsigned long* length, unsigned long long maxOutput) {
    if (!data || !*data || !length || *length == 0)
        return;
    Inflater inflater;
    if (!inflater.Start())
        return;
    z_stream& stream = inflater.Stream();
    stream.next_in = *data;
    unsigned long inLeft = *length; // not handed to zlib yet
    auto refill = [&] {
        if (stream.avail_in == 0 && inLeft > 0) {
            stream.avail_in = Pass(inLeft);
            inLeft -= stream.avail_in;
        }
    };
    refill();
    GrowingBuffer out;
    for (;;) {
        stream.next_out = out.Reserve(kInflateChunk);
        stream.avail_out = kInflateChunk;
        const uInt before = stream.avail_in;
        const int result = inflate(&stream, Z_NO_FLUSH);
        out.Commit(kInflateChunk - stream.avail_out);
        if (result == Z_STREAM_END)
            break;
        // Not compressed, damaged, truncated (no progress with the input used up) or too big:
        // the input stays as it was.
        const bool stalled = stream.avail_in == 0 && inLeft == 0 && stream.avail_out != 0;
        if ((result != Z_OK && result != Z_BUF_ERROR) || stalled
            || (result == Z_BUF_ERROR && before == stream.avail_in) || out.Length() > maxOutput)
            return;
        refill();
    }
    if (out.Length() > maxOutput)
        return;
    *length = out.Length();
    *data = out.Release();
}

void CQvZip::CompressData(CBinaryData& binary, CompressionType type) {
    if (binary.GetLength() == 0 || (type != Compression_GZip && type != Compression_ZLib))
        return;
    const CBinaryData& source = binary;
    unsigned char* bytes = const_cast<unsigned char*>(source.GetData());
    unsigned long length = source.GetLength();
    Compress(&bytes, &length, type);
    binary = CBinaryData(bytes, length, true);
}

} // namespace QvXmlLib16
