#pragma once

#include "platform/UserDefaults.h"
#include "platform/freedesktop/defaults/SqliteConnection.h"

namespace orvelle {

/// How a settings value lies in two columns, its type's name and its value:
///
/// | type | value |
/// |---|---|
/// | bool | INTEGER, 0 or 1 |
/// | int | INTEGER |
/// | double | REAL |
/// | date | REAL, seconds since 2001-01-01 00:00:00 UTC |
/// | string | TEXT; BLOB of UTF-16LE when it holds an unpaired surrogate |
/// | data | BLOB |
/// | strings | BLOB: a list of UTF-16LE texts |
/// | dataArray | BLOB: a list of byte strings |
/// | intArray | BLOB: 8 bytes each, little endian |
///
/// A list is, for each element, its length in bytes (4 bytes, little endian)
/// and its bytes.
class EncodedDefault
{
public:
    explicit EncodedDefault(const DefaultsValue &value);

    /// False for a value that has no stored form: NaN, or an element of 4 GiB.
    bool isStorable() const { return m_storable; }

    /// Binds both columns from parameter `index` on. This object must live
    /// until the statement is reset.
    void bind(SqliteStatement &statement, int index) const;

private:
    QByteArray m_type;
    std::variant<qint64, double, QByteArray> m_value;
    bool m_isText = false;
    bool m_storable = true;
};

/// The value in columns `index` (type) and `index` + 1; absent when they do not
/// follow the table above.
std::optional<DefaultsValue> decodeDefault(const SqliteStatement &row, int index);

} // namespace orvelle
