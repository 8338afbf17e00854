#pragma once

#include "base/Result.h"
#include "platform/UserDefaults.h"

namespace orvelle {

/// The name of a value's type: "bool", "int", "double", "string", "data",
/// "date", "strings"; "dataArray" and "intArray" can be listed and read, not
/// written.
QString defaultsTypeName(const DefaultsValue &value);

/// The printed form, which parseDefaultsValue() reads: `true` or `false`;
/// whole numbers; the shortest decimal that reads back to the same double;
/// text as it is; base64 (RFC 4648, padded); seconds since 2001-01-01; a JSON
/// array of strings. No line end.
QByteArray defaultsText(const DefaultsValue &value);

/// Why a value was refused: no such type, or the text does not fit it.
struct DefaultsFormError {
    bool unknownType = false;
    QString sentence;
};

Result<DefaultsValue, DefaultsFormError> parseDefaultsValue(const QString &type, const QString &text);

} // namespace orvelle
