#pragma once

#include <QString>
#include <QUuid>

#include <optional>
#include <string_view>

namespace orvelle {

/// The canonical text of a UUID here: 36 characters, upper case, hyphenated,
/// without braces.
QString uuidText(const QUuid &uuid);

/// The canonical text of a new random (version 4) UUID.
QString newUuidText();

/// Reads a UUID in the hyphenated form, either case. Braces, URNs and missing
/// hyphens are refused.
std::optional<QUuid> parseUuid(QStringView text);
std::optional<QUuid> parseUuid(std::string_view text);

} // namespace orvelle
