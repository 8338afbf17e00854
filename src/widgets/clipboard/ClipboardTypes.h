#pragma once

#include <QString>
#include <QStringList>

namespace orvelle {

/// The forms of copied content that the history knows, as programs call them.
struct ClipboardTypes {
    /// Of another system; kept as it is when a shared clipboard brings it.
    static QString rtfd() { return QStringLiteral("com.apple.flat-rtfd"); }
    static QString rtf() { return QStringLiteral("text/rtf"); }
    static QString png() { return QStringLiteral("image/png"); }
    static QString tiff() { return QStringLiteral("image/tiff"); }
    static QString pdf() { return QStringLiteral("application/pdf"); }
    static QString uriList() { return QStringLiteral("text/uri-list"); }
    /// What file managers give: "copy" or "cut", then an address on each line.
    static QString copiedFiles() { return QStringLiteral("x-special/gnome-copied-files"); }
    /// A browser's link: address and title on two lines, UTF-16.
    static QString browserLink() { return QStringLiteral("text/x-moz-url"); }
};

/// Whether a password manager or another program has marked the content as
/// not to be kept, in whatever way that its kind of system does. The mark
/// counts, whatever it says: reading it already tells the owner that somebody
/// looks.
bool isMarkedSecret(const QStringList &types);

/// The form of formatted text on offer ("text/rtf" under one of its names), or
/// empty.
QString offeredRtf(const QStringList &types);
/// The picture to take: PNG first, TIFF otherwise, and one that is kept as PNG
/// when there is neither; or empty.
QString offeredImage(const QStringList &types);

} // namespace orvelle
