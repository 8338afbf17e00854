#include "sync/SyncCipher.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

using namespace orvelle;

/// Whatever is done to the shared file, it opens as what went in or not at
/// all. The first byte of the input chooses: the rest is the file, or is laid
/// over a good one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static SyncCipher cipher("passphrase");
    static const QByteArray document(200, 'd');
    static const QByteArray good = cipher.encrypt(document).value();
    if (size == 0)
        return 0;
    const QByteArray rest(reinterpret_cast<const char *>(data) + 1, static_cast<qsizetype>(size) - 1);
    QByteArray file = rest;
    if (data[0] % 2 == 0) {
        file = good.first(std::max<qsizetype>(0, good.size() - data[0] / 2));
        for (qsizetype i = 0; i < std::min(file.size(), rest.size()); ++i)
            file[i] = static_cast<char>(file[i] ^ rest[i]);
    }
    const auto opened = cipher.decrypt(file);
    if (opened && (file != good || *opened != document))
        std::abort();
    return 0;
}
