#include "base/Uuid.h"

namespace orvelle {

QString uuidText(const QUuid &uuid)
{
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

QString newUuidText()
{
    return uuidText(QUuid::createUuid());
}

std::optional<QUuid> parseUuid(QStringView text)
{
    constexpr qsizetype length = 36;
    if (text.size() != length)
        return std::nullopt;
    for (qsizetype i = 0; i < length; ++i) {
        const char16_t c = text[i].unicode();
        const bool hyphen = i == 8 || i == 13 || i == 18 || i == 23;
        const bool hexDigit = (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
        if (hyphen ? c != u'-' : !hexDigit)
            return std::nullopt;
    }
    return QUuid::fromString(text);
}

} // namespace orvelle
