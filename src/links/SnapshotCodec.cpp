#include "links/LinkCodec.h"
#include "links/SnapshotStore.h"

#include <zstd.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace orvelle {

namespace {

constexpr int compressionLevel = 3;
/// No frame of ours needs a larger window than 128 MiB to unpack.
constexpr int maxWindowLog = 27;

SnapshotError zstdError(std::size_t code)
{
    return {QString::fromLatin1(ZSTD_getErrorName(code))};
}

Result<QByteArray, SnapshotError> decompressed(QByteArrayView packed, qsizetype maxBytes)
{
    const std::unique_ptr<ZSTD_DCtx, decltype(&ZSTD_freeDCtx)> context(ZSTD_createDCtx(), &ZSTD_freeDCtx);
    ZSTD_DCtx_setParameter(context.get(), ZSTD_d_windowLogMax, maxWindowLog);
    ZSTD_inBuffer in{packed.data(), static_cast<std::size_t>(packed.size()), 0};
    QByteArray result;
    QByteArray chunk(static_cast<qsizetype>(ZSTD_DStreamOutSize()), Qt::Uninitialized);
    for (;;) {
        ZSTD_outBuffer out{chunk.data(), static_cast<std::size_t>(chunk.size()), 0};
        const std::size_t state = ZSTD_decompressStream(context.get(), &out, &in);
        if (ZSTD_isError(state))
            return zstdError(state);
        // Grows with what is really there, not with what a header promises.
        if (result.size() + static_cast<qsizetype>(out.pos) > maxBytes)
            return SnapshotError{u"unpacks to too much"_s};
        result.append(chunk.constData(), static_cast<qsizetype>(out.pos));
        if (state == 0 && in.pos == in.size)
            return result;
        if (state == 0 || (in.pos == in.size && out.pos < out.size))
            return SnapshotError{state == 0 ? u"trailing bytes"_s : u"cut short"_s};
    }
}

} // namespace

Result<QByteArray, SnapshotError> packSnapshot(const LinkList &links)
{
    const QByteArray json = encodeLinks(links);
    const std::unique_ptr<ZSTD_CCtx, decltype(&ZSTD_freeCCtx)> context(ZSTD_createCCtx(), &ZSTD_freeCCtx);
    ZSTD_CCtx_setParameter(context.get(), ZSTD_c_compressionLevel, compressionLevel);
    ZSTD_CCtx_setParameter(context.get(), ZSTD_c_checksumFlag, 1);
    const auto size = static_cast<std::size_t>(json.size());
    QByteArray packed(static_cast<qsizetype>(ZSTD_compressBound(size)), Qt::Uninitialized);
    const std::size_t used =
        ZSTD_compress2(context.get(), packed.data(), static_cast<std::size_t>(packed.size()), json.constData(), size);
    if (ZSTD_isError(used))
        return zstdError(used);
    packed.truncate(static_cast<qsizetype>(used));
    return packed;
}

Result<LinkList, SnapshotError> unpackSnapshot(QByteArrayView packed, qsizetype maxBytes)
{
    const auto json = decompressed(packed, maxBytes);
    if (!json)
        return json.error();
    auto links = decodeLinks(*json);
    if (!links)
        return SnapshotError{links.error().reason};
    return std::move(links).value();
}

} // namespace orvelle
