#pragma once

#include <QByteArray>
#include <QString>

namespace orvelle {
class StartupNotice;
}

namespace orvelle::gio {

// Starting the programs that desktop entries name. Any thread; the calls may
// wait for disks and services. Each gives an empty text, or what went wrong.

/// Hands the encoded address to the handler of its scheme. Network shares
/// ("smb", "sftp", ...) without a handler go to the file manager.
QString openAddress(const QByteArray &encodedUrl, const StartupNotice &notice);

/// Opens an existing file with its default application.
QString openFile(const QString &absolutePath, const StartupNotice &notice);

/// Opens an existing folder in the default file manager.
QString openFolder(const QString &absolutePath, const StartupNotice &notice);

} // namespace orvelle::gio
