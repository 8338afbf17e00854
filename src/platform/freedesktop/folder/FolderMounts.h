#pragma once

#include <QByteArray>
#include <QString>

namespace orvelle {

/// Whether `path` lies on a file system that the table of file systems
/// (fstab(5)) knows and that is not mounted at present, so that what is seen
/// there is the empty folder below it. In the file system's bytes.
bool isUnmounted(const QByteArray &path);
/// The same with the content of both tables.
bool isUnmounted(const QByteArray &path, const QByteArray &fstab, const QByteArray &mountInfo);

/// What kind of file system an open file is on, for the log.
QString fileSystemName(int file);

} // namespace orvelle
