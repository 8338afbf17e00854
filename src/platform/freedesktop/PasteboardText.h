#pragma once

#include <QByteArray>
#include <QStringList>

#include <algorithm>
#include <array>
#include <optional>

namespace orvelle {

/// The forms in which programs offer text, the best first.
inline constexpr std::array pasteboardTextForms{
    QLatin1StringView("UTF8_STRING"), QLatin1StringView("text/plain;charset=utf-8"),
    QLatin1StringView("text/plain;charset=UTF-8"), QLatin1StringView("text/plain"), QLatin1StringView("STRING")};

/// What programs of different ages ask for when they want text.
inline constexpr std::array textRequests{"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "STRING", "TEXT"};

/// The best form of text among what is offered.
inline std::optional<QString> bestTextForm(const QStringList &offered)
{
    const auto best =
        std::ranges::find_if(pasteboardTextForms, [&](QLatin1StringView form) { return offered.contains(form); });
    return best == pasteboardTextForms.end() ? std::nullopt : std::optional<QString>(*best);
}

/// What came in one of these forms, as UTF-8.
inline QByteArray textFromForm(const QByteArray &bytes, const QString &form)
{
    QByteArray text = form == QLatin1StringView("STRING") ? QString::fromLatin1(bytes).toUtf8() : bytes;
    while (text.endsWith('\0')) // some owners count the end of a C string
        text.chop(1);
    return text;
}

/// The other way about: UTF-8 as it belongs into a form that was asked for.
/// What Latin-1 lacks becomes a question mark.
inline QByteArray textInForm(const QByteArray &text, QByteArrayView form)
{
    return form == "STRING" ? QString::fromUtf8(text).toLatin1() : text;
}

} // namespace orvelle
