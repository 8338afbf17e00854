#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QString>

namespace orvelle {

/// Texts in the code pages of RTF. Source of the numbers: RTF specification
/// 1.9.1, \ansicpgN and \fcharsetN.
class RtfCharset
{
public:
    RtfCharset() = default;
    ~RtfCharset();
    RtfCharset(const RtfCharset &) = delete;
    RtfCharset &operator=(const RtfCharset &) = delete;

    static constexpr int windowsLatin1 = 1252;
    static constexpr int symbolFont = 42; ///< pictures, not letters

    /// The code page of a font's \fcharsetN; `fallback` for those that say
    /// nothing about it.
    static int codePageOfCharset(int charset, int fallback);

    /// What does not decode, or stands in a code page nobody knows, becomes
    /// U+FFFD for each byte; ASCII comes through in every case.
    QString decode(QByteArrayView bytes, int codePage);

private:
    void *converter(int codePage);

    QHash<int, void *> m_converters;
};

} // namespace orvelle
