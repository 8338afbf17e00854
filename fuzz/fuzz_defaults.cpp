#include "platform/freedesktop/defaults/SqliteDefaultsCodec.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace orvelle;

namespace {

SqliteStatement rowOfTwo(SqliteConnection &connection)
{
    auto prepared = connection.prepare("SELECT ?1, ?2");
    if (!prepared)
        std::abort();
    return std::move(prepared).value();
}

/// What was decoded comes back the same once it is stored.
void checkRoundTrip(SqliteConnection &connection, const DefaultsValue &value)
{
    const EncodedDefault encoded(value);
    if (!encoded.isStorable())
        std::abort();
    SqliteStatement row = rowOfTwo(connection);
    encoded.bind(row, 0);
    if (row.step() != SQLITE_ROW || decodeDefault(row, 0) != value)
        std::abort();
}

} // namespace

/// The first byte names a type, the second a kind of column, the rest is the
/// stored value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const char *const types[] = {"string", "data", "strings", "dataArray", "intArray", "bool", "?"};
    if (size < 2)
        return 0;
    const QByteArray type = types[data[0] % std::size(types)];
    const QByteArray bytes(reinterpret_cast<const char *>(data) + 2, static_cast<qsizetype>(size) - 2);
    auto opened = SqliteConnection::open({}, SqliteConnection::Mode::Memory);
    if (!opened)
        std::abort();
    auto &connection = **opened;
    SqliteStatement row = rowOfTwo(connection);
    row.bindText(0, type);
    if (data[1] % 2 == 0)
        row.bindBlob(1, bytes);
    else
        row.bindText(1, bytes);
    if (row.step() != SQLITE_ROW)
        return 0;
    if (const auto value = decodeDefault(row, 0))
        checkRoundTrip(connection, *value);
    return 0;
}
